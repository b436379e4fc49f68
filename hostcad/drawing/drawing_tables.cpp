// Symbol tables and block definitions of a drawing.
#include <algorithm>

#include "hostcad/drawing/drawing.h"
#include "platform/text/text.h"

namespace hostcad {
namespace {

// Older files name the spaces with a dollar sign.
std::string symbolKey(std::string_view name) {
    std::string key = text::upper(name);
    if (key == "$MODEL_SPACE" || key == "$PAPER_SPACE") key[0] = '*';
    return key;
}

}  // namespace

ObjectId Drawing::table(std::string_view name) const {
    auto found = tables_.find(text::upper(name));
    return found == tables_.end() ? 0 : found->second;
}

const Drawing::SymbolIndex& Drawing::symbols(ObjectId table) const {
    SymbolIndex& index = symbolIndexes_[table];
    if (index.valid) return index;
    index.ids.clear();
    for (ObjectId id = firstPart(table); id; id = nextPart(id)) index.ids.emplace(symbolKey(symbol(id)), id);
    index.valid = true;
    return index;
}

const Drawing::SymbolIndex& Drawing::blockSymbols() const {
    if (blockIndex_.valid) return blockIndex_;
    blockIndex_.ids.clear();
    for (ObjectId id = firstBlock(); id; id = nextBlock(id))
        blockIndex_.ids.emplace(symbolKey(symbol(id)), id);
    blockIndex_.valid = true;
    return blockIndex_;
}

void Drawing::forgetSymbols(ObjectId id) {
    const Object& object = objects_[id];
    if (object.kind == ObjectKind::Block) blockIndex_.valid = false;
    if (object.kind == ObjectKind::Record) symbolIndexes_[object.owner].valid = false;
}

ObjectId Drawing::record(std::string_view tableName, std::string_view name) const {
    ObjectId id = table(tableName);
    if (!id) return 0;
    const auto& ids = symbols(id).ids;
    auto found = ids.find(symbolKey(name));
    return found == ids.end() ? 0 : found->second;
}

ObjectId Drawing::appendRecord(std::string_view tableName, Groups groups) {
    ObjectId tableId = table(tableName);
    if (!tableId) {
        std::string name = text::upper(tableName);
        std::vector<Group> head{arena_.text(0, "TABLE"), arena_.text(2, name)};
        if (hasSubclasses(version())) {
            head.push_back(handleGroup(5, newHandle()));
            head.push_back(handleGroup(330, 0));
            head.push_back(arena_.text(100, "AcDbSymbolTable"));
        }
        head.push_back(integerGroup(70, 0));
        tableId = add(ObjectKind::Table, head);
        linkInto(section("TABLES"), tableId);
        tables_.emplace(name, tableId);
    }
    ObjectId id = add(ObjectKind::Record, groups);
    linkPart(tableId, id);
    added(id);
    return id;
}

// The block of a space. A file of an old version may have none: then one that is never written stands for it.
ObjectId Drawing::spaceNamed(std::string_view name) {
    if (ObjectId found = block(name)) return found;
    std::vector<Group> begin{arena_.text(0, "BLOCK"), arena_.text(2, name), integerGroup(70, 0)};
    ObjectId id = add(ObjectKind::Block, begin);
    objects_[id].hidden = true;
    linkInto(section("BLOCKS"), id);
    blockIndex_.valid = false;
    return id;
}

ObjectId Drawing::currentSpace() const {
    return headerInteger("$TILEMODE", 1) ? modelSpace_ : paperSpace_;
}

ObjectId Drawing::firstBlock() const {
    for (const Section& s : sections_) {
        if (s.name != "BLOCKS") continue;
        ObjectId id = firstLiving(s.first);
        return !id || objects_[id].kind == ObjectKind::Block ? id : nextBlock(id);
    }
    return 0;
}

ObjectId Drawing::nextBlock(ObjectId block) const {
    do block = firstLiving(objects_[block].next);
    while (block && objects_[block].kind != ObjectKind::Block);
    return block;
}

ObjectId Drawing::block(std::string_view name) const {
    const auto& ids = blockSymbols().ids;
    auto found = ids.find(symbolKey(name));
    return found == ids.end() ? 0 : found->second;
}

ObjectId Drawing::recordOfBlock(ObjectId block) const {
    ObjectId id = record("BLOCK_RECORD", symbol(block));
    return id ? id : block;
}

ObjectId Drawing::blockOfRecord(ObjectId record) const {
    return objects_[record].kind == ObjectKind::Block ? record : block(symbol(record));
}

bool hasAttributeDefinitions(const Drawing& drawing, ObjectId block) {
    constexpr int64_t kConstant = 2;
    for (ObjectId id = drawing.firstEntityOf(block); id; id = drawing.nextEntityOf(block, id))
        if (drawing.type(id) == "ATTDEF" && !(integerOf(drawing.groups(id), 70) & kConstant)) return true;
    return false;
}

bool isFurtherSheet(const Drawing& drawing, ObjectId block) {
    constexpr std::string_view kPrefix = "*PAPER_SPACE";
    return text::startsWith(text::upper(drawing.symbol(block)), kPrefix) && !drawing.isSpace(block);
}

}  // namespace hostcad
