// What is on the screen on one page, with labels and legend: as large as the paper allows, in the middle, in
// colours that show on white.
#pragma once

#include "hostcad/editor/view.h"
#include "hostcad/window/scene.h"

class QPrinter;

namespace hostcad {

// Gives the page the direction that the view has. False when the printer does not take it.
bool printView(const Scene& scene, const ViewBox& view, bool withLegend, QPrinter& printer);

}  // namespace hostcad
