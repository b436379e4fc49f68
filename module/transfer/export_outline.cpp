#include "module/transfer/export_outline.h"

#include <algorithm>
#include <cmath>

#include "module/cad/ads_owners.h"
#include "module/cad/block_attributes.h"
#include "module/cad/group_list.h"
#include "module/cad/polyline_vertices.h"
#include "module/exchange/shape_object.h"
#include "module/geometry/chords.h"
#include "module/geometry/rings.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

using plane::Point;
using plane::PolylineVertex;

// The square of a distance. It is the same whatever a person types into the dialog.
constexpr double kOffsetCutoff = 0.1;

class OutlineReader {
  public:
    OutlineReader(int32_t shapeType, const ExportOptions& options, ExportCounts& counts)
        : type_(shapeType), options_(options), counts_(counts) {}

    // Nothing for an entity of which no shape comes, which is counted.
    std::optional<ExportOutline> read(const ExportEntity& entity) {
        const ResultBuffers groups(acdbEntGet(entity.name));
        const std::string kind = GroupText(groups.get(), 0);
        ExportOutline outline;
        outline.entity = &entity;
        const bool isRead = shape::IsPoint(type_) ? readPoint(kind, groups.get(), outline)
                                                  : readLine(kind, groups.get(), outline);
        if (!isRead) return std::nullopt;
        return outline;
    }

  private:
    bool leaveOut(int& reason) {
        ++reason;
        return false;
    }

    bool readPoint(const std::string& kind, const resbuf* groups, ExportOutline& outline) {
        constexpr double kFarOut = 1e30;
        if (kind != "INSERT") return leaveOut(counts_.otherKinds);
        Point at = ReadInsertionPoint(groups);
        if (type_ == shape::kPoint) at.z = 0;
        for (double coordinate : {at.x, at.y, at.z})
            if (!(std::abs(coordinate) < kFarOut)) return leaveOut(counts_.farOut);
        const std::vector<BlockAttribute> attributes = ReadBlockAttributes(outline.entity->name);
        outline.pointNumber = AttributeText(attributes, "PT#");
        outline.description = AttributeText(attributes, "DESC2");
        // A point that was not levelled stands at 0 and says nothing of its height.
        outline.hasHeight = at.z != 0 || !text::trim(AttributeText(attributes, "ELEV2")).empty();
        outline.vertices.emplace_back(at);
        return true;
    }

    bool readLine(const std::string& kind, const resbuf* groups, ExportOutline& outline) {
        std::vector<PolylineVertex>& vertices = outline.vertices;
        if (kind == "LINE" && shape::IsArc(type_))
            vertices = {PointOfGroup(groups, 10), PointOfGroup(groups, 11)};
        else if (kind == "LWPOLYLINE" || kind == "POLYLINE")
            vertices = ReadPolylineVertices(outline.entity->name, groups);
        else
            return leaveOut(counts_.otherKinds);
        if (IsMesh(groups)) return leaveOut(counts_.meshes);
        const auto isNowhere = [](const PolylineVertex& v) {
            return !std::isfinite(v.x) || !std::isfinite(v.y) || !std::isfinite(v.z);
        };
        if (std::any_of(vertices.begin(), vertices.end(), isNowhere)) return leaveOut(counts_.farOut);
        if (shape::IsPolygon(type_) && !vertices.empty() &&
            plane::length(vertices.back() - vertices.front()) > 0)
            vertices.emplace_back(Point(vertices.front()));
        if (vertices.size() < 2) return leaveOut(counts_.tooShort);
        if (options_.deviation)
            ArcsToChordsWithin(vertices, *options_.deviation);
        else
            ArcsToChords(vertices, kOffsetCutoff,
                         shape::IsPolygon(type_) ? PolylineKind::kRing : PolylineKind::kOpen);
        if (!shape::HasZ(type_))
            for (PolylineVertex& vertex : vertices) vertex.z = 0;
        if (shape::IsPolygon(type_)) TurnClockwise(vertices);
        return true;
    }

    int32_t type_;
    const ExportOptions& options_;
    ExportCounts& counts_;
};

}  // namespace

std::optional<ExportOutline> ReadOutline(const ExportEntity& entity, int32_t shapeType,
                                         const ExportOptions& options, ExportCounts& counts) {
    return OutlineReader(shapeType, options, counts).read(entity);
}

}  // namespace norvane
