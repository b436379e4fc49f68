#include "hostcad/geometry/references.h"

#include <algorithm>

#include "platform/plane/angle.h"

namespace hostcad {
std::vector<Frame> referenceFrames(const Drawing& drawing, const Frame& frame, Groups reference,
                                   ObjectId block, size_t limit) {
    std::vector<Frame> frames;
    Frame at = frame * extrusionFrame(pointOf(reference, 210, {0, 0, 1})) *
               translation(pointOf(reference, 10)) * turned(realOf(reference, 50) * plane::kDegree, 1, 1, 1);
    Frame inside = turned(0, realOf(reference, 41, 1), realOf(reference, 42, 1), realOf(reference, 43, 1)) *
                   translation(pointOf(drawing.groups(block), 10) * -1);
    const int64_t columns = std::max<int64_t>(1, integerOf(reference, 70, 1));
    const int64_t rows = std::max<int64_t>(1, integerOf(reference, 71, 1));
    for (int64_t row = 0; row < rows; ++row)
        for (int64_t column = 0; column < columns; ++column) {
            if (frames.size() >= limit) return frames;
            Point step{static_cast<double>(column) * realOf(reference, 44),
                       static_cast<double>(row) * realOf(reference, 45), 0};
            frames.push_back(at * translation(step) * inside);
        }
    return frames;
}

}  // namespace hostcad
