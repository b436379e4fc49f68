// The points of entities in world coordinates.
#pragma once

#include <vector>

#include "platform/ads/result_buffer.h"
#include "platform/plane/polyline_vertex.h"

namespace norvane {

// The vertices of an LWPOLYLINE or POLYLINE; none for a mesh and for other entities. Points of the frame of a
// spline are left out. Entities that stand in a system of their own are turned into the world; a bulge
// changes its sign where the entity is seen from behind. `groups` is what acdbEntGet gives for the entity.
std::vector<plane::PolylineVertex> ReadPolylineVertices(const ads_name entity, const resbuf* groups);
// Whether a POLYLINE is a mesh of faces, which has no vertices of a line.
bool IsMesh(const resbuf* groups);

// The point of a group as it stands; the origin without one.
plane::Point PointOfGroup(const resbuf* groups, int group);
// The insertion point of an INSERT.
plane::Point ReadInsertionPoint(const resbuf* groups);

}  // namespace norvane
