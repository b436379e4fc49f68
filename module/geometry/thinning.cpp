#include "module/geometry/thinning.h"

namespace norvane {

namespace {

using plane::Point;
using plane::PolylineVertex;

double dotProduct(Point a, Point b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

// Of b from the line through a and c; no number where these are one point.
double squaredDistance(Point a, Point b, Point c) {
    const Point line = c - a, toB = b - a;
    const Point across = toB - line * (dotProduct(toB, line) / dotProduct(line, line));
    return dotProduct(across, across);
}

}  // namespace

void RemoveCollinearVertices(std::vector<PolylineVertex>& vertices, double offsetCutoff, size_t fewest) {
    bool removed = true;
    while (removed && vertices.size() > fewest) {
        removed = false;
        std::vector<PolylineVertex> kept;
        kept.reserve(vertices.size());
        kept.push_back(vertices.front());
        size_t left = vertices.size();
        // Behind a vertex that is taken out the walk goes on from the next one: a vertex that kept its place
        // would take an arc down to its chord, one after the other.
        size_t a = 0;
        while (a + 2 < vertices.size()) {
            const PolylineVertex &first = vertices[a], &middle = vertices[a + 1], &last = vertices[a + 2];
            const bool goes = left > fewest && first.bulge == 0 && middle.bulge == 0 &&
                              squaredDistance(first, middle, last) < offsetCutoff;
            a += goes ? 2 : 1;
            left -= goes ? 1 : 0;
            removed = removed || goes;
            kept.push_back(vertices[a]);
        }
        kept.insert(kept.end(), vertices.begin() + static_cast<std::ptrdiff_t>(a) + 1, vertices.end());
        vertices = std::move(kept);
    }
}

}  // namespace norvane
