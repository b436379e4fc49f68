// The small dialog that asks for a name.
#pragma once

#include <functional>
#include <string>

namespace norvane {

// Why a text is not taken; "" when it is. The text comes trimmed.
using NameFault = std::function<std::string(const std::string& text)>;
// Tells that a text is empty, the least that is asked of a name.
std::string EmptyNameFault(const std::string& text);

// The number by which scripts answer, where a tool has none of its own.
constexpr int kNamePrompt = 1511;

// Asks until the text is good, an earlier one being shown at first. "" when the person cancelled.
std::string AskName(const std::string& title, const std::string& text, const NameFault& faultOf,
                    int resource = kNamePrompt);

}  // namespace norvane
