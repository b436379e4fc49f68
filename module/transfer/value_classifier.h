// What a text is read as where a table wants numbers.
#pragma once

#include <string_view>

namespace norvane {

enum class ValueClass { kText, kReal, kInteger };

// kInteger: a sign and decimal digits, of any length. kReal: the same with a point or an exponent, in the
// range of a double. Blanks may stand in front of either, and nothing behind it. All else is text, also
// "0x1F", "inf" and an empty text.
ValueClass ClassifyValue(std::string_view value);

// Whether an integer is one of 32 bits, as a long column holds them.
bool FitsLong(std::string_view integer);

}  // namespace norvane
