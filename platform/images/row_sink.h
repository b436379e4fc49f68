// Where the readers of picture files put what they read.
#pragma once

#include <cstdint>

#include "platform/images/image.h"

namespace images {

class RowSink {
  public:
    virtual ~RowSink() = default;
    // Before the first row.
    virtual void begin(Size size) = 0;
    // The rows from the top, each of the width that was begun with, four bytes a pixel as in an Image.
    virtual void add(const uint8_t* row) = 0;
};

}  // namespace images
