// The records of a statement in an SQLite file.
#pragma once

#include "platform/dao/access_sql.h"
#include "platform/dao/sqlite/connection.h"

namespace dao::sqlite {

// Records of one table, held by their row ids. Ids and records are found some at a time, in the order of the
// rows unless the statement orders them; no lock is held between two calls, and one record of a large table
// costs one record. Records read ahead are dropped as soon as anything in the database changes, and then read
// by their ids one by one, so that a walk that changes what it walks over sees every record as it is.
class KeyCursor : public Cursor {
  public:
    // rowId: the name of the row id beside the columns of the table.
    KeyCursor(std::shared_ptr<SqliteConnection> connection, const AccessStatement& statement,
              const std::string& rowId, const std::vector<Variant>& parameters);

    const std::vector<CDaoFieldInfo>& fields() const override { return *fields_; }
    bool updatable() const override { return true; }
    bool moveTo(long position) override;
    long count() override;
    const Variant& value(int field) override;
    void dropReadAhead() override { readAt_ = -1; }
    void insert(const std::vector<Variant>& values, const std::vector<bool>& touched) override;
    void update(const std::vector<Variant>& values, const std::vector<bool>& touched) override;
    void remove() override;

  private:
    int64_t key() const;
    // Finds the keys up to a position, if there are so many, and reads the records found on the way when
    // asked.
    void findKeys(size_t position, bool withRecords);
    // Where the current record stands among those read ahead. Reads it, and some behind it, where it does
    // not.
    size_t recordIndex();
    void readAhead(int64_t behind, int64_t limit, bool newKeys);
    void takeRecord(Statement& statement, int firstColumn, int64_t key);
    int64_t changes() const { return sqlite3_total_changes64(connection_->handle()); }

    struct Writing;
    Statement& statementFor(Writing& writing, const std::vector<bool>& touched, bool inserts);

    std::shared_ptr<SqliteConnection> connection_;
    std::shared_ptr<const std::vector<CDaoFieldInfo>> fields_;
    std::string table_;  // quoted
    std::string rowId_;
    std::vector<Variant> parameters_;   // of the caller's statement
    bool ordered_;                      // the statement orders the records
    std::string rowIdsSql_;             // the row ids alone
    Statement query_;                   // the row id and the fields, behind a row id
    std::shared_ptr<Statement> byKey_;  // the fields of one row

    std::vector<int64_t> keys_;
    bool allKeys_ = false;
    long position_ = -1;

    // Records read ahead, in the order of their keys.
    std::vector<int64_t> readKeys_;
    std::vector<Variant> readValues_;
    size_t readIndex_ = 0;  // where the last record was found
    int64_t readAt_ = -1;   // number of changes of the database then
    int64_t readNext_ = 8;  // how many to read the next time

    // The last INSERT or UPDATE: writing the same fields again needs no new one.
    struct Writing {
        std::vector<bool> touched;
        std::shared_ptr<Statement> statement;
    };
    Writing inserting_, updating_;
};

// The records of any other statement, read at once. They cannot be changed.
class SnapshotCursor : public Cursor {
  public:
    SnapshotCursor(sqlite3* db, const std::string& sql, const std::vector<Variant>& parameters);

    const std::vector<CDaoFieldInfo>& fields() const override { return fields_; }
    bool updatable() const override { return false; }
    bool moveTo(long position) override;
    long count() override { return static_cast<long>(rows_.size()); }
    const Variant& value(int field) override;
    // Never called, since the records cannot be changed.
    void insert(const std::vector<Variant>&, const std::vector<bool>&) override {}
    void update(const std::vector<Variant>&, const std::vector<bool>&) override {}
    void remove() override {}

  private:
    std::vector<CDaoFieldInfo> fields_;
    std::vector<std::vector<Variant>> rows_;
    long position_ = -1;
};

}  // namespace dao::sqlite
