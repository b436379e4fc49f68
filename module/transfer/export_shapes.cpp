#include "module/transfer/export_shapes.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "module/cad/ads_owners.h"
#include "module/cad/block_attributes.h"
#include "module/cad/group_list.h"
#include "module/cad/polyline_vertices.h"
#include "module/exchange/shape_file.h"
#include "module/geometry/chords.h"
#include "module/geometry/nesting.h"
#include "module/geometry/rings.h"
#include "module/transfer/export_columns.h"
#include "platform/ads/editor.h"
#include "platform/files/files.h"
#include "platform/plane/box.h"
#include "platform/text/code_page.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

using plane::Point;
using plane::PolylineVertex;

// The square of a distance. It is the same whatever a person types into the dialog.
constexpr double kOffsetCutoff = 0.1;
// What shape files have for no value: anything below -1e38.
constexpr double kNoHeight = -1e39;

bool isArea(int32_t type) {
    return type == shape::kPolygon || type == shape::kPolygonZ;
}
bool isLine(int32_t type) {
    return type == shape::kArc || type == shape::kArcZ;
}

// --- From an entity to a shape -------------------------------------------------------------------------

// An entity as it goes out: one point, a line, or a ring.
struct Outline {
    const ExportEntity* entity = nullptr;
    std::vector<PolylineVertex> vertices;
    std::string pointNumber, description;  // of a survey point
    bool hasHeight = true;
};

class OutlineReader {
  public:
    OutlineReader(int32_t shapeType, const ExportOptions& options, ExportCounts& counts)
        : type_(shapeType), options_(options), counts_(counts) {}

    // Nothing for an entity of which no shape comes, which is counted.
    std::optional<Outline> read(const ExportEntity& entity) {
        const ResultBuffers groups(acdbEntGet(entity.name));
        const std::string kind = GroupText(groups.get(), 0);
        Outline outline;
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

    bool readPoint(const std::string& kind, const resbuf* groups, Outline& outline) {
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

    bool readLine(const std::string& kind, const resbuf* groups, Outline& outline) {
        std::vector<PolylineVertex>& vertices = outline.vertices;
        if (kind == "LINE" && isLine(type_))
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
        if (isArea(type_) && !vertices.empty() && plane::length(vertices.back() - vertices.front()) > 0)
            vertices.emplace_back(Point(vertices.front()));
        if (vertices.size() < 2) return leaveOut(counts_.tooShort);
        if (options_.deviation)
            ArcsToChordsWithin(vertices, *options_.deviation);
        else
            ArcsToChords(vertices, kOffsetCutoff, isArea(type_) ? PolylineKind::kRing : PolylineKind::kOpen);
        if (!shape::HasZ(type_))
            for (PolylineVertex& vertex : vertices) vertex.z = 0;
        if (isArea(type_)) TurnClockwise(vertices);
        return true;
    }

    int32_t type_;
    const ExportOptions& options_;
    ExportCounts& counts_;
};

double lengthOf(const std::vector<PolylineVertex>& vertices) {
    double sum = 0;
    for (size_t i = 1; i < vertices.size(); ++i) sum += plane::length(vertices[i] - vertices[i - 1]);
    return sum;
}

// --- From a shape to its record ------------------------------------------------------------------------

class RowWriter {
  public:
    RowWriter(int32_t shapeType, const ExportOptions& options, DbfHandle& table, const ExportColumns& columns,
              ExportCounts& counts)
        : type_(shapeType),
          options_(options),
          table_(table),
          columns_(columns),
          counts_(counts),
          id_(columns.index("PT_ID")),
          feature_(columns.index("GIS_KEY")) {}

    // area: of an area, without its holes.
    void write(int32_t row, const Outline& outline, double area) {
        row_ = row;
        putText(id_, "");  // so that the row is there
        if (options_.extraFields) writeMeasures(outline, area);
        if (outline.entity->isLinked())
            writeRecord(*outline.entity);
        else
            writeUnlinked(outline);
    }

  private:
    void putText(int column, const std::string& text) {
        if (column >= 0) DbfWriteStringAttribute(&table_, row_, column, text);
    }
    // A number that its column cannot hold would come out as another one.
    void putReal(const char* name, double value) {
        constexpr double kTooLarge = 1e12, kTooSmall = -1e11;
        const int column = columns_.index(name);
        if (column < 0) return;
        if (value < kTooLarge && value > kTooSmall)
            DbfWriteDoubleAttribute(&table_, row_, column, value);
        else
            ++counts_.tooLarge;
    }

    void writeMeasures(const Outline& outline, double area) {
        if (isLine(type_)) return putReal("LENGTH_DWG", lengthOf(outline.vertices));
        if (isArea(type_)) return putReal("AREA_DWG", area);
        const Point& at = outline.vertices.front();
        putReal("NORTHING", at.y);
        putReal("EASTING", at.x);
        if (outline.hasHeight || !options_.leavesMissingHeights) putReal("ELEVATION", at.z);
        putText(columns_.index("DESCRIPTION"), outline.description);
    }

    void writeUnlinked(const Outline& outline) {
        ++counts_.withoutRecord;
        putText(id_, shape::IsPoint(type_) ? outline.pointNumber : std::to_string(++unlinked_));
        putText(feature_, kUnknownFeature);
    }

    void writeRecord(const ExportEntity& entity) {
        putText(id_, entity.link.keyValue);
        const std::vector<size_t> records =
            entity.table ? entity.table->find(entity.link.keyValue, entity.feature) : std::vector<size_t>{};
        if (records.empty()) {
            ++counts_.withoutRecord;
            return;
        }
        const std::vector<int>& columns = columnsOf(*entity.table);
        for (size_t field = 0; field < columns.size(); ++field)
            if (columns[field] >= 0) writeValue(columns[field], entity.table->value(records, field));
    }

    void writeValue(int column, const std::string& value) {
        if (value.empty()) return;
        if (!columns_.isText(column)) {
            DbfWriteDoubleAttribute(&table_, row_, column, text::toReal(value));
            return;
        }
        const auto width = static_cast<size_t>(table_.fieldSizes[static_cast<size_t>(column)]);
        if (value.size() > width && text::encode(value).size() > width) ++counts_.cutTexts;
        DbfWriteStringAttribute(&table_, row_, column, value);
    }

    const std::vector<int>& columnsOf(const LinkedTable& table) {
        const auto [known, isNew] = byTable_.try_emplace(&table);
        if (isNew) known->second = columns_.columnsOf(table);
        return known->second;
    }

    int32_t type_;
    const ExportOptions& options_;
    DbfHandle& table_;
    const ExportColumns& columns_;
    ExportCounts& counts_;
    int id_, feature_;  // columns
    std::unordered_map<const LinkedTable*, std::vector<int>> byTable_;
    int32_t row_ = 0;
    long unlinked_ = 0;
};

// --- The set -------------------------------------------------------------------------------------------

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
        OutlineReader reader(type_, options_, counts_);
        std::vector<Outline> areas;  // that are to be looked through for holes
        int done = 0;
        for (const ExportEntity* entity : entities_) {
            if (done++ % kEntitiesBetweenQuestions == 0 && !goOn()) return ExportOutcome::kStopped;
            std::optional<Outline> outline = reader.read(*entity);
            if (!outline) continue;
            if (options_.holes && isArea(type_))
                areas.push_back(std::move(*outline));
            else if (!writeShape(*outline, {}))
                return ExportOutcome::kFailed;
        }
        if (!writeAreas(areas)) return ExportOutcome::kFailed;
        limitHeights();
        return ExportOutcome::kWritten;
    }

  private:
    using Holes = std::vector<const Outline*>;

    static std::vector<const LinkedTable*> tablesOf(std::span<ExportEntity* const> entities) {
        std::vector<const LinkedTable*> tables;
        std::unordered_map<const LinkedTable*, bool> known;
        for (const ExportEntity* entity : entities)
            if (entity->table && known.emplace(entity->table, true).second) tables.push_back(entity->table);
        return tables;
    }

    // A ring within an area is its hole, one within that hole an area again.
    bool writeAreas(std::vector<Outline>& areas) {
        std::vector<Ring> rings;
        for (const Outline& area : areas) rings.push_back(area.vertices);
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

    bool writeShape(const Outline& outline, const Holes& holes) {
        x_.clear(), y_.clear(), z_.clear();
        std::vector<int32_t> starts;
        double area = isArea(type_) ? PolygonArea(outline.vertices) : 0;
        addPart(outline, starts);
        for (const Outline* hole : holes) {
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

    void addPart(const Outline& outline, std::vector<int32_t>& starts) {
        starts.push_back(static_cast<int32_t>(x_.size()));
        const bool isMissing = options_.leavesMissingHeights && !outline.hasHeight && shape::HasZ(type_);
        for (const PolylineVertex& vertex : outline.vertices) {
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
    RowWriter rows_;
    std::vector<double> x_, y_, z_;
    plane::Box heights_;  // along x
};

}  // namespace

void ExportCounts::add(const ExportCounts& other) {
    for (int ExportCounts::*count :
         {&ExportCounts::written, &ExportCounts::holes, &ExportCounts::withoutRecord, &ExportCounts::cutTexts,
          &ExportCounts::tooLarge, &ExportCounts::leftOutColumns, &ExportCounts::meshes,
          &ExportCounts::tooShort, &ExportCounts::farOut, &ExportCounts::otherKinds})
        this->*count += other.*count;
}

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

// --- What is said of it --------------------------------------------------------------------------------

std::string Counted(int count, const std::string& one, const std::string& many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

std::string LeftOutText(const ExportCounts& counts) {
    std::vector<std::string> reasons;
    if (counts.tooShort) reasons.push_back(std::to_string(counts.tooShort) + " with fewer than two vertices");
    if (counts.meshes) reasons.push_back(Counted(counts.meshes, "mesh", "meshes"));
    if (counts.farOut) reasons.push_back(std::to_string(counts.farOut) + " with coordinates out of range");
    if (counts.otherKinds) reasons.push_back(std::to_string(counts.otherKinds) + " of another kind");
    std::string text;
    if (!reasons.empty())
        text += "; " + Counted(counts.leftOut(), "entity", "entities") +
                " left out: " + text::join(reasons, ", ");
    if (counts.holes)
        text += "; " + Counted(counts.holes, "entity is a hole", "entities are holes") + " of others";
    if (counts.withoutRecord) text += "; " + std::to_string(counts.withoutRecord) + " without a record";
    if (counts.cutTexts) text += "; " + Counted(counts.cutTexts, "text", "texts") + " cut to 254 characters";
    if (counts.tooLarge)
        text += "; " + Counted(counts.tooLarge, "number", "numbers") + " too large for the table";
    if (counts.leftOutColumns)
        text += "; " + Counted(counts.leftOutColumns, "field", "fields") + " without room in the table";
    return text;
}

std::string ExportSummary(int32_t shapeType, const std::string& name, const ExportCounts& counts) {
    const std::string kind = isArea(shapeType)   ? Counted(counts.written, "polygon", "polygons")
                             : isLine(shapeType) ? Counted(counts.written, "line", "lines")
                                                 : Counted(counts.written, "point", "points");
    return kind + " written to " + name + ".shp" + LeftOutText(counts);
}

}  // namespace norvane
