#include "module/transfer/export_shapes.h"

#include <unordered_map>

#include "module/exchange/shape_file.h"
#include "module/geometry/nesting.h"
#include "module/geometry/rings.h"
#include "module/transfer/export_columns.h"
#include "module/transfer/export_outline.h"
#include "module/transfer/export_rows.h"
#include "platform/ads/editor.h"
#include "platform/files/files.h"
#include "platform/plane/box.h"

namespace norvane {

namespace {

// What shape files have for no value: anything below -1e38.
constexpr double kNoHeight = -1e39;

class SetExport {
  public:
    SetExport(int32_t shapeType, std::span<ExportEntity* const> entities, const ExportOptions& options,
              NewShapeSet& set, ExportCounts& counts)
        : type_(shapeType),
          entities_(entities),
          options_(options),
          set_(set),
          counts_(counts),
          columns_(shapeType, options.extraFields, tablesOf(entities)),
          rows_(shapeType, options, set.table(), columns_, counts) {
        counts_.leftOutColumns = columns_.addTo(set.table());
    }

    ExportOutcome write(const GoOn& goOn) {
        std::vector<ExportOutline> areas;  // that are to be looked through for holes
        int done = 0;
        for (const ExportEntity* entity : entities_) {
            if (done++ % kEntitiesBetweenQuestions == 0 && !goOn()) return ExportOutcome::kStopped;
            std::optional<ExportOutline> outline = ReadOutline(*entity, type_, options_, counts_);
            if (!outline) continue;
            if (options_.holes && shape::IsPolygon(type_))
                areas.push_back(std::move(*outline));
            else if (!writeShape(*outline, {}))
                return ExportOutcome::kFailed;
        }
        if (!writeAreas(areas)) return ExportOutcome::kFailed;
        limitHeights();
        return ExportOutcome::kWritten;
    }

  private:
    using Holes = std::vector<const ExportOutline*>;

    static std::vector<const LinkedTable*> tablesOf(std::span<ExportEntity* const> entities) {
        std::vector<const LinkedTable*> tables;
        std::unordered_map<const LinkedTable*, bool> known;
        for (const ExportEntity* entity : entities)
            if (entity->table && known.emplace(entity->table, true).second) tables.push_back(entity->table);
        return tables;
    }

    // A ring within an area is its hole, one within that hole an area again.
    bool writeAreas(std::vector<ExportOutline>& areas) {
        std::vector<Ring> rings;
        for (const ExportOutline& area : areas) rings.push_back(area.vertices);
        const std::vector<int> enclosing = EnclosingRings(rings);
        std::vector<Holes> holes(areas.size());
        std::vector<bool> isHole(areas.size());
        for (size_t i = 0; i < areas.size(); ++i) {
            int depth = 0;
            for (int ring = enclosing[i]; ring != kNoRing; ring = enclosing[static_cast<size_t>(ring)])
                ++depth;
            if (depth % 2 == 0) continue;
            isHole[i] = true;
            TurnAnticlockwise(areas[i].vertices);
            holes[static_cast<size_t>(enclosing[i])].push_back(&areas[i]);
        }
        for (size_t i = 0; i < areas.size(); ++i)
            if (!isHole[i] && !writeShape(areas[i], holes[i])) return false;
        return true;
    }

    bool writeShape(const ExportOutline& outline, const Holes& holes) {
        x_.clear(), y_.clear(), z_.clear();
        std::vector<int32_t> starts;
        double area = shape::IsPolygon(type_) ? PolygonArea(outline.vertices) : 0;
        addPart(outline, starts);
        for (const ExportOutline* hole : holes) {
            addPart(*hole, starts);
            area -= PolygonArea(hole->vertices);
        }
        const OwnedShape shape(ShapeCreateObject(type_, -1, static_cast<int32_t>(starts.size()),
                                                 starts.data(), nullptr, static_cast<int32_t>(x_.size()),
                                                 x_.data(), y_.data(), z_.data(), nullptr, 0));
        const int32_t row = shape ? ShapeWriteObject(&set_.shapes(), -1, shape.get()) : -1;
        if (row < 0) return false;
        rows_.write(row, outline, area);
        ++counts_.written;
        counts_.holes += static_cast<int>(holes.size());
        return true;
    }

    void addPart(const ExportOutline& outline, std::vector<int32_t>& starts) {
        starts.push_back(static_cast<int32_t>(x_.size()));
        const bool isMissing = options_.leavesMissingHeights && !outline.hasHeight && shape::HasZ(type_);
        for (const plane::PolylineVertex& vertex : outline.vertices) {
            x_.push_back(vertex.x);
            y_.push_back(vertex.y);
            z_.push_back(isMissing ? kNoHeight : vertex.z);
            if (!isMissing) heights_.add(vertex.z, 0);
        }
    }

    // Heights that are missing are none of the set's.
    void limitHeights() {
        if (!options_.leavesMissingHeights || type_ != shape::kPointZ) return;
        constexpr size_t kZ = 2;
        set_.shapes().boundsMin[kZ] = heights_.empty() ? 0 : heights_.minX;
        set_.shapes().boundsMax[kZ] = heights_.empty() ? 0 : heights_.maxX;
    }

    int32_t type_;
    std::span<ExportEntity* const> entities_;
    const ExportOptions& options_;
    NewShapeSet& set_;
    ExportCounts& counts_;
    ExportColumns columns_;
    ExportRows rows_;
    std::vector<double> x_, y_, z_;
    plane::Box heights_;  // along x
};

}  // namespace

std::string SetName(const std::string& path) {
    const std::string name = files::nameOf(path);
    return name.substr(0, name.find('.', 1));
}

ExportResult ExportToShp(int32_t shapeType, SetFolder& folder, const std::string& name,
                         std::span<ExportEntity* const> entities, const ExportOptions& options,
                         const GoOn& goOn) {
    ExportResult result;
    std::unique_ptr<NewShapeSet> set = NewShapeSet::make(folder, name, shapeType);
    if (!set) return result;
    result.outcome = SetExport(shapeType, entities, options, *set, result.counts).write(goOn);
    if (result.outcome == ExportOutcome::kWritten && !set->close(options.reference))
        result.outcome = ExportOutcome::kFailed;
    if (result.outcome == ExportOutcome::kFailed) TellNotWhole(name);
    if (result.outcome == ExportOutcome::kWritten) result.set = std::move(set);
    return result;
}

void TellNotWhole(const std::string& name) {
    acutPrintf(
        "\n%s.shp could not be written whole, and what was there before is as it was: is the disk full?",
        name.c_str());
}

}  // namespace norvane
