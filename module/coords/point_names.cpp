#include "module/coords/point_names.h"

#include <algorithm>
#include <limits>

#include "platform/text/text.h"

namespace norvane {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
bool isLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}
unsigned char lowered(char c) {
    return static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
}

// The number that digits at the start make; the greatest there is for all that are greater.
int32_t leadingNumber(std::string_view s) {
    constexpr int64_t kHigh = std::numeric_limits<int32_t>::max();
    int64_t number = 0;
    for (size_t i = 0; i < s.size() && isDigit(s[i]) && number < kHigh; ++i)
        number = number * 10 + (s[i] - '0');
    return static_cast<int32_t>(std::min(number, kHigh));
}

int signOf(int value) {
    return (value > 0) - (value < 0);
}

int compareNoCase(std::string_view a, std::string_view b) {
    size_t common = std::min(a.size(), b.size());
    for (size_t i = 0; i < common; ++i)
        if (lowered(a[i]) != lowered(b[i])) return lowered(a[i]) < lowered(b[i]) ? -1 : 1;
    return signOf(static_cast<int>(a.size() > b.size()) - static_cast<int>(a.size() < b.size()));
}

}  // namespace

int32_t NumberOfName(std::string_view name) {
    name = text::trimLeft(name);
    bool negative = !name.empty() && name.front() == '-';
    if (!name.empty() && (negative || name.front() == '+')) name.remove_prefix(1);
    return negative ? -leadingNumber(name) : leadingNumber(name);
}

int CompareNames(std::string_view a, std::string_view b) {
    size_t common = std::min(a.size(), b.size());
    for (size_t i = 0; i < common; ++i) {
        if (isDigit(a[i]) && isDigit(b[i])) {
            int32_t left = leadingNumber(a.substr(i)), right = leadingNumber(b.substr(i));
            if (left != right) return left < right ? -1 : 1;
        } else if (lowered(a[i]) != lowered(b[i])) {
            return lowered(a[i]) < lowered(b[i]) ? -1 : 1;
        }
    }
    return compareNoCase(a, b);
}

std::string UpperAscii(std::string s) {
    for (char& c : s)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - ('a' - 'A'));
    return s;
}

std::string NormalizedName(std::string_view name) {
    return UpperAscii(std::string(text::trim(name)));
}

std::string WithoutRangeSyntax(std::string name) {
    for (char& c : name)
        if (c == '-' || c == ',') c = '_';
    return name;
}

namespace {

// A name as what is before its number, the number, and what is behind it.
struct NameParts {
    std::string_view prefix, number, suffix;
};

NameParts partsOf(std::string_view name) {
    auto inNumber = [](char c) { return isDigit(c) || c == '-'; };
    auto first = std::find_if(name.begin(), name.end(), inNumber);
    auto last = std::find_if_not(first, name.end(), inNumber);
    size_t from = static_cast<size_t>(first - name.begin()), to = static_cast<size_t>(last - name.begin());
    return {name.substr(0, from), name.substr(from, to - from), name.substr(to)};
}

std::string joined(std::string_view prefix, int64_t number, std::string_view suffix) {
    return std::string(prefix) + std::to_string(number) + std::string(suffix);
}

// One step in the letters: the last that can rise does; when none can, all start over. True for the latter.
bool stepLetters(std::string& letters) {
    for (size_t i = letters.size(); i-- > 0;) {
        if (letters[i] == 'Z' || letters[i] == 'z') continue;
        ++letters[i];
        return false;
    }
    for (char& c : letters) c = c == 'Z' ? 'A' : 'a';
    return true;
}

std::string withoutNumber(std::string_view name, long step) {
    if (step >= 2) return joined(name, step, "");
    bool rises = name.size() == 1 && isLetter(name[0]) && name[0] != 'Z' && name[0] != 'z';
    return rises ? std::string(1, static_cast<char>(name[0] + 1)) : std::string(name) + "2";
}

}  // namespace

std::string NextPointName(std::string_view name, long step) {
    auto [prefix, digits, suffix] = partsOf(name);
    if (digits.empty()) return withoutNumber(name, step);
    int64_t number = NumberOfName(digits);
    if (std::any_of(suffix.begin(), suffix.end(), isDigit))
        return joined(prefix, number, NextPointName(suffix, step));
    if (suffix.empty() || !prefix.empty()) return joined(prefix, number + step, suffix);
    // Letters have no step back, and other characters none at all.
    if (step < 0 || !std::all_of(suffix.begin(), suffix.end(), isLetter)) return std::string(name);
    std::string letters(suffix);
    for (long i = 0; i < step; ++i)
        if (stepLetters(letters)) ++number;
    return joined(prefix, number, letters);
}

std::string WithPositiveNumber(std::string_view name) {
    auto [prefix, digits, suffix] = partsOf(name);
    int64_t number = digits.empty() ? 0 : NumberOfName(digits);
    return number < 0 ? joined(prefix, -number, suffix) : std::string(name);
}

}  // namespace norvane
