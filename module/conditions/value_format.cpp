#include "module/conditions/value_format.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "platform/text/text.h"

namespace norvane {
namespace {

constexpr size_t kLongestPattern = 200;
constexpr int kMostDecimals = 15;
constexpr std::string_view kDateLetters = "YMDHNS";

bool isDigitSign(char c) {
    return c == '0' || c == '#';
}

char capital(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

// All digits of the shortest number that is this real, with a point.
std::string shortestDigits(double value) {
    char buffer[400];  // the largest real has 309 digits
    auto end = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed).ptr;
    std::string digits(buffer, end);
    return digits.find('.') == std::string::npos ? digits + "." : digits;
}

// Adds one to the last of the digits.
void countUp(std::string& digits) {
    for (size_t i = digits.size(); i-- > 0;) {
        if (digits[i] == '.') continue;
        if (digits[i] != '9') {
            ++digits[i];
            return;
        }
        digits[i] = '0';
    }
    digits.insert(0, "1");
}

std::string partOfDate(const dao::Calendar& c, char letter, size_t count) {
    const bool isLong = count > 1;
    switch (letter) {
        case 'Y':
            return count > 2 ? text::format("%04d", c.year) : text::format("%02d", c.year % 100);
        case 'M':
            return text::format(isLong ? "%02d" : "%d", c.month);
        case 'D':
            return text::format(isLong ? "%02d" : "%d", c.day);
        case 'H':
            return text::format(isLong ? "%02d" : "%d", c.hour);
        case 'N':
            return text::format(isLong ? "%02d" : "%d", c.minute);
        default:
            return text::format(isLong ? "%02d" : "%d", c.second);
    }
}

}  // namespace

std::string RoundedText(double value, int decimals) {
    if (!std::isfinite(value)) return "";
    std::string digits = shortestDigits(std::fabs(value));
    const size_t point = digits.find('.'), wanted = point + 1 + static_cast<size_t>(decimals);
    if (digits.size() > wanted) {
        const bool up = digits[wanted] >= '5';
        digits.resize(wanted);
        if (up) countUp(digits);
    } else {
        digits.append(wanted - digits.size(), '0');
    }
    if (digits.back() == '.') digits.pop_back();
    const bool isZero = digits.find_first_not_of("0.") == std::string::npos;
    return (value < 0 && !isZero ? "-" : "") + digits;
}

std::optional<ValueFormat> ValueFormat::read(std::string_view pattern) {
    if (pattern.size() > kLongestPattern) return std::nullopt;
    ValueFormat format;
    format.pattern_ = pattern;
    format.begin_ = format.end_ = pattern.find_first_of("0#");
    if (format.begin_ == std::string_view::npos) {
        const bool isDate = std::any_of(pattern.begin(), pattern.end(), [](char c) {
            return kDateLetters.find(capital(c)) != std::string_view::npos;
        });
        return isDate ? std::optional(format) : std::nullopt;
    }
    if (format.begin_ > 0 && pattern[format.begin_ - 1] == '.') --format.begin_;
    bool behindPoint = false;
    for (size_t i = format.begin_; i < pattern.size(); ++i) {
        const char c = pattern[i];
        if (isDigitSign(c)) {
            // A comma or a point in front of the end of the digits belongs to what follows.
            format.end_ = i + 1;
            format.mostDecimals_ += behindPoint;
            if (c == '0' && behindPoint) format.leastDecimals_ = static_cast<size_t>(format.mostDecimals_);
            if (c == '0' && !behindPoint) ++format.leastDigits_;
        } else if (c == '.' && !behindPoint) {
            behindPoint = true;
        } else if (c != ',' || behindPoint) {
            break;
        }
    }
    const std::string_view digits = pattern.substr(format.begin_, format.end_ - format.begin_);
    format.partsThousands_ = digits.find(',') != std::string_view::npos;
    if (format.mostDecimals_ > kMostDecimals) return std::nullopt;
    return format;
}

std::string ValueFormat::numberText(double number) const {
    if (!std::isfinite(number)) return "";
    if (begin_ == std::string::npos) return pattern_;
    std::string digits = RoundedText(number, mostDecimals_);
    const bool isNegative = !digits.empty() && digits.front() == '-';
    if (isNegative) digits.erase(0, 1);
    const size_t point = std::min(digits.find('.'), digits.size());
    std::string whole = digits.substr(0, point);
    std::string decimals = point < digits.size() ? digits.substr(point + 1) : "";
    while (decimals.size() > leastDecimals_ && decimals.back() == '0') decimals.pop_back();
    if (whole == "0") whole.clear();
    if (whole.size() < leastDigits_) whole.insert(0, leastDigits_ - whole.size(), '0');
    if (partsThousands_)
        for (size_t i = whole.size(); i > 3; i -= 3) whole.insert(i - 3, ",");
    return pattern_.substr(0, begin_) + (isNegative ? "-" : "") + whole +
           (decimals.empty() ? "" : "." + decimals) + pattern_.substr(end_);
}

std::string ValueFormat::dateText(dao::Date date) const {
    const dao::Calendar calendar = dao::calendarOf(date);
    std::string out;
    for (size_t i = 0; i < pattern_.size();) {
        const char letter = capital(pattern_[i]);
        size_t end = i + 1;
        while (end < pattern_.size() && capital(pattern_[end]) == letter) ++end;
        const bool isPart = kDateLetters.find(letter) != std::string_view::npos;
        out += isPart ? partOfDate(calendar, letter, end - i) : pattern_.substr(i, end - i);
        i = end;
    }
    return out;
}

}  // namespace norvane
