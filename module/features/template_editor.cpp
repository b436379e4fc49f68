#include "module/features/template_editor.h"

#include "module/dialogs/run_dialog.h"
#include "module/features/template_editor_controls.h"
#include "module/settings/dialog_state.h"
#include "platform/files/files.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

using namespace editor;

namespace {

constexpr int kResource = 151;

void changeRows(EditorSession& session, void (AttributeGrid::*command)()) {
    session.sheet.change(command);
}

void chooseFormat(EditorSession& session, DatabaseVersion version) {
    session.file.setNextVersion(version);
    writeState(version == DatabaseVersion::kAccess2000 ? "2000" : "97", state::kAccessFormat);
}

// What each button and each entry of the menu does.
struct Command {
    int id;
    void (*run)(EditorSession&);
};
constexpr Command kCommands[] = {
    {kDatabaseNew, NewDatabase},
    {kDatabaseOpen, OpenTemplate},
    {kDatabasePrint, PrintDefinitions},
    {kCategoryNew, NewCategory},
    {kCategoryDelete, DeleteCategory},
    {kCategoryRename, RenameCategory},
    {kCategorySearch, SearchCategory},
    {kFeatureNew, NewFeature},
    {kNewFeature, NewFeature},
    {kEditFeature, EditFeature},
    {kFeatureSaveAs, SaveFeatureAs},
    {kFeatureDelete, DeleteFeature},
    {kFeatureRename, RenameFeature},
    {kFeatureImport, ImportTable},
    {kFeatureSearch, SearchFeature},
    {kFileUpload, UploadFeatures},
    {kFileImport, ImportFile},
    {kFileExport, ExportFile},
    {kFileDelete, DeleteFile},
    {kUp, [](EditorSession& session) { changeRows(session, &AttributeGrid::moveUp); }},
    {kDown, [](EditorSession& session) { changeRows(session, &AttributeGrid::moveDown); }},
    {kInsert, [](EditorSession& session) { changeRows(session, &AttributeGrid::insert); }},
    {kRemove, [](EditorSession& session) { changeRows(session, &AttributeGrid::remove); }},
    {kEditValues, EditListValues},
    {kFormat97, [](EditorSession& session) { chooseFormat(session, DatabaseVersion::kAccess97); }},
    {kFormat2000, [](EditorSession& session) { chooseFormat(session, DatabaseVersion::kAccess2000); }},
};

// The controls stand before what works on them.
ui::Dialog& withControls(ui::Dialog& dialog) {
    AddEditorControls(dialog);
    return dialog;
}

}  // namespace

void EditTemplate(Call& call) {
    call.result = 1;
    TemplateEditor editor;
    RunDialog(editor);
}

TemplateEditor::TemplateEditor()
    : ui::Dialog(kResource, kTitle), session_(withControls(*this), [this] { showState(); }) {}

void TemplateEditor::onOpen() {
    if (readState(state::kAccessFormat) == "2000") session_.file.setNextVersion(DatabaseVersion::kAccess2000);
    session_.sheet.setName("");
    std::string path = readState(state::kTemplatePath);
    if (files::exists(path)) ShowTemplate(session_, path, TemplateFile::MissingTables::kCreated);
    showState();
    // The first key must not choose the format of new databases.
    if (find(kTree)->takesFocus()) setFocus(kTree);
}

void TemplateEditor::exit() {
    if (!AskSaveChanges(session_)) return;
    if (ui::askYesNo("Alert", "               Exit...Please confirm...")) end(ui::kOk);
}

void TemplateEditor::showState() {
    const CategoryTree& tree = session_.tree;
    const AttributeGrid& rows = session_.sheet.attributes();
    const bool open = session_.file.isOpen(), editing = session_.sheet.isOpen();
    session_.showTitle();
    get<ui::Menu>(kMenu).enableEntry(kDatabasePrint, open);
    find(kPath)->setText(session_.file.path());
    const bool newer = session_.file.nextVersion() == DatabaseVersion::kAccess2000;
    get<ui::RadioButton>(newer ? kFormat2000 : kFormat97).check();
    find(kTree)->enable(open || !tree.nodes(CategoryTree::Kind::kCategories).empty());
    find(kNewFeature)->enable(open);
    find(kEditFeature)->enable(tree.selectedFeature().has_value());
    find(kSheet)->enable(editing);
    find(kUp)->enable(editing && rows.canMoveUp());
    find(kDown)->enable(editing && rows.canMoveDown());
    find(kRemove)->enable(editing && rows.canRemove());
    find(kInsert)->enable(editing && rows.canInsert());
    find(kEditValues)->enable(editing && rows.canEditValues());
}

// --- Reactions --------------------------------------------------------------------------------------------

void TemplateEditor::onCommand(int id) {
    if (id == kExit) return exit();
    for (const Command& command : kCommands) {
        if (command.id != id) continue;
        command.run(session_);
        if (running()) showState();
        return;
    }
    Dialog::onCommand(id);
}

void TemplateEditor::onSelection(ui::Control&) {
    showState();
}

void TemplateEditor::onDoubleClick(ui::Control& control) {
    if (control.id() != kTree) return;
    EditFeature(session_);
    showState();
}

void TemplateEditor::onCellChange(ui::Grid&, ui::CellPosition at) {
    session_.sheet.cellEdited(at);
    showState();
}

void TemplateEditor::onCellLeave(ui::Grid&, ui::CellPosition at) {
    session_.sheet.cellLeft(at);
    session_.showTitle();
}

void TemplateEditor::onFocus(ui::Control& control) {
    if (control.id() == kSheet) return;
    session_.sheet.left();
    session_.showTitle();
}

void TemplateEditor::onCellClick(ui::Grid&, ui::CellPosition) {
    showState();
}

void TemplateEditor::onUndo(ui::Grid&) {
    session_.sheet.undone();
    showState();
}

bool TemplateEditor::onKey(const ui::Key& key) {
    if (key.control && !key.alt && text::equalNoCase(key.name, "S")) {
        SaveNow(session_);
        showState();
        return true;
    }
    if (key.is("Enter") && focus() == kTree) {
        EditFeature(session_);
        showState();
        return true;
    }
    if (focus() != kSheet) return false;
    bool handled = false;
    if (key.is("Enter"))
        handled = session_.sheet.enterPressed();
    else if (key.is("Delete"))
        handled = session_.sheet.deletePressed();
    showState();
    return handled;
}

}  // namespace norvane
