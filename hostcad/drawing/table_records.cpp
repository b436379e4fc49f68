// Records and block definitions that are made on the way.
#include <algorithm>

#include "hostcad/drawing/entity_builder.h"

namespace hostcad {

std::vector<Group> recordGroups(Drawing& drawing, std::string_view table, std::string_view marker,
                                Groups own) {
    GroupArena& arena = drawing.arena();
    std::vector<Group> groups{arena.text(0, table), handleGroup(5, drawing.newHandle())};
    if (hasSubclasses(drawing.version())) {
        ObjectId tableId = drawing.table(table);
        groups.push_back(handleGroup(330, tableId ? drawing.object(tableId).handle : 0));
        groups.push_back(arena.text(100, "AcDbSymbolTableRecord"));
        groups.push_back(arena.text(100, marker));
    }
    groups.insert(groups.end(), own.begin(), own.end());
    return groups;
}

ObjectId ensureLayer(Drawing& drawing, std::string_view name) {
    if (ObjectId found = drawing.record("LAYER", name)) return found;
    GroupArena& arena = drawing.arena();
    std::vector<Group> own{arena.text(2, name), integerGroup(70, 0), integerGroup(62, 7),
                           arena.text(6, "Continuous")};
    // What later versions say of a layer beyond that is taken from layer 0.
    ObjectId zero = drawing.record("LAYER", "0");
    if (zero && hasSubclasses(drawing.version()))
        for (int code : {370, 390, 347, 348})
            if (const Group* group = find(drawing.groups(zero), code)) own.push_back(*group);
    return drawing.appendRecord("LAYER", recordGroups(drawing, "LAYER", "AcDbLayerTableRecord", own));
}

ObjectId ensureApplication(Drawing& drawing, std::string_view name) {
    if (ObjectId found = drawing.record("APPID", name)) return found;
    std::vector<Group> own{drawing.arena().text(2, name), integerGroup(70, 0)};
    return drawing.appendRecord("APPID", recordGroups(drawing, "APPID", "AcDbRegAppTableRecord", own));
}

ObjectId addBlock(Drawing& drawing, std::string_view name, int64_t flags, double x, double y, double z) {
    GroupArena& arena = drawing.arena();
    bool markers = hasSubclasses(drawing.version());
    std::vector<Group> begin{arena.text(0, "BLOCK"), handleGroup(5, drawing.newHandle())};
    std::vector<Group> end{arena.text(0, "ENDBLK"), handleGroup(5, drawing.newHandle())};
    if (markers) {
        std::vector<Group> own{arena.text(2, name), handleGroup(340, 0)};
        ObjectId record = drawing.appendRecord(
            "BLOCK_RECORD", recordGroups(drawing, "BLOCK_RECORD", "AcDbBlockTableRecord", own));
        for (auto* groups : {&begin, &end}) {
            groups->push_back(handleGroup(330, drawing.object(record).handle));
            groups->push_back(arena.text(100, "AcDbEntity"));
        }
    }
    begin.push_back(arena.text(8, "0"));
    end.push_back(arena.text(8, "0"));
    if (markers) {
        begin.push_back(arena.text(100, "AcDbBlockBegin"));
        end.push_back(arena.text(100, "AcDbBlockEnd"));
    }
    for (const Group& group : {arena.text(2, name), integerGroup(70, flags), arena.point(10, x, y, z),
                               arena.text(3, name), arena.text(1, "")})
        begin.push_back(group);
    return drawing.appendBlock(begin, end);
}

bool isSymbolName(std::string_view name, bool allowBar) {
    constexpr size_t kLongest = 255;
    if (name.empty() || name.size() > 4 * kLongest) return false;
    size_t characters = 0;
    for (char c : name) {
        bool continues = (static_cast<unsigned char>(c) & 0xC0) == 0x80;
        characters += !continues;
        if (static_cast<unsigned char>(c) < ' ' ||
            std::string_view("<>/\\\":;?*,=`").find(c) != std::string_view::npos)
            return false;
        if (c == '|' && !allowBar) return false;
    }
    return characters <= kLongest;
}

}  // namespace hostcad
