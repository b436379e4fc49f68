// The records of a table in an SQLite file by their row ids.
#pragma once

#include "platform/dao/sqlite/connection.h"
#include "platform/dao/table_rows.h"

namespace dao::sqlite {

class SqliteRows : public TableRows {
  public:
    // table: as it stands in the file. rowId: the name of the row id beside its columns.
    SqliteRows(std::shared_ptr<SqliteConnection> connection, const std::string& table,
               const std::string& rowId);

    const std::vector<CDaoFieldInfo>& fields() const override { return *fields_; }
    bool list(RowNumber& last, size_t count, std::vector<RowNumber>& rows) override;
    bool walk(RowNumber& last, size_t count, std::span<const size_t> fields, const Visit& visit) override;
    void read(std::span<const RowNumber> rows, std::span<const size_t> fields, const Visit& visit) override;
    std::unique_ptr<Order> order(size_t field, bool descending) override;
    std::optional<std::vector<RowNumber>> find(size_t field, const std::string& text) override;
    bool hasIndex(size_t field) override;

  private:
    // ", a, b" for the fields that are wanted.
    std::string columns(std::span<const size_t> fields) const;
    // A field as comparisons write it: the tables of other programs may tell capitals from other letters.
    std::string compared(size_t field) const;
    void take(Statement& statement, std::span<const size_t> fields, std::vector<Variant>& values) const;

    std::shared_ptr<SqliteConnection> connection_;
    std::string name_, table_;  // the latter quoted
    std::string rowId_;
    std::shared_ptr<const std::vector<CDaoFieldInfo>> fields_;
};

}  // namespace dao::sqlite
