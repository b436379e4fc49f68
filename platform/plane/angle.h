// Angles: in radians, counterclockwise from the x axis.
#pragma once

#include <cmath>
#include <numbers>

namespace plane {

constexpr double kFullTurn = 2 * std::numbers::pi;
constexpr double kDegree = std::numbers::pi / 180;

// The same direction, from 0 up to a full turn.
inline double withinTurn(double angle) {
    double within = std::fmod(angle, kFullTurn);
    return within < 0 ? within + kFullTurn : within;
}

// The way from one direction counterclockwise to another, above 0; equal ones are a full turn apart.
inline double sweepBetween(double start, double end) {
    double sweep = std::fmod(end - start, kFullTurn);
    return sweep <= 0 ? sweep + kFullTurn : sweep;
}

}  // namespace plane
