// Labels and colours that the host shows with the drawing, in its window and on paper, and that are not in
// the drawing.
//
// A program gives them as sets with names of its own. A set is of the drawing that is open when it is given,
// and goes with it. What it says of an entity follows the entity: it moves with it, is hidden while the
// entity is erased or on a layer that is off or frozen, and is back when that is undone. A host without a
// window keeps the sets, so that they can be asked for.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/ads/result_buffer.h"

namespace overlay {

// The two numbers of an ads_name.
using EntityName = std::array<long, 2>;

inline EntityName nameOf(const ads_name name) {
    return {name[0], name[1]};
}

// Where a label stands. ByEntity: inside of what encloses an area (closed polylines, circles, ellipses,
// hatches, solids), along other lines at their middle, beside all else. Inside of what encloses no area is in
// the middle of its box, and along what is no line is beside it.
enum class Placement { ByEntity, Beside, Inside, Along };

struct LabelStyle {
    double height = 10;      // of capitals
    bool isInPixels = true;  // of a screen at 96 dpi, at any zoom; else in units of the drawing
    // 0xRRGGBB, made readable on the ground that it is shown on; white is black on paper.
    uint32_t colour = 0xFFFFFF;
    Placement placement = Placement::ByEntity;
};

// Lines of a text are divided by \n. Up to kMostLines lines of kMostCharacters each are shown; what is cut
// ends in an ellipsis. An empty text shows nothing.
constexpr size_t kMostLines = 8;
constexpr size_t kMostCharacters = 100;

struct Label {
    EntityName entity{};
    std::string text;  // UTF-8
};

struct LabelSet {
    LabelStyle style;
    std::vector<Label> labels;  // in any order
};

struct EntityColour {
    EntityName entity{};
    uint32_t colour = 0;  // 0xRRGGBB, shown in place of the entity's own
};

struct LegendRow {
    uint32_t colour = 0;
    std::string text;
    size_t count = 0;  // of entities
};

// A legend without rows is not shown.
struct Legend {
    std::string title;
    std::vector<LegendRow> rows;
};

struct ColourSet {
    std::vector<EntityColour> colours;  // in any order; of two for one entity the last holds
    Legend legend;
};

// Puts a set in the place of the one of that name; a set without labels, or without colours and legend, takes
// it away. Names of no entity of the drawing are passed over.
void setLabels(const std::string& name, LabelSet set);
void setColours(const std::string& name, ColourSet set);

// What was given; null when there is no such set. It stays the host's, until it is set anew.
const LabelSet* labels(const std::string& name);
const ColourSet* colours(const std::string& name);
// The names of the sets, sorted.
std::vector<std::string> labelSets();
std::vector<std::string> colourSets();

// Labels of all sets in what the window shows now: those that have a place, and those that were left out
// because others take the room. All are 0 without a window.
struct LabelCounts {
    size_t placed = 0;
    size_t leftOut = 0;
    size_t tooSmall = 0;  // to be read, in units of the drawing at this zoom
};
LabelCounts labelCounts();

// Where a label of an entity stands when it has no others to avoid, in world coordinates.
struct LabelSpot {
    Placement placement = Placement::Beside;  // never ByEntity
    // Beside: the middle of the right side of the entity's box. Inside: a point surely inside, about which
    // the label is centred. Along: the middle of the line.
    double x = 0, y = 0;
    double angle = 0;  // radians, over -90 to 90 degrees: text along the line that can be read; else 0
};
// False for what has no place: no entity, an erased one, a construction line.
bool spotOf(const EntityName& entity, LabelSpot& spot);

}  // namespace overlay
