#include "module/features/feature_from_table_rows.h"

#include <algorithm>
#include <optional>
#include <set>

#include "module/prompting/known_attributes.h"
#include "module/store/name_rules.h"
#include "module/store/output_database.h"
#include "module/store/text_table.h"
#include "module/store/user_tables.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr const char* kKeys[] = {"PT_ID", "GIS_KEY"};

bool isKey(const std::string& upperName) {
    return upperName == kKeys[0] || upperName == kKeys[1];
}

bool makesAttribute(const TableColumn& column) {
    return FieldKindOf(column.type) && !isKey(column.name) && !text::startsWith(column.name, "IMAGE_ZGE") &&
           !text::startsWith(column.name, "LABEL/") && IsGoodName(column.name);
}

FeatureFileRow ofPoint(const KnownAttribute& known, const std::string& fullName) {
    return {false, FieldKind::kChar, known.abbreviation, fullName, {true, {known.code}, known.code}};
}

FeatureFileRow attributeOf(const TableColumn& column) {
    if (const KnownAttribute* known = FindKnownAttribute(column.name)) return ofPoint(*known, column.name);
    return {false, *FieldKindOf(column.type), column.name, column.name, {}};
}

}  // namespace

bool SourceTable::hasColumn(const std::string& upperName) const {
    return std::ranges::find(columns, upperName, &TableColumn::name) != columns.end();
}

std::vector<SourceTable> ReadSourceTables(CDaoDatabase& database) {
    std::vector<SourceTable> tables;
    for (const std::string& name : UserTables(database)) {
        SourceTable table;
        table.name = text::upper(name);
        if (database.GetConnect().onServer()) table.name.erase(0, table.name.find('.') + 1);
        CDaoTableDef definition(&database);
        definition.Open(name);
        bool hasFields = false, keysAreText = true;
        CDaoFieldInfo field;
        for (int i = 0; i < definition.GetFieldCount(); ++i) {
            definition.GetFieldInfo(i, field);
            table.columns.push_back({text::upper(field.name), field.type});
            if (isKey(table.columns.back().name))
                keysAreText = keysAreText && TakesText(field, database);
            else
                hasFields = hasFields || FieldKindOf(field.type);
        }
        if (hasFields && keysAreText) tables.push_back(std::move(table));
    }
    return tables;
}

SourceTable SourceTableOf(const ObjectDataTable& table) {
    SourceTable source{table.name, {}};
    for (const ObjectDataColumn& column : table.columns) {
        constexpr int kOther = dbBinary;
        const int type = text::equalNoCase(column.type, "character") ? dbText
                         : text::equalNoCase(column.type, "integer") ? dbInteger
                         : text::equalNoCase(column.type, "real")    ? dbDouble
                                                                     : kOther;
        source.columns.push_back({text::upper(column.name), type});
    }
    return source;
}

void AddKeyColumns(CDaoDatabase& database, const std::string& table) {
    database.BeginTrans();
    {
        CDaoTableDef definition(&database);
        definition.Open(FindUserTable(database, table));
        for (const char* key : kKeys)
            if (!FindField(database, definition.GetName(), key)) definition.CreateField(KeyColumn(key));
    }
    database.CommitTrans();
}

std::vector<FeatureFileRow> AttributesOfTable(const std::vector<TableColumn>& columns) {
    // Unlike the list of all that the point gives: date and time stand last, and the instrument is not in it.
    constexpr const char* kFirst[] = {"NORTHING", "EASTING",   "ELEVATION", "DESCRIPTION",
                                      "LATITUDE", "LONGITUDE", "RAW_ELEV",  "ROD_HEIGHT",
                                      "HRMS_CEP", "VRMS_SEP",  "DATE",      "TIME"};
    std::vector<FeatureFileRow> rows;
    std::set<std::string> used;
    for (const char* name : kFirst) {
        const auto column = std::ranges::find(columns, name, &TableColumn::name);
        if (column == columns.end() || !makesAttribute(*column)) continue;
        const KnownAttribute* known = FindKnownAttribute(name);
        rows.push_back(ofPoint(*known, known->fullName));
        used.insert(name);
    }
    for (const TableColumn& column : columns)
        if (makesAttribute(column) && used.insert(column.name).second) rows.push_back(attributeOf(column));
    return rows;
}

}  // namespace norvane
