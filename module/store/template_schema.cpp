#include "module/store/template_schema.h"

#include <algorithm>

#include "module/store/user_tables.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr int kVariable = dbVariableField | dbUpdatableField;

struct Column {
    const char* name;
    int type;
    int size;
    int attributes;
    bool allowZeroLength = false;
    const char* validationRule = "";
    const char* defaultValue = "";
};

constexpr Column kPromptingColumns[] = {
    {"NO_GIS", dbLong, 4, dbAutoIncrField},          {"GIS_NAME", dbText, 255, kVariable},
    {"FIELD_NAME", dbText, 255, kVariable},          {"FIELD_PROMPT", dbText, 255, kVariable},
    {"DEFAULT_VALUE", dbText, 255, kVariable, true}, {"LIST_VALUES", dbText, 255, kVariable, true},
};

constexpr Column kCategoryColumns[] = {
    {"INDEX_CAT_GIS", dbLong, 4, dbUpdatableField},
    {"CAT_GIS_NAME", dbText, 255, kVariable},
    {"GIS_NAME", dbText, 255, kVariable},
};

constexpr Column kLinkColumns[] = {
    {"GIS_NAME", dbText, 255, kVariable},
    {"TABLE_NAME", dbText, 255, kVariable},
    {"LPN_NAME", dbText, 255, kVariable, true},
    {"IS_CURRENT", dbText, 255, kVariable, true, "\"YES\" Or \"NO\"", "\"NO\""},
};

template <size_t N>
void createTable(CDaoDatabase& database, const char* name, const Column (&columns)[N]) {
    CDaoTableDef table(&database);
    table.Create(name);
    for (const Column& column : columns) {
        table.CreateField(column.name, column.type, column.size, column.attributes);
        if (column.type != dbText) continue;
        // The settings of a text field are taken only together with the rest of its information.
        CDaoFieldInfo info;
        table.GetFieldInfo(column.name, info);
        table.DeleteField(column.name);
        info.allowZeroLength = column.allowZeroLength;
        info.validationRule = column.validationRule;
        info.defaultValue = column.defaultValue;
        table.CreateField(info);
    }
    table.Append();
    table.Close();
}

bool isIn(const CDaoDatabase& database, const char* table) {
    return !FindUserTable(database, table).empty();
}

enum class Match { kNamesAsFarAsTheyGo, kAllWithTypes };

// Columns are found by their names, wherever they stand and in whatever case, as the statements find them.
template <size_t N>
bool matches(CDaoDatabase& database, const char* name, const Column (&columns)[N], Match match) {
    std::string present = FindUserTable(database, name);
    if (present.empty()) return false;
    CDaoTableDef table(&database);
    table.Open(present);
    const int fields = table.GetFieldCount();
    int found = 0;
    CDaoFieldInfo field;
    for (int i = 0; i < fields; ++i) {
        table.GetFieldInfo(i, field);
        found += static_cast<int>(std::ranges::count_if(columns, [&](const Column& column) {
            return text::equalNoCase(field.name, column.name) &&
                   (match != Match::kAllWithTypes || field.type == column.type);
        }));
    }
    const int wanted = static_cast<int>(N);
    return found == (match == Match::kAllWithTypes ? wanted : std::min(fields, wanted));
}

bool isTemplate(CDaoDatabase& database, Match match) {
    return matches(database, kPromptingTable, kPromptingColumns, match) &&
           matches(database, kCategoryTable, kCategoryColumns, match);
}

}  // namespace

void EnsureTemplateTables(CDaoDatabase& database) {
    if (!isIn(database, kPromptingTable)) createTable(database, kPromptingTable, kPromptingColumns);
    if (!isIn(database, kCategoryTable)) createTable(database, kCategoryTable, kCategoryColumns);
}

bool EnsureLinksTable(CDaoDatabase& database) {
    if (!HasLinksTable(database)) createTable(database, kLinkTable, kLinkColumns);
    return HasPromptingTable(database) && HasLinksTable(database);
}

bool HasPromptingTable(const CDaoDatabase& database) {
    return isIn(database, kPromptingTable);
}

bool HasLinksTable(const CDaoDatabase& database) {
    return isIn(database, kLinkTable);
}

bool HasAnyTemplateTable(const CDaoDatabase& database) {
    return HasPromptingTable(database) || isIn(database, kCategoryTable);
}

bool HasTemplateColumnNames(CDaoDatabase& database) {
    return isTemplate(database, Match::kNamesAsFarAsTheyGo);
}

bool HasTemplateColumns(CDaoDatabase& database) {
    return isTemplate(database, Match::kAllWithTypes);
}

}  // namespace norvane
