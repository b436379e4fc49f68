// The current template and output database, and the values that the slots of the dialogs have.
#pragma once

#include <string>

namespace norvane {

// A current path: from gps.ini, or what the dialogs remember when the line is empty or missing.
std::string CurrentTemplatePath();
std::string CurrentOutputPath();

// Function code 2: stores a slot. Slots 1 and 2 are the template and the output path.
void SetDialogValue(int slot, const std::string& value);
// Function code 3: fetches a slot. An empty value leaves the buffer as it is.
void GetDialogValue(int slot, std::string& buffer);

}  // namespace norvane
