// Feature files with any content at all. What was read, passes the checks and is written must read the same.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "module/features/feature_checks.h"
#include "module/features/feature_file.h"
#include "module/store/name_rules.h"

using namespace norvane;

namespace {

// Longer lines are read in pieces.
bool hasLongLine(const std::string& text) {
    constexpr size_t kLongest = 4000;
    for (size_t at = 0; at < text.size();) {
        size_t end = std::min(text.find('\n', at), text.size());
        if (end - at > kLongest) return true;
        at = end + 1;
    }
    return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FeatureFileContent file = ParseFeatureFile({reinterpret_cast<const char*>(data), size});
    if (file.validRows != static_cast<int>(file.rows.size())) std::abort();
    CheckForCategory("TREE", file.rows);
    if (CheckForFile(file.rows)) return 0;
    std::string written = FeatureFileText(file.rows);
    // A tab in a default may make it one of the values on reading and none on writing.
    if (written.find('\t') != std::string::npos || hasLongLine(written)) return 0;
    if (ParseFeatureFile(written).rows != file.rows) std::abort();
    return 0;
}
