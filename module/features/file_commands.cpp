// The editor's menu of feature files.
#include "module/cad/drawing_folder.h"
#include "module/dialogs/file_boxes.h"
#include "module/features/editor_session.h"
#include "module/features/feature_file.h"
#include "module/settings/dialog_state.h"
#include "platform/files/files.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

std::string detailsOf(const FeatureFileContent& file) {
    // The last line has never counted as stored.
    return "Process done!\nNumber rows stored in    GIS file : " + std::to_string(file.lines - 1) +
           "\nNumber valid rows  from GIS file : " + std::to_string(file.validRows);
}

std::string fileFolder() {
    std::string folder = readState(state::kFeatureFileFolder);
    if (folder.empty()) folder = DrawingFolder();
    return folder;
}

}  // namespace

void ImportFile(EditorSession& s) {
    if (!AskSaveChanges(s)) return;
    const std::string path = AskFeatureFileToImport(fileFolder()).value_or("");
    if (path.empty()) return;
    writeState(files::folderOf(path), state::kFeatureFileFolder);
    s.sheet.setName(FeatureNameOfFile(path));
    s.sheet.clear();
    const std::optional<std::string> content = files::read(path);
    if (!content) {
        ui::messageBox("Error", "Cannot open *.gis file!");
        return;
    }
    const FeatureFileContent file = ParseFeatureFile(*content);
    s.sheet.setRows(file.rows);
    ui::reportSuccess("Details", detailsOf(file));
}

void ExportFile(EditorSession& s) {
    if (!AskSaveChanges(s)) return;
    const std::vector<FeatureFileRow> rows = s.sheet.rows();
    if (std::optional<RowFault> fault = CheckForFile(rows)) return s.goToFault(*fault);
    const std::string path = AskFeatureFileToExport(fileFolder()).value_or("");
    if (!path.empty()) {
        writeState(files::folderOf(path), state::kFeatureFileFolder);
        if (!files::replace(path, FeatureFileText(rows))) ui::messageBox("Error", "Cannot save *.gis file!");
        ui::information("Process done...", kInformationTime);
    }
    s.sheet.goTo(1, 1);
}

void DeleteFile(EditorSession&) {
    const std::string path = AskFeatureFileToDelete(fileFolder()).value_or("");
    if (files::exists(path) && ui::askYesNo("Alert", "Are you sure you want to delete this file?"))
        files::remove(path);
}

}  // namespace norvane
