// The editor's menu of template databases.
#include "module/dialogs/file_boxes.h"
#include "module/features/editor_session.h"
#include "module/setup/database_chooser.h"
#include "platform/files/files.h"
#include "platform/ui/backend.h"

namespace norvane {

using MissingTables = TemplateFile::MissingTables;

void ShowTemplate(EditorSession& s, const std::string& path, MissingTables missing) {
    const TemplateFile::Opened opened = s.file.open(path, missing);
    if (opened.outcome == TemplateFile::Outcome::kNoTemplate)
        ui::messageBox("Error", path + " is not a template database!");
    if (opened.outcome != TemplateFile::Outcome::kDone) return;
    s.sheet.close();
    s.tree.fill(opened.categories);
}

void OpenTemplate(EditorSession& s) {
    if (!AskSaveChanges(s)) return;
    if (std::optional<std::string> path = AskTemplateToOpen(s.file.folder()))
        ShowTemplate(s, *path, MissingTables::kCreatedWhenBothMiss);
}

void NewDatabase(EditorSession& s) {
    if (!AskSaveChanges(s)) return;
    const NewFileChoice choice = SelectNewFile(s.file.folder());
    if (choice.path.empty()) return;
    if (choice.existing) return ShowTemplate(s, choice.path, MissingTables::kCreatedWhenBothMiss);
    if (!files::remove(choice.path)) {
        ui::messageBox("Error", "Cannot delete *.mdb file!");
        return;
    }
    if (!s.file.create(choice.path, choice.version)) return;
    s.sheet.close();
    s.tree.fill({});
}

}  // namespace norvane
