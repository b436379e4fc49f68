#include "module/transfer/shape_set.h"

#include <algorithm>
#include <unordered_set>

#include "module/exchange/file_stem.h"
#include "module/store/name_rules.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr const char* kIdField = "PT_ID";
constexpr const char* kFeatureField = "GIS_KEY";

bool isAllDigits(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::string firstFeature(DbfHandle& table, int field) {
    for (int32_t row = 0; row < DbfGetRecordCount(&table); ++row) {
        const std::string name = text::upper(CellText(table, row, field));
        if (text::trim(name).empty()) continue;
        return IsGoodName(name) ? std::string(text::trim(name)) : "";
    }
    return "";
}

bool hasNames(DbfHandle& table, int idField) {
    for (int32_t row = 0; row < DbfGetRecordCount(&table); ++row)
        if (!isAllDigits(CellText(table, row, idField))) return true;
    return false;
}

void readFields(DbfHandle& table, ShapeSet& set) {
    std::string name;
    for (int32_t i = 0; i < DbfGetFieldCount(&table); ++i) {
        DbfGetFieldInfo(&table, i, &name, nullptr, nullptr);
        set.fields.push_back(name);
    }
    const KeyFields keys = FindKeyFields(table);
    if (keys.id >= 0) set.alphanumeric = hasNames(table, keys.id);
    if (keys.feature >= 0) set.feature = firstFeature(table, keys.feature);
}

}  // namespace

const char* ShapeTypeName(int32_t type) {
    switch (type) {
        case shape::kPoint:
            return "POINT";
        case shape::kArc:
            return "ARC";
        case shape::kPolygon:
            return "POLYGON";
        case shape::kPointZ:
            return "POINTZ";
        case shape::kArcZ:
            return "ARCZ";
        case shape::kPolygonZ:
            return "POLYGONZ";
        default:
            return "UNKNOWN";
    }
}

bool IsImported(int32_t type) {
    return std::string_view(ShapeTypeName(type)) != "UNKNOWN";
}

KeyFields FindKeyFields(const DbfHandle& table) {
    KeyFields keys;
    std::string name;
    for (int32_t i = 0; i < DbfGetFieldCount(&table); ++i) {
        const DbfFieldClass type = DbfGetFieldInfo(&table, i, &name, nullptr, nullptr);
        if (text::equalNoCase(name, kIdField) && (type == kDbfString || type == kDbfInteger)) keys.id = i;
        if (text::equalNoCase(name, kFeatureField) && type == kDbfString) keys.feature = i;
    }
    return keys;
}

std::vector<ImportedField> ImportedFields(const DbfHandle& table) {
    const KeyFields keys = FindKeyFields(table);
    std::vector<std::string> names(static_cast<size_t>(DbfGetFieldCount(&table)));
    std::unordered_set<std::string> taken;
    for (size_t i = 0; i < names.size(); ++i) {
        DbfGetFieldInfo(&table, static_cast<int32_t>(i), &names[i], nullptr, nullptr);
        taken.insert(text::upper(names[i]));
    }
    std::vector<ImportedField> fields;
    std::unordered_set<std::string> used;
    for (size_t i = 0; i < names.size(); ++i) {
        std::string column = names[i];
        const bool isId = text::equalNoCase(column, kIdField);
        if (isId || text::equalNoCase(column, kFeatureField)) {
            // A second field of the key's name beside the key itself has no place.
            if ((isId ? keys.id : keys.feature) >= 0) continue;
            for (int number = 1; taken.contains(text::upper(column)); ++number)
                column = names[i] + std::to_string(number);
        }
        if (used.insert(text::upper(column)).second) fields.push_back({static_cast<int>(i), column});
    }
    return fields;
}

std::string CellText(DbfHandle& table, int32_t record, int32_t field) {
    const char* stored = DbfReadStringAttribute(&table, record, field);
    const std::string_view text = stored ? stored : "";
    const char type = table.fieldTypes[static_cast<size_t>(field)];
    const bool isNumber = type == 'N' || type == 'F';
    const bool isNull =
        (isNumber && text.find_first_not_of('*') == std::string_view::npos) || (type == 'L' && text == "?");
    return isNull || text == " " ? "" : std::string(text);
}

std::string SetMember(const std::string& path, const char* ending) {
    return files::onDisk(FileStem(path) + "." + ending);
}

// The name is what stands in the first pair of quotes.
std::string ReferenceOf(const std::string& path) {
    const std::string projection = files::read(SetMember(path, "prj")).value_or("");
    const size_t open = projection.find('"');
    const size_t close = open == std::string::npos ? open : projection.find('"', open + 1);
    return close == std::string::npos ? "" : projection.substr(open + 1, close - open - 1);
}

bool LacksOnlyIndex(const std::string& path) {
    return files::exists(SetMember(path, "shp")) && files::exists(SetMember(path, "dbf")) &&
           !files::exists(SetMember(path, "shx"));
}

std::optional<ShapeSet> ReadShapeSet(const std::string& path) {
    OpenShapeFile shapes(ShapeOpen(path, "rb"));
    OpenDbfFile table(DbfOpen(path, "rb"));
    if (!shapes || !table) return std::nullopt;
    ShapeSet set;
    ShapeBounds least, greatest;
    ShapeGetInfo(shapes.get(), &set.recordCount, &set.shapeType, &least, &greatest);
    if (set.recordCount != DbfGetRecordCount(table.get())) return std::nullopt;
    set.path = SetMember(path, "shp");
    if (set.recordCount > 0) {
        set.extents.add(least[0], least[1]);
        set.extents.add(greatest[0], greatest[1]);
    }
    readFields(*table, set);
    set.reference = ReferenceOf(path);
    return set;
}

}  // namespace norvane
