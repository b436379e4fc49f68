// The value of a tile as text, and a text as the value of a tile.
#pragma once

#include <string>

#include "module/dialogs/tile.h"
#include "platform/ui/dialog.h"

namespace norvane {

// A view leaves its numbers as they are when the text has not as many.
void SetTileValue(TileRecord& tile, ui::Control& control, const std::string& text);
std::string TileValue(const TileRecord& tile, const ui::Control& control);

}  // namespace norvane
