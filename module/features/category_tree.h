// The editor's tree: categories, and their features below them, both in the order of their names.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "module/features/feature_store.h"
#include "platform/ui/control.h"

namespace norvane {

class CategoryTree {
  public:
    static constexpr int kNone = -1;

    // The tree stays the dialog's.
    explicit CategoryTree(ui::Tree& tree) : tree_(tree) {}

    void fill(const std::vector<CategoryRow>& rows);
    // The categories in upper case, as they are shown.
    std::vector<std::string> categories() const;

    bool isFeature(int node) const;
    std::string text(int node) const;
    int selected() const { return tree_.selected(); }
    // Selects a node and opens what stands above it.
    void select(int node);
    // The selected feature, nothing when none is.
    std::optional<std::string> selectedFeature() const;
    // The selected category, or that of the selected feature; "" for none.
    std::string selectedCategory() const;
    std::string categoryOf(int node) const;
    bool hasFeatures(int category) const { return tree_.hasChildren(category); }

    // By name, without regard to case; kNone when there is none.
    int findCategory(const std::string& name) const;
    // A feature may stand in more than one category: that of the given one, else the first.
    int findFeature(const std::string& name, const std::string& category = "") const;

    int addCategory(const std::string& name);
    int addFeature(int category, const std::string& name);
    // Removes a node. The selection goes to the one behind it, else the one before, else the one above.
    void remove(int node);
    void rename(int node, const std::string& name);
    // Gives a category another name; the features of one that has that name already come to it.
    void renameCategory(int category, const std::string& name);

    // Where a search begins, and what it walks.
    enum class Kind { kCategories, kFeatures };
    // The nodes of a kind in the order of the tree.
    std::vector<int> nodes(Kind kind) const;
    // The place in nodes() at which a search from the selection begins.
    size_t searchStart(Kind kind) const;

  private:
    const ui::Tree::Node& node(int index) const { return tree_.nodes()[static_cast<size_t>(index)]; }
    const std::vector<int>& siblings(int index, const std::vector<std::vector<int>>& children) const;

    ui::Tree& tree_;
};

}  // namespace norvane
