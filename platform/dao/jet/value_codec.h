// Single values as their bytes in a row.
#pragma once

#include "platform/dao/jet/store.h"
#include "platform/dao/jet/table_definition.h"
#include "platform/dao/variant.h"

namespace jet {

// A value as the users of this library see it: Null, a number of the column's own type, a date, text in UTF-8
// (also of GUIDs and decimal numbers), bytes.
using Value = dao::Variant;

// The value of a column that is not Null, not Yes/No and no long value.
Value decodeValue(const TextCodec& text, const ColumnDefinition& column, ByteView bytes);

// Appends the bytes of a value other than Null in the type of its column. Numbers are taken in any type in
// which they fit. Throws for values that the column cannot hold.
void encodeValue(const TextCodec& text, const ColumnDefinition& column, const Value& value, ByteWriter& out);

// Whether a Yes/No column holds Yes for a value.
bool isYes(const Value& value);

// A GUID as {00112233-4455-6677-8899-AABBCCDDEEFF}, and back; false for other text.
std::string guidText(ByteView bytes);
bool guidBytes(std::string_view text, ByteWriter& out);

}  // namespace jet
