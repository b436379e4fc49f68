// Where the drawing stands.
#pragma once

#include <optional>
#include <string>

namespace norvane {

// The folder of the open drawing, with a separator at its end; nothing when it has not been saved.
std::optional<std::string> SavedDrawingFolder();

// The same, where new files of a job belong: the folder of temporary files (tmpdir$) for a drawing that has
// not been saved; "" when there is neither.
std::string DrawingFolder();

}  // namespace norvane
