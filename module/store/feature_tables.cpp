#include "module/store/feature_tables.h"

#include "module/store/database.h"
#include "module/store/records.h"
#include "module/store/template_schema.h"
#include "module/store/user_tables.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

FeatureTables::Tables FeatureTables::readTemplate(const std::string& path) {
    Tables tables;
    if (!files::exists(path)) return tables;
    try {
        CDaoDatabase database;
        OpenDatabase(database, path);
        if (!HasLinksTable(database)) return tables;
        ForEachRecord(database, std::string("SELECT * FROM ") + kLinkTable,
                      [&](const CDaoRecordset& records) {
                          const std::string table = FieldText(records, "TABLE_NAME");
                          if (!table.empty())
                              tables.emplace(text::upper(FieldText(records, "GIS_NAME")), table);
                      });
    } catch (const CDaoException&) {
        tables.clear();
    }
    return tables;
}

std::string FeatureTables::find(const CDaoDatabase& output, const std::string& templatePath,
                                const std::string& feature) {
    const auto [tables, isNew] = templates_.try_emplace(text::upper(templatePath));
    if (isNew) tables->second = readTemplate(templatePath);
    const auto told = tables->second.find(feature);
    const std::string table = told == tables->second.end() ? "" : FindUserTable(output, told->second);
    return table.empty() ? FindUserTable(output, feature) : table;
}

}  // namespace norvane
