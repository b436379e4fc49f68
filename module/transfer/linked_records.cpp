#include "module/transfer/linked_records.h"

#include <algorithm>
#include <charconv>
#include <map>

#include "module/store/database.h"
#include "module/store/output_database.h"
#include "module/store/records.h"
#include "module/store/statements.h"
#include "module/store/user_tables.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr const char* kKeyField = "PT_ID";
constexpr const char* kFeatureField = "GIS_KEY";
constexpr long kRecordsBetweenQuestions = 50;

bool isExportedType(int type) {
    return type == dbInteger || type == dbLong || type == dbSingle || type == dbDouble || type == dbText ||
           type == dbMemo;
}

bool isPicture(const std::string& name) {
    return text::startsWith(name, "IMAGE_ZGEO/") || text::startsWith(name, "LABEL/");
}

std::string keyOf(std::string_view text) {
    return text::upper(text::trim(text));
}

// With six decimals, as "%f" gives them, and without the zeros that say nothing.
std::string realText(double value) {
    char digits[400];
    const auto [end, error] =
        std::to_chars(std::begin(digits), std::end(digits), value, std::chars_format::fixed, 6);
    std::string text = text::stripLeadingZeros(text::stripZeros({digits, end}));
    return text.empty() ? "0" : text;
}

// The text by which a value goes out; "" for Null and for types that do not.
std::string exportText(const dao::Variant& value) {
    if (value.is<std::string>()) return value.get<std::string>();
    if (value.is<int16_t>()) return text::stripLeadingZeros(std::to_string(value.get<int16_t>()));
    if (value.is<int32_t>()) return text::stripLeadingZeros(std::to_string(value.get<int32_t>()));
    if (value.is<float>()) return realText(value.get<float>());
    if (value.is<double>()) return realText(value.get<double>());
    return "";
}

}  // namespace

// --- One table -----------------------------------------------------------------------------------------

void LinkedTable::want(const std::string& key) {
    records_.try_emplace(keyOf(key));
}

void LinkedTable::readFields(const CDaoRecordset& records) {
    CDaoFieldInfo info;
    for (int i = 0; i < records.GetFieldCount(); ++i) {
        records.GetFieldInfo(i, info);
        const std::string name = text::upper(info.name);
        if (name == kKeyField) keyPlace_ = i;
        if (name == kKeyField || isPicture(name) || !isExportedType(info.type)) continue;
        if (name == kFeatureField) featureField_ = static_cast<int>(fields_.size());
        fields_.push_back({name, info.type == dbText || info.type == dbMemo, {}});
        places_.push_back(i);
    }
}

void LinkedTable::readRecord(const CDaoRecordset& records) {
    const dao::Variant key = records.GetFieldValue(keyPlace_);
    if (!key.is<std::string>()) return;
    const std::string id = keyOf(key.get<std::string>());
    if (id.empty()) return;
    std::vector<std::string> values;
    values.reserve(fields_.size());
    for (size_t i = 0; i < fields_.size(); ++i) {
        values.push_back(exportText(records.GetFieldValue(places_[i])));
        if (!values[i].empty()) fields_[i].needs.add(values[i], fields_[i].isText);
    }
    const auto wanted = records_.find(id);
    if (wanted == records_.end()) return;
    wanted->second.push_back(fields_.empty() ? 0 : values_.size() / fields_.size());
    std::move(values.begin(), values.end(), std::back_inserter(values_));
}

bool LinkedTable::read(CDaoDatabase& database, const std::string& table, const GoOn& goOn) {
    CDaoRecordset records(&database);
    const bool isFile = database.GetConnect().empty();
    records.Open(dbOpenDynaset,
                 isFile ? SelectTable(table) : "SELECT * FROM " + QualifiedTable(database, table));
    readFields(records);
    if (keyPlace_ < 0) return true;
    for (long done = 1; !records.IsEOF(); records.MoveNext(), ++done) {
        readRecord(records);
        if (done % kRecordsBetweenQuestions == 0 && !goOn()) return false;
    }
    return true;
}

std::vector<size_t> LinkedTable::find(const std::string& key, const std::string& feature) const {
    const auto found = records_.find(keyOf(key));
    if (found == records_.end()) return {};
    std::vector<size_t> records = found->second;
    if (records.size() > 1 && featureField_ >= 0)
        std::stable_partition(records.begin(), records.end(), [&](size_t record) {
            return keyOf(value({&record, 1}, static_cast<size_t>(featureField_))) == feature;
        });
    return records;
}

const std::string& LinkedTable::value(std::span<const size_t> records, size_t field) const {
    static const std::string none;
    for (size_t record : records)
        if (const std::string& found = values_[record * fields_.size() + field]; !found.empty()) return found;
    return none;
}

// --- All of them ---------------------------------------------------------------------------------------

namespace {

// What templates tell of the tables of features. Each template is read once.
class TemplateTables {
  public:
    // "" where it tells nothing.
    std::string tableOf(const std::string& templatePath, const std::string& feature) {
        const auto [tables, isNew] = templates_.try_emplace(templatePath);
        if (isNew && files::exists(templatePath)) read(templatePath, tables->second);
        const auto found = tables->second.find(feature);
        return found == tables->second.end() ? "" : found->second;
    }

  private:
    using Tables = std::map<std::string, std::string>;  // by feature, in capitals

    static void read(const std::string& templatePath, Tables& tables) {
        WithDatabase(templatePath, [&](CDaoDatabase& database) {
            if (FindUserTable(database, "ZGEO_LINKS").empty()) return;
            ForEachRecord(
                database, "SELECT GIS_NAME, TABLE_NAME FROM ZGEO_LINKS", [&](CDaoRecordset& records) {
                    tables.emplace(keyOf(FieldText(records, "GIS_NAME")), FieldText(records, "TABLE_NAME"));
                });
        });
    }

    std::map<std::string, Tables> templates_;
};

// Where the records of a feature are: in the table of its own name, or in the one that its template tells; ""
// where the output has neither.
std::string tableOf(const CDaoDatabase& output, const GisLink& link, TemplateTables& templates) {
    std::string own = FindUserTable(output, link.featureName);
    if (!own.empty()) return own;
    const std::string told = templates.tableOf(link.templatePath, link.featureName);
    return told.empty() ? "" : FindUserTable(output, told);
}

}  // namespace

bool LinkedRecords::read(std::span<ExportEntity* const> entities, const GoOn& goOn) {
    if (!CheckDao()) return true;
    std::map<std::string, Entities> byDatabase;  // paths are the same in any case of letters
    for (ExportEntity* entity : entities)
        if (entity->isLinked())
            byDatabase[text::upper(files::native(entity->link.outputPath.text()))].push_back(entity);
    for (const auto& [path, linked] : byDatabase)
        if (!ended_) readDatabase(linked.front()->link.outputPath, linked, goOn);
    return !ended_;
}

void LinkedRecords::readDatabase(const std::string& path, const Entities& entities, const GoOn& goOn) {
    WithDatabase(path, [&](CDaoDatabase& database) {
        // By feature and template, and then by table: features may share one.
        std::map<std::pair<std::string, std::string>, std::string> tableNames;
        std::map<std::string, LinkedTable*> tables;
        TemplateTables templates;
        for (ExportEntity* entity : entities) {
            const GisLink& link = entity->link;
            const auto [known, isNew] = tableNames.try_emplace({link.featureName, link.templatePath});
            if (isNew) known->second = tableOf(database, link, templates);
            if (known->second.empty()) continue;
            LinkedTable*& table = tables[known->second];
            if (!table) table = tables_.emplace_back(std::make_unique<LinkedTable>()).get();
            table->want(link.keyValue);
            entity->table = table;
        }
        for (const auto& [name, table] : tables)
            ShowDatabaseErrors([&, &name = name, &table = table] {
                if (!ended_) ended_ = !table->read(database, name, goOn);
            });
    });
}

}  // namespace norvane
