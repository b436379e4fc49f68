#include "module/features/feature_store.h"

#include "module/store/database.h"
#include "module/store/field_name.h"
#include "module/store/records.h"
#include "module/store/template_database.h"
#include "platform/text/text.h"

namespace norvane {

const char* const kCategoryPlaceholder = "NO_GIS";

namespace {

void deleteAll(CDaoDatabase& database, const std::string& statement) {
    ForEachRecord(database, statement, [](CDaoRecordset& records) { records.Delete(); });
}

void setAll(CDaoDatabase& database, const std::string& statement, const char* field,
            const std::string& value) {
    ForEachRecord(database, statement, [&](CDaoRecordset& records) {
        records.Edit();
        records.SetFieldValue(field, value);
        records.Update();
    });
}

// Numbers the rows of a category from 1, in their order. How many there are.
int numberCategory(CDaoDatabase& database, const std::string& category) {
    int count = 0;
    ForEachRecord(database, SelectCategory(category), [&](CDaoRecordset& records) {
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

std::string selectAllPrompts() {
    return std::string("SELECT * FROM ") + kPromptingTable;
}

}  // namespace

const std::vector<FeatureRow>& TemplateDefinitions::attributes(const std::string& feature) const {
    static const std::vector<FeatureRow> kNone;
    const auto found = features.find(text::upper(feature));
    return found == features.end() ? kNone : found->second;
}

bool ChangeTemplate(const std::string& path, const std::function<void(CDaoDatabase&)>& work) {
    return WithDatabase(path, [&](CDaoDatabase& database) {
               database.BeginTrans();
               work(database);
               database.CommitTrans();
           }) == DatabaseOutcome::kDone;
}

std::vector<CategoryRow> ReadCategoryRows(CDaoDatabase& database) {
    std::vector<CategoryRow> rows;
    ForEachRecord(database, SelectCategories(), [&](CDaoRecordset& records) {
        rows.push_back({FieldText(records, "CAT_GIS_NAME"), FieldText(records, "GIS_NAME")});
    });
    return rows;
}

std::vector<FeatureFileRow> ReadFeature(CDaoDatabase& database, const std::string& feature) {
    std::vector<FeatureFileRow> rows;
    for (const FeatureRow& record : ReadFeatureRows(database, feature)) {
        FieldName field = ParseFieldName(record.fieldName);
        // The fields go the way of a line of a feature file, with all that commas in them bring about.
        AddRowFromFields(
            rows, field.required, field.kind,
            text::join({field.name, record.fieldPrompt, record.defaultValue, record.listValues}, ","));
    }
    return rows;
}

bool IsFeatureStored(CDaoDatabase& database, const std::string& feature) {
    return HasFeature(database, feature) || HasRecords(database, SelectFeatureCategories(feature));
}

void StoreFeature(CDaoDatabase& database, const std::string& feature, const std::string& category,
                  const std::vector<FeatureFileRow>& rows) {
    const int count = numberCategory(database, category);
    CDaoRecordset records(&database);
    records.Open(dbOpenDynaset, selectAllPrompts());
    for (const FeatureFileRow& row : rows) {
        records.AddNew();
        records.SetFieldValue("GIS_NAME", feature);
        records.SetFieldValue("FIELD_NAME", StoredFieldName({row.abbreviation, row.required, row.type}));
        records.SetFieldValue("FIELD_PROMPT", row.fullName);
        if (!row.values.text.empty()) {
            records.SetFieldValue("DEFAULT_VALUE", row.values.text);
            records.SetFieldValue("LIST_VALUES", JoinedValues(row.values));
        }
        records.Update();
    }
    addCategoryRow(database, count + 1, category, feature);
}

void LinkFeature(CDaoDatabase& database, const std::string& feature, const std::string& table) {
    if (!EnsureLinksTable(database)) return;
    // The first row says where a feature writes.
    CDaoRecordset records(&database);
    records.Open(dbOpenDynaset, SelectLinks(feature));
    if (records.IsEOF()) {
        records.AddNew();
        records.SetFieldValue("GIS_NAME", feature);
        records.SetFieldValue("IS_CURRENT", "NO");
    } else {
        records.Edit();
    }
    records.SetFieldValue("TABLE_NAME", table);
    records.Update();
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
    if (HasLinksTable(database)) deleteAll(database, SelectLinks(feature));
    if (numberCategory(database, category) == 0) addCategoryRow(database, 1, category, kCategoryPlaceholder);
}

void RenameFeature(CDaoDatabase& database, const std::string& feature, const std::string& name) {
    setAll(database, SelectFeatureCategories(feature), "GIS_NAME", name);
    setAll(database, SelectFeatureRows(feature), "GIS_NAME", name);
    if (HasLinksTable(database)) setAll(database, SelectLinks(feature), "GIS_NAME", name);
}

void AddCategory(CDaoDatabase& database, const std::string& category) {
    addCategoryRow(database, 1, category, kCategoryPlaceholder);
}

void DeleteCategory(CDaoDatabase& database, const std::string& category) {
    ForEachRecord(database, SelectCategory(category), [&](CDaoRecordset& records) {
        std::string feature = FieldText(records, "GIS_NAME");
        if (feature != kCategoryPlaceholder) deleteAll(database, SelectFeatureRows(feature));
        records.Delete();
    });
}

void RenameCategory(CDaoDatabase& database, const std::string& category, const std::string& name) {
    setAll(database, SelectCategory(category), "CAT_GIS_NAME", name);
}

}  // namespace norvane
