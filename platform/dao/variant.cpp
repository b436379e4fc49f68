#include "platform/dao/variant.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "platform/text/text.h"

namespace dao {
namespace {

// Days from 30 December 1899 to a day of the proleptic Gregorian calendar.
long dayNumber(int year, int month, int day) {
    long y = year - (month <= 2);
    long era = (y >= 0 ? y : y - 399) / 400;
    long yearOfEra = y - era * 400;
    long dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 693899;
}

void calendarDay(long days, int& year, int& month, int& day) {
    long z = days + 693899;
    long era = (z >= 0 ? z : z - 146096) / 146097;
    long dayOfEra = z - era * 146097;
    long yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    long dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    long m = (5 * dayOfYear + 2) / 153;
    day = static_cast<int>(dayOfYear - (153 * m + 2) / 5 + 1);
    month = static_cast<int>(m + (m < 10 ? 3 : -9));
    year = static_cast<int>(yearOfEra + era * 400 + (month <= 2));
}

int daysOfMonth(int year, int month) {
    static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return month == 2 && leap ? 29 : kDays[month - 1];
}

// Reads a date's text from left to right.
class Reader {
  public:
    explicit Reader(std::string_view s) : rest_(s) {}
    bool atEnd() const { return rest_.empty(); }
    bool take(char c) {
        if (rest_.empty() || rest_.front() != c) return false;
        rest_.remove_prefix(1);
        return true;
    }
    bool takeWord(std::string_view word) {
        if (!text::equalNoCase(rest_.substr(0, word.size()), word)) return false;
        rest_.remove_prefix(word.size());
        return true;
    }
    void skipBlanks() {
        while (take(' ')) {
        }
    }
    // A run of one to four digits.
    bool number(int& value, int& digits) {
        auto [end, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), value);
        digits = static_cast<int>(end - rest_.data());
        if (error != std::errc() || rest_.front() == '-' || digits > 4) return false;
        rest_.remove_prefix(static_cast<size_t>(digits));
        return true;
    }

  private:
    std::string_view rest_;
};

// What follows the hour of a time: minutes, perhaps seconds, perhaps AM or PM.
bool readTime(Reader& in, int& hour, int& minute, int& second) {
    int digits;
    if (!in.take(':') || !in.number(minute, digits)) return false;
    if (in.take(':')) {
        if (!in.number(second, digits)) return false;
        // A fraction of a second is below what a date keeps.
        int fraction;
        if (in.take('.') && !in.number(fraction, digits)) return false;
    }
    in.skipBlanks();
    bool pm = in.takeWord("PM");
    if (pm || in.takeWord("AM")) {
        if (hour < 1 || hour > 12) return false;
        hour = hour % 12 + (pm ? 12 : 0);
    }
    return in.atEnd();
}

}  // namespace

bool dateFromCalendar(int year, int month, int day, int hour, int minute, int second, Date& date) {
    if (year < 100 || year > 9999 || month < 1 || month > 12 || day < 1 || day > daysOfMonth(year, month))
        return false;
    if (hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59) return false;
    double days = static_cast<double>(dayNumber(year, month, day));
    double time = (hour * 3600 + minute * 60 + second) / 86400.0;
    date.days = days < 0 ? days - time : days + time;
    return true;
}

Calendar calendarOf(Date date) {
    // Days outside the calendar occur only in damaged files.
    double inRange = std::clamp(date.days, -657434.0, 2958465.99999);
    double whole = std::trunc(inRange);
    long seconds = std::lround(std::fabs(inRange - whole) * 86400.0);
    long days = static_cast<long>(whole) + seconds / 86400;
    seconds %= 86400;
    Calendar c{};
    calendarDay(days, c.year, c.month, c.day);
    c.hour = static_cast<int>(seconds / 3600);
    c.minute = static_cast<int>(seconds / 60 % 60);
    c.second = static_cast<int>(seconds % 60);
    return c;
}

bool dateFromText(std::string_view s, Date& date) {
    Reader in(text::trim(s));
    int first, second, third, digits, thirdDigits;
    int hour = 0, minute = 0, sec = 0;
    if (!in.number(first, digits)) return false;
    if (!in.take('-') && !in.take('/')) {
        // A time alone is the time of the day from which dates count.
        hour = first;
        return readTime(in, hour, minute, sec) && dateFromCalendar(1899, 12, 30, hour, minute, sec, date);
    }
    bool yearFirst = digits == 4;
    if (!in.number(second, digits) || (!in.take('-') && !in.take('/')) || !in.number(third, thirdDigits))
        return false;
    if (!in.atEnd()) {
        if (!in.take('T')) in.skipBlanks();
        if (!in.atEnd() && (!in.number(hour, digits) || !readTime(in, hour, minute, sec))) return false;
    }
    if (yearFirst) return dateFromCalendar(first, second, third, hour, minute, sec, date);
    int year = thirdDigits <= 2 ? third + (third < 30 ? 2000 : 1900) : third;
    return dateFromCalendar(year, first, second, hour, minute, sec, date);
}

namespace {

std::string dateText(Date date) {
    constexpr std::string_view kMidnight = " 00:00:00";
    std::string out = dateAndTime(date);
    if (out.ends_with(kMidnight)) out.resize(out.size() - kMidnight.size());
    return out;
}

template <typename Real>
std::string shortest(Real value) {
    char buffer[64];
    return {buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr};
}

struct ToText {
    std::string operator()(std::monostate) const { return ""; }
    std::string operator()(bool v) const { return v ? "-1" : "0"; }
    std::string operator()(uint8_t v) const { return std::to_string(v); }
    std::string operator()(int16_t v) const { return std::to_string(v); }
    std::string operator()(int32_t v) const { return std::to_string(v); }
    std::string operator()(float v) const { return exactText(v); }
    std::string operator()(double v) const { return text::fromReal(v); }
    std::string operator()(Currency v) const {
        return text::fromReal(static_cast<double>(v.tenThousandths) / 10000.0);
    }
    std::string operator()(Date v) const { return dateText(v); }
    std::string operator()(const std::string& v) const { return v; }
    std::string operator()(const Binary&) const { return ""; }
};

struct ToNumber {
    double& number;
    bool operator()(std::monostate) const { return set(0); }
    bool operator()(bool v) const { return set(v ? -1 : 0); }
    bool operator()(Currency v) const { return set(static_cast<double>(v.tenThousandths) / 10000.0); }
    bool operator()(Date v) const { return set(v.days); }
    bool operator()(const std::string&) const { return false; }
    bool operator()(const Binary&) const { return false; }
    template <typename Number>
    bool operator()(Number v) const {
        return set(static_cast<double>(v));
    }
    bool set(double value) const {
        number = value;
        return true;
    }
};

}  // namespace

bool numberOf(const Variant& value, double& number) {
    return std::visit(ToNumber{number}, value.content());
}

std::string dateAndTime(Date date) {
    // Searches write one for each record that they look at, so it is not done by a format.
    const Calendar c = calendarOf(date);
    std::string out = "0000-00-00 00:00:00";
    auto put = [&out](size_t behind, int value) {
        for (; value > 0; value /= 10) out[--behind] = static_cast<char>('0' + value % 10);
    };
    put(4, c.year);
    put(7, c.month);
    put(10, c.day);
    put(13, c.hour);
    put(16, c.minute);
    put(19, c.second);
    return out;
}

std::string exactText(float value) {
    return shortest(value);
}

std::string exactText(double value) {
    return shortest(value);
}

std::string exactText(Currency value) {
    const int64_t n = value.tenThousandths;
    const uint64_t magnitude = n < 0 ? 0 - static_cast<uint64_t>(n) : static_cast<uint64_t>(n);
    return text::format("%s%llu.%04llu", n < 0 ? "-" : "", static_cast<unsigned long long>(magnitude / 10000),
                        static_cast<unsigned long long>(magnitude % 10000));
}

std::string toText(const Variant& value) {
    return std::visit(ToText{}, value.content());
}

}  // namespace dao
