// Layers of the drawing.
#pragma once

#include <string>

#include "platform/ads/result_buffer.h"

namespace norvane {

// A layer is off or frozen, locked or not. False for one that the drawing does not have.
bool IsLayerHidden(const std::string& layer);
// That of the entity whose groups acdbEntGet gave.
bool IsOnHiddenLayer(const resbuf* groups);

}  // namespace norvane
