// Records found by their keys where no index does so: of one pass, sixteen bytes for each record.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/dao/table_rows.h"

namespace norvane {

class KeyFinder {
  public:
    // Passes through the table. Throws what the engine says.
    KeyFinder(dao::TableRows& source, size_t keyField);

    // The records that may have a key, in the order of the table; one of another key is rarely among them.
    std::vector<dao::RowNumber> find(const std::string& key) const;

  private:
    struct Entry {
        uint64_t hash;
        dao::RowNumber row;
        auto operator<=>(const Entry&) const = default;
    };
    std::vector<Entry> entries_;
};

}  // namespace norvane
