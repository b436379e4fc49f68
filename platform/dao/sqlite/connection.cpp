#include "platform/dao/sqlite/connection.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "platform/dao/access_sql.h"
#include "platform/dao/convert.h"
#include "platform/dao/errors.h"
#include "platform/dao/names.h"
#include "platform/dao/sql_tokens.h"
#include "platform/dao/sqlite/cursor.h"
#include "platform/dao/sqlite/geopackage.h"
#include "platform/dao/sqlite/schema.h"
#include "platform/dao/sqlite/table_rows.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace dao::sqlite {
namespace {

constexpr int kApplicationId = 0x4E6F4749;
// Below this many rows a search reads them all as fast as an index would find one.
constexpr int64_t kRowsWorthAnIndex = 1000;
constexpr const char* kRebuilding = "MSysRebuilding";

int64_t pragmaInteger(sqlite3* db, const char* pragma) {
    Statement s(db, std::string("PRAGMA ") + pragma);
    return s.step() ? s.integer(0) : 0;
}

void makeFile(const std::string& path, const std::function<void(sqlite3*)>& fill) {
    Handle db = openFile(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    try {
        fill(db.get());
    } catch (const CDaoException& error) {
        db.reset();
        files::remove(path);
        throw CDaoException("Cannot make the database \"" + path + "\": " + error.description());
    }
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

SqliteConnection::SqliteConnection(const Source& source)
    : db_(openFile(source.path, source.readOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE)),
      path_(source.path) {
    run("PRAGMA synchronous = EXTRA");
    run("PRAGMA cache_size = -16000");
    if (source.exclusive) {
        run("PRAGMA locking_mode = EXCLUSIVE");
        run("BEGIN EXCLUSIVE");
        run("COMMIT");
    }
    // The first reading of the file: it tells a damaged and a locked one.
    version_ = pragmaInteger(handle(), "user_version") == 3 ? "3.0" : "4.0";
    pragmaInteger(handle(), "schema_version");
    if (isGeoPackage(handle())) {
        kind_ = FileKind::kGeoPackage;
        watchChanges();
    }
}

void SqliteConnection::watchChanges() {
    auto note = [](void* self, int, const char*, const char* table, sqlite3_int64) {
        auto& changed = static_cast<SqliteConnection*>(self)->changedTables_;
        if (!isGeoPackageTable(table)) changed.insert(table);
    };
    sqlite3_update_hook(handle(), note, this);
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
    if (!known) known = std::make_shared<const std::vector<CDaoFieldInfo>>(describeTable(handle(), table));
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
    if (findTable(table, isView).empty() || isView) noSuchTable(table);
}

template <typename Change>
void SqliteConnection::changeSchema(Change change) {
    beginWrite();
    run("SAVEPOINT change");
    try {
        change();
    } catch (...) {
        sqlite3_exec(handle(), "ROLLBACK TO change; RELEASE change", nullptr, nullptr, nullptr);
        fieldsSchema_ = -1;
        throw;
    }
    run("RELEASE change");
}

void SqliteConnection::createTable(const std::string& table, const std::vector<CDaoFieldInfo>& fields) {
    bool isView = false;
    if (!findTable(table, isView).empty()) tableExists(table);
    changeSchema([&] {
        run(createTableStatement(table, fields, kind_));
        if (kind_ == FileKind::kGeoPackage) registerTable(handle(), table);
    });
}

void SqliteConnection::deleteTable(const std::string& table) {
    requireTable(table);
    changeSchema([&] {
        if (kind_ == FileKind::kGeoPackage) {
            requireNoGeometry(handle(), table);
            unregisterTable(handle(), table);
        }
        run("DROP TABLE " + quotedName(table));
    });
}

void SqliteConnection::renameTable(const std::string& table, const std::string& newName) {
    requireTable(table);
    bool isView = false;
    if (!text::equalNoCase(table, newName) && !findTable(newName, isView).empty()) tableExists(newName);
    changeSchema([&] {
        if (kind_ == FileKind::kGeoPackage) {
            requireNoGeometry(handle(), table);
            renameRegistered(handle(), table, newName);
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
    if (!isOwnTable(handle(), table, kind_))
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
    Statement list(handle(), "PRAGMA index_list(" + quotedName(table) + ")");
    while (list.step()) {
        if (list.text(3) != "c") continue;  // part of a UNIQUE or PRIMARY KEY
        Statement info(handle(), "PRAGMA index_info(" + quotedName(list.text(1)) + ")");
        bool has = column.empty();
        while (info.step()) has = has || text::equalNoCase(info.text(2), column);
        if (has) found.push_back(list.text(1));
    }
    return found;
}

void SqliteConnection::indexFor(const std::string& table, const std::vector<std::string>& columns) {
    Statement size(handle(), "SELECT max(rowid) FROM " + quotedName(table));
    if (!size.step() || size.integer(0) < kRowsWorthAnIndex) return;
    size.reset();
    std::vector<CDaoFieldInfo> all = fields(table);
    for (const std::string& column : columns) {
        int field = findField(all, column);
        if (field < 0 || (all[static_cast<size_t>(field)].attributes & dbAutoIncrField)) return;
    }
    Statement list(handle(), "PRAGMA index_list(" + quotedName(table) + ")");
    while (list.step()) {
        Statement info(handle(), "PRAGMA index_info(" + quotedName(list.text(1)) + ")");
        if (info.step() && findNoCase(columns, info.text(2))) return;
    }
    list.reset();
    std::vector<std::string> quoted;
    for (const std::string& column : columns) quoted.push_back(quotedName(column));
    std::string name = table + " by " + text::join(columns, ", ");
    sqlite3_busy_timeout(handle(), 0);
    sqlite3_exec(handle(),
                 ("CREATE INDEX IF NOT EXISTS " + quotedName(name) + " ON " + quotedName(table) + " (" +
                  text::join(quoted, ", ") + ")")
                     .c_str(),
                 nullptr, nullptr, nullptr);
    sqlite3_busy_timeout(handle(), lockTimeout());
}

void SqliteConnection::execute(const std::string& sql, int) {
    AccessStatement statement = translateChange(sql);
    requireParameters(statement.parameters, 0);
    if (kind_ == FileKind::kGeoPackage && !statement.insertTable.empty() && statement.insertColumns.empty())
        statement.sql.insert(statement.insertColumnsAt,
                             " (" + columnList(fields(statement.insertTable)) + ")");
    Statement s(handle(), statement.sql);
    beginWrite();
    s.run();
    wrote();
}

std::unique_ptr<Cursor> SqliteConnection::open(int type, const std::string& sql, int,
                                               const std::vector<Variant>& parameters) {
    bool isView = false;
    std::string whole = findTable(std::string(text::trim(sql)), isView);
    AccessStatement statement = whole.empty() ? translateSelect(sql) : translateTable(whole);
    requireParameters(statement.parameters, parameters.size());
    if (statement.plain && type != dbOpenSnapshot) {
        statement.table = findTable(std::string(statement.table), isView);
        std::string rowId = statement.table.empty() || isView ? "" : rowIdOf(statement.table);
        if (!rowId.empty()) {
            if (!statement.equalities.empty()) indexFor(statement.table, statement.equalities);
            return std::make_unique<KeyCursor>(shared_from_this(), statement, rowId, parameters);
        }
    }
    return std::make_unique<SnapshotCursor>(handle(), shownColumns(statement), parameters);
}

std::unique_ptr<TableRows> SqliteConnection::rows(const std::string& table) {
    bool isView = false;
    const std::string name = findTable(table, isView);
    if (name.empty()) noSuchTable(table);
    const std::string rowId = isView ? "" : rowIdOf(name);
    if (rowId.empty()) return nullptr;
    return std::make_unique<SqliteRows>(shared_from_this(), name, rowId);
}

void SqliteConnection::createIndex(const std::string& table, const std::vector<std::string>& fields) {
    requireTable(table);
    const std::vector<CDaoFieldInfo> present = this->fields(table);
    std::vector<std::string> names, columns;
    for (const std::string& name : fields) {
        const int field = findField(present, name);
        if (field < 0) noSuchField(name);
        const CDaoFieldInfo& info = present[static_cast<size_t>(field)];
        names.push_back(info.name);
        // A table of another program may compare its texts as they are written.
        columns.push_back(quotedName(info.name) + (isTextType(info.type) ? " COLLATE NOCASE" : ""));
    }
    changeSchema([&] {
        run("CREATE INDEX " + quotedName(table + " by " + text::join(names, ", ")) + " ON " +
            quotedName(table) + " (" + text::join(columns, ", ") + ")");
    });
}

// The statement without the key that is no field.
std::string SqliteConnection::shownColumns(const AccessStatement& statement) {
    bool all = statement.plain && isAllColumns(statement.columns);
    if (kind_ == FileKind::kPlain || !all || statement.table.empty()) return statement.sql;
    return "SELECT " + columnList(fields(statement.table)) + statement.fromClause();
}

std::string SqliteConnection::rowIdOf(const std::string& table) {
    std::vector<CDaoFieldInfo> all = fields(table);
    for (const char* name : {"rowid", "_rowid_", "oid"}) {
        if (findField(all, name) >= 0) continue;
        sqlite3_stmt* probe = nullptr;
        std::string sql = std::string("SELECT ") + name + " FROM " + quotedName(table);
        bool good = sqlite3_prepare_v2(handle(), sql.c_str(), -1, &probe, nullptr) == SQLITE_OK;
        sqlite3_finalize(probe);
        return good ? name : "";
    }
    return "";
}

void SqliteConnection::run(const std::string& sql) {
    Statement(handle(), sql).run();
}

std::shared_ptr<Statement> SqliteConnection::prepared(const std::string& sql) {
    constexpr size_t kKept = 64;
    auto it = statements_.find(sql);
    if (it != statements_.end()) return it->second;
    if (statements_.size() >= kKept) statements_.clear();  // those in use live on with their users
    return statements_[sql] = std::make_shared<Statement>(handle(), sql);
}

void SqliteConnection::begin() {
    prepared("BEGIN IMMEDIATE")->run();
}

void SqliteConnection::keepChanges() {
    noteChange(handle(), std::exchange(changedTables_, {}));
    prepared("COMMIT")->run();
}

void SqliteConnection::undoChanges() {
    if (inTransaction()) sqlite3_exec(handle(), "ROLLBACK", nullptr, nullptr, nullptr);
    fieldsSchema_ = -1;
    changedTables_.clear();
}

void SqliteConnection::compact() {
    {
        Statement check(handle(), "PRAGMA integrity_check(1)");
        if (check.step() && check.text(0) != "ok")
            throw CDaoException("The database \"" + path_ + "\" is damaged (" + check.text(0) +
                                ") and is left as it is: only Access databases can be repaired.");
    }
    statements_.clear();
    run("VACUUM");
}

}  // namespace dao::sqlite
