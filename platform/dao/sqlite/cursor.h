// The records of a statement in an SQLite file.
#pragma once

#include "platform/dao/access_sql.h"
#include "platform/dao/sqlite/connection.h"

namespace dao::sqlite {

// Records of one table, held by their row ids. The ids are found some at a time, in the order of the rows
// unless the statement orders them; each record is read by its id when it is asked for. So a change made
// meanwhile does not disturb the walk, no lock is held between two calls, and one record of a large table
// costs one record.
class KeyCursor : public Cursor {
  public:
    // rowId: the name of the row id beside the columns of the table.
    KeyCursor(std::shared_ptr<SqliteConnection> connection, const AccessStatement& statement,
              const std::string& rowId);

    const std::vector<CDaoFieldInfo>& fields() const override { return fields_; }
    bool updatable() const override { return true; }
    bool moveTo(long position) override;
    long count() override;
    Variant value(int field) override;
    void insert(const std::vector<Variant>& values, const std::vector<bool>& touched) override;
    void update(const std::vector<Variant>& values, const std::vector<bool>& touched) override;
    void remove() override;

  private:
    // Finds keys until there are so many, or no more.
    void findKeys(size_t wanted);
    int64_t key() const;

    std::shared_ptr<SqliteConnection> connection_;
    std::string table_;  // quoted
    std::string rowId_;
    bool ordered_;  // the statement orders the records
    std::vector<CDaoFieldInfo> fields_;

    Statement keyQuery_;
    std::vector<int64_t> keys_;
    bool allKeys_ = false;
    long position_ = -1;

    std::shared_ptr<Statement> rowQuery_;
    std::vector<Variant> row_;
    int64_t loadedAt_ = -1;  // number of changes of the database when row_ was read; -1: it is not

    // The last INSERT or UPDATE: writing the same fields again needs no new one.
    struct Writing {
        std::vector<bool> touched;
        std::shared_ptr<Statement> statement;
    };
    Statement& statementFor(Writing& writing, const std::vector<bool>& touched, bool inserts);
    Writing inserting_, updating_;
};

// The records of any other statement, read at once. They cannot be changed.
class SnapshotCursor : public Cursor {
  public:
    SnapshotCursor(const std::shared_ptr<SqliteConnection>& connection, const std::string& sql);

    const std::vector<CDaoFieldInfo>& fields() const override { return fields_; }
    bool updatable() const override { return false; }
    bool moveTo(long position) override;
    long count() override { return static_cast<long>(rows_.size()); }
    Variant value(int field) override;
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
