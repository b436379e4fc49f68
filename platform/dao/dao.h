// Databases as the module sees them: a database, its table definitions and record sets over statements.
//
// Every operation that cannot be done throws a CDaoException whose description is a sentence for the user.
// Objects close themselves; a record set and a table definition must go before their database does.
//
// A record set is a dynaset: it holds the keys of its records and reads each record when it is asked for, so
// that a change is seen wherever the record is shown. Changes outlast a crash from the moment that the
// database is closed, and from time to time while it is open. Text compares without regard to case.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dao/compact_report.h"
#include "platform/dao/connect_string.h"
#include "platform/dao/variant.h"

// Types of a field.
constexpr int dbBoolean = 1;
constexpr int dbByte = 2;
constexpr int dbInteger = 3;  // 16 bits
constexpr int dbLong = 4;     // 32 bits
constexpr int dbCurrency = 5;
constexpr int dbSingle = 6;
constexpr int dbDouble = 7;
constexpr int dbDate = 8;
constexpr int dbBinary = 9;
constexpr int dbText = 10;  // up to 255 characters
constexpr int dbLongBinary = 11;
constexpr int dbMemo = 12;
constexpr int dbGUID = 15;

// Attributes of a field.
constexpr int dbFixedField = 1;
constexpr int dbVariableField = 2;
constexpr int dbAutoIncrField = 16;
constexpr int dbUpdatableField = 32;

// Kinds of a record set. A snapshot cannot be changed.
constexpr int dbOpenTable = 1;
constexpr int dbOpenDynaset = 2;
constexpr int dbOpenSnapshot = 4;

// Formats of a new database and options of statements and record sets.
constexpr int dbVersion30 = 32;  // Access 97
constexpr int dbVersion40 = 64;  // Access 2000
constexpr int dbSQLPassThrough = 64;
// Nobody else opens the same record set in this way before the transaction ends in which it was opened: who
// looks for a record before writing it finds what the other has written. In a file, where there is one writer
// at a time, a transaction has this effect by itself.
constexpr int dbDenyWrite = 1;
constexpr const char* dbLangGeneral = ";LANGID=0x0409;CP=1252;COUNTRY=0";

class CDaoException : public std::runtime_error {
  public:
    explicit CDaoException(const std::string& description) : std::runtime_error(description) {}
    std::string description() const { return what(); }
};

// A change of tables that failed because another user has made the same change a moment before. What the
// caller knows of the tables is out of date; after a Rollback the work may begin anew.
class CDaoConflict : public CDaoException {
  public:
    using CDaoException::CDaoException;
};

// A record that a record set has found and somebody has deleted since.
class CDaoRecordDeleted : public CDaoException {
  public:
    using CDaoException::CDaoException;
};

struct CDaoFieldInfo {
    std::string name;
    int type = dbText;
    long size = 0;  // characters of text, bytes of everything else; 0 for memo and long binary
    int attributes = 0;
    int ordinalPosition = 0;
    bool required = false;
    bool allowZeroLength = false;
    std::string validationRule;  // "YES" Or "NO", >= 0 And < 100; "" for none
    std::string defaultValue;    // an expression: "NO" in double quotes, 12; "" for none
};

struct CDaoTableDefInfo {
    std::string name;
    std::string connect;  // "" unless the table is attached from another source
    bool updatable = true;
};

namespace dao {
class Connection;
class Cursor;

// What runs the statements of a database. In files UCASE and LCASE know the letters of text::upper, and there
// are CSNG, CDATE and GLOB; servers have functions of their own.
enum class EngineKind { kAccess, kSqlite, kPostgres, kOtherServer };

// Writes a database anew, without the room that deleted things have left. Of a damaged Access database, what
// can be read is saved. The file is as it was when this throws. connect: ";PWD=..." for one with a password.
CompactReport compactDatabase(const std::string& path, const ConnectString& connect = ConnectString(),
                              const CompactProgress& progress = {});

// Another number after each change of a database by this process, be it kept or not: for who shows records of
// a server, which does not tell that they have changed.
unsigned long changesMade();
void noteChange();  // for the classes below
}  // namespace dao

class CDaoDatabase {
  public:
    CDaoDatabase();
    ~CDaoDatabase();
    CDaoDatabase(const CDaoDatabase&) = delete;
    CDaoDatabase& operator=(const CDaoDatabase&) = delete;

    // Makes a new file and opens it. options: dbVersion30 or dbVersion40. A file that exists is an error.
    void Create(const std::string& path, const char* locale = dbLangGeneral, int options = dbVersion40);
    // Opens a file or, with an empty path, the source of a connect string that begins "ODBC;".
    void Open(const std::string& path, bool exclusive = false, bool readOnly = false,
              const dao::ConnectString& connect = dao::ConnectString());
    void Close();
    bool IsOpen() const { return connection_ != nullptr; }

    // The path of the file; for ODBC the data source's own name.
    std::string GetName() const;
    // The connect string that the source was really opened with; an empty one for a file.
    dao::ConnectString GetConnect() const;
    // "3.0" for Access 97, "4.0" for Access 2000.
    std::string GetVersion() const;

    // The tables are listed anew by GetTableDefCount, so that a walk by index costs one reading of the list;
    // a look by name uses that reading as long as nothing is changed here.
    int GetTableDefCount() const;
    void GetTableDefInfo(int index, CDaoTableDefInfo& info) const;
    void GetTableDefInfo(const std::string& name, CDaoTableDefInfo& info) const;
    void DeleteTableDef(const std::string& name);

    // On a server, where each look at its tables costs more than a record does, what an earlier opening has
    // read of them may serve again. When something then fails, and ForgetKnownTables gives true, the tables
    // may have changed since: the caller begins anew.
    void UseKnownTables();
    bool ForgetKnownTables();

    // An index by which records of a server are found by these text fields without regard to case; files need
    // none.
    void IndexForSearch(const std::string& table, const std::vector<std::string>& fields);
    // An index of some fields, of texts without regard to case. It lasts as soon as it is made, unless a
    // transaction is under way.
    void CreateIndex(const std::string& table, const std::vector<std::string>& fields);

    // Statements that are to mean exactly the same everywhere have to be written for each.
    dao::EngineKind GetEngineKind() const;

    // A statement without records. options: dbSQLPassThrough hands it to a server as it stands.
    void Execute(const std::string& sql, int options = 0);

    // What is changed between the two is kept whole, or not at all: Rollback, Close and the end of the object
    // undo it. Without a transaction every change is kept as soon as the database is closed.
    void BeginTrans();
    void CommitTrans();
    void Rollback();

    dao::Connection& connection() const;

  private:
    friend class CDaoTableDef;

    std::shared_ptr<dao::Connection> connection_;
    bool transaction_ = false;
    mutable std::vector<CDaoTableDefInfo> tables_;
    mutable bool listIsFresh_ = false;  // nothing has changed the tables here since they were listed
};

class CDaoTableDef {
  public:
    explicit CDaoTableDef(CDaoDatabase* database) : database_(database) {}
    ~CDaoTableDef();
    CDaoTableDef(const CDaoTableDef&) = delete;
    CDaoTableDef& operator=(const CDaoTableDef&) = delete;

    // A new definition: it takes fields, and becomes a table with Append.
    void Create(const std::string& name);
    void Append();
    // The definition of a table that exists. Changes of its fields take effect at once and keep the records.
    void Open(const std::string& name);
    void Close();
    bool IsOpen() const { return open_; }

    std::string GetName() const { return name_; }
    // Renames a table.
    void SetName(const std::string& name);

    // Adds a field at the end. A text field made in this form takes no zero-length text.
    void CreateField(const std::string& name, int type, long size, int attributes = 0);
    void CreateField(const CDaoFieldInfo& info);
    void DeleteField(const std::string& name);
    void DeleteField(int index);

    // Makes fields of a table that exists its primary key.
    void CreatePrimaryKey(const std::vector<std::string>& fields);

    int GetFieldCount() const;
    void GetFieldInfo(int index, CDaoFieldInfo& info) const;
    void GetFieldInfo(const std::string& name, CDaoFieldInfo& info) const;

  private:
    int find(const std::string& name) const;
    void requireOpen() const;
    void reload();

    CDaoDatabase* database_;
    std::string name_;
    std::vector<CDaoFieldInfo> fields_;
    bool open_ = false;
    bool appended_ = false;
    bool changed_ = false;  // something in the database that is to last
};

class CDaoRecordset {
  public:
    explicit CDaoRecordset(CDaoDatabase* database);
    ~CDaoRecordset();
    CDaoRecordset(const CDaoRecordset&) = delete;
    CDaoRecordset& operator=(const CDaoRecordset&) = delete;

    // Runs a SELECT, or opens a table by its name, and stands on the first record. parameters: a value for
    // each ? of the statement, in their order.
    void Open(int type, const std::string& sql, int options = 0,
              const std::vector<dao::Variant>& parameters = {});
    // An Edit or AddNew that was not ended by Update is dropped.
    void Close();
    bool IsOpen() const { return cursor_ != nullptr; }

    bool IsEOF() const;
    bool IsBOF() const;
    bool CanUpdate() const;
    void MoveFirst();
    void MoveLast();
    void MoveNext();
    void MovePrev();
    // Records visited so far; all of them after MoveLast.
    long GetRecordCount() const;
    // Stands on the record of a number, counted from 0 in the order in which the set has found them; behind
    // the end where there are not so many.
    void SetAbsolutePosition(long position);

    void AddNew();
    // Reads the record anew: what others have changed in a file is seen.
    void Edit();
    // Writes the record that AddNew or Edit began. After AddNew the current record is the one it was before.
    void Update();
    void CancelUpdate();
    // Deletes the current record; MoveNext goes on behind it.
    void Delete();

    int GetFieldCount() const;
    void GetFieldInfo(int index, CDaoFieldInfo& info) const;
    void GetFieldInfo(const std::string& name, CDaoFieldInfo& info) const;
    // The value of the current record, or of the one being written.
    dao::Variant GetFieldValue(const std::string& name) const;
    dao::Variant GetFieldValue(int index) const;
    // Converts the value to the field's type: text that is no number cannot go into a Long field.
    void SetFieldValue(const std::string& name, dao::Variant value);
    void SetFieldValue(int index, dao::Variant value);
    void SetFieldValueNull(const std::string& name) { SetFieldValue(name, dao::Variant()); }

  private:
    enum class Mode { kNone, kAdd, kEdit };
    enum class Place { kEmpty, kBefore, kRecord, kBehind };
    int find(const std::string& name) const;
    size_t checked(int index) const;
    void requireOpen() const;
    void requireUpdatable() const;
    void requireRecord() const;
    void moveTo(long position, Place otherwise);

    CDaoDatabase* database_;
    std::unique_ptr<dao::Cursor> cursor_;
    Mode mode_ = Mode::kNone;
    Place place_ = Place::kEmpty;
    long position_ = 0;
    long visited_ = 0;
    std::vector<dao::Variant> buffer_;  // of Edit and AddNew
    std::vector<bool> touched_;         // fields set since then
};
