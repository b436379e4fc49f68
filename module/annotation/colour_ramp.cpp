#include "module/annotation/colour_ramp.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace norvane {

namespace {

// Luminances from 0 to 1 between which a colour has a contrast of three to one with white and with the
// window's ground.
constexpr double kDarkest = 0.155, kBrightest = 0.295;

using Linear = std::array<double, 3>;  // red, green and blue as amounts of light

// From lightness, chroma and hue in radians of a space in which equal steps look equal (OKLCH).
Linear lightOf(double lightness, double chroma, double hue) {
    const double a = chroma * std::cos(hue), b = chroma * std::sin(hue);
    const double l = std::pow(lightness + 0.3963377774 * a + 0.2158037573 * b, 3);
    const double m = std::pow(lightness - 0.1055613458 * a - 0.0638541728 * b, 3);
    const double s = std::pow(lightness - 0.0894841775 * a - 1.2914855480 * b, 3);
    return {4.0767416621 * l - 3.3077115913 * m + 0.2309699292 * s,
            -1.2684380046 * l + 2.6097574011 * m - 0.3413193965 * s,
            -0.0041960863 * l - 0.7034186147 * m + 1.7076147010 * s};
}

double luminanceOf(const Linear& light) {
    return 0.2126 * light[0] + 0.7152 * light[1] + 0.0722 * light[2];
}

bool canBeShown(const Linear& light) {
    return std::all_of(light.begin(), light.end(), [](double part) { return part >= 0 && part <= 1; });
}

// What a screen is given for an amount of light.
Colour byteOf(double light) {
    const double part = light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
    return static_cast<Colour>(std::lround(part * 255));
}

// The colour of a hue and chroma that has a luminance.
Linear withLuminance(double chroma, double hue, double luminance) {
    double dark = 0, bright = 1;
    for (int i = 0; i < 40; ++i) {
        const double middle = (dark + bright) / 2;
        (luminanceOf(lightOf(middle, chroma, hue)) < luminance ? dark : bright) = middle;
    }
    return lightOf(dark, chroma, hue);
}

// The strongest colour of a hue, in degrees, that a screen can show at a luminance.
Colour strongest(double hueDegrees, double luminance) {
    constexpr double kStrongest = 0.2, kStep = 0.005;
    const double hue = hueDegrees * std::numbers::pi / 180;
    Linear light{};
    for (double chroma = kStrongest; chroma >= 0; chroma -= kStep) {
        light = withLuminance(chroma, hue, luminance);
        if (canBeShown(light)) break;
    }
    return byteOf(light[0]) << 16 | byteOf(light[1]) << 8 | byteOf(light[2]);
}

}  // namespace

std::vector<Colour> ColoursInOrder(size_t count) {
    constexpr double kFirstHue = 265, kLastHue = 25;  // blue and red
    std::vector<Colour> colours;
    for (size_t i = 0; i < count; ++i) {
        const double at = count == 1 ? 0 : static_cast<double>(i) / static_cast<double>(count - 1);
        // Brightest in the middle, so that classes of the two ends differ for those who see no red, too.
        const double luminance = kBrightest - (kBrightest - kDarkest) * std::abs(2 * at - 1);
        colours.push_back(strongest(kFirstHue + (kLastHue - kFirstHue) * at, luminance));
    }
    return colours;
}

std::vector<Colour> ColoursOfKinds(size_t count) {
    constexpr double kFirstHue = 265, kGoldenAngle = 137.508;
    std::vector<Colour> colours;
    for (size_t i = 0; i < count; ++i) {
        constexpr size_t kLevels = 3;
        const double level = static_cast<double>(i % kLevels) / (kLevels - 1);
        colours.push_back(strongest(std::fmod(kFirstHue + kGoldenAngle * static_cast<double>(i), 360),
                                    kDarkest + (kBrightest - kDarkest) * level));
    }
    return colours;
}

namespace {

using Channels = std::array<double, 3>;  // from 0 to 255

Channels channelsOf(Colour colour) {
    return {static_cast<double>(colour >> 16 & 0xFF), static_cast<double>(colour >> 8 & 0xFF),
            static_cast<double>(colour & 0xFF)};
}

// The number of the grey that others have; those below it are as good as hues of the circle, or white.
constexpr int kGrey = 8;

// The colour numbers from 10 on go round a circle of hues in steps of 15 degrees, with five shades each, of
// which every second number is a pale one.
Channels channelsOfNumber(int number) {
    constexpr double kShades[] = {1.0, 0.74, 0.5, 0.41, 0.31};
    const double hue = (number / 10 - 1) * 0.25, shade = kShades[number % 10 / 2];
    const double strength = number % 2 == 0 ? 1.0 : 0.33;
    if (number == kGrey) return {128, 128, 128};
    Channels channels{};
    constexpr double kShifts[] = {5, 3, 1};  // of red, green and blue
    for (size_t i = 0; i < channels.size(); ++i) {
        const double place = std::fmod(kShifts[i] + hue, 6);
        channels[i] = 255 * shade * (1 - strength * std::clamp(std::min(place, 4 - place), 0.0, 1.0));
    }
    return channels;
}

}  // namespace

int NearestColourNumber(Colour colour) {
    constexpr int kFirst = 10, kLast = 249;
    const Channels wanted = channelsOf(colour);
    int nearest = kGrey;
    double least = -1;
    for (int number = kGrey; number <= kLast; ++number) {
        if (number > kGrey && number < kFirst) continue;
        const Channels channels = channelsOfNumber(number);
        double distance = 0;
        for (size_t i = 0; i < channels.size(); ++i) distance += std::pow(channels[i] - wanted[i], 2);
        if (least < 0 || distance < least) least = distance, nearest = number;
    }
    return nearest;
}

}  // namespace norvane
