// Where the drawing stands.
#pragma once

#include <string>

namespace norvane {

// The folder of the open drawing, with a separator at its end: where new files of a job belong. The folder of
// temporary files (tmpdir$) for a drawing that has not been saved; "" when there is neither.
std::string DrawingFolder();

}  // namespace norvane
