// What the host knows of the types of entities: since when there are, their subclasses, what they must have.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "hostcad/drawing/format.h"
#include "hostcad/drawing/group.h"

namespace hostcad {

// A part of an entity's groups behind a subclass marker (group 100). The groups that no subclass claims stand
// behind the last one that claims none.
struct Subclass {
    std::string_view marker;
    std::span<const int> codes;
};

struct EntityType {
    std::string_view name;
    DrawingVersion since;
    std::vector<Subclass> subclasses;  // behind AcDbEntity
    std::vector<int> required;         // codes that an entity of this type cannot be without
};

// Null for a type that the host can only carry along.
const EntityType* entityTypeOf(std::string_view name);
// The subclasses of an entity: those of a POLYLINE or VERTEX go by its flags, those of an INSERT by its rows.
std::vector<Subclass> subclassesOf(const EntityType& type, Groups groups);
// The place of a code among the subclasses; 0 where there are none.
size_t subclassOfCode(std::span<const Subclass> subclasses, int code);

// Groups that every entity may have: layer, colour, line type, space and so on. Of some codes a subclass
// makes another use: with certainOnly those do not count.
bool isCommonCode(int code, bool certainOnly);

}  // namespace hostcad
