#include "module/linktools/link_targets.h"

#include <algorithm>

#include "module/store/database.h"
#include "module/store/records.h"
#include "module/store/server_sign_in.h"
#include "module/store/template_database.h"
#include "module/store/text_table.h"
#include "module/store/user_tables.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

bool isKeyTable(CDaoDatabase& database, const std::string& table) {
    const std::optional<CDaoFieldInfo> field = FindField(database, table, "PT_ID");
    return field && TakesText(*field, database);
}

bool contains(const std::vector<std::string>& tables, const std::string& wanted) {
    return std::any_of(tables.begin(), tables.end(),
                       [&](const std::string& table) { return SameTable(table, wanted); });
}

}  // namespace

bool TemplateFeatures::has(const std::string& feature) const {
    return std::find(names.begin(), names.end(), text::upper(feature)) != names.end();
}

TemplateFeatures ReadTemplateFeatures(const std::string& path) {
    TemplateFeatures features;
    WithDatabase(path, [&](CDaoDatabase& database) {
        if (!HasPromptingTable(database)) return;
        features.names = ReadFeatureNames(database);
        if (!HasLinksTable(database)) return;
        ForEachRecord(database, "SELECT * FROM ZGEO_LINKS", [&](CDaoRecordset& records) {
            const std::string table = FieldText(records, "TABLE_NAME");
            if (!table.empty()) features.tables.emplace(text::upper(FieldText(records, "GIS_NAME")), table);
        });
    });
    return features;
}

std::vector<std::string> ReadKeyTables(const std::string& path) {
    std::vector<std::string> tables;
    WithDatabase(path, [&](CDaoDatabase& database) {
        for (const std::string& table : UserTables(database))
            if (isKeyTable(database, table)) tables.push_back(table);
    });
    return tables;
}

bool HasTableOf(const std::vector<std::string>& keyTables, const TemplateFeatures& features,
                const std::string& feature) {
    const auto told = features.tables.find(text::upper(feature));
    return (told != features.tables.end() && contains(keyTables, told->second)) ||
           contains(keyTables, feature);
}

LinkTarget LinkTargets::check(const std::string& templatePath, const std::string& outputPath,
                              const std::string& feature) {
    const bool isTemplateThere = files::exists(templatePath), isOutputThere = IsOutputThere(outputPath);
    if (!isTemplateThere && !isOutputThere) return LinkTarget::kNeither;
    if (!isTemplateThere) return LinkTarget::kNoTemplate;
    if (!isOutputThere) return LinkTarget::kNoOutput;
    auto [features, isNewTemplate] = templates_.try_emplace(text::upper(templatePath));
    if (isNewTemplate) features->second = ReadTemplateFeatures(templatePath);
    auto [tables, isNewOutput] = outputs_.try_emplace(text::upper(outputPath));
    if (isNewOutput) tables->second = ReadKeyTables(outputPath);
    return features->second.has(feature) && HasTableOf(tables->second, features->second, feature)
               ? LinkTarget::kGood
               : LinkTarget::kNoTable;
}

}  // namespace norvane
