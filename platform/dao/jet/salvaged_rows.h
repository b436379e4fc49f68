// Reading what is left of a damaged file.
#pragma once

#include <functional>
#include <map>
#include <set>

#include "platform/dao/jet/records.h"

namespace jet {

// Which pages hold what, by what they say of themselves: for files whose maps and catalogue cannot be
// trusted.
class PageCensus {
  public:
    explicit PageCensus(Store& store);

    // Pages of rows that name an owner. Pages that the file calls free are passed over.
    const std::vector<uint32_t>& dataPages(uint32_t owner) const;
    // Pages that may hold the beginning of a definition.
    const std::vector<uint32_t>& definitions() const { return definitions_; }

  private:
    std::map<uint32_t, std::vector<uint32_t>> dataPages_;
    std::vector<uint32_t> definitions_;
};

// The rows of a table, as far as they can be read.
class SalvagedRows {
  public:
    SalvagedRows(Store& store, const TableDefinition& definition, const PageCensus& census);

    // Calls visit with the values of each row, in the order of the definition's columns. A value that cannot
    // be read is Null.
    void forEach(const std::function<void(std::vector<Value>& values)>& visit);

    // After forEach: how many rows there should be at least, and how many were found.
    uint32_t expected() const { return std::max(definition_->rows, found_ + lostRows_); }
    uint32_t found() const { return found_; }
    // How many values of a column could not be read.
    const std::map<size_t, uint32_t>& lostValues() const { return lostValues_; }

  private:
    using Visit = std::function<void(std::vector<Value>&)>;
    std::vector<uint32_t> findPages(const PageCensus& census) const;
    void readPage(uint32_t number, const Visit& visit);
    void readSlot(RowId row, const DataPage& data, const Visit& visit);
    void readOrphans(const Visit& visit);
    ByteView bodyOf(RowId body, PagePtr& page) const;
    void take(ByteView row, const Visit& visit);

    Store& store_;
    std::shared_ptr<const TableDefinition> definition_;
    Records records_;
    std::vector<uint32_t> pages_;
    std::set<RowId> bodies_, reached_;  // rows that have moved, and those that a pointer led to
    uint32_t found_ = 0, lostRows_ = 0;
    std::map<size_t, uint32_t> lostValues_;
};

}  // namespace jet
