// External functions of the module beside cf:gis_smart_prompting, for Lisp routines of our own.
#pragma once

#include <span>

#include "module/cad/call.h"

namespace norvane {

struct OwnFunction {
    const char* name;  // "gis:..."
    int id;            // by which the host calls it; from 1000 up
    Operation operation;
};
std::span<const OwnFunction> OwnFunctions();

}  // namespace norvane
