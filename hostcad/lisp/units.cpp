#include "hostcad/lisp/units.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

#include "platform/text/text.h"

namespace hostcad::lisp {

namespace {

constexpr double kPi = std::numbers::pi;
constexpr int kMostDecimals = 16;
constexpr int kMostFractionBits = 8;

std::string decimalText(double number, int precision, int zeros) {
    std::string s = text::format("%.*f", precision, number);
    if (zeros & 8) s = text::stripZeros(s);
    if ((zeros & 4) && s.size() > 2 && text::startsWith(s, "0.")) s.erase(0, 1);
    if ((zeros & 4) && text::startsWith(s, "-0.") && s.size() > 3) s.erase(1, 1);
    return s;
}

// 17 1/2; the fraction in lowest terms.
std::string fractionText(double number, int precision, bool showZero) {
    auto parts = static_cast<long long>(1) << precision;
    auto count = static_cast<long long>(std::llround(number * static_cast<double>(parts)));
    long long whole = count / parts, rest = count % parts;
    if (rest == 0) return whole == 0 && !showZero ? "0" : std::to_string(whole);
    long long divisor = std::gcd(rest, parts);
    std::string fraction = std::to_string(rest / divisor) + "/" + std::to_string(parts / divisor);
    return whole == 0 ? fraction : std::to_string(whole) + " " + fraction;
}

// Feet and inches, rounded together so that 11.999" becomes 1' and not 12".
std::string feetText(double length, bool asFraction, int precision, int zeros) {
    double unit = asFraction ? std::pow(2.0, -precision) : std::pow(10.0, -precision);
    double inches = std::round(length / unit) * unit;
    double feet = std::floor(inches / 12 + unit / 100);
    inches = std::max(0.0, inches - feet * 12);
    int rule = zeros & 3;
    bool noFeet = feet == 0 && (rule == 0 || rule == 3);
    bool noInches = inches < unit / 2 && (rule == 0 || rule == 2);
    if (noInches && !noFeet) return text::format("%.0f'", feet);
    std::string s = noFeet ? "" : text::format("%.0f'-", feet);
    s += asFraction ? fractionText(inches, precision, true) : decimalText(inches, precision, zeros & 12);
    return s + "\"";
}

// An angle in degrees cut into degrees, minutes and seconds as far as the precision goes.
std::string sexagesimalText(double degrees, int precision) {
    int decimals = std::max(0, precision - 4);
    double steps = precision == 0 ? 1 : precision <= 2 ? 60 : 3600 * std::pow(10.0, decimals);
    double rounded = std::round(degrees * steps) / steps;
    double whole = std::floor(rounded + 1e-12);
    if (precision == 0) return text::format("%.0fd", whole);
    double minutes = std::max(0.0, (rounded - whole) * 60);
    if (precision <= 2) return text::format("%.0fd%.0f'", whole, minutes);
    double wholeMinutes = std::floor(minutes + 1e-9);
    double seconds = std::max(0.0, (minutes - wholeMinutes) * 60);
    return text::format("%.0fd%.0f'%.*f\"", whole, wholeMinutes, decimals, seconds);
}

std::string surveyorText(double degrees, int precision) {
    constexpr double kNear = 1e-9;
    auto isAt = [&](double direction) { return std::abs(degrees - direction) < kNear; };
    if (isAt(0) || isAt(360)) return "E";
    if (isAt(90)) return "N";
    if (isAt(180)) return "W";
    if (isAt(270)) return "S";
    bool north = degrees < 180, east = degrees < 90 || degrees > 270;
    double bearing = degrees < 90    ? 90 - degrees
                     : degrees < 180 ? degrees - 90
                     : degrees < 270 ? 270 - degrees
                                     : degrees - 270;
    return std::string(north ? "N " : "S ") + sexagesimalText(bearing, precision) + (east ? " E" : " W");
}

// The number at the front of the text, which moves behind it. A plus is no part of it.
std::optional<double> takeNumber(std::string_view& s) {
    double number = 0;
    size_t used = s.starts_with('+') ? 0 : text::readReal(s, number);
    if (used == 0) return {};
    s.remove_prefix(used);
    return number;
}

bool take(std::string_view& s, char c) {
    if (s.empty() ||
        std::tolower(static_cast<unsigned char>(s.front())) != std::tolower(static_cast<unsigned char>(c)))
        return false;
    s.remove_prefix(1);
    return true;
}
double takeSign(std::string_view& s) {
    if (take(s, '-')) return -1;
    take(s, '+');
    return 1;
}

void skipBlanks(std::string_view& s) {
    s = text::trimLeft(s);
}

// 17, 17.5, 1/2, 17 1/2, 17-1/2.
std::optional<double> takeMixedNumber(std::string_view& s) {
    std::optional<double> number = takeNumber(s);
    if (!number) return {};
    std::string_view rest = s;
    if (take(rest, '/')) {
        std::optional<double> under = takeNumber(rest);
        if (!under || *under == 0) return {};
        s = rest;
        return *number / *under;
    }
    if (!take(rest, '-') && !take(rest, ' ')) return number;
    std::optional<double> over = takeNumber(rest);
    if (!over || !take(rest, '/')) return number;
    std::optional<double> under = takeNumber(rest);
    if (!under || *under == 0) return number;
    s = rest;
    return *number + *over / *under;
}

// 45, 45.5, 45d30', 45d30'15": in degrees.
std::optional<double> takeDegrees(std::string_view& s, bool& isMarked) {
    std::optional<double> degrees = takeNumber(s);
    if (!degrees) return {};
    isMarked = take(s, 'd');
    if (!isMarked) return degrees;
    double part = 60;
    for (char mark : {'\'', '"'}) {
        std::optional<double> number = takeNumber(s);
        if (!number) break;
        *degrees += *number / part;
        part *= 60;
        take(s, mark);
    }
    return degrees;
}

std::optional<double> parseBearing(std::string_view s) {
    bool north = take(s, 'n');
    if (!north && !take(s, 's')) return {};
    skipBlanks(s);
    bool marked = false;
    std::optional<double> degrees = takeDegrees(s, marked);
    if (!degrees) return s.empty() ? std::optional<double>(north ? kPi / 2 : 1.5 * kPi) : std::nullopt;
    skipBlanks(s);
    bool east = take(s, 'e');
    if ((!east && !take(s, 'w')) || !s.empty()) return {};
    double azimuth =
        north ? (east ? 90 - *degrees : 90 + *degrees) : (east ? 270 + *degrees : 270 - *degrees);
    return azimuth * kPi / 180;
}

}  // namespace

std::string lengthText(double length, LengthFormat format, int precision, int zeros) {
    precision = std::clamp(precision, 0, kMostDecimals);
    int bits = std::min(precision, kMostFractionBits);
    std::string sign = std::signbit(length) && length != 0 ? "-" : "";
    // Beyond this size feet, inches and fractions lose their meaning.
    constexpr double kLargestFraction = 1e12;
    bool isLarge = !(std::abs(length) < kLargestFraction);
    switch (format) {
        case LengthFormat::Scientific:
            return text::format("%.*E", precision, length);
        case LengthFormat::Engineering:
            if (isLarge) break;
            return sign + feetText(std::abs(length), false, precision, zeros);
        case LengthFormat::Architectural:
            if (isLarge) break;
            return sign + feetText(std::abs(length), true, bits, zeros);
        case LengthFormat::Fractional:
            if (isLarge) break;
            return sign + fractionText(std::abs(length), bits, true);
        case LengthFormat::Decimal:
            break;
    }
    return decimalText(length, precision, zeros);
}

std::string angleText(double radians, AngleFormat format, int precision, int zeros) {
    precision = std::clamp(precision, 0, kMostDecimals);
    double turned = std::fmod(radians, 2 * kPi);
    if (turned < 0) turned += 2 * kPi;
    double degrees = turned * 180 / kPi;
    switch (format) {
        case AngleFormat::DegreesMinutesSeconds:
            return sexagesimalText(degrees, precision);
        case AngleFormat::Grads:
            return decimalText(turned * 200 / kPi, precision, zeros) + "g";
        case AngleFormat::Radians:
            return decimalText(turned, precision, zeros) + "r";
        case AngleFormat::Surveyor:
            return surveyorText(degrees, precision);
        case AngleFormat::Degrees:
            break;
    }
    return decimalText(degrees, precision, zeros);
}

std::optional<double> parseLength(std::string_view s) {
    s = text::trim(s);
    double sign = takeSign(s);
    if (s.empty() || s.front() == '-' || s.front() == '+') return {};
    std::optional<double> number = takeMixedNumber(s);
    if (!number || !std::isfinite(*number)) return {};
    double length = *number;
    if (take(s, '\'')) {
        length *= 12;
        if (!take(s, '-')) skipBlanks(s);
        if (!s.empty()) {
            std::optional<double> inches = takeMixedNumber(s);
            if (!inches || *inches < 0) return {};
            length += *inches;
        }
    }
    take(s, '"');
    if (!s.empty()) return {};
    return sign * length;
}

std::optional<double> parseAngle(std::string_view s, AngleFormat format) {
    s = text::trim(s);
    if (std::optional<double> bearing = parseBearing(s)) return bearing;
    double sign = takeSign(s);
    bool marked = false;
    std::optional<double> number = takeDegrees(s, marked);
    if (!number || !std::isfinite(*number)) return {};
    double unit = kPi / 180;
    if (!marked) {
        if (take(s, 'g'))
            unit = kPi / 200;
        else if (take(s, 'r'))
            unit = 1;
        else if (format == AngleFormat::Grads)
            unit = kPi / 200;
        else if (format == AngleFormat::Radians)
            unit = 1;
    }
    if (!s.empty()) return {};
    return sign * *number * unit;
}

}  // namespace hostcad::lisp
