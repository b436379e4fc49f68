#include "module/transfer/export_rows.h"

#include "module/exchange/shape_object.h"
#include "platform/text/code_page.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

double lengthOf(const std::vector<plane::PolylineVertex>& vertices) {
    double sum = 0;
    for (size_t i = 1; i < vertices.size(); ++i) sum += plane::length(vertices[i] - vertices[i - 1]);
    return sum;
}

}  // namespace

ExportRows::ExportRows(int32_t shapeType, const ExportOptions& options, DbfHandle& table,
                       const ExportColumns& columns, ExportCounts& counts)
    : type_(shapeType),
      options_(options),
      table_(table),
      columns_(columns),
      counts_(counts),
      id_(columns.index("PT_ID")),
      feature_(columns.index("GIS_KEY")) {}

void ExportRows::write(int32_t row, const ExportOutline& outline, double area) {
    row_ = row;
    putText(id_, "");  // so that the row is there
    if (options_.extraFields) writeMeasures(outline, area);
    if (outline.entity->isLinked())
        writeRecord(*outline.entity);
    else
        writeUnlinked(outline);
}

void ExportRows::putText(int column, const std::string& text) {
    if (column >= 0) DbfWriteStringAttribute(&table_, row_, column, text);
}

// A number that its column cannot hold would come out as another one.
void ExportRows::putReal(const char* name, double value) {
    constexpr double kTooLarge = 1e12, kTooSmall = -1e11;
    const int column = columns_.index(name);
    if (column < 0) return;
    if (value < kTooLarge && value > kTooSmall)
        DbfWriteDoubleAttribute(&table_, row_, column, value);
    else
        ++counts_.tooLarge;
}

void ExportRows::writeMeasures(const ExportOutline& outline, double area) {
    if (shape::IsArc(type_)) return putReal("LENGTH_DWG", lengthOf(outline.vertices));
    if (shape::IsPolygon(type_)) return putReal("AREA_DWG", area);
    const plane::Point& at = outline.vertices.front();
    putReal("NORTHING", at.y);
    putReal("EASTING", at.x);
    if (outline.hasHeight || !options_.leavesMissingHeights) putReal("ELEVATION", at.z);
    putText(columns_.index("DESCRIPTION"), outline.description);
}

void ExportRows::writeUnlinked(const ExportOutline& outline) {
    ++counts_.withoutRecord;
    putText(id_, shape::IsPoint(type_) ? outline.pointNumber : std::to_string(++unlinked_));
    putText(feature_, kUnknownFeature);
}

void ExportRows::writeRecord(const ExportEntity& entity) {
    putText(id_, entity.link.keyValue);
    const std::vector<size_t> records =
        entity.table ? entity.table->find(entity.link.keyValue, entity.feature) : std::vector<size_t>{};
    if (!entity.table || records.empty()) {
        ++counts_.withoutRecord;
        return;
    }
    const std::vector<int>& columns = columnsOf(*entity.table);
    for (size_t field = 0; field < columns.size(); ++field)
        if (columns[field] >= 0) writeValue(columns[field], entity.table->value(records, field));
}

void ExportRows::writeValue(int column, const std::string& value) {
    if (value.empty()) return;
    if (!columns_.isText(column)) {
        DbfWriteDoubleAttribute(&table_, row_, column, text::toReal(value));
        return;
    }
    const auto width = static_cast<size_t>(table_.fieldSizes[static_cast<size_t>(column)]);
    if (value.size() > width && text::encode(value).size() > width) ++counts_.cutTexts;
    DbfWriteStringAttribute(&table_, row_, column, value);
}

const std::vector<int>& ExportRows::columnsOf(const LinkedTable& table) {
    const auto [known, isNew] = byTable_.try_emplace(&table);
    if (isNew) known->second = columns_.columnsOf(table);
    return known->second;
}

}  // namespace norvane
