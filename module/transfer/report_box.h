// A box with the lines of a report, which can be saved as text.
#pragma once

#include <string>
#include <vector>

namespace norvane {

// folder: where the box for saving starts.
void ShowReport(const std::string& title, std::vector<std::string> lines, const std::string& folder);

}  // namespace norvane
