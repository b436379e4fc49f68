#include "hostcad/window/label_text.h"

#include <algorithm>

#include "hostcad/window/drawn_text.h"
#include "platform/ads/overlay.h"

namespace hostcad {
namespace {

constexpr std::string_view kEllipsis = "\u2026";

bool continues(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// The bytes of the first characters.
size_t lengthOf(std::string_view utf8, size_t characters) {
    size_t at = 0;
    while (at < utf8.size() && characters-- > 0)
        for (++at; at < utf8.size() && continues(utf8[at]);) ++at;
    return at;
}

std::string shownLine(std::string_view line) {
    using overlay::kMostCharacters;
    // Most lines are short, and need not be counted.
    const bool isCut = line.size() > kMostCharacters && lengthOf(line, kMostCharacters) < line.size();
    std::string shown(isCut ? line.substr(0, lengthOf(line, kMostCharacters - 1)) : line);
    for (char& c : shown)
        if (static_cast<unsigned char>(c) < ' ') c = ' ';
    shown.erase(shown.find_last_not_of(' ') + 1);
    if (isCut) shown += kEllipsis;
    return shown;
}

}  // namespace

std::vector<std::string> labelLines(std::string_view text) {
    std::vector<std::string> lines;
    for (bool isMore = true; isMore && lines.size() < overlay::kMostLines;) {
        const size_t end = text.find('\n');
        lines.push_back(shownLine(text.substr(0, end)));
        isMore = end != std::string_view::npos;
        if (isMore) text.remove_prefix(end + 1);
        const bool isLast = lines.size() == overlay::kMostLines;
        const bool hasMore = isMore && text.find_first_not_of(" \r\n\t") != std::string_view::npos;
        if (isLast && hasMore) lines.back() = shownLine(lines.back()) + std::string(kEllipsis);
    }
    while (!lines.empty() && lines.back().empty()) lines.pop_back();
    return lines;
}

LabelSize labelSize(std::string_view text) {
    LabelSize size;
    for (const std::string& line : labelLines(text)) {
        ++size.lines;
        size.width = std::max(size.width, static_cast<float>(textWidth(line)));
    }
    return size;
}

}  // namespace hostcad
