// The columns of the table that goes out with shapes.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "module/transfer/column_needs.h"
#include "module/transfer/linked_records.h"

namespace norvane {

// A name of at most 10 characters for each name, without regard to what is not in `names`. Those that are
// short enough stay. A longer one is cut; where that name is taken, its first 9 characters get a number from
// 1 on. A number of two digits makes 11 characters, which a table cuts to a name that it has already.
std::vector<std::string> ShortColumnNames(std::span<const std::string> names);

class ExportColumns {
  public:
    // extra: also those that come from the drawing and not from records. Where no table has a field, these
    // are always there.
    ExportColumns(int32_t shapeType, bool extra, std::span<const LinkedTable* const> tables);

    // Adds them to a new table. Those that it has no room for are left out; how many.
    int addTo(DbfHandle& table);

    // The index of a column in the table; -1 where it has none of this name.
    int index(const std::string& name) const;
    bool isText(int column) const;
    // For each field of a table the index of its column, or -1 where it is written from the drawing.
    std::vector<int> columnsOf(const LinkedTable& table) const;

  private:
    int32_t shapeType_;
    struct Column {
        std::string name;
        ColumnShape shape;
    };
    std::vector<Column> columns_;  // as many as the table has room for, once they were added
};

}  // namespace norvane
