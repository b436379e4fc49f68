// Numbers as the fields of a dBASE table hold them.
#pragma once

#include <cstddef>

namespace norvane {

// As printf's "%<width>d" of the value cut to 32 bits (decimals 0), or "%<width>.<decimals>f"; at most
// `width` bytes go to `out`, the last ones of a longer text are lost. Blanks for what is no finite number.
void FormatDbfNumber(double value, int width, int decimals, char* out);

}  // namespace norvane
