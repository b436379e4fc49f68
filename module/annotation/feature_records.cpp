#include "module/annotation/feature_records.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "module/cad/drawing_folder.h"
#include "module/store/database.h"
#include "module/store/feature_tables.h"
#include "module/store/server_sign_in.h"
#include "module/store/statements.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr const char* kFeatureField = "GIS_KEY";
constexpr size_t kRecordsBetweenQuestions = 500;

std::string comparable(const dao::Variant& value) {
    return std::string(text::trim(text::upper(dao::toText(value))));
}

std::string inStatement(const CDaoDatabase& database, const std::string& field) {
    return database.GetConnect().onServer() ? StatementName(field) : BracketedName(field);
}

std::string tableInStatement(const CDaoDatabase& database, const std::string& table) {
    return database.GetConnect().onServer() ? QualifiedTable(database, table) : BracketedName(table);
}

}  // namespace

// --- One table -------------------------------------------------------------------------------------------

LinkedRecordTable::LinkedRecordTable(CDaoDatabase& database, std::string name)
    : database_(database), name_(std::move(name)) {
    CDaoTableDef definition(&database);
    definition.Open(name_);
    for (int i = 0; i < definition.GetFieldCount(); ++i) definition.GetFieldInfo(i, fields_.emplace_back());
}

void LinkedRecordTable::add(const LinkedEntity& entity) {
    groups_[entity.keyField][entity.keyValue].entities.push_back(&entity);
    ++count_;
}

std::optional<size_t> LinkedRecordTable::find(std::string_view field) const {
    for (size_t i = 0; i < fields_.size(); ++i)
        if (text::equalNoCase(fields_[i].name, field)) return i;
    return std::nullopt;
}

std::vector<std::string> LinkedRecordTable::missingKeyFields() const {
    std::vector<std::string> missing;
    for (const auto& [field, groups] : groups_)
        if (!field.empty() && !find(field)) missing.push_back(field);
    return missing;
}

bool LinkedRecordTable::read(std::span<const size_t> fields, const Take& take, const GoOn& goOn) {
    // What is asked for comes first, then what records are found by.
    std::vector<std::string> columns;
    auto addColumn = [&](size_t field) {
        columns.push_back(inStatement(database_, fields_[field].name));
        return static_cast<int>(columns.size()) - 1;
    };
    for (size_t field : fields) addColumn(field);
    struct Key {
        int column;
        std::unordered_map<std::string, Group>* groups;
    };
    std::vector<Key> keys;
    for (auto& [field, groups] : groups_) {
        for (auto& [key, group] : groups) group.found = Found::kNot;
        if (const std::optional<size_t> place = find(field)) keys.push_back({addColumn(*place), &groups});
    }
    if (keys.empty()) return true;
    const std::optional<size_t> feature = find(kFeatureField);
    const int featureColumn = feature ? addColumn(*feature) : -1;

    recordsRead_ = 0;
    std::vector<dao::Variant> values(fields_.size());
    CDaoRecordset records(&database_);
    records.Open(dbOpenSnapshot,
                 "SELECT " + text::join(columns, ", ") + " FROM " + tableInStatement(database_, name_));
    for (; !records.IsEOF(); records.MoveNext()) {
        if (goOn && recordsRead_ % kRecordsBetweenQuestions == 0 && !goOn()) return false;
        ++recordsRead_;
        for (const Key& key : keys) {
            const auto known = key.groups->find(comparable(records.GetFieldValue(key.column)));
            if (known == key.groups->end() || known->first.empty()) continue;
            Group& group = known->second;
            if (group.found == Found::kWhole) continue;
            const bool isOfFeature = featureColumn < 0 || comparable(records.GetFieldValue(featureColumn)) ==
                                                              group.entities.front()->feature;
            if (!isOfFeature && group.found == Found::kOfAnotherFeature) continue;
            group.found = isOfFeature ? Found::kWhole : Found::kOfAnotherFeature;
            for (size_t i = 0; i < fields.size(); ++i)
                values[fields[i]] = records.GetFieldValue(static_cast<int>(i));
            if (!take(group.entities, values)) return false;
        }
    }
    return true;
}

// --- All of a feature ------------------------------------------------------------------------------------

namespace {

using Entities = LinkedRecordTable::Entities;

void workOnOutput(const std::string& path, const Entities& entities, FeatureTables& tablesOfFeatures,
                  const std::function<void(LinkedRecordTable&)>& work, std::vector<std::string>& problems) {
    CDaoDatabase database;
    OpenDatabase(database, path);
    std::map<std::string, std::string> names;         // by template
    std::map<std::string, LinkedRecordTable> tables;  // by name
    for (const LinkedEntity* entity : entities) {
        const auto [name, isNew] = names.try_emplace(entity->templatePath);
        if (isNew) {
            name->second =
                tablesOfFeatures.find(database, PlaceOfDatabase(entity->templatePath), entity->feature);
            if (name->second.empty())
                problems.push_back(files::nameOf(path) + " has no table of " + entity->feature + ".");
        }
        if (name->second.empty()) continue;
        auto table = tables.find(name->second);
        if (table == tables.end()) table = tables.try_emplace(name->second, database, name->second).first;
        table->second.add(*entity);
    }
    for (auto& [name, table] : tables) {
        for (const std::string& field : table.missingKeyFields())
            problems.push_back("Table " + name + " has no field " + field +
                               ", by which entities are linked to its records.");
        work(table);
    }
}

// Of a connect string no more is told than that it is one.
std::string shownName(const std::string& path) {
    return IsOdbcPath(path) ? "The output on the server" : path;
}

}  // namespace

std::vector<std::string> ForEachTableOf(std::string_view feature,
                                        const std::function<void(LinkedRecordTable&)>& work) {
    std::vector<std::string> problems;
    if (!IsDaoAvailable("3.6")) return {"The database engine is not installed."};
    const std::string wanted(text::trim(text::upper(feature)));
    std::map<std::string, Entities> byOutput;  // paths are the same in any case of letters
    for (const LinkedEntity* entity : LinkIndex::OfDrawing().all())
        if (!entity->isBrokenOff && entity->feature == wanted)
            byOutput[text::upper(files::native(entity->outputPath))].push_back(entity);
    FeatureTables tables;
    for (const auto& [output, entities] : byOutput) {
        const std::string path = PlaceOfDatabase(entities.front()->outputPath);
        if (!IsOutputThere(path)) {
            problems.push_back(path + " is not there.");
            continue;
        }
        try {
            workOnOutput(path, entities, tables, work, problems);
        } catch (const CDaoException& error) {
            problems.push_back(shownName(path) + " cannot be read: " + error.description());
        }
    }
    return problems;
}

std::string PlaceOfDatabase(const std::string& path) {
    if (IsOdbcPath(path) || files::exists(path)) return path;
    const std::optional<std::string> folder = SavedDrawingFolder();
    if (!folder) return path;
    const std::string beside = files::join(*folder, files::nameOf(path));
    return files::exists(beside) ? beside : path;
}

std::map<std::string, size_t> LinkedFeatures() {
    std::map<std::string, size_t> features;
    for (const LinkedEntity* entity : LinkIndex::OfDrawing().all())
        if (!entity->isBrokenOff && !entity->feature.empty()) ++features[entity->feature];
    return features;
}

}  // namespace norvane
