#include "module/selection/named_conditions.h"

#include <utility>

#include "module/cad/drawing_dictionary.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr int kVersion = 1;
// The table and the condition stand on lines of their own.
constexpr char kSeparator = '\n';

DrawingDictionary dictionary() {
    return {"CONDITIONS", kVersion};
}

std::optional<NamedCondition> read(const DictionaryEntry& entry) {
    const size_t separator = entry.text.find(kSeparator);
    if (entry.state != DictionaryEntry::State::kReadable || separator == std::string::npos) return {};
    return NamedCondition{entry.name, entry.text.substr(0, separator), entry.text.substr(separator + 1)};
}

// An entry without a table is damaged, too.
std::string remarkOn(DictionaryEntry entry) {
    if (entry.state == DictionaryEntry::State::kReadable && !read(entry))
        entry.state = DictionaryEntry::State::kDamaged;
    return RemarkOn(entry);
}

}  // namespace

std::vector<NamedCondition> NamedConditions() {
    std::vector<NamedCondition> all;
    for (const DictionaryEntry& entry : dictionary().entries())
        if (std::optional<NamedCondition> kept = read(entry)) all.push_back(std::move(*kept));
    return all;
}

std::optional<NamedCondition> FindNamedCondition(std::string_view name) {
    DictionaryEntry entry;
    return dictionary().find(name, entry) ? read(entry) : std::nullopt;
}

std::string KeepCondition(const NamedCondition& kept) {
    return dictionary().write(kept.name, kept.table + kSeparator + kept.condition);
}

std::string RenameCondition(std::string_view from, std::string_view to) {
    const std::optional<NamedCondition> old = FindNamedCondition(from);
    if (!old) return "There is no condition \"" + std::string(from) + "\".";
    DictionaryEntry other;
    if (!text::equalNoCase(from, to) && dictionary().find(to, other))
        return "There is a condition \"" + other.name + "\" already.";
    std::string problem = KeepCondition({std::string(to), old->table, old->condition});
    if (problem.empty() && !text::equalNoCase(from, to)) RemoveCondition(from);
    return problem;
}

bool RemoveCondition(std::string_view name) {
    return dictionary().remove(name);
}

std::string WhyNoCondition(std::string_view name) {
    DictionaryEntry entry;
    return dictionary().find(name, entry) ? remarkOn(std::move(entry))
                                          : "The drawing keeps no condition \"" + std::string(name) + "\".";
}

std::vector<std::string> RemarksOnConditions() {
    std::vector<std::string> remarks;
    for (DictionaryEntry& entry : dictionary().entries())
        if (std::string remark = remarkOn(std::move(entry)); !remark.empty())
            remarks.push_back(std::move(remark));
    return remarks;
}

}  // namespace norvane
