// The outline of an area, in a form in which two of them can be compared.
#pragma once

#include <vector>

#include "platform/ads/result_buffer.h"
#include "platform/plane/box.h"
#include "platform/plane/polyline_vertex.h"

namespace norvane {

struct AreaShape {
    std::vector<plane::PolylineVertex> vertices;  // no arcs, no doubled ones; the first is not repeated
    plane::Box box;
    double area = 0;

    bool empty() const { return vertices.empty(); }
    // The same extents to the last bit, and an area that differs by less than 1e-06.
    bool isLike(const AreaShape& other) const;
};

// Of a polyline, as if it were closed. Wherever it begins and whichever way it runs, the chords of its arcs
// come out the same. `groups` is what acdbEntGet gives for the entity. Empty for what has no vertices.
AreaShape ReadAreaShape(const ads_name polyline, const resbuf* groups);

}  // namespace norvane
