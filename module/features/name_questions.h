// What the editor asks names for.
#pragma once

#include <string>
#include <vector>

namespace norvane {

// Asks for the name of a feature or category until it passes the character check, an earlier one being shown
// at first. In upper case; "" when the person cancelled.
std::string AskGoodName(const std::string& title, const std::string& text = "");

// Asks for one of the categories, `start` being selected. "" when the person cancelled.
std::string AskCategory(const std::string& title, const std::vector<std::string>& categories,
                        const std::string& start);

}  // namespace norvane
