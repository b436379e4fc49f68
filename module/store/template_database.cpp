#include "module/store/template_database.h"

#include <unordered_set>

#include "module/store/database.h"
#include "module/store/records.h"
#include "platform/dao/sql_tokens.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

bool CreateTemplateDatabase(const std::string& path, DatabaseVersion version) {
    return CreateDatabaseFile(path, version, EnsureTemplateTables);
}

int IsTemplateDatabase(const std::string& path) {
    bool good = false;
    WithDatabase(path, [&](CDaoDatabase& database) { good = HasTemplateColumnNames(database); });
    return good ? 1 : 0;
}

int FeatureExists(const std::string& path, const std::string& name) {
    constexpr int kNoTemplate = -2;
    int result = kNoTemplate;
    DatabaseOutcome outcome = WithDatabase(path, [&](CDaoDatabase& database) {
        if (!HasPromptingTable(database)) return;
        result = 0;
        result = HasFeature(database, text::upper(name)) ? 1 : 0;
    });
    return outcome == DatabaseOutcome::kNoDao ? 0 : result;
}

void TestFeature(Call& call) {
    constexpr int kNoFile = -1;
    std::string path, feature;
    call.arguments.text(path), call.arguments.text(feature);
    if (path.empty()) return;
    if (!files::exists(path))
        call.result = kNoFile;
    else if (!feature.empty())
        call.result = FeatureExists(path, feature);
}

bool HasFeature(CDaoDatabase& database, const std::string& feature) {
    return HasRecords(database, SelectFeatureName(feature));
}

std::vector<std::string> ReadFeatureNames(CDaoDatabase& database) {
    std::vector<std::string> names;
    std::unordered_set<std::string> seen;
    CDaoRecordset records(&database);
    std::string last;
    for (records.Open(dbOpenDynaset, SelectFeatureNames()); !records.IsEOF(); records.MoveNext()) {
        std::string name = dao::toText(records.GetFieldValue(0));
        if (name == last) continue;  // the rows of a feature mostly stand together
        last = name;
        std::string upper = text::upper(name);
        if (seen.insert(upper).second) names.push_back(std::move(upper));
    }
    return names;
}

namespace {

FeatureRow presentRow(const CDaoRecordset& records) {
    return {FieldText(records, "FIELD_NAME"), FieldText(records, "FIELD_PROMPT"),
            FieldText(records, "DEFAULT_VALUE"), FieldText(records, "LIST_VALUES")};
}

}  // namespace

std::vector<FeatureRow> ReadFeatureRows(CDaoDatabase& database, const std::string& feature) {
    std::vector<FeatureRow> rows;
    ForEachRecord(database, SelectFeaturePrompts(feature),
                  [&](CDaoRecordset& records) { rows.push_back(presentRow(records)); });
    return rows;
}

std::map<std::string, std::vector<FeatureRow>> ReadRowsOfFeatures(CDaoDatabase& database) {
    std::map<std::string, std::vector<FeatureRow>> features;
    ForEachRecord(database, std::string("SELECT * FROM ") + kPromptingTable, [&](CDaoRecordset& records) {
        features[text::upper(FieldText(records, "GIS_NAME"))].push_back(presentRow(records));
    });
    return features;
}

std::optional<FeatureTable> ReadCurrentFeature(CDaoDatabase& database) {
    CDaoRecordset records(&database);
    records.Open(dbOpenDynaset, SelectCurrentLinks());
    if (records.IsEOF()) return std::nullopt;
    return FeatureTable{FieldText(records, "GIS_NAME"), FieldText(records, "TABLE_NAME")};
}

std::string ReadOutputTable(CDaoDatabase& database, const std::string& feature) {
    CDaoRecordset records(&database);
    records.Open(dbOpenDynaset, SelectLinks(feature));
    std::string table = records.IsEOF() ? "" : FieldText(records, "TABLE_NAME");
    return table.empty() ? feature : table;
}

namespace {

// Whether the feature and its table are marked, and nothing else is: then there is nothing to write.
bool isOnlyCurrent(CDaoDatabase& database, const FeatureTable& wanted) {
    CDaoRecordset records(&database);
    records.Open(dbOpenDynaset, SelectCurrentLinks());
    if (records.IsEOF() || !text::equalNoCase(FieldText(records, "GIS_NAME"), wanted.feature) ||
        !text::equalNoCase(FieldText(records, "TABLE_NAME"), wanted.table))
        return false;
    records.MoveNext();
    return records.IsEOF();
}

}  // namespace

void MarkFeatureCurrent(CDaoDatabase& database, const FeatureTable& current) {
    if (isOnlyCurrent(database, current)) return;
    CDaoRecordset records(&database);
    for (records.Open(dbOpenDynaset, SelectCurrentLinks()); !records.IsEOF(); records.MoveNext()) {
        records.Edit();
        records.SetFieldValue("IS_CURRENT", "NO");
        records.Update();
    }
    records.Open(dbOpenDynaset, SelectLink(current.feature, current.table));
    if (records.IsEOF()) {
        records.AddNew();
        records.SetFieldValue("GIS_NAME", current.feature);
        records.SetFieldValue("TABLE_NAME", current.table);
    } else {
        records.Edit();
    }
    records.SetFieldValue("IS_CURRENT", "YES");
    records.Update();
}

std::string SelectFeatureNames() {
    return "SELECT GIS_NAME FROM ZGEO_SMART_PROMPTING";
}

std::string SelectFeatureName(const std::string& feature) {
    return "SELECT GIS_NAME FROM ZGEO_SMART_PROMPTING WHERE GIS_NAME = " + dao::quotedText(feature);
}

std::string SelectFeaturePrompts(const std::string& feature) {
    return "SELECT FIELD_NAME, FIELD_PROMPT, DEFAULT_VALUE, LIST_VALUES FROM ZGEO_SMART_PROMPTING WHERE "
           "GIS_NAME = " +
           dao::quotedText(feature);
}

std::string SelectFeatureRows(const std::string& feature) {
    return "SELECT * FROM ZGEO_SMART_PROMPTING WHERE GIS_NAME = " + dao::quotedText(feature);
}

std::string SelectCurrentLinks() {
    return "SELECT * FROM ZGEO_LINKS WHERE IS_CURRENT = 'YES'";
}

std::string SelectLinks(const std::string& feature) {
    return "SELECT * FROM ZGEO_LINKS WHERE GIS_NAME = " + dao::quotedText(feature);
}

std::string SelectLink(const std::string& feature, const std::string& table) {
    return "SELECT * FROM ZGEO_LINKS WHERE GIS_NAME = " + dao::quotedText(feature) +
           " AND TABLE_NAME = " + dao::quotedText(table);
}

std::string SelectCategories() {
    return "SELECT * FROM ZGEO_CAT";
}

std::string SelectFeatureCategories(const std::string& feature) {
    return "SELECT * FROM ZGEO_CAT WHERE GIS_NAME = " + dao::quotedText(feature);
}

std::string SelectCategory(const std::string& category) {
    return "SELECT * FROM ZGEO_CAT WHERE CAT_GIS_NAME = " + dao::quotedText(category);
}

}  // namespace norvane
