#include "hostcad/ads/entity_maker.h"

#include <algorithm>

#include "hostcad/ads/group_lists.h"
#include "hostcad/drawing/dictionaries.h"
#include "hostcad/drawing/entity_builder.h"
#include "hostcad/drawing/host_names.h"
#include "platform/ads/entities.h"
#include "platform/text/text.h"

using namespace hostcad;

namespace {

// What is being made: the block that entities go to, and the entity that subentities go to. Both stay erased
// until they are complete, so that what was only begun never shows.
struct Unfinished {
    long drawing = 0;
    ObjectId block = kNoObject;
    ObjectId entity = kNoObject;
};

Unfinished& unfinished() {
    static Unfinished present;
    long serial = currentDrawing().serial();
    if (present.drawing != serial) present = {serial};
    return present;
}

std::string& lastBlock() {
    static std::string name;
    return name;
}

// Names of anonymous blocks are given as "*U" and numbered here.
std::string numberedName(const Drawing& drawing, std::string_view name) {
    if (name.size() != 2 || name[0] != '*') return std::string(name);
    for (int number = 1;; ++number) {
        std::string numbered = std::string(name) + std::to_string(number);
        if (!drawing.block(numbered)) return numbered;
    }
}

int beginBlock(Drawing& drawing, Groups given) {
    std::string name = numberedName(drawing, textOf(given, 2));
    const Group* origin = find(given, 10);
    bool anonymous = !name.empty() && name[0] == '*';
    if (!origin || !isSymbolName(std::string_view(name).substr(anonymous ? 1 : 0), true)) return RTERROR;
    int64_t flags = integerOf(given, 70) | (anonymous ? 1 : 0);
    Unfinished& now = unfinished();
    now = {drawing.serial()};
    if (ObjectId old = drawing.block(name)) {
        // A new definition takes the place of the old one.
        if (drawing.isSpace(old)) return RTERROR;
        for (ObjectId id = drawing.firstPart(old); id; id = drawing.nextPart(id)) drawing.setErased(id, true);
        std::vector<Group> groups(drawing.groups(old).begin(), drawing.groups(old).end());
        putGroup(groups, integerGroup(70, flags));
        putGroup(groups, *origin);
        drawing.setGroups(old, groups);
        now.block = old;
    } else {
        now.block = addBlock(drawing, name, flags, origin->x(), origin->y(), origin->z());
        drawing.setErased(now.block, true);
    }
    return RTNORM;
}

int endBlock(Drawing& drawing) {
    Unfinished& now = unfinished();
    if (!now.block || now.entity) return RTERROR;
    drawing.setErased(now.block, false);
    lastBlock() = drawing.symbol(now.block);
    now.block = kNoObject;
    return RTNORM;
}

// A record of a symbol table, given as an entity list.
int makeRecord(Drawing& drawing, std::string_view table, std::string_view marker, Groups given) {
    std::string_view name = textOf(given, 2);
    if (!isSymbolName(name, true) || drawing.record(table, name)) return RTERROR;
    auto isHead = [](const Group& g) {
        return g.code == 0 || g.code == 5 || g.code == 105 || g.code == 330 || g.code == 100;
    };
    std::vector<Group> own;
    std::copy_if(given.begin(), given.end(), std::back_inserter(own),
                 [&](const Group& g) { return !isHead(g); });
    if (table == "LAYER") {
        // What the list leaves out is that of any new layer.
        ObjectId layer = ensureLayer(drawing, name);
        std::vector<Group> groups(drawing.groups(layer).begin(), drawing.groups(layer).end());
        for (const Group& group : own) putGroup(groups, group);
        drawing.setGroups(layer, groups);
        return RTNORM;
    }
    drawing.appendRecord(table, recordGroups(drawing, table, marker, own));
    return RTNORM;
}

std::string_view recordMarker(std::string_view type) {
    constexpr std::pair<std::string_view, std::string_view> kMarkers[] = {
        {"LAYER", "AcDbLayerTableRecord"},    {"STYLE", "AcDbTextStyleTableRecord"},
        {"LTYPE", "AcDbLinetypeTableRecord"}, {"APPID", "AcDbRegAppTableRecord"},
        {"VIEW", "AcDbViewTableRecord"},      {"UCS", "AcDbUCSTableRecord"}};
    for (const auto& [table, marker] : kMarkers)
        if (table == type) return marker;
    return {};
}

// Where a main entity goes: the block being made, else the space by group 67, else the current one.
ObjectId destination(const Drawing& drawing, Groups given) {
    if (unfinished().block) return unfinished().block;
    const Group* space = find(given, 67);
    if (!space) return drawing.currentSpace();
    return space->asInteger() == 1 ? drawing.paperSpace() : drawing.modelSpace();
}

int makeSubentity(Drawing& drawing, Groups given, std::string_view type) {
    Unfinished& now = unfinished();
    bool vertices = now.entity && drawing.type(now.entity) == "POLYLINE";
    bool fits = now.entity && (type == "SEQEND" || type == (vertices ? "VERTEX" : "ATTRIB"));
    std::vector<Group> built;
    if (!fits || !buildEntity(drawing, now.entity, given, built)) return RTERROR;
    drawing.appendSubentity(now.entity, built);
    if (type != "SEQEND") return RTNORM;
    drawing.setErased(now.entity, false);
    now.entity = kNoObject;
    return RTNORM;
}

int makeEntity(Drawing& drawing, Groups given, std::string_view type) {
    Unfinished& now = unfinished();
    now.entity = kNoObject;
    ObjectId block = destination(drawing, given);
    std::vector<Group> built;
    if (!buildEntity(drawing, block, given, built)) return RTERROR;
    bool complex = type == "POLYLINE" || (type == "INSERT" && integerOf(given, 66) == 1);
    ObjectId id = drawing.appendEntity(block, built);
    if (complex) {
        drawing.setErased(id, true);
        now.entity = id;
    }
    return RTNORM;
}

}  // namespace

namespace hostcad {

const std::string& lastBlockMade() {
    return lastBlock();
}

}  // namespace hostcad

namespace {

// The groups of a list, with the type in capitals. False without a type, and for bad extended data.
bool readList(Drawing& drawing, const resbuf* list, std::vector<Group>& given) {
    std::vector<Group> xdata;
    for (; list; list = list->rbnext) {
        if (list->restype == -3) {
            if (!xdataFromList(drawing, list->rbnext, xdata) || xdataSize(xdata) > kMostXDataBytes)
                return false;
            break;
        }
        if (list->restype >= 0) given.push_back(groupOf(drawing, *list));
    }
    given.insert(given.end(), xdata.begin(), xdata.end());
    for (Group& group : given)
        if (group.code == 0) group = drawing.arena().text(0, text::upper(group.text()));
    return !textOf(given, 0).empty();
}

int makeGiven(Drawing& drawing, Groups given) {
    const std::string_view type = textOf(given, 0);
    if (type == "BLOCK") return beginBlock(drawing, given);
    if (type == "ENDBLK") return endBlock(drawing);
    if (std::string_view marker = recordMarker(type); !marker.empty())
        return makeRecord(drawing, type, marker, given);
    if (type == "VERTEX" || type == "ATTRIB" || type == "SEQEND") return makeSubentity(drawing, given, type);
    return makeEntity(drawing, given, type);
}

}  // namespace

extern "C" {

int acdbEntMake(const resbuf* list) {
    Drawing& drawing = currentDrawing();
    std::vector<Group> given;
    return readList(drawing, list, given) ? makeGiven(drawing, given) : RTERROR;
}

int acdbEntMakeX(const resbuf* list, ads_name result) {
    Drawing& drawing = currentDrawing();
    std::vector<Group> given;
    if (!result || !readList(drawing, list, given)) return RTERROR;
    const std::string_view type = textOf(given, 0);
    if (type != "DICTIONARY" && type != "XRECORD")
        return makeGiven(drawing, given) == RTNORM ? acdbEntLast(result) : RTERROR;
    const ObjectId id = makeNamedObject(drawing, given);
    if (!id) return RTERROR;
    nameOf(id, result);
    return RTNORM;
}
}
