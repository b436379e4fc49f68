// From a request to the sheet: which feature a description means, and whether it may be shown at all.
#pragma once

#include <optional>

#include "module/prompting/prompt_request.h"

namespace norvane {

// Shows the sheet for a request. A locked feature name must be in the template, itself or without the digits
// at its end; a description such as TREE12 opens TREE. What was saved, or nothing: cancelled, or not shown.
std::optional<SavedRecord> OpenPromptSheet(PromptRequest request);

}  // namespace norvane
