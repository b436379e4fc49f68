// Characters of Lisp strings. Strings are UTF-8; programs count and number characters as the dialect does,
// by the codes of Windows code page 1252, and beyond it by Unicode.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace hostcad::lisp {

// The character of a code, as UTF-8. "" for a code that names none.
std::string characterOf(long code);
// The code of the character at a position, which moves behind it.
long nextCode(std::string_view s, size_t& position);
// Number of characters.
size_t characterCount(std::string_view s);
// Position in bytes of the character with the given index, at most the end.
size_t byteOffset(std::string_view s, size_t character);

}  // namespace hostcad::lisp
