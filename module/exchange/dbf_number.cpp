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
    double whole = std::floor(scaled);
    double rest = scaled - whole;
    if (std::fabs(rest - 0.5) < kMargin) return 0;
    auto units = static_cast<int64_t>(whole) + (rest > 0.5 ? 1 : 0);
    auto one = static_cast<int64_t>(kPowers[decimals]);
    char* at = out;
    if (std::signbit(value)) *at++ = '-';
    at += digitsOf(units / one, at);
    *at++ = '.';
    int64_t fraction = units % one;
    for (int i = decimals; i-- > 0; fraction /= 10) at[i] = static_cast<char>('0' + fraction % 10);
    return static_cast<size_t>(at + decimals - out);
}

}  // namespace

void formatDbfNumber(double value, int width, int decimals, char* out) {
    size_t room = static_cast<size_t>(width);
    std::memset(out, ' ', room);
    if (!std::isfinite(value)) return;
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
    if (length >= room)
        std::memcpy(out, digits, room);
    else
        std::memcpy(out + room - length, digits, length);
}
