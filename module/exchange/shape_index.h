// The index file (.shx) of shapes that have lost theirs, made from their main file (.shp).
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace norvane {

struct ShapeIndexMade {
    int32_t recordCount = 0;
    int32_t olderCount = 0;  // records that a later one of their number has replaced
    int64_t strayBytes = 0;  // bytes of the .shp that belong to no whole record
};

// Makes the .shx of the .shp that a path names with any extension or none, in place of one that is there.
// Nothing when the .shp cannot be read as one or the index cannot be written; an old index is then untouched.
std::optional<ShapeIndexMade> ShapeMakeIndex(std::string_view path);

}  // namespace norvane
