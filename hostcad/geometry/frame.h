// Coordinate systems under the names by which the host has them.
#pragma once

#include "platform/plane/frame.h"

namespace hostcad {

using plane::extrusionFrame;
using plane::Frame;
using plane::Point;
using plane::translation;
using plane::turned;

}  // namespace hostcad
