#include "hostcad/editor/entity_making.h"

#include "hostcad/drawing/current_drawing.h"
#include "hostcad/drawing/host_names.h"
#include "hostcad/editor/host.h"
#include "platform/ads/entities.h"

namespace hostcad {

GroupList& GroupList::text(int code, std::string_view value) {
    chain_.addText(code, value);
    return *this;
}

GroupList& GroupList::real(int code, double value) {
    chain_.add(code).resval.rreal = value;
    return *this;
}

GroupList& GroupList::integer(int code, int value) {
    chain_.addInteger(code, value);
    return *this;
}

GroupList& GroupList::point(int code, const Point& value) {
    setPoint(value, chain_.add(code).resval.rpoint);
    return *this;
}

bool makeEntity(Host& host, const GroupList& groups) {
    if (acdbEntMake(groups.list()) == RTNORM) return true;
    host.write("\nThe drawing does not take this entity.\n");
    return false;
}

namespace {

void addWidthsAndBulge(GroupList& groups, const PolylineCorner& corner) {
    groups.real(40, corner.startWidth).real(41, corner.endWidth).real(42, corner.bulge);
}

bool makeLightPolyline(Host& host, const std::vector<PolylineCorner>& corners, bool isClosed) {
    GroupList groups;
    groups.text(0, "LWPOLYLINE").text(100, "AcDbEntity").text(100, "AcDbPolyline");
    groups.integer(90, static_cast<int>(corners.size())).integer(70, isClosed).real(38, corners.front().at.z);
    for (const PolylineCorner& corner : corners) {
        groups.point(10, {corner.at.x, corner.at.y, 0});
        addWidthsAndBulge(groups, corner);
    }
    return makeEntity(host, groups);
}

bool makeOldPolyline(Host& host, const std::vector<PolylineCorner>& corners, bool isClosed) {
    GroupList head;
    head.text(0, "POLYLINE").integer(66, 1).point(10, {0, 0, corners.front().at.z}).integer(70, isClosed);
    if (!makeEntity(host, head)) return false;
    for (const PolylineCorner& corner : corners) {
        GroupList vertex;
        vertex.text(0, "VERTEX").point(10, corner.at);
        addWidthsAndBulge(vertex, corner);
        if (!makeEntity(host, vertex)) return false;
    }
    GroupList end;
    end.text(0, "SEQEND");
    return makeEntity(host, end);
}

}  // namespace

bool makePolyline(Host& host, const std::vector<PolylineCorner>& corners, bool isClosed) {
    bool isLight = hasSubclasses(currentDrawing().version()) && host.variables().integer("PLINETYPE") > 0;
    return isLight ? makeLightPolyline(host, corners, isClosed) : makeOldPolyline(host, corners, isClosed);
}

}  // namespace hostcad
