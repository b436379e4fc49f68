// What a database engine gives to the classes of dao.h.
//
// An engine is chosen by what a source is, not by its name. The classes above it convert values to the types
// of the fields and check sizes, required fields and zero-length text; an engine keeps records, runs
// statements and checks validation rules. All errors are CDaoExceptions.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/dao/dao.h"
#include "platform/dao/table_rows.h"

namespace dao {

// What Open was asked for.
struct Source {
    std::string path;       // as it stands on disk; "" for a connect string
    ConnectString connect;  // of a server, with the password of a file, or empty
    std::string head;       // the first bytes of the file, at most 64
    bool exclusive = false;
    bool readOnly = false;
};

// The records of one statement, by position from 0. Positions are of the records as they were found; a record
// that was added comes last, one that was deleted keeps its position.
class Cursor {
  public:
    virtual ~Cursor() = default;
    virtual const std::vector<CDaoFieldInfo>& fields() const = 0;
    virtual bool updatable() const = 0;

    // Stands on a position. False when there are fewer records; the cursor then stands nowhere.
    virtual bool moveTo(long position) = 0;
    // The number of all records: it may have to read to the end.
    virtual long count() = 0;
    // A value of the current record, good until the next call. It throws where the record was deleted.
    virtual const Variant& value(int field) = 0;
    // The current record is read anew when a value of it is next asked for, where the engine can do so.
    virtual void dropReadAhead() {}

    // Writes the fields that are marked, in a new record or in the current one.
    virtual void insert(const std::vector<Variant>& values, const std::vector<bool>& touched) = 0;
    virtual void update(const std::vector<Variant>& values, const std::vector<bool>& touched) = 0;
    virtual void remove() = 0;
};

// An open database.
class Connection {
  public:
    virtual ~Connection() = default;
    virtual std::string name() const = 0;
    virtual ConnectString connect() const { return ConnectString(); }
    virtual std::string version() const { return "4.0"; }
    virtual EngineKind kind() const { return EngineKind::kOtherServer; }

    virtual std::vector<CDaoTableDefInfo> tables() = 0;
    virtual std::vector<CDaoFieldInfo> fields(const std::string& table) = 0;
    virtual void createTable(const std::string& table, const std::vector<CDaoFieldInfo>& fields) = 0;
    virtual void deleteTable(const std::string& table) = 0;
    virtual void renameTable(const std::string& table, const std::string& newName) = 0;
    virtual void createField(const std::string& table, const CDaoFieldInfo& field) = 0;
    virtual void deleteField(const std::string& table, const std::string& field) = 0;
    // An engine that makes no primary keys throws.
    virtual void createPrimaryKey(const std::string& table, const std::vector<std::string>& fields);
    // Makes an index by which records are found by these text fields without regard to case. An engine that
    // finds them fast enough without one makes none.
    virtual void indexForSearch(const std::string& /*table*/, const std::vector<std::string>& /*fields*/) {}
    // Makes an index of some fields, of texts without regard to case. Throws where it cannot be made.
    virtual void createIndex(const std::string& table, const std::vector<std::string>& fields);

    virtual void execute(const std::string& sql, int options) = 0;
    // parameters: a value for each ? of the statement. Any other number of them is an error.
    virtual std::unique_ptr<Cursor> open(int type, const std::string& sql, int options,
                                         const std::vector<Variant>& parameters) = 0;
    // The records of a table by numbers; null where it has none.
    virtual std::unique_ptr<TableRows> rows(const std::string& /*table*/) { return nullptr; }

    // What an earlier opening has read of the tables may serve again, where an engine keeps that. The caller
    // begins anew, after forgetKnownTables(), when something fails: the tables may have changed since.
    virtual void useKnownTables() {}
    // True when what was known from before has been in use.
    virtual bool forgetKnownTables() { return false; }

    // Makes all changes last. Called when a database is closed and when an exception is under way. Does
    // nothing inside a transaction of the caller's.
    virtual void commit() = 0;

    // A transaction of the caller's: what changes from here on is kept whole or not at all. What was changed
    // before is made to last first.
    virtual void beginTransaction() = 0;
    // Ends it. Nothing happens when none is under way.
    virtual void endTransaction(bool keep) = 0;
};

class Engine {
  public:
    virtual ~Engine() = default;
    virtual bool opens(const Source& source) const = 0;
    // The connection to a file that this process has open already, to be shared: the file must then not even
    // be read from elsewhere, since closing it would drop the locks that this process holds on it.
    virtual std::shared_ptr<Connection> alreadyOpen(const Source&) { return nullptr; }
    virtual std::shared_ptr<Connection> open(const Source& source) = 0;
    // Whether new files of this name are made by this engine.
    virtual bool creates(const std::string&) const { return false; }
    virtual std::shared_ptr<Connection> create(const std::string& path, const std::string& locale,
                                               int options);
    virtual CompactReport compact(const Source& source, const CompactProgress& progress);
};

// Engines are asked in the reverse order of registration, the built-in ones last.
void registerEngine(std::shared_ptr<Engine> engine);
void unregisterEngine(const Engine* engine);

// How long a statement waits for another process that has the file locked, in milliseconds (3000 at the
// start).
void setLockTimeout(int milliseconds);
int lockTimeout();

}  // namespace dao
