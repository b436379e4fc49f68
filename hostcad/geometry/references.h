// Where the contents of a block stand: one frame for each cell of a block reference's array.
#pragma once

#include <vector>

#include "hostcad/drawing/drawing.h"
#include "hostcad/geometry/frame.h"

namespace hostcad {

// Frames of the block's own coordinates in those of `frame`, at most `limit` of them; none for a reference to
// a block that the drawing lacks, or to one of its spaces.
std::vector<Frame> referenceFrames(const Drawing& drawing, const Frame& frame, Groups reference,
                                   size_t limit);

}  // namespace hostcad
