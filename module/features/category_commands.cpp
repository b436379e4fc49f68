// The editor's menu of categories, and the search for features.
#include "module/dialogs/name_prompt.h"
#include "module/features/editor_session.h"
#include "module/features/name_questions.h"
#include "platform/ads/editor.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

void NewCategory(EditorSession& s) {
    NodeOfCategory(s, AskGoodName("Category Name"));
}

int NodeOfCategory(EditorSession& s, const std::string& name) {
    if (name.empty()) return CategoryTree::kNone;
    int category = s.tree.findCategory(name);
    if (category == CategoryTree::kNone) {
        if (!s.file.change([&](CDaoDatabase& database) { AddCategory(database, name); }))
            return CategoryTree::kNone;
        category = s.tree.addCategory(name);
    }
    s.tree.select(category);
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

void DeleteCategory(EditorSession& s) {
    const int category = askForCategory(s.tree, "Select Category to Delete");
    if (category == CategoryTree::kNone) return;
    if (s.tree.hasFeatures(category) &&
        !ui::askYesNo(
            "Alert",
            "Selected Category has Features.\nBy deleting this Category all the associated Features will "
            "be also deleted from the Template Database!\nContinue?"))
        return;
    if (s.file.change([&](CDaoDatabase& database) { DeleteCategory(database, s.tree.text(category)); }))
        s.tree.remove(category);
}

void RenameCategory(EditorSession& s) {
    const int category = askForCategory(s.tree, "Select Category to Rename");
    if (category == CategoryTree::kNone) return;
    const std::string old = s.tree.text(category);
    const std::string name = AskGoodName("Rename: " + old + " to", old);
    if (name.empty()) return;
    if (s.file.change([&](CDaoDatabase& database) { RenameCategory(database, old, name); }))
        s.tree.renameCategory(category, name);
}

namespace {

void search(EditorSession& s, CategoryTree::Kind kind) {
    const bool categories = kind == CategoryTree::Kind::kCategories;
    std::string& last = categories ? s.lastCategorySearch : s.lastFeatureSearch;
    const char* title = categories ? "Search Category" : "Search Feature";
    const std::string pattern = text::upper(AskName(title, last, EmptyNameFault));
    if (pattern.empty()) return;
    last = pattern;

    const std::vector<int> nodes = s.tree.nodes(kind);
    auto selectFrom = [&](size_t place) {
        for (; place < nodes.size(); ++place)
            if (acutWcMatch(text::upper(s.tree.text(nodes[place])).c_str(), pattern.c_str()) == RTNORM) {
                s.tree.select(nodes[place]);
                return true;
            }
        return false;
    };
    const int selected = s.tree.selected();
    if (selectFrom(s.tree.searchStart(kind))) return;
    if (selected >= 0) {
        const std::string list = categories ? "Category" : "Feature";
        if (!ui::askYesNo("Alert", "The routine has finished searching the " + list +
                                       " List.\nStart from the beginning?"))
            return s.tree.select(selected);
        if (selectFrom(0)) return;
    }
    ui::messageBox("Alert", categories ? "No Category found!" : "No Feature found!");
}

}  // namespace

void SearchCategory(EditorSession& s) {
    search(s, CategoryTree::Kind::kCategories);
}

void SearchFeature(EditorSession& s) {
    search(s, CategoryTree::Kind::kFeatures);
}

}  // namespace norvane
