// Whether a point lies in a polygon.
#pragma once

#include <span>

#include "platform/plane/point.h"
#include "platform/plane/polyline_vertex.h"

namespace norvane {

// By the even-odd rule, in the plan; the last vertex is joined to the first. Within 1e-06 of an edge is
// inside. Arcs count as their chords. Nothing lies in a polygon without vertices.
bool PointInPolygon(plane::Point point, std::span<const plane::PolylineVertex> vertices);

}  // namespace norvane
