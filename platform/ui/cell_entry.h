// What a cell takes of a text that is typed or pasted into it.
#pragma once

#include <string>
#include <string_view>

#include "platform/ui/grid.h"

namespace ui {

struct CellEntry {
    std::string text;     // as the cell keeps it
    std::string refusal;  // why it takes nothing of it; "" when it does take it
};

// A text is taken as a whole or not at all, so that nothing is cut out of it in silence. A comma in a number
// is its point, and line ends behind a text that was pasted do not count.
CellEntry entryOf(const CellType& type, std::string_view typed);

}  // namespace ui
