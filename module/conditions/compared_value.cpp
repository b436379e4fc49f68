#include "module/conditions/compared_value.h"

#include <algorithm>
#include <cmath>

#include "platform/dao/convert.h"
#include "platform/text/text.h"

namespace norvane {
namespace {

constexpr int64_t kSecondsOfMinute = 60;
constexpr int64_t kSecondsOfDay = 86400;

int64_t secondOf(dao::Date date) {
    // By calendar, as a date is shown.
    const dao::Calendar c = dao::calendarOf(date);
    dao::Date day;
    dao::dateFromCalendar(c.year, c.month, c.day, 0, 0, 0, day);
    return static_cast<int64_t>(day.days) * kSecondsOfDay + (c.hour * 60 + c.minute) * kSecondsOfMinute +
           c.second;
}

}  // namespace

ValueKind ValueKindOf(int fieldType) {
    switch (fieldType) {
        case dbBoolean:
            return ValueKind::kYesNo;
        case dbDate:
            return ValueKind::kDate;
        case dbBinary:
        case dbLongBinary:
            return ValueKind::kData;
        default:
            return dao::isTextType(fieldType) ? ValueKind::kText : ValueKind::kNumber;
    }
}

const char* KindName(ValueKind kind) {
    switch (kind) {
        case ValueKind::kNumber:
            return "numbers";
        case ValueKind::kText:
            return "text";
        case ValueKind::kDate:
            return "dates";
        case ValueKind::kYesNo:
            return "Yes or No";
        default:
            return "data";
    }
}

std::optional<double> ComparedNumber(const dao::Variant& value) {
    double number = 0;
    if (value.isNull() || value.is<dao::Date>() || !dao::numberOf(value, number) || std::isnan(number))
        return std::nullopt;
    return number;
}

const std::string* ComparedText(const dao::Variant& value) {
    return value.is<std::string>() ? &value.get<std::string>() : nullptr;
}

std::optional<int64_t> ComparedSecond(const dao::Variant& value) {
    if (!value.is<dao::Date>()) return std::nullopt;
    return secondOf(value.get<dao::Date>());
}

std::optional<bool> ComparedYesNo(const dao::Variant& value) {
    const std::optional<double> number = ComparedNumber(value);
    if (!number) return std::nullopt;
    return *number != 0;
}

dao::Date DateOfSecond(int64_t second) {
    int64_t day = second / kSecondsOfDay, rest = second % kSecondsOfDay;
    if (rest < 0) {
        rest += kSecondsOfDay;
        --day;
    }
    const double time = static_cast<double>(rest) / kSecondsOfDay;
    return {static_cast<double>(day) + (day < 0 ? -time : time)};
}

std::optional<Moments> MomentsOf(std::string_view text) {
    dao::Date date;
    if (!dao::dateFromText(text, date)) return std::nullopt;
    const int64_t begin = secondOf(date);
    const auto colons = std::count(text.begin(), text.end(), ':');
    const int64_t length = colons == 0 ? kSecondsOfDay : colons == 1 ? kSecondsOfMinute : 1;
    return Moments{begin, begin + length};
}

}  // namespace norvane
