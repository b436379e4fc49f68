// The menus, from a text file that a user may change.
//
//   [&File]
//   &Open... | Ctrl+O | OPEN
//   -
//   ~&Publish | | PUBLISH             "~" in front: not there yet, and left out
//
//   [&File/For p&rograms]             a menu within a menu
//
//   [@toolbar]                        buttons: what they do, the name of an icon, the command
//   Save | save | QSAVE
//
//   [@entities]                       entries for the menu of the list of entities; they are about what is
//   &Move | | MOVE   selected
#pragma once

#include <string>
#include <vector>

namespace hostcad {

struct MenuEntry {
    std::string caption;  // "" is a separator
    std::string shortcut;
    std::string icon;  // of a button
    // A line as it would be typed, or one of the window's own actions. "@recent" is the list of recent files,
    // "@panels" the panels to be shown or hidden; "@previous", "@extents" and "@window" go to the view before
    // this one, to a view of everything, and to that of a box that is drawn next; "@print" and "@pdf" put
    // what is seen on paper; "@document docs/window.md" shows a document of the product, "@about" what it is.
    std::string command;
    bool enabled = true;
};

struct MenuHeading {
    std::string caption;
    bool isToolBar = false;
    std::vector<MenuEntry> entries;
};

// Nothing when the file cannot be read; lines that mean nothing are passed over.
std::vector<MenuHeading> readMenuFile(const std::string& path);

}  // namespace hostcad
