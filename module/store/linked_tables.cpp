#include "module/store/linked_tables.h"

#include <algorithm>
#include <functional>

#include "module/cad/drawing_folder.h"
#include "module/store/database.h"
#include "module/store/server_sign_in.h"
#include "module/store/template_database.h"
#include "module/store/user_tables.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

void withDatabase(const std::string& path, const std::function<void(CDaoDatabase&)>& work) {
    if (!IsOutputThere(path)) return;
    try {
        CDaoDatabase database;
        OpenDatabase(database, path);
        work(database);
    } catch (const CDaoException&) {
        // A database that cannot be read has no tables for a link.
    }
}

std::string toldTable(const std::string& templatePath, const std::string& feature) {
    std::string table;
    withDatabase(templatePath, [&](CDaoDatabase& database) {
        if (HasLinksTable(database)) table = ReadOutputTable(database, feature);
    });
    return table;
}

// As it stands among some tables; "" when it does not.
std::string found(const std::vector<std::string>& tables, const std::string& wanted) {
    const auto same = std::find_if(tables.begin(), tables.end(),
                                   [&](const std::string& table) { return SameTable(table, wanted); });
    return wanted.empty() || same == tables.end() ? "" : *same;
}

}  // namespace

bool IsSameDatabase(const std::string& a, const std::string& b) {
    return text::equalNoCase(files::native(a), files::native(b));
}

const std::string& LinkedTables::placeOf(const std::string& path) {
    const auto [known, isNew] = places_.try_emplace(path, path);
    std::string& place = known->second;
    if (!isNew || path.empty() || IsOutputThere(path)) return place;
    if (const std::optional<std::string> folder = SavedDrawingFolder()) {
        const std::string beside = files::join(*folder, files::nameOf(files::native(path)));
        if (files::exists(beside)) place = beside;
    }
    return place;
}

const std::vector<std::string>& LinkedTables::tablesOf(const std::string& output) {
    const auto [known, isNew] = tables_.try_emplace(output);
    std::vector<std::string>& tables = known->second;
    if (isNew) withDatabase(output, [&](CDaoDatabase& database) { tables = UserTables(database); });
    return tables;
}

const std::string& LinkedTables::outputOf(const LinkedEntity& link) {
    return placeOf(link.outputPath);
}

const std::string& LinkedTables::tableOf(const LinkedEntity& link) {
    auto& features = features_[link.templatePath + '\n' + link.outputPath];
    const auto [known, isNew] = features.try_emplace(link.feature);
    if (!isNew) return known->second;
    const std::vector<std::string>& tables = tablesOf(outputOf(link));
    known->second = found(tables, toldTable(placeOf(link.templatePath), link.feature));
    if (known->second.empty()) known->second = found(tables, link.feature);
    return known->second;
}

std::vector<const LinkedEntity*> LinkedTables::linksTo(const std::string& outputPath,
                                                       const std::string& table) {
    std::vector<const LinkedEntity*> links;
    std::unordered_map<std::string, bool> isOutput;
    for (const LinkedEntity* link : LinkIndex::OfDrawing().all()) {
        if (link->isBrokenOff) continue;
        const auto [same, isNew] = isOutput.try_emplace(link->outputPath);
        if (isNew) same->second = IsSameDatabase(outputOf(*link), outputPath);
        if (same->second && SameTable(tableOf(*link), table)) links.push_back(link);
    }
    return links;
}

}  // namespace norvane
