// Whether shapes meet fences, boxes and polygons in the plan.
#pragma once

#include <span>

#include "hostcad/geometry/shape.h"

namespace hostcad {

// A piece of the shape meets the line through the points; touching counts.
bool crossesFence(const Shape& shape, std::span<const Point> fence);
// A piece of the shape meets the polygon's edge or lies inside of it, or the polygon lies within a filled
// area.
bool touchesPolygon(const Shape& shape, std::span<const Point> polygon);
// All of the shape lies inside the polygon; the edge belongs to it. Arcs are tried as chords. An empty shape
// and one with endless lines do not.
bool isInsidePolygon(const Shape& shape, std::span<const Point> polygon);
// Even-odd rule; the edge belongs to the polygon.
bool containsPoint(std::span<const Point> polygon, Point p);

}  // namespace hostcad
