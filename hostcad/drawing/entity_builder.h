// Makes lists of groups fit the drawing: handles, owners, subclass markers, layers.
#pragma once

#include <string_view>
#include <vector>

#include "hostcad/drawing/drawing.h"

namespace hostcad {

// An entity as it can be appended to a block, space or entity: `given` holds its type and what else there is
// to say, with subclass markers or without. Handle and owner are new, layer and line type those of the
// drawing's settings unless given; a layer that does not exist is made. Extended data stays as it is.
// False for a type that the drawing's version does not have or the host cannot build, when a group is missing
// that such an entity needs, and for a block, line type or text style that does not exist.
bool buildEntity(Drawing& drawing, ObjectId owner, Groups given, std::vector<Group>& built);

// The groups of an entity, rewritten by what an entmod list says: a list with a group 0 stands for the whole
// entity, one without it only for the codes that are in it. Handle, owner and extended data stay as they are.
// False under the same conditions as above, and when the type differs.
bool rebuildEntity(Drawing& drawing, ObjectId entity, Groups given, std::vector<Group>& built);

// Whether the block, line type and text style exist that the groups of an entity name, as far as `before` did
// not name them too. A layer that does not exist is made.
bool resolveSymbols(Drawing& drawing, Groups groups, Groups before = {});

// Puts one group in the place of the first of its code in an object's own groups, or adds it where the
// object's type has it.
void putGroup(std::vector<Group>& groups, const Group& group);
// Drops all groups of a code in front of the extended data.
void dropGroups(std::vector<Group>& groups, int code);

// --- Records that an entity may need ------------------------------------------------------------------

// The layer of a name, made when it is missing: colour 7, continuous.
ObjectId ensureLayer(Drawing& drawing, std::string_view name);
// The registered application of a name, made when it is missing.
ObjectId ensureApplication(Drawing& drawing, std::string_view name);
// A new, empty block definition, with its record where the drawing has such; the base point as given.
ObjectId addBlock(Drawing& drawing, std::string_view name, int64_t flags, double x, double y, double z);
// The groups of a new record, in the version's form, from those that say what it is (group 2 and so on).
std::vector<Group> recordGroups(Drawing& drawing, std::string_view table, std::string_view marker,
                                Groups own);

// Whether text may be the name of a symbol: 1 to 255 characters, none of < > / \ " : ; ? * , = ` nor, unless
// allowed, a vertical bar, nor a control character.
bool isSymbolName(std::string_view name, bool allowBar);

}  // namespace hostcad
