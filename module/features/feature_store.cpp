#include "module/features/feature_store.h"

#include <iterator>

#include "module/prompting/prompt_model.h"
#include "module/store/database.h"
#include "module/store/template_database.h"
#include "platform/text/text.h"

const char* const kCategoryPlaceholder = "NO_GIS";

namespace {

constexpr const char* kPrompting = "ZGEO_SMART_PROMPTING";
constexpr const char* kCategories = "ZGEO_CAT";
constexpr const char* kLinks = "ZGEO_LINKS";

struct TypedField {
    const char* name;
    int type;
};
constexpr TypedField kPromptingFields[] = {{"NO_GIS", dbLong},        {"GIS_NAME", dbText},
                                           {"FIELD_NAME", dbText},    {"FIELD_PROMPT", dbText},
                                           {"DEFAULT_VALUE", dbText}, {"LIST_VALUES", dbText}};
constexpr TypedField kCategoryFields[] = {
    {"INDEX_CAT_GIS", dbLong}, {"CAT_GIS_NAME", dbText}, {"GIS_NAME", dbText}};

template <size_t N>
bool hasFields(CDaoDatabase& database, const char* name, const TypedField (&fields)[N]) {
    std::string present = FindUserTable(database, name);
    if (present.empty()) return false;
    CDaoTableDef table(&database);
    table.Open(present);
    if (table.GetFieldCount() < static_cast<int>(N)) return false;
    CDaoFieldInfo info;
    for (size_t i = 0; i < N; ++i) {
        table.GetFieldInfo(static_cast<int>(i), info);
        if (info.name != fields[i].name || info.type != fields[i].type) return false;
    }
    return true;
}

std::string fieldText(const CDaoRecordset& records, const char* field) {
    return dao::toText(records.GetFieldValue(field));
}

template <class Work>
void forEach(CDaoDatabase& database, const std::string& statement, Work work) {
    CDaoRecordset records(&database);
    for (records.Open(dbOpenDynaset, statement); !records.IsEOF(); records.MoveNext()) work(records);
}

void deleteAll(CDaoDatabase& database, const std::string& statement) {
    forEach(database, statement, [](CDaoRecordset& records) { records.Delete(); });
}

void setAll(CDaoDatabase& database, const std::string& statement, const char* field,
            const std::string& value) {
    forEach(database, statement, [&](CDaoRecordset& records) {
        records.Edit();
        records.SetFieldValue(field, value);
        records.Update();
    });
}

bool hasRecords(CDaoDatabase& database, const std::string& statement) {
    CDaoRecordset records(&database);
    records.Open(dbOpenDynaset, statement);
    return !records.IsEOF();
}

// Numbers the rows of a category from 1, in their order. How many there are.
int numberCategory(CDaoDatabase& database, const std::string& category) {
    int count = 0;
    forEach(database, SelectCategory(category), [&](CDaoRecordset& records) {
        records.Edit();
        records.SetFieldValue("INDEX_CAT_GIS", ++count);
        records.Update();
    });
    return count;
}

void addCategoryRow(CDaoDatabase& database, int index, const std::string& category,
                    const std::string& feature) {
    CDaoRecordset records(&database);
    records.Open(dbOpenDynaset, SelectCategories());
    records.AddNew();
    records.SetFieldValue("INDEX_CAT_GIS", index);
    records.SetFieldValue("CAT_GIS_NAME", category);
    records.SetFieldValue("GIS_NAME", feature);
    records.Update();
}

std::string storedFieldName(const FeatureFileRow& row) {
    const char* kind = row.type == FieldKind::kReal ? ".." : row.type == FieldKind::kInt ? "." : "";
    return (row.required ? "~" : "") + (kind + row.abbreviation);
}

std::string selectAllPrompts() {
    return std::string("SELECT * FROM ") + kPrompting;
}

bool hasLinks(const CDaoDatabase& database) {
    return !FindUserTable(database, kLinks).empty();
}

}  // namespace

bool ChangeTemplate(const std::string& path, const std::function<void(CDaoDatabase&)>& work) {
    return WithDatabase(path, [&](CDaoDatabase& database) {
               database.BeginTrans();
               work(database);
               database.CommitTrans();
           }) == DatabaseOutcome::kDone;
}

bool HasTemplateColumns(CDaoDatabase& database) {
    return hasFields(database, kPrompting, kPromptingFields) &&
           hasFields(database, kCategories, kCategoryFields);
}

bool HasAnyTemplateTable(const CDaoDatabase& database) {
    return !FindUserTable(database, kPrompting).empty() || !FindUserTable(database, kCategories).empty();
}

std::vector<CategoryRow> ReadCategoryRows(CDaoDatabase& database) {
    std::vector<CategoryRow> rows;
    forEach(database, SelectCategories(), [&](CDaoRecordset& records) {
        rows.push_back({fieldText(records, "CAT_GIS_NAME"), fieldText(records, "GIS_NAME")});
    });
    return rows;
}

std::vector<FeatureFileRow> ReadFeature(CDaoDatabase& database, const std::string& feature) {
    std::vector<FeatureFileRow> rows;
    for (const FeatureRow& record : ReadFeatureRows(database, feature)) {
        FieldName field = parseFieldName(record.fieldName);
        // The fields go the way of a line of a feature file, with all that commas in them bring about.
        AddRowFromFields(
            rows, field.required, field.kind,
            text::join({field.name, record.fieldPrompt, record.defaultValue, record.listValues}, ","));
    }
    return rows;
}

bool IsFeatureStored(CDaoDatabase& database, const std::string& feature) {
    return HasFeature(database, feature) || hasRecords(database, SelectFeatureCategories(feature));
}

void StoreFeature(CDaoDatabase& database, const std::string& feature, const std::string& category,
                  const std::vector<FeatureFileRow>& rows) {
    const int count = numberCategory(database, category);
    CDaoRecordset records(&database);
    records.Open(dbOpenDynaset, selectAllPrompts());
    for (const FeatureFileRow& row : rows) {
        records.AddNew();
        records.SetFieldValue("GIS_NAME", feature);
        records.SetFieldValue("FIELD_NAME", storedFieldName(row));
        records.SetFieldValue("FIELD_PROMPT", row.fullName);
        if (!row.values.text.empty()) {
            records.SetFieldValue("DEFAULT_VALUE", row.values.text);
            records.SetFieldValue("LIST_VALUES", JoinedValues(row.values));
        }
        records.Update();
    }
    addCategoryRow(database, count + 1, category, feature);
}

void CopyFeature(CDaoDatabase& database, const std::string& feature, const std::string& name,
                 const std::string& category) {
    const int count = numberCategory(database, category);
    const std::vector<FeatureRow> rows = ReadFeatureRows(database, feature);
    CDaoRecordset records(&database);
    records.Open(dbOpenDynaset, selectAllPrompts());
    for (const FeatureRow& row : rows) {
        records.AddNew();
        records.SetFieldValue("GIS_NAME", name);
        records.SetFieldValue("FIELD_NAME", row.fieldName);
        records.SetFieldValue("FIELD_PROMPT", row.fieldPrompt);
        if (!row.defaultValue.empty()) records.SetFieldValue("DEFAULT_VALUE", row.defaultValue);
        if (!row.listValues.empty()) records.SetFieldValue("LIST_VALUES", row.listValues);
        records.Update();
    }
    addCategoryRow(database, count + 1, category, name);
}

void RemoveFeatureRecords(CDaoDatabase& database, const std::string& feature) {
    deleteAll(database, SelectFeatureRows(feature));
    deleteAll(database, SelectFeatureCategories(feature));
}

void DeleteFeature(CDaoDatabase& database, const std::string& feature, const std::string& category) {
    RemoveFeatureRecords(database, feature);
    if (hasLinks(database)) deleteAll(database, SelectLinks(feature));
    if (numberCategory(database, category) == 0) addCategoryRow(database, 1, category, kCategoryPlaceholder);
}

void RenameFeature(CDaoDatabase& database, const std::string& feature, const std::string& name) {
    setAll(database, SelectFeatureCategories(feature), "GIS_NAME", name);
    setAll(database, SelectFeatureRows(feature), "GIS_NAME", name);
    if (hasLinks(database)) setAll(database, SelectLinks(feature), "GIS_NAME", name);
}

void AddCategory(CDaoDatabase& database, const std::string& category) {
    addCategoryRow(database, 1, category, kCategoryPlaceholder);
}

void DeleteCategory(CDaoDatabase& database, const std::string& category) {
    forEach(database, SelectCategory(category), [&](CDaoRecordset& records) {
        std::string feature = fieldText(records, "GIS_NAME");
        if (feature != kCategoryPlaceholder) deleteAll(database, SelectFeatureRows(feature));
        records.Delete();
    });
}

void RenameCategory(CDaoDatabase& database, const std::string& category, const std::string& name) {
    setAll(database, SelectCategory(category), "CAT_GIS_NAME", name);
}
