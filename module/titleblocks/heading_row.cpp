#include "module/titleblocks/heading_row.h"

#include <algorithm>

#include "platform/text/text.h"

namespace norvane {

HeadingRow::HeadingRow(const std::vector<std::string>& cells) {
    for (size_t i = 0; i < cells.size(); ++i) {
        std::string name = text::upper(text::trim(cells[i]));
        if (name.empty()) name = "F" + std::to_string(i + 1);
        if (std::find(names_.begin(), names_.end(), name) != names_.end()) continue;
        names_.push_back(std::move(name));
        places_.push_back(i);
    }
}

std::vector<size_t> HeadingRow::placesOf(const std::vector<std::string>& columns) const {
    std::vector<size_t> places;
    for (const std::string& column : columns) {
        const auto name = std::find_if(names_.begin(), names_.end(), [&](const std::string& known) {
            return text::equalNoCase(known, column);
        });
        places.push_back(name == names_.end() ? kNowhere
                                              : places_[static_cast<size_t>(name - names_.begin())]);
    }
    return places;
}

bool PickCells(const std::vector<std::string>& row, const std::vector<size_t>& places,
               std::vector<std::string>& values) {
    if (std::all_of(row.begin(), row.end(), [](const std::string& cell) { return text::trim(cell).empty(); }))
        return false;
    for (size_t i = 0; i < places.size(); ++i)
        values[i] = places[i] < row.size() ? std::string(text::trim(row[places[i]])) : std::string();
    return true;
}

}  // namespace norvane
