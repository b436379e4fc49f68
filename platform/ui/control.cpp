#include "platform/ui/control.h"

#include <algorithm>
#include <cctype>

#include "platform/text/text.h"
#include "platform/ui/dialog.h"

namespace ui {

std::string plainCaption(std::string_view caption) {
    std::string out;
    for (size_t i = 0; i < caption.size(); ++i) {
        if (caption[i] == '&' && i + 1 < caption.size()) ++i;
        out += caption[i];
    }
    return out;
}

char mnemonicOf(std::string_view caption) {
    for (size_t i = 0; i + 1 < caption.size(); ++i) {
        if (caption[i] != '&') continue;
        if (caption[i + 1] != '&')
            return static_cast<char>(std::toupper(static_cast<unsigned char>(caption[i + 1])));
        ++i;
    }
    return 0;
}

void Control::changed() {
    if (dialog_) dialog_->controlChanged(*this);
}

void Control::setText(std::string text) {
    if (text == text_) return;
    text_ = std::move(text);
    changed();
}

void Control::setExplanation(std::string text) {
    if (text == explanation_) return;
    explanation_ = std::move(text);
    changed();
}

void Control::enable(bool on) {
    if (on == enabled_) return;
    enabled_ = on;
    changed();
}

void Control::show(bool on) {
    if (on == visible_) return;
    visible_ = on;
    changed();
}

bool Control::takesFocus() const {
    switch (kind_) {
        case ControlKind::Label:
        case ControlKind::GroupBox:
        case ControlKind::Progress:
        case ControlKind::Picture:
        case ControlKind::Menu:
            return false;
        default:
            return enabled_ && visible_;
    }
}

void Edit::setReadOnly(bool on) {
    readOnly_ = on;
    changed();
}

void Edit::selectRange(int from, int to) {
    from_ = from;
    to_ = to;
    changed();
}

void CheckBox::check(bool on) {
    if (on == checked_) return;
    checked_ = on;
    changed();
}

void RadioButton::check(bool on) {
    if (on && dialog())
        for (RadioButton* other : dialog()->radioGroup(group_))
            if (other != this) other->check(false);
    if (on == checked_) return;
    checked_ = on;
    changed();
}

std::string ItemControl::item(int index) const {
    return index >= 0 && index < count() ? items_[static_cast<size_t>(index)] : std::string();
}

int ItemControl::addItem(std::string text) {
    items_.push_back(std::move(text));
    changed();
    return count() - 1;
}

void ItemControl::removeItem(int index) {
    if (index < 0 || index >= count()) return;
    items_.erase(items_.begin() + index);
    if (selected_ == index)
        selected_ = -1;
    else if (selected_ > index)
        --selected_;
    changed();
}

void ItemControl::clearItems() {
    items_.clear();
    selected_ = -1;
    changed();
}

int ItemControl::findExact(std::string_view text, int from) const {
    for (int i = std::max(from, 0); i < count(); ++i)
        if (item(i) == text) return i;
    return -1;
}

void ItemControl::select(int index) {
    selected_ = index >= 0 && index < count() ? index : -1;
    changed();
}

void DropDown::select(int index) {
    ItemControl::select(index);
    if (editable_) setText(selectedText());
}

void DropDown::selectText() {
    if (!editable_) return;
    ++textSelections_;
    changed();
}

bool Tree::isNode(int index) const {
    return index >= 0 && static_cast<size_t>(index) < nodes_.size() &&
           !nodes_[static_cast<size_t>(index)].removed;
}

int Tree::addNode(int parent, std::string text, int image) {
    nodes_.push_back({std::move(text), parent, image});
    refilled();
    return static_cast<int>(nodes_.size()) - 1;
}

void Tree::refilled() {
    ++filling_;
    changed();
}

void Tree::setNodes(std::vector<Node> nodes) {
    nodes_ = std::move(nodes);
    selected_ = -1;
    refilled();
}

void Tree::setNode(int index, std::string text, int image) {
    if (!isNode(index)) return;
    nodes_[static_cast<size_t>(index)].text = std::move(text);
    nodes_[static_cast<size_t>(index)].image = image;
    refilled();
}

void Tree::removeNode(int index) {
    if (!isNode(index)) return;
    nodes_[static_cast<size_t>(index)].removed = true;
    for (int i = 0; i < static_cast<int>(nodes_.size()); ++i)
        if (nodes_[static_cast<size_t>(i)].parent == index) removeNode(i);
    if (selected_ == index) selected_ = -1;
    refilled();
}

void Tree::expand(int index, bool on) {
    if (!isNode(index)) return;
    nodes_[static_cast<size_t>(index)].expanded = on;
    changed();
}

void Tree::check(int index, bool on) {
    if (!isNode(index) || !nodes_[static_cast<size_t>(index)].hasBox) return;
    nodes_[static_cast<size_t>(index)].checked = on;
    changed();
}

void Tree::clearNodes() {
    setNodes({});
}

void Tree::select(int index) {
    selected_ = isNode(index) ? index : -1;
    changed();
}

bool Tree::hasChildren(int index) const {
    return std::any_of(nodes_.begin(), nodes_.end(),
                       [&](const Node& node) { return !node.removed && node.parent == index; });
}

std::vector<std::vector<int>> Tree::children() const {
    std::vector<std::vector<int>> children(nodes_.size() + 1);
    for (size_t i = 0; i < nodes_.size(); ++i)
        if (!nodes_[i].removed)
            children[nodes_[i].parent < 0 ? nodes_.size() : static_cast<size_t>(nodes_[i].parent)].push_back(
                static_cast<int>(i));
    if (!sorted_) return children;
    std::vector<std::string> keys;
    keys.reserve(nodes_.size());
    for (const Node& node : nodes_) keys.push_back(text::upper(node.text));
    for (std::vector<int>& siblings : children)
        std::stable_sort(siblings.begin(), siblings.end(), [&](int a, int b) {
            return keys[static_cast<size_t>(a)] < keys[static_cast<size_t>(b)];
        });
    return children;
}

std::vector<int> Tree::seenNodes() const {
    const std::vector<std::vector<int>> below = children();
    std::vector<int> seen, waiting(below.back().rbegin(), below.back().rend());
    while (!waiting.empty()) {
        int node = waiting.back();
        waiting.pop_back();
        seen.push_back(node);
        const std::vector<int>& next = below[static_cast<size_t>(node)];
        if (nodes_[static_cast<size_t>(node)].expanded)
            waiting.insert(waiting.end(), next.rbegin(), next.rend());
    }
    return seen;
}

int Tree::find(std::string_view text, int parent) const {
    for (int i = 0; i < static_cast<int>(nodes_.size()); ++i)
        if (isNode(i) && nodes_[static_cast<size_t>(i)].parent == parent &&
            nodes_[static_cast<size_t>(i)].text == text)
            return i;
    return -1;
}

void Progress::setRange(int from, int to) {
    from_ = from;
    to_ = std::max(from, to);
    position_ = from_;
    changed();
}

void Progress::setPosition(int position) {
    position_ = std::clamp(position, from_, to_);
    changed();
}

void Picture::setPath(std::string path, images::Size frame) {
    path_ = std::move(path);
    frame_ = frame;
    image_ = {};
    ++changes_;
    changed();
}

void Picture::setImage(images::Image image) {
    path_.clear();
    image_ = std::move(image);
    frame_ = images::fitted(image_.size, room_);
    ++changes_;
    changed();
}

void Picture::setClickable(bool on) {
    clickable_ = on;
    changed();
}

void Tabs::setPage(int page) {
    if (page < 0 || page >= pageCount()) return;
    page_ = page;
    changed();
}

Menu::Entry* Menu::find(int command) {
    auto it =
        std::find_if(entries_.begin(), entries_.end(), [&](const Entry& e) { return e.command == command; });
    return command == 0 || it == entries_.end() ? nullptr : &*it;
}

void Menu::enableEntry(int command, bool on) {
    if (Entry* entry = find(command); entry && entry->enabled != on) {
        entry->enabled = on;
        changed();
    }
}

}  // namespace ui
