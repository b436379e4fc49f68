// The spreadsheet control. It keeps how its columns and cells look and which one is active; the contents of
// the cells are those of a source, which is in memory unless the grid is given another. Columns and rows
// count from 1; 0 is the heading.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ui/cell_map.h"
#include "platform/ui/cell_type.h"
#include "platform/ui/control.h"
#include "platform/ui/font.h"
#include "platform/ui/memory_cells.h"

namespace ui {

// A cell as it is at the moment.
struct Cell {
    std::string text;
    const CellType& type;  // the grid's
    int background;
    int foreground;
};

// Cells side by side; the first is the upper left one.
struct CellRange {
    CellPosition first, last;
    int columns() const { return last.column - first.column + 1; }
    int rows() const { return last.row - first.row + 1; }
    bool isOneCell() const { return first == last; }
};

class Grid : public Control {
  public:
    explicit Grid(int id, int columns = 0, int rows = 0);

    // The source stays the caller's and outlives its use here; with null the grid has cells of its own again,
    // and none yet. Types and colours of single cells are forgotten.
    void setSource(GridSource* source);
    bool hasOwnCells() const { return source_ == &own_; }
    // What the source has to tell: other rows, or a cell with another content.
    void sourceChanged();
    void cellChanged(int column, int row);

    int columns() const { return columns_; }
    int rows() const { return source_->rows(); }
    void setColumns(int count);
    // The rows of a grid with cells of its own. New cells are empty.
    void setRows(int count);
    void insertRow(int before);
    void removeRow(int row);
    void swapRows(int row, int other);
    // Empties the cells of rows and gives them the types of their columns.
    void clearRows(int from, int to);

    bool has(int column, int row) const {
        return column >= 1 && column <= columns_ && row >= 1 && row <= rows();
    }
    // Outside the grid an empty cell.
    Cell cell(int column, int row) const;
    // Row 0 and column 0 are the headings.
    std::string text(int column, int row) const;
    void setText(int column, int row, std::string text);
    bool checked(int column, int row) const { return text(column, row) == "1"; }
    void setChecked(int column, int row, bool on) { setText(column, row, on ? "1" : "0"); }
    // Of a column that is given none: an edit cell.
    const CellType& type(int column, int row) const;
    void setType(int column, int row, CellType type);
    // Of all cells of the column, those of rows to come included.
    void setColumnType(int column, CellType type);
    CellColours colours(int column, int row) const;
    void setColours(int column, int row, int background, int foreground);
    // Of the active cell's frame, and of the row that is marked as a whole.
    CellColours selectionColours() const { return selectionColours_; }
    void setSelectionColours(int background, int foreground);

    const std::string& columnHeading(int column) const;
    void setColumnHeading(int column, std::string text);
    // "" for a row that shows its number.
    std::string rowHeading(int row) const { return has(1, row) ? source_->rowHeading(row) : std::string(); }
    // Of a grid with cells of its own. The heading goes with its row.
    void setRowHeading(int row, std::string text);
    // The column that the rows stand in the order of, as the view marks it; 0 for none.
    int orderColumn() const { return orderColumn_; }
    bool orderDescends() const { return orderDescends_; }
    void setOrderMark(int column, bool descends);
    // Another number whenever a heading may have changed.
    int headingChanges() const { return headingChanges_; }

    // Widths in pixels, and in units of the font's average character.
    int columnWidth(int column) const;
    void setColumnWidth(int column, int pixels);
    double columnWidthInCharacters(int column) const;
    void setColumnWidthInCharacters(int column, double characters);
    int rowHeight() const;
    // Longer texts are broken into lines, and their rows grow when they are seen; 0: no text is.
    int widestColumn() const { return widestColumn_; }
    void setWidestColumn(int characters) { widestColumn_ = characters; }
    // So many columns stay in sight at the left when the others are scrolled.
    int frozenColumns() const { return frozenColumns_; }
    void setFrozenColumns(int count) { frozenColumns_ = count; }
    // The rows of a page; the view says how many it has.
    int pageRows() const { return pageRows_; }
    void setPageRows(int rows) { pageRows_ = rows; }
    // A grid of whole rows is never shown with a part of one at its lower edge.
    bool wholeRows() const { return wholeRows_; }
    void setWholeRows(bool on) { wholeRows_ = on; }
    // The width that a cell's text needs, in characters. Columns are never shown narrower than the texts of
    // the rows that have been seen.
    double neededWidth(int column, int row) const;
    const Font& font() const { return font_; }
    void setFont(const Font& font);
    // The pixels between the frame and the scroll bar; the view says how many it has.
    int clientWidth() const { return clientWidth_; }
    void setClientWidth(int pixels) { clientWidth_ = pixels; }

    // Off while many cells are filled: the view takes all of it over at once when it is turned on again.
    void setRedraw(bool on);

    // A list of records: the row of the active cell is marked as a whole.
    bool marksRows() const { return marksRows_; }
    void setMarksRows(bool on) { marksRows_ = on; }
    // Another number whenever the grid has begun anew, so that nothing of its former rows counts any more.
    int filling() const { return filling_; }

    CellPosition active() const { return active_; }
    // A position outside the grid is ignored. Ends editing, keeping what was typed.
    void setActive(int column, int row);
    // Cells that are taken together, from the active one to another. Of a grid that lets a person do so;
    // else the active one alone.
    bool selectsCells() const { return selectsCells_; }
    void setSelectsCells(bool on) { selectsCells_ = on; }
    CellRange selection() const;
    bool isSelected(CellPosition at) const;
    // Takes the cells up to this one. A position outside the grid is ignored.
    void selectTo(CellPosition at);
    bool editing() const { return editing_; }
    // Static and check-box cells are not edited. Turning it off keeps what was typed.
    void setEditing(bool on);
    const std::string& editText() const { return editText_; }
    // The characters of it in front of the insertion point.
    int caret() const { return caret_; }

    // Why the active cell did not take what was last typed into it; "" when it did. The view shows a sign.
    const std::string& refusal() const { return refusal_; }
    // What has been typed to find an item of the list that is open.
    const std::string& typedForItem() const { return typedForItem_; }

    // Keeps what the cells are, so that the change that follows can be taken back as a whole. Of a grid with
    // cells of its own; the filling of a grid anew begins a new history.
    void rememberForUndo();
    // Takes back the last change that was remembered. False when there is none.
    bool undo();

  private:
    friend class Dialog;
    // All that a change of cells or rows can change.
    struct Contents {
        MemoryCells cells;
        CellMap<CellType> types;
        CellMap<CellColours> colours;
        CellPosition active;
    };
    // What stood in the editor of a cell.
    struct Typed {
        std::string text;
        int caret;
    };

    void changed();
    void changed(CellPosition at);
    // Headings go with their rows.
    void rowsMoved();
    // After rows have gone: the active cell is one that there is.
    void keepActiveInside();
    // Shows another text in the cell that is edited, beginning to edit it where that is not so.
    void typeText(std::string text, int caret);
    void refuse(std::string reason);
    void leaveEditing();
    void leaveSelection();
    // Moves what was typed into the cell, and tells the dialog when that changed it.
    void commitEdit();
    void cancelEdit();
    // Takes back the last that was typed into the cell; before the first of it, the editing.
    void undoTyping();

    int columns_ = 0;
    MemoryCells own_;
    GridSource* source_ = &own_;
    std::vector<CellType> columnTypes_;  // as the next two from 0, the column of the headings
    std::vector<std::string> headings_;
    std::vector<int> widths_;
    CellMap<CellType> types_;  // where they differ from the column's
    CellMap<CellColours> colours_;
    CellColours selectionColours_;
    int headingChanges_ = 0;
    CellPosition active_;
    std::optional<CellPosition> selectedTo_;
    bool editing_ = false;
    std::string editText_;
    int caret_ = 0;
    std::vector<Typed> typing_;      // before each change of it, the oldest first
    std::vector<Contents> history_;  // before each change, the oldest first
    std::string refusal_;
    std::string typedForItem_;
    std::string textBeforeTyping_;  // that of the list before something was typed for an item
    Font font_{"Courier New", 16, 8, 400};
    int clientWidth_ = 400;
    bool wholeRows_ = false;
    int widestColumn_ = 0;
    int frozenColumns_ = 0;
    int pageRows_ = 10;
    int orderColumn_ = 0;
    bool orderDescends_ = false;
    bool selectsCells_ = false;
    bool marksRows_ = false;
    bool redraw_ = true;
    int filling_ = 0;
};

}  // namespace ui
