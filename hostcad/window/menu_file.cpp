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
            headings.push_back({std::string(line.substr(1, line.size() - 2)), {}});
            continue;
        }
        if (headings.empty()) continue;
        if (line == "-") {
            headings.back().entries.emplace_back();
            continue;
        }
        std::vector<std::string> parts = text::split(line, '|');
        if (parts.size() != 3) continue;
        MenuEntry entry{std::string(text::trim(parts[0])), std::string(text::trim(parts[1])),
                        std::string(text::trim(parts[2])), true};
        if (text::startsWith(entry.caption, "~")) {
            entry.caption.erase(0, 1);
            entry.enabled = false;
        }
        headings.back().entries.push_back(std::move(entry));
    }
    return headings;
}

}  // namespace hostcad
