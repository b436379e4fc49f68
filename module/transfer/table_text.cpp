#include "module/transfer/table_text.h"

#include <optional>
#include <vector>

#include "platform/dao/variant.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

bool isCalendarDay(long year, long month, long day) {
    constexpr long kLastYear = 9999;
    dao::Date date;
    if (year < 0 || year > kLastYear || month < 1 || month > 12 || day < 1 || day > 31) return false;
    // Years of two digits are some year of our time: whether it is a leap year is all that counts here.
    constexpr long kCentury = 100;
    const long full = year < kCentury ? year + (year < 30 ? 2000 : 1900) : year;
    return dao::dateFromCalendar(static_cast<int>(full), static_cast<int>(month), static_cast<int>(day), 0, 0,
                                 0, date);
}

// Whether a text of three numbers between slashes is a date in any order that has one: dates were taken so
// since programs of the old days had each their own.
bool isDate(const std::string& text) {
    std::vector<long> numbers;
    for (const std::string& piece : text::split(text, '/')) {
        if (piece.empty() || piece.find_first_not_of("0123456789") != std::string::npos) return false;
        numbers.push_back(text::toLong(piece));
    }
    if (numbers.size() != 3) return false;
    const long a = numbers[0], b = numbers[1], c = numbers[2];
    return isCalendarDay(c, a, b) || isCalendarDay(a, b, c) || isCalendarDay(c, b, a) ||
           isCalendarDay(a, c, b);
}

std::string joined(const std::string& first, const std::string& second, const std::string& third) {
    return first + "/" + second + "/" + third;
}

bool isYear(const std::string& digits) {
    constexpr long kFirst = 1929, kLast = 2029;
    const long year = text::toLong(digits);
    return year >= kFirst && year <= kLast;
}

// What a date that makes no sense may have been: one of the last century whose zeros stand for "19", in front
// of the year or behind it.
std::optional<std::string> dateOfLastCentury(const std::string& digits) {
    const std::string first = digits.substr(0, 2), second = digits.substr(2, 2), third = digits.substr(4, 2),
                      last = digits.substr(6, 2);
    std::optional<std::string> found;
    if (first == "00" && second != "00")
        if (std::string tried = joined("19" + second, third, last); isDate(tried)) found = tried;
    if (third == "00" && last != "00")
        if (std::string tried = joined(first, second, "19" + last); isDate(tried)) found = tried;
    return found;
}

std::string eightDigits(const std::string& digits) {
    std::string date = digits;
    if (isYear(digits.substr(4)))
        date = joined(digits.substr(0, 2), digits.substr(2, 2), digits.substr(4));
    else if (isYear(digits.substr(0, 4)))
        date = joined(digits.substr(0, 4), digits.substr(4, 2), digits.substr(6));
    return isDate(date) ? date : dateOfLastCentury(digits).value_or(date);
}

std::string sixDigits(const std::string& digits) {
    const long month = text::toLong(digits.substr(0, 2)), day = text::toLong(digits.substr(2, 2));
    const bool isDay = month >= 1 && month <= 12 && day >= 1 && day <= 31;
    return isDay ? joined(digits.substr(0, 2), digits.substr(2, 2), digits.substr(4)) : digits;
}

}  // namespace

std::string DateText(const std::string& digits) {
    if (digits.find_first_not_of("0123456789") != std::string::npos) return digits;
    const bool isZero = digits.find_first_not_of('0') == std::string::npos;
    if (digits.size() == 8) return isZero ? "" : eightDigits(digits);
    if (digits.size() == 6) return isZero ? "" : sixDigits(digits);
    return digits;
}

std::string WithoutSpareZeros(const std::string& number) {
    // Those of an exponent are its own.
    const bool hasExponent = number.find_first_of("eE") != std::string::npos;
    return text::stripLeadingZeros(hasExponent ? number : text::stripZeros(number));
}

std::string TableText(DbfFieldClass type, const std::string& value) {
    if (value.empty()) return "";
    switch (type) {
        case kDbfDate:
            return DateText(value);
        case kDbfInteger:
            return text::stripLeadingZeros(value);
        case kDbfDouble:
            return WithoutSpareZeros(value);
        default:
            return value;
    }
}

}  // namespace norvane
