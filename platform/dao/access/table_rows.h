// The records of a table in an Access file by the places that they were given.
#pragma once

#include "platform/dao/access/connection.h"
#include "platform/dao/table_rows.h"

namespace dao::access {

class AccessRows : public TableRows {
  public:
    AccessRows(std::shared_ptr<AccessConnection> connection, const std::string& table);

    const std::vector<CDaoFieldInfo>& fields() const override { return fields_; }
    bool list(RowNumber& last, size_t count, std::vector<RowNumber>& rows) override;
    bool walk(RowNumber& last, size_t count, std::span<const size_t> fields, const Visit& visit) override;
    void read(std::span<const RowNumber> rows, std::span<const size_t> fields, const Visit& visit) override;
    std::unique_ptr<Order> order(size_t field, bool descending) override;
    std::optional<std::vector<RowNumber>> find(size_t field, const std::string& text) override;
    bool hasIndex(size_t field) override;

  private:
    std::shared_ptr<AccessConnection> connection_;
    std::string name_;
    std::vector<CDaoFieldInfo> fields_;
};

}  // namespace dao::access
