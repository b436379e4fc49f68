// Forms of an Access database, shown by a companion module where Access itself is installed.
#pragma once

#include <string>
#include <vector>

#include "module/prompting/prompt_request.h"

namespace norvane {

// Which Access is registered for .mdb files.
FormEngine DetectFormEngine();
// The names of the forms of a database. None, and the engine set to kNone, where the companion module is not
// in the folder.
std::vector<std::string> ReadFormNames(FormEngine& engine, const std::string& binDirectory,
                                       const std::string& database);
// Shows a form, if one is asked for.
void ShowForm(const FormRequest& form, const std::string& binDirectory);

}  // namespace norvane
