// The audit: where the links of entities lead nowhere, they are led elsewhere or taken off.
#pragma once

#include "module/cad/call.h"

namespace norvane {

// Function code 8: audits a selection that the person makes. Gives 0.
void AuditLinks(Call& call);

}  // namespace norvane
