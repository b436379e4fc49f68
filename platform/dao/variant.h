// A value of a field, as a record set hands it out and takes it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace dao {

// Money in ten-thousandths.
struct Currency {
    int64_t tenThousandths = 0;
    bool operator==(const Currency&) const = default;
};

// Days since 30 December 1899. Before that day the whole part counts back while the fraction (the time of
// day) still counts forward.
struct Date {
    double days = 0;
    bool operator==(const Date&) const = default;
};

using Binary = std::vector<unsigned char>;

class Variant {
  public:
    using Content = std::variant<std::monostate, bool, uint8_t, int16_t, int32_t, float, double, Currency,
                                 Date, std::string, Binary>;

    Variant() = default;  // Null
    Variant(bool v) : content_(v) {}
    Variant(uint8_t v) : content_(v) {}
    Variant(int16_t v) : content_(v) {}
    Variant(int32_t v) : content_(v) {}
    Variant(float v) : content_(v) {}
    Variant(double v) : content_(v) {}
    Variant(Currency v) : content_(v) {}
    Variant(Date v) : content_(v) {}
    Variant(std::string v) : content_(std::move(v)) {}
    Variant(std::string_view v) : content_(std::string(v)) {}
    Variant(const char* v) : content_(std::string(v)) {}
    Variant(Binary v) : content_(std::move(v)) {}

    bool isNull() const { return std::holds_alternative<std::monostate>(content_); }
    template <typename T>
    bool is() const {
        return std::holds_alternative<T>(content_);
    }
    // The value of the type that it has; nothing is converted.
    template <typename T>
    const T& get() const {
        return std::get<T>(content_);
    }
    const Content& content() const { return content_; }
    bool operator==(const Variant&) const = default;

  private:
    Content content_;
};

// The number of a value that counts as one: 0 for Null, days for a date, -1 for true. False for text and
// binary data.
bool numberOf(const Variant& value, double& number);

// The value as text: "" for Null and binary data, whole numbers in digits, reals with up to nine decimals
// without trailing zeros, dates as "2004-05-31 13:45:10" (without a time at midnight), booleans as -1 and 0.
std::string toText(const Variant& value);

// "2004-05-31 13:45:10", also at midnight.
std::string dateAndTime(Date date);

// The shortest text that is this number and no other.
std::string exactText(float value);
std::string exactText(double value);
// With all four decimals.
std::string exactText(Currency value);

// Dates by calendar. An invalid day gives false.
bool dateFromCalendar(int year, int month, int day, int hour, int minute, int second, Date& date);
struct Calendar {
    int year, month, day, hour, minute, second;
};
Calendar calendarOf(Date date);
// "2004-05-31", "2004/5/31" or "5/31/2004" (two-digit years from 30 on are of the last century), alone, with
// a time "13:45", "13:45:10", "1:45:10 PM" behind it, or a time alone. False when the text is no date.
bool dateFromText(std::string_view text, Date& date);

}  // namespace dao
