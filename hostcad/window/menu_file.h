// The menus, from a text file that a user may change.
//
//   [&File]
//   &Open... | Ctrl+O | OPEN
//   -
//   ~&Audit links | | GIS-AUDIT       "~" in front: shown, but not offered yet
#pragma once

#include <string>
#include <vector>

namespace hostcad {

struct MenuEntry {
    std::string caption;  // "" is a separator
    std::string shortcut;
    // A line as it would be typed. "@recent" is the list of recent files, "@previous" the view before this
    // one, "@panels" the panels to be shown or hidden.
    std::string command;
    bool enabled = true;
};

struct MenuHeading {
    std::string caption;
    std::vector<MenuEntry> entries;
};

// Nothing when the file cannot be read; lines that mean nothing are passed over.
std::vector<MenuHeading> readMenuFile(const std::string& path);

}  // namespace hostcad
