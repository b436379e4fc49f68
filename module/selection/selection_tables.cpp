#include "module/selection/selection_tables.h"

#include <algorithm>

#include "module/settings/current_databases.h"
#include "module/store/database.h"
#include "module/store/server_sign_in.h"
#include "module/store/template_database.h"
#include "module/store/user_tables.h"
#include "platform/files/files.h"

namespace norvane {

namespace {

std::string currentTable() {
    const std::string path = CurrentTemplatePath();
    if (!files::exists(path)) return "";
    try {
        CDaoDatabase database;
        OpenDatabase(database, path);
        const std::optional<FeatureTable> current =
            HasLinksTable(database) ? ReadCurrentFeature(database) : std::nullopt;
        return current ? current->table : "";
    } catch (const CDaoException&) {
        return "";  // a template that cannot be read proposes nothing
    }
}

}  // namespace

std::string SelectionTables::find(const std::string& name) const {
    const auto same = std::find_if(names.begin(), names.end(),
                                   [&](const std::string& table) { return SameTable(table, name); });
    return name.empty() || same == names.end() ? "" : *same;
}

SelectionTables SelectableTables(const std::string& outputPath) {
    SelectionTables tables;
    if (outputPath.empty())
        tables.problem = "There is no output database: GIS-SETTINGS chooses one.";
    else if (!IsOutputThere(outputPath))
        tables.problem = "The output database " + outputPath + " is not there.";
    if (!tables.problem.empty()) return tables;
    try {
        CDaoDatabase database;
        OpenDatabase(database, outputPath);
        tables.names = UserTables(database);
        if (tables.names.empty()) tables.problem = "The output database has no tables.";
    } catch (const CDaoException& error) {
        tables.problem = error.description();
    }
    tables.proposed = tables.find(currentTable());
    if (tables.proposed.empty() && !tables.names.empty()) tables.proposed = tables.names.front();
    return tables;
}

std::vector<std::string> SelectableFields(const std::string& outputPath, const std::string& table) {
    std::vector<std::string> fields;
    try {
        CDaoDatabase database;
        OpenDatabase(database, outputPath);
        CDaoTableDef definition(&database);
        definition.Open(table);
        CDaoFieldInfo field;
        for (int i = 0; i < definition.GetFieldCount(); ++i) {
            definition.GetFieldInfo(i, field);
            fields.push_back(field.name);
        }
    } catch (const CDaoException&) {
        fields.clear();
    }
    return fields;
}

}  // namespace norvane
