// How the bytes of a PNG row lean on their neighbours.
#pragma once

#include <cstddef>
#include <cstdint>

namespace images {

// Turns the bytes of a row into those of its pixels. kind: as it stands in front of the row. above: the row
// above as it came out of this, zeros for the first. False for a kind that there is not.
bool undoPngFilter(uint8_t kind, uint8_t* row, const uint8_t* above, size_t bytes, size_t pixelBytes);

}  // namespace images
