#include "module/transfer/import_feature.h"

#include <initializer_list>
#include <utility>

#include "module/store/records.h"
#include "module/store/template_database.h"
#include "module/store/text_table.h"
#include "module/store/user_tables.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr const char* kNoCategory = "UNKNOWN";

// Whether a table has fields of these names and types among its own.
bool hasFields(CDaoDatabase& database, const char* table,
               std::initializer_list<std::pair<const char*, int>> wanted) {
    const std::string present = FindUserTable(database, table);
    if (present.empty()) return false;
    CDaoTableDef definition(&database);
    definition.Open(present);
    size_t found = 0;
    CDaoFieldInfo field;
    for (int i = 0; i < definition.GetFieldCount(); ++i) {
        definition.GetFieldInfo(i, field);
        for (const auto& [name, type] : wanted)
            if (text::equalNoCase(field.name, name) && field.type == type) ++found;
    }
    return found == wanted.size();
}

bool isTemplate(CDaoDatabase& database) {
    return hasFields(database, kPromptingTable,
                     {{"NO_GIS", dbLong},
                      {"GIS_NAME", dbText},
                      {"FIELD_NAME", dbText},
                      {"FIELD_PROMPT", dbText},
                      {"DEFAULT_VALUE", dbText},
                      {"LIST_VALUES", dbText}}) &&
           hasFields(database, kCategoryTable,
                     {{"INDEX_CAT_GIS", dbLong}, {"CAT_GIS_NAME", dbText}, {"GIS_NAME", dbText}});
}

void addRows(CDaoRecordset& rows, const std::string& feature, const std::vector<std::string>& attributes) {
    for (const std::string& attribute : attributes) {
        rows.AddNew();
        rows.SetFieldValue("GIS_NAME", feature);
        rows.SetFieldValue("FIELD_NAME", attribute);
        rows.SetFieldValue("FIELD_PROMPT", attribute);
        rows.Update();
    }
}

std::string firstCategory(CDaoDatabase& database) {
    CDaoRecordset rows(&database);
    rows.Open(dbOpenDynaset, SelectCategories());
    const std::string name = rows.IsEOF() ? "" : FieldText(rows, "CAT_GIS_NAME");
    return name.empty() ? kNoCategory : name;
}

// Puts the feature behind those of a category, which are numbered anew.
void putIntoCategory(CDaoDatabase& database, const std::string& feature, const std::string& category) {
    CDaoRecordset rows(&database);
    int32_t number = 0;
    for (rows.Open(dbOpenDynaset, SelectCategory(category)); !rows.IsEOF(); rows.MoveNext()) {
        rows.Edit();
        rows.SetFieldValue("INDEX_CAT_GIS", ++number);
        rows.Update();
    }
    rows.AddNew();
    rows.SetFieldValue("INDEX_CAT_GIS", ++number);
    rows.SetFieldValue("CAT_GIS_NAME", category);
    rows.SetFieldValue("GIS_NAME", feature);
    rows.Update();
}

}  // namespace

std::vector<std::string> AttributesOfTable(CDaoDatabase& output, const std::string& table) {
    std::vector<std::string> names;
    CDaoTableDef definition(&output);
    definition.Open(FindUserTable(output, table));
    CDaoFieldInfo field;
    for (int i = 0; i < definition.GetFieldCount(); ++i) {
        definition.GetFieldInfo(i, field);
        const std::string name = text::upper(field.name);
        const bool isKept = name == "PT_ID" || name == "GIS_KEY" || text::startsWith(name, "LABEL/") ||
                            text::startsWith(name, "IMAGE_ZGE");
        if (!isKept && TakesText(field, output)) names.push_back(field.name);
    }
    return names;
}

bool AddFeature(CDaoDatabase& database, const std::string& feature,
                const std::vector<std::string>& attributes) {
    if (attributes.empty() || !isTemplate(database)) return false;
    CDaoRecordset rows(&database);
    rows.Open(dbOpenDynaset, SelectFeatureRows(feature));
    if (!rows.IsEOF()) return false;
    addRows(rows, feature, attributes);
    rows.Close();
    ForEachRecord(database, SelectFeatureCategories(feature), [](CDaoRecordset& row) { row.Delete(); });
    putIntoCategory(database, feature, firstCategory(database));
    return true;
}

}  // namespace norvane
