#include "platform/dao/jet/database.h"

#include "platform/dao/jet/schema.h"
#include "platform/text/text.h"

namespace jet {
namespace {

PageFile::Options fileOptions(const Database::Options& options) {
    return {options.readOnly, options.exclusive, options.lockTimeout, options.scratch};
}

}  // namespace

Database::Database(const std::string& path, const Options& options) : store_(path, fileOptions(options)) {
    if (store_.header.encodingKey != 0)
        throw Error("The database \"" + path +
                    "\" is encoded, and cannot be opened. Please decode it first.");
    if (!store_.header.password.empty() && store_.header.password != options.password)
        throw Error("The database \"" + path + "\" is protected by a password" +
                    (options.password.empty() ? "." : ", and the one given is not right."));
}

void Database::forget() {
    catalogue_ = nullptr;
    records_.clear();
}

void Database::refresh() {
    if (generation_ == store_.file.generation()) return;
    forget();
    generation_ = store_.file.generation();
}

Catalogue& Database::catalogue() {
    refresh();
    if (!catalogue_) catalogue_ = std::make_unique<Catalogue>(store_);
    return *catalogue_;
}

const CatalogueEntry& Database::entry(const std::string& table) {
    const CatalogueEntry* entry = catalogue().table(table);
    if (!entry) throw Error("Cannot find the table " + table + ".");
    return *entry;
}

const CatalogueEntry& Database::ownTable(const std::string& table) {
    const CatalogueEntry& found = entry(table);
    if (found.isLinked())
        throw Error("The table " + found.name + " is linked from another database" +
                    (found.database.empty() ? "." : " (" + found.database + ")."));
    return found;
}

CatalogueEntry Database::usersTable(const std::string& table) {
    const CatalogueEntry& found = entry(table);
    if (found.isSystem()) throw Error("The table " + found.name + " belongs to the system.");
    return found;
}

void Database::checkNewName(const std::string& name) {
    constexpr size_t kLongestName = 64;
    if (hasTable(name)) throw Error("The table " + name + " exists already.");
    // A column name is checked with its column; a table's must be as good.
    if (name.empty() || store_.text.length(name) > kLongestName)
        throw Error("\"" + name + "\" is not a valid name of a table.");
}

std::vector<TableInfo> Database::tables() {
    jet::Reading reading(store_.file);
    std::vector<TableInfo> tables;
    for (const CatalogueEntry& entry : catalogue().entries()) {
        if (entry.isTable()) tables.push_back({entry.name, "", entry.isSystem(), false});
        if (!entry.isLinked()) continue;
        std::string connect = entry.connect;
        if (!entry.database.empty()) connect += ";DATABASE=" + entry.database;
        tables.push_back({entry.name, connect, entry.isSystem(), true});
    }
    return tables;
}

bool Database::hasTable(const std::string& name) {
    jet::Reading reading(store_.file);
    return catalogue().table(name) != nullptr;
}

std::shared_ptr<Records> Database::records(const std::string& table) {
    jet::Reading reading(store_.file);
    const CatalogueEntry& entry = ownTable(table);
    std::shared_ptr<Records>& records = records_[entry.id];
    if (!records)
        records = std::make_shared<Records>(store_, std::make_shared<TableDefinition>(readDefinition(
                                                        store_, static_cast<uint32_t>(entry.id))));
    return records;
}

Properties Database::properties(const CatalogueEntry& entry) {
    return Properties(store_.text, catalogue().properties(entry));
}

std::vector<Column> Database::columns(const std::string& table) {
    jet::Reading reading(store_.file);
    const CatalogueEntry& entry = ownTable(table);
    const TableDefinition& definition = records(table)->definition();
    Properties properties = this->properties(entry);
    std::vector<Column> columns;
    for (size_t position : definition.userOrder()) {
        const ColumnDefinition& from = definition.columns[position];
        Column column;
        column.name = from.name;
        column.type = from.type;
        column.size = isLongValue(from.type) ? 0 : from.length;
        if (from.type == Type::kText) column.size = from.length / static_cast<int>(store_.text.unitSize());
        column.autonumber = from.autonumber();
        column.fixed = from.fixed();
        column.precision = from.precision;
        column.scale = from.scale;
        readColumnProperties(store_, properties, column);
        columns.push_back(std::move(column));
    }
    return columns;
}

std::vector<Index> Database::indexes(const std::string& table) {
    jet::Reading reading(store_.file);
    std::vector<Index> indexes;
    std::shared_ptr<Records> records = this->records(table);
    const TableDefinition& definition = records->definition();
    for (const IndexName& name : definition.indexNames) {
        const IndexDefinition& tree = definition.indexes[name.index];
        Index index;
        index.name = name.name;
        index.unique = tree.unique();
        index.primary = name.kind == IndexName::kPrimary;
        index.ofRelation = name.kind == IndexName::kRelation;
        index.ignoreNulls = tree.flags & IndexDefinition::kIgnoreNulls;
        for (const IndexColumn& column : tree.columns)
            index.columns.push_back(
                {definition.columns[static_cast<size_t>(definition.columnOf(column.number))].name,
                 column.ascending});
        indexes.push_back(std::move(index));
    }
    return indexes;
}

void Database::createTable(const std::string& name, const std::vector<Column>& columns) {
    checkNewName(name);
    Catalogue& catalogue = this->catalogue();
    PageFile::Change change(store_.file);
    // Maps go where those of the newest table are.
    uint32_t newest = kObjectsPage;
    for (const CatalogueEntry& entry : catalogue.entries())
        if (entry.isTable() && entry.id > 0) newest = std::max(newest, static_cast<uint32_t>(entry.id));
    uint32_t mapPage = readDefinition(store_, newest).owned.page;
    uint32_t page = store_.allocator.take();
    TableDefinition definition = newDefinition(store_, page, columns, false, mapPage);
    writeDefinition(store_, definition);
    Properties properties;
    for (const Column& column : columns) writeColumnProperties(store_, properties, column);
    catalogue.addTable(name, page, properties.stored(store_.format, store_.text));
    change.done();
    forget();
}

void Database::dropTable(const std::string& name) {
    const CatalogueEntry entry = usersTable(name);
    PageFile::Change change(store_.file);
    if (entry.isTable()) {
        TableDefinition definition = records(name)->definition();
        for (const IndexName& index : definition.indexNames)
            if (index.otherTable != 0)
                throw Error("The table " + entry.name + " is part of a relation and cannot be deleted.");
        dropStorage(store_, definition);
    }
    catalogue().removeTable(entry);
    change.done();
    forget();
}

void Database::renameTable(const std::string& name, const std::string& newName) {
    const CatalogueEntry entry = usersTable(name);
    if (!text::equalNoCase(name, newName)) checkNewName(newName);
    PageFile::Change change(store_.file);
    catalogue().rename(entry, newName);
    change.done();
    forget();
}

void Database::addColumn(const std::string& table, const Column& column) {
    const CatalogueEntry entry = ownTable(table);
    TableDefinition definition = records(table)->definition();
    Properties properties = this->properties(entry);
    PageFile::Change change(store_.file);
    addColumnTo(store_, definition, column);
    writeDefinition(store_, definition);
    writeColumnProperties(store_, properties, column);
    catalogue().setProperties(entry, properties.stored(store_.format, store_.text));
    records_.erase(entry.id);
    if (column.autonumber) {
        // The records that are there get their numbers in their order.
        std::shared_ptr<Records> records = this->records(table);
        std::vector<Value> values(definition.columns.size());
        std::vector<bool> touched(values.size(), false);
        touched.back() = true;
        int32_t number = 0;
        for (Walk walk(records); walk.next();) {
            values.back() = Value(++number);
            records->update(walk.row(), values, touched);
        }
        definition.counter = static_cast<uint32_t>(number);
        writeCounter(store_, definition);
    }
    change.done();
    forget();
}

void Database::dropColumn(const std::string& table, const std::string& column) {
    const CatalogueEntry entry = ownTable(table);
    TableDefinition definition = records(table)->definition();
    int position = definition.columnNamed(column);
    if (position < 0) throw Error("Cannot find the column " + column + ".");
    Properties properties = this->properties(entry);
    PageFile::Change change(store_.file);
    removeColumnFrom(store_, definition, static_cast<size_t>(position));
    writeDefinition(store_, definition);
    properties.eraseOwner(column);
    catalogue().setProperties(entry, properties.stored(store_.format, store_.text));
    change.done();
    forget();
}

void Database::createIndex(const std::string& table, const Index& index) {
    const CatalogueEntry entry = ownTable(table);
    TableDefinition definition = records(table)->definition();
    PageFile::Change change(store_.file);
    addIndexTo(store_, definition, index);
    writeDefinition(store_, definition);
    records_.erase(entry.id);
    std::shared_ptr<Records> records = this->records(table);
    records->buildIndex(definition.indexes.size() - 1);
    change.done();
    forget();
}

}  // namespace jet
