// The current template and output database, and the values that the slots of the dialogs have.
#pragma once

#include <string>

#include "platform/dao/database_path.h"

namespace norvane {

// A current path: from gps.ini, or what the dialogs remember when the line is empty or missing. It is as it
// stands there: one that a person has put there by hand may have a password.
std::string CurrentTemplatePath();
std::string CurrentOutputPath();

// Function code 2: stores a slot. Slots 1 and 2 are the template and the output path; any other may hold a
// path or another text.
void SetDialogValue(int slot, const dao::DatabasePath& value);
// Function code 3: fetches a slot. An empty value leaves the buffer as it is. A password that stands in the
// settings is among it.
void GetDialogValue(int slot, std::string& buffer);

}  // namespace norvane
