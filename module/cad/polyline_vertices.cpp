#include "module/cad/polyline_vertices.h"

#include "module/cad/ads_owners.h"
#include "module/cad/group_list.h"
#include "platform/plane/frame.h"

namespace norvane {

namespace {

using plane::Frame;
using plane::Point;
using plane::PolylineVertex;

constexpr int kFlags = 70;
constexpr int k3dPolyline = 8;
constexpr int kMeshes = 16 | 64;
constexpr int kFramePoint = 16;  // of a vertex

int flagsOf(const resbuf* groups) {
    const resbuf* item = FindResultBuffer(groups, kFlags);
    return item ? item->resval.rint : 0;
}

double realOf(const resbuf* groups, int group) {
    const resbuf* item = FindResultBuffer(groups, group);
    return item ? item->resval.rreal : 0;
}

Frame frameOf(const resbuf* groups) {
    return FindResultBuffer(groups, 210) ? plane::extrusionFrame(PointOfGroup(groups, 210)) : Frame{};
}

std::vector<PolylineVertex> lightVertices(const resbuf* groups) {
    std::vector<PolylineVertex> vertices;
    const double elevation = realOf(groups, 38);
    for (const resbuf* item = groups; item; item = item->rbnext) {
        if (item->restype == 10)
            vertices.emplace_back(Point{item->resval.rpoint[0], item->resval.rpoint[1], elevation});
        else if (item->restype == 42 && !vertices.empty())
            vertices.back().bulge = item->resval.rreal;
    }
    return vertices;
}

std::vector<PolylineVertex> oldVertices(const ads_name polyline, const resbuf* groups) {
    std::vector<PolylineVertex> vertices;
    const bool isFlat = !(flagsOf(groups) & k3dPolyline);
    const double elevation = PointOfGroup(groups, 10).z;
    ads_name entity;
    ads_name_set(polyline, entity);
    while (acdbEntNext(entity, entity) == RTNORM) {
        const ResultBuffers vertex(acdbEntGet(entity));
        if (GroupText(vertex.get(), 0) != "VERTEX") break;
        if (flagsOf(vertex.get()) & kFramePoint) continue;
        Point at = PointOfGroup(vertex.get(), 10);
        // Some programs write the height of a flat polyline at its head alone.
        if (isFlat && at.z == 0) at.z = elevation;
        vertices.emplace_back(at, realOf(vertex.get(), 42));
    }
    return vertices;
}

}  // namespace

Point PointOfGroup(const resbuf* groups, int group) {
    const resbuf* item = FindResultBuffer(groups, group);
    if (!item) return {};
    return {item->resval.rpoint[0], item->resval.rpoint[1], item->resval.rpoint[2]};
}

bool IsMesh(const resbuf* groups) {
    return GroupText(groups, 0) == "POLYLINE" && flagsOf(groups) & kMeshes;
}

std::vector<PolylineVertex> ReadPolylineVertices(const ads_name entity, const resbuf* groups) {
    const std::string type = GroupText(groups, 0);
    if (type != "LWPOLYLINE" && (type != "POLYLINE" || IsMesh(groups))) return {};
    std::vector<PolylineVertex> vertices =
        type == "LWPOLYLINE" ? lightVertices(groups) : oldVertices(entity, groups);
    if (type == "POLYLINE" && flagsOf(groups) & k3dPolyline) return vertices;
    const Frame frame = frameOf(groups);
    for (PolylineVertex& vertex : vertices)
        vertex = {frame(vertex), frame.z.z < 0 ? -vertex.bulge : vertex.bulge};
    return vertices;
}

Point ReadInsertionPoint(const resbuf* groups) {
    return frameOf(groups)(PointOfGroup(groups, 10));
}

}  // namespace norvane
