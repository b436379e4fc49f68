#include "module/linktools/area_shape.h"

#include <algorithm>
#include <cmath>

#include "module/cad/group_list.h"
#include "module/cad/polyline_vertices.h"
#include "module/geometry/chords.h"
#include "module/geometry/rings.h"
#include "platform/plane/arc.h"

namespace norvane {

namespace {

using plane::PolylineVertex;
using Vertices = std::vector<PolylineVertex>;

constexpr double kSamePlace = 1e-6;

// A vertex at the place of the one before it goes; the arc behind it stays.
Vertices withoutDoubled(const Vertices& vertices) {
    Vertices kept;
    for (const PolylineVertex& vertex : vertices) {
        if (!kept.empty() && plane::distance(kept.back(), vertex) < kSamePlace)
            kept.back().bulge = vertex.bulge;
        else
            kept.push_back(vertex);
    }
    return kept;
}

bool runsAnticlockwise(const Vertices& vertices) {
    double twice = 0;
    for (size_t i = 0; i < vertices.size(); ++i) {
        const PolylineVertex &from = vertices[i], &to = vertices[(i + 1) % vertices.size()];
        const plane::Point a = from - vertices[0], b = to - vertices[0];
        twice += a.x * b.y - a.y * b.x;
        if (from.bulge == 0) continue;
        const double sweep = plane::sweepOf(from.bulge);
        const double radius =
            plane::distance(from, to) * (1 + from.bulge * from.bulge) / (4 * std::abs(from.bulge));
        twice += radius * radius * (sweep - std::sin(sweep));
    }
    return twice > 0;
}

void reverse(Vertices& vertices) {
    Vertices back;
    const size_t count = vertices.size();
    for (size_t i = count; i-- > 0;)
        back.emplace_back(plane::Point(vertices[i]), -vertices[(i + count - 1) % count].bulge);
    vertices = std::move(back);
}

}  // namespace

bool AreaShape::isLike(const AreaShape& other) const {
    return box.minX == other.box.minX && box.maxX == other.box.maxX && box.minY == other.box.minY &&
           box.maxY == other.box.maxY && std::abs(area - other.area) < 1e-6;
}

AreaShape ReadAreaShape(const ads_name polyline, const resbuf* groups) {
    constexpr int kFlags = 70, kClosed = 1;
    constexpr double kOffsetCutoff = 0.0001;
    AreaShape shape;
    Vertices vertices = ReadPolylineVertices(polyline, groups);
    if (vertices.empty()) return shape;
    for (PolylineVertex& vertex : vertices) vertex.z = 0;
    const resbuf* flags = FindResultBuffer(groups, kFlags);
    if (!flags || !(flags->resval.rint & kClosed)) vertices.back().bulge = 0;
    vertices = withoutDoubled(vertices);
    if (vertices.size() > 1 && plane::distance(vertices.front(), vertices.back()) < kSamePlace)
        vertices.pop_back();
    if (!runsAnticlockwise(vertices)) reverse(vertices);
    std::rotate(vertices.begin(),
                std::min_element(vertices.begin(), vertices.end(),
                                 [](const PolylineVertex& a, const PolylineVertex& b) {
                                     return a.x != b.x ? a.x < b.x : a.y < b.y;
                                 }),
                vertices.end());
    vertices.emplace_back(plane::Point(vertices.front()));
    ArcsToChords(vertices, kOffsetCutoff, PolylineKind::kRing);
    shape.vertices = withoutDoubled(vertices);
    if (shape.vertices.size() > 1) shape.vertices.pop_back();
    for (const plane::Point& vertex : shape.vertices) shape.box.add(vertex);
    shape.area = PolygonArea(shape.vertices);
    return shape;
}

}  // namespace norvane
