// Finding records by the values of columns that have no index.
//
// A lookup is made of one walk through the table and kept in memory, so that the next search does not walk
// again. What it finds is a choice of records: those of other values that share a number with the wanted ones
// may be among them.
#pragma once

#include <list>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/dao/jet/database.h"

namespace dao::access {

class Lookup {
  public:
    // columns: positions in the definition of the table.
    Lookup(const std::shared_ptr<jet::Records>& records, std::vector<size_t> columns);

    const std::vector<size_t>& columns() const { return columns_; }
    // A record that was added or changed. values: in the order of the definition.
    void add(jet::RowId row, const std::vector<Variant>& values);
    std::vector<jet::RowId> find(const std::vector<Variant>& values) const;
    size_t size() const { return rows_.size() + added_.size(); }

  private:
    struct Entry {
        uint32_t number, row;
    };

    std::vector<size_t> columns_;
    std::vector<Entry> rows_;  // of the walk, by their numbers
    std::unordered_multimap<uint32_t, uint32_t> added_;
};

// Lookups of databases that this process has closed. Who opens one again, finding the file as it was left,
// need not walk through its tables anew.
class LookupStore {
  public:
    static LookupStore& instance();

    void keep(const jet::FileState& state, const std::string& table, std::list<Lookup> lookups);
    // The lookups of a table, if the file is still in the state in which they were kept. They are no longer
    // kept.
    std::list<Lookup> take(const jet::FileState& state, const std::string& table);

  private:
    struct Kept {
        jet::FileState state;
        std::string table;
        std::list<Lookup> lookups;
    };
    std::list<Kept> kept_;  // the latest first
};

}  // namespace dao::access
