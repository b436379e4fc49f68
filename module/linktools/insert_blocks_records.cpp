#include "module/linktools/insert_blocks_records.h"

#include <algorithm>
#include <cmath>

#include "module/linktools/record_table.h"
#include "module/points/point_store.h"
#include "module/store/database.h"
#include "module/store/text_table.h"
#include "module/store/user_tables.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr const char* kId = "PT_ID";
constexpr const char* kFeature = "GIS_KEY";
constexpr const char* kNorthing = "NORTHING";
constexpr const char* kEasting = "EASTING";
constexpr const char* kElevation = "ELEVATION";

// The coordinate file, as long as records are looked up in it.
class OpenPoints {
  public:
    explicit OpenPoints(const std::string& path) {
        if (files::exists(path)) isOpen_ = PointStoreOpen(path, 0, -1) != 0;
    }
    ~OpenPoints() {
        if (isOpen_) PointStoreClose();
    }
    OpenPoints(const OpenPoints&) = delete;
    OpenPoints& operator=(const OpenPoints&) = delete;

    bool find(const std::string& name, PointRecord& point) const {
        return isOpen_ && PointStoreFind(name, point, 1) != 0;
    }

  private:
    bool isOpen_ = false;
};

// As coordinates of records have always come into the drawing.
double toNineDecimals(double value) {
    return text::toReal(text::format("%.9lf", value));
}

class PlacementReader {
  public:
    PlacementReader(CDaoRecordset& records, const PlacementSource& source)
        : records_(records),
          source_(source),
          points_(source.isInRecords ? "" : source.pointFile),
          id_(columnOf(kId)),
          northing_(columnOf(kNorthing)),
          easting_(columnOf(kEasting)),
          elevation_(columnOf(kElevation)) {
        for (const AttributeField& attribute : source.attributes)
            columns_.push_back(columnOf(attribute.field));
    }

    // False when the step has ended it.
    bool read(BlockPlacements& found, const ReadingStep& step) {
        if (records_.IsEOF()) return true;
        records_.MoveLast();
        const long total = records_.GetRecordCount();
        for (records_.MoveFirst(); !records_.IsEOF(); records_.MoveNext()) {
            if (!step(static_cast<long>(found.records), total)) return false;
            ++found.records;
            readRecord(found);
        }
        return true;
    }

  private:
    // The place of a field; -1 when the table has none of that name.
    int columnOf(const std::string& name) const {
        CDaoFieldInfo field;
        for (int i = 0; i < records_.GetFieldCount(); ++i) {
            records_.GetFieldInfo(i, field);
            if (text::equalNoCase(field.name, name)) return i;
        }
        return -1;
    }
    std::string textOf(int column) const {
        return column < 0 ? std::string() : dao::toText(records_.GetFieldValue(column));
    }

    void readRecord(BlockPlacements& found) const {
        BlockPlacement placement;
        placement.id = textOf(id_);
        if (placement.id.empty()) return found.passedOver.add("without a PT_ID", "");
        std::optional<plane::Point> place =
            source_.isInRecords ? placeInRecord() : placeOfPoint(placement.id);
        if (!place)
            return found.passedOver.add(source_.isInRecords ? "without coordinates" : "without a point",
                                        placement.id);
        if (!std::isfinite(place->x) || !std::isfinite(place->y))
            return found.passedOver.add("whose coordinates are no numbers", placement.id);
        placement.at = {toNineDecimals(place->x), toNineDecimals(place->y), place->z};
        for (const int column : columns_) {
            // A value has always ended at its first pair of accents, which parted it from the next one.
            std::string value = textOf(column);
            placement.values.push_back(value.substr(0, value.find("``")));
        }
        found.placements.push_back(std::move(placement));
    }

    std::optional<plane::Point> placeOfPoint(const std::string& id) const {
        PointRecord point;
        if (!points_.find(id, point)) return std::nullopt;
        return plane::Point{point.easting, point.northing, 0};
    }

    std::optional<double> numberOf(int column) const {
        return column < 0 ? std::nullopt : NumberFrom(records_.GetFieldValue(column));
    }
    std::optional<plane::Point> placeInRecord() const {
        const std::optional<double> northing = numberOf(northing_), easting = numberOf(easting_);
        if (!northing || !easting) return std::nullopt;
        const double elevation = numberOf(elevation_).value_or(0);
        const bool hasElevation = std::isfinite(elevation) && elevation != kNoElevation;
        return plane::Point{*easting, *northing, hasElevation ? elevation : 0};
    }

    CDaoRecordset& records_;
    const PlacementSource& source_;
    OpenPoints points_;
    int id_, northing_, easting_, elevation_;
    std::vector<int> columns_;  // of the attributes
};

}  // namespace

std::vector<PlacementTable> ReadPlacementTables(CDaoDatabase& database) {
    std::vector<PlacementTable> tables;
    for (const std::string& name : UserTables(database)) {
        PlacementTable table{name, {}};
        CDaoTableDef definition(&database);
        definition.Open(name);
        std::vector<std::string> fields;
        CDaoFieldInfo field;
        for (int i = 0; i < definition.GetFieldCount(); ++i) {
            definition.GetFieldInfo(i, field);
            fields.push_back(text::upper(field.name));
            if (TakesText(field, database)) table.textFields.push_back(field.name);
        }
        const auto has = [&](const char* wanted) {
            return std::find(fields.begin(), fields.end(), wanted) != fields.end();
        };
        table.hasCoordinates = has(kNorthing) && has(kEasting);
        if (has(kId) && has(kFeature)) tables.push_back(std::move(table));
    }
    return tables;
}

std::optional<BlockPlacements> ReadPlacements(const PlacementSource& source, const ReadingStep& step) {
    BlockPlacements found;
    bool isWhole = false;
    const auto read = [&](CDaoDatabase& database) {
        CDaoRecordset records(&database);
        records.Open(dbOpenDynaset, RecordTable::Statement(database, source.table));
        isWhole = PlacementReader(records, source).read(found, step);
    };
    if (WithDatabase(source.output, read) != DatabaseOutcome::kDone || !isWhole) return std::nullopt;
    return found;
}

}  // namespace norvane
