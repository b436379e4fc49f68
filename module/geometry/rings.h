// Rings: polylines whose last vertex repeats the first.
#pragma once

#include <span>
#include <vector>

#include "platform/plane/polyline_vertex.h"

namespace norvane {

// In square drawing units; 0 without vertices. Arcs count as their chords.
double PolygonArea(std::span<const plane::PolylineVertex> vertices);

// Whether a ring runs anticlockwise, told at its lowest vertex; where that shows nothing, by the sign of its
// area. False for a ring without area.
bool IsAnticlockwise(std::span<const plane::PolylineVertex> ring);

// Turns a ring round if need be; it begins at the same vertex. Bulges are not turned: a ring has none here.
void TurnClockwise(std::vector<plane::PolylineVertex>& ring);
void TurnAnticlockwise(std::vector<plane::PolylineVertex>& ring);

}  // namespace norvane
