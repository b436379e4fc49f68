// The sort order "General" of the two versions, as keys that compare byte by byte.
//
// Case and blanks at the end do not count; accents decide where everything else is equal. In Access 2000 some
// signs (hyphen, apostrophe) count last of all. Only the first 255 characters count. The order is known for
// the characters of code page 1252; for any other an Error is thrown, since a key that is out of order would
// break the index.
#pragma once

#include <string_view>

#include "platform/dao/jet/bytes.h"

namespace jet {

Bytes textKey3(std::string_view text);
Bytes textKey4(std::string_view text);

}  // namespace jet
