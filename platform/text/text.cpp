#include "platform/text/text.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace text {
namespace {

constexpr std::string_view kBlanks = " \t\r\n\v\f";

// Upper and lower case of the accented letters of code page 1252 outside the regular block.
struct CasePair {
    char32_t upper, lower;
};
constexpr CasePair kPairs[] = {{0x0160, 0x0161}, {0x0152, 0x0153}, {0x017D, 0x017E}, {0x0178, 0x00FF}};

char32_t upperOf(char32_t c) {
    if (c >= 'a' && c <= 'z') return c - 32;
    if (c >= 0xE0 && c <= 0xFE && c != 0xF7) return c - 32;
    for (auto [up, low] : kPairs)
        if (c == low) return up;
    return c;
}

char32_t lowerOf(char32_t c) {
    if (c >= 'A' && c <= 'Z') return c + 32;
    if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return c + 32;
    for (auto [up, low] : kPairs)
        if (c == up) return low;
    return c;
}

template <char32_t (*Map)(char32_t)>
std::string mapped(std::string_view s) {
    std::string out;
    out.reserve(s.size());
    for (size_t i = 0; i < s.size();) {
        unsigned char byte = static_cast<unsigned char>(s[i]);
        if (byte < 0x80) {
            out += static_cast<char>(Map(byte));
            ++i;
            continue;
        }
        size_t start = i;
        char32_t c = nextCodePoint(s, i);
        if (c == 0xFFFD)
            out.append(s.substr(start, i - start));  // malformed bytes stay as they are
        else
            appendUtf8(out, Map(c));
    }
    return out;
}

}  // namespace

std::string upper(std::string_view s) {
    return mapped<upperOf>(s);
}
std::string lower(std::string_view s) {
    return mapped<lowerOf>(s);
}
bool equalNoCase(std::string_view a, std::string_view b) {
    // The two cases of a letter take the same number of bytes.
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
        if (a[i] == b[i]) continue;
        if ((a[i] | b[i]) & 0x80) return upper(a) == upper(b);
        if (upperOf(static_cast<char32_t>(a[i])) != upperOf(static_cast<char32_t>(b[i]))) return false;
    }
    return true;
}
bool startsWith(std::string_view s, std::string_view prefix) {
    return s.substr(0, prefix.size()) == prefix;
}

bool endsWithNoCase(std::string_view s, std::string_view suffix) {
    return s.size() >= suffix.size() && equalNoCase(s.substr(s.size() - suffix.size()), suffix);
}

std::string_view trimLeft(std::string_view s) {
    size_t first = s.find_first_not_of(kBlanks);
    return first == std::string_view::npos ? std::string_view{} : s.substr(first);
}

std::string_view trimRight(std::string_view s) {
    size_t last = s.find_last_not_of(kBlanks);
    return last == std::string_view::npos ? std::string_view{} : s.substr(0, last + 1);
}

std::string_view trim(std::string_view s) {
    return trimLeft(trimRight(s));
}

std::vector<std::string> split(std::string_view s, char separator) {
    std::vector<std::string> pieces;
    for (;;) {
        size_t at = s.find(separator);
        pieces.emplace_back(s.substr(0, at));
        if (at == std::string_view::npos) return pieces;
        s.remove_prefix(at + 1);
    }
}

std::string join(const std::vector<std::string>& pieces, std::string_view separator) {
    std::string out;
    for (const std::string& piece : pieces) {
        if (&piece != &pieces.front()) out += separator;
        out += piece;
    }
    return out;
}

std::string replaceAll(std::string_view s, std::string_view what, std::string_view with) {
    std::string out;
    if (what.empty()) return std::string(s);
    for (size_t at; (at = s.find(what)) != std::string_view::npos; s.remove_prefix(at + what.size())) {
        out += s.substr(0, at);
        out += with;
    }
    return out += s;
}

std::string counted(long count, const std::string& one, const std::string& many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

std::string stripZeros(std::string s) {
    if (s.find('.') == std::string::npos) return s;
    s.erase(s.find_last_not_of('0') + 1);
    if (!s.empty() && s.back() == '.') s.pop_back();
    return s;
}

std::string stripLeadingZeros(std::string s) {
    if (s.empty()) return s;
    s.erase(0, std::min(s.find_first_not_of('0'), s.size() - 1));
    return s;
}

std::string fromReal(double value) {
    char digits[400];  // the largest double has 309 in front of its point
    char* end = std::to_chars(std::begin(digits), std::end(digits), value, std::chars_format::fixed, 9).ptr;
    return stripZeros(std::string(digits, end));
}

size_t readReal(std::string_view s, double& value) {
    const char* begin = s.data();
    const bool signIsPlus = !s.empty() && s.front() == '+';
    if (signIsPlus) s.remove_prefix(1);
    // from_chars takes "inf" and "nan" too, and a second sign behind the plus.
    size_t first = s.find_first_not_of(signIsPlus ? "." : "-.");
    if (first == std::string_view::npos || s[first] < '0' || s[first] > '9') return 0;
    value = 0;
    auto [end, error] = std::from_chars(s.data(), s.data() + s.size(), value);
    if (error != std::errc()) return 0;
    return static_cast<size_t>(end - begin);
}

double toReal(std::string_view s) {
    double value = 0;
    return readReal(trimLeft(s), value) > 0 ? value : 0;
}

std::optional<double> wholeReal(std::string_view s) {
    double value = 0;
    size_t used = readReal(s, value);
    return used > 0 && used == s.size() ? std::optional(value) : std::nullopt;
}

long toLong(std::string_view s) {
    return std::strtol(std::string(s).c_str(), nullptr, 10);
}

std::string format(const char* pattern, ...) {
    va_list args;
    va_start(args, pattern);
    va_list again;
    va_copy(again, args);
    int length = std::vsnprintf(nullptr, 0, pattern, args);
    va_end(args);
    std::string out(length > 0 ? static_cast<size_t>(length) : 0, '\0');
    if (length > 0) std::vsnprintf(out.data(), out.size() + 1, pattern, again);
    va_end(again);
    return out;
}

std::string_view cutToBytes(std::string_view s, size_t bytes) {
    if (s.size() <= bytes) return s;
    while (bytes > 0 && (static_cast<unsigned char>(s[bytes]) & 0xC0) == 0x80) --bytes;
    return s.substr(0, bytes);
}

void appendUtf8(std::string& out, char32_t c) {
    auto put = [&](char32_t byte) { out += static_cast<char>(byte); };
    if (c < 0x80) {
        put(c);
    } else if (c < 0x800) {
        put(0xC0 | (c >> 6)), put(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        put(0xE0 | (c >> 12)), put(0x80 | ((c >> 6) & 0x3F)), put(0x80 | (c & 0x3F));
    } else {
        put(0xF0 | (c >> 18)), put(0x80 | ((c >> 12) & 0x3F)), put(0x80 | ((c >> 6) & 0x3F)),
            put(0x80 | (c & 0x3F));
    }
}

char32_t nextCodePoint(std::string_view s, size_t& position) {
    constexpr char32_t kMalformed = 0xFFFD;
    auto byteAt = [&](size_t i) { return static_cast<unsigned char>(s[i]); };
    unsigned char lead = byteAt(position);
    if (lead < 0x80) {
        ++position;
        return lead;
    }
    size_t extra = lead >= 0xF0 && lead <= 0xF4 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC2 ? 1 : 0;
    if (extra == 0 || lead > 0xF4 || position + extra >= s.size()) {
        ++position;
        return kMalformed;
    }
    char32_t c = lead & (0x3F >> extra);
    for (size_t i = 1; i <= extra; ++i) {
        if ((byteAt(position + i) & 0xC0) != 0x80) {
            ++position;
            return kMalformed;
        }
        c = (c << 6) | (byteAt(position + i) & 0x3F);
    }
    constexpr char32_t kSmallest[] = {0, 0x80, 0x800, 0x10000};
    if (c < kSmallest[extra] || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) {
        ++position;
        return kMalformed;
    }
    position += extra + 1;
    return c;
}

bool isValidUtf8(std::string_view s) {
    for (size_t i = 0; i < s.size();) {
        size_t start = i;
        if (nextCodePoint(s, i) == 0xFFFD && i - start == 1) return false;
    }
    return true;
}

}  // namespace text
