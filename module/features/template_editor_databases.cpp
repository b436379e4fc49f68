// The editor's work on whole databases, and on its categories and features.
#include "module/cad/lisp_symbols.h"
#include "module/dialogs/file_boxes.h"
#include "module/dialogs/name_prompt.h"
#include "module/features/name_questions.h"
#include "module/features/template_editor.h"
#include "module/features/template_editor_controls.h"
#include "module/settings/dialog_state.h"
#include "module/setup/database_chooser.h"
#include "module/store/database.h"
#include "module/store/template_database.h"
#include "platform/ads/editor.h"
#include "platform/files/files.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

using namespace editor;

// --- Databases --------------------------------------------------------------------------------------------

std::string TemplateEditor::templateFolder() const {
    std::string folder = files::folderOf(path_);
    if (folder.empty()) GetLispValue(folder, "tmpdir$");
    return folder;
}

bool TemplateEditor::change(const std::function<void(CDaoDatabase&)>& work) {
    return path_.empty() || ChangeTemplate(path_, work);
}

void TemplateEditor::refillTree() {
    if (path_.empty()) return;
    WithDatabase(path_, [&](CDaoDatabase& database) { tree_->fill(ReadCategoryRows(database)); });
}

void TemplateEditor::useDatabase(const std::string& path, const std::vector<CategoryRow>& rows) {
    path_ = path;
    writeState(path, state::kTemplatePath);
    find(kPath)->setText(path);
    tree_->fill(rows);
}

void TemplateEditor::openDatabase(const std::string& path, MissingTables missing) {
    bool isTemplate = false;
    std::vector<CategoryRow> rows;
    DatabaseOutcome outcome = WithDatabase(path, [&](CDaoDatabase& database) {
        if (missing == MissingTables::kCreated || !HasAnyTemplateTable(database))
            EnsureTemplateTables(database);
        isTemplate = HasTemplateColumns(database);
        if (isTemplate) rows = ReadCategoryRows(database);
    });
    if (outcome != DatabaseOutcome::kDone) return;
    if (!isTemplate) {
        ui::messageBox("Error", path + " is not a template database!");
        return;
    }
    clearSheet();
    showFeature("");
    useDatabase(path, rows);
}

void TemplateEditor::openDatabaseFromBox() {
    if (!askSaveChanges()) return;
    if (std::optional<std::string> path = AskTemplateToOpen(templateFolder()))
        openDatabase(*path, MissingTables::kCreatedWhenBothMiss);
}

void TemplateEditor::newDatabase() {
    if (!askSaveChanges()) return;
    NewFileChoice choice = SelectNewFile(templateFolder());
    if (choice.path.empty()) return;
    if (choice.existing)
        openDatabase(choice.path, MissingTables::kCreatedWhenBothMiss);
    else
        createDatabase(choice.path, choice.version);
}

void TemplateEditor::createDatabase(const std::string& path, DatabaseVersion version) {
    if (!files::remove(path)) {
        ui::messageBox("Error", "Cannot delete *.mdb file!");
        return;
    }
    if (!MakeDatabase(path, nextVersion_, EnsureTemplateTables)) return;
    clearSheet();
    showFeature("");
    useDatabase(path, {});
    // The format that was asked for holds from the next database on.
    nextVersion_ = version;
    writeState(version == DatabaseVersion::kAccess2000 ? "2000" : "97", state::kAccessFormat);
}

// --- Categories -------------------------------------------------------------------------------------------

void TemplateEditor::newCategoryFromPrompt() {
    newCategory(AskGoodName("Category Name"));
}

// The node of a category, which is made when there is none of the name; kNone when that failed.
int TemplateEditor::newCategory(const std::string& name) {
    if (name.empty()) return CategoryTree::kNone;
    int category = tree_->findCategory(name);
    if (category == CategoryTree::kNone) {
        if (!change([&](CDaoDatabase& database) { AddCategory(database, name); })) return CategoryTree::kNone;
        category = tree_->addCategory(name);
    }
    tree_->select(category);
    return category;
}

namespace {

// Asks for one of the tree's categories; kNone when there are none or the person cancelled.
int askForCategory(const CategoryTree& tree, const char* title) {
    const std::vector<std::string> categories = tree.categories();
    if (categories.empty()) {
        ui::messageBox("Alert", "No Categories found in the Template Database!");
        return CategoryTree::kNone;
    }
    return tree.findCategory(AskCategory(title, categories, tree.selectedCategory()));
}

}  // namespace

void TemplateEditor::deleteCategory() {
    const int category = askForCategory(*tree_, "Select Category to Delete");
    if (category == CategoryTree::kNone) return;
    if (tree_->hasFeatures(category) &&
        !ui::askYesNo(
            "Alert",
            "Selected Category has Features.\nBy deleting this Category all the associated Features will "
            "be also deleted from the Template Database!\nContinue?"))
        return;
    if (change([&](CDaoDatabase& database) { DeleteCategory(database, tree_->text(category)); }))
        tree_->remove(category);
}

void TemplateEditor::renameCategory() {
    const int category = askForCategory(*tree_, "Select Category to Rename");
    if (category == CategoryTree::kNone) return;
    const std::string old = tree_->text(category);
    const std::string name = AskGoodName("Rename: " + old + " to", old);
    if (name.empty()) return;
    if (change([&](CDaoDatabase& database) { RenameCategory(database, old, name); }))
        tree_->renameCategory(category, name);
}

void TemplateEditor::search(CategoryTree::Kind kind) {
    const bool categories = kind == CategoryTree::Kind::kCategories;
    std::string& last = categories ? lastCategorySearch_ : lastFeatureSearch_;
    const char* title = categories ? "Search Category" : "Search Feature";
    const std::string pattern = text::upper(AskName(title, last, EmptyNameFault));
    if (pattern.empty()) return;
    last = pattern;

    const std::vector<int> nodes = tree_->nodes(kind);
    auto selectFrom = [&](size_t place) {
        for (; place < nodes.size(); ++place)
            if (acutWcMatch(text::upper(tree_->text(nodes[place])).c_str(), pattern.c_str()) == RTNORM) {
                tree_->select(nodes[place]);
                return true;
            }
        return false;
    };
    const int selected = tree_->selected();
    if (selectFrom(tree_->searchStart(kind))) return;
    if (selected >= 0) {
        const std::string list = categories ? "Category" : "Feature";
        if (!ui::askYesNo("Alert", "The routine has finished searching the " + list +
                                       " List.\nStart from the beginning?"))
            return tree_->select(selected);
        if (selectFrom(0)) return;
    }
    ui::messageBox("Alert", categories ? "No Category found!" : "No Feature found!");
}

// --- Features ---------------------------------------------------------------------------------------------

void TemplateEditor::loadFeature(int node) {
    if (!tree_->isFeature(node)) return;
    const std::string name = tree_->text(node);
    if (!askSaveChanges()) return;
    tree_->select(tree_->findFeature(name));  // a save has made the tree anew
    std::vector<FeatureFileRow> rows;
    if (!path_.empty() && WithDatabase(path_, [&](CDaoDatabase& database) {
                              rows = ReadFeature(database, name);
                          }) != DatabaseOutcome::kDone)
        return;
    showFeature(name);
    filling_ = true;
    sheet_->setRows(rows);
    filling_ = false;
}

void TemplateEditor::newFeature() {
    const std::string category = tree_->selectedCategory();
    if (!askSaveChanges()) return;
    const std::string name = AskGoodName("Feature Name");
    if (name.empty()) return;
    if (int existing = tree_->findFeature(name); existing != CategoryTree::kNone) {
        if (!ui::askYesNo("Alert", "Feature " + name + " already exist.\nOpen existing Feature?"))
            return setFocus(kTree);
        tree_->select(existing);
        return loadFeature(existing);
    }
    int parent = tree_->findCategory(category);
    if (category.empty()) parent = newCategory(AskGoodName("Category Name"));
    if (parent == CategoryTree::kNone) return;
    tree_->select(tree_->addFeature(parent, name));
    clearSheet();
    showFeature(name);
    showControls();
    setFocus(kSheet);
}

// The selected feature, once the changes on the sheet are dealt with; nothing: there is no work to do.
std::optional<std::string> TemplateEditor::featureForCommand() {
    std::optional<std::string> name = tree_->selectedFeature();
    if (!name) {
        ui::messageBox("Alert", "No Selected Feature found!\nPlease select a feature from the list!");
        return std::nullopt;
    }
    if (!askSaveChanges()) return std::nullopt;
    tree_->select(tree_->findFeature(*name));
    return name;
}

void TemplateEditor::saveFeatureAs() {
    const std::optional<std::string> feature = featureForCommand();
    if (!feature) return;
    const std::string name = AskGoodName("Save: " + *feature + " As", *feature);
    if (name.empty()) return;
    if (tree_->findFeature(name) != CategoryTree::kNone) {
        ui::messageBox("Error", "Cannot save Feature.\nFeature name already exist!");
        return;
    }
    const std::string category =
        AskCategory("Select Category", tree_->categories(), tree_->selectedCategory());
    if (category.empty() ||
        !change([&](CDaoDatabase& database) { CopyFeature(database, *feature, name, category); }))
        return;
    tree_->select(tree_->addFeature(tree_->findCategory(category), name));
}

void TemplateEditor::deleteFeature() {
    const std::optional<std::string> feature = featureForCommand();
    if (!feature || !ui::askYesNo("Alert", "Are you sure you want to delete this Feature?")) return;
    const int node = tree_->findFeature(*feature);
    if (node == CategoryTree::kNone) return;
    if (!change([&](CDaoDatabase& database) { DeleteFeature(database, *feature, tree_->categoryOf(node)); }))
        return;
    tree_->remove(node);
    if (!text::equalNoCase(feature_, *feature)) return;
    clearSheet();
    showFeature("");
}

void TemplateEditor::renameFeature() {
    const std::optional<std::string> feature = featureForCommand();
    if (!feature) return;
    const std::string name = AskGoodName("Rename: " + *feature + " to", *feature);
    if (name.empty()) return;
    const int node = tree_->findFeature(*feature), other = tree_->findFeature(name);
    if (other != CategoryTree::kNone && other != node) {
        ui::messageBox("Error", "Cannot rename Feature.\nFeature already exist!");
        return;
    }
    if (!change([&](CDaoDatabase& database) { RenameFeature(database, *feature, name); })) return;
    tree_->rename(node, name);
    if (text::equalNoCase(feature_, *feature)) showFeature(name);
}

}  // namespace norvane
