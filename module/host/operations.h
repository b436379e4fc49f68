// The operations behind the function codes.
#pragma once

#include "module/cad/call.h"

namespace norvane {

// The operation of a code of cf:gis_smart_prompting; null for a code that means nothing.
Operation OperationOf(int code);

}  // namespace norvane
