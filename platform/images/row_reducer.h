// Keeps a picture that comes row by row, reduced by a whole number as far as a frame allows, so that a large
// one is never in memory as a whole.
#pragma once

#include "platform/images/row_sink.h"

namespace images {

class RowReducer : public RowSink {
  public:
    // No side is reduced below that of `needed`.
    explicit RowReducer(Size needed) : needed_(needed) {}

    void begin(Size size) override;
    void add(const uint8_t* row) override;
    // The picture as far as it has come; what is missing covers nothing.
    Image take();

  private:
    void addOpaque(const uint8_t* row);
    void finishRow();

    Size needed_;
    Size size_;
    int factor_ = 1;
    int gathered_ = 0;              // rows in the sums
    int done_ = 0;                  // rows of the result
    std::vector<uint32_t> sums_;    // of the pixels of the result, of colours times what they cover
    std::vector<uint16_t> opaque_;  // of the columns, in rows that cover everything
    bool hasOpaque_ = false;
    Image result_;
};

}  // namespace images
