#include "module/features/template_editor.h"

#include "module/dialogs/run_dialog.h"
#include "module/features/list_values.h"
#include "module/features/name_questions.h"
#include "module/features/template_editor_controls.h"
#include "module/settings/dialog_state.h"
#include "module/store/database.h"
#include "platform/files/files.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

using namespace editor;

namespace {

constexpr int kResource = 151;
constexpr const char* kTitle = "Define Template Database";
constexpr int kInformationTime = 300;  // milliseconds

}  // namespace

void EditTemplate(Call& call) {
    call.result = 1;
    TemplateEditor editor;
    RunDialog(editor);
}

TemplateEditor::TemplateEditor() : ui::Dialog(kResource, kTitle) {
    AddEditorControls(*this);
    treeControl_ = static_cast<ui::Tree*>(find(kTree));
    gridControl_ = static_cast<ui::Grid*>(find(kSheet));
    sheet_.emplace(*gridControl_);
    tree_.emplace(*treeControl_);
}

void TemplateEditor::onOpen() {
    if (readState(state::kAccessFormat) == "2000") nextVersion_ = DatabaseVersion::kAccess2000;
    showFeature("");
    std::string path = readState(state::kTemplatePath);
    if (files::exists(path)) openDatabase(path, MissingTables::kCreated);
    showControls();
}

void TemplateEditor::exit() {
    if (!askSaveChanges()) return;
    if (ui::askYesNo("Alert", "               Exit...Please confirm...")) end(ui::kOk);
}

// --- What is shown ----------------------------------------------------------------------------------------

void TemplateEditor::showFeature(const std::string& name) {
    feature_ = name;
    find(kFeature)->setText(name.empty() ? "None" : name);
}

void TemplateEditor::setModified(bool on) {
    modified_ = on;
    setTitle(on ? std::string(kTitle) + " *" : kTitle);
}

void TemplateEditor::showControls() {
    const bool open = !path_.empty(), editing = !feature_.empty();
    find(kTree)->enable(open || !tree_->nodes(CategoryTree::Kind::kCategories).empty());
    find(kNewFeature)->enable(open);
    find(kEditFeature)->enable(tree_->selectedFeature().has_value());
    find(kSheet)->enable(editing);
    find(kUp)->enable(editing && sheet_->canMoveUp());
    find(kDown)->enable(editing && sheet_->canMoveDown());
    find(kRemove)->enable(editing && sheet_->canRemove());
    find(kInsert)->enable(editing && sheet_->canInsert());
    find(kEditValues)->enable(editing && sheet_->canEditValues());
}

void TemplateEditor::clearSheet() {
    filling_ = true;
    sheet_->clear();
    filling_ = false;
}

void TemplateEditor::goToFault(const RowFault& fault) {
    ui::messageBox("Error", fault.message);
    setFocus(kSheet);
    filling_ = true;
    if (fault.row > 0) gridControl_->setActive(fault.column, fault.row);
    filling_ = false;
    showControls();
}

// --- Saving -----------------------------------------------------------------------------------------------

bool TemplateEditor::askSaveChanges() {
    gridControl_->setEditing(false);
    if (!modified_) return true;
    setModified(false);
    bool anything = false;
    for (const FeatureFileRow& row : sheet_->rows())
        anything |= !row.abbreviation.empty() || !row.fullName.empty();
    if (!anything) return true;
    const std::string about = feature_.empty() ? "" : "Current Feature: " + feature_ + "\n";
    if (!ui::askYesNo("Alert", about + "Save Changes?")) return true;
    if (feature_.empty()) {
        std::string name = AskGoodName("Feature Name");
        if (name.empty()) return true;
        showFeature(name);
    }
    const std::vector<std::string> categories = tree_->categories();
    if (categories.empty()) {
        ui::messageBox(
            "Alert",
            "No Categories found in the Template Database.\nPlease add at least one category in order "
            "to be able to store Features!");
        setModified(true);
        return false;
    }
    std::string category =
        AskCategory("Select Category", categories, tree_->categoryOf(tree_->findFeature(feature_)));
    // Who does not choose a category has not said that the changes may be lost.
    bool saved = !category.empty() && saveToCategory(category);
    if (!saved) setModified(true);
    return saved;
}

bool TemplateEditor::saveToCategory(const std::string& category) {
    saveFailed_ = true;
    const std::vector<FeatureFileRow> rows = sheet_->rows();
    if (std::optional<RowFault> fault = CheckForCategory(feature_, rows)) {
        goToFault(*fault);
        return false;
    }
    saveFailed_ = false;
    if (path_.empty()) {
        ui::messageBox("Error", "Template Database not set!");
        setFocus(kTree);
        return true;
    }
    bool stored = false;
    if (WithDatabase(path_, [&](CDaoDatabase& database) { stored = IsFeatureStored(database, feature_); }) !=
        DatabaseOutcome::kDone)
        saveFailed_ = true;
    if (!saveFailed_ && stored && !ui::askYesNo("Alert", "Feature already exist! Do you want to replace it?"))
        return true;
    // A template that did not take the changes is as it was, and so is the sheet.
    if (saveFailed_ || !change([&](CDaoDatabase& database) {
            if (stored) RemoveFeatureRecords(database, feature_);
            StoreFeature(database, feature_, category, rows);
        })) {
        saveFailed_ = true;
        return false;
    }
    refillTree();
    tree_->select(tree_->findFeature(feature_));
    ui::information("Process done...", kInformationTime);
    return true;
}

// Saves at once what the question would save.
void TemplateEditor::saveNow() {
    gridControl_->setEditing(false);
    if (feature_.empty()) return;
    std::string category = tree_->categoryOf(tree_->findFeature(feature_));
    if (category.empty())
        category = AskCategory("Select Category", tree_->categories(), tree_->selectedCategory());
    if (!category.empty() && saveToCategory(category)) setModified(false);
    showControls();
}

// --- Reactions --------------------------------------------------------------------------------------------

void TemplateEditor::onCommand(int id) {
    switch (id) {
        case kDatabaseNew:
            newDatabase();
            break;
        case kDatabaseOpen:
            openDatabaseFromBox();
            break;
        case kExit:
            return exit();
        case kCategoryNew:
            newCategoryFromPrompt();
            break;
        case kCategoryDelete:
            deleteCategory();
            break;
        case kCategoryRename:
            renameCategory();
            break;
        case kCategorySearch:
            search(CategoryTree::Kind::kCategories);
            break;
        case kNewFeature:
        case kFeatureNew:
            newFeature();
            break;
        case kEditFeature:
            loadFeature(tree_->selected());
            break;
        case kFeatureSaveAs:
            saveFeatureAs();
            break;
        case kFeatureDelete:
            deleteFeature();
            break;
        case kFeatureRename:
            renameFeature();
            break;
        case kFeatureSearch:
            search(CategoryTree::Kind::kFeatures);
            break;
        case kFileImport:
            importFile();
            break;
        case kFileExport:
            exportFile();
            break;
        case kFileDelete:
            deleteFile();
            break;
        case kUp:
            rowCommand(&AttributeGrid::moveUp);
            break;
        case kDown:
            rowCommand(&AttributeGrid::moveDown);
            break;
        case kInsert:
            rowCommand(&AttributeGrid::insert);
            break;
        case kRemove:
            rowCommand(&AttributeGrid::remove);
            break;
        case kEditValues:
            editValues();
            break;
        default:
            return Dialog::onCommand(id);
    }
    if (running()) showControls();
}

void TemplateEditor::onSelection(ui::Control&) {
    showControls();
}

void TemplateEditor::onDoubleClick(ui::Control& control) {
    if (control.id() != kTree) return;
    loadFeature(tree_->selected());
    showControls();
}

void TemplateEditor::onCellChange(ui::Grid&, ui::CellPosition at) {
    setModified(true);
    filling_ = true;
    sheet_->cellEdited(at);
    filling_ = false;
    showControls();
}

void TemplateEditor::onCellLeave(ui::Grid&, ui::CellPosition at) {
    if (!filling_) sheet_->cellLeft(at);
}

void TemplateEditor::onCellClick(ui::Grid&, ui::CellPosition) {
    showControls();
}

bool TemplateEditor::onKey(const ui::Key& key) {
    if (key.control && !key.alt && text::equalNoCase(key.name, "S")) {
        saveNow();
        return true;
    }
    if (key.is("Enter") && focus() == kTree) {
        loadFeature(tree_->selected());
        showControls();
        return true;
    }
    if (focus() != kSheet) return false;
    bool handled = false;
    if (key.is("Enter")) {
        handled = sheet_->enterPressed();
    } else if (key.is("Delete")) {
        handled = sheet_->deletePressed();
        if (handled) setModified(true);
    }
    showControls();
    return handled;
}

void TemplateEditor::rowCommand(void (AttributeGrid::*command)()) {
    filling_ = true;
    gridControl_->setEditing(false);
    ((*sheet_).*command)();
    filling_ = false;
    setModified(true);
    if (sheet_->count() == 0) showFeature("");
}

void TemplateEditor::editValues() {
    const int row = gridControl_->active().row;
    std::optional<ValueCell> values = EditValues(sheet_->values(row));
    if (!values) return;
    filling_ = true;
    sheet_->applyValues(row, *values);
    filling_ = false;
    setModified(true);
}

}  // namespace norvane
