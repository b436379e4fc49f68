// How binary files hold the value of each group code.
#pragma once

#include <string_view>

namespace hostcad {

enum class BinaryValue { Text, Real, Int8, Int16, Int32, Int64, Chunk };

// The first bytes of every binary file.
constexpr std::string_view kBinarySentinel("AutoCAD Binary DXF\r\n\x1a\0", 22);

constexpr BinaryValue binaryValueOf(int code) {
    struct Range {
        int first, last;
        BinaryValue value;
    };
    constexpr Range kRanges[] = {
        {10, 59, BinaryValue::Real},      {60, 79, BinaryValue::Int16},    {90, 99, BinaryValue::Int32},
        {110, 149, BinaryValue::Real},    {160, 169, BinaryValue::Int64},  {170, 179, BinaryValue::Int16},
        {210, 239, BinaryValue::Real},    {270, 289, BinaryValue::Int16},  {290, 299, BinaryValue::Int8},
        {310, 319, BinaryValue::Chunk},   {370, 389, BinaryValue::Int16},  {400, 409, BinaryValue::Int16},
        {420, 429, BinaryValue::Int32},   {440, 459, BinaryValue::Int32},  {460, 469, BinaryValue::Real},
        {1004, 1004, BinaryValue::Chunk}, {1010, 1059, BinaryValue::Real}, {1060, 1070, BinaryValue::Int16},
        {1071, 1071, BinaryValue::Int32},
    };
    for (const Range& range : kRanges)
        if (code >= range.first && code <= range.last) return range.value;
    return BinaryValue::Text;
}

}  // namespace hostcad
