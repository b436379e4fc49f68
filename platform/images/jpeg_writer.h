// Makes a JPEG of the rows of a picture.
#pragma once

#include <memory>
#include <string>

#include "platform/images/row_sink.h"

namespace images {

class JpegWriter : public RowSink {
  public:
    JpegWriter();
    ~JpegWriter() override;

    void begin(Size size) override;
    // What the row does not cover is white.
    void add(const uint8_t* row) override;
    // The bytes of the file; "" when it could not be made.
    std::string finish();

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace images
