// Why a drawing could not be opened or saved, as a person can act on it.
#pragma once

#include <string>

namespace hostcad {

// `reason` is the reader's, without the path: "Line 12: ...".
std::string whyNotOpened(const std::string& path, const std::string& reason);
// `reason` is the writer's.
std::string whyNotSaved(const std::string& path, const std::string& reason);

}  // namespace hostcad
