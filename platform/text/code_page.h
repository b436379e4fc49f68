// Eight-bit code pages at the edges of the program: drawings and files of older systems.
#pragma once

#include <string>
#include <string_view>

namespace text {

// Code pages that are known: 1250 to 1258 and 437, 850, 852, 866 (single byte). 65001 is UTF-8.
bool isKnownCodePage(int page);

// Only bytes below 128: the text is the same in every code page.
bool isAscii(std::string_view text);

// Bytes of a code page as UTF-8. Bytes that the page leaves open become the C1 control of the same number,
// so that they survive the way back.
std::string decode(std::string_view bytes, int page = 1252);

// UTF-8 as bytes of a code page. A character outside the page becomes `substitute` (0: it is left out).
std::string encode(std::string_view utf8, int page = 1252, char substitute = '?');

// The byte of a code point in a page, or -1.
int byteOf(char32_t codePoint, int page);
// The code point of a byte in a page.
char32_t codePointOf(unsigned char byte, int page);

}  // namespace text
