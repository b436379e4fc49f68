// Distances and angles as text, in the unit formats of the host.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace hostcad::lisp {

// The numbers are those of LUNITS and of RTOS.
enum class LengthFormat { Scientific = 1, Decimal = 2, Engineering = 3, Architectural = 4, Fractional = 5 };
// The numbers are those of AUNITS and of ANGTOS.
enum class AngleFormat { Degrees = 0, DegreesMinutesSeconds = 1, Grads = 2, Radians = 3, Surveyor = 4 };

// precision: decimals, or for fractions the power of two of the smallest one. zeros: the bits of DIMZIN, of
// which 1 to 3 rule zero feet and inches, 4 leaves out a leading and 8 all trailing zeros.
std::string lengthText(double length, LengthFormat format, int precision, int zeros = 0);
// Radians; the text is that of the angle within one turn.
std::string angleText(double radians, AngleFormat format, int precision, int zeros = 0);

// The whole text as a length: 17.5, 1.75e1, 17-1/2, 1'-5 1/2", 1'5.5". Nothing when it is none.
std::optional<double> parseLength(std::string_view text);
// The whole text as an angle in radians. A number alone is in the given format's unit; 45d30'15", 50g, 0.78r
// and N45d30'E say themselves what they are.
std::optional<double> parseAngle(std::string_view text, AngleFormat format);

}  // namespace hostcad::lisp
