// A database in an Access file.
//
// Records are read and written by the library below; statements are run by SQLite over virtual tables, each
// of which is made when a statement first names it.
//
// All databases of a process that are open on one file share one connection.
#pragma once

#include <functional>
#include <list>
#include <unordered_map>

#include "platform/dao/access/field_rules.h"
#include "platform/dao/access/lookup.h"
#include "platform/dao/file_connection.h"
#include "platform/dao/sqlite/handle.h"

namespace dao::access {

// How the file of a source is opened.
jet::Database::Options optionsOf(const Source& source);

// A table as statements and record sets use it.
struct Table {
    std::string name;
    std::shared_ptr<jet::Records> records;
    std::vector<size_t> columns;  // the position of each field in the definition
    std::unique_ptr<FieldRules> rules;
    std::list<Lookup> lookups;

    const std::vector<CDaoFieldInfo>& fields() const { return rules->fields(); }
    // A value as a field shows it. column: position in the definition.
    Variant value(const jet::RowView& row, size_t column) const;
};

class AccessConnection : public FileConnection, public std::enable_shared_from_this<AccessConnection> {
  public:
    explicit AccessConnection(const Source& source);
    ~AccessConnection() override;

    std::string name() const override { return db_.path(); }
    EngineKind kind() const override { return EngineKind::kAccess; }
    std::string version() const override;
    std::vector<CDaoTableDefInfo> tables() override;
    std::vector<CDaoFieldInfo> fields(const std::string& table) override;
    void createTable(const std::string& table, const std::vector<CDaoFieldInfo>& fields) override;
    void createPrimaryKey(const std::string& table, const std::vector<std::string>& fields) override;
    void deleteTable(const std::string& table) override;
    void renameTable(const std::string& table, const std::string& newName) override;
    void createField(const std::string& table, const CDaoFieldInfo& field) override;
    void deleteField(const std::string& table, const std::string& field) override;
    void execute(const std::string& sql, int options) override;
    std::unique_ptr<Cursor> open(int type, const std::string& sql, int options,
                                 const std::vector<Variant>& parameters) override;
    std::unique_ptr<TableRows> rows(const std::string& table) override;
    void createIndex(const std::string& table, const std::vector<std::string>& fields) override;

    jet::Database& database() { return db_; }
    sqlite3* handle() const { return sql_.get(); }
    // The table of a name; good until the next change of a definition. Throws where there is none.
    std::shared_ptr<Table> table(const std::string& name);
    // The rows that a plain statement finds, in its order.
    std::vector<jet::RowId> rowsOf(const std::string& sql, const std::vector<Variant>& parameters);
    // Run work on a table while no other process writes, and while this one may write.
    void read(const std::string& table, const std::function<void(Table&)>& work);
    void write(const std::string& table, const std::function<void(Table&)>& work);

    // Within write: changes of a record, as the fields' rules allow them.
    // values and touched by field. The fields that are not touched take their defaults, or stay.
    jet::RowId insert(Table& table, const std::vector<Variant>& values, const std::vector<bool>& touched);
    void update(Table& table, jet::RowId row, const std::vector<Variant>& values,
                const std::vector<bool>& touched);
    void erase(Table& table, jet::RowId row);
    // Counts all changes of records.
    int64_t changes() const { return changes_; }

    // The rows that may have these values in columns (positions in the definition). False: there is no quick
    // way to them.
    bool find(Table& table, const std::vector<size_t>& columns, const std::vector<Variant>& values,
              std::vector<jet::RowId>& rows);

    // Whether the INSERT that runs gives a value for a field: one that it does not name takes its default.
    bool insertNames(const std::string& field) const;

    // What a virtual table could not do: SQLite hands on only that something failed.
    void noteFailure(const std::string& text) { failure_ = text; }

  protected:
    bool inTransaction() const override { return db_.inTransaction(); }
    void begin() override;
    void keepChanges() override;
    void undoChanges() override { db_.rollBack(); }
    bool othersWait() const override { return db_.othersWait(); }

  private:
    template <typename Work>
    auto guarded(Work work);
    template <typename Change>
    void changeSchema(Change change);
    void forgetTables();
    void refresh();
    std::unique_ptr<sqlite::Statement> prepare(const std::string& sql);
    bool makeVirtualTable(const std::string& name);

    jet::Database db_;
    sqlite::Handle sql_;
    std::unordered_map<std::string, std::shared_ptr<Table>> tables_;
    std::vector<std::string> virtualTables_;
    uint64_t generation_ = 0;
    std::string failure_;
    std::vector<std::string> insertColumns_;  // of the INSERT that runs; none: all of them
    int64_t changes_ = 0;
};

}  // namespace dao::access
