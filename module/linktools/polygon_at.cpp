#include "module/linktools/polygon_at.h"

#include <vector>

#include "module/cad/group_list.h"
#include "module/cad/polyline_vertices.h"
#include "module/geometry/chords.h"
#include "module/geometry/point_in_polygon.h"
#include "platform/ads/editor.h"

namespace norvane {

namespace {

using plane::PolylineVertex;

constexpr int kFlags = 70;
constexpr int kClosed = 1, k3dPolyline = 8;

ResultBuffers polylineFilter() {
    return ResultBuffers(acutBuildList(-4, "<or", RTDXF0, "POLYLINE", RTDXF0, "LWPOLYLINE", -4, "or>", 0));
}

// The ring of a polyline that is closed, or whose ends meet; arcs as chords. Empty for others.
std::vector<PolylineVertex> ringOf(const ads_name entity) {
    constexpr double kEndsMeet = 1e-7, kOffsetCutoff = 0.1;
    const ResultBuffers groups(acdbEntGet(entity));
    const resbuf* flags = FindResultBuffer(groups.get(), kFlags);
    const int kind = flags ? flags->resval.rint : 0;
    if (kind & k3dPolyline) return {};
    std::vector<PolylineVertex> ring = ReadPolylineVertices(entity, groups.get());
    if (ring.empty()) return {};
    const double gap = plane::length(ring.front() - ring.back());
    if (kind & kClosed && gap > 0)
        ring.emplace_back(plane::Point(ring.front()));
    else if (!(kind & kClosed) && !(gap < kEndsMeet))
        return {};
    ArcsToChords(ring, kOffsetCutoff, PolylineKind::kRing);
    return ring;
}

// Those round the point, in the order of the drawing.
void addPolygonsRound(plane::Point point, SelectionSet& found) {
    constexpr double kFarAway = 98765432.1;
    ads_point left = {-kFarAway, point.y, 0}, middle = {point.x, point.y, 0}, right = {kFarAway, point.y, 0};
    const ResultBuffers fence(acutBuildList(RTPOINT, left, RTPOINT, middle, RTPOINT, right, 0));
    const ResultBuffers filter = polylineFilter();
    SelectionSet crossed;
    if (acedSSGet("F", fence.get(), nullptr, filter.get(), crossed.out()) != RTNORM) return;
    ads_name entity;
    for (long i = 0; crossed.at(i, entity); ++i)
        if (PointInPolygon(point, ringOf(entity))) acedSSAdd(entity, found.name(), found.name());
}

// Those that the aperture touches, closed or not.
void addPolylinesNear(plane::Point point, SelectionSet& found) {
    resbuf aperture{};
    if (acedGetVar("APERTURE", &aperture) != RTNORM) return;
    const int corner[2] = {0, 0}, across[2] = {aperture.resval.rint, 0};
    ads_point from, to;
    if (acedCoordFromPixelToWorld(0, corner, from) != RTNORM ||
        acedCoordFromPixelToWorld(0, across, to) != RTNORM)
        return;
    const double reach = acutDistance(from, to);
    if (!(reach > 0)) return;
    const ads_point lower = {point.x - reach, point.y - reach, 0};
    const ads_point upper = {point.x + reach, point.y + reach, 0};
    const ResultBuffers filter = polylineFilter();
    SelectionSet touched;
    if (acedSSGet("C", lower, upper, filter.get(), touched.out()) != RTNORM) return;
    ads_name entity;
    for (long i = 0; touched.at(i, entity); ++i)
        if (acedSSMemb(entity, found.name()) != RTNORM) acedSSAdd(entity, found.name(), found.name());
}

// The one that the person accepts.
std::optional<EntityName> choose(const SelectionSet& found) {
    enum { kHighlight = 3, kUnhighlight = 4 };
    EntityName chosen;
    char answer[512] = "";
    for (long i = 0;; i = (i + 1) % found.length()) {
        if (!found.at(i, chosen.name)) return {};
        acedRedraw(chosen.name, kHighlight);
        const int status =
            acedGetString(1, "\nPress N for next selection or Enter to accept current: ", answer);
        acedRedraw(chosen.name, kUnhighlight);
        if (status != RTNORM) return {};
        if (!*answer) return chosen;
    }
}

}  // namespace

std::optional<EntityName> FindPolygonAt(plane::Point point) {
    SelectionSet found;
    acedSSAdd(nullptr, nullptr, found.out());
    addPolygonsRound(point, found);
    addPolylinesNear(point, found);
    if (found.length() > 1) return choose(found);
    EntityName only;
    if (found.at(0, only.name)) return only;
    return {};
}

void FindPolygon(Call& call) {
    ads_point point;
    if (!call.arguments.point(point)) return;
    if (const std::optional<EntityName> found = FindPolygonAt({point[0], point[1], 0}))
        call.result = *found;
    else
        call.result = Nil{};
}

}  // namespace norvane
