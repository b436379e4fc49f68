// Lines as a reader with a buffer of a fixed size gets them: a long line comes in pieces.
#pragma once

#include <cstddef>
#include <string_view>

namespace norvane {

// Takes the next line off the content, or as many bytes of it as the buffer holds, the line end among them.
// What is given back has no "\n", and ends at a byte 0. The content must not be empty.
std::string_view TakePiece(std::string_view& content, size_t longest);

}  // namespace norvane
