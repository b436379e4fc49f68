#include "module/transfer/export_columns.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "module/exchange/shape_object.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr size_t kLongestName = 10;  // characters
constexpr ColumnShape kKeyColumn{kDbfString, 32, 0};
constexpr ColumnShape kFeatureColumn{kDbfString, 50, 0};
constexpr ColumnShape kDescriptionColumn{kDbfString, 50, 0};
constexpr ColumnShape kMeasureColumn{kDbfDouble, 12, 4};

// The first characters of a text.
std::string beginning(const std::string& text, size_t characters) {
    size_t at = 0;
    for (size_t i = 0; i < characters && at < text.size(); ++i) text::nextCodePoint(text, at);
    return text.substr(0, at);
}

using Names = std::vector<std::string>;

// The columns that the drawing fills.
Names columnsOfDrawing(int32_t shapeType) {
    switch (shapeType) {
        case shape::kPoint:
            return {"NORTHING", "EASTING", "DESCRIPTION"};
        case shape::kPointZ:
            return {"NORTHING", "EASTING", "ELEVATION", "DESCRIPTION"};
        case shape::kArc:
        case shape::kArcZ:
            return {"LENGTH_DWG"};
        default:
            return {"AREA_DWG"};
    }
}

// The fields of records that give way to them.
bool isFromDrawing(int32_t shapeType, const std::string& name) {
    Names names = shape::IsPoint(shapeType)
                      ? Names{"NORTHING", "EASTING", "ELEVATION", "DESCRIPTION", "DESCRIPTIO"}
                      : columnsOfDrawing(shapeType);
    return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace

std::vector<std::string> ShortColumnNames(std::span<const std::string> names) {
    std::unordered_set<std::string> taken;
    for (const std::string& name : names)
        if (beginning(name, kLongestName) == name) taken.insert(name);
    std::vector<std::string> shortNames;
    for (const std::string& name : names) {
        std::string shortName = beginning(name, kLongestName);
        if (shortName != name) {
            for (int n = 1; !taken.insert(shortName).second; ++n)
                shortName = beginning(name, kLongestName - 1) + std::to_string(n);
        }
        shortNames.push_back(shortName);
    }
    return shortNames;
}

ExportColumns::ExportColumns(int32_t shapeType, bool extra, std::span<const LinkedTable* const> tables)
    : shapeType_(shapeType) {
    columns_ = {{"PT_ID", kKeyColumn}, {"GIS_KEY", kFeatureColumn}};
    const bool hasFields = std::any_of(tables.begin(), tables.end(),
                                       [](const LinkedTable* table) { return !table->fields().empty(); });
    if (extra || !hasFields)
        for (const std::string& name : columnsOfDrawing(shapeType))
            columns_.push_back({name, name == "DESCRIPTION" ? kDescriptionColumn : kMeasureColumn});

    Names names;
    std::unordered_map<std::string, ColumnNeeds> needs;
    for (const LinkedTable* table : tables)
        for (const LinkedTable::Field& field : table->fields()) {
            if (field.name == "GIS_KEY" || isFromDrawing(shapeType, field.name)) continue;
            const auto [known, isNew] = needs.try_emplace(field.name);
            if (isNew) names.push_back(field.name);
            known->second.add(field.needs);
        }
    for (const std::string& name : names) columns_.push_back({name, needs[name].shape()});
}

int ExportColumns::addTo(DbfHandle& table) {
    Names names;
    for (const Column& column : columns_) names.push_back(column.name);
    const Names shortNames = ShortColumnNames(names);
    std::vector<Column> added;
    for (size_t i = 0; i < columns_.size(); ++i) {
        const ColumnShape& shape = columns_[i].shape;
        if (DbfAddField(&table, shortNames[i], shape.type, shape.width, shape.decimals) >= 0)
            added.push_back(columns_[i]);
    }
    const int leftOut = static_cast<int>(columns_.size() - added.size());
    columns_ = std::move(added);
    return leftOut;
}

int ExportColumns::index(const std::string& name) const {
    const auto found = std::find_if(columns_.begin(), columns_.end(),
                                    [&](const Column& column) { return column.name == name; });
    return found == columns_.end() ? -1 : static_cast<int>(found - columns_.begin());
}

bool ExportColumns::isText(int column) const {
    return columns_[static_cast<size_t>(column)].shape.type == kDbfString;
}

std::vector<int> ExportColumns::columnsOf(const LinkedTable& table) const {
    std::vector<int> columns;
    for (const LinkedTable::Field& field : table.fields())
        columns.push_back(isFromDrawing(shapeType_, field.name) ? -1 : index(field.name));
    return columns;
}

}  // namespace norvane
