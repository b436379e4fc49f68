#include "hostcad/window/menu_file.h"

#include "platform/files/files.h"
#include "platform/text/text.h"

namespace hostcad {

std::vector<MenuHeading> readMenuFile(const std::string& path) {
    std::vector<MenuHeading> headings;
    for (const std::string& raw : files::readLines(path).value_or(std::vector<std::string>{})) {
        std::string_view line = text::trim(raw);
        if (line.empty() || line.front() == ';') continue;
        if (line.front() == '[' && line.back() == ']') {
            std::string caption(line.substr(1, line.size() - 2));
            headings.push_back({caption, caption == "@toolbar", {}});
            continue;
        }
        if (headings.empty()) continue;
        if (line == "-") {
            headings.back().entries.emplace_back();
            continue;
        }
        std::vector<std::string> parts = text::split(line, '|');
        if (parts.size() != 3) continue;
        MenuHeading& heading = headings.back();
        MenuEntry entry;
        entry.caption = text::trim(parts[0]);
        (heading.isToolBar ? entry.icon : entry.shortcut) = text::trim(parts[1]);
        entry.command = text::trim(parts[2]);
        if (text::startsWith(entry.caption, "~")) {
            entry.caption.erase(0, 1);
            entry.enabled = false;
        }
        heading.entries.push_back(std::move(entry));
    }
    return headings;
}

}  // namespace hostcad
