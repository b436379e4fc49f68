#include "platform/dao/access/connection.h"

#include <algorithm>
#include <utility>

#include "platform/dao/access/cursor.h"
#include "platform/dao/access/errors.h"
#include "platform/dao/access/fields.h"
#include "platform/dao/access/table_rows.h"
#include "platform/dao/access/virtual_table.h"
#include "platform/dao/access_sql.h"
#include "platform/dao/connect_string.h"
#include "platform/dao/errors.h"
#include "platform/dao/names.h"
#include "platform/dao/sql_tokens.h"
#include "platform/dao/sqlite/cursor.h"
#include "platform/text/text.h"

namespace dao::access {
namespace {

// Below this many rows a search reads them all as fast as a lookup is made.
constexpr uint32_t kRowsWorthALookup = 1000;
constexpr size_t kMostLookups = 4;  // of one table

}  // namespace

jet::Database::Options optionsOf(const Source& source) {
    jet::Database::Options options;
    options.readOnly = source.readOnly;
    options.exclusive = source.exclusive;
    options.password = source.connect.password().reveal();
    options.lockTimeout = lockTimeout();
    return options;
}

Variant Table::value(const jet::RowView& row, size_t column) const {
    Variant value = records->value(row, column);
    if (records->definition().columns[column].type == jet::Type::kDecimal && value.is<std::string>())
        return Variant(text::toReal(value.get<std::string>()));
    return value;
}

// Runs work with the errors of the library and of virtual tables as exceptions of the interface.
template <typename Work>
auto AccessConnection::guarded(Work work) {
    failure_.clear();
    return withDaoErrors([&] {
        try {
            jet::Database::Reading reading(db_);
            refresh();
            return work();
        } catch (const CDaoException&) {
            if (!failure_.empty()) throw CDaoException(std::exchange(failure_, ""));
            throw;
        }
    });
}

AccessConnection::AccessConnection(const Source& source)
    : db_(source.path, optionsOf(source)), sql_(sqlite::openMemory()) {
    addVirtualTables(handle(), *this);
}

AccessConnection::~AccessConnection() {
    // What is not committed is undone now.
    if (!db_.inTransaction() && generation_ == db_.generation())
        for (auto& [name, table] : tables_)
            LookupStore::instance().keep(db_.store().file.state(), name, std::move(table->lookups));
}

std::string AccessConnection::version() const {
    return db_.version() == jet::Version::kAccess97 ? "3.0" : "4.0";
}

void AccessConnection::refresh() {
    if (generation_ == db_.generation()) return;
    forgetTables();
    generation_ = db_.generation();
}

void AccessConnection::forgetTables() {
    ++changes_;
    tables_.clear();
    for (const std::string& name : std::exchange(virtualTables_, {}))
        sqlite3_exec(handle(), ("DROP TABLE IF EXISTS " + quotedName(name)).c_str(), nullptr, nullptr,
                     nullptr);
}

std::vector<CDaoTableDefInfo> AccessConnection::tables() {
    return guarded([&] {
        std::vector<CDaoTableDefInfo> tables;
        for (const jet::TableInfo& table : db_.tables())
            if (!table.system) tables.push_back({table.name, table.connect, !table.linked});
        return tables;
    });
}

std::shared_ptr<Table> AccessConnection::table(const std::string& name) {
    // However a name is written, it is one table: its lookups must see every change.
    std::string key = text::upper(name);
    if (auto known = tables_.find(key); known != tables_.end()) return known->second;
    auto made = std::make_shared<Table>();
    made->name = name;
    made->records = db_.records(name);
    made->columns = made->records->definition().userOrder();
    std::vector<CDaoFieldInfo> fields;
    for (const jet::Column& column : db_.columns(name)) {
        fields.push_back(fieldOf(column));
        fields.back().ordinalPosition = static_cast<int>(fields.size()) - 1;
    }
    made->rules = std::make_unique<FieldRules>(handle(), std::move(fields));
    // What was kept is good for the file as it was committed.
    if (db_.store().file.isAsCommitted())
        made->lookups = LookupStore::instance().take(db_.store().file.state(), key);
    return tables_[key] = made;
}

std::vector<CDaoFieldInfo> AccessConnection::fields(const std::string& table) {
    return guarded([&] { return this->table(table)->fields(); });
}

template <typename Change>
void AccessConnection::changeSchema(Change change) {
    beginWrite();
    guarded([&] {
        change();
        forgetTables();
    });
}

void AccessConnection::read(const std::string& table, const std::function<void(Table&)>& work) {
    guarded([&] { work(*this->table(table)); });
}

void AccessConnection::write(const std::string& table, const std::function<void(Table&)>& work) {
    beginWrite();
    read(table, work);
    wrote();
}

void AccessConnection::createTable(const std::string& table, const std::vector<CDaoFieldInfo>& fields) {
    std::vector<jet::Column> columns;
    for (const CDaoFieldInfo& field : fields) columns.push_back(columnOf(field));
    changeSchema([&] { db_.createTable(table, columns); });
}

void AccessConnection::createPrimaryKey(const std::string& table, const std::vector<std::string>& fields) {
    changeSchema([&] {
        jet::Index index;
        index.name = "PrimaryKey";
        index.unique = index.primary = true;
        const std::vector<CDaoFieldInfo>& present = this->table(table)->fields();
        for (const std::string& name : fields) {
            int field = findField(present, name);
            if (field < 0) noSuchField(name);
            index.columns.push_back({present[static_cast<size_t>(field)].name});
        }
        db_.createIndex(table, index);
    });
}

void AccessConnection::deleteTable(const std::string& table) {
    changeSchema([&] { db_.dropTable(table); });
}

void AccessConnection::renameTable(const std::string& table, const std::string& newName) {
    changeSchema([&] { db_.renameTable(table, newName); });
}

void AccessConnection::createField(const std::string& table, const CDaoFieldInfo& field) {
    changeSchema([&] { db_.addColumn(table, columnOf(field)); });
}

void AccessConnection::deleteField(const std::string& table, const std::string& field) {
    changeSchema([&] {
        if (findField(this->table(table)->fields(), field) < 0) noSuchField(field);
        db_.dropColumn(table, field);
    });
}

bool AccessConnection::makeVirtualTable(const std::string& name) {
    if (!db_.hasTable(name)) return false;
    std::string sql = "CREATE VIRTUAL TABLE " + quotedName(name) + " USING access";
    if (sqlite3_exec(handle(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
        throw CDaoException(failure_.empty() ? sqlite3_errmsg(handle()) : failure_);
    virtualTables_.push_back(name);
    return true;
}

// Prepares a statement, making the tables that it names on the way.
std::unique_ptr<sqlite::Statement> AccessConnection::prepare(const std::string& sql) {
    constexpr std::string_view kMissing = "no such table: ";
    for (;;) {
        try {
            return std::make_unique<sqlite::Statement>(handle(), sql);
        } catch (const CDaoException&) {
            std::string message = sqlite3_errmsg(handle());
            if (!text::startsWith(message, kMissing) || !makeVirtualTable(message.substr(kMissing.size())))
                throw;
        }
    }
}

void AccessConnection::execute(const std::string& sql, int) {
    AccessStatement statement = translateChange(sql);
    requireParameters(statement.parameters, 0);
    // A statement with an error does not lock the file.
    guarded([&] { prepare(statement.sql); });
    insertColumns_ = statement.insertColumns;
    beginWrite();
    guarded([&] {
        std::unique_ptr<sqlite::Statement> prepared = prepare(statement.sql);
        jet::PageFile::Change change(db_.store().file);
        prepared->run();
        change.done();
    });
    wrote();
}

bool AccessConnection::insertNames(const std::string& field) const {
    return insertColumns_.empty() ||
           std::any_of(insertColumns_.begin(), insertColumns_.end(),
                       [&](const std::string& column) { return text::equalNoCase(column, field); });
}

std::vector<jet::RowId> AccessConnection::rowsOf(const std::string& sql,
                                                 const std::vector<Variant>& parameters) {
    return guarded([&] {
        std::unique_ptr<sqlite::Statement> statement = prepare(sql);
        statement->bindAll(parameters);
        std::vector<jet::RowId> rows;
        while (statement->step())
            rows.push_back(jet::RowId::fromNumber(static_cast<uint32_t>(statement->integer(0))));
        return rows;
    });
}

std::unique_ptr<Cursor> AccessConnection::open(int type, const std::string& sql, int,
                                               const std::vector<Variant>& parameters) {
    return guarded([&]() -> std::unique_ptr<Cursor> {
        std::string whole(text::trim(sql));
        AccessStatement statement = db_.hasTable(whole) ? translateTable(whole) : translateSelect(sql);
        requireParameters(statement.parameters, parameters.size());
        if (statement.plain && type != dbOpenSnapshot)
            return std::make_unique<AccessCursor>(shared_from_this(), statement, parameters);
        prepare(statement.sql);
        return std::make_unique<sqlite::SnapshotCursor>(handle(), statement.sql, parameters);
    });
}

std::unique_ptr<TableRows> AccessConnection::rows(const std::string& table) {
    return std::make_unique<AccessRows>(shared_from_this(), table);
}

void AccessConnection::createIndex(const std::string& table, const std::vector<std::string>& fields) {
    changeSchema([&] {
        const std::vector<CDaoFieldInfo>& present = this->table(table)->fields();
        jet::Index index;
        for (const std::string& name : fields) {
            const int field = findField(present, name);
            if (field < 0) noSuchField(name);
            index.columns.push_back({present[static_cast<size_t>(field)].name});
            index.name += (index.name.empty() ? "" : ", ") + index.columns.back().column;
        }
        db_.createIndex(table, index);
    });
}

jet::RowId AccessConnection::insert(Table& table, const std::vector<Variant>& values,
                                    const std::vector<bool>& touched) {
    std::vector<Variant> all(table.columns.size());
    for (size_t i = 0; i < values.size(); ++i) {
        bool counts = table.fields()[i].attributes & dbAutoIncrField;
        if (counts && !touched[i]) continue;
        all[table.columns[i]] = table.rules->accepted(i, touched[i] ? values[i] : table.rules->defaultOf(i));
    }
    jet::RowId row = table.records->insert(all);
    for (Lookup& lookup : table.lookups) lookup.add(row, all);
    ++changes_;
    return row;
}

void AccessConnection::update(Table& table, jet::RowId row, const std::vector<Variant>& values,
                              const std::vector<bool>& touched) {
    std::vector<Variant> all(table.columns.size());
    std::vector<bool> columns(table.columns.size(), false);
    bool any = false;
    for (size_t i = 0; i < values.size(); ++i) {
        if (!touched[i]) continue;
        if (table.fields()[i].attributes & dbAutoIncrField)
            throw CDaoException("The field " + table.fields()[i].name +
                                " counts by itself and cannot be set.");
        all[table.columns[i]] = table.rules->accepted(i, values[i]);
        columns[table.columns[i]] = any = true;
    }
    if (!any) return;
    table.records->update(row, all, columns);
    bool lookedUp = false;
    for (const Lookup& lookup : table.lookups)
        for (size_t column : lookup.columns()) lookedUp = lookedUp || columns[column];
    if (lookedUp) {
        std::vector<Variant> now = table.records->read(row);
        for (Lookup& lookup : table.lookups) lookup.add(row, now);
    }
    ++changes_;
}

void AccessConnection::erase(Table& table, jet::RowId row) {
    table.records->erase(row);
    ++changes_;
}

bool AccessConnection::find(Table& table, const std::vector<size_t>& columns,
                            const std::vector<Variant>& values, std::vector<jet::RowId>& rows) {
    auto it = std::find_if(table.lookups.begin(), table.lookups.end(),
                           [&](const Lookup& lookup) { return lookup.columns() == columns; });
    if (it == table.lookups.end()) {
        if (table.records->definition().rows < kRowsWorthALookup) return false;
        if (table.lookups.size() >= kMostLookups) table.lookups.pop_back();
        table.lookups.emplace_front(table.records, columns);
        it = table.lookups.begin();
    }
    rows = it->find(values);
    return true;
}

void AccessConnection::begin() {
    db_.setLockTimeout(lockTimeout());
    withDaoErrors([&] { db_.begin(); });
}

void AccessConnection::keepChanges() {
    withDaoErrors([&] { db_.commit(); });
}

}  // namespace dao::access
