// Texts between the file, in its code page or in UTF-8, and the drawing, in UTF-8.
#pragma once

#include <string>
#include <string_view>

#include "hostcad/drawing/format.h"

namespace hostcad {

// What decode changes, encode changes back to the same bytes:
//  - characters outside the code page stand in the file as \U+ and four digits; such a text of a character
//    that the page has is left alone, and so is \M+ (a character of another page);
//  - line feeds and carriage returns stand in the file as ^J and ^M.
class TextCodec {
  public:
    TextCodec(DrawingVersion version, int codePage);

    // The text in UTF-8: the argument itself when nothing is to be changed, else a view of an own buffer that
    // the next call overwrites.
    std::string_view decode(std::string_view bytes) { return isPlain(bytes) ? bytes : decodeSlowly(bytes); }
    std::string_view encode(std::string_view utf8) { return isPlain(utf8) ? utf8 : encodeSlowly(utf8); }

  private:
    static bool isPlain(std::string_view s);
    std::string_view decodeSlowly(std::string_view bytes);
    std::string_view encodeSlowly(std::string_view utf8);
    bool decodeEscape(std::string_view bytes, size_t& position);
    void appendEscape(char32_t codePoint);

    bool unicode_;
    int page_;
    std::string buffer_;
};

}  // namespace hostcad
