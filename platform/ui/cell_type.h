// What a cell of a grid is: how it is typed into, and its colours.
#pragma once

#include <string>
#include <string_view>
#include <vector>

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

struct CellColours {
    int background = kOwnColour;
    int foreground = kOwnColour;
};

}  // namespace ui
