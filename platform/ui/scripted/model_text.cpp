// A dialog printed as text, for logs and for a console.
#include <algorithm>

#include "platform/text/text.h"
#include "platform/ui/scripted/scripted_backend.h"

namespace ui {
namespace {

std::string quoted(const std::string& s) {
    return "\"" + text::replaceAll(s, "\n", "\\n") + "\"";
}

std::string kindName(ControlKind kind) {
    switch (kind) {
        case ControlKind::Label:
            return "label";
        case ControlKind::Edit:
            return "edit";
        case ControlKind::Button:
            return "button";
        case ControlKind::CheckBox:
            return "check";
        case ControlKind::RadioButton:
            return "radio";
        case ControlKind::GroupBox:
            return "group";
        case ControlKind::List:
            return "list";
        case ControlKind::DropDown:
            return "drop-down";
        case ControlKind::Tree:
            return "tree";
        case ControlKind::Grid:
            return "grid";
        case ControlKind::Progress:
            return "progress";
        case ControlKind::Picture:
            return "picture";
        case ControlKind::Tabs:
            return "tabs";
        case ControlKind::Menu:
            return "menu";
    }
    return {};
}

// The lines that are printed of a long list or grid: those about the present one.
struct Excerpt {
    static constexpr int kWhole = 40;   // up to so many lines, all are printed
    static constexpr int kAround = 10;  // else so many on either side

    // Numbered from `first` on, `count` of them.
    Excerpt(int first, int count, int present) : from(first), to(first + count - 1) {
        if (count <= kWhole) return;
        before = std::max(0, present - kAround - from);
        behind = std::max(0, to - present - kAround);
        from += before;
        to -= behind;
    }
    std::string beforeText() const { return leftOut(before, "before"); }
    std::string behindText() const { return leftOut(behind, "behind"); }

    int from, to;
    int before = 0, behind = 0;

  private:
    static std::string leftOut(int count, const char* where) {
        return count ? text::format("\n    ... %d more %s", count, where) : std::string();
    }
};

// Lines of cells that stand below each other, each line behind a mark of its own.
class Table {
  public:
    void add(std::string mark, std::vector<std::string> cells) {
        widths_.resize(std::max(widths_.size(), cells.size()));
        for (size_t i = 0; i < cells.size(); ++i) widths_[i] = std::max(widths_[i], lengthOf(cells[i]));
        lines_.push_back({std::move(mark), std::move(cells)});
    }
    std::string text() const {
        std::string out;
        for (const auto& [mark, cells] : lines_) {
            out += "\n" + mark;
            for (size_t i = 0; i < cells.size(); ++i) {
                out += (i ? " " : "") + cells[i];
                if (i + 1 < cells.size()) out.append(widths_[i] - lengthOf(cells[i]), ' ');
            }
        }
        return out;
    }

  private:
    static size_t lengthOf(const std::string& s) { return static_cast<size_t>(characterCount(s)); }

    std::vector<std::pair<std::string, std::vector<std::string>>> lines_;
    std::vector<size_t> widths_;
};

std::string listText(const List& list) {
    const Excerpt seen(0, list.count(), std::max(0, list.selected()));
    Table table;
    if (!list.headings().empty()) table.add("      ", list.headings());
    for (int i = seen.from; i <= seen.to; ++i) {
        std::vector<std::string> cells;
        for (int column = 0; column < list.columns(); ++column) cells.push_back(list.text(i, column));
        table.add(list.isSelected(i) ? "    > " : "      ", std::move(cells));
    }
    return seen.beforeText() + table.text() + seen.behindText();
}

std::string dropDownText(const DropDown& control) {
    std::string shown = control.editable() ? control.text() : control.selectedText();
    return " " + quoted(shown) + " of {" + text::join(control.items(), "|") + "}";
}

std::string cellText(const Grid& grid, int column, int row) {
    const CellType& type = grid.type(column, row);
    std::string text = text::replaceAll(grid.text(column, row), "\n", "\\n");
    switch (type.kind) {
        case CellKind::CheckBox:
            return std::string(grid.checked(column, row) ? "[x] " : "[ ] ") + type.label;
        case CellKind::Button:
            return "<" + type.label + ">";
        case CellKind::DropDown:
            return text + " {" + text::join(type.items, "|") + "}";
        case CellKind::Edit:
            return "'" + text + "'";
        case CellKind::Static:
            break;
    }
    return text;
}

std::string gridText(const Grid& grid) {
    std::string out = text::format(" %d x %d", grid.columns(), grid.rows());
    if (grid.rows() > 0) out += text::format(", at (%d, %d)", grid.active().column, grid.active().row);
    if (const CellRange taken = grid.selection(); !taken.isOneCell())
        out += text::format(", taken (%d, %d) to (%d, %d)", taken.first.column, taken.first.row,
                            taken.last.column, taken.last.row);
    if (grid.orderColumn() > 0)
        out += text::format(", in the order of column %d%s", grid.orderColumn(),
                            grid.orderDescends() ? " from the last" : "");
    if (grid.editing()) out += ", editing " + quoted(grid.editText());
    if (!grid.refusal().empty()) out += ", refused: " + grid.refusal();
    const Excerpt seen(1, grid.rows(), grid.active().row);
    bool rowsAreNamed = false;
    for (int row = seen.from; row <= seen.to; ++row) rowsAreNamed |= !grid.rowHeading(row).empty();
    Table table;
    if (!grid.hasOwnCells()) {
        std::vector<std::string> headings(rowsAreNamed ? 1 : 0);
        for (int column = 1; column <= grid.columns(); ++column)
            headings.push_back(grid.columnHeading(column));
        table.add("    ", std::move(headings));
    }
    for (int row = seen.from; row <= seen.to; ++row) {
        std::vector<std::string> cells;
        if (rowsAreNamed) cells.push_back(grid.rowHeading(row));
        for (int column = 1; column <= grid.columns(); ++column) cells.push_back(cellText(grid, column, row));
        table.add(grid.marksRows() && row == grid.active().row ? "  > " : "    ", std::move(cells));
    }
    return out + seen.beforeText() + table.text() + seen.behindText();
}

// The nodes below one, in the order in which they were added; of many, those about the selected one.
void addNodes(const Tree& tree, const std::vector<std::vector<int>>& below, const std::vector<int>& nodes,
              size_t depth, std::string& out) {
    const auto selected = std::find(nodes.begin(), nodes.end(), tree.selected());
    const Excerpt seen(0, static_cast<int>(nodes.size()),
                       selected == nodes.end() ? 0 : static_cast<int>(selected - nodes.begin()));
    out += seen.beforeText();
    for (int i = seen.from; i <= seen.to; ++i) {
        const int index = nodes[static_cast<size_t>(i)];
        const Tree::Node& node = tree.nodes()[static_cast<size_t>(index)];
        out += "\n    " + std::string(depth * 2, ' ') + (tree.selected() == index ? "> " : "  ");
        if (node.hasBox) out += node.checked ? "[x] " : "[ ] ";
        out += node.text;
        addNodes(tree, below, below[static_cast<size_t>(index)], depth + 1, out);
    }
    out += seen.behindText();
}

std::string treeText(const Tree& tree) {
    const std::vector<Tree::Node>& nodes = tree.nodes();
    std::vector<std::vector<int>> below(nodes.size());
    std::vector<int> top;
    for (size_t i = 0; i < nodes.size(); ++i)
        if (!nodes[i].removed)
            (nodes[i].parent < 0 ? top : below[static_cast<size_t>(nodes[i].parent)])
                .push_back(static_cast<int>(i));
    std::string out;
    addNodes(tree, below, top, 0, out);
    return out;
}

std::string menuText(const Menu& menu) {
    std::string out;
    for (const Menu::Entry& entry : menu.entries())
        out += "\n    " + std::string(static_cast<size_t>(entry.level) * 2, ' ') +
               plainCaption(entry.caption) + (entry.enabled ? "" : " (disabled)");
    return out;
}

std::string hidden(const std::string& secret) {
    return secret.empty() ? "" : "****";
}

std::string pictureText(const Picture& picture) {
    if (picture.path().empty() && picture.image().empty()) return " \"\"";
    return (picture.path().empty() ? "" : " " + quoted(picture.path())) +
           text::format(" in %d x %d", picture.frame().width, picture.frame().height);
}

std::string contentText(const Control& control) {
    std::string caption = control.text().empty() ? "" : " " + quoted(plainCaption(control.text()));
    switch (control.kind()) {
        case ControlKind::Edit:
            return " " +
                   quoted(static_cast<const Edit&>(control).secret() ? hidden(control.text())
                                                                     : control.text()) +
                   (static_cast<const Edit&>(control).readOnly() ? " (read-only)" : "");
        case ControlKind::CheckBox:
            return (static_cast<const CheckBox&>(control).checked() ? " [x]" : " [ ]") + caption;
        case ControlKind::RadioButton:
            return (static_cast<const RadioButton&>(control).checked() ? " (o)" : " ( )") + caption;
        case ControlKind::List:
            return listText(static_cast<const List&>(control));
        case ControlKind::DropDown:
            return dropDownText(static_cast<const DropDown&>(control));
        case ControlKind::Grid:
            return gridText(static_cast<const Grid&>(control));
        case ControlKind::Tree:
            return treeText(static_cast<const Tree&>(control));
        case ControlKind::Menu:
            return menuText(static_cast<const Menu&>(control));
        case ControlKind::Picture:
            return pictureText(static_cast<const Picture&>(control));
        case ControlKind::Progress: {
            const auto& progress = static_cast<const Progress&>(control);
            return text::format(" %d of %d to %d", progress.position(), progress.from(), progress.to());
        }
        case ControlKind::Tabs: {
            const auto& tabs = static_cast<const Tabs&>(control);
            return " " + quoted(tabs.pages()[static_cast<size_t>(tabs.page())]) + " of {" +
                   text::join(tabs.pages(), "|") + "}";
        }
        default:
            return caption;
    }
}

}  // namespace

std::string modelText(const Dialog& dialog) {
    std::string out = text::format("[%d] %s", dialog.resource(), dialog.title().c_str());
    for (const auto& control : dialog.controls()) {
        if (!control->visible()) continue;
        out += text::format("\n%c %d %s", control->id() == dialog.focus() ? '*' : ' ', control->id(),
                            kindName(control->kind()).c_str());
        out += contentText(*control);
        if (!control->enabled()) out += " (disabled)";
    }
    return out;
}

std::string stepText(const Step& step) {
    std::string control =
        " " + (step.control.find_first_not_of("0123456789") == std::string::npos ? step.control
                                                                                 : quoted(step.control));
    switch (step.kind) {
        case Step::Kind::Text:
            return "(text" + control + " " + quoted(step.text) + ")";
        case Step::Kind::Pick:
            return "(pick" + control + " " + quoted(step.text) + ")";
        case Step::Kind::PickAlso:
            return "(pick-also" + control + " " + quoted(step.text) + ")";
        case Step::Kind::DoubleClick:
            return "(double-click" + control + " " + quoted(step.text) + ")";
        case Step::Kind::Check:
            return "(check" + control + (step.text.empty() ? "" : " " + quoted(step.text)) +
                   (step.on ? " T)" : " nil)");
        case Step::Kind::Cell:
            return text::format("(cell %d %d ", step.column, step.row) + quoted(step.text) + ")";
        case Step::Kind::ClickCell:
            return text::format("(click-cell %d %d)", step.column, step.row);
        case Step::Kind::DoubleClickCell:
            return text::format("(double-click-cell %d %d)", step.column, step.row);
        case Step::Kind::Focus:
            return "(focus" + control + ")";
        case Step::Kind::Key:
            return "(key " + quoted(step.text) + ")";
        case Step::Kind::Click:
            return "(click" + control + ")";
        case Step::Kind::Drop: {
            std::string files;
            for (const std::string& file : step.files) files += " " + quoted(file);
            return "(drop" + files + ")";
        }
        case Step::Kind::Menu:
            return "(menu " + quoted(step.text) + ")";
        case Step::Kind::Show:
            return "(show)";
        case Step::Kind::Close:
            return "(close)";
    }
    return {};
}

}  // namespace ui
