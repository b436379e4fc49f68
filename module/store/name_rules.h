// What a name may hold. There are two rules: the sheet takes names that the editor does not, and the other
// way round, so that neither can stand for both.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace norvane {

// --- The sheet, of the name of a feature ----------------------------------------------------------------

// 1: a good feature name; 0: empty; -1: it holds a character that is not allowed.
int CheckFeatureName(const std::string& text);
// What is told about a name that is not good; nothing for a good one.
std::optional<std::string> FeatureNameFault(const std::string& text);

// --- The editor, of features, categories and attributes -------------------------------------------------

// 1 to 63 of A-Z, 0-9, the blank and _ # - $ ) ( : after trimming and upper-casing.
bool IsGoodName(std::string_view name);
// What is told about a name that is not good.
extern const char* const kBadNameMessage;

}  // namespace norvane
