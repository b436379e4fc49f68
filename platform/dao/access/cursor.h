// The records of a statement that reads plain fields of one table of an Access file.
#pragma once

#include "platform/dao/access/connection.h"
#include "platform/dao/access_sql.h"

namespace dao::access {

// Records held by their rows. Where the statement has no condition, rows are found as they are asked for.
// Records are read some at a time; those read ahead are dropped as soon as anything in the database changes.
class AccessCursor : public Cursor {
  public:
    AccessCursor(std::shared_ptr<AccessConnection> connection, const AccessStatement& statement,
                 const std::vector<Variant>& parameters);

    const std::vector<CDaoFieldInfo>& fields() const override { return fields_; }
    bool updatable() const override { return true; }
    bool moveTo(long position) override;
    long count() override;
    const Variant& value(int field) override;
    void dropReadAhead() override { readAt_ = -1; }
    void insert(const std::vector<Variant>& values, const std::vector<bool>& touched) override;
    void update(const std::vector<Variant>& values, const std::vector<bool>& touched) override;
    void remove() override;

  private:
    jet::RowId row() const;
    void findRows(size_t position);
    void readAhead();
    void spread(const std::vector<Variant>& values, const std::vector<bool>& touched,
                std::vector<Variant>& all, std::vector<bool>& allTouched) const;

    std::shared_ptr<AccessConnection> connection_;
    std::string tableName_;
    std::vector<CDaoFieldInfo> fields_;
    std::vector<size_t> fieldOf_;  // the number of each field among those of the table

    std::vector<jet::RowId> rows_;
    bool allRows_ = false;
    jet::RowId next_;  // where the next row is looked for
    long position_ = -1;

    // Records read ahead: of how many rows from which position on.
    size_t readFrom_ = 0, readCount_ = 0;
    size_t readNext_ = 1;
    std::vector<Variant> read_;
    std::vector<bool> gone_;
    int64_t readAt_ = -1;  // number of changes of the database then
};

}  // namespace dao::access
