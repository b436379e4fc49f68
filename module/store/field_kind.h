// The kind of an attribute: what may stand in its cell, and the type of its column.
#pragma once

#include <optional>

namespace norvane {

enum class FieldKind : int { kChar = 0, kInt = 1, kReal = 2 };

// The kind whose values a column of a type of DAO (dbText, dbLong, ...) holds; nothing for a type that no
// attribute has.
std::optional<FieldKind> FieldKindOf(int type);

}  // namespace norvane
