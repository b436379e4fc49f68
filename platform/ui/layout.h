// Where the controls of a dialog stand: a tree of columns, rows and groups, which a view turns into its own
// layouts; or rectangles for a dialog that measures itself.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace ui {

// Pixels at 96 dpi, from the upper left corner of the dialog's inside.
struct Rect {
    int left = 0, top = 0, width = 0, height = 0;
    bool operator==(const Rect& o) const {
        return left == o.left && top == o.top && width == o.width && height == o.height;
    }
};

struct Size {
    int width = 0, height = 0;
};

struct Layout {
    enum class Kind { Column, Row, Table, Group, Item, Spring };
    Kind kind = Kind::Column;
    int control = 0;  // of an item, or of a group's box
    int stretch = 0;  // share of the spare room along the parent's direction
    std::vector<Layout> children;
};

inline Layout column(std::vector<Layout> children, int stretch = 0) {
    return {Layout::Kind::Column, 0, stretch, std::move(children)};
}
inline Layout row(std::vector<Layout> children, int stretch = 0) {
    return {Layout::Kind::Row, 0, stretch, std::move(children)};
}
// Rows whose items stand below each other; stretches are those of the first row.
inline Layout table(std::vector<Layout> rows, int stretch = 0) {
    return {Layout::Kind::Table, 0, stretch, std::move(rows)};
}
// A group box with a column inside.
inline Layout group(int box, std::vector<Layout> children, int stretch = 0) {
    return {Layout::Kind::Group, box, stretch, std::move(children)};
}
inline Layout item(int control, int stretch = 0) {
    return {Layout::Kind::Item, control, stretch, {}};
}
// Takes the spare room.
inline Layout spring() {
    return {Layout::Kind::Spring, 0, 1, {}};
}

}  // namespace ui
