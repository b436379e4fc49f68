#include "platform/dao/sqlite/connection.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <utility>

#include "platform/dao/access_sql.h"
#include "platform/dao/engines.h"
#include "platform/dao/names.h"
#include "platform/dao/sqlite/cursor.h"
#include "platform/dao/sqlite/functions.h"
#include "platform/dao/sqlite/geopackage.h"
#include "platform/dao/sqlite/schema.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace dao::sqlite {
namespace {

constexpr int kApplicationId = 0x4E6F4749;
// Below this many rows a search reads them all as fast as an index would find one.
constexpr int64_t kRowsWorthAnIndex = 1000;
constexpr const char* kRebuilding = "MSysRebuilding";

sqlite3* openHandle(const std::string& path, int flags) {
    sqlite3* db = nullptr;
    std::string absolute = std::filesystem::absolute(path).string();
    if (sqlite3_open_v2(absolute.c_str(), &db, flags | SQLITE_OPEN_NOMUTEX, nullptr) == SQLITE_OK) {
        sqlite3_extended_result_codes(db, 1);
        sqlite3_busy_timeout(db, lockTimeout());
        return db;
    }
    std::string reason = db ? sqlite3_errmsg(db) : "out of memory";
    sqlite3_close(db);
    throw CDaoException("Cannot open the database \"" + path + "\": " + reason + ".");
}

int64_t pragmaInteger(sqlite3* db, const char* pragma) {
    Statement s(db, std::string("PRAGMA ") + pragma);
    return s.step() ? s.integer(0) : 0;
}

void makeFile(const std::string& path, const std::function<void(sqlite3*)>& fill) {
    sqlite3* db = openHandle(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    try {
        fill(db);
    } catch (const CDaoException& error) {
        sqlite3_close(db);
        files::remove(path);
        throw CDaoException("Cannot make the database \"" + path + "\": " + error.description());
    }
    sqlite3_close(db);
}

bool findNoCase(const std::vector<std::string>& names, std::string_view wanted) {
    return std::any_of(names.begin(), names.end(),
                       [&](const auto& name) { return text::equalNoCase(name, wanted); });
}

}  // namespace

void makeEmptyFile(const std::string& path, int version) {
    makeFile(path, [version](sqlite3* db) {
        Statement(db, "PRAGMA application_id = " + std::to_string(kApplicationId)).run();
        Statement(db, "PRAGMA user_version = " + std::to_string(version)).run();
    });
}

void makeEmptyGeoPackage(const std::string& path) {
    makeFile(path, makeGeoPackage);
}

SqliteConnection::SqliteConnection(const Source& source) : path_(source.path) {
    bool readOnly = source.readOnly || isReadOnlyFile(path_);
    db_ = openHandle(path_, readOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE);
    try {
        sqlite3_db_config(db_, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
        addFunctions(db_);
        run("PRAGMA synchronous = EXTRA");
        run("PRAGMA cache_size = -16000");
        if (source.exclusive) {
            run("PRAGMA locking_mode = EXCLUSIVE");
            run("BEGIN EXCLUSIVE");
            run("COMMIT");
        }
        // The first reading of the file: it tells a damaged and a locked one.
        version_ = pragmaInteger(db_, "user_version") == 3 ? "3.0" : "4.0";
        pragmaInteger(db_, "schema_version");
        if (isGeoPackage(db_)) {
            kind_ = FileKind::kGeoPackage;
            watchChanges();
        }
    } catch (...) {
        sqlite3_close_v2(db_);
        throw;
    }
}

void SqliteConnection::watchChanges() {
    auto note = [](void* self, int, const char*, const char* table, sqlite3_int64) {
        auto& changed = static_cast<SqliteConnection*>(self)->changedTables_;
        if (!isGeoPackageTable(table)) changed.insert(table);
    };
    sqlite3_update_hook(db_, note, this);
}

SqliteConnection::~SqliteConnection() {
    statements_.clear();
    sqlite3_close_v2(db_);
}

std::vector<CDaoTableDefInfo> SqliteConnection::tables() {
    auto s = prepared(
        "SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\'");
    Resetting resetting(*s);
    std::vector<CDaoTableDefInfo> tables;
    while (s->step())
        if (kind_ == FileKind::kPlain || !isGeoPackageTable(s->text(0)))
            tables.push_back({s->text(0), "", true});
    return tables;
}

std::vector<CDaoFieldInfo> SqliteConnection::fields(const std::string& table) {
    return *sharedFields(table);
}

std::shared_ptr<const std::vector<CDaoFieldInfo>> SqliteConnection::sharedFields(const std::string& table) {
    auto version = prepared("PRAGMA schema_version");
    Resetting resetting(*version);
    int64_t schema = version->step() ? version->integer(0) : -1;
    if (schema != fieldsSchema_) fields_.clear();
    fieldsSchema_ = schema;
    auto& known = fields_[table];
    if (!known) known = std::make_shared<const std::vector<CDaoFieldInfo>>(describeTable(db_, table));
    return known;
}

std::string SqliteConnection::findTable(const std::string& name, bool& isView) {
    auto s = prepared(
        "SELECT name, type = 'view' FROM sqlite_master WHERE name = ?1 COLLATE NOCASE AND "
        "type IN ('table', 'view')");
    Resetting resetting(*s);
    Variant wanted(name);
    s->bind(1, wanted);
    if (!s->step()) return "";
    isView = s->integer(1) != 0;
    return s->text(0);
}

void SqliteConnection::requireTable(const std::string& table) {
    bool isView = false;
    if (findTable(table, isView).empty() || isView)
        throw CDaoException("Cannot find the table " + table + ".");
}

template <typename Change>
void SqliteConnection::changeSchema(Change change) {
    beginWrite();
    run("SAVEPOINT change");
    try {
        change();
    } catch (...) {
        sqlite3_exec(db_, "ROLLBACK TO change; RELEASE change", nullptr, nullptr, nullptr);
        fieldsSchema_ = -1;
        throw;
    }
    run("RELEASE change");
}

void SqliteConnection::createTable(const std::string& table, const std::vector<CDaoFieldInfo>& fields) {
    bool isView = false;
    if (!findTable(table, isView).empty()) throw CDaoException("The table " + table + " exists already.");
    changeSchema([&] {
        run(createTableStatement(table, fields, kind_));
        if (kind_ == FileKind::kGeoPackage) registerTable(db_, table);
    });
}

void SqliteConnection::deleteTable(const std::string& table) {
    requireTable(table);
    changeSchema([&] {
        if (kind_ == FileKind::kGeoPackage) {
            requireNoGeometry(db_, table);
            unregisterTable(db_, table);
        }
        run("DROP TABLE " + quotedName(table));
    });
}

void SqliteConnection::renameTable(const std::string& table, const std::string& newName) {
    requireTable(table);
    bool isView = false;
    if (!text::equalNoCase(table, newName) && !findTable(newName, isView).empty())
        throw CDaoException("The table " + newName + " exists already.");
    changeSchema([&] {
        if (kind_ == FileKind::kGeoPackage) {
            requireNoGeometry(db_, table);
            renameRegistered(db_, table, newName);
        }
        // The indexes made here carry the table's name. They come back under the new one when they are
        // wanted.
        for (const std::string& index : indexesWith(table, "")) run("DROP INDEX " + quotedName(index));
        run("ALTER TABLE " + quotedName(table) + " RENAME TO " + quotedName(newName));
    });
}

void SqliteConnection::createField(const std::string& table, const CDaoFieldInfo& field) {
    requireTable(table);
    changeSchema([&] {
        if (!(field.attributes & dbAutoIncrField))
            return run("ALTER TABLE " + quotedName(table) + " ADD COLUMN " + columnDefinition(field, kind_));
        std::vector<CDaoFieldInfo> all = fields(table);
        for (const CDaoFieldInfo& other : all)
            if (other.attributes & dbAutoIncrField)
                throw CDaoException("The table " + table + " has a field that counts by itself already.");
        all.push_back(field);
        rebuild(table, all);
    });
}

void SqliteConnection::deleteField(const std::string& table, const std::string& field) {
    requireTable(table);
    std::vector<CDaoFieldInfo> all = fields(table);
    int index = findField(all, field);
    if (index < 0) noSuchField(field);
    if (all.size() == 1)
        throw CDaoException("The field " + field + " is the only one of the table " + table + ".");
    bool counts = (all[static_cast<size_t>(index)].attributes & dbAutoIncrField) != 0;
    changeSchema([&] {
        for (const std::string& name : indexesWith(table, field)) run("DROP INDEX " + quotedName(name));
        all.erase(all.begin() + index);
        if (counts)
            rebuild(table, all);
        else
            run("ALTER TABLE " + quotedName(table) + " DROP COLUMN " + quotedName(field));
    });
}

void SqliteConnection::rebuild(const std::string& table, const std::vector<CDaoFieldInfo>& newFields) {
    if (!isOwnTable(db_, table, kind_))
        throw CDaoException("The table " + table +
                            " was made by another program, which alone can change it so.");
    std::vector<CDaoFieldInfo> oldFields = fields(table);
    std::vector<std::string> kept;
    for (const CDaoFieldInfo& field : newFields)
        if (findField(oldFields, field.name) >= 0) kept.push_back(quotedName(field.name));
    std::string columns = text::join(kept, ", ");
    run(createTableStatement(kRebuilding, newFields, kind_));
    run("INSERT INTO " + quotedName(kRebuilding) + " (" + columns + ") SELECT " + columns + " FROM " +
        quotedName(table) + " ORDER BY rowid");
    run("DROP TABLE " + quotedName(table));
    run("ALTER TABLE " + quotedName(kRebuilding) + " RENAME TO " + quotedName(table));
}

std::vector<std::string> SqliteConnection::indexesWith(const std::string& table, const std::string& column) {
    std::vector<std::string> found;
    Statement list(db_, "PRAGMA index_list(" + quotedName(table) + ")");
    while (list.step()) {
        if (list.text(3) != "c") continue;  // part of a UNIQUE or PRIMARY KEY
        Statement info(db_, "PRAGMA index_info(" + quotedName(list.text(1)) + ")");
        bool has = column.empty();
        while (info.step()) has = has || text::equalNoCase(info.text(2), column);
        if (has) found.push_back(list.text(1));
    }
    return found;
}

void SqliteConnection::indexFor(const std::string& table, const std::vector<std::string>& columns) {
    Statement size(db_, "SELECT max(rowid) FROM " + quotedName(table));
    if (!size.step() || size.integer(0) < kRowsWorthAnIndex) return;
    size.reset();
    std::vector<CDaoFieldInfo> all = fields(table);
    for (const std::string& column : columns) {
        int field = findField(all, column);
        if (field < 0 || (all[static_cast<size_t>(field)].attributes & dbAutoIncrField)) return;
    }
    Statement list(db_, "PRAGMA index_list(" + quotedName(table) + ")");
    while (list.step()) {
        Statement info(db_, "PRAGMA index_info(" + quotedName(list.text(1)) + ")");
        if (info.step() && findNoCase(columns, info.text(2))) return;
    }
    list.reset();
    std::vector<std::string> quoted;
    for (const std::string& column : columns) quoted.push_back(quotedName(column));
    std::string name = table + " by " + text::join(columns, ", ");
    sqlite3_busy_timeout(db_, 0);
    sqlite3_exec(db_,
                 ("CREATE INDEX IF NOT EXISTS " + quotedName(name) + " ON " + quotedName(table) + " (" +
                  text::join(quoted, ", ") + ")")
                     .c_str(),
                 nullptr, nullptr, nullptr);
    sqlite3_busy_timeout(db_, lockTimeout());
}

void SqliteConnection::execute(const std::string& sql, int) {
    AccessStatement statement = translateStatement(sql);
    if (statement.select) throw CDaoException("A SELECT is opened as a record set and cannot be executed.");
    if (kind_ == FileKind::kGeoPackage && !statement.insertTable.empty() && statement.insertColumns.empty())
        statement.sql.insert(statement.insertColumnsAt, " (" + shownFields(statement.insertTable) + ")");
    Statement s(db_, statement.sql);
    beginWrite();
    s.run();
    wrote();
}

std::unique_ptr<Cursor> SqliteConnection::open(int type, const std::string& sql, int) {
    bool isView = false;
    std::string whole = findTable(std::string(text::trim(sql)), isView);
    AccessStatement statement = translateStatement(whole.empty() ? sql : "SELECT * FROM [" + whole + "]");
    if (!statement.select) throw CDaoException("A record set needs a SELECT: " + sql);
    if (statement.plain && type != dbOpenSnapshot) {
        statement.table = findTable(std::string(statement.table), isView);
        std::string rowId = statement.table.empty() || isView ? "" : rowIdOf(statement.table);
        if (!rowId.empty()) {
            if (!statement.equalities.empty()) indexFor(statement.table, statement.equalities);
            return std::make_unique<KeyCursor>(shared_from_this(), statement, rowId);
        }
    }
    return std::make_unique<SnapshotCursor>(db_, shownColumns(statement));
}

// A list of the fields of a table: all of its columns but the key that is no field.
std::string SqliteConnection::shownFields(const std::string& table) {
    std::vector<std::string> columns;
    for (const CDaoFieldInfo& field : fields(table)) columns.push_back(quotedName(field.name));
    return text::join(columns, ", ");
}

std::string SqliteConnection::shownColumns(const AccessStatement& statement) {
    bool all = statement.plain && statement.columns == std::vector<std::string>{"*"};
    if (kind_ == FileKind::kPlain || !all || statement.table.empty()) return statement.sql;
    return "SELECT " + shownFields(statement.table) + " FROM " + quotedName(statement.table) +
           (statement.where.empty() ? "" : " WHERE " + statement.where) + " " + statement.orderBy;
}

std::string SqliteConnection::rowIdOf(const std::string& table) {
    std::vector<CDaoFieldInfo> all = fields(table);
    for (const char* name : {"rowid", "_rowid_", "oid"}) {
        if (findField(all, name) >= 0) continue;
        sqlite3_stmt* probe = nullptr;
        std::string sql = std::string("SELECT ") + name + " FROM " + quotedName(table);
        bool good = sqlite3_prepare_v2(db_, sql.c_str(), -1, &probe, nullptr) == SQLITE_OK;
        sqlite3_finalize(probe);
        return good ? name : "";
    }
    return "";
}

void SqliteConnection::run(const std::string& sql) {
    Statement(db_, sql).run();
}

std::shared_ptr<Statement> SqliteConnection::prepared(const std::string& sql) {
    constexpr size_t kKept = 64;
    auto it = statements_.find(sql);
    if (it != statements_.end()) return it->second;
    if (statements_.size() >= kKept) statements_.clear();  // those in use live on with their users
    return statements_[sql] = std::make_shared<Statement>(db_, sql);
}

void SqliteConnection::beginWrite() {
    if (!sqlite3_get_autocommit(db_)) return;
    prepared("BEGIN IMMEDIATE")->run();
    writes_ = 0;
    began_ = std::chrono::steady_clock::now();
}

void SqliteConnection::wrote() {
    constexpr int kWritesBetweenLooks = 64;
    if (++writes_ % kWritesBetweenLooks != 0) return;
    if (std::chrono::steady_clock::now() - began_ >= std::chrono::seconds(kSecondsShared)) commit();
}

void SqliteConnection::rollback() {
    if (!sqlite3_get_autocommit(db_)) sqlite3_exec(db_, "ROLLBACK", nullptr, nullptr, nullptr);
    fieldsSchema_ = -1;
    changedTables_.clear();
}

void SqliteConnection::commit() {
    if (transaction_ || sqlite3_get_autocommit(db_)) return;
    try {
        noteChange(db_, std::exchange(changedTables_, {}));
        prepared("COMMIT")->run();
    } catch (const CDaoException&) {
        // What cannot be made to last is undone, so that the file is not left locked.
        rollback();
        throw;
    }
}

void SqliteConnection::compact() {
    {
        Statement check(db_, "PRAGMA integrity_check(1)");
        if (check.step() && check.text(0) != "ok")
            throw CDaoException("The database \"" + path_ + "\" is damaged (" + check.text(0) +
                                ") and is left as it is: only Access databases can be repaired.");
    }
    statements_.clear();
    run("VACUUM");
}

void SqliteConnection::beginTransaction() {
    commit();
    beginWrite();
    transaction_ = true;
}

void SqliteConnection::endTransaction(bool keep) {
    if (!std::exchange(transaction_, false)) return;
    if (keep)
        commit();
    else
        rollback();
}

}  // namespace dao::sqlite
