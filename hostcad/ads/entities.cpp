// Reading, walking and changing entities by their names.
#include <algorithm>

#include "hostcad/ads/group_lists.h"
#include "hostcad/drawing/dictionaries.h"
#include "hostcad/drawing/entity_builder.h"
#include "hostcad/drawing/host_names.h"
#include "platform/ads/entities.h"
#include "platform/text/wild_cards.h"

using namespace hostcad;

namespace {

// Objects that have a name and groups of their own; header variables and the like have not.
bool isNamed(ObjectKind kind) {
    return kind != ObjectKind::HeaderVariable && kind != ObjectKind::Class && kind != ObjectKind::Other;
}

ObjectId livingObject(const ads_name name) {
    ObjectId id = idOf(name);
    const Drawing& drawing = currentDrawing();
    return drawing.exists(id) && isNamed(drawing.object(id).kind) ? id : kNoObject;
}

// The index of group 330 with the owner, which lists show behind the type; 0 when there is none.
size_t ownerIndex(Groups groups) {
    for (size_t i = 1; i < groups.size() && groups[i].code != 100 && groups[i].code < kFirstXDataCode; ++i) {
        if (groups[i].code == 330) return i;
        if (groups[i].code == 102)
            while (i + 1 < groups.size() && groups[i].text() != "}") ++i;
    }
    return 0;
}

// The groups without extended data in the order of a list: type, owner, and the rest as in the file.
std::vector<size_t> listOrder(Groups groups) {
    std::vector<size_t> order;
    size_t owner = ownerIndex(groups);
    for (size_t i = 0; i < groups.size(); ++i) {
        if (groups[i].code >= kFirstXDataCode || (owner && i == owner)) continue;
        order.push_back(i);
        if (i == 0 && owner) order.push_back(owner);
    }
    return order;
}

bool isWanted(std::string_view application, const resbuf* wanted) {
    for (; wanted; wanted = wanted->rbnext)
        if (wanted->restype == RTSTR && wanted->resval.rstring &&
            text::matchesNoCase(application, wanted->resval.rstring))
            return true;
    return false;
}

void addXData(ResultChain& list, const Drawing& drawing, Groups groups, const resbuf* applications) {
    bool wanted = false, any = false;
    for (const Group& group : xdataOf(groups)) {
        if (group.code == kApplicationCode) wanted = isWanted(group.text(), applications);
        if (!wanted) continue;
        if (!any) list.add(-3);
        any = true;
        addGroup(list, drawing, group);
    }
}

// --- Changing -----------------------------------------------------------------------------------------

// A list cut into the name of the entity, its groups, and the extended data behind -3.
struct Given {
    ObjectId entity = kNoObject;
    std::vector<const resbuf*> items;
    const resbuf* xdata = nullptr;
    bool hasXData = false;
};

Given cut(const resbuf* list) {
    Given given;
    for (; list; list = list->rbnext) {
        if (list->restype == -3) {
            given.xdata = list->rbnext;
            given.hasXData = true;
            break;
        }
        if (list->restype == -1)
            given.entity = livingObject(list->resval.rlname);
        else if (list->restype >= 0)
            given.items.push_back(list);
    }
    return given;
}

// New values in the old places, for a list with the codes that acdbEntGet gave. False for any other list.
bool replaceValues(Drawing& drawing, Groups old, const Given& given, std::vector<Group>& groups) {
    std::vector<size_t> order = listOrder(old);
    bool same = std::equal(order.begin(), order.end(), given.items.begin(), given.items.end(),
                           [&](size_t i, const resbuf* item) { return old[i].code == item->restype; });
    if (!same) return false;
    groups.assign(old.begin(), old.end());
    size_t owner = ownerIndex(old);
    for (size_t k = 0; k < order.size(); ++k) {
        Group& group = groups[order[k]];
        bool fixed = group.code == 5 || group.code == 105 || (owner && order[k] == owner);
        // A text in place of a reference has no name, so it cannot have come back.
        bool unnamed = group.kind == ValueKind::Text && groupKindOf(group.code) == GroupKind::Name;
        if (fixed || unnamed) continue;
        Group value = groupOf(drawing, *given.items[k], &group);
        // Of single coordinates (group 10 without 20) only the first counts.
        if (group.kind == ValueKind::Real && value.kind == ValueKind::Point)
            value = realGroup(group.code, value.x());
        group = value;
    }
    return textOf(groups, 0) == textOf(old, 0);
}

// The items as groups, like those of the same code that the entity had.
std::vector<Group> groupsOf(Drawing& drawing, Groups old, const Given& given) {
    std::vector<Group> groups;
    for (const resbuf* item : given.items)
        groups.push_back(groupOf(drawing, *item, find(old, item->restype)));
    return groups;
}

// Records and objects: what stands in front of the subclasses stays, the rest is what the list says.
std::vector<Group> rebuildObject(Groups old, Groups given) {
    auto isMarker = [](const Group& g) { return g.code == 100; };
    std::vector<Group> groups(old.begin(), std::find_if(old.begin(), old.end(), isMarker));
    auto body = std::find_if(given.begin(), given.end(), isMarker);
    groups.insert(groups.end(), body, given.end());
    Groups xdata = xdataOf(old);
    groups.insert(groups.end(), xdata.begin(), xdata.end());
    return groups;
}

bool changedGroups(Drawing& drawing, const Given& given, std::vector<Group>& groups) {
    Groups old = drawing.groups(given.entity);
    ObjectKind kind = drawing.object(given.entity).kind;
    bool entity = kind == ObjectKind::Entity || kind == ObjectKind::Subentity;
    if (given.items.empty()) {
        groups.assign(old.begin(), old.end());
        return true;
    }
    if (replaceValues(drawing, old, given, groups)) return !entity || resolveSymbols(drawing, groups, old);
    std::vector<Group> list = groupsOf(drawing, old, given);
    if (entity) return rebuildEntity(drawing, given.entity, list, groups);
    if ((kind != ObjectKind::Record && kind != ObjectKind::Object) ||
        textOf(list, 0) != drawing.type(given.entity))
        return false;
    groups = rebuildObject(old, list);
    return true;
}

}  // namespace

extern "C" {

resbuf* acdbEntGet(const ads_name entity) {
    return acdbEntGetX(entity, nullptr);
}

resbuf* acdbEntGetX(const ads_name entity, const resbuf* applications) {
    ObjectId id = livingObject(entity);
    if (!id) return nullptr;
    const Drawing& drawing = currentDrawing();
    Groups groups = drawing.groups(id);
    ResultChain list;
    addName(list, -1, id);
    size_t owner = ownerIndex(groups);
    for (size_t i = 0; i < groups.size(); ++i) {
        if (groups[i].code >= kFirstXDataCode || (owner && i == owner)) continue;
        addGroup(list, drawing, groups[i]);
        if (i == 0 && owner) addGroup(list, drawing, groups[owner]);
    }
    if (applications) addXData(list, drawing, groups, applications);
    return list.take();
}

int acdbEntMod(const resbuf* list) {
    Given given = cut(list);
    if (!given.entity) return RTERROR;
    Drawing& drawing = currentDrawing();
    std::vector<Group> xdata;
    if (given.hasXData && !xdataFromList(drawing, given.xdata, xdata)) return RTERROR;
    std::vector<Group> groups;
    if (!changedGroups(drawing, given, groups)) return RTERROR;
    mergeXData(groups, xdata);
    if (xdataSize(xdataOf(groups)) > kMostXDataBytes) return RTERROR;
    drawing.setGroups(given.entity, groups);
    return RTNORM;
}

int acdbEntNext(const ads_name from, ads_name next) {
    const Drawing& drawing = currentDrawing();
    ObjectId id = kNoObject;
    if (!from || ads_name_nil(from)) {
        id = drawing.firstEntity();
    } else if (ObjectId at = idOf(from)) {
        const Object& object = drawing.object(at);
        bool whole = object.kind == ObjectKind::Entity || object.kind == ObjectKind::Block;
        bool part = object.kind == ObjectKind::Subentity;
        if (whole && !object.erased) id = drawing.firstPart(at);
        if (part && object.next) id = drawing.nextPart(at);
        // Behind the last part comes the SEQEND, and behind that what follows the entity.
        ObjectId entity = part ? object.owner : at;
        ObjectId end = drawing.object(entity).end;
        bool complex = object.kind == ObjectKind::Entity || part;
        if (!id && complex && !object.erased && at != end && drawing.exists(end)) id = end;
        if (!id && complex) id = drawing.nextEntity(entity);
    }
    if (!id) return RTERROR;
    nameOf(id, next);
    return RTNORM;
}

int acdbEntLast(ads_name last) {
    ObjectId id = currentDrawing().lastEntity();
    if (!id) return RTERROR;
    nameOf(id, last);
    return RTNORM;
}

int acdbEntDel(const ads_name entity) {
    ObjectId id = idOf(entity);
    Drawing& drawing = currentDrawing();
    if (!id) return RTERROR;
    if (isNamedObject(drawing, id)) return removeNamedObject(drawing, id) ? RTNORM : RTERROR;
    if (drawing.object(id).kind != ObjectKind::Entity) return RTERROR;
    drawing.setErased(id, !drawing.object(id).erased);
    return RTNORM;
}

int acdbEntUpd(const ads_name entity) {
    ObjectId id = livingObject(entity);
    if (!id) return RTERROR;
    currentDrawing().announce(id, Change::Modified);
    return RTNORM;
}

int acdbHandEnt(const char* handle, ads_name entity) {
    if (!handle) return RTERROR;
    std::optional<uint64_t> value = readHandle(handle);
    if (!value) return RTERROR;
    const Drawing& drawing = currentDrawing();
    ObjectId id = drawing.byHandle(*value);
    if (!drawing.exists(id) || !isNamed(drawing.object(id).kind)) return RTERROR;
    nameOf(id, entity);
    return RTNORM;
}
}
