// The editor's menu of features.
#include "module/features/editor_session.h"
#include "module/features/list_values.h"
#include "module/features/name_questions.h"
#include "module/features/template_editor_controls.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

void EditFeature(EditorSession& s) {
    const std::optional<std::string> name = s.tree.selectedFeature();
    const std::string category = s.tree.selectedCategory();
    if (!name || !AskSaveChanges(s)) return;
    s.tree.select(s.tree.findFeature(*name, category));  // a save has made the tree anew
    const std::optional<std::vector<FeatureFileRow>> rows = s.file.feature(*name);
    if (!rows) return;
    s.category = category;
    s.sheet.setName(*name);
    s.sheet.setRows(*rows);
}

void NewFeature(EditorSession& s) {
    const std::string category = s.tree.selectedCategory();
    if (!AskSaveChanges(s)) return;
    const std::string name = AskGoodName("Feature Name");
    if (name.empty()) return;
    if (int existing = s.tree.findFeature(name); existing != CategoryTree::kNone) {
        if (!ui::askYesNo("Alert", "Feature " + name + " already exist.\nOpen existing Feature?"))
            return s.dialog.setFocus(editor::kTree);
        s.tree.select(existing);
        return EditFeature(s);
    }
    int parent = s.tree.findCategory(category);
    if (category.empty()) parent = NodeOfCategory(s, AskGoodName("Category Name"));
    if (parent == CategoryTree::kNone) return;
    s.tree.select(s.tree.addFeature(parent, name));
    s.category = s.tree.text(parent);
    s.sheet.clear();
    s.sheet.setName(name);
    s.showState();
    s.dialog.setFocus(editor::kSheet);
}

namespace {

// The selected feature, once the changes on the sheet are dealt with; nothing: there is no work to do.
std::optional<std::string> featureForCommand(EditorSession& s) {
    std::optional<std::string> name = s.tree.selectedFeature();
    if (!name) {
        ui::messageBox("Alert", "No Selected Feature found!\nPlease select a feature from the list!");
        return std::nullopt;
    }
    const std::string category = s.tree.selectedCategory();
    if (!AskSaveChanges(s)) return std::nullopt;
    s.tree.select(s.tree.findFeature(*name, category));
    return name;
}

}  // namespace

void SaveFeatureAs(EditorSession& s) {
    const std::optional<std::string> feature = featureForCommand(s);
    if (!feature) return;
    const std::string name = AskGoodName("Save: " + *feature + " As", *feature);
    if (name.empty()) return;
    if (s.tree.findFeature(name) != CategoryTree::kNone) {
        ui::messageBox("Error", "Cannot save Feature.\nFeature name already exist!");
        return;
    }
    const std::string category =
        AskCategory("Select Category", s.tree.categories(), s.tree.selectedCategory());
    if (category.empty() ||
        !s.file.change([&](CDaoDatabase& database) { CopyFeature(database, *feature, name, category); }))
        return;
    s.tree.select(s.tree.addFeature(s.tree.findCategory(category), name));
}

void DeleteFeature(EditorSession& s) {
    const std::optional<std::string> feature = featureForCommand(s);
    if (!feature || !ui::askYesNo("Alert", "Are you sure you want to delete this Feature?")) return;
    const int node = s.tree.selected();
    if (node == CategoryTree::kNone) return;
    if (!s.file.change(
            [&](CDaoDatabase& database) { DeleteFeature(database, *feature, s.tree.categoryOf(node)); }))
        return;
    s.tree.remove(node);
    if (!text::equalNoCase(s.sheet.name(), *feature)) return;
    s.sheet.close();
}

void RenameFeature(EditorSession& s) {
    const std::optional<std::string> feature = featureForCommand(s);
    if (!feature) return;
    const std::string name = AskGoodName("Rename: " + *feature + " to", *feature);
    if (name.empty()) return;
    const int node = s.tree.selected(), other = s.tree.findFeature(name);
    if (other != CategoryTree::kNone && other != node) {
        ui::messageBox("Error", "Cannot rename Feature.\nFeature already exist!");
        return;
    }
    if (!s.file.change([&](CDaoDatabase& database) { RenameFeature(database, *feature, name); })) return;
    s.tree.rename(node, name);
    if (text::equalNoCase(s.sheet.name(), *feature)) s.sheet.setName(name);
}

void EditListValues(EditorSession& s) {
    if (std::optional<ValueCell> values = EditValues(s.sheet.values())) s.sheet.setValues(*values);
}

}  // namespace norvane
