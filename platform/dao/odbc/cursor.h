// The records of a statement of a server.
#pragma once

#include "platform/dao/odbc/connection.h"

namespace dao::odbc {

// The records as they were found, in the order of the server; they are read when they are first wanted, and
// changes go to the server and into this copy. A record is told from others by the key of its table or, where
// there is none, by the values that it had.
class OdbcCursor : public Cursor {
  public:
    OdbcCursor(std::shared_ptr<OdbcConnection> connection, const ServerStatement& statement, int type,
               const std::vector<Variant>& parameters);

    const std::vector<CDaoFieldInfo>& fields() const override { return fields_; }
    bool updatable() const override { return updatable_; }
    bool moveTo(long position) override;
    long count() override;
    const Variant& value(int field) override;
    void insert(const std::vector<Variant>& values, const std::vector<bool>& touched) override;
    void update(const std::vector<Variant>& values, const std::vector<bool>& touched) override;
    void remove() override;

  private:
    struct Record {
        std::vector<Variant> values;
        bool deleted = false;
    };

    const CDaoFieldInfo* fieldNamed(const std::string& name) const;
    bool readOne();
    Record& record();
    // The positions of the fields that tell records apart, found at the first change.
    const std::vector<size_t>& keyFields();
    std::string condition(const Record& record);
    void bindCondition(Statement& statement, int parameter, const Record& record);

    std::shared_ptr<OdbcConnection> connection_;
    Statement rows_;
    std::vector<Column> columns_;
    std::vector<CDaoFieldInfo> fields_;
    Catalogue::Table table_;
    bool updatable_ = false;
    bool allRead_ = false;
    std::vector<Record> records_;
    long position_ = -1;
    std::optional<std::vector<size_t>> keyFields_;

    // The last INSERT: writing the same fields again needs no new one.
    std::vector<bool> inserted_;
    std::unique_ptr<Statement> inserting_;
};

}  // namespace dao::odbc
