// The records of a PostgreSQL table by their places in it.
//
// A record that is changed gets another place.
#pragma once

#include <unordered_map>

#include "platform/dao/odbc/connection.h"
#include "platform/dao/table_rows.h"

namespace dao::odbc {

class PostgresRows : public TableRows {
  public:
    // Whether it is a table of a server that finds records by ranges of places: PostgreSQL 14 or later.
    static bool serves(OdbcConnection& connection, const Catalogue::Table& table);
    // What an index holds of a column by which records are found without regard to case.
    static std::string indexed(const std::string& column, int type);

    PostgresRows(std::shared_ptr<OdbcConnection> connection, const Catalogue::Table& table);

    const std::vector<CDaoFieldInfo>& fields() const override { return fields_; }
    bool list(RowNumber& last, size_t count, std::vector<RowNumber>& rows) override;
    bool walk(RowNumber& last, size_t count, std::span<const size_t> fields, const Visit& visit) override;
    void read(std::span<const RowNumber> rows, std::span<const size_t> fields, const Visit& visit) override;
    std::unique_ptr<Order> order(size_t field, bool descending) override;
    std::optional<std::vector<RowNumber>> find(size_t field, const std::string& text) override;
    bool hasIndex(size_t field) override;
    bool changesNumbers() const override { return true; }
    void noteMoved(RowNumber row, RowNumber now) override { moved_[row] = now; }
    bool restrictTo(const std::string& where, const std::vector<Variant>& parameters) override;

  private:
    // Runs a SELECT of the place and some fields.
    void run(const std::string& condition, const std::vector<Variant>& parameters,
             std::span<const size_t> fields, const Visit& visit);
    int64_t blocks();

    std::shared_ptr<OdbcConnection> connection_;
    std::string table_;  // as statements name it
    std::vector<CDaoFieldInfo> fields_;
    std::string where_;
    std::vector<Variant> parameters_;
    int64_t blocks_ = 0;         // of the table, when it was last asked
    double recordsInBlock_ = 0;  // 0: not known yet
    std::unordered_map<RowNumber, RowNumber> moved_;
};

}  // namespace dao::odbc
