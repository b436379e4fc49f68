#include "module/features/editor_session.h"

#include "module/features/template_editor_controls.h"
#include "platform/ui/backend.h"

namespace norvane {

EditorSession::EditorSession(ui::Dialog& editor, std::function<void()> showEditorState)
    : dialog(editor),
      showState(std::move(showEditorState)),
      sheet(editor.get<ui::Grid>(editor::kSheet), editor.get<ui::Edit>(editor::kFeature)),
      tree(editor.get<ui::Tree>(editor::kTree)) {}

void EditorSession::showTitle() {
    dialog.setTitle(sheet.modified() ? std::string(editor::kTitle) + " *" : editor::kTitle);
}

void EditorSession::refillTree() {
    if (!file.isOpen()) return;
    if (std::optional<std::vector<CategoryRow>> rows = file.categories()) tree.fill(*rows);
}

void EditorSession::goToFault(const RowFault& fault) {
    ui::messageBox("Error", fault.message);
    dialog.setFocus(editor::kSheet);
    if (fault.row > 0) sheet.goTo(fault.column, fault.row);
    showState();
}

}  // namespace norvane
