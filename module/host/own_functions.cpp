#include "module/host/own_functions.h"

namespace norvane {

namespace {

// (gis:version) gives the version of the module as text.
void giveVersion(Call& call) {
    call.result = std::string(NORVANE_VERSION);
}

constexpr OwnFunction kFunctions[] = {{"gis:version", 1000, giveVersion}};

}  // namespace

std::span<const OwnFunction> OwnFunctions() {
    return kFunctions;
}

}  // namespace norvane
