#include "platform/plane/areas.h"

#include <algorithm>
#include <cmath>

namespace plane {

namespace {

// An edge in one of its two directions.
struct Side {
    uint32_t edge;
    bool isForward;
};
using Loop = std::vector<Side>;

constexpr double kOnLine = 1e-6;

// The two directions of edge e are the half-edges 2e, forward, and 2e + 1.
uint32_t twin(uint32_t half) {
    return half ^ 1;
}

// Walks round the faces of a graph.
class FaceWalk {
  public:
    explicit FaceWalk(const LineworkGraph& graph) : graph_(graph), isThere_(graph.edges.size(), true) {}

    // The closed lines round faces, without edges that lead nowhere or only join two parts.
    std::vector<Loop> loops() {
        connect();
        dropBridges();
        connect();
        std::vector<Loop> loops;
        std::vector<bool> isDone(next_.size(), false);
        for (uint32_t half = 0; half < next_.size(); ++half) {
            if (!isThere_[half / 2] || isDone[half]) continue;
            cutAtRepeatedNodes(half, isDone, loops);
        }
        return loops;
    }

  private:
    uint32_t from(uint32_t half) const {
        const LineworkGraph::Edge& edge = graph_.edges[half / 2];
        return half % 2 == 0 ? edge.from : edge.to;
    }

    // The direction in which a half-edge passes a circle of a radius round its node.
    double directionAt(uint32_t half, double radius) const {
        const LineworkGraph::Edge& edge = graph_.edges[half / 2];
        const bool isForward = half % 2 == 0;
        const Point &here = graph_.nodes[isForward ? edge.from : edge.to],
                    &there = graph_.nodes[isForward ? edge.to : edge.from];
        const double chord = direction(here, there);
        const double bulge = isForward ? edge.bulge : -edge.bulge;
        if (bulge == 0) return chord;
        const double tangent = chord - sweepOf(bulge) / 2;
        return tangent + std::copysign(std::asin(std::min(1.0, radius / (2 * radiusOf(edge)))), bulge);
    }

    double radiusOf(const LineworkGraph::Edge& edge) const {
        const double b = std::abs(edge.bulge);
        return distance(graph_.nodes[edge.from], graph_.nodes[edge.to]) * (1 + b * b) / (4 * b);
    }

    // Every half-edge goes on with the one that is first to its right where it ends. Directions are compared
    // a little away from the node, where arcs that leave it along one tangent have parted.
    void connect() {
        std::vector<std::vector<uint32_t>> leaving(graph_.nodes.size());
        for (uint32_t half = 0; half < 2 * graph_.edges.size(); ++half)
            if (isThere_[half / 2]) leaving[from(half)].push_back(half);
        next_.assign(2 * graph_.edges.size(), 0);
        std::vector<std::pair<double, uint32_t>> round;
        for (const std::vector<uint32_t>& halves : leaving) {
            double radius = INFINITY;
            for (uint32_t half : halves) {
                const LineworkGraph::Edge& edge = graph_.edges[half / 2];
                radius = std::min(radius, distance(graph_.nodes[edge.from], graph_.nodes[edge.to]) / 2);
                if (edge.bulge != 0) radius = std::min(radius, radiusOf(edge) / 2);
            }
            round.clear();
            for (uint32_t half : halves) round.emplace_back(withinTurn(directionAt(half, radius)), half);
            std::sort(round.begin(), round.end());
            for (size_t i = 0; i < round.size(); ++i)
                next_[twin(round[(i + 1) % round.size()].second)] = round[i].second;
        }
    }

    // An edge with one face on both sides bounds nothing.
    void dropBridges() {
        constexpr uint32_t kNone = UINT32_MAX;
        std::vector<uint32_t> face(next_.size(), kNone);
        for (uint32_t half = 0; half < next_.size(); ++half)
            for (uint32_t walk = half; face[walk] == kNone; walk = next_[walk]) face[walk] = half;
        for (uint32_t edge = 0; edge < graph_.edges.size(); ++edge)
            if (face[2 * edge] == face[2 * edge + 1]) isThere_[edge] = false;
    }

    // The walk from a half-edge round its face, taken apart where it comes to a node twice: an island may
    // touch the line round it.
    void cutAtRepeatedNodes(uint32_t start, std::vector<bool>& isDone, std::vector<Loop>& loops) {
        place_.resize(graph_.nodes.size(), 0);
        std::vector<uint32_t> path;
        for (uint32_t half = start; !isDone[half]; half = next_[half]) {
            isDone[half] = true;
            path.push_back(half);
            place_[from(half)] = static_cast<uint32_t>(path.size());
            const uint32_t begin = place_[from(next_[half])];
            if (begin == 0) continue;
            Loop loop;
            for (size_t i = begin - 1; i < path.size(); ++i) {
                loop.push_back({path[i] / 2, path[i] % 2 == 0});
                place_[from(path[i])] = 0;
            }
            path.resize(begin - 1);
            loops.push_back(std::move(loop));
        }
    }

    const LineworkGraph& graph_;
    std::vector<bool> isThere_;    // by edge
    std::vector<uint32_t> next_;   // by half-edge
    std::vector<uint32_t> place_;  // by node: where it stands on the path, from 1
};

// What an arc has beyond its chord, positive where it runs anticlockwise.
double areaOfBow(Point from, Point to, double bulge) {
    const double sweep = sweepOf(bulge), chord = distance(from, to);
    if (bulge == 0 || chord == 0) return 0;
    const double radius = chord * (1 + bulge * bulge) / (4 * std::abs(bulge));
    return radius * radius / 2 * (sweep - std::sin(sweep));
}

// Positive for one that runs anticlockwise.
double signedArea(std::span<const PolylineVertex> vertices) {
    if (vertices.empty()) return 0;
    const Point origin = vertices.front();
    double twice = 0, bows = 0;
    for (size_t i = 0; i < vertices.size(); ++i) {
        const PolylineVertex &from = vertices[i], &to = vertices[(i + 1) % vertices.size()];
        const Point a = from - origin, b = to - origin;
        twice += a.x * b.y - a.y * b.x;
        bows += areaOfBow(from, to, from.bulge);
    }
    return twice / 2 + bows;
}

// Makes vertices of loops.
class RingMaker {
  public:
    RingMaker(std::span<const Piece> pieces, const LineworkGraph& graph,
              std::span<const ClosedPolyline> closed)
        : pieces_(pieces),
          graph_(graph),
          closed_(closed),
          polylineOf_(pieces.size(), kNone),
          edges_(closed.size()) {
        for (uint32_t i = 0; i < closed.size(); ++i)
            std::fill_n(polylineOf_.begin() + closed[i].firstPiece, closed[i].count, i);
        for (const LineworkGraph::Edge& edge : graph.edges)
            for (uint32_t polyline : polylinesOf(edge)) ++edges_[polyline];
    }

    std::vector<PolylineVertex> vertices(const Loop& loop) const {
        for (uint32_t polyline : polylinesOf(graph_.edges[loop.front().edge]))
            if (isAllOf(loop, polyline)) return verticesOf(closed_[polyline]);
        return cornersOf(loop);
    }

  private:
    static constexpr uint32_t kNone = UINT32_MAX;

    // Each once.
    std::vector<uint32_t> polylinesOf(const LineworkGraph::Edge& edge) const {
        std::vector<uint32_t> polylines;
        for (const LineworkGraph::Part& part : edge.parts) {
            const uint32_t polyline = part.piece < polylineOf_.size() ? polylineOf_[part.piece] : kNone;
            if (polyline != kNone &&
                std::find(polylines.begin(), polylines.end(), polyline) == polylines.end())
                polylines.push_back(polyline);
        }
        return polylines;
    }

    bool isAllOf(const Loop& loop, uint32_t polyline) const {
        return loop.size() == edges_[polyline] &&
               std::all_of(loop.begin(), loop.end(), [&](const Side& side) {
                   const auto& parts = graph_.edges[side.edge].parts;
                   return std::any_of(parts.begin(), parts.end(), [&](const LineworkGraph::Part& part) {
                       return polylineOf_[part.piece] == polyline;
                   });
               });
    }

    std::vector<PolylineVertex> verticesOf(const ClosedPolyline& polyline) const {
        std::vector<PolylineVertex> vertices;
        for (const Piece& piece : pieces_.subspan(polyline.firstPiece, polyline.count))
            vertices.emplace_back(piece.from(), piece.bulge());
        return vertices;
    }

    std::vector<LineworkGraph::Part> partsAlong(const Side& side) const {
        std::vector<LineworkGraph::Part> parts = graph_.edges[side.edge].parts;
        if (!side.isForward)
            for (LineworkGraph::Part& part : parts) std::swap(part.from, part.to);
        return parts;
    }

    // Lengthens those parts with which a side goes on, and drops the others. False where none does.
    bool goesOn(std::vector<LineworkGraph::Part>& run, const Side& side) const {
        std::vector<LineworkGraph::Part> longer;
        for (const LineworkGraph::Part& part : partsAlong(side))
            for (const LineworkGraph::Part& before : run)
                if (before.piece == part.piece && before.to == part.from &&
                    (before.from < before.to) == (part.from < part.to))
                    longer.push_back({part.piece, before.from, part.to});
        if (longer.empty()) return false;
        run = std::move(longer);
        return true;
    }

    // A vertex where one piece ends and another begins; where others only touch a piece there is none.
    std::vector<PolylineVertex> cornersOf(const Loop& loop) const {
        size_t start = 0;
        for (size_t i = 0; i < loop.size(); ++i) {
            std::vector<LineworkGraph::Part> before = partsAlong(loop[(i + loop.size() - 1) % loop.size()]);
            if (goesOn(before, loop[i])) continue;
            start = i;
            break;
        }
        std::vector<PolylineVertex> corners;
        std::vector<LineworkGraph::Part> run;
        for (size_t i = 0; i < loop.size(); ++i) {
            const Side& side = loop[(start + i) % loop.size()];
            if (i == 0 || !goesOn(run, side)) {
                const LineworkGraph::Edge& edge = graph_.edges[side.edge];
                corners.emplace_back(graph_.nodes[side.isForward ? edge.from : edge.to]);
                run = partsAlong(side);
            }
            const LineworkGraph::Part& part = run.front();
            corners.back().bulge = pieces_[part.piece].bulgeOf(part.from, part.to);
        }
        return corners;
    }

    std::span<const Piece> pieces_;
    const LineworkGraph& graph_;
    std::span<const ClosedPolyline> closed_;
    std::vector<uint32_t> polylineOf_;  // by piece
    std::vector<uint32_t> edges_;       // by closed polyline: how many edges of the graph it covers
};

double signedAreaOf(const Loop& loop, const LineworkGraph& graph) {
    std::vector<PolylineVertex> vertices;
    vertices.reserve(loop.size());
    for (const Side& side : loop) {
        const LineworkGraph::Edge& edge = graph.edges[side.edge];
        vertices.emplace_back(graph.nodes[side.isForward ? edge.from : edge.to],
                              side.isForward ? edge.bulge : -edge.bulge);
    }
    return signedArea(vertices);
}

std::vector<Box> boxesOf(std::span<const Ring> rings) {
    std::vector<Box> boxes;
    for (const Ring& ring : rings) boxes.push_back(ring.box);
    return boxes;
}

}  // namespace

std::vector<Ring> smallestRings(std::span<const Piece> pieces, const LineworkGraph& graph,
                                std::span<const ClosedPolyline> closed) {
    const RingMaker maker(pieces, graph, closed);
    std::vector<Ring> rings;
    for (const Loop& loop : FaceWalk(graph).loops()) {
        // The line round an island, seen from outside, runs clockwise.
        if (!(signedAreaOf(loop, graph) > 0)) continue;
        Ring& ring = rings.emplace_back();
        ring.vertices = maker.vertices(loop);
        ring.area = std::abs(signedArea(ring.vertices));
        for (size_t i = 0; i < ring.vertices.size(); ++i) {
            const PolylineVertex& from = ring.vertices[i];
            ring.box.add(Piece(from, ring.vertices[(i + 1) % ring.vertices.size()], from.bulge).box());
        }
    }
    return rings;
}

bool Ring::contains(Point p) const {
    bool isInside = false;
    for (size_t i = 0; i < vertices.size(); ++i) {
        const PolylineVertex& from = vertices[i];
        const Piece piece(from, vertices[(i + 1) % vertices.size()], from.bulge);
        if (piece.nearest(p).distance < kOnLine) return true;
        // On a chord a point counts as left of it, seen from the lower end; both tests go by that.
        const bool isUpward = piece.from().y < piece.to().y ||
                              (piece.from().y == piece.to().y && piece.from().x < piece.to().x);
        const Point &low = isUpward ? piece.from() : piece.to(), &high = isUpward ? piece.to() : piece.from();
        const bool isLeft = (high.x - low.x) * (p.y - low.y) - (high.y - low.y) * (p.x - low.x) >= 0;
        if (low.y <= p.y && p.y < high.y && !isLeft) isInside = !isInside;
        // Between an arc and its chord.
        if (piece.arc() && isLeft == ((from.bulge < 0) == isUpward) &&
            distance(piece.arc()->centre, p) < piece.arc()->radius)
            isInside = !isInside;
    }
    return isInside;
}

RingFinder::RingFinder(std::span<const Ring> rings) : rings_(rings), tree_(boxesOf(rings)) {}

std::optional<size_t> RingFinder::smallestRound(Point p) const {
    Box around;
    around.add(p.x - kOnLine, p.y - kOnLine), around.add(p.x + kOnLine, p.y + kOnLine);
    std::vector<size_t> candidates;
    tree_.each(around, [&](uint32_t ring) { candidates.push_back(ring); });
    std::sort(candidates.begin(), candidates.end(), [&](size_t a, size_t b) {
        return rings_[a].area != rings_[b].area ? rings_[a].area < rings_[b].area : a < b;
    });
    for (size_t ring : candidates)
        if (rings_[ring].contains(p)) return ring;
    return {};
}

}  // namespace plane
