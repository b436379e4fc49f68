#include "platform/dao/jet/compact.h"

#include <unistd.h>

#include <algorithm>
#include <map>

#include "platform/dao/jet/schema.h"

namespace jet {
namespace {

// Old pages of definitions, which are the identities of tables, to new ones.
using Identities = std::map<uint32_t, uint32_t>;

// Copies one table from one file to another.
class TableCopy {
  public:
    TableCopy(Store& from, Store& to, const Identities& identities, uint32_t page)
        : from_(from),
          to_(to),
          identities_(identities),
          old_(from, std::make_shared<TableDefinition>(readDefinition(from, page))) {}

    // mapPage: a page of usage maps that may have room. The page of the maps of the new table.
    uint32_t run(uint32_t mapPage) {
        define(mapPage);
        copyRows();
        for (size_t i = 0; i < definition_->indexes.size(); ++i) fillIndex(i);
        return definition_->owned.page;
    }

  private:
    void define(uint32_t mapPage) {
        TableDefinition definition = old_.definition();
        definition.page = identities_.at(definition.page);
        definition.morePages.clear();
        definition.rows = 0;
        MapSpace maps(to_);
        definition.owned = maps.add(mapPage);
        definition.room = maps.add(definition.owned.page);
        for (LongValueMaps& values : definition.longValues) {
            if (values.owned.page == 0) continue;
            values.owned = maps.add(definition.owned.page);
            values.room = maps.add(values.owned.page);
        }
        for (IndexDefinition& index : definition.indexes) {
            index.map = maps.add(definition.owned.page);
            index.root = to_.allocator.take();
            IndexPage().write(to_.file, definition.page, index.root);
            UsageMap(to_.file, index.map).set(index.root, true, [&] { return to_.allocator.take(); });
        }
        for (IndexName& name : definition.indexNames)
            if (auto it = identities_.find(name.otherTable); it != identities_.end())
                name.otherTable = it->second;
        definition_ = std::make_shared<TableDefinition>(std::move(definition));
    }

    void copyRows() {
        RowSpace space(to_, definition_->page, definition_->owned, definition_->room);
        std::map<uint16_t, LongValues> longValues;
        for (const LongValueMaps& maps : definition_->longValues)
            if (maps.owned.page != 0) longValues.try_emplace(maps.column, to_, maps.owned, maps.room);
        Records::Place place;
        for (RowId row; old_.next(row, place); row = row.following()) {
            Bytes bytes = place.bytes.copy();
            RowView view(from_.format, old_.definition(), bytes);
            for (const ColumnDefinition& column : definition_->columns) {
                if (!view.has(column)) continue;
                if (isLongValue(column.type))
                    moveLongValue(bytes, view.bytes(column), longValues.find(column.number),
                                  longValues.end());
                if (isIdentity(column)) changeIdentity(bytes, view.bytes(column));
            }
            rows_[row] = space.add(bytes);
        }
        definition_->rows = static_cast<uint32_t>(rows_.size());
        writeDefinition(to_, *definition_);
    }

    // A long value outside its row gets a new place; its head keeps its length.
    template <typename Values>
    void moveLongValue(Bytes& row, ByteView head, Values values, Values none) {
        if (head.empty() || !LongValues::isOutside(head)) return;
        if (values == none) throw Error("A long value has no place in its table.");
        ByteWriter fresh;
        values->second.write(LongValues::read(from_, head), fresh, false);
        ByteSpan(row).set(static_cast<size_t>(head.data() - row.data()), fresh.bytes);
    }

    // Columns of the system tables that name a table.
    bool isIdentity(const ColumnDefinition& column) const {
        uint32_t page = definition_->page;
        return column.type == Type::kLong && ((page == kObjectsPage && column.name == "Id") ||
                                              (page == kAccessPage && column.name == "ObjectId"));
    }
    void changeIdentity(Bytes& row, ByteView value) {
        auto it = identities_.find(value.u32(0));
        if (it != identities_.end())
            ByteSpan(row).setU32(static_cast<size_t>(value.data() - row.data()), it->second);
    }

    void fillIndex(size_t index) {
        Records records(to_, definition_);
        if (records.keys(index).obstacle().empty()) return records.buildIndex(index);
        // Keys that cannot be made are taken over.
        std::vector<Bytes> entries;
        old_.tree(index).walk({}, [&](ByteView entry) {
            auto row = rows_.find(rowOf(entry));
            if (row == rows_.end()) damaged("an index has an entry for a row that does not exist");
            entries.push_back(entryOf(entry.part(0, entry.size() - 4), row->second));
            return true;
        });
        std::sort(entries.begin(), entries.end(),
                  [](const Bytes& a, const Bytes& b) { return compare(a, b) < 0; });
        records.tree(index).build(entries);
    }

    Store& from_;
    Store& to_;
    const Identities& identities_;
    Records old_;
    std::shared_ptr<TableDefinition> definition_;
    std::map<RowId, RowId> rows_;
};

void copyAll(Database& from, Store& to) {
    Identities identities;
    std::vector<uint32_t> tables;
    for (uint32_t page = kObjectsPage; page <= kRelationsPage; ++page) identities[page] = page;
    for (const CatalogueEntry& entry : from.catalogue().entries()) {
        if (!entry.isTable()) continue;
        auto page = static_cast<uint32_t>(entry.id);
        if (identities.count(page) == 0) identities[page] = to.allocator.take();
        tables.push_back(page);
    }
    std::sort(tables.begin(), tables.end());
    uint32_t mapPage = 0;
    for (uint32_t page : tables) mapPage = TableCopy(from.store(), to, identities, page).run(mapPage);
}

// The file that is made beside the database and goes in any case.
class Scratch {
  public:
    explicit Scratch(std::string path) : path_(std::move(path)) { ::unlink(path_.c_str()); }
    ~Scratch() { ::unlink(path_.c_str()); }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

}  // namespace

void compact(Database& database) {
    if (database.inTransaction()) throw Error("A database cannot be compacted within a transaction.");
    Scratch scratch(database.path() + ".compact");
    database.begin();
    try {
        Bytes header = database.store().file.page(0)->bytes;
        makeEmptyFile(scratch.path(), database.version(), header);
        Store to(scratch.path(), {});
        to.file.beginWrite();
        {
            PageFile::Change change(to.file);
            copyAll(database, to);
            change.done();
        }
        database.store().file.replaceBy(to.file);
        to.file.rollBack();
        database.commit();
    } catch (...) {
        database.rollBack();
        throw;
    }
}

}  // namespace jet
