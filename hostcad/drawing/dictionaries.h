// Dictionaries: named objects of the OBJECTS section, and the XRECORDs that hang below them.
//
// A dictionary's items are pairs of groups, 3 with the name and 350 or 360 with the handle of an object,
// which has the dictionary's handle in group 330. Names compare without regard to case.
#pragma once

#include <string_view>
#include <vector>

#include "hostcad/drawing/drawing.h"

namespace hostcad {

struct DictionaryItem {
    std::string_view name;
    ObjectId object;
};

bool isDictionary(const Drawing& drawing, ObjectId id);
// A DICTIONARY or XRECORD: what programs may make and remove.
bool isNamedObject(const Drawing& drawing, ObjectId id);
// The items whose objects are there, in the order of the file.
std::vector<DictionaryItem> itemsOf(const Drawing& drawing, ObjectId dictionary);
// The object of a name, or 0.
ObjectId itemNamed(const Drawing& drawing, ObjectId dictionary, std::string_view name);
// The dictionary that an object hangs below, or 0.
ObjectId dictionaryOf(const Drawing& drawing, ObjectId object);

// A DICTIONARY or XRECORD that hangs below nothing yet, from its type and its own groups, with subclass
// markers or without. 0 for another type, and for groups that such an object cannot have: a dictionary comes
// empty.
ObjectId makeNamedObject(Drawing& drawing, Groups given);
// False when the name is none or is taken, or the object has an owner already or is above the dictionary.
bool addItem(Drawing& drawing, ObjectId dictionary, std::string_view name, ObjectId object);
// Erases the object with all that hangs below it. False when there is no such name, when the object is
// neither a DICTIONARY nor an XRECORD, and for what every drawing has (ACAD_LAYOUT and the like).
bool removeItem(Drawing& drawing, ObjectId dictionary, std::string_view name);
// The same for an object that may hang below nothing yet.
bool removeNamedObject(Drawing& drawing, ObjectId object);
// False when there is no such name, the new one is none or is another object's, and for what every drawing
// has.
bool renameItem(Drawing& drawing, ObjectId dictionary, std::string_view from, std::string_view to);

// How many objects of programs the drawing has that a file of its version does not: those of R12.
size_t objectsLostInFile(const Drawing& drawing);
// Whether an object of the OBJECTS section goes into a file of a version.
bool isWritten(const Drawing& drawing, ObjectId object, DrawingVersion version);

}  // namespace hostcad
