// Names of points: their order, and the next one of a row.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace norvane {

// -1, 0 or 1. Runs of digits compare as numbers, the rest without regard to case: A9, A10, p6, P7.
int CompareNames(std::string_view a, std::string_view b);

// The number a name begins with, 0 without one, within 32 bits.
int32_t NumberOfName(std::string_view name);
// Trimmed, with ASCII letters as capitals.
std::string NormalizedName(std::string_view name);
// `-` and `,` stand between names in ranges: each becomes "_".
std::string WithoutRangeSyntax(std::string name);
// ASCII letters as capitals; others stay, since files of other systems hold them as they were typed.
std::string UpperAscii(std::string text);

// The name that is `step` further on: 12A, 12B; P9X4, P9X5; A, B; Z, Z2.
std::string NextPointName(std::string_view name, long step);
// The name with its number, where that is negative, made positive: "A-5" is "A5".
std::string WithPositiveNumber(std::string_view name);

}  // namespace norvane
