// Entity names, selection sets and points between the C interface and the drawing.
#pragma once

#include "hostcad/drawing/current_drawing.h"
#include "hostcad/drawing/selection_set.h"
#include "platform/ads/result_buffer.h"

namespace hostcad {

// The name of an object of the current drawing; that of kNoObject names nothing.
void nameOf(ObjectId id, ads_name name);
// The object that a name names in the current drawing: 0 for names of nothing, of selection sets, and of
// drawings that were closed. The object may be erased.
ObjectId idOf(const ads_name name);

// Points of the C interface.
inline Point pointOf(const ads_point p) {
    return {p[0], p[1], p[2]};
}
inline void setPoint(const Point& from, ads_point to) {
    to[0] = from.x, to[1] = from.y, to[2] = from.z;
}

// The selection set behind a name, or null.
SelectionSet* selectionOf(const ads_name name);
// Gives a set a name. It is freed by freeSelection, and with the drawing.
void nameSelection(SelectionSet set, ads_name name);
// False when the name names no set.
bool freeSelection(const ads_name name);

}  // namespace hostcad
