// What a person points at in a scene.
#pragma once

#include <vector>

#include "hostcad/window/scene.h"

namespace hostcad {

// The entity nearest to a point, no farther away than `reach`; of equally near ones the one on top. 0 for
// none.
ObjectId entityNear(const Scene& scene, PlanePoint p, double reach);

// What a box selects, in drawing order: all that lies inside, or, crossing, also what it touches. The same
// that a selection by the same corners gives.
std::vector<ObjectId> entitiesInBox(const Drawing& drawing, const Scene& scene, const Box& box,
                                    bool crossing);

}  // namespace hostcad
