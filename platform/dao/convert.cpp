#include "platform/dao/convert.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

#include "platform/text/text.h"

namespace dao {
namespace {

std::string_view nameOfType(int type) {
    switch (type) {
        case dbBoolean:
            return "Yes or No";
        case dbByte:
        case dbInteger:
        case dbLong:
            return "whole numbers";
        case dbCurrency:
            return "amounts of money";
        case dbSingle:
        case dbDouble:
            return "numbers";
        case dbDate:
            return "dates";
        default:
            return "text";
    }
}

[[noreturn]] void conversionError(const Variant& value, const CDaoFieldInfo& field) {
    std::string what = value.is<Binary>() ? "binary data" : "\"" + toText(value) + "\"";
    throw CDaoException("Data type conversion error: the field " + field.name + " holds " +
                        std::string(nameOfType(field.type)) + ", and " + what + " cannot be converted.");
}

[[noreturn]] void overflow(const Variant& value, const CDaoFieldInfo& field) {
    throw CDaoException("Overflow: the number " + toText(value) + " is out of the range of the field " +
                        field.name + ".");
}

double toNumber(const Variant& value, const CDaoFieldInfo& field) {
    double number;
    if (numberOf(value, number)) return number;
    std::optional<double> read;
    if (value.is<std::string>()) read = text::wholeReal(text::trim(value.get<std::string>()));
    if (!read) conversionError(value, field);
    return *read;
}

template <typename T>
Variant toWhole(const Variant& value, const CDaoFieldInfo& field) {
    if (value.is<T>()) return value;
    double number = std::nearbyint(toNumber(value, field));
    if (!(number >= std::numeric_limits<T>::min() && number <= std::numeric_limits<T>::max()))
        overflow(value, field);
    return Variant(static_cast<T>(number));
}

Variant toSingle(const Variant& value, const CDaoFieldInfo& field) {
    if (value.is<float>()) return value;
    double number = toNumber(value, field);
    if (std::fabs(number) > static_cast<double>(std::numeric_limits<float>::max())) overflow(value, field);
    return Variant(static_cast<float>(number));
}

// An amount in digits with up to four decimals, exactly. Nothing for other texts and for what is too large.
std::optional<Currency> exactAmount(std::string_view s) {
    constexpr size_t kDecimals = 4;
    s = text::trim(s);
    bool isNegative = s.starts_with('-');
    if (isNegative || s.starts_with('+')) s.remove_prefix(1);
    size_t point = std::min(s.find('.'), s.size());
    std::string digits(s.substr(0, point));
    std::string_view decimals = s.substr(std::min(point + 1, s.size()));
    if (digits.empty() || decimals.size() > kDecimals) return std::nullopt;
    digits.append(decimals).append(kDecimals - decimals.size(), '0');
    if (digits.find_first_not_of("0123456789") != std::string::npos) return std::nullopt;
    Currency amount{};
    std::string number = (isNegative ? "-" : "") + digits;
    auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), amount.tenThousandths);
    return error == std::errc() ? std::optional(amount) : std::nullopt;
}

Variant toCurrency(const Variant& value, const CDaoFieldInfo& field) {
    if (value.is<Currency>()) return value;
    if (value.is<std::string>())
        if (auto amount = exactAmount(value.get<std::string>())) return Variant(*amount);
    double amount = std::nearbyint(toNumber(value, field) * 10000.0);
    if (!(std::fabs(amount) < 9.2e18)) overflow(value, field);
    return Variant(Currency{static_cast<int64_t>(amount)});
}

Variant toBoolean(const Variant& value, const CDaoFieldInfo& field) {
    if (value.is<bool>()) return value;
    if (value.is<std::string>()) {
        std::string_view word = text::trim(value.get<std::string>());
        for (const char* yes : {"True", "Yes", "On"})
            if (text::equalNoCase(word, yes)) return Variant(true);
        for (const char* no : {"False", "No", "Off"})
            if (text::equalNoCase(word, no)) return Variant(false);
    }
    return Variant(toNumber(value, field) != 0);
}

Variant toDate(const Variant& value, const CDaoFieldInfo& field) {
    if (value.is<Date>()) return value;
    Date date;
    if (value.is<std::string>()) {
        if (!dateFromText(value.get<std::string>(), date)) conversionError(value, field);
        return Variant(date);
    }
    date.days = toNumber(value, field);
    if (!(date.days >= -657434.0 && date.days < 2958466.0)) overflow(value, field);
    return Variant(date);
}

Variant toTextValue(Variant value, const CDaoFieldInfo& field) {
    if (value.is<Binary>()) conversionError(value, field);
    if (!value.is<std::string>()) value = Variant(toText(value));
    const std::string& s = value.get<std::string>();
    long limit = field.type == dbText ? (field.size > 0 ? field.size : 255) : 0;
    if (limit && static_cast<long>(s.size()) > limit && characters(s) > limit)
        throw CDaoException("The text for the field " + field.name + " is too long: it holds " +
                            std::to_string(limit) + " characters.");
    return value;
}

Variant toBinary(const Variant& value, const CDaoFieldInfo& field) {
    Binary bytes;
    if (value.is<Binary>())
        bytes = value.get<Binary>();
    else if (value.is<std::string>())
        bytes.assign(value.get<std::string>().begin(), value.get<std::string>().end());
    else
        conversionError(value, field);
    if (field.type == dbBinary && field.size > 0 && static_cast<long>(bytes.size()) > field.size)
        throw CDaoException("The data for the field " + field.name + " is too long: it holds " +
                            std::to_string(field.size) + " bytes.");
    return Variant(std::move(bytes));
}

}  // namespace

long characters(std::string_view s) {
    long count = 0;
    for (char c : s) count += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    return count;
}

bool isTextType(int type) {
    return type == dbText || type == dbMemo || type == dbGUID;
}

Variant convertTo(Variant value, const CDaoFieldInfo& field) {
    if (value.isNull()) return value;
    switch (field.type) {
        case dbBoolean:
            return toBoolean(value, field);
        case dbByte:
            return toWhole<uint8_t>(value, field);
        case dbInteger:
            return toWhole<int16_t>(value, field);
        case dbLong:
            return toWhole<int32_t>(value, field);
        case dbCurrency:
            return toCurrency(value, field);
        case dbSingle:
            return toSingle(value, field);
        case dbDouble:
            return value.is<double>() ? value : Variant(toNumber(value, field));
        case dbDate:
            return toDate(value, field);
        case dbBinary:
        case dbLongBinary:
            return toBinary(value, field);
        default:
            return toTextValue(std::move(value), field);
    }
}

void checkValue(const Variant& value, const CDaoFieldInfo& field) {
    if (value.isNull() && field.required)
        throw CDaoException("The field " + field.name + " must have a value.");
    if (!field.allowZeroLength && isTextType(field.type) && value.is<std::string>() &&
        value.get<std::string>().empty())
        throw CDaoException("The field " + field.name + " cannot hold text of no length.");
}

}  // namespace dao
