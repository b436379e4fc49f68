// Where the contents of a block stand: one frame for each cell of a block reference's array.
#pragma once

#include <vector>

#include "hostcad/drawing/drawing.h"
#include "hostcad/geometry/frame.h"

namespace hostcad {

// Frames of the coordinates of `block`, which a reference shows, in those of `frame`; at most `limit` of
// them.
std::vector<Frame> referenceFrames(const Drawing& drawing, const Frame& frame, Groups reference,
                                   ObjectId block, size_t limit);

}  // namespace hostcad
