// Code definition files with any content at all. What was read stands in capitals, without blanks around it
// and once, and is read again from a file that has nothing else.
#include <cstdint>
#include <cstdlib>
#include <set>
#include <string>
#include <vector>

#include "module/features/collector_upload_codes.h"
#include "platform/text/text.h"

using namespace norvane;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::vector<std::string> codes = ParseCodeDefinitions({reinterpret_cast<const char*>(data), size});
    const std::set<std::string> distinct(codes.begin(), codes.end());
    if (distinct.size() != codes.size()) std::abort();
    // A mark at the beginning of the file, so that a code that begins with one is not taken for it.
    std::string written = "\xEF\xBB\xBF";
    std::vector<std::string> wanted;
    for (const std::string& code : codes) {
        if (code.empty() || text::trim(code) != code || text::upper(code) != code || !text::isValidUtf8(code))
            std::abort();
        // Long codes come in pieces, a mark of a comment and separators mean something else in front.
        if (code.size() > 500 || code.front() == '#' || code.find_first_of(",|\n") != std::string::npos)
            continue;
        written += code + ",      \n";
        wanted.push_back(code);
    }
    if (ParseCodeDefinitions(written) != wanted) std::abort();
    return 0;
}
