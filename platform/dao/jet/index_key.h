// Keys of index entries: the values of a row in the columns of an index, so that bytes compare as values do.
#pragma once

#include <optional>

#include "platform/dao/jet/table_definition.h"
#include "platform/dao/jet/value_codec.h"

namespace jet {

class KeyMaker {
  public:
    KeyMaker(const Store& store, const TableDefinition& table, const IndexDefinition& index);

    // Why keys of this index cannot be made; "" when they can.
    const std::string& obstacle() const { return obstacle_; }
    // Positions of the columns in the table.
    const std::vector<size_t>& columns() const { return columns_; }

    struct Key {
        Bytes bytes;
        bool hasNull = false;
    };
    // The key of a row, by its values in the order of columns(); nothing for a row that the index leaves out.
    std::optional<Key> key(const std::vector<Value>& values) const;
    // Appends the key of one column.
    void append(ByteWriter& out, size_t column, const Value& value) const;

  private:
    const Store& store_;
    const TableDefinition& table_;
    const IndexDefinition& index_;
    std::vector<size_t> columns_;
    std::string obstacle_;
};

}  // namespace jet
