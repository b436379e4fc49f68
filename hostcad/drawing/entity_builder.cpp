#include "hostcad/drawing/entity_builder.h"

#include <algorithm>

#include "hostcad/drawing/entity_types.h"
#include "platform/text/text.h"

namespace hostcad {
namespace {

constexpr int kSubclassCode = 100;
constexpr int kEmbeddedObjectCode = 101;
constexpr int kControlCode =
    102;  // "{NAME" ... "}": reactors, the extension dictionary, an application's own
constexpr int kOwnerCode = 330;
constexpr int kHandleCode = 5;

// Codes that files of R12 have no place for.
bool isBeyondR12(int code) {
    return code == 48 || code == 60 || (code >= 80 && code < 140) || (code >= 150 && code < 170) ||
           (code >= 180 && code < 210) || (code >= 240 && code < kFirstXDataCode);
}

// The end of the object's own groups: extended data and embedded objects follow.
size_t ownEnd(Groups groups) {
    auto end = std::find_if(groups.begin(), groups.end(), [](const Group& g) {
        return g.code >= kFirstXDataCode || g.code == kEmbeddedObjectCode;
    });
    return static_cast<size_t>(end - groups.begin());
}

// The end of what stands in front of the object's own groups: type, handle, reactors, owner. Without
// subclasses these are the type and the handle.
size_t headEnd(Groups groups) {
    auto marker =
        std::find_if(groups.begin(), groups.end(), [](const Group& g) { return g.code == kSubclassCode; });
    if (marker != groups.end()) return static_cast<size_t>(marker - groups.begin());
    size_t end = 0;
    while (end < groups.size() && (groups[end].code == 0 || groups[end].code == kHandleCode)) ++end;
    return end;
}

// An entity taken apart.
struct Parts {
    std::string_view type;
    bool marked = false;        // the subclass markers are among `own`
    std::vector<Group> common;  // behind AcDbEntity
    std::vector<Group> own;     // everything else
    std::vector<Group> tail;    // extended data and embedded objects
};

void putCommon(std::vector<Group>& common, const Group& group) {
    auto same =
        std::find_if(common.begin(), common.end(), [&](const Group& g) { return g.code == group.code; });
    if (same != common.end())
        *same = group;
    else
        common.push_back(group);
}

// Takes a list apart, without what belongs to one certain entity: handle, owner, reactors.
Parts takeApart(Groups given) {
    Parts parts;
    bool inHead = true, inEntity = false;
    for (size_t i = 0; i < given.size(); ++i) {
        const Group& group = given[i];
        if (group.code >= kFirstXDataCode || group.code == kEmbeddedObjectCode) {
            parts.tail.assign(given.begin() + static_cast<std::ptrdiff_t>(i), given.end());
            break;
        }
        if (group.code == 0) {
            parts.type = group.text();
        } else if (group.code == kHandleCode || (inHead && group.code == kOwnerCode)) {
            continue;
        } else if (inHead && group.code == kControlCode) {
            while (i < given.size() && given[i].text() != "}") ++i;
        } else if (group.code == kSubclassCode) {
            inHead = false;
            inEntity = group.text() == "AcDbEntity";
            parts.marked = true;
            if (!inEntity) parts.own.push_back(group);
        } else if (inEntity || isCommonCode(group.code, parts.marked)) {
            putCommon(parts.common, group);
        } else {
            parts.own.push_back(group);
        }
    }
    return parts;
}

bool has(const std::vector<Group>& groups, int code) {
    return find(groups, code) != nullptr;
}

// --- What certain types need --------------------------------------------------------------------------

void completeLightPolyline(Drawing& drawing, std::vector<Group>& own) {
    int64_t vertices = 0;
    for (Group& group : own) {
        if (group.code != 10) continue;
        ++vertices;
        if (group.size > 2) group = drawing.arena().point(10, group.x(), group.y());
    }
    // Readers want the count first.
    auto count = std::find_if(own.begin(), own.end(), [](const Group& g) { return g.code == 90; });
    if (count != own.end())
        *count = integerGroup(90, vertices);
    else
        own.insert(own.begin() + (!own.empty() && own[0].code == kSubclassCode), integerGroup(90, vertices));
    if (!has(own, 70)) {
        auto behind = std::find_if(own.begin(), own.end(), [](const Group& g) { return g.code == 90; }) + 1;
        own.insert(behind, integerGroup(70, 0));
    }
}

void completePolyline(Drawing& drawing, std::vector<Group>& own) {
    if (!has(own, 66)) own.push_back(integerGroup(66, 1));
    if (!has(own, 10)) own.push_back(drawing.arena().point(10, 0, 0, 0));
    if (!has(own, 70)) own.push_back(integerGroup(70, 0));
}

void completeVertex(const Drawing& drawing, ObjectId owner, std::vector<Group>& own) {
    constexpr int64_t kPolyline3d = 8, kVertex3d = 32;
    bool in3d = drawing.type(owner) == "POLYLINE" && integerOf(drawing.groups(owner), 70) & kPolyline3d;
    int64_t flags = integerOf(own, 70) | (in3d ? kVertex3d : 0);
    auto old = std::find_if(own.begin(), own.end(), [](const Group& g) { return g.code == 70; });
    if (old != own.end())
        old->integer = flags;
    else
        own.push_back(integerGroup(70, flags));
}

// A text that is not aligned at the left has a second point.
void completeText(Drawing& drawing, std::string_view type, std::vector<Group>& own) {
    int vertical = type == "TEXT" ? 73 : 74;
    if (has(own, 11) || (integerOf(own, 72) == 0 && integerOf(own, vertical) == 0)) return;
    const Group* point = find(own, 10);
    Group second = drawing.arena().point(11, point->x(), point->y(), point->z());
    own.insert(own.begin() + (point - own.data()) + 1, second);
}

void complete(Drawing& drawing, ObjectId owner, Parts& parts) {
    if (parts.type == "LWPOLYLINE")
        completeLightPolyline(drawing, parts.own);
    else if (parts.type == "POLYLINE")
        completePolyline(drawing, parts.own);
    else if (parts.type == "VERTEX")
        completeVertex(drawing, owner, parts.own);
    else if (parts.type == "TEXT" || parts.type == "ATTRIB" || parts.type == "ATTDEF")
        completeText(drawing, parts.type, parts.own);
}

// The owner that group 330 names: the record of a block, or the main entity. 0 when it has no handle.
uint64_t ownerHandle(const Drawing& drawing, ObjectId owner) {
    const Object& object = drawing.object(owner);
    if (object.kind != ObjectKind::Block) return object.handle;
    ObjectId record = drawing.recordOfBlock(owner);
    return record == owner ? 0 : drawing.object(record).handle;
}

// Whether what is part of the owner stands in paper space.
bool inPaperSpace(const Drawing& drawing, ObjectId owner) {
    if (drawing.object(owner).kind == ObjectKind::Block) return owner == drawing.paperSpace();
    return integerOf(drawing.groups(owner), 67) == 1;
}

void appendWithMarkers(Drawing& drawing, const EntityType& type, const Parts& parts,
                       std::vector<Group>& built) {
    std::vector<Subclass> subclasses = subclassesOf(type, parts.own);
    for (size_t i = 0; i < subclasses.size(); ++i) {
        auto belongs = [&](const Group& g) { return subclassOfCode(subclasses, g.code) == i; };
        bool optional = !subclasses[i].codes.empty() && type.name == "TEXT";
        if (optional && std::none_of(parts.own.begin(), parts.own.end(), belongs)) continue;
        built.push_back(drawing.arena().text(kSubclassCode, subclasses[i].marker));
        std::copy_if(parts.own.begin(), parts.own.end(), std::back_inserter(built), belongs);
    }
}

// Common groups, own groups and the tail, behind the head that `built` holds already.
void appendBody(Drawing& drawing, ObjectId owner, Parts& parts, std::vector<Group>& built) {
    const EntityType* type = entityTypeOf(parts.type);
    bool markers = hasSubclasses(drawing.version());
    if (!has(parts.common, 8))
        parts.common.insert(parts.common.begin(),
                            drawing.arena().text(8, drawing.headerText("$CLAYER", "0")));
    complete(drawing, owner, parts);
    std::erase_if(parts.common, [](const Group& g) { return g.code == 67; });
    if (markers) built.push_back(drawing.arena().text(kSubclassCode, "AcDbEntity"));
    if (inPaperSpace(drawing, owner)) built.push_back(integerGroup(67, 1));
    built.insert(built.end(), parts.common.begin(), parts.common.end());
    if (markers && type && !parts.marked)
        appendWithMarkers(drawing, *type, parts, built);
    else
        std::copy_if(parts.own.begin(), parts.own.end(), std::back_inserter(built),
                     [&](const Group& g) { return markers || g.code != kSubclassCode; });
    if (!markers) std::erase_if(built, [](const Group& g) { return isBeyondR12(g.code); });
    built.insert(built.end(), parts.tail.begin(), parts.tail.end());
}

bool hasRequired(const EntityType& type, const Parts& parts) {
    return std::all_of(type.required.begin(), type.required.end(),
                       [&](int code) { return has(parts.own, code); });
}

// A partial list: every code in it takes the place of what the entity had of that code. Type, handle and
// owner are not among them.
std::vector<Group> mergedGroups(Groups old, Groups given) {
    std::vector<Group> merged(old.begin(), old.end());
    std::vector<int> seen{0, kHandleCode, kOwnerCode};
    for (const Group& group : given) {
        if (std::find(seen.begin(), seen.end(), group.code) != seen.end()) continue;
        seen.push_back(group.code);
        std::vector<Group> run;
        std::copy_if(given.begin(), given.end(), std::back_inserter(run),
                     [&](const Group& g) { return g.code == group.code; });
        putGroup(merged, run[0]);
        if (run.size() == 1) continue;
        // Several values: they stand together where the first one is.
        auto first = std::find_if(merged.begin() + static_cast<std::ptrdiff_t>(headEnd(merged)), merged.end(),
                                  [&](const Group& g) { return g.code == group.code; });
        auto place = first - merged.begin();
        dropGroups(merged, group.code);
        merged.insert(merged.begin() + place, run.begin(), run.end());
    }
    return merged;
}

}  // namespace

bool resolveSymbols(Drawing& drawing, Groups groups, Groups before) {
    std::string_view type = textOf(groups, 0);
    // What it names otherwise than before; "" when it names nothing new.
    auto named = [&](int code) {
        std::string_view name = textOf(groups, code);
        return name == textOf(before, code) ? std::string_view() : name;
    };
    auto isOneOf = [](std::string_view name, std::initializer_list<std::string_view> names) {
        return std::any_of(names.begin(), names.end(),
                           [&](std::string_view n) { return text::equalNoCase(n, name); });
    };
    std::string_view lineType = named(6);
    if (!isOneOf(lineType, {"", "ByLayer", "ByBlock", "Continuous"}) && !drawing.record("LTYPE", lineType))
        return false;
    if (type == "INSERT" && !named(2).empty() && !drawing.block(named(2))) return false;
    bool hasStyle = isOneOf(type, {"TEXT", "ATTRIB", "ATTDEF", "MTEXT"});
    std::string_view style = hasStyle ? named(7) : std::string_view();
    if (!isOneOf(style, {"", "Standard"}) && !drawing.record("STYLE", style)) return false;
    std::string_view layer = named(8);
    return layer.empty() || drawing.record("LAYER", layer) ||
           (isSymbolName(layer, true) && ensureLayer(drawing, layer));
}

bool buildEntity(Drawing& drawing, ObjectId owner, Groups given, std::vector<Group>& built) {
    Parts parts = takeApart(given);
    const EntityType* type = entityTypeOf(parts.type);
    if (type ? type->since > drawing.version() || !hasRequired(*type, parts)
             : !hasSubclasses(drawing.version()) || !parts.marked)
        return false;
    built = {drawing.arena().text(0, parts.type), handleGroup(kHandleCode, drawing.newHandle())};
    uint64_t owned = ownerHandle(drawing, owner);
    if (hasSubclasses(drawing.version()) && owned) built.push_back(handleGroup(kOwnerCode, owned));
    appendBody(drawing, owner, parts, built);
    return resolveSymbols(drawing, built);
}

bool rebuildEntity(Drawing& drawing, ObjectId entity, Groups given, std::vector<Group>& built) {
    Groups old = drawing.groups(entity);
    bool whole = find(given, 0) != nullptr;
    if (whole && textOf(given, 0) != drawing.type(entity)) return false;
    bool markers = hasSubclasses(drawing.version());
    // A whole list without markers, where there ought to be some, is as good as one of single codes.
    bool partial = !whole || (markers && !find(given, kSubclassCode));
    std::vector<Group> all =
        partial ? mergedGroups(old, given) : std::vector<Group>(given.begin(), given.end());

    built.assign(old.begin(), old.begin() + static_cast<std::ptrdiff_t>(headEnd(old)));
    Parts parts = takeApart(all);
    parts.type = drawing.type(entity);
    Groups tail = old.subspan(ownEnd(old));
    parts.tail.assign(tail.begin(), tail.end());
    const EntityType* type = entityTypeOf(parts.type);
    if (type && !hasRequired(*type, parts)) return false;
    appendBody(drawing, drawing.object(entity).owner, parts, built);
    return resolveSymbols(drawing, built, old);
}

void dropGroups(std::vector<Group>& groups, int code) {
    size_t begin = headEnd(groups), end = ownEnd(groups);
    auto first = groups.begin() + static_cast<std::ptrdiff_t>(begin);
    auto last = groups.begin() + static_cast<std::ptrdiff_t>(end);
    groups.erase(std::remove_if(first, last, [&](const Group& g) { return g.code == code; }), last);
}

void putGroup(std::vector<Group>& groups, const Group& group) {
    size_t begin = headEnd(groups), end = ownEnd(groups);
    for (size_t i = begin; i < end; ++i)
        if (groups[i].code == group.code) {
            groups[i] = group;
            return;
        }
    auto place = groups.begin() + static_cast<std::ptrdiff_t>(end);
    bool marked = begin < end && groups[begin].code == kSubclassCode;
    const EntityType* type = entityTypeOf(textOf(groups, 0));
    if (marked && type) {
        // At the end of the subclass that the code belongs to.
        std::vector<Subclass> subclasses = subclassesOf(*type, groups);
        size_t wanted = isCommonCode(group.code, true) ? 0 : 1 + subclassOfCode(subclasses, group.code);
        size_t seen = 0;
        for (size_t i = begin; i < end; ++i)
            if (groups[i].code == kSubclassCode && seen++ == wanted + 1) {
                place = groups.begin() + static_cast<std::ptrdiff_t>(i);
                break;
            }
    }
    groups.insert(place, group);
}

}  // namespace hostcad
