// Feature, Import: a new feature whose attributes are the fields of a table that exists.
#include <algorithm>

#include "module/dialogs/run_dialog.h"
#include "module/features/editor_session.h"
#include "module/features/feature_from_table_dialog.h"
#include "module/settings/dialog_state.h"
#include "module/store/database.h"
#include "module/store/server_sign_in.h"
#include "platform/ads/editor.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

// The last field has never counted as there.
std::string detailsOf(size_t fields, size_t used) {
    return "Process done!\nNumber fields from    TABLE : " + std::to_string(static_cast<long>(fields) - 1) +
           "\nNumber fields  used in the new Feature : " + std::to_string(used);
}

// The fields of a table that are no attributes, but for its keys.
std::vector<std::string> leftOut(const SourceTable& table, const std::vector<FeatureFileRow>& rows) {
    std::vector<std::string> names;
    for (const TableColumn& column : table.columns)
        if (column.name != "PT_ID" && column.name != "GIS_KEY" &&
            std::ranges::find(rows, column.name, &FeatureFileRow::abbreviation) == rows.end())
            names.push_back(column.name);
    return names;
}

// False when the table was not changed as it had to be, which has been told.
bool makeKeys(const std::string& path, const SourceTable& table) {
    std::vector<std::string> missing;
    for (const char* key : {"PT_ID", "GIS_KEY"})
        if (!table.hasColumn(key)) missing.push_back(key);
    if (missing.empty()) return true;
    const DatabaseOutcome outcome =
        WithDatabase(path, [&](CDaoDatabase& database) { AddKeyColumns(database, table.name); });
    if (outcome != DatabaseOutcome::kDone) return false;
    acutPrintf("\n%s added to the table %s.", text::join(missing, " and ").c_str(), table.name.c_str());
    return true;
}

}  // namespace

void ImportTable(EditorSession& s) {
    if (!AskSaveChanges(s)) return;
    std::string path = readState(state::kOutputPath);
    if (!IsOutputThere(path)) path.clear();
    TableChooser chooser(path, OffersObjectData(), ObjectDataTables());
    if (RunDialog(chooser) != ui::kOk) return;
    const bool isOutput = !chooser.isObjectData();
    path = chooser.outputPath();
    if (isOutput && !path.empty()) writeState(dao::DatabasePath(path), state::kOutputPath);
    const SourceTable* table = chooser.table();
    if (!table || (isOutput && !makeKeys(path, *table))) return;

    const std::vector<FeatureFileRow> rows = chooser.attributes();
    s.category.clear();
    s.sheet.setRowsOfTable(rows, table->name, isOutput);
    s.showState();
    ui::reportSuccess("Details", detailsOf(table->columns.size(), rows.size()));
    if (const std::vector<std::string> others = leftOut(*table, rows); !others.empty())
        acutPrintf("\n%s left out: %s.",
                   text::counted(static_cast<long>(others.size()), "field", "fields").c_str(),
                   text::join(others, ", ").c_str());
}

}  // namespace norvane
