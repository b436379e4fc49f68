// The polygon that a point lies in.
#pragma once

#include <optional>

#include "module/cad/call.h"
#include "platform/plane/point.h"

namespace norvane {

// The polyline that a person means by a point: a closed one round it, or one that the aperture there touches.
// Where there are several, each is lit up until one is accepted. Nothing when there is none, or the question
// was cancelled.
std::optional<EntityName> FindPolygonAt(plane::Point point);

// Function code 13: takes a point. Gives the polygon's entity or nil; 0 without a point.
void FindPolygon(Call& call);

}  // namespace norvane
