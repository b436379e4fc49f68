// The other modules that the host has loaded.
#pragma once

#include <string>

namespace norvane {

// Whether a module is loaded, by its base name: 1 or 0.
int IsArxLoaded(const std::string& baseName);

}  // namespace norvane
