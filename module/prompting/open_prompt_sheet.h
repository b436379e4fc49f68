// From a request to the sheet: which feature a description means, and whether it may be shown at all.
#pragma once

#include <optional>
#include <string>

#include "module/prompting/prompt_request.h"

namespace norvane {

// Whether a template has a feature, itself or without the digits at the end of its name. No name counts as
// one that it has. What the engine refuses is shown in a box.
bool IsFeatureDefined(const std::string& templatePath, const std::string& feature);

// Shows the sheet for a request. A locked feature name must be in the template, itself or without the digits
// at its end; a description such as TREE12 opens TREE. What was saved, or nothing: cancelled, or not shown.
std::optional<SavedRecord> OpenPromptSheet(PromptRequest request);

}  // namespace norvane
