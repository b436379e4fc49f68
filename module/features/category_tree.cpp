#include "module/features/category_tree.h"

#include <algorithm>
#include <unordered_map>

#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr int kCategoryImage = 0;
constexpr int kFeatureImage = 1;

}  // namespace

void CategoryTree::fill(const std::vector<CategoryRow>& rows) {
    tree_.clearNodes();
    std::unordered_map<std::string, int> categories;
    for (const CategoryRow& row : rows) {
        auto [category, isNew] = categories.try_emplace(text::upper(row.category), kNone);
        if (isNew) category->second = addCategory(row.category);
        if (row.feature != kCategoryPlaceholder) addFeature(category->second, row.feature);
    }
}

std::vector<std::string> CategoryTree::categories() const {
    std::vector<std::string> names;
    for (int category : nodes(Kind::kCategories)) names.push_back(text::upper(text(category)));
    return names;
}

bool CategoryTree::isFeature(int index) const {
    return index >= 0 && node(index).parent >= 0;
}

std::string CategoryTree::text(int index) const {
    return index < 0 ? "" : node(index).text;
}

void CategoryTree::select(int index) {
    if (isFeature(index)) tree_.expand(node(index).parent);
    tree_.select(index);
}

std::optional<std::string> CategoryTree::selectedFeature() const {
    if (!isFeature(selected())) return std::nullopt;
    return text(selected());
}

std::string CategoryTree::categoryOf(int index) const {
    return index < 0 ? "" : text(isFeature(index) ? node(index).parent : index);
}

std::string CategoryTree::selectedCategory() const {
    return categoryOf(selected());
}

int CategoryTree::findCategory(const std::string& name) const {
    for (int category : nodes(Kind::kCategories))
        if (text::equalNoCase(text(category), name)) return category;
    return kNone;
}

int CategoryTree::findFeature(const std::string& name, const std::string& category) const {
    int first = kNone;
    for (int feature : nodes(Kind::kFeatures)) {
        if (!text::equalNoCase(text(feature), name)) continue;
        if (text::equalNoCase(categoryOf(feature), category)) return feature;
        if (first == kNone) first = feature;
    }
    return first;
}

int CategoryTree::addCategory(const std::string& name) {
    return tree_.addNode(-1, name, kCategoryImage);
}

int CategoryTree::addFeature(int category, const std::string& name) {
    return tree_.addNode(category, name, kFeatureImage);
}

const std::vector<int>& CategoryTree::siblings(int index,
                                               const std::vector<std::vector<int>>& children) const {
    return node(index).parent < 0 ? children.back() : children[static_cast<size_t>(node(index).parent)];
}

void CategoryTree::remove(int index) {
    const std::vector<std::vector<int>> children = tree_.children();
    const std::vector<int>& beside = siblings(index, children);
    auto place = std::find(beside.begin(), beside.end(), index);
    int next = place + 1 != beside.end() ? place[1]
               : place != beside.begin() ? place[-1]
                                         : node(index).parent;
    tree_.removeNode(index);
    select(next);
}

void CategoryTree::rename(int index, const std::string& name) {
    tree_.setNode(index, name, node(index).image);
}

void CategoryTree::renameCategory(int category, const std::string& name) {
    const int other = findCategory(name);
    rename(category, name);
    if (other != kNone && other != category) {
        for (int feature : std::vector<int>(tree_.children()[static_cast<size_t>(other)]))
            addFeature(category, text(feature));
        tree_.removeNode(other);
    }
    select(category);
}

std::vector<int> CategoryTree::nodes(Kind kind) const {
    const std::vector<std::vector<int>> children = tree_.children();
    if (kind == Kind::kCategories) return children.back();
    std::vector<int> features;
    for (int category : children.back()) {
        const std::vector<int>& below = children[static_cast<size_t>(category)];
        features.insert(features.end(), below.begin(), below.end());
    }
    return features;
}

size_t CategoryTree::searchStart(Kind kind) const {
    if (selected() < 0) return 0;
    const std::vector<int> walked = nodes(kind);
    if (kind == Kind::kCategories) {
        // A feature begins at its own category, a category at the next one.
        int category = isFeature(selected()) ? node(selected()).parent : selected();
        auto place = std::find(walked.begin(), walked.end(), category);
        return static_cast<size_t>(place - walked.begin()) + (isFeature(selected()) ? 0 : 1);
    }
    if (isFeature(selected()))
        return static_cast<size_t>(std::find(walked.begin(), walked.end(), selected()) - walked.begin()) + 1;
    // The first feature of the selected category, or of those behind it.
    const std::vector<std::vector<int>> children = tree_.children();
    size_t before = 0;
    for (int category : children.back()) {
        if (category == selected()) break;
        before += children[static_cast<size_t>(category)].size();
    }
    return before;
}

}  // namespace norvane
