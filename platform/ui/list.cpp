#include "platform/ui/list.h"

#include <cassert>

#include "platform/text/text.h"

namespace ui {

void List::setSource(const ListSource* source) {
    source_ = source;
    items_.clear();
    marks_.clear();
    selected_ = -1;
    changed();
}

void List::sourceChanged() {
    const int there = count();
    if (static_cast<size_t>(there) < marks_.size()) marks_.resize(static_cast<size_t>(there));
    if (selected_ >= there) selected_ = -1;
    changed();
}

void List::setColumns(std::vector<std::string> headings) {
    headings_ = std::move(headings);
    changed();
}

int List::count() const {
    return source_ ? source_->count() : ItemControl::count();
}

std::string List::text(int index, int column) const {
    if (index < 0 || index >= count() || column < 0 || column >= columns()) return {};
    if (source_) return source_->text(index, column);
    const std::string& line = items_[static_cast<size_t>(index)];
    if (columns() == 1) return line;
    std::vector<std::string> parts = text::split(line, '\t');
    return static_cast<size_t>(column) < parts.size() ? parts[static_cast<size_t>(column)] : std::string();
}

std::string List::item(int index) const {
    if (!source_) return ItemControl::item(index);
    if (index < 0 || index >= count()) return {};
    std::string line = text(index, 0);
    for (int column = 1; column < columns(); ++column) line += "\t" + text(index, column);
    return line;
}

bool List::isSelected(int index) const {
    if (!multiple_) return index >= 0 && index == selected_;
    return index >= 0 && static_cast<size_t>(index) < marks_.size() && marks_[static_cast<size_t>(index)];
}

void List::selectItem(int index, bool on) {
    if (index < 0 || index >= count()) return;
    if (!multiple_) return select(on ? index : -1);
    if (marks_.size() < static_cast<size_t>(count())) marks_.resize(static_cast<size_t>(count()));
    marks_[static_cast<size_t>(index)] = on;
    selected_ = index;
    changed();
}

std::vector<int> List::selection() const {
    if (!multiple_) return selected_ < 0 ? std::vector<int>{} : std::vector<int>{selected_};
    std::vector<int> chosen;
    for (int i = 0; i < static_cast<int>(marks_.size()); ++i)
        if (marks_[static_cast<size_t>(i)]) chosen.push_back(i);
    return chosen;
}

void List::select(int index) {
    marks_.clear();
    ItemControl::select(index);
    if (multiple_ && selected_ >= 0) selectItem(selected_, true);
}

void List::removeItem(int index) {
    assert(!source_);
    if (index >= 0 && static_cast<size_t>(index) < marks_.size()) marks_.erase(marks_.begin() + index);
    ItemControl::removeItem(index);
}

void List::clearItems() {
    assert(!source_);
    marks_.clear();
    ItemControl::clearItems();
}

}  // namespace ui
