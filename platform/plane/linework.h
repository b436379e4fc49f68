// Linework as a graph: cut wherever pieces cross, touch or overlap.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "platform/plane/piece_cuts.h"

namespace plane {

// Places nearer to each other than this, in drawing units, are one. Drawings come with four decimals, so that
// a corner on another's side misses it by as much.
constexpr double kSamePlace = 2e-4;
// Beyond this, numbers are too coarse to tell places apart: pieces that reach further count for nothing.
constexpr double kFarthest = 1e9;

struct LineworkGraph {
    // The part of a piece that an edge covers, in the direction of the edge: shares of the piece's length.
    struct Part {
        uint32_t piece;
        double from, to;
    };
    struct Edge {
        uint32_t from, to;        // nodes
        double bulge;             // as the first part has it
        std::vector<Part> parts;  // several where pieces overlap
    };

    std::vector<Point> nodes;
    std::vector<Edge> edges;
    size_t leftOut = 0;       // pieces without a place: beyond kFarthest, or not numbers
    bool isTooDense = false;  // so many pieces lie above each other that there is no graph

    // The edge from one node to the other, as it runs.
    Piece piece(const Edge& edge) const { return {nodes[edge.from], nodes[edge.to], edge.bulge}; }
};

// Ends of pieces are nodes bit for bit; of ends that are one place the first counts. No two edges run the
// same way between the same nodes. Nothing when cancelled.
std::optional<LineworkGraph> graphOf(std::span<const Piece> pieces, const IsCancelled& isCancelled = {});

// An end that hangs free, and what is nearest to it other than its own edge.
struct FreeEnd {
    uint32_t node;
    uint32_t other;  // the node at the other end of its edge
    Point nearest;
    double gap;  // to it; infinite where nothing is within the limit
};
std::vector<FreeEnd> freeEnds(const LineworkGraph& graph, double limit);

// Adds straight pieces that join free ends to what is nearest within a gap. The number of them.
size_t bridgeGaps(const LineworkGraph& graph, double gap, std::vector<Piece>& pieces);

}  // namespace plane
