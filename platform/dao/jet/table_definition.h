// The definition of a table: its columns and indexes, and where its rows are.
//
// A definition is one string of bytes over a chain of pages. What is not understood of a block is kept as it
// was read and written back unchanged.
#pragma once

#include <string>
#include <vector>

#include "platform/dao/jet/data_page.h"
#include "platform/dao/jet/store.h"

namespace jet {

// The types of columns, by the numbers that stand in the files.
enum class Type : uint8_t {
    kBoolean = 1,
    kByte = 2,
    kInteger = 3,
    kLong = 4,
    kCurrency = 5,
    kSingle = 6,
    kDouble = 7,
    kDate = 8,
    kBinary = 9,
    kText = 10,
    kOle = 11,
    kMemo = 12,
    kGuid = 15,
    kDecimal = 16,
    kLargeBinary = 17,  // up to 3992 bytes in the row; only Access makes such columns, for itself
};

// The bytes of a type in a row; 0 for types without a fixed size, and for Yes/No, which is a bit of the mask.
size_t fixedSize(Type type);
inline bool isLongValue(Type type) {
    return type == Type::kMemo || type == Type::kOle;
}

struct ColumnDefinition {
    static constexpr uint8_t kFixed = 0x01, kUpdatable = 0x02, kAutonumber = 0x04, kSystem = 0x10,
                             kAutoGuid = 0x40;

    Type type = Type::kText;
    uint16_t number = 0;         // never given again
    uint16_t variableIndex = 0;  // of a fixed column: the number of variable columns before it
    uint16_t ordinal = 0;
    uint8_t flags = 0;
    bool compressed = false;   // text may be stored compressed
    uint16_t fixedOffset = 0;  // in the fixed part of a row
    uint16_t length = 0;       // bytes of text
    uint8_t precision = 0, scale = 0;
    int sortOrder = 0, sortVersion = 0;
    std::string name;
    Bytes block;

    bool fixed() const { return flags & kFixed; }
    bool autonumber() const { return flags & kAutonumber; }
};

struct IndexColumn {
    uint16_t number;
    bool ascending;
};

// A tree of keys.
struct IndexDefinition {
    static constexpr uint8_t kUnique = 0x01, kIgnoreNulls = 0x02, kNoNulls = 0x08;

    std::vector<IndexColumn> columns;
    RowId map;
    uint32_t root = 0;
    uint8_t flags = 0;
    Bytes counts;
    Bytes block;

    bool unique() const { return flags & kUnique; }
};

// A name for a tree: an index, or one side of a relation.
struct IndexName {
    enum Kind : uint8_t { kPlain = 0, kPrimary = 1, kRelation = 2 };

    std::string name;
    uint32_t number = 0;
    uint32_t index = 0;  // which tree
    uint32_t otherTable = 0;
    uint8_t kind = kPlain;
    Bytes block;
};

// Where the pages of the long values of a column are told.
struct LongValueMaps {
    uint16_t column = 0;
    RowId owned, room;
};

struct TableDefinition {
    uint32_t page = 0;
    std::vector<uint32_t> morePages;
    uint32_t rows = 0;
    uint32_t counter = 0;  // the last autonumber
    bool system = false;
    uint16_t columnsEver = 0;
    uint16_t variableEver = 0;
    RowId owned, room;
    std::vector<ColumnDefinition> columns;  // in the order of the file
    std::vector<IndexDefinition> indexes;
    std::vector<IndexName> indexNames;
    std::vector<LongValueMaps> longValues;
    Bytes fixedPart;

    // Position of a column by its number, or by its name without regard to case; -1.
    int columnOf(uint16_t number) const;
    int columnNamed(std::string_view name) const;
    // Positions of the columns in the order in which users see them.
    std::vector<size_t> userOrder() const;
    // Size of the fixed part of a new row.
    size_t fixedArea() const;
    const LongValueMaps* mapsOf(uint16_t column) const;
};

TableDefinition readDefinition(Store& store, uint32_t page);
// Writes a definition over its pages, and takes or gives back pages as it has become longer or shorter.
void writeDefinition(Store& store, TableDefinition& definition);

// The counts that change with every row.
void writeRowCount(Store& store, const TableDefinition& definition);
void writeCounter(Store& store, const TableDefinition& definition);

// The block of a new column or index, to be completed by writeDefinition.
Bytes newColumnBlock(const Store& store);
Bytes newIndexBlock(const Store& store);
Bytes newIndexNameBlock(const Store& store);
Bytes newFixedPart(const Store& store);

}  // namespace jet
