#include "platform/dao/jet/schema.h"

#include <algorithm>

#include "platform/text/text.h"

namespace jet {
namespace {

constexpr size_t kMostColumns = 255, kMostIndexes = 32, kMostIndexColumns = 10;

void checkName(const Store& store, const std::string& name, const char* what) {
    constexpr size_t kLongest = 64;
    bool good = !name.empty() && store.text.length(name) <= kLongest && name.front() != ' ' &&
                name.find_first_of(".![]`") == std::string::npos &&
                std::none_of(name.begin(), name.end(), [](char c) { return c >= 0 && c < 32; });
    if (!good) throw Error("\"" + name + "\" is not a valid name of a " + what + ".");
}

uint16_t lengthOf(const Store& store, const Column& column) {
    switch (column.type) {
        case Type::kBoolean:
            return 1;
        case Type::kText: {
            constexpr int kMost = 255;
            if (column.size < 1 || column.size > kMost)
                throw Error("The column " + column.name + " cannot be larger than 255.");
            return static_cast<uint16_t>(static_cast<size_t>(column.size) * store.text.unitSize());
        }
        case Type::kBinary: {
            int most = store.format.unicode ? 510 : 255;
            if (column.size < 1 || column.size > most)
                throw Error("The column " + column.name + " cannot be larger than " + std::to_string(most) +
                            ".");
            return static_cast<uint16_t>(column.size);
        }
        case Type::kMemo:
        case Type::kOle:
            return 0;
        case Type::kDecimal:
            if (!store.format.unicode) throw Error("Access 97 has no columns of decimal numbers.");
            [[fallthrough]];
        default:
            if (fixedSize(column.type) == 0)
                throw Error("The column " + column.name + " is of an unknown type.");
            return static_cast<uint16_t>(fixedSize(column.type));
    }
}

bool isVariable(Type type) {
    return type == Type::kText || type == Type::kBinary || isLongValue(type);
}

}  // namespace

RowId MapSpace::add(uint32_t near) {
    Bytes map = UsageMap::empty(store_.format);
    for (uint32_t candidate : {near, store_.mapPage}) {
        // The page of the last time may have gone to another use.
        if (candidate == 0 || candidate >= store_.file.pageCount()) continue;
        PagePtr page = store_.file.page(candidate);
        if (page->bytes[0] != static_cast<uint8_t>(PageType::kData)) continue;
        DataPage data(store_.format, page->view());
        if (data.owner() != kMapOwner || !data.inUse() || !data.takes(map.size())) continue;
        store_.mapPage = candidate;
        return {candidate, addRow(store_.format, store_.file.writable(candidate), map)};
    }
    uint32_t page = store_.mapPage = store_.allocator.take();
    initDataPage(store_.format, store_.file.writable(page), kMapOwner);
    return {page, addRow(store_.format, store_.file.writable(page), map)};
}

void MapSpace::remove(RowId map) {
    if (map.page == 0) return;
    for (uint32_t page : UsageMap(store_.file, map).bitmapPages()) store_.allocator.give(page);
    ByteSpan page = store_.file.writable(map.page);
    deleteRow(store_.format, page, map.slot);
    DataPage data(store_.format, page);
    if (!data.inUse() && data.owner() == kMapOwner) store_.allocator.give(map.page);
}

TableDefinition newDefinition(Store& store, uint32_t page, const std::vector<Column>& columns, bool system,
                              uint32_t mapPage) {
    if (columns.empty()) throw Error("A table needs a column.");
    TableDefinition definition;
    definition.page = page;
    definition.system = system;
    definition.fixedPart = newFixedPart(store);
    definition.owned = MapSpace(store).add(mapPage);
    definition.room = MapSpace(store).add(definition.owned.page);
    for (const Column& column : columns) addColumnTo(store, definition, column);
    return definition;
}

void addColumnTo(Store& store, TableDefinition& definition, const Column& column) {
    checkName(store, column.name, "column");
    if (definition.columnNamed(column.name) >= 0)
        throw Error("A column named " + column.name + " exists already.");
    if (definition.columnsEver >= kMostColumns)
        throw Error("A table holds at most 255 columns, deleted ones counted.");
    ColumnDefinition added;
    added.name = column.name;
    added.type = column.type;
    added.block = newColumnBlock(store);
    added.number = definition.columnsEver;
    added.variableIndex = definition.variableEver;
    added.ordinal = definition.columnsEver;
    added.length = lengthOf(store, column);
    added.sortOrder = store.header.sortOrder;
    added.sortVersion = store.header.sortVersion;
    added.precision = static_cast<uint8_t>(column.precision);
    added.scale = static_cast<uint8_t>(column.scale);
    added.flags = definition.system ? ColumnDefinition::kSystem : 0;
    added.flags |= ColumnDefinition::kUpdatable;
    if (column.autonumber) {
        if (column.type != Type::kLong) throw Error("Only a column of the type Long can count by itself.");
        for (const ColumnDefinition& other : definition.columns)
            if (other.autonumber()) throw Error("The table has a column that counts by itself already.");
        added.flags |= ColumnDefinition::kAutonumber;
    }
    if (isVariable(column.type) && !column.fixed) {
        ++definition.variableEver;
    } else {
        added.flags |= ColumnDefinition::kFixed;
        added.fixedOffset = static_cast<uint16_t>(definition.fixedArea());
    }
    added.compressed = store.format.unicode && column.type == Type::kText && !definition.system;
    ++definition.columnsEver;
    if (isLongValue(column.type)) {
        RowId owned = MapSpace(store).add(definition.owned.page);
        definition.longValues.push_back({added.number, owned, MapSpace(store).add(owned.page)});
    }
    definition.columns.push_back(std::move(added));
    if (definition.fixedArea() > store.format.longestRow)
        throw Error("The records of the table would be too large.");
}

void removeColumnFrom(Store& store, TableDefinition& definition, size_t column) {
    const ColumnDefinition& removed = definition.columns[column];
    for (const IndexDefinition& index : definition.indexes)
        for (const IndexColumn& part : index.columns)
            if (part.number == removed.number)
                throw Error("The column " + removed.name + " is part of an index.");
    if (definition.columns.size() == 1)
        throw Error("The column " + removed.name + " is the only one of its table.");
    std::erase_if(definition.longValues, [&](const LongValueMaps& maps) {
        if (maps.column != removed.number) return false;
        for (uint32_t page : UsageMap(store.file, maps.owned).pages()) store.allocator.give(page);
        MapSpace(store).remove(maps.owned);
        MapSpace(store).remove(maps.room);
        return true;
    });
    definition.columns.erase(definition.columns.begin() + static_cast<long>(column));
}

void addIndexTo(Store& store, TableDefinition& definition, const Index& index) {
    checkName(store, index.name, "index");
    if (index.columns.empty() || index.columns.size() > kMostIndexColumns)
        throw Error("An index has one to ten columns.");
    if (definition.indexes.size() >= kMostIndexes) throw Error("A table has at most 32 indexes.");
    IndexDefinition tree;
    for (const Index::Part& part : index.columns) {
        int column = definition.columnNamed(part.column);
        if (column < 0) throw Error("Cannot find the column " + part.column + ".");
        tree.columns.push_back({definition.columns[static_cast<size_t>(column)].number, part.ascending});
    }
    constexpr uint8_t kAlwaysIn2000 = 0x80;
    tree.flags = store.format.unicode ? kAlwaysIn2000 : 0;
    if (index.unique || index.primary) tree.flags |= IndexDefinition::kUnique;
    if (index.primary) tree.flags |= IndexDefinition::kNoNulls;
    if (index.ignoreNulls) tree.flags |= IndexDefinition::kIgnoreNulls;
    tree.block = newIndexBlock(store);
    tree.counts.resize(store.format.indexCountsSize);
    IndexName name;
    for (const IndexName& other : definition.indexNames) {
        if (text::equalNoCase(other.name, index.name))
            throw Error("An index named " + index.name + " exists already.");
        if (index.primary && other.kind == IndexName::kPrimary)
            throw Error("The table has a primary key already.");
        name.number = std::max(name.number, other.number + 1);
    }
    name.name = index.name;
    name.index = static_cast<uint32_t>(definition.indexes.size());
    name.kind = index.primary ? IndexName::kPrimary : IndexName::kPlain;
    name.block = newIndexNameBlock(store);
    tree.map = MapSpace(store).add(definition.owned.page);
    tree.root = store.allocator.take();
    IndexPage().write(store.file, definition.page, tree.root);
    UsageMap(store.file, tree.map).set(tree.root, true, [&] { return store.allocator.take(); });
    definition.indexes.push_back(std::move(tree));
    definition.indexNames.push_back(std::move(name));
    // Names stand in their order.
    std::stable_sort(
        definition.indexNames.begin(), definition.indexNames.end(),
        [](const IndexName& a, const IndexName& b) { return text::upper(a.name) < text::upper(b.name); });
}

void placeDefinition(Store& store, TableDefinition& definition, uint32_t page, uint32_t mapPage) {
    definition.page = page;
    definition.morePages.clear();
    definition.rows = 0;
    MapSpace maps(store);
    definition.owned = maps.add(mapPage);
    definition.room = maps.add(definition.owned.page);
    for (LongValueMaps& values : definition.longValues) {
        if (values.owned.page == 0) continue;
        values.owned = maps.add(definition.owned.page);
        values.room = maps.add(values.owned.page);
    }
    for (IndexDefinition& index : definition.indexes) {
        index.map = maps.add(definition.owned.page);
        index.root = store.allocator.take();
        IndexPage().write(store.file, definition.page, index.root);
        UsageMap(store.file, index.map).set(index.root, true, [&] { return store.allocator.take(); });
    }
}

void dropStorage(Store& store, const TableDefinition& definition) {
    auto drop = [&](RowId owned, RowId room) {
        for (uint32_t page : UsageMap(store.file, owned).pages()) store.allocator.give(page);
        MapSpace(store).remove(owned);
        MapSpace(store).remove(room);
    };
    for (const IndexDefinition& index : definition.indexes) drop(index.map, {});
    for (const LongValueMaps& maps : definition.longValues) drop(maps.owned, maps.room);
    drop(definition.owned, definition.room);
    for (uint32_t page : definition.morePages) store.allocator.give(page);
    store.allocator.give(definition.page);
}

void readColumnProperties(const Store& store, const Properties& properties, Column& column) {
    column.required = properties.isTrue(column.name, "Required", false);
    bool isText = column.type == Type::kText || column.type == Type::kMemo;
    column.allowZeroLength = isText && properties.isTrue(column.name, "AllowZeroLength", true);
    column.defaultValue = properties.text(store.text, column.name, "DefaultValue");
    column.validationRule = properties.text(store.text, column.name, "ValidationRule");
    column.validationText = properties.text(store.text, column.name, "ValidationText");
}

void writeColumnProperties(const Store& store, Properties& properties, const Column& column) {
    // Both are written always for text: what their absence means is not certain.
    if (column.type == Type::kText || column.type == Type::kMemo)
        properties.setFlag(column.name, "AllowZeroLength", column.allowZeroLength);
    if (column.required || column.type == Type::kText || column.type == Type::kMemo)
        properties.setFlag(column.name, "Required", column.required);
    properties.setText(store.text, column.name, "DefaultValue", column.defaultValue);
    properties.setText(store.text, column.name, "ValidationRule", column.validationRule);
    properties.setText(store.text, column.name, "ValidationText", column.validationText);
}

}  // namespace jet
