// Texts between the file, in its code page or in UTF-8, and the drawing, in UTF-8.
#pragma once

#include <string>
#include <string_view>

#include "hostcad/drawing/format.h"

namespace hostcad {

// What decode changes, encode changes back to the same bytes:
//  - characters outside the code page stand in the file as \U+ and four digits; such a text of a character
//    that the page has is left alone, and so is \M+ (a character of another page). Some programs write the
//    digits in small letters: what the first such text of a file has goes for all of it;
//  - line feeds and carriage returns stand in the file as ^J and ^M.
class TextCodec {
  public:
    explicit TextCodec(const DxfFormat& format, int codePage = 1252);

    // The form that the texts so far showed the file to have.
    bool lowerCaseEscapes() const { return digits_ == Digits::Small; }
    // Before anything is decoded, the header of a file says what it is.
    void setVersion(DrawingVersion version) { unicode_ = hasUnicodeText(version); }
    void setCodePage(int codePage) { page_ = codePage; }

    // The text in UTF-8: the argument itself when nothing is to be changed, else a view of an own buffer that
    // the next call overwrites.
    std::string_view decode(std::string_view bytes) { return isPlain(bytes) ? bytes : decodeSlowly(bytes); }
    std::string_view encode(std::string_view utf8) { return isPlain(utf8) ? utf8 : encodeSlowly(utf8); }

  private:
    static bool isPlain(std::string_view s);
    std::string_view decodeSlowly(std::string_view bytes);
    std::string_view encodeSlowly(std::string_view utf8);
    int escapedUnit(std::string_view bytes, size_t position) const;
    bool decodeEscape(std::string_view bytes, size_t& position);
    void appendEscape(char32_t codePoint);

    enum class Digits { Unknown, Capital, Small };

    bool unicode_;
    int page_;
    Digits digits_ = Digits::Unknown;
    std::string buffer_;
};

}  // namespace hostcad
