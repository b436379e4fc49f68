#include "platform/dao/jet/table_definition.h"

#include <algorithm>
#include <numeric>

#include "platform/text/text.h"

namespace jet {
namespace {

constexpr uint32_t kBlockMark = 1625, kIndexMark = 1923;
constexpr size_t kPageHead = 8;
constexpr size_t kIndexColumns = 10;
constexpr uint16_t kNoColumn = 0xFFFF, kEndOfMaps = 0xFFFF;
constexpr uint8_t kUserTable = 'N', kSystemTable = 'S';
constexpr uint8_t kCompressed = 0x01;
// From the type of the table on, both layouts are alike.
constexpr size_t kColumnsEver = 1, kVariableEver = 3, kColumns = 5, kNames = 7, kIndexes = 11, kOwnedMap = 15,
                 kRoomMap = 19;

struct ColumnLayout {
    size_t type, number, variableIndex, ordinal, sortOrder, sortVersion, flags, fixedOffset, length;
};
constexpr ColumnLayout kColumn3 = {0, 1, 3, 5, 9, 0, 13, 14, 16};
constexpr ColumnLayout kColumn4 = {0, 5, 7, 9, 11, 13, 15, 21, 23};
constexpr size_t kPrecisionAt = 11, kScaleAt = 12, kMoreFlagsAt = 16;

const ColumnLayout& columnLayout(const Format& format) {
    return format.unicode ? kColumn4 : kColumn3;
}

RowId pointerAt(ByteView bytes, size_t at) {
    return readPointer(bytes.part(at, 4));
}
void setPointer(ByteSpan bytes, size_t at, RowId row) {
    bytes.setU8(at, row.slot);
    bytes.setU24(at + 1, row.page);
}

// The bytes of a definition, and the pages they are on.
Bytes gather(Store& store, TableDefinition& definition) {
    PagePtr page = store.file.page(definition.page, PageType::kDefinition);
    Bytes bytes = page->bytes;
    size_t length = page->view().u32(8);
    // The longest definition has 255 columns and 32 indexes with names of 64 characters.
    constexpr size_t kLongest = size_t{128} * 1024;
    if (length < store.format.definitionEnd || length > kLongest)
        damaged("the definition on page " + std::to_string(definition.page) + " has an impossible length");
    while (bytes.size() < length) {
        uint32_t next = page->view().u32(4);
        if (next == 0) damaged("the definition on page " + std::to_string(definition.page) + " is cut off");
        page = store.file.page(next, PageType::kDefinition);
        definition.morePages.push_back(next);
        bytes.insert(bytes.end(), page->bytes.begin() + kPageHead, page->bytes.end());
    }
    bytes.resize(length);
    return bytes;
}

// Reads a definition from left to right.
class Reader {
  public:
    Reader(Store& store, ByteView bytes) : store_(store), bytes_(bytes), at_(store.format.definitionEnd) {}

    Bytes block(size_t size) {
        ByteView part = bytes_.part(at_, size);
        at_ += size;
        return part.copy();
    }
    std::string name() {
        size_t lengthSize = store_.format.unicode ? 2 : 1;
        size_t size = lengthSize == 2 ? bytes_.u16(at_) : bytes_.u8(at_);
        ByteView text = bytes_.part(at_ + lengthSize, size);
        at_ += lengthSize + size;
        return store_.text.decode(text);
    }
    bool atMaps() const { return at_ + 10 <= bytes_.size() && bytes_.u16(at_) != kEndOfMaps; }

  private:
    Store& store_;
    ByteView bytes_;
    size_t at_;
};

ColumnDefinition readColumn(const Format& format, Bytes block) {
    const ColumnLayout& at = columnLayout(format);
    ByteView view(block);
    ColumnDefinition column;
    column.type = static_cast<Type>(view.u8(at.type));
    column.number = view.u16(at.number);
    column.variableIndex = view.u16(at.variableIndex);
    column.ordinal = view.u16(at.ordinal);
    column.flags = view.u8(at.flags);
    column.fixedOffset = view.u16(at.fixedOffset);
    column.length = view.u16(at.length);
    column.sortOrder = view.u16(at.sortOrder);
    if (format.unicode) {
        column.sortVersion = view.u16(at.sortVersion);
        column.compressed = view.u8(kMoreFlagsAt) & kCompressed;
    }
    if (column.type == Type::kDecimal) {
        column.precision = view.u8(kPrecisionAt);
        column.scale = view.u8(kScaleAt);
    }
    column.block = std::move(block);
    return column;
}

Bytes columnBlock(const Format& format, const ColumnDefinition& column) {
    const ColumnLayout& at = columnLayout(format);
    Bytes block = column.block;
    ByteSpan out(block);
    out.setU8(at.type, static_cast<uint8_t>(column.type));
    out.setU16(at.number, column.number);
    out.setU16(at.variableIndex, column.variableIndex);
    out.setU16(at.ordinal, column.ordinal);
    out.setU8(at.flags, column.flags);
    out.setU16(at.fixedOffset, column.fixedOffset);
    out.setU16(at.length, column.length);
    if (column.type == Type::kDecimal) {
        out.setU8(kPrecisionAt, column.precision);
        out.setU8(kScaleAt, column.scale);
    } else {
        out.setU16(at.sortOrder, static_cast<uint16_t>(column.sortOrder));
        if (format.unicode) out.setU16(at.sortVersion, static_cast<uint16_t>(column.sortVersion));
    }
    if (format.unicode) {
        uint8_t old = out.view().u8(kMoreFlagsAt);
        out.setU8(kMoreFlagsAt,
                  static_cast<uint8_t>(column.compressed ? old | kCompressed : old & ~kCompressed));
    }
    return block;
}

IndexDefinition readIndex(const Format& format, Bytes block) {
    ByteView view = ByteView(block).from(format.blockStart);
    IndexDefinition index;
    for (size_t i = 0; i < kIndexColumns; ++i)
        if (view.u16(3 * i) != kNoColumn) index.columns.push_back({view.u16(3 * i), view.u8(3 * i + 2) != 0});
    index.map = pointerAt(view, 30);
    index.root = view.u32(34);
    index.flags = view.u8(format.unicode ? 42 : 38);
    index.block = std::move(block);
    return index;
}

Bytes indexBlock(const Format& format, const IndexDefinition& index) {
    Bytes block = index.block;
    size_t start = format.blockStart;
    ByteSpan out(block);
    for (size_t i = 0; i < kIndexColumns; ++i) {
        bool used = i < index.columns.size();
        out.setU16(start + 3 * i, used ? index.columns[i].number : kNoColumn);
        out.setU8(start + 3 * i + 2, used && index.columns[i].ascending ? 1 : 0);
    }
    setPointer(out, start + 30, index.map);
    out.setU32(start + 34, index.root);
    out.setU8(start + (format.unicode ? 42 : 38), index.flags);
    return block;
}

IndexName readIndexName(const Format& format, Bytes block) {
    ByteView view = ByteView(block).from(format.blockStart);
    IndexName name;
    name.number = view.u32(0);
    name.index = view.u32(4);
    name.otherTable = view.u32(13);
    name.kind = view.u8(19);
    name.block = std::move(block);
    return name;
}

Bytes indexNameBlock(const Format& format, const IndexName& name) {
    Bytes block = name.block;
    size_t start = format.blockStart;
    ByteSpan out(block);
    out.setU32(start, name.number);
    out.setU32(start + 4, name.index);
    out.setU32(start + 13, name.otherTable);
    out.setU8(start + 19, name.kind);
    return block;
}

void putName(const Store& store, ByteWriter& out, const std::string& name) {
    Bytes bytes = store.text.encode(name);
    if (store.format.unicode)
        out.u16(static_cast<uint16_t>(bytes.size()));
    else
        out.u8(static_cast<uint8_t>(bytes.size()));
    out.put(bytes);
}

// Some programs write a count of variable columns that is too low. Rows carry counts of their own, so that it
// is no reason to lose them. There are never more variable columns than columns.
void mendVariableCount(TableDefinition& definition) {
    for (const ColumnDefinition& column : definition.columns) {
        bool isVariable = !column.fixed() && column.type != Type::kBoolean;
        if (isVariable && column.variableIndex < definition.columnsEver)
            definition.variableEver =
                std::max(definition.variableEver, static_cast<uint16_t>(column.variableIndex + 1));
    }
}

// Column numbers and trees that a definition speaks of must exist.
void check(const TableDefinition& definition) {
    for (const ColumnDefinition& column : definition.columns)
        if (column.number >= definition.columnsEver) damaged("a column has a number that was never given");
    for (const IndexDefinition& index : definition.indexes) {
        if (index.columns.empty()) damaged("an index has no columns");
        for (const IndexColumn& column : index.columns)
            if (definition.columnOf(column.number) < 0) damaged("an index has a column that does not exist");
    }
    for (const IndexName& name : definition.indexNames)
        if (name.index >= definition.indexes.size()) damaged("an index does not exist");
}

Bytes serialized(const Store& store, const TableDefinition& definition) {
    const Format& format = store.format;
    ByteWriter out;
    out.put(definition.fixedPart);
    ByteSpan head(out.bytes);
    size_t type = format.definitionTypeAt;
    head.setU32(format.definitionRowsAt, definition.rows);
    head.setU32(format.definitionCounterAt, definition.counter);
    head.setU8(type, definition.system ? kSystemTable : kUserTable);
    head.setU16(type + kColumnsEver, definition.columnsEver);
    head.setU16(type + kVariableEver, definition.variableEver);
    head.setU16(type + kColumns, static_cast<uint16_t>(definition.columns.size()));
    head.setU32(type + kNames, static_cast<uint32_t>(definition.indexNames.size()));
    head.setU32(type + kIndexes, static_cast<uint32_t>(definition.indexes.size()));
    setPointer(head, type + kOwnedMap, definition.owned);
    setPointer(head, type + kRoomMap, definition.room);
    for (const auto& index : definition.indexes) out.put(index.counts);
    for (const auto& column : definition.columns) out.put(columnBlock(format, column));
    for (const auto& column : definition.columns) putName(store, out, column.name);
    for (const auto& index : definition.indexes) out.put(indexBlock(format, index));
    for (const auto& name : definition.indexNames) out.put(indexNameBlock(format, name));
    for (const auto& name : definition.indexNames) putName(store, out, name.name);
    for (const LongValueMaps& maps : definition.longValues) {
        out.u16(maps.column);
        writePointer(out, maps.owned);
        writePointer(out, maps.room);
    }
    out.u16(kEndOfMaps);
    ByteSpan(out.bytes).setU32(8, static_cast<uint32_t>(out.bytes.size()));
    return std::move(out.bytes);
}

}  // namespace

size_t fixedSize(Type type) {
    switch (type) {
        case Type::kByte:
            return 1;
        case Type::kInteger:
            return 2;
        case Type::kLong:
        case Type::kSingle:
            return 4;
        case Type::kCurrency:
        case Type::kDouble:
        case Type::kDate:
            return 8;
        case Type::kGuid:
            return 16;
        case Type::kDecimal:
            return 17;
        default:
            return 0;
    }
}

int TableDefinition::columnOf(uint16_t number) const {
    for (size_t i = 0; i < columns.size(); ++i)
        if (columns[i].number == number) return static_cast<int>(i);
    return -1;
}

int TableDefinition::columnNamed(std::string_view name) const {
    for (size_t i = 0; i < columns.size(); ++i)
        if (text::equalNoCase(columns[i].name, name)) return static_cast<int>(i);
    return -1;
}

std::vector<size_t> TableDefinition::userOrder() const {
    std::vector<size_t> order(columns.size());
    std::iota(order.begin(), order.end(), size_t{0});
    std::sort(order.begin(), order.end(), [&](size_t a, size_t b) {
        return std::pair(columns[a].ordinal, columns[a].number) <
               std::pair(columns[b].ordinal, columns[b].number);
    });
    return order;
}

size_t TableDefinition::fixedArea() const {
    size_t end = 0;
    for (const ColumnDefinition& column : columns) {
        if (!column.fixed() || column.type == Type::kBoolean) continue;
        size_t size = fixedSize(column.type) ? fixedSize(column.type) : column.length;
        end = std::max(end, column.fixedOffset + size);
    }
    return end;
}

const LongValueMaps* TableDefinition::mapsOf(uint16_t column) const {
    for (const LongValueMaps& maps : longValues)
        if (maps.column == column) return &maps;
    return nullptr;
}

TableDefinition readDefinition(Store& store, uint32_t page) {
    const Format& format = store.format;
    TableDefinition definition;
    definition.page = page;
    Bytes bytes = gather(store, definition);
    ByteView view(bytes);
    size_t type = format.definitionTypeAt;
    definition.fixedPart = view.part(0, format.definitionEnd).copy();
    definition.rows = view.u32(format.definitionRowsAt);
    definition.counter = view.u32(format.definitionCounterAt);
    definition.system = view.u8(type) == kSystemTable;
    definition.columnsEver = view.u16(type + kColumnsEver);
    definition.variableEver = view.u16(type + kVariableEver);
    definition.owned = pointerAt(view, type + kOwnedMap);
    definition.room = pointerAt(view, type + kRoomMap);
    size_t columns = view.u16(type + kColumns), names = view.u32(type + kNames),
           indexes = view.u32(type + kIndexes);
    constexpr size_t kMost = 1000;
    if (columns > kMost || names > kMost || indexes > kMost) damaged("a definition has too many parts");

    Reader in(store, bytes);
    for (size_t i = 0; i < indexes; ++i)
        definition.indexes.emplace_back().counts = in.block(format.indexCountsSize);
    for (size_t i = 0; i < columns; ++i)
        definition.columns.push_back(readColumn(format, in.block(format.columnSize)));
    for (ColumnDefinition& column : definition.columns) column.name = in.name();
    for (IndexDefinition& index : definition.indexes) {
        Bytes counts = std::move(index.counts);
        index = readIndex(format, in.block(format.indexSize));
        index.counts = std::move(counts);
    }
    for (size_t i = 0; i < names; ++i)
        definition.indexNames.push_back(readIndexName(format, in.block(format.indexNameSize)));
    for (IndexName& name : definition.indexNames) name.name = in.name();
    while (in.atMaps()) {
        Bytes block = in.block(10);
        definition.longValues.push_back({ByteView(block).u16(0), pointerAt(block, 2), pointerAt(block, 6)});
    }
    mendVariableCount(definition);
    check(definition);
    return definition;
}

void writeDefinition(Store& store, TableDefinition& definition) {
    const Format& format = store.format;
    Bytes bytes = serialized(store, definition);
    size_t room = format.pageSize - kPageHead;
    size_t pages = (bytes.size() - kPageHead + room - 1) / room;
    while (definition.morePages.size() + 1 > pages) {
        store.allocator.give(definition.morePages.back());
        definition.morePages.pop_back();
    }
    while (definition.morePages.size() + 1 < pages) definition.morePages.push_back(store.allocator.take());
    size_t at = kPageHead;
    for (size_t i = 0; i < pages; ++i) {
        ByteSpan page = store.file.writable(i == 0 ? definition.page : definition.morePages[i - 1]);
        size_t size = std::min(room, bytes.size() - at);
        page.fill(0, page.size(), 0);
        page.setU8(0, static_cast<uint8_t>(PageType::kDefinition));
        page.setU8(1, 1);
        // Access 97 has two letters here, Access 2000 the room that is left.
        size_t left = room - size;
        page.setU16(2, format.unicode ? static_cast<uint16_t>(left >= 8 ? left - 8 : 0) : 0x4356);
        page.setU32(4, i + 1 < pages ? definition.morePages[i] : 0);
        page.set(kPageHead, ByteView(bytes).part(at, size));
        at += size;
    }
    definition.fixedPart = ByteView(bytes).part(0, format.definitionEnd).copy();
}

void writeRowCount(Store& store, const TableDefinition& definition) {
    store.file.writable(definition.page).setU32(store.format.definitionRowsAt, definition.rows);
}
void writeCounter(Store& store, const TableDefinition& definition) {
    store.file.writable(definition.page).setU32(store.format.definitionCounterAt, definition.counter);
}

Bytes newColumnBlock(const Store& store) {
    Bytes block(store.format.columnSize);
    ByteSpan out(block);
    if (store.format.unicode)
        out.setU32(1, kBlockMark);
    else
        out.setU16(11, static_cast<uint16_t>(store.text.codePage()));
    return block;
}

Bytes newIndexBlock(const Store& store) {
    Bytes block(store.format.indexSize);
    if (store.format.unicode) ByteSpan(block).setU32(0, kIndexMark);
    return block;
}

Bytes newIndexNameBlock(const Store& store) {
    Bytes block(store.format.indexNameSize);
    ByteSpan out(block);
    size_t start = store.format.blockStart;
    if (store.format.unicode) out.setU32(0, kBlockMark);
    out.setU32(start + 9, 0xFFFFFFFF);  // no other side of a relation
    constexpr uint8_t kNoCascade = 4;
    out.setU8(start + 17, kNoCascade);
    out.setU8(start + 18, kNoCascade);
    return block;
}

Bytes newFixedPart(const Store& store) {
    Bytes part(store.format.definitionEnd);
    if (store.format.unicode) {
        ByteSpan out(part);
        out.setU32(12, kBlockMark);
        out.setU32(24, 1);
    }
    return part;
}

}  // namespace jet
