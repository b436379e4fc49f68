#include "module/exchange/delimited_text.h"

#include <algorithm>
#include <iterator>

#include "platform/text/text.h"

namespace norvane {

namespace {

struct NamedDelimiter {
    const char* name;
    char character;
};
constexpr NamedDelimiter kDelimiters[] = {
    {"Comma", ','}, {"Colon", ':'}, {"Semicolon", ';'}, {"Space", ' '}, {"Tab", '\t'},
};

constexpr char kQuote = '"';

bool isNumber(std::string_view piece) {
    // Some countries have a comma in place of the point.
    return text::wholeReal(text::replaceAll(text::trim(piece), ",", ".")).has_value();
}

// Reads a piece in quotes from the quote on; the place behind it, nothing without its end. What stands
// between that and the next delimiter belongs to the piece.
std::optional<size_t> readQuoted(std::string_view line, size_t at, char delimiter, std::string& piece) {
    for (++at;; ++at) {
        if (at >= line.size()) return std::nullopt;
        if (line[at] != kQuote)
            piece += line[at];
        else if (at + 1 < line.size() && line[at + 1] == kQuote)
            piece += line[++at];
        else
            break;
    }
    const size_t end = std::min(line.find(delimiter, at + 1), line.size());
    piece += text::trim(line.substr(at + 1, end - at - 1));
    return end;
}

}  // namespace

const std::vector<std::string>& DelimiterNames() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> all;
        for (const NamedDelimiter& delimiter : kDelimiters) all.emplace_back(delimiter.name);
        return all;
    }();
    return names;
}

char DelimiterOf(std::string_view name) {
    for (const NamedDelimiter& delimiter : kDelimiters)
        if (name == delimiter.name) return delimiter.character;
    return ',';
}

std::string_view TrimmedLine(std::string_view line, char delimiter) {
    auto isCut = [&](char c) { return c != delimiter && (c == ' ' || c == '\t' || c == '\r' || c == '\n'); };
    while (!line.empty() && isCut(line.front())) line.remove_prefix(1);
    while (!line.empty() && isCut(line.back())) line.remove_suffix(1);
    return line;
}

std::optional<std::vector<std::string>> SplitLine(std::string_view line, const TextFormat& format) {
    std::vector<std::string> pieces;
    if (line.empty()) return pieces;
    for (size_t at = 0; at <= line.size();) {
        size_t begin = at;
        while (format.quoted && begin < line.size() && line[begin] == ' ' && format.delimiter != ' ') ++begin;
        std::string piece;
        if (format.quoted && begin < line.size() && line[begin] == kQuote) {
            const std::optional<size_t> end = readQuoted(line, begin, format.delimiter, piece);
            if (!end) return std::nullopt;
            at = *end + 1;
        } else {
            const size_t end = std::min(line.find(format.delimiter, at), line.size());
            piece = line.substr(at, end - at);
            at = end + 1;
        }
        pieces.push_back(std::move(piece));
    }
    return pieces;
}

bool LooksLikeHeadings(const std::vector<std::string>& line, const std::vector<std::string>& next) {
    if (line.size() < 2 || line.size() != next.size()) return false;
    const bool isText = std::none_of(line.begin(), line.end(), [](const std::string& piece) {
        return text::trim(piece).empty() || isNumber(piece);
    });
    return isText && std::any_of(next.begin(), next.end(), isNumber);
}

}  // namespace norvane
