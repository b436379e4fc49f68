// Rings that lie within others.
#pragma once

#include <span>
#include <vector>

#include "platform/plane/polyline_vertex.h"

namespace norvane {

using Ring = std::vector<plane::PolylineVertex>;

constexpr int kNoRing = -1;

// For each ring the smallest other one that it lies within, or kNoRing. Rings may touch, but one that crosses
// another does not lie within it; of equal ones neither does. Arcs count as their chords.
std::vector<int> EnclosingRings(std::span<const Ring> rings);

}  // namespace norvane
