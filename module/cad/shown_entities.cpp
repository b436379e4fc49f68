#include "module/cad/shown_entities.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "module/cad/group_list.h"
#include "module/cad/polyline_vertices.h"
#include "module/cad/variable_scope.h"
#include "platform/ads/editor.h"
#include "platform/plane/box.h"

namespace norvane {

namespace {

constexpr int kHighlight = 3, kUnhighlight = 4;

// The points by which an entity is placed.
void addPlace(plane::Box& box, const ads_name entity) {
    const ResultBuffers groups(acdbEntGet(entity));
    auto add = [&](const plane::Point& point) {
        if (std::isfinite(point.x) && std::isfinite(point.y)) box.add(point.x, point.y);
    };
    const std::string type = GroupText(groups.get(), 0);
    if (type == "INSERT") return add(ReadInsertionPoint(groups.get()));
    const std::vector<plane::PolylineVertex> vertices = ReadPolylineVertices(entity, groups.get());
    for (const plane::PolylineVertex& vertex : vertices) add(vertex);
    if (!vertices.empty()) return;
    for (int group : {10, 11})
        if (FindResultBuffer(groups.get(), group)) add(PointOfGroup(groups.get(), group));
}

void zoomTo(const plane::Box& box) {
    constexpr double kMargin = 0.1;  // of the larger side, round it
    constexpr double kLeast = 10;    // drawing units, round a single place
    if (box.empty()) return;
    const double side = std::max(box.width(), box.height());
    const double margin = side > 0 ? side * kMargin : kLeast;
    ads_point low = {box.minX - margin, box.minY - margin, 0},
              high = {box.maxX + margin, box.maxY + margin, 0};
    const VariableScope quiet("CMDECHO", 0);
    acedCommand(RTSTR, "_.ZOOM", RTSTR, "_Window", RTPOINT, low, RTPOINT, high, 0);
}

}  // namespace

ShownEntities::~ShownEntities() {
    for (const EntityName& entity : lit_) acedRedraw(entity.name, kUnhighlight);
}

void ShownEntities::show(std::span<const EntityName> entities) {
    plane::Box box;
    for (const EntityName& entity : entities) addPlace(box, entity.name);
    zoomTo(box);
    for (const EntityName& entity : lit_) acedRedraw(entity.name, kUnhighlight);
    lit_.assign(entities.begin(), entities.end());
    for (const EntityName& entity : lit_) acedRedraw(entity.name, kHighlight);
}

}  // namespace norvane
