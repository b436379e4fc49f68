// The small dialogs that ask for a name, or for a category.
#pragma once

#include <string>
#include <vector>

// What is asked of a name.
enum class NameRule {
    kCharacters,  // it passes the character check
    kNotEmpty,    // of a search
    kNewValue,    // not empty, and none of those that are there
};

// Asks until the text is good. "" when the person cancelled.
std::string AskName(const std::string& title, const std::string& text = "",
                    NameRule rule = NameRule::kCharacters, const std::vector<std::string>& present = {});

// Asks for one of the categories, `start` being selected. "" when the person cancelled.
std::string AskCategory(const std::string& title, const std::vector<std::string>& categories,
                        const std::string& start);
