// How shapes are exported.
#pragma once

#include <optional>
#include <string>

namespace norvane {

struct ExportOptions {
    bool extraFields = false;           // coordinates, lengths and areas of the drawing go into the table
    bool holes = false;                 // a closed polyline within another becomes its hole
    bool leavesMissingHeights = false;  // a point without a height gets none, and not 0
    std::optional<double>
        deviation;          // of chords from their arcs; nothing: arcs become chords as they always have
    std::string reference;  // what the .prj says; "" for no .prj
};

}  // namespace norvane
