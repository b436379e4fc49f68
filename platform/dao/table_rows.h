// The records of one table by numbers, for whoever shows or passes through a table that may be large.
//
// A number belongs to a record as long as that is there; records stand in the order of their numbers. Nothing
// is locked and nothing is held between two calls, so that others can write in between: a record that is gone
// by then is passed over.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/dao/dao.h"

namespace dao {

using RowNumber = int64_t;

// What is in front of all records.
inline constexpr RowNumber kBeforeAllRows = INT64_MIN;

class TableRows {
  public:
    // values: of the fields that were asked for, in their order; good for the length of the call.
    using Visit = std::function<void(RowNumber row, std::span<const Variant> values)>;

    // The records in the order of a field.
    class Order {
      public:
        virtual ~Order() = default;
        // Appends the numbers of about so many more. False: there are no more.
        virtual bool next(size_t count, std::vector<RowNumber>& rows) = 0;
    };

    virtual ~TableRows() = default;
    virtual const std::vector<CDaoFieldInfo>& fields() const = 0;

    // Appends the numbers of about so many records behind the one that was looked at last, which is then set
    // anew. False: there are no more.
    virtual bool list(RowNumber& last, size_t count, std::vector<RowNumber>& rows) = 0;
    // Visits them. fields: positions in fields().
    virtual bool walk(RowNumber& last, size_t count, std::span<const size_t> fields, const Visit& visit) = 0;
    // Visits those of some records that are there, in any order.
    virtual void read(std::span<const RowNumber> rows, std::span<const size_t> fields,
                      const Visit& visit) = 0;

    // The order of a field where an index has it, Null in front or, descending, behind; else null.
    virtual std::unique_ptr<Order> order(size_t field, bool descending) = 0;
    // The records that have a text in a field, without regard to case; nothing where only a pass would find
    // them.
    virtual std::optional<std::vector<RowNumber>> find(size_t field, const std::string& text) = 0;

    // Whether order() and find() have an index of the field.
    virtual bool hasIndex(size_t field) = 0;

    // Whether a record that is changed gets another number, and that it has got one: reading finds it by the
    // old one from then on.
    virtual bool changesNumbers() const { return false; }
    virtual void noteMoved(RowNumber /*row*/, RowNumber /*now*/) {}

    // Lists and visits only records for which a condition of a WHERE holds from here on; parameters stand for
    // its question marks. False: this is an engine for files, to whose records a caller comes as fast.
    virtual bool restrictTo(const std::string& /*where*/, const std::vector<Variant>& /*parameters*/) {
        return false;
    }
};

// Throws where there is no such table. The database stays the caller's.
std::unique_ptr<TableRows> openTableRows(CDaoDatabase& database, const std::string& table);

}  // namespace dao
