// The records of a table or view by their positions in a record set: for what has no better numbers.
#pragma once

#include "platform/dao/engine.h"

namespace dao {

class CursorRows : public TableRows {
  public:
    CursorRows(Connection& connection, const std::string& table);

    const std::vector<CDaoFieldInfo>& fields() const override { return cursor_->fields(); }
    bool list(RowNumber& last, size_t count, std::vector<RowNumber>& rows) override;
    bool walk(RowNumber& last, size_t count, std::span<const size_t> fields, const Visit& visit) override;
    void read(std::span<const RowNumber> rows, std::span<const size_t> fields, const Visit& visit) override;
    std::unique_ptr<Order> order(size_t, bool) override { return nullptr; }
    std::optional<std::vector<RowNumber>> find(size_t, const std::string&) override { return {}; }
    bool hasIndex(size_t) override { return false; }

  private:
    std::unique_ptr<Cursor> cursor_;
};

}  // namespace dao
