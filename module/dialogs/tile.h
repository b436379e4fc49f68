// The tiles of a dialog that is built at run time, and what the layout engine knows of each.
#pragma once

#include <array>
#include <functional>
#include <string>

#include "platform/ui/layout.h"

namespace norvane {

class TileDialog;

enum class TileType : int {
    kText = 1,
    kButton = 2,
    kEdit = 4,
    kPassword = 5,
    kDropDown = 8,
    kPicture = 9,
    kMenuEntry = 0xb,
    kEditableDropDown = 0xc,
    kToggle = 0xd,
    kRadio = 0xe,
    kRadioGroup = 0xf,
    kPointView = 0x11,
    kBeginGroup = 0x12,
    kEndGroup = 0x13,
    kList = 0x14,
    kColumnList = 0x15,
    kWindowView = 0x16,
    kTabs = 0x17,
    kSpreadsheet = 0x18,
    kReadOnly = 0x1a,
    kProgress = 0x1b,
    kNewRow = 0x100,
};

// What an action is told, and asks for: the sum of those that it wants.
constexpr unsigned kOnSelection = 1;
constexpr unsigned kOnClick = 2;
constexpr unsigned kOnEnter = 4;
constexpr unsigned kOnAccelerator = 16;
constexpr unsigned kOnAll = 0x17;

using TileAction = std::function<void(TileDialog&, const std::string& name)>;

constexpr int kAllPages = -1;

struct TileRecord {
    std::string name;   // exact: "list1" and "LIST1" are different tiles
    std::string value;  // last text set or read
    std::string label;
    // The share of a change of the window's size that moves or grows the tile.
    double anchorX = 0, anchorY = 0, anchorWidth = 0, anchorHeight = 0;
    bool focusable = false;  // Tab stops here
    TileType type = TileType::kText;
    int id = 0;  // of its control; 0 for rows and the ends of groups, and for groups without a box
    int page = kAllPages;
    int width = 0;         // characters (pixels for pictures, views and bars); 0: as wide as there is room
    bool stretch = false;  // takes spare room whatever its width
    int height = 0;        // pixels, of the control's window
    ui::Rect rectangle;    // after the layout; of a drop-down while it is closed
    std::array<double, 4> view{};  // x and y of a point, or of the lower left and upper right of a window
    TileAction action;
    unsigned actionMask = 0;
};

}  // namespace norvane
