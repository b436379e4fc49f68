// Smart prompting on one entity: the sheet, the link, the form.
#pragma once

#include "module/cad/call.h"
#include "module/prompting/prompt_request.h"
#include "module/store/gis_link.h"

namespace norvane {

// Shows the sheet of a request, and links its entity to the record that was saved: by the paths of a link,
// which may differ from where the files were found. False when nothing was saved.
bool PromptAndLink(const PromptRequest& request, GisLink link);

// Gives 1 when a record was saved, 0 when the sheet was cancelled or could not be shown.
void PromptForEntity(Call& call);

}  // namespace norvane
