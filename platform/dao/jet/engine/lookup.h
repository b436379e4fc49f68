// Finding records by the values of columns that have no index.
//
// A lookup is made of one walk through the table and kept in memory, so that the next search does not walk
// again. What it finds is a choice of records: those of other values that share a number with the wanted ones
// may be among them.
#pragma once

#include <unordered_map>
#include <vector>

#include "platform/dao/jet/database.h"

namespace dao::access {

class Lookup {
  public:
    // columns: positions in the definition of the table.
    Lookup(std::shared_ptr<jet::Records> records, std::vector<size_t> columns);

    const std::vector<size_t>& columns() const { return columns_; }
    // A record that was added or changed. values: in the order of the definition.
    void add(jet::RowId row, const std::vector<Variant>& values);
    std::vector<jet::RowId> find(const std::vector<Variant>& values) const;

  private:
    std::vector<size_t> columns_;
    std::unordered_multimap<uint64_t, uint32_t> rows_;
};

}  // namespace dao::access
