// List Values and Special codes: the editors of what stands in the value column of one attribute.
#pragma once

#include <optional>
#include <string>

#include "module/features/feature_row.h"

namespace norvane {

// Edits the values of an attribute. Nothing when the person cancelled; a plain cell when no value is left; a
// drop-down of one item when a special code was set.
std::optional<ValueCell> EditValues(const ValueCell& values);

// Asks for a special code, the present one being shown. "" when none was chosen.
std::string AskSpecialCode(const std::string& present);

}  // namespace norvane
