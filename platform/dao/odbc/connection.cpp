#include "platform/dao/odbc/connection.h"

#include <algorithm>
#include <utility>

#include "platform/dao/access_sql.h"
#include "platform/dao/convert.h"
#include "platform/dao/errors.h"
#include "platform/dao/names.h"
#include "platform/dao/odbc/cursor.h"
#include "platform/dao/odbc/table_rows.h"
#include "platform/dao/odbc/wide_text.h"
#include "platform/dao/sql_tokens.h"
#include "platform/text/text.h"

namespace dao::odbc {
namespace {

std::string listed(const Catalogue::Table& table) {
    return table.owner.empty() ? table.name : table.owner + "." + table.name;
}

// A name as a catalogue function takes it, pointer and length.
struct Wide {
    explicit Wide(std::string_view s) : units(toWide(s)) { units.push_back(0); }
    SQLWCHAR* data() { return units.data(); }
    SQLSMALLINT size() const { return static_cast<SQLSMALLINT>(units.size() - 1); }
    std::vector<SQLWCHAR> units;
};

// An owner or a table for functions that take patterns.
std::string asPattern(std::string_view name, const std::string& escape) {
    std::string out;
    for (char c : name) {
        if (c == '%' || c == '_' || std::string_view(&c, 1) == escape) out += escape;
        out += c;
    }
    return out;
}

}  // namespace

OdbcConnection::OdbcConnection(std::shared_ptr<IdleSessions> idle, const Source& source)
    : idle_(std::move(idle)), source_(source), session_(idle_->take(source)) {}

OdbcConnection::~OdbcConnection() {
    try {
        if (transaction_) OdbcConnection::endTransaction(false);
        if (reusable_) idle_->giveBack(source_, std::move(session_));
    } catch (const std::exception&) {
        // A session that cannot be given back is closed, and the server undoes what was not kept.
    }
}

// --- What there is --------------------------------------------------------------------------------------

void OdbcConnection::readTables() {
    std::vector<Table> tables;
    Statement rows(handle());
    const bool inSchema = !session_->connect().value("SCHEMA").empty();
    Wide all("%"), types("TABLE,VIEW");
    rows.ran(SQLTablesW(rows.handle(), nullptr, 0, dialect().owners ? all.data() : nullptr,
                        dialect().owners ? all.size() : SQLSMALLINT{0}, all.data(), all.size(), types.data(),
                        types.size()));
    while (rows.fetch()) {
        Table table;
        table.owner = rows.text(2);
        table.name = rows.text(3);
        table.isView = text::equalNoCase(rows.text(4), "VIEW");
        table.needsOwner = inSchema && text::equalNoCase(table.owner, session_->owner());
        tables.push_back(std::move(table));
    }
    known().tables = std::move(tables);
}

KnownTables& OdbcConnection::known() {
    if (fromBefore_ && !usesKnown_) forget();
    return session_->known();
}

void OdbcConnection::forget() {
    session_->known() = {};
    fromBefore_ = false;
}

bool OdbcConnection::forgetKnownTables() {
    bool wasUsed = fromBefore_ && usesKnown_;
    forget();
    usesKnown_ = false;
    return wasUsed;
}

std::vector<CDaoTableDefInfo> OdbcConnection::tables() {
    if (!(fromBefore_ && usesKnown_ && known().tables)) {
        forget();
        readTables();
    }
    std::vector<CDaoTableDefInfo> list;
    for (const Table& table : *known().tables) list.push_back({listed(table), "", !table.isView});
    return list;
}

const Catalogue::Table* OdbcConnection::find(std::string_view owner, std::string_view name) {
    if (!known().tables) readTables();
    // The name as it stands goes before one of another case, the owner's table before those of others.
    const Table* found = nullptr;
    int best = -1;
    for (const Table& table : *known().tables) {
        if (!text::equalNoCase(table.name, name)) continue;
        if (!owner.empty() && !text::equalNoCase(table.owner, owner)) continue;
        int rank = (text::equalNoCase(table.owner, session_->owner()) ? 2 : 0) + (table.name == name ? 1 : 0);
        if (rank > best) {
            best = rank;
            found = &table;
        }
    }
    return found;
}

const Catalogue::Table& OdbcConnection::required(const std::string& name) {
    if (!known().tables) readTables();
    for (const Table& table : *known().tables)
        if (!table.owner.empty() && text::equalNoCase(listed(table), name)) return table;
    if (const Table* table = find("", name)) return *table;
    noSuchTable(name);
}

const std::vector<CDaoFieldInfo>& OdbcConnection::fieldsOf(const Table& table) {
    KnownTables::Key key(table.owner, table.name);
    auto& known = this->known().fields;
    if (auto found = known.find(key); found != known.end()) return found->second;
    std::vector<CDaoFieldInfo> fields;
    for (const Column& column : readColumns(table)) {
        fields.push_back(fieldOf(column));
        fields.back().ordinalPosition = static_cast<int>(fields.size()) - 1;
    }
    return known.emplace(std::move(key), std::move(fields)).first->second;
}

std::vector<Column> OdbcConnection::readColumns(const Table& table) {
    std::vector<Column> columns;
    Statement rows(handle());
    std::string escape = informationOf(handle(), SQL_SEARCH_PATTERN_ESCAPE);
    Wide owner(asPattern(table.owner, escape)), name(asPattern(table.name, escape));
    bool owned = !table.owner.empty();
    rows.ran(SQLColumnsW(rows.handle(), nullptr, 0, owned ? owner.data() : nullptr,
                         owned ? owner.size() : SQLSMALLINT{0}, name.data(), name.size(), nullptr, 0));
    while (rows.fetch()) {
        // Drivers without escapes find others as well.
        bool same = rows.text(2) == table.owner;
        same = rows.text(3) == table.name && same;
        Column column;
        column.name = rows.text(4);
        column.sqlType = static_cast<SQLSMALLINT>(text::toLong(rows.text(5)));
        column.typeName = rows.text(6);
        column.size = text::toLong(rows.text(7));
        column.decimals = static_cast<int>(text::toLong(rows.text(9)));
        column.nullable = rows.text(11) != "0";
        std::string filledIn = rows.text(13);
        column.counts =
            text::startsWith(filledIn, "nextval(") || text::equalNoCase(column.typeName, "serial");
        column.hasDefault = !filledIn.empty() && !text::equalNoCase(filledIn, "NULL");
        if (same) columns.push_back(std::move(column));
    }
    return columns;
}

std::vector<CDaoFieldInfo> OdbcConnection::fields(const std::string& table) {
    return fieldsOf(required(table));
}

const std::vector<std::string>& OdbcConnection::columnsOf(const Table& table) {
    auto [entry, isNew] = known().columns.try_emplace({table.owner, table.name});
    if (isNew)
        for (const CDaoFieldInfo& field : fieldsOf(table)) entry->second.push_back(field.name);
    return entry->second;
}

std::string OdbcConnection::written(const Table& table) const {
    return (table.owner.empty() ? "" : dialect().written(table.owner) + ".") + dialect().written(table.name);
}

std::vector<std::string> OdbcConnection::keyOf(const Table& table) {
    std::vector<std::string> key;
    Wide owner(table.owner), name(table.name);
    SQLWCHAR* ownerName = table.owner.empty() ? nullptr : owner.data();
    SQLSMALLINT ownerSize = table.owner.empty() ? SQLSMALLINT{0} : owner.size();
    {
        Statement rows(handle());
        if (SQL_SUCCEEDED(
                SQLPrimaryKeysW(rows.handle(), nullptr, 0, ownerName, ownerSize, name.data(), name.size())))
            while (rows.fetch()) key.push_back(rows.text(4));
    }
    if (!key.empty()) return key;
    // The columns of the first index that keeps records apart.
    Statement rows(handle());
    if (!SQL_SUCCEEDED(SQLStatisticsW(rows.handle(), nullptr, 0, ownerName, ownerSize, name.data(),
                                      name.size(), SQL_INDEX_UNIQUE, SQL_QUICK)))
        return key;
    std::string first;
    while (rows.fetch()) {
        std::string index = rows.text(6), column = rows.text(9);
        if (column.empty()) continue;  // figures of the table itself
        if (key.empty()) first = index;
        if (index == first) key.push_back(column);
    }
    for (const std::string& column : key)
        for (const CDaoFieldInfo& field : fieldsOf(table))
            if (field.name == column && !field.required && !(field.attributes & dbAutoIncrField)) return {};
    return key;
}

// --- Changes of the schema --------------------------------------------------------------------------------

void OdbcConnection::run(const std::string& sql) {
    Statement statement(handle());
    statement.execute(sql);
}

template <typename IsThere>
void OdbcConnection::changeSchema(const std::string& sql, IsThere isThere) {
    std::string error;
    try {
        run(sql);
    } catch (const CDaoException& exception) {
        error = exception.description();
    }
    forget();
    if (error.empty()) return;
    bool there = false;
    try {
        there = isThere();
    } catch (const CDaoException&) {
        // The first error tells more than one about looking after it.
    }
    if (there) throw CDaoConflict(error);
    throw CDaoException(error);
}

std::string OdbcConnection::columnDefinition(const CDaoFieldInfo& field) {
    std::string name = dialect().forNew(field.name);
    std::string out = dialect().written(name) + " " + session_->types().columnType(field);
    if (!field.defaultValue.empty())
        out += " DEFAULT " + translateDefault(field.defaultValue, isTextType(field.type));
    if (field.required) out += " NOT NULL";
    if (!field.validationRule.empty()) out += " CHECK (" + translateRule(field.validationRule, name) + ")";
    return out;
}

// The owner of a name, in the server's own case; "" when there is none.
std::string OdbcConnection::ownerNamed(const std::string& name) {
    Statement rows(handle());
    Wide all("%"), none("");
    rows.ran(
        SQLTablesW(rows.handle(), none.data(), 0, all.data(), all.size(), none.data(), 0, none.data(), 0));
    std::string found;
    while (rows.fetch()) {
        std::string owner = rows.text(2);
        if (owner == name || (found.empty() && text::equalNoCase(owner, name))) found = owner;
    }
    return found;
}

std::string OdbcConnection::ownerOfNewTables() {
    const std::string& name = session_->owner();
    if (!dialect().owners || name.empty()) return "";
    if (std::string owner = ownerNamed(name); !owner.empty()) return owner;
    std::string owner = dialect().forNew(name);
    try {
        changeSchema("CREATE SCHEMA " + dialect().written(owner), [&] { return !ownerNamed(name).empty(); });
    } catch (const CDaoConflict&) {
        throw;
    } catch (const CDaoException& error) {
        const bool isUser = session_->connect().value("SCHEMA").empty();
        throw CDaoException((isUser ? "The tables of the user " + name + " belong into a schema of this name"
                                    : "The tables belong into the schema " + name) +
                            ", which the server does not have and which cannot be made. " +
                            error.description());
    }
    return owner;
}

void OdbcConnection::createTable(const std::string& table, const std::vector<CDaoFieldInfo>& fields) {
    Table made{ownerOfNewTables(), dialect().forNew(table)};
    std::vector<std::string> columns;
    for (const CDaoFieldInfo& field : fields) columns.push_back(columnDefinition(field));
    changeSchema("CREATE TABLE " + written(made) + " (" + text::join(columns, ", ") + ")",
                 [&] { return find(made.owner, made.name) != nullptr; });
}

void OdbcConnection::deleteTable(const std::string& table) {
    changeSchema("DROP TABLE " + written(required(table)), [] { return false; });
}

void OdbcConnection::renameTable(const std::string& table, const std::string& newName) {
    changeSchema("ALTER TABLE " + written(required(table)) + " RENAME TO " +
                     dialect().written(dialect().forNew(newName)),
                 [] { return false; });
}

void OdbcConnection::createField(const std::string& table, const CDaoFieldInfo& field) {
    changeSchema("ALTER TABLE " + written(required(table)) + " ADD " + columnDefinition(field),
                 [&] { return findField(fieldsOf(required(table)), field.name) >= 0; });
}

void OdbcConnection::deleteField(const std::string& table, const std::string& field) {
    const Table& of = required(table);
    int index = findField(fieldsOf(of), field);
    if (index < 0) noSuchField(field);
    changeSchema("ALTER TABLE " + written(of) + " DROP COLUMN " +
                     dialect().written(fieldsOf(of)[static_cast<size_t>(index)].name),
                 [] { return false; });
}

// --- Statements -------------------------------------------------------------------------------------------

void OdbcConnection::execute(const std::string& sql, int options) {
    run(translateForServer(sql, dialect(), *this, options & dbSQLPassThrough).sql);
}

EngineKind OdbcConnection::kind() const {
    return dialect().postgres ? EngineKind::kPostgres : EngineKind::kOtherServer;
}

std::unique_ptr<Cursor> OdbcConnection::open(int type, const std::string& sql, int options,
                                             const std::vector<Variant>& parameters) {
    // A table may be opened by its name alone.
    std::string whole(text::trim(sql));
    bool isStatement = options & dbSQLPassThrough || text::equalNoCase(whole.substr(0, 7), "SELECT ");
    bool isName = !isStatement && (whole.find_first_of(" \t\r\n") == std::string::npos || find("", whole));
    std::string select = isName ? "SELECT * FROM " + written(required(whole)) : whole;
    ServerStatement statement =
        translateForServer(select, dialect(), *this, isName || options & dbSQLPassThrough);
    if (options & dbDenyWrite && statement.table) denyWriting(*statement.table, statement.sql, parameters);
    return std::make_unique<OdbcCursor>(shared_from_this(), statement, type, parameters);
}

std::unique_ptr<TableRows> OdbcConnection::rows(const std::string& table) {
    const Table& of = required(table);
    if (!PostgresRows::serves(*this, of)) return nullptr;
    return std::make_unique<PostgresRows>(shared_from_this(), of);
}

// Who asks for the same records waits until the transaction ends: two that save one record must not both find
// none, and two that save different ones do not wait for each other. The statement names the records, so it
// names the lock; in one case, since one client may write a table's name in capitals and another not.
void OdbcConnection::denyWriting(const Table& table, const std::string& statement,
                                 const std::vector<Variant>& parameters) {
    // Elsewhere sessions are serializable.
    if (!transaction_ || !dialect().postgres) return;
    std::string records = statement;
    for (const Variant& parameter : parameters) records += "\n" + toText(parameter);
    run("SET LOCAL lock_timeout = " + std::to_string(lockTimeout()) +
        "; SELECT pg_advisory_xact_lock(hashtextextended(" +
        quotedText(written(table) + " " + text::upper(records)) + ", 0))");
}

void OdbcConnection::indexForSearch(const std::string& table, const std::vector<std::string>& fields) {
    if (!dialect().postgres) return;
    const Table& of = required(table);
    std::vector<std::string> keys;
    for (const std::string& name : fields) {
        int field = findField(fieldsOf(of), name);
        if (field < 0) noSuchField(name);
        keys.push_back("upper(" + dialect().written(fieldsOf(of)[static_cast<size_t>(field)].name) + ")");
    }
    run("CREATE INDEX ON " + written(of) + " (" + text::join(keys, ", ") + ")");
}

void OdbcConnection::createIndex(const std::string& table, const std::vector<std::string>& fields) {
    const Table& of = required(table);
    std::vector<std::string> columns;
    std::string indexName = of.name;
    for (const std::string& name : fields) {
        const int field = findField(fieldsOf(of), name);
        if (field < 0) noSuchField(name);
        const CDaoFieldInfo& info = fieldsOf(of)[static_cast<size_t>(field)];
        const std::string column = dialect().written(info.name);
        columns.push_back(dialect().postgres ? PostgresRows::indexed(column, info.type) : column);
        indexName += "_" + info.name;
    }
    // PostgreSQL finds a name that is free.
    const std::string named = dialect().postgres ? "" : dialect().written(dialect().forNew(indexName)) + " ";
    run("CREATE INDEX " + named + "ON " + written(of) + " (" + text::join(columns, ", ") + ")");
}

// --- Transactions -----------------------------------------------------------------------------------------

bool OdbcConnection::setAutoCommit(bool on) {
    SQLULEN mode = on ? SQL_AUTOCOMMIT_ON : SQL_AUTOCOMMIT_OFF;
    return SQL_SUCCEEDED(
        SQLSetConnectAttr(handle(), SQL_ATTR_AUTOCOMMIT, reinterpret_cast<SQLPOINTER>(mode), 0));
}

void OdbcConnection::beginTransaction() {
    if (!setAutoCommit(false)) check(SQL_ERROR, session_->handle());
    transaction_ = true;
}

void OdbcConnection::endTransaction(bool keep) {
    if (!std::exchange(transaction_, false)) return;
    if (!keep) forget();  // tables that were made are not there any more
    bool kept = keep && SQL_SUCCEEDED(SQLEndTran(SQL_HANDLE_DBC, handle(), SQL_COMMIT));
    std::string reason = keep && !kept ? sentenceOf(diagnosticsOf(SQL_HANDLE_DBC, handle())) : "";
    // A server that has gone away undoes by itself what had begun.
    bool undone = kept || SQL_SUCCEEDED(SQLEndTran(SQL_HANDLE_DBC, handle(), SQL_ROLLBACK));
    reusable_ = setAutoCommit(true) && undone && reusable_;
    if (!reason.empty()) throw CDaoException("The server has not kept the changes: " + reason);
}

void OdbcConnection::changeOne(Statement& statement) {
    bool own = !transaction_;
    if (own) beginTransaction();
    try {
        statement.executePrepared();
        long changed = statement.changed();
        if (changed == 0) throw CDaoException("The record has been changed or deleted by another user.");
        if (changed > 1)
            throw CDaoException(
                "The table has no key that tells this record from others of the same values.");
        if (own) endTransaction(true);
    } catch (...) {
        // Within a transaction of the caller's, the caller has to give it up.
        if (own) endTransaction(false);
        throw;
    }
}

}  // namespace dao::odbc
