#include "hostcad/geometry/polyline_points.h"

namespace hostcad {
namespace {

constexpr int64_t kClosed = 1, k3d = 8, kMeshes = 16 | 64;
constexpr int64_t kControlPoint = 16;

PolylinePoints lightPolyline(Groups groups) {
    PolylinePoints points;
    double elevation = realOf(groups, 38);
    points.closed = integerOf(groups, 70) & kClosed;
    for (const Group& group : groups) {
        if (group.code >= kFirstXDataCode) break;
        if (group.code == 10)
            points.vertices.push_back({{group.x(), group.y(), elevation}, 0});
        else if (group.code == 42 && !points.vertices.empty())
            points.vertices.back().bulge = group.asReal();
    }
    return points;
}

}  // namespace

PolylinePoints polylinePoints(const Drawing& drawing, ObjectId entity) {
    Groups groups = drawing.groups(entity);
    std::string_view type = drawing.type(entity);
    if (type == "LWPOLYLINE") return lightPolyline(groups);
    PolylinePoints points;
    int64_t flags = integerOf(groups, 70);
    if (type != "POLYLINE" || flags & kMeshes) return points;
    points.closed = flags & kClosed;
    points.inWorld = flags & k3d;
    const Group* base = find(groups, 10);
    double elevation = base ? base->z() : 0;
    for (ObjectId id = drawing.firstPart(entity); id; id = drawing.nextPart(id)) {
        Groups vertex = drawing.groups(id);
        const Group* p = find(vertex, 10);
        if (!p || integerOf(vertex, 70) & kControlPoint) continue;
        points.vertices.push_back(
            {{p->x(), p->y(), points.inWorld ? p->z() : elevation}, realOf(vertex, 42)});
    }
    return points;
}

}  // namespace hostcad
