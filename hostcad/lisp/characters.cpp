#include "hostcad/lisp/characters.h"

#include "platform/text/code_page.h"
#include "platform/text/text.h"

namespace hostcad::lisp {

namespace {

constexpr int kCodePage = 1252;

// Moves behind one character; a malformed byte counts as one.
void skipCharacter(std::string_view s, size_t& position) {
    if (static_cast<unsigned char>(s[position]) < 0x80)
        ++position;
    else
        text::nextCodePoint(s, position);
}

}  // namespace

std::string characterOf(long code) {
    std::string character;
    if (code >= 0x80 && code <= 0xFF) {
        text::appendUtf8(character, text::codePointOf(static_cast<unsigned char>(code), kCodePage));
    } else if (code > 0 && code <= 0x10FFFF && !(code >= 0xD800 && code <= 0xDFFF)) {
        text::appendUtf8(character, static_cast<char32_t>(code));
    }
    return character;
}

long nextCode(std::string_view s, size_t& position) {
    char32_t point = text::nextCodePoint(s, position);
    int byte = text::byteOf(point, kCodePage);
    return byte >= 0 ? byte : static_cast<long>(point);
}

size_t characterCount(std::string_view s) {
    size_t count = 0;
    for (size_t at = 0; at < s.size(); ++count) skipCharacter(s, at);
    return count;
}

size_t byteOffset(std::string_view s, size_t character) {
    size_t at = 0;
    while (character-- > 0 && at < s.size()) skipCharacter(s, at);
    return at;
}

}  // namespace hostcad::lisp
