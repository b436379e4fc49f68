#include "module/store/template_sync.h"

#include <algorithm>
#include <map>
#include <optional>

#include "module/store/field_name.h"
#include "module/store/records.h"
#include "module/store/template_database.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr const char* kCategoryOfTables = "MISC";

bool isOfTheSystem(const std::string& name) {
    const std::string upper = text::upper(name);
    return upper == "PT_ID" || upper == "GIS_KEY" || text::startsWith(upper, "IMAGE_ZGEO/") ||
           text::startsWith(upper, "LABEL/");
}

void syncRows(CDaoDatabase& database, const std::string& table, const std::vector<TableField>& fields) {
    std::map<std::string, FieldKind> wanted;
    for (const TableField& field : fields) wanted[text::upper(field.name)] = field.kind;
    CDaoRecordset rows(&database);
    for (rows.Open(dbOpenDynaset, SelectFeatureRows(table)); !rows.IsEOF(); rows.MoveNext()) {
        FieldName stored = ParseFieldName(FieldText(rows, "FIELD_NAME"));
        const auto field = wanted.find(text::upper(stored.name));
        if (field == wanted.end()) continue;
        if (stored.kind != field->second) {
            stored.kind = field->second;
            rows.Edit();
            rows.SetFieldValue("FIELD_NAME", StoredFieldName(stored));
            rows.Update();
        }
        wanted.erase(field);
    }
    for (const TableField& field : fields) {
        if (wanted.erase(text::upper(field.name)) == 0) continue;
        rows.AddNew();
        rows.SetFieldValue("GIS_NAME", table);
        rows.SetFieldValue("FIELD_NAME", StoredFieldName({field.name, false, field.kind}));
        rows.SetFieldValue("FIELD_PROMPT", field.name);
        rows.Update();
    }
}

void addToCategory(CDaoDatabase& database, const std::string& table) {
    if (HasRecords(database, SelectFeatureCategories(table))) return;
    long highest = 0;
    CDaoRecordset rows(&database);
    for (rows.Open(dbOpenDynaset, SelectCategories()); !rows.IsEOF(); rows.MoveNext())
        if (text::equalNoCase(FieldText(rows, "CAT_GIS_NAME"), kCategoryOfTables))
            highest = std::max(highest, text::toLong(FieldText(rows, "INDEX_CAT_GIS")));
    rows.AddNew();
    rows.SetFieldValue("INDEX_CAT_GIS", static_cast<int32_t>(highest + 1));
    rows.SetFieldValue("CAT_GIS_NAME", kCategoryOfTables);
    rows.SetFieldValue("GIS_NAME", table);
    rows.Update();
}

void addLink(CDaoDatabase& database, const std::string& table) {
    CDaoRecordset rows(&database);
    rows.Open(dbOpenDynaset, SelectLinks(table));
    if (!rows.IsEOF()) return;
    rows.AddNew();
    rows.SetFieldValue("GIS_NAME", table);
    rows.SetFieldValue("TABLE_NAME", table);
    rows.SetFieldValue("IS_CURRENT", "NO");
    rows.Update();
}

}  // namespace

std::vector<TableField> ReadAttributeFields(CDaoDatabase& output, const std::string& table) {
    std::vector<TableField> fields;
    CDaoTableDef definition(&output);
    definition.Open(table);
    CDaoFieldInfo field;
    for (int i = 0; i < definition.GetFieldCount(); ++i) {
        definition.GetFieldInfo(i, field);
        const std::optional<FieldKind> kind = FieldKindOf(field.type);
        if (kind && !isOfTheSystem(field.name)) fields.push_back({field.name, *kind});
    }
    return fields;
}

void SyncFeature(CDaoDatabase& database, const std::string& table, const std::vector<TableField>& fields) {
    if (!EnsureLinksTable(database)) return;
    syncRows(database, table, fields);
    addToCategory(database, table);
    addLink(database, table);
}

}  // namespace norvane
