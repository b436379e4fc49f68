#include "platform/plane/linework.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_map>

#include "platform/plane/box_tree.h"

namespace plane {

namespace {

// Nodes by their places.
class NodeTable {
  public:
    explicit NodeTable(std::vector<Point>& nodes) : nodes_(nodes) {}

    // The node at a place; a new one where there is none.
    uint32_t at(const Point& p) {
        const int64_t left = cellOf(p.x - kSamePlace), right = cellOf(p.x + kSamePlace);
        const int64_t bottom = cellOf(p.y - kSamePlace), top = cellOf(p.y + kSamePlace);
        for (int64_t column = left; column <= right; ++column)
            for (int64_t row = bottom; row <= top; ++row)
                for (auto [node, end] = cells_.equal_range(keyOf(column, row)); node != end; ++node)
                    if (distance(nodes_[node->second], p) <= kSamePlace) return node->second;
        const auto added = static_cast<uint32_t>(nodes_.size());
        nodes_.push_back(p);
        cells_.emplace(keyOf(cellOf(p.x), cellOf(p.y)), added);
        return added;
    }

  private:
    static constexpr double kCell = 16 * kSamePlace;
    static int64_t cellOf(double coordinate) { return static_cast<int64_t>(std::floor(coordinate / kCell)); }
    // Cells that share a key are told apart by the distance.
    static uint64_t keyOf(int64_t column, int64_t row) {
        return static_cast<uint64_t>(column) * 0x9E3779B97F4A7C15u ^
               static_cast<uint64_t>(row) * 0xC2B2AE3D27D4EB4Fu;
    }

    std::vector<Point>& nodes_;
    std::unordered_multimap<uint64_t, uint32_t> cells_;
};

bool hasPlace(const Piece& piece) {
    for (double c : {piece.from().x, piece.from().y, piece.to().x, piece.to().y})
        if (!(std::abs(c) <= kFarthest)) return false;
    return std::isfinite(piece.bulge()) && (!piece.arc() || piece.arc()->radius <= kFarthest);
}

Box widened(Box box, double by) {
    if (box.empty()) return box;
    box.minX -= by, box.minY -= by, box.maxX += by, box.maxY += by;
    return box;
}

class GraphBuilder {
  public:
    GraphBuilder(std::span<const Piece> pieces, const IsCancelled& isCancelled)
        : pieces_(pieces), isCancelled_(isCancelled), table_(graph_.nodes) {}

    std::optional<LineworkGraph> build() {
        // Ends come first, so that they keep their bits where crossings fall on them.
        boxes_.resize(pieces_.size());
        for (uint32_t i = 0; i < pieces_.size(); ++i) {
            if (!hasPlace(pieces_[i])) {
                ++graph_.leftOut;
                continue;
            }
            boxes_[i] = widened(pieces_[i].box(), kSamePlace);
            table_.at(pieces_[i].from()), table_.at(pieces_[i].to());
        }
        PieceCutter cutter(pieces_, boxes_, kSamePlace);
        switch (cutter.run(isCancelled_)) {
            case PieceCutter::Outcome::kCancelled:
                return {};
            case PieceCutter::Outcome::kTooDense:
                return LineworkGraph{{}, {}, 0, true};
            case PieceCutter::Outcome::kDone:
                break;
        }
        for (uint32_t i = 0; i < pieces_.size(); ++i)
            if (!boxes_[i].empty()) addEdgesOf(i, cutter.of(i));
        return std::move(graph_);
    }

  private:
    void addEdgesOf(uint32_t index, std::vector<Cut>& cuts) {
        const Piece& piece = pieces_[index];
        // More than half a circle would be a loop where its ends meet.
        if (std::abs(piece.bulge()) > 1) cuts.push_back({0.5, piece.at(0.5)});
        std::sort(cuts.begin(), cuts.end(), [](const Cut& a, const Cut& b) { return a.share < b.share; });
        uint32_t from = table_.at(piece.from());
        double fromShare = 0;
        auto goTo = [&](uint32_t to, double share) {
            if (to == from) return;
            addEdge(from, to, piece.bulgeOf(fromShare, share), {index, fromShare, share});
            from = to;
            fromShare = share;
        };
        for (const Cut& cut : cuts) goTo(table_.at(cut.place), cut.share);
        goTo(table_.at(piece.to()), 1);
    }

    // Where an edge runs the same way already, it gets the part as well.
    void addEdge(uint32_t from, uint32_t to, double bulge, LineworkGraph::Part part) {
        const uint64_t key = uint64_t{std::min(from, to)} << 32 | std::max(from, to);
        const Point middle = Piece(graph_.nodes[from], graph_.nodes[to], bulge).at(0.5);
        for (auto [known, end] = edgeOfNodes_.equal_range(key); known != end; ++known) {
            LineworkGraph::Edge& edge = graph_.edges[known->second];
            if (distance(graph_.piece(edge).at(0.5), middle) > 2 * kSamePlace) continue;
            if (edge.from != from) std::swap(part.from, part.to);
            edge.parts.push_back(part);
            return;
        }
        edgeOfNodes_.emplace(key, static_cast<uint32_t>(graph_.edges.size()));
        graph_.edges.push_back({from, to, bulge, {part}});
    }

    std::span<const Piece> pieces_;
    const IsCancelled& isCancelled_;
    LineworkGraph graph_;
    NodeTable table_;
    std::vector<Box> boxes_;  // empty for pieces without a place
    std::unordered_multimap<uint64_t, uint32_t> edgeOfNodes_;
};

}  // namespace

std::optional<LineworkGraph> graphOf(std::span<const Piece> pieces, const IsCancelled& isCancelled) {
    return GraphBuilder(pieces, isCancelled).build();
}

std::vector<FreeEnd> freeEnds(const LineworkGraph& graph, double limit) {
    constexpr uint32_t kSeveral = UINT32_MAX, kNone = UINT32_MAX - 1;
    std::vector<uint32_t> onlyEdge(graph.nodes.size(), kNone);
    std::vector<Box> boxes;
    for (uint32_t i = 0; i < graph.edges.size(); ++i) {
        for (uint32_t node : {graph.edges[i].from, graph.edges[i].to})
            onlyEdge[node] = onlyEdge[node] == kNone ? i : kSeveral;
        boxes.push_back(graph.piece(graph.edges[i]).box());
    }
    const BoxTree tree(boxes);
    std::vector<FreeEnd> ends;
    for (uint32_t node = 0; node < graph.nodes.size(); ++node) {
        if (onlyEdge[node] >= kNone) continue;
        const Point& place = graph.nodes[node];
        const LineworkGraph::Edge& own = graph.edges[onlyEdge[node]];
        FreeEnd end{node, own.from == node ? own.to : own.from, {}, std::numeric_limits<double>::infinity()};
        auto take = [&](const Point& nearest, double gap) { end.nearest = nearest, end.gap = gap; };
        Box around;
        around.add(place);
        tree.each(widened(around, limit), [&](uint32_t other) {
            if (other == onlyEdge[node]) return;
            const Piece piece = graph.piece(graph.edges[other]);
            // An end is a better place to go to than one beside it.
            for (const Point& p : {piece.from(), piece.to()})
                if (const double gap = distance(p, place); gap <= limit && gap <= end.gap) take(p, gap);
            const Piece::Nearest nearest = piece.nearest(place);
            if (nearest.distance <= limit && nearest.distance < end.gap / 2)
                take(piece.at(nearest.share), nearest.distance);
        });
        ends.push_back(end);
    }
    return ends;
}

size_t bridgeGaps(const LineworkGraph& graph, double gap, std::vector<Piece>& pieces) {
    size_t bridges = 0;
    for (const FreeEnd& end : freeEnds(graph, gap)) {
        if (!(end.gap <= gap)) continue;
        pieces.emplace_back(graph.nodes[end.node], end.nearest);
        ++bridges;
    }
    return bridges;
}

}  // namespace plane
