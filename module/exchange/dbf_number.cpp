#include "module/exchange/dbf_number.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

namespace {

// Longer than any double in plain digits with 255 decimals.
constexpr size_t kLongest = 640;
constexpr int kMostQuickDecimals = 9;
constexpr double kPowers[] = {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};

size_t digitsOf(int64_t value, char* out) {
    return static_cast<size_t>(std::to_chars(out, out + kLongest, value).ptr - out);
}

// Rounds by one multiplication where that cannot differ from the exact rounding: the product is off by far
// less than its distance from a half. 0 when it might.
size_t quickDecimals(double value, int decimals, char* out) {
    constexpr double kExact = 1e14, kMargin = 0.02;
    if (decimals > kMostQuickDecimals) return 0;
    double scaled = std::fabs(value) * kPowers[decimals];
    if (scaled >= kExact) return 0;
    auto units = static_cast<int64_t>(scaled);
    double rest = scaled - static_cast<double>(units);
    if (std::fabs(rest - 0.5) < kMargin) return 0;
    if (rest > 0.5) ++units;
    char digits[kLongest];
    size_t count = digitsOf(units, digits), places = static_cast<size_t>(decimals);
    char* at = out;
    if (std::signbit(value)) *at++ = '-';
    size_t whole = count > places ? count - places : 0;
    if (whole == 0) *at++ = '0';
    at = std::copy_n(digits, whole, at);
    *at++ = '.';
    at = std::fill_n(at, places - (count - whole), '0');
    return static_cast<size_t>(std::copy(digits + whole, digits + count, at) - out);
}

}  // namespace

void formatDbfNumber(double value, int width, int decimals, char* out) {
    size_t room = static_cast<size_t>(width);
    if (!std::isfinite(value)) {
        std::memset(out, ' ', room);
        return;
    }
    char digits[kLongest];
    size_t length = 0;
    if (decimals == 0) {
        constexpr double kLow = std::numeric_limits<int32_t>::min(),
                         kHigh = std::numeric_limits<int32_t>::max();
        length = digitsOf(static_cast<int64_t>(std::clamp(value, kLow, kHigh)), digits);
    } else if ((length = quickDecimals(value, decimals, digits)) == 0) {
        auto end = std::to_chars(digits, digits + kLongest, value, std::chars_format::fixed, decimals).ptr;
        length = static_cast<size_t>(end - digits);
    }
    size_t shown = std::min(length, room);
    std::memset(out, ' ', room - shown);
    std::memcpy(out + room - shown, digits, shown);
}
