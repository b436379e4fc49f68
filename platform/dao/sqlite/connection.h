// A database in an SQLite file.
//
// The file is one file at all times but during a write (a rollback journal stands beside it then), so that it
// can be copied and mailed like the databases it stands for. Writes share a transaction that begins with the
// first of them and ends when the database or a changed table definition is closed, and while writing goes on
// every kSecondsShared seconds. Every commit is synced to the disk, its folder included.
//
// All databases of a process that are open on one file share one connection: they see each other's writes,
// and cannot lock each other out.
#pragma once

#include <sqlite3.h>

#include <chrono>
#include <set>
#include <unordered_map>

#include "platform/dao/access_sql.h"
#include "platform/dao/engine.h"
#include "platform/dao/sqlite/schema.h"
#include "platform/dao/sqlite/statement.h"

namespace dao::sqlite {

constexpr int kSecondsShared = 2;

// Makes a file that holds an empty database of a format version: 3 for Access 97, 4 for Access 2000.
void makeEmptyFile(const std::string& path, int version);
void makeEmptyGeoPackage(const std::string& path);

class SqliteConnection : public Connection, public std::enable_shared_from_this<SqliteConnection> {
  public:
    explicit SqliteConnection(const Source& source);
    ~SqliteConnection() override;

    std::string name() const override { return path_; }
    std::string version() const override { return version_; }
    std::vector<CDaoTableDefInfo> tables() override;
    std::vector<CDaoFieldInfo> fields(const std::string& table) override;
    void createTable(const std::string& table, const std::vector<CDaoFieldInfo>& fields) override;
    void deleteTable(const std::string& table) override;
    void renameTable(const std::string& table, const std::string& newName) override;
    void createField(const std::string& table, const CDaoFieldInfo& field) override;
    void deleteField(const std::string& table, const std::string& field) override;
    void execute(const std::string& sql, int options) override;
    std::unique_ptr<Cursor> open(int type, const std::string& sql, int options) override;
    void commit() override;
    void beginTransaction() override;
    void endTransaction(bool keep) override;

    // Writes the file anew, in one step. Throws for a damaged one.
    void compact();

    sqlite3* handle() const { return db_; }
    // A statement that is used again and again. It must be reset after use.
    std::shared_ptr<Statement> prepared(const std::string& sql);
    // Begins a transaction unless one is under way. To be called before each write.
    void beginWrite();
    // To be called after each write: commits when enough has been written.
    void wrote();
    // The fields of a table, kept as long as the schema is not changed.
    std::shared_ptr<const std::vector<CDaoFieldInfo>> sharedFields(const std::string& table);
    // The name of a table as it stands; "" when there is none. isView is set for views.
    std::string findTable(const std::string& name, bool& isView);
    // Gives a large table the index that a search for these columns wants, unless it has one. A search that
    // finds the file locked or read-only goes without.
    void indexFor(const std::string& table, const std::vector<std::string>& columns);

  private:
    void run(const std::string& sql);
    void rollback();
    void requireTable(const std::string& table);
    // Does a change of the schema in the shared transaction; a part of it that fails is undone whole.
    template <typename Change>
    void changeSchema(Change change);
    // The name by which the row id can be used beside the columns of a table; "" when the table has none.
    std::string rowIdOf(const std::string& table);
    void rebuild(const std::string& table, const std::vector<CDaoFieldInfo>& fields);
    std::vector<std::string> indexesWith(const std::string& table, const std::string& column);

    void watchChanges();
    std::string shownFields(const std::string& table);
    std::string shownColumns(const AccessStatement& statement);

    sqlite3* db_ = nullptr;
    std::string path_;
    std::string version_;
    FileKind kind_ = FileKind::kPlain;
    std::set<std::string> changedTables_;  // of a GeoPackage, since the last commit
    std::unordered_map<std::string, std::shared_ptr<Statement>> statements_;
    std::unordered_map<std::string, std::shared_ptr<const std::vector<CDaoFieldInfo>>> fields_;
    int64_t fieldsSchema_ = -1;  // the version of the schema that they belong to
    int writes_ = 0;
    bool transaction_ = false;  // the caller's; the shared one must not end before it
    std::chrono::steady_clock::time_point began_;
};

}  // namespace dao::sqlite
