// A list box: lines of text that it keeps itself, or records in columns that it asks a source for.
#pragma once

#include <string>
#include <vector>

#include "platform/ui/control.h"
#include "platform/ui/list_source.h"

namespace ui {

class List : public ItemControl {
  public:
    explicit List(int id, bool multiple = false, int rows = 8)
        : ItemControl(ControlKind::List, id, {}), multiple_(multiple), rows_(rows) {}
    bool multiple() const { return multiple_; }
    int rows() const { return rows_; }  // wished for height

    // The source stays the caller's and outlives its use here; with null the list has items of its own again.
    // The items are those of the source then, and adding and removing them is its business.
    void setSource(const ListSource* source);
    bool hasSource() const { return source_ != nullptr; }
    // The source has other items, or more or fewer. The selection stays where there is still an item.
    void sourceChanged();
    // Headings of the columns. A list without has one column and no heading.
    void setColumns(std::vector<std::string> headings);
    const std::vector<std::string>& headings() const { return headings_; }
    int columns() const { return headings_.empty() ? 1 : static_cast<int>(headings_.size()); }
    // The text in a column, from 0. Own items have theirs divided by tabs.
    std::string text(int index, int column) const;
    using Control::text;

    int count() const override;
    // The text of all columns with tabs between them.
    std::string item(int index) const override;
    bool isSelected(int index) const;
    void selectItem(int index, bool on);
    // The selected indices in ascending order.
    std::vector<int> selection() const;
    void select(int index) override;
    void removeItem(int index) override;
    void clearItems() override;

  private:
    bool multiple_;
    int rows_;
    const ListSource* source_ = nullptr;
    std::vector<std::string> headings_;
    std::vector<bool> marks_;  // of a multiple selection; may be shorter than the items
};

}  // namespace ui
