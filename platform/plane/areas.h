// The areas that linework encloses.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/plane/box_tree.h"
#include "platform/plane/linework.h"
#include "platform/plane/polyline_vertex.h"

namespace plane {

// A closed line; its last vertex is joined to the first.
struct Ring {
    std::vector<PolylineVertex> vertices;
    double area = 0;  // in square units, arcs as they are
    Box box;

    // By the even-odd rule. Within 1e-06 of the line is inside.
    bool contains(Point p) const;
};

// A closed polyline of the linework: its pieces in a row, each from one of its vertices.
struct ClosedPolyline {
    uint32_t firstPiece = 0, count = 0;
};

// For each smallest area its outer ring; islands are not taken off. Corners are ends of pieces and places
// where the ring goes from one piece to another; arcs stay arcs. A ring that is one of the closed polylines
// has its vertices bit for bit in their order, others run anticlockwise.
std::vector<Ring> smallestRings(std::span<const Piece> pieces, const LineworkGraph& graph,
                                std::span<const ClosedPolyline> closed);

// Finds rings by points.
class RingFinder {
  public:
    // The rings stay the caller's and where they are.
    explicit RingFinder(std::span<const Ring> rings);
    // The smallest ring that contains a point, of equal ones the first; nothing where there is none.
    std::optional<size_t> smallestRound(Point p) const;

  private:
    std::span<const Ring> rings_;
    BoxTree tree_;
};

}  // namespace plane
