// Conditions that are kept in the drawing by names, each for a table. They are data: whoever uses one reads
// and checks it anew.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace norvane {

struct NamedCondition {
    std::string name;
    std::string table;
    std::string condition;  // "" holds for all records
};

// Those that can be read, in the order of their names.
std::vector<NamedCondition> NamedConditions();
// Without regard to case; nothing for a name without a condition that can be read.
std::optional<NamedCondition> FindNamedCondition(std::string_view name);
// Keeps one, in the place of that of its name; a step of undo. "" when done, else a sentence that says why
// not.
std::string KeepCondition(const NamedCondition& kept);
// "" when done, else why not: the new name is none or taken, or there is nothing under the old one.
std::string RenameCondition(std::string_view from, std::string_view to);
// Also one that cannot be read. False when there is none.
bool RemoveCondition(std::string_view name);
// Why there is none of a name, or none that can be used, a sentence.
std::string WhyNoCondition(std::string_view name);
// What a person must know of those that cannot be read, a sentence each.
std::vector<std::string> RemarksOnConditions();

}  // namespace norvane
