// A database in an SQLite file.
//
// The file is one file at all times but during a write (a rollback journal stands beside it then), so that it
// can be copied and mailed like the databases it stands for. Every commit is synced to the disk, its folder
// included.
//
// All databases of a process that are open on one file share one connection: they see each other's writes,
// and cannot lock each other out.
#pragma once

#include <set>
#include <unordered_map>

#include "platform/dao/access_sql.h"
#include "platform/dao/file_connection.h"
#include "platform/dao/sqlite/handle.h"
#include "platform/dao/sqlite/schema.h"
#include "platform/dao/sqlite/statement.h"

namespace dao::sqlite {

// Makes a file that holds an empty database of a format version: 3 for Access 97, 4 for Access 2000.
void makeEmptyFile(const std::string& path, int version);
void makeEmptyGeoPackage(const std::string& path);

class SqliteConnection : public FileConnection, public std::enable_shared_from_this<SqliteConnection> {
  public:
    explicit SqliteConnection(const Source& source);

    std::string name() const override { return path_; }
    EngineKind kind() const override { return EngineKind::kSqlite; }
    std::string version() const override { return version_; }
    std::vector<CDaoTableDefInfo> tables() override;
    std::vector<CDaoFieldInfo> fields(const std::string& table) override;
    void createTable(const std::string& table, const std::vector<CDaoFieldInfo>& fields) override;
    void deleteTable(const std::string& table) override;
    void renameTable(const std::string& table, const std::string& newName) override;
    void createField(const std::string& table, const CDaoFieldInfo& field) override;
    void deleteField(const std::string& table, const std::string& field) override;
    void execute(const std::string& sql, int options) override;
    std::unique_ptr<Cursor> open(int type, const std::string& sql, int options,
                                 const std::vector<Variant>& parameters) override;
    std::unique_ptr<TableRows> rows(const std::string& table) override;
    void createIndex(const std::string& table, const std::vector<std::string>& fields) override;

    // Writes the file anew, in one step. Throws for a damaged one.
    void compact();

    sqlite3* handle() const { return db_.get(); }
    // A statement that is used again and again. It must be reset after use.
    std::shared_ptr<Statement> prepared(const std::string& sql);
    // The fields of a table, kept as long as the schema is not changed.
    std::shared_ptr<const std::vector<CDaoFieldInfo>> sharedFields(const std::string& table);
    // The name of a table as it stands; "" when there is none. isView is set for views.
    std::string findTable(const std::string& name, bool& isView);
    // Gives a large table the index that a search for these columns wants, unless it has one. A search that
    // finds the file locked or read-only goes without.
    void indexFor(const std::string& table, const std::vector<std::string>& columns);

  protected:
    bool inTransaction() const override { return !sqlite3_get_autocommit(handle()); }
    void begin() override;
    void keepChanges() override;
    void undoChanges() override;

  private:
    void run(const std::string& sql);
    void requireTable(const std::string& table);
    // Does a change of the schema in the shared transaction; a part of it that fails is undone whole.
    template <typename Change>
    void changeSchema(Change change);
    // The name by which the row id can be used beside the columns of a table; "" when the table has none.
    std::string rowIdOf(const std::string& table);
    void rebuild(const std::string& table, const std::vector<CDaoFieldInfo>& fields);
    std::vector<std::string> indexesWith(const std::string& table, const std::string& column);

    void watchChanges();
    std::string shownColumns(const AccessStatement& statement);

    Handle db_;
    std::string path_;
    std::string version_;
    FileKind kind_ = FileKind::kPlain;
    std::set<std::string> changedTables_;  // of a GeoPackage, since the last commit
    std::unordered_map<std::string, std::shared_ptr<Statement>> statements_;
    std::unordered_map<std::string, std::shared_ptr<const std::vector<CDaoFieldInfo>>> fields_;
    int64_t fieldsSchema_ = -1;  // the version of the schema that they belong to
};

}  // namespace dao::sqlite
