// Feature files in the editor: import, export and deletion.
#include "module/cad/lisp_symbols.h"
#include "module/dialogs/file_boxes.h"
#include "module/features/feature_file.h"
#include "module/features/template_editor.h"
#include "module/settings/dialog_state.h"
#include "platform/files/files.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

constexpr int kInformationTime = 300;  // milliseconds

std::string detailsOf(const FeatureFileContent& file) {
    // The last line has never counted as stored.
    return "Process done!\nNumber rows stored in    GIS file : " + std::to_string(file.lines - 1) +
           "\nNumber valid rows  from GIS file : " + std::to_string(file.validRows);
}

}  // namespace

std::string TemplateEditor::fileFolder() const {
    std::string folder = readState(state::kFeatureFileFolder);
    if (folder.empty()) GetLispValue(folder, "tmpdir$");
    return folder;
}

void TemplateEditor::importFile() {
    if (!askSaveChanges()) return;
    const std::string path = AskFeatureFileToImport(fileFolder()).value_or("");
    if (path.empty()) return;
    writeState(files::folderOf(path), state::kFeatureFileFolder);
    showFeature(FeatureNameOfFile(path));
    clearSheet();
    const std::optional<std::string> content = files::read(path);
    if (!content) {
        ui::messageBox("Error", "Cannot open *.gis file!");
        return;
    }
    const FeatureFileContent file = ParseFeatureFile(*content);
    filling_ = true;
    sheet_->setRows(file.rows);
    filling_ = false;
    ui::messageBox("Details", detailsOf(file));
}

void TemplateEditor::exportFile() {
    if (!askSaveChanges()) return;
    const std::vector<FeatureFileRow> rows = sheet_->rows();
    if (std::optional<RowFault> fault = CheckForFile(rows)) return goToFault(*fault);
    const std::string path = AskFeatureFileToExport(fileFolder()).value_or("");
    if (!path.empty()) {
        writeState(files::folderOf(path), state::kFeatureFileFolder);
        if (!files::replace(path, FeatureFileText(rows))) ui::messageBox("Error", "Cannot save *.gis file!");
        ui::information("Process done...", kInformationTime);
    }
    filling_ = true;
    gridControl_->setActive(1, 1);
    filling_ = false;
}

void TemplateEditor::deleteFile() {
    const std::string path = AskFeatureFileToDelete(fileFolder()).value_or("");
    if (files::exists(path) && ui::askYesNo("Alert", "Are you sure you want to delete this file?"))
        files::remove(path);
}

}  // namespace norvane
