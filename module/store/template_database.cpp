#include "module/store/template_database.h"

#include <iterator>
#include <unordered_set>

#include "module/host/gis_request.h"
#include "module/store/database.h"
#include "platform/text/text.h"

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

constexpr const char* kPrompting = "ZGEO_SMART_PROMPTING";
constexpr const char* kCategories = "ZGEO_CAT";
constexpr const char* kLinks = "ZGEO_LINKS";

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

// The first fields of a table have exactly these names. A table with fewer passes as far as it goes.
template <size_t N>
bool fieldsInPlace(CDaoDatabase& database, const std::string& name, const Column (&columns)[N]) {
    CDaoTableDef table(&database);
    table.Open(name);
    CDaoFieldInfo field;
    for (int i = 0; i < table.GetFieldCount() && i < static_cast<int>(N); ++i) {
        table.GetFieldInfo(i, field);
        if (field.name != columns[i].name) return false;
    }
    return true;
}

bool isTemplate(CDaoDatabase& database) {
    std::string prompting = FindUserTable(database, kPrompting);
    std::string categories = FindUserTable(database, kCategories);
    return !prompting.empty() && !categories.empty() &&
           fieldsInPlace(database, prompting, kPromptingColumns) &&
           fieldsInPlace(database, categories, kCategoryColumns);
}

std::string fieldText(const CDaoRecordset& records, const char* field) {
    return dao::toText(records.GetFieldValue(field));
}

}  // namespace

int CreateTemplateDatabase() {
    return CreateDatabaseFile(PromptRequest.outputPath, EnsureTemplateTables);
}

void EnsureTemplateTables(CDaoDatabase& database) {
    if (FindUserTable(database, kPrompting).empty()) createTable(database, kPrompting, kPromptingColumns);
    if (FindUserTable(database, kCategories).empty()) createTable(database, kCategories, kCategoryColumns);
}

int IsTemplateDatabase(const std::string& path) {
    bool good = false;
    WithDatabase(path, [&](CDaoDatabase& database) { good = isTemplate(database); });
    return good ? 1 : 0;
}

bool EnsureLinksTable(CDaoDatabase& database) {
    if (FindUserTable(database, kLinks).empty()) createTable(database, kLinks, kLinkColumns);
    return HasPromptingTable(database) && !FindUserTable(database, kLinks).empty();
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

bool HasPromptingTable(const CDaoDatabase& database) {
    return !FindUserTable(database, kPrompting).empty();
}

bool HasFeature(CDaoDatabase& database, const std::string& feature) {
    CDaoRecordset records(&database);
    records.Open(dbOpenDynaset, SelectFeatureName(feature));
    return !records.IsEOF();
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

std::vector<FeatureRow> ReadFeatureRows(CDaoDatabase& database, const std::string& feature) {
    std::vector<FeatureRow> rows;
    CDaoRecordset records(&database);
    for (records.Open(dbOpenDynaset, SelectFeaturePrompts(feature)); !records.IsEOF(); records.MoveNext())
        rows.push_back({fieldText(records, "FIELD_NAME"), fieldText(records, "FIELD_PROMPT"),
                        fieldText(records, "DEFAULT_VALUE"), fieldText(records, "LIST_VALUES")});
    return rows;
}

std::optional<FeatureTable> ReadCurrentFeature(CDaoDatabase& database) {
    CDaoRecordset records(&database);
    records.Open(dbOpenDynaset, SelectCurrentLinks());
    if (records.IsEOF()) return std::nullopt;
    return FeatureTable{fieldText(records, "GIS_NAME"), fieldText(records, "TABLE_NAME")};
}

std::string ReadOutputTable(CDaoDatabase& database, const std::string& feature) {
    CDaoRecordset records(&database);
    records.Open(dbOpenDynaset, SelectLinks(feature));
    std::string table = records.IsEOF() ? "" : fieldText(records, "TABLE_NAME");
    return table.empty() ? feature : table;
}

namespace {

// Whether the feature and its table are marked, and nothing else is: then there is nothing to write.
bool isOnlyCurrent(CDaoDatabase& database, const FeatureTable& wanted) {
    CDaoRecordset records(&database);
    records.Open(dbOpenDynaset, SelectCurrentLinks());
    if (records.IsEOF() || !text::equalNoCase(fieldText(records, "GIS_NAME"), wanted.feature) ||
        !text::equalNoCase(fieldText(records, "TABLE_NAME"), wanted.table))
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
    return "SELECT GIS_NAME FROM ZGEO_SMART_PROMPTING WHERE GIS_NAME = '" + feature + "'";
}

std::string SelectFeaturePrompts(const std::string& feature) {
    return "SELECT FIELD_NAME, FIELD_PROMPT, DEFAULT_VALUE, LIST_VALUES FROM ZGEO_SMART_PROMPTING WHERE "
           "GIS_NAME = '" +
           feature + "'";
}

std::string SelectFeatureRows(const std::string& feature) {
    return "SELECT * FROM ZGEO_SMART_PROMPTING WHERE GIS_NAME = '" + feature + "'";
}

std::string SelectCurrentLinks() {
    return "SELECT * FROM ZGEO_LINKS WHERE IS_CURRENT = 'YES'";
}

std::string SelectLinks(const std::string& feature) {
    return "SELECT * FROM ZGEO_LINKS WHERE GIS_NAME = '" + feature + "'";
}

std::string SelectLink(const std::string& feature, const std::string& table) {
    return "SELECT * FROM ZGEO_LINKS WHERE GIS_NAME = '" + feature + "' AND TABLE_NAME = '" + table + "'";
}

std::string SelectCategories() {
    return "SELECT * FROM ZGEO_CAT";
}

std::string SelectFeatureCategories(const std::string& feature) {
    return "SELECT * FROM ZGEO_CAT WHERE GIS_NAME = '" + feature + "'";
}

std::string SelectCategory(const std::string& category) {
    return "SELECT * FROM ZGEO_CAT WHERE CAT_GIS_NAME = '" + category + "'";
}
