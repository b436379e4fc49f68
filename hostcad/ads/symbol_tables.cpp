// Symbol tables by their names.
#include <map>

#include "hostcad/ads/group_lists.h"
#include "hostcad/drawing/entity_builder.h"
#include "hostcad/drawing/host_names.h"
#include "platform/ads/entities.h"
#include "platform/text/text.h"

using namespace hostcad;

namespace {

bool isBlockTable(std::string_view table) {
    return text::equalNoCase(table, "BLOCK");
}

ObjectId firstSymbol(const Drawing& drawing, std::string_view table) {
    if (isBlockTable(table)) return drawing.firstBlock();
    ObjectId id = drawing.table(table);
    return id ? drawing.firstPart(id) : kNoObject;
}

ObjectId nextSymbol(const Drawing& drawing, std::string_view table, ObjectId id) {
    return isBlockTable(table) ? drawing.nextBlock(id) : drawing.nextPart(id);
}

// Where the next acdbTblNext goes on, by table.
std::map<std::string, ObjectId>& cursors() {
    static std::map<std::string, ObjectId> positions;
    static long serial = 0;
    if (serial != currentDrawing().serial()) {
        serial = currentDrawing().serial();
        positions.clear();
    }
    return positions;
}

resbuf* blockList(const Drawing& drawing, ObjectId block) {
    constexpr int64_t kHasAttributes = 2;
    Groups groups = drawing.groups(block);
    ResultChain list;
    list.addText(0, "BLOCK");
    list.addText(2, drawing.symbol(block));
    list.addInteger(70,
                    integerOf(groups, 70) | (hasAttributeDefinitions(drawing, block) ? kHasAttributes : 0));
    if (const Group* origin = find(groups, 10)) addGroup(list, drawing, *origin);
    ObjectId first = drawing.firstEntityOf(block);
    addName(list, -2, first ? first : drawing.object(block).end);
    return list.take();
}

// What only the file needs of a record: handle, owner, markers. In a dimension style group 5 is a block's
// name.
bool isInFileOnly(int code, std::string_view type) {
    return (code == 5 && type != "DIMSTYLE") || code == 105 || code == 330 || code == 100 || code == 102;
}

resbuf* recordList(const Drawing& drawing, ObjectId record) {
    constexpr int64_t kReferenced = 64;  // says nothing since the table was last cleaned up
    ResultChain list;
    bool control = false;
    for (const Group& group : drawing.groups(record)) {
        if (group.code >= kFirstXDataCode) break;
        if (group.code == 102) control = group.text() != "}";
        if (control || isInFileOnly(group.code, drawing.type(record))) continue;
        if (group.code == 70)
            list.addInteger(70, group.asInteger() & ~kReferenced);
        else
            addGroup(list, drawing, group);
    }
    return list.take();
}

resbuf* symbolList(const Drawing& drawing, ObjectId id) {
    return drawing.object(id).kind == ObjectKind::Block ? blockList(drawing, id) : recordList(drawing, id);
}

ObjectId findSymbol(const Drawing& drawing, std::string_view table, std::string_view symbol) {
    return isBlockTable(table) ? drawing.block(symbol) : drawing.record(table, symbol);
}

}  // namespace

extern "C" {

resbuf* acdbTblNext(const char* table, int rewind) {
    if (!table) return nullptr;
    const Drawing& drawing = currentDrawing();
    auto& positions = cursors();
    auto found = positions.find(text::upper(table));
    bool start = rewind != 0 || found == positions.end();
    ObjectId id = start           ? firstSymbol(drawing, table)
                  : found->second ? nextSymbol(drawing, table, found->second)
                                  : kNoObject;
    // The spaces are no blocks for those who walk the table.
    while (id && drawing.isSpace(id)) id = nextSymbol(drawing, table, id);
    positions[text::upper(table)] = id;
    return id ? symbolList(drawing, id) : nullptr;
}

resbuf* acdbTblSearch(const char* table, const char* symbol, int setNext) {
    if (!table || !symbol) return nullptr;
    const Drawing& drawing = currentDrawing();
    ObjectId id = findSymbol(drawing, table, symbol);
    if (!id) return nullptr;
    if (setNext) cursors()[text::upper(table)] = id;
    return symbolList(drawing, id);
}

int acdbTblObjName(const char* table, const char* symbol, ads_name name) {
    if (!table || !symbol) return RTERROR;
    const Drawing& drawing = currentDrawing();
    ObjectId id = findSymbol(drawing, table, symbol);
    if (!id) return RTERROR;
    nameOf(drawing.object(id).kind == ObjectKind::Block ? drawing.recordOfBlock(id) : id, name);
    return RTNORM;
}

int acdbRegApp(const char* application) {
    constexpr size_t kLongestName = 31;
    Drawing& drawing = currentDrawing();
    bool valid = application && isSymbolName(application, false) &&
                 (hasSubclasses(drawing.version()) || std::string_view(application).size() <= kLongestName);
    if (!valid) return RTERROR;
    ensureApplication(drawing, application);
    return RTNORM;
}

int acdbSNValid(const char* name, int allowBar) {
    return name && isSymbolName(name, allowBar != 0) ? RTNORM : RTERROR;
}
}
