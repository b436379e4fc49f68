// Text helpers. All text inside the program is UTF-8.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace text {

// Case of letters: ASCII and the accented Latin letters that Windows code page 1252 knows. Others stay.
std::string upper(std::string_view s);
std::string lower(std::string_view s);
bool equalNoCase(std::string_view a, std::string_view b);
bool startsWith(std::string_view s, std::string_view prefix);
bool endsWithNoCase(std::string_view s, std::string_view suffix);

// White space (blank, tab, line ends) cut at both ends, at the left, at the right.
std::string_view trim(std::string_view s);
std::string_view trimLeft(std::string_view s);
std::string_view trimRight(std::string_view s);

std::vector<std::string> split(std::string_view s, char separator);
std::string join(const std::vector<std::string>& pieces, std::string_view separator);
// Every occurrence replaced, from left to right, without looking at what was put in.
std::string replaceAll(std::string_view s, std::string_view what, std::string_view with);

// "%.9lf" with the trailing zeros cut, and then a trailing point: 12.5, 12.
std::string fromReal(double value);
// "1 block", "2 blocks".
std::string counted(long count, const std::string& one, const std::string& many);
// Trailing zeros behind a point cut, then the point itself. Text without a point stays.
std::string stripZeros(std::string s);
// Cuts the zeros in front; of a number that is nothing else the last one stays.
std::string stripLeadingZeros(std::string s);
// A number is digits with a point, a sign and an exponent where there are such, always with a point, whatever
// the locale. One that no double holds counts as none.
// How many characters of the number at the beginning of the text there are; 0 when it begins with none.
size_t readReal(std::string_view s, double& value);
// The number that text begins with, blanks in front of it allowed: 0 when there is none.
double toReal(std::string_view s);
// The number that all of the text is.
std::optional<double> wholeReal(std::string_view s);
// The integer that text begins with (atol, base 10): 0 when there is none.
long toLong(std::string_view s);

// printf into a string.
std::string format(const char* pattern, ...) __attribute__((format(printf, 1, 2)));

// The longest beginning of at most `bytes` bytes that does not cut a character in two.
std::string_view cutToBytes(std::string_view s, size_t bytes);
bool isValidUtf8(std::string_view s);
// Appends a Unicode code point as UTF-8.
void appendUtf8(std::string& out, char32_t codePoint);
// The code point at a position, which moves behind it; 0xFFFD and one byte for a malformed sequence.
char32_t nextCodePoint(std::string_view s, size_t& position);

}  // namespace text
