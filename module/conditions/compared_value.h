// Values as conditions compare them.
//
// Numbers compare as reals, one of a Single field with a number of its precision. Texts compare by their
// upper case, byte by byte, so that the order is that of the code points; blanks at the end count. Dates
// compare by the second, and a date that is written without a time stands for the whole day.
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "platform/dao/dao.h"

namespace norvane {

enum class ValueKind { kNumber, kText, kDate, kYesNo, kData };

// What a field of this type holds. Nothing can be asked of data but whether there are any.
ValueKind ValueKindOf(int fieldType);
// "numbers", "text", ... for sentences.
const char* KindName(ValueKind kind);

// What a written date stands for: seconds from 30 December 1899, up to the first one behind.
struct Moments {
    int64_t begin = 0;
    int64_t end = 0;
    auto operator<=>(const Moments&) const = default;
};

struct FoldedText {
    std::string upper;
    auto operator<=>(const FoldedText&) const = default;
};

// A value that stands in a condition, in the terms of the field that it is compared with.
using ComparedValue = std::variant<double, FoldedText, Moments, bool>;

// A value of a record; nothing for Null and for what is not of the field's kind, of which nothing is known.
std::optional<double> ComparedNumber(const dao::Variant& value);
const std::string* ComparedText(const dao::Variant& value);
std::optional<int64_t> ComparedSecond(const dao::Variant& value);
std::optional<bool> ComparedYesNo(const dao::Variant& value);

// The second as a date.
dao::Date DateOfSecond(int64_t second);
// What a text between # signs stands for: a day, a minute or a second. Nothing where it is no date.
std::optional<Moments> MomentsOf(std::string_view text);

}  // namespace norvane
