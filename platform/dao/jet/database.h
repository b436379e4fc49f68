// An Access database: its tables, their columns, indexes and records.
//
//     jet::Database db("survey.mdb", {});
//     jet::Database::Reading reading(db);
//     for (jet::Walk walk(db.records("POLES")); walk.next();) ...
//
// Everything is read between the making and the end of a Reading, so that no other process can write in
// between. Everything that changes the file belongs to a transaction from begin() to commit(): after a crash,
// the file is as it was before the transaction or as it is after it. Every single change in a transaction is
// whole or undone.
//
// All failures are thrown as jet::Error. A damaged file may give a DamagedError at any call; it never makes
// the program do anything worse, and nothing is written on account of it.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/dao/jet/catalogue.h"
#include "platform/dao/jet/properties.h"
#include "platform/dao/jet/records.h"

namespace jet {

struct Column {
    std::string name;
    Type type = Type::kText;
    int size = 0;  // characters of text, bytes of everything else; 0 for memo and OLE
    bool autonumber = false;
    bool fixed = false;
    bool required = false;
    bool allowZeroLength = true;   // of text
    std::string defaultValue{};    // an expression: "NO" in double quotes, 12
    std::string validationRule{};  // an expression: "YES" Or "NO"
    std::string validationText{};
    int precision = 18, scale = 0;  // of decimal numbers
};

struct Index {
    struct Part {
        std::string column;
        bool ascending = true;
    };
    std::string name;
    std::vector<Part> columns;
    bool unique = false;
    bool primary = false;
    bool ignoreNulls = false;
    bool ofRelation = false;
};

struct TableInfo {
    std::string name;
    std::string connect;  // where a linked table comes from; "" for the file's own
    bool system = false;
    bool linked = false;
};

class Database {
  public:
    struct Options {
        bool readOnly = false;  // so is a file that may not be written
        bool exclusive = false;
        std::string password{};
        int lockTimeout = 3000;  // milliseconds to wait for other processes
        bool scratch = false;    // the file goes when the work on it ends
    };

    Database(const std::string& path, const Options& options);
    // Makes a new file; one that exists is an error.
    static void create(const std::string& path, Version version);

    const std::string& path() const { return store_.file.path(); }
    Version version() const { return store_.format.version; }
    bool readOnly() const { return store_.file.readOnly(); }
    void setLockTimeout(int milliseconds) { store_.file.setLockTimeout(milliseconds); }

    class Reading {
      public:
        explicit Reading(Database& database) : reading_(database.store_.file) {}

      private:
        jet::Reading reading_;
    };
    // Changes whenever something was changed other than by this object.
    uint64_t generation() const { return store_.file.generation(); }

    // A change needs a transaction: begin waits for other writers for a while. Without commit, everything
    // since begin is undone when the database is closed.
    void begin() { store_.file.beginWrite(); }
    bool inTransaction() const { return store_.file.writing(); }
    void commit() { store_.file.commit(); }
    void rollBack() { store_.file.rollBack(); }
    bool othersWait() const { return store_.file.othersWait(); }

    // The tables in the order of the catalogue, those of the system among them.
    std::vector<TableInfo> tables();
    bool hasTable(const std::string& name);
    std::vector<Column> columns(const std::string& table);
    std::vector<Index> indexes(const std::string& table);
    // The records of a table. To be asked for anew after a change of the table's definition, and when
    // generation() has changed.
    std::shared_ptr<Records> records(const std::string& table);

    void createTable(const std::string& name, const std::vector<Column>& columns);
    void dropTable(const std::string& name);
    void renameTable(const std::string& name, const std::string& newName);
    void addColumn(const std::string& table, const Column& column);
    void dropColumn(const std::string& table, const std::string& column);
    void createIndex(const std::string& table, const Index& index);

    Store& store() { return store_; }
    Catalogue& catalogue();

  private:
    void refresh();
    const CatalogueEntry& entry(const std::string& table);
    const CatalogueEntry& ownTable(const std::string& table);
    // A table that a user may change.
    CatalogueEntry usersTable(const std::string& table);
    void checkNewName(const std::string& name);
    Properties properties(const CatalogueEntry& entry);
    void forget();

    Store store_;
    uint64_t generation_ = 0;
    std::unique_ptr<Catalogue> catalogue_;
    std::map<int32_t, std::shared_ptr<Records>> records_;
};

// A walk over the records of a table in their order.
class Walk {
  public:
    explicit Walk(std::shared_ptr<Records> records) : records_(std::move(records)) {}
    // Goes to the next record; false behind the last one.
    bool next() {
        if (started_) row_ = row_.following();
        started_ = true;
        return records_->next(row_, place_);
    }
    RowId row() const { return row_; }
    RowView view() const { return records_->view(place_); }
    // column: the position in the definition.
    Value value(size_t column) const { return records_->value(view(), column); }

  private:
    std::shared_ptr<Records> records_;
    RowId row_;
    Records::Place place_;
    bool started_ = false;
};

}  // namespace jet
