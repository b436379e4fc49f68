#include "module/exchange/dbf_number.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>

namespace norvane {

namespace {

// Of a double in plain digits with 255 decimals.
constexpr size_t kLongest = 640;
// Of a sign, the digits of any 64 bits, and a point.
constexpr size_t kLongestQuick = 32;
constexpr size_t kMostDigits = 19;  // of which any number has 64 bits
constexpr double kPowers[] = {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};

// The value in units of its last decimal, where one multiplication rounds as exact arithmetic would: the
// product is off by far less than its distance from a half. False when it might not.
bool toUnits(double value, int decimals, uint64_t& units) {
    constexpr double kExact = 1e14, kMargin = 0.02;
    if (decimals >= static_cast<int>(std::size(kPowers))) return false;
    double scaled = std::fabs(value) * kPowers[decimals];
    if (scaled >= kExact) return false;
    units = static_cast<uint64_t>(scaled);
    double rest = scaled - static_cast<double>(units);
    if (std::fabs(rest - 0.5) < kMargin) return false;
    if (rest > 0.5) ++units;
    return true;
}

// Writes from the last digit backwards, in front of `end`. Where the text begins.
char* putUnits(uint64_t units, int decimals, bool negative, char* end) {
    auto putDigits = [&](uint32_t number, int least) {
        for (; number > 0 || least > 0; number /= 10, --least) *--end = static_cast<char>('0' + number % 10);
    };
    if (decimals > 0) {
        const auto unit = static_cast<uint64_t>(kPowers[decimals]);
        putDigits(static_cast<uint32_t>(units % unit), decimals);
        *--end = '.';
        units /= unit;
    }
    // Numbers of 32 bits are the quicker ones to divide.
    constexpr int kDigitsOfPart = 9;
    constexpr uint64_t kPart = 1000000000;
    for (; units >= kPart; units /= kPart) putDigits(static_cast<uint32_t>(units % kPart), kDigitsOfPart);
    putDigits(static_cast<uint32_t>(units), 1);
    if (negative) *--end = '-';
    return end;
}

// Whether a number of units takes no more than `room` bytes.
bool fits(uint64_t units, int decimals, bool negative, size_t room) {
    static constexpr auto kLimits = [] {
        std::array<uint64_t, kMostDigits + 1> limits{1};
        for (size_t i = 1; i < limits.size(); ++i) limits[i] = limits[i - 1] * 10;
        return limits;
    }();
    const size_t others = (decimals > 0) + negative;  // the point and the sign
    if (room < others + static_cast<size_t>(decimals) + 1) return false;
    return units < kLimits[std::min(room - others, kMostDigits)];
}

// `text` stands at the right end of the room; of a longer one the first bytes are kept.
void putRight(const char* text, size_t length, char* out, size_t room) {
    const size_t shown = std::min(length, room);
    std::memset(out, ' ', room - shown);
    std::memcpy(out + room - shown, text, shown);
}

}  // namespace

void FormatDbfNumber(double value, int width, int decimals, char* out) {
    const size_t room = static_cast<size_t>(width);
    if (!std::isfinite(value)) {
        std::memset(out, ' ', room);
        return;
    }
    uint64_t units = 0;
    if (decimals == 0) {
        constexpr double kLow = std::numeric_limits<int32_t>::min(),
                         kHigh = std::numeric_limits<int32_t>::max();
        value = std::trunc(std::clamp(value, kLow, kHigh));
        units = static_cast<uint64_t>(std::fabs(value));
        value = units == 0 ? 0 : value;  // a whole 0 has no sign
    } else if (!toUnits(value, decimals, units)) {
        char digits[kLongest];
        auto end = std::to_chars(digits, digits + kLongest, value, std::chars_format::fixed, decimals).ptr;
        putRight(digits, static_cast<size_t>(end - digits), out, room);
        return;
    }
    const bool negative = std::signbit(value);
    if (fits(units, decimals, negative, room)) {
        std::fill(out, putUnits(units, decimals, negative, out + room), ' ');
        return;
    }
    char text[kLongestQuick];
    char* end = text + kLongestQuick;
    const char* begin = putUnits(units, decimals, negative, end);
    putRight(begin, static_cast<size_t>(end - begin), out, room);
}

}  // namespace norvane
