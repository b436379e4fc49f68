// Vertices that a polyline can do without.
#pragma once

#include <cstddef>
#include <vector>

#include "platform/plane/polyline_vertex.h"

namespace norvane {

// Takes out each vertex whose squared distance from the line through its neighbours is below `offsetCutoff`,
// a square of drawing units: 0.1 stands for about 0.316. The line is not bounded by the neighbours. First and
// last vertices stay, and so do vertices beside an arc; nothing is taken out of a polyline of `fewest`
// vertices.
void RemoveCollinearVertices(std::vector<plane::PolylineVertex>& vertices, double offsetCutoff,
                             size_t fewest = 2);

}  // namespace norvane
