// Values as a field takes them.
#pragma once

#include "platform/dao/dao.h"

namespace dao {

// The value in the type of a field. Throws for text that is no number of the field's kind, a number out of
// range, text longer than the field. Reals go to whole numbers by rounding, halves to the even neighbour.
Variant convertTo(Variant value, const CDaoFieldInfo& field);

// The checks on a value that is about to be written: required fields, zero-length text.
void checkValue(const Variant& value, const CDaoFieldInfo& field);

// The number of characters of UTF-8 text.
long characters(std::string_view text);

// Whether fields of this type hold text.
bool isTextType(int type);

}  // namespace dao
