#include "module/geometry/rings.h"

#include <algorithm>
#include <cmath>

#include "platform/plane/angle.h"

namespace norvane {

namespace {

using plane::Point;
using plane::PolylineVertex;

constexpr double kSamePlace = 1e-6;

double signedArea(std::span<const PolylineVertex> vertices) {
    if (vertices.empty()) return 0;
    // Measured from the first vertex: the products of coordinates far from the origin would swallow the area.
    const Point origin = vertices.front();
    double sum = 0;
    Point previous = vertices.back() - origin;
    for (const PolylineVertex& vertex : vertices) {
        const Point current = vertex - origin;
        sum += previous.x * current.y - previous.y * current.x;
        previous = current;
    }
    return sum / 2;
}

// The vertices once each, without those that stand where the one before them does.
std::vector<Point> corners(std::span<const PolylineVertex> ring) {
    std::vector<Point> points;
    points.reserve(ring.size());
    for (const PolylineVertex& vertex : ring)
        if (points.empty() || plane::distance(points.back(), vertex) >= kSamePlace) points.push_back(vertex);
    while (points.size() > 1 && plane::distance(points.front(), points.back()) < kSamePlace)
        points.pop_back();
    return points;
}

}  // namespace

double PolygonArea(std::span<const PolylineVertex> vertices) {
    return std::abs(signedArea(vertices));
}

bool IsAnticlockwise(std::span<const PolylineVertex> ring) {
    const std::vector<Point> points = corners(ring);
    if (points.size() < 3) return false;
    const auto lowest =
        std::min_element(points.begin(), points.end(), [](Point a, Point b) { return a.y < b.y; });
    const Point before = lowest == points.begin() ? points.back() : *(lowest - 1);
    const Point behind = lowest + 1 == points.end() ? points.front() : *(lowest + 1);
    if (std::abs(before.x - behind.x) < kSamePlace) return signedArea(ring) > 0;
    return plane::withinTurn(plane::direction(*lowest, behind)) <=
           plane::withinTurn(plane::direction(*lowest, before));
}

void TurnClockwise(std::vector<PolylineVertex>& ring) {
    if (IsAnticlockwise(ring)) std::reverse(ring.begin(), ring.end());
}

void TurnAnticlockwise(std::vector<PolylineVertex>& ring) {
    if (!IsAnticlockwise(ring)) std::reverse(ring.begin(), ring.end());
}

}  // namespace norvane
