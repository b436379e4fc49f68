// Layers of the drawing.
#pragma once

#include <string>
#include <vector>

#include "platform/ads/result_buffer.h"

namespace norvane {

// The names of all layers, in their order.
std::vector<std::string> LayerNames();
// The name of the layer that new entities go to; "" when the host does not say.
std::string CurrentLayer();
// A layer is off or frozen, locked or not. False for one that the drawing does not have.
bool IsLayerHidden(const std::string& layer);
// That of the entity whose groups acdbEntGet gave.
bool IsOnHiddenLayer(const resbuf* groups);

}  // namespace norvane
