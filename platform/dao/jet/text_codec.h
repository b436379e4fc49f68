// Text as the two versions store it: bytes of a code page, or UTF-16 that may be compressed.
#pragma once

#include <string>
#include <string_view>

#include "platform/dao/jet/bytes.h"
#include "platform/dao/jet/format.h"

namespace jet {

class TextCodec {
  public:
    TextCodec(const Format& format, int codePage) : unicode_(format.unicode), codePage_(codePage) {}

    int codePage() const { return codePage_; }
    // Bytes of a character as the sizes of columns count them.
    size_t unitSize() const { return unicode_ ? 2 : 1; }
    std::string decode(ByteView stored) const;
    // Appends text as it is stored. compress: whether it may be stored in one byte a character where that is
    // shorter. Throws for a character that the code page lacks.
    void encode(ByteWriter& out, std::string_view text, bool compress) const;
    Bytes encode(std::string_view text, bool compress = false) const;
    // The number of characters that count against the size of a column.
    size_t length(std::string_view text) const;

  private:
    void encodeInCodePage(ByteWriter& out, std::string_view text) const;

    bool unicode_;
    int codePage_;
};

}  // namespace jet
