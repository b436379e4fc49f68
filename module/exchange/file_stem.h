// The path of a file of a set, from a path that may name any file of it.
#pragma once

#include <string>
#include <string_view>

namespace norvane {

// The path without the extension of its last part, with "/" between its parts.
std::string FileStem(std::string_view path);

}  // namespace norvane
