// Smart prompting on one entity: the sheet, the link, the form.
#pragma once

#include "module/cad/call.h"

namespace norvane {

// Gives 1 when a record was saved, 0 when the sheet was cancelled or could not be shown.
void PromptForEntity(Call& call);

}  // namespace norvane
