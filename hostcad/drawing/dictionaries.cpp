#include "hostcad/drawing/dictionaries.h"

#include <algorithm>

#include "hostcad/drawing/entity_builder.h"
#include "platform/text/text.h"

namespace hostcad {
namespace {

constexpr int kName = 3, kSoftItem = 350, kHardItem = 360, kOwner = 330, kMarker = 100, kControl = 102;

bool isItem(const Group& group) {
    return group.code == kSoftItem || group.code == kHardItem;
}

// Of an item whose object is gone too; the size of the groups for a name without an item.
size_t nameIndex(Groups groups, std::string_view name) {
    for (size_t i = 0; i + 1 < groups.size(); ++i)
        if (groups[i].code == kName && isItem(groups[i + 1]) && text::equalNoCase(groups[i].text(), name))
            return i;
    return groups.size();
}

// The group with the owner, which stands in front of the markers and outside of "{...}".
Group* ownerGroup(std::vector<Group>& groups) {
    bool inControl = false;
    for (Group& group : groups) {
        if (group.code == kMarker) break;
        if (group.code == kControl) inControl = group.text() != "}";
        if (group.code == kOwner && !inControl) return &group;
    }
    return nullptr;
}

std::vector<Group> copyOf(Groups groups) {
    return {groups.begin(), groups.end()};
}

void setOwner(Drawing& drawing, ObjectId object, uint64_t owner) {
    std::vector<Group> groups = copyOf(drawing.groups(object));
    if (Group* group = ownerGroup(groups))
        *group = handleGroup(kOwner, owner);
    else
        groups.insert(groups.begin() + 2, handleGroup(kOwner, owner));
    drawing.setGroups(object, groups);
}

// Files may nest dictionaries in a ring, or deeper than functions can call each other.
void eraseBelow(Drawing& drawing, ObjectId object) {
    std::vector<ObjectId> left{object};
    while (!left.empty()) {
        const ObjectId next = left.back();
        left.pop_back();
        if (isDictionary(drawing, next))
            for (const DictionaryItem& item : itemsOf(drawing, next))
                if (dictionaryOf(drawing, item.object) == next) left.push_back(item.object);
        drawing.setErased(next, true);
    }
}

// Codes of an XRECORD's own groups. 5 and 105 would be taken for its handle, 100 for a subclass.
bool isOwnCode(int code) {
    return code >= 1 && code < 370 && code != 5 && code != 105 && code != kMarker;
}

// Every drawing has layouts, groups and line styles under these names.
bool isOfDrawing(const Drawing& drawing, ObjectId dictionary, std::string_view name) {
    return dictionary == drawing.namedObjects() && text::startsWith(text::upper(name), "ACAD_");
}

bool isAbove(const Drawing& drawing, ObjectId object, ObjectId dictionary) {
    size_t left = drawing.idLimit();  // files may lead in a circle
    for (ObjectId id = dictionary; id && left > 0; id = dictionaryOf(drawing, id), --left)
        if (id == object) return true;
    return left == 0;
}

}  // namespace

bool isDictionary(const Drawing& drawing, ObjectId id) {
    return drawing.exists(id) && drawing.object(id).kind == ObjectKind::Object &&
           (drawing.type(id) == "DICTIONARY" || drawing.type(id) == "ACDBDICTIONARYWDFLT");
}

bool isNamedObject(const Drawing& drawing, ObjectId id) {
    return drawing.exists(id) && drawing.object(id).kind == ObjectKind::Object &&
           (drawing.type(id) == "DICTIONARY" || drawing.type(id) == "XRECORD");
}

std::vector<DictionaryItem> itemsOf(const Drawing& drawing, ObjectId dictionary) {
    std::vector<DictionaryItem> items;
    Groups groups = drawing.groups(dictionary);
    for (size_t i = 0; i + 1 < groups.size(); ++i) {
        if (groups[i].code != kName || !isItem(groups[i + 1]) || groups[i + 1].kind != ValueKind::Handle)
            continue;
        ObjectId object = drawing.byHandle(groups[i + 1].handle);
        if (drawing.exists(object)) items.push_back({groups[i].text(), object});
    }
    return items;
}

ObjectId itemNamed(const Drawing& drawing, ObjectId dictionary, std::string_view name) {
    for (const DictionaryItem& item : itemsOf(drawing, dictionary))
        if (text::equalNoCase(item.name, name)) return item.object;
    return kNoObject;
}

ObjectId dictionaryOf(const Drawing& drawing, ObjectId object) {
    std::vector<Group> groups = copyOf(drawing.groups(object));
    const Group* owner = ownerGroup(groups);
    if (!owner || owner->kind != ValueKind::Handle || owner->handle == 0) return kNoObject;
    ObjectId id = drawing.byHandle(owner->handle);
    return isDictionary(drawing, id) ? id : kNoObject;
}

ObjectId makeNamedObject(Drawing& drawing, Groups given) {
    const bool isRecord = textOf(given, 0) == "XRECORD";
    if (!isRecord && textOf(given, 0) != "DICTIONARY") return kNoObject;
    GroupArena& arena = drawing.arena();
    std::vector<Group> groups{arena.text(0, isRecord ? "XRECORD" : "DICTIONARY"),
                              handleGroup(5, drawing.newHandle()), handleGroup(kOwner, 0),
                              arena.text(kMarker, isRecord ? "AcDbXrecord" : "AcDbDictionary")};
    constexpr int kRecordCloning = 280, kDictionaryCloning = 281, kKeepExisting = 1;
    const int cloning = isRecord ? kRecordCloning : kDictionaryCloning;
    if (drawing.version() >= DrawingVersion::R2000) groups.push_back(integerGroup(cloning, kKeepExisting));
    // What acdbEntGet gives of another such object may come back: its head is this one's business.
    bool isHead = find(given, kMarker) != nullptr;
    for (const Group& group : given) {
        if (group.code == kMarker) {
            if (group.text() != groups[3].text()) return kNoObject;
            isHead = false;
        } else if (isHead || group.code == 0 || group.code == 5) {
            continue;
        } else if (isRecord ? !isOwnCode(group.code)
                            : group.code != kDictionaryCloning && group.code != kRecordCloning) {
            return kNoObject;
        } else if (group.code == cloning && groups.size() == 5 && groups[4].code == cloning) {
            groups[4] = group;
        } else {
            groups.push_back(group);
        }
    }
    return drawing.appendObject(groups);
}

bool addItem(Drawing& drawing, ObjectId dictionary, std::string_view name, ObjectId object) {
    if (!isSymbolName(name, true) || itemNamed(drawing, dictionary, name) ||
        !isNamedObject(drawing, object) || object == drawing.namedObjects() ||
        handleOf(drawing.groups(object), kOwner) != 0 || isAbove(drawing, object, dictionary))
        return false;
    std::vector<Group> groups = copyOf(drawing.groups(dictionary));
    // An item whose object is gone makes room.
    if (size_t old = nameIndex(groups, name); old < groups.size())
        groups.erase(groups.begin() + static_cast<std::ptrdiff_t>(old),
                     groups.begin() + static_cast<std::ptrdiff_t>(old) + 2);
    constexpr int kOwnsItems = 280;
    const auto first = std::find_if(groups.begin(), groups.end(), isItem);
    const int code = first != groups.end()                ? first->code
                     : integerOf(groups, kOwnsItems) == 1 ? kHardItem
                                                          : kSoftItem;
    // Behind its last item, or at the end of what a dictionary has for itself.
    auto place = std::find_if(groups.rbegin(), groups.rend(), isItem).base();
    if (first == groups.end()) {
        place = std::find_if(groups.begin(), groups.end(), [](const Group& g) { return g.code == kMarker; });
        if (place != groups.end()) ++place;
        place = std::find_if(place, groups.end(),
                             [](const Group& g) { return g.code == kMarker || g.code >= kFirstXDataCode; });
    }
    groups.insert(place,
                  {drawing.arena().text(kName, name), handleGroup(code, drawing.object(object).handle)});
    drawing.setGroups(dictionary, groups);
    setOwner(drawing, object, drawing.object(dictionary).handle);
    return true;
}

bool removeItem(Drawing& drawing, ObjectId dictionary, std::string_view name) {
    const ObjectId object = itemNamed(drawing, dictionary, name);
    if (!isNamedObject(drawing, object) || object == drawing.namedObjects() ||
        isOfDrawing(drawing, dictionary, name))
        return false;
    std::vector<Group> groups = copyOf(drawing.groups(dictionary));
    const auto place = groups.begin() + static_cast<std::ptrdiff_t>(nameIndex(groups, name));
    groups.erase(place, place + 2);
    drawing.setGroups(dictionary, groups);
    if (dictionaryOf(drawing, object) == dictionary) eraseBelow(drawing, object);
    return true;
}

bool removeNamedObject(Drawing& drawing, ObjectId object) {
    if (!isNamedObject(drawing, object) || object == drawing.namedObjects()) return false;
    if (const ObjectId dictionary = dictionaryOf(drawing, object))
        for (const DictionaryItem& item : itemsOf(drawing, dictionary))
            if (item.object == object) return removeItem(drawing, dictionary, item.name);
    eraseBelow(drawing, object);
    return true;
}

bool renameItem(Drawing& drawing, ObjectId dictionary, std::string_view from, std::string_view to) {
    const ObjectId object = itemNamed(drawing, dictionary, from);
    const ObjectId other = itemNamed(drawing, dictionary, to);
    if (!object || (other && other != object) || !isSymbolName(to, true) ||
        isOfDrawing(drawing, dictionary, from))
        return false;
    std::vector<Group> groups = copyOf(drawing.groups(dictionary));
    groups[nameIndex(groups, from)] = drawing.arena().text(kName, to);
    drawing.setGroups(dictionary, groups);
    return true;
}

bool isWritten(const Drawing& drawing, ObjectId object, DrawingVersion version) {
    if (!drawing.object(object).isOfProgram) return true;
    if (!hasSubclasses(version)) return false;
    Groups groups = drawing.groups(object);
    return object == drawing.namedObjects() ? std::any_of(groups.begin(), groups.end(), isItem)
                                            : handleOf(groups, kOwner) != 0;
}

size_t objectsLostInFile(const Drawing& drawing) {
    if (hasSubclasses(drawing.version())) return 0;
    size_t lost = 0;
    for (ObjectId id = 1; id < drawing.idLimit(); ++id)
        lost += drawing.object(id).isOfProgram && drawing.type(id) == "XRECORD" && drawing.exists(id) &&
                handleOf(drawing.groups(id), kOwner) != 0;
    return lost;
}

}  // namespace hostcad
