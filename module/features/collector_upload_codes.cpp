#include "module/features/collector_upload_codes.h"

#include <algorithm>
#include <unordered_set>

#include "module/features/line_pieces.h"
#include "platform/text/code_page.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr size_t kLongestPiece = 526;  // bytes, the line end included
constexpr size_t kShortestLine = 7;    // bytes, without it
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// The first field of a line as it stands; "" for a line that counts for nothing.
std::string_view firstField(std::string_view line) {
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (line.size() < kShortestLine || line.front() == '#') return {};
    const char separator = std::ranges::count(line, '|') >= 2 ? '|' : ',';
    return line.substr(0, line.find(separator));
}

}  // namespace

std::vector<std::string> ParseCodeDefinitions(std::string_view content) {
    if (text::startsWith(content, kByteOrderMark)) content.remove_prefix(kByteOrderMark.size());
    const bool unicode = text::isValidUtf8(content);
    std::vector<std::string> codes;
    std::unordered_set<std::string> known;
    while (!content.empty()) {
        const std::string_view field = text::trim(firstField(TakePiece(content, kLongestPiece)));
        // A piece may end within a character, which then is none.
        const std::string code =
            text::upper(unicode && text::isValidUtf8(field) ? std::string(field) : text::decode(field));
        if (!code.empty() && known.insert(code).second) codes.push_back(code);
    }
    return codes;
}

}  // namespace norvane
