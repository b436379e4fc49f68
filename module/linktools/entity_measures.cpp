#include "module/linktools/entity_measures.h"

#include <cmath>
#include <numbers>
#include <string>

#include "module/cad/ads_owners.h"
#include "module/cad/group_list.h"
#include "module/cad/polyline_vertices.h"
#include "platform/plane/arc.h"

namespace norvane {

namespace {

std::optional<double>& of(EntityMeasures& measures, Measure measure) {
    return measures[static_cast<size_t>(measure)];
}

void measurePlace(EntityMeasures& measures, const plane::Point& at) {
    of(measures, Measure::kNorthing) = at.y;
    of(measures, Measure::kEasting) = at.x;
    // Drawings without heights have everything at 0: that is no measured height, and must not replace one.
    if (at.z != 0) of(measures, Measure::kElevation) = at.z;
}

void measurePolyline(EntityMeasures& measures, std::vector<plane::PolylineVertex> vertices, bool isClosed) {
    if (vertices.size() < 2) return;
    // Relative to the first vertex: products of full coordinates would lose the small differences.
    const plane::Point origin = vertices.front();
    if (isClosed) vertices.emplace_back(origin);
    double length = 0, area = 0;
    for (size_t i = 1; i < vertices.size(); ++i) {
        const plane::Point from = vertices[i - 1] - origin, to = vertices[i] - origin;
        const double bulge = vertices[i - 1].bulge;
        area += (from.x * to.y - to.x * from.y) / 2;
        if (const std::optional<plane::Arc> arc = plane::arcOf(from, to, bulge)) {
            const double segment = arc->radius * arc->radius * (arc->sweep - std::sin(arc->sweep)) / 2;
            length += arc->radius * arc->sweep;
            area += bulge > 0 ? segment : -segment;
        } else {
            length += plane::distance(from, to);
        }
    }
    of(measures, Measure::kLength) = length;
    if (isClosed) of(measures, Measure::kArea) = std::abs(area);
}

}  // namespace

EntityMeasures MeasureEntity(const ads_name entity) {
    constexpr int kFlags = 70, kRadius = 40;
    constexpr int kClosed = 1;
    EntityMeasures measures;
    const ResultBuffers groups(acdbEntGet(entity));
    const std::string type = GroupText(groups.get(), 0);
    if (type == "INSERT") {
        measurePlace(measures, ReadInsertionPoint(groups.get()));
    } else if (type == "POINT" || type == "TEXT" || type == "CIRCLE") {
        measurePlace(measures, PointOfGroup(groups.get(), 10));
    } else if (type == "LINE") {
        of(measures, Measure::kLength) =
            plane::distance(PointOfGroup(groups.get(), 10), PointOfGroup(groups.get(), 11));
    } else if ((type == "LWPOLYLINE" || type == "POLYLINE") && !IsMesh(groups.get())) {
        const resbuf* flags = FindResultBuffer(groups.get(), kFlags);
        measurePolyline(measures, ReadPolylineVertices(entity, groups.get()),
                        flags && (flags->resval.rint & kClosed) != 0);
    }
    if (const resbuf* radius = FindResultBuffer(groups.get(), kRadius); radius && type == "CIRCLE") {
        of(measures, Measure::kLength) = 2 * std::numbers::pi * radius->resval.rreal;
        of(measures, Measure::kArea) = std::numbers::pi * radius->resval.rreal * radius->resval.rreal;
    }
    return measures;
}

}  // namespace norvane
