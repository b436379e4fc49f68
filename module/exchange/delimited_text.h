// Lines of text whose fields stand between delimiters.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace norvane {

struct TextFormat {
    char delimiter = ',';
    std::optional<char> embedded;  // between the name of a field and its value; nothing: no names in lines
    bool quoted = false;           // "SMITH, JOHN" is one piece
};

// The names of delimiters as they are offered, and the character of one; any other text is a comma.
const std::vector<std::string>& DelimiterNames();
char DelimiterOf(std::string_view name);

// A line without white space at its ends that is not the delimiter.
std::string_view TrimmedLine(std::string_view line, char delimiter);

// The pieces of a line that has been trimmed: n delimiters give n + 1 of them, an empty line none. With
// quotes, a delimiter within them is none, and two of them within stand for one. Nothing for a quote that is
// not closed in its line.
std::optional<std::vector<std::string>> SplitLine(std::string_view line, const TextFormat& format);

// Whether a line looks like the headings of those behind it: as many pieces as the next line, none of which
// is empty or a number, and a number in the next line.
bool LooksLikeHeadings(const std::vector<std::string>& line, const std::vector<std::string>& next);

}  // namespace norvane
