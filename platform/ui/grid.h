// The spreadsheet control. Columns and rows count from 1; 0 is the heading.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/ui/control.h"
#include "platform/ui/font.h"

namespace ui {

// The numbers are the kind bytes of a cell type; an edit and a static cell have none of their own.
enum class CellKind { Static = 0, Edit = 1, Button = 6, DropDown = 11, CheckBox = 12 };
enum class CharacterSet { Any = 0, Numeric = 3 };

struct CellType {
    CellKind kind = CellKind::Edit;
    int maxLength = 255;  // characters, of an edit cell
    CharacterSet characters = CharacterSet::Any;
    bool upperCase = false;          // what is typed is turned to capitals
    std::vector<std::string> items;  // of a drop-down
    bool editable = false;           // a drop-down that takes other text too
    std::string label;               // of a check box or button

    static CellType fixed();
    static CellType edit(CharacterSet characters = CharacterSet::Any, int maxLength = 255);
    // Items separated by tabs.
    static CellType dropDown(std::string_view tabbedItems, bool editable = false);
    static CellType checkBox(std::string label);
    static CellType button(std::string label);
};

// A colour as 0xRRGGBB, or the view's own.
constexpr int kOwnColour = -1;

struct Cell {
    std::string text;
    CellType type;
    bool checked = false;
    int background = kOwnColour;
    int foreground = kOwnColour;
};

// Which cell is meant; row 0 or column 0 is a heading.
struct CellPosition {
    int column = 1;
    int row = 1;
    bool operator==(const CellPosition& o) const { return column == o.column && row == o.row; }
};

class Grid : public Control {
  public:
    explicit Grid(int id, int columns = 0, int rows = 0);

    int columns() const { return columns_; }
    int rows() const { return rows_; }
    // New cells are empty edit cells.
    void setColumns(int count);
    void setRows(int count);
    void insertRow(int before);
    void removeRow(int row);
    void swapRows(int row, int other);
    // Empties the cells of rows, their types included.
    void clearRows(int from, int to);

    bool has(int column, int row) const {
        return column >= 1 && column <= columns_ && row >= 1 && row <= rows_;
    }
    // Outside the grid an empty cell.
    const Cell& cell(int column, int row) const;
    const std::string& text(int column, int row) const { return cell(column, row).text; }
    void setText(int column, int row, std::string text);
    bool checked(int column, int row) const { return cell(column, row).checked; }
    void setChecked(int column, int row, bool on);
    const CellType& type(int column, int row) const { return cell(column, row).type; }
    void setType(int column, int row, CellType type);
    void setColumnType(int column, const CellType& type);
    void setColours(int column, int row, int background, int foreground);

    const std::string& columnHeading(int column) const;
    void setColumnHeading(int column, std::string text);

    // Widths in pixels, and in units of the font's average character.
    int columnWidth(int column) const;
    void setColumnWidth(int column, int pixels);
    double columnWidthInCharacters(int column) const;
    void setColumnWidthInCharacters(int column, double characters);
    int rowHeight() const;
    // A grid of whole rows is never shown with a part of one at its lower edge.
    bool wholeRows() const { return wholeRows_; }
    void setWholeRows(bool on) { wholeRows_ = on; }
    // The width that a cell's text needs, in characters.
    double neededWidth(int column, int row) const;
    const Font& font() const { return font_; }
    void setFont(const Font& font);
    // The pixels between the frame and the scroll bar; the view says how many it has.
    int clientWidth() const { return clientWidth_; }
    void setClientWidth(int pixels) { clientWidth_ = pixels; }

    // Off while many cells are filled: the view takes all of it over at once when it is turned on again.
    void setRedraw(bool on);

    CellPosition active() const { return active_; }
    // A position outside the grid is ignored. Ends editing, keeping what was typed.
    void setActive(int column, int row);
    bool editing() const { return editing_; }
    // Static and check-box cells are not edited. Turning it off keeps what was typed.
    void setEditing(bool on);
    const std::string& editText() const { return editText_; }

    // Whether a character may stand in a cell of this type.
    static bool accepts(const CellType& type, char32_t character);
    // Text with all that the cell does not accept left out, and cut to its length.
    static std::string filtered(const CellType& type, std::string_view text);

  private:
    friend class Dialog;
    Cell* at(int column, int row);
    void changed();
    // Moves what was typed into the cell, and tells the dialog when that changed it.
    void commitEdit();
    void cancelEdit();

    int columns_ = 0;
    int rows_ = 0;
    std::vector<Cell> cells_;  // row by row
    std::vector<std::string> headings_;
    std::vector<int> widths_;
    CellPosition active_{1, 1};
    bool editing_ = false;
    std::string editText_;
    Font font_{"Courier New", 16, 8, 400};
    int clientWidth_ = 400;
    bool wholeRows_ = false;
    bool redraw_ = true;
};

}  // namespace ui
