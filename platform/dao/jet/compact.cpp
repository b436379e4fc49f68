#include "platform/dao/jet/compact.h"

#include <algorithm>
#include <map>

#include "platform/dao/jet/schema.h"
#include "platform/dao/jet/scratch_file.h"

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
        placeDefinition(to_, definition, identities_.at(definition.page), mapPage);
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
        try {
            if (records.keys(index).obstacle().empty()) return records.buildIndex(index);
        } catch (const DamagedError&) {
            throw;
        } catch (const Error&) {
            // A text whose place in the order is not known.
        }
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

void copyAll(Database& from, Store& to, const Progress& progress) {
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
    for (size_t i = 0; i < tables.size(); ++i) {
        if (progress) progress(i, tables.size());
        mapPage = TableCopy(from.store(), to, identities, tables[i]).run(mapPage);
    }
}

}  // namespace

void compact(Database& database, const Progress& progress) {
    if (database.inTransaction()) throw Error("A database cannot be compacted within a transaction.");
    ScratchFile scratch(database.path() + ".compact");
    database.begin();
    try {
        Bytes header = database.store().file.page(0)->bytes;
        makeEmptyFile(scratch.path(), database.version(), header);
        Store to(scratch.path(), {});
        to.file.beginWrite();
        {
            PageFile::Change change(to.file);
            copyAll(database, to, progress);
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
