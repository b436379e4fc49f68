// The kind of an attribute: what may stand in its cell, and the type of its column.
#pragma once

namespace norvane {

enum class FieldKind : int { kChar = 0, kInt = 1, kReal = 2 };

}  // namespace norvane
