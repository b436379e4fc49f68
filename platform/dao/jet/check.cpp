#include "platform/dao/jet/check.h"

#include <algorithm>
#include <functional>
#include <map>
#include <set>

namespace jet {
namespace {

using Faults = std::vector<std::string>;

std::string pageName(uint32_t page) {
    return "page " + std::to_string(page);
}
std::string rowName(RowId row) {
    return "row " + std::to_string(row.slot) + " of page " + std::to_string(row.page);
}

// Who each page belongs to.
class PageOwners {
  public:
    PageOwners(Store& store, Faults& faults) : store_(store), faults_(faults) {}

    void claim(uint32_t page, const std::string& owner) {
        if (page >= store_.file.pageCount()) {
            faults_.push_back(owner + " claims " + pageName(page) + ", which is behind the end of the file");
            return;
        }
        auto [it, fresh] = owners_.emplace(page, owner);
        if (!fresh) faults_.push_back(pageName(page) + " belongs to " + it->second + " and to " + owner);
    }
    // Maps share their pages.
    void claimMap(RowId map, const std::string& owner) {
        if (map.page == 0) return;
        if (maps_.emplace(map, owner).second == false)
            faults_.push_back("the usage map in " + rowName(map) + " serves " + maps_[map] + " and " + owner);
        mapPages_.insert(map.page);
        for (uint32_t page : UsageMap(store_.file, map).bitmapPages())
            claim(page, "the usage map of " + owner);
    }
    void finish() {
        for (uint32_t page : mapPages_)
            if (page != kGlobalMapPage) claim(page, "usage maps");
        std::vector<uint32_t> free = UsageMap(store_.file, {kGlobalMapPage, 0}).pages();
        for (uint32_t page = 0; page < store_.file.pageCount(); ++page) {
            auto it = owners_.find(page);
            bool isFree = std::binary_search(free.begin(), free.end(), page);
            if (it == owners_.end() && !isFree)
                faults_.push_back(pageName(page) + " is lost: it belongs to nobody and is not free");
            if (it != owners_.end() && isFree)
                faults_.push_back(pageName(page) + " is free, though it belongs to " + it->second);
        }
    }

  private:
    Store& store_;
    Faults& faults_;
    std::map<uint32_t, std::string> owners_;
    std::map<RowId, std::string> maps_;
    std::set<uint32_t> mapPages_;
};

// The pages of rows or long values: their form, their owner, their map of pages with room.
class DataPages {
  public:
    DataPages(Store& store, Faults& faults, std::string name)
        : store_(store), faults_(faults), name_(std::move(name)) {}

    void check(RowId owned, RowId room, uint32_t owner, PageOwners& owners) {
        owners.claimMap(owned, name_);
        owners.claimMap(room, name_ + " (room)");
        if (owned.page == 0) return;
        pages_ = UsageMap(store_.file, owned).pages();
        for (uint32_t page : pages_) {
            owners.claim(page, name_);
            checkPage(page, owner);
        }
        for (uint32_t page : UsageMap(store_.file, room).pages())
            if (!std::binary_search(pages_.begin(), pages_.end(), page))
                faults_.push_back(name_ + " has room on " + pageName(page) + ", which is not its own");
    }

    std::set<RowId> rows, pointers, bodies;

  private:
    void checkPage(uint32_t number, uint32_t owner) {
        PagePtr page = store_.file.page(number, PageType::kData);
        DataPage data(store_.format, page->view());
        if (data.owner() != owner) faults_.push_back(pageName(number) + " is of another owner than " + name_);
        for (size_t i = 0; i < data.slots(); ++i) {
            RowId row{number, static_cast<uint8_t>(i)};
            switch (data.slot(i).kind) {
                case SlotKind::kRow:
                    rows.insert(row);
                    break;
                case SlotKind::kPointer:
                    pointers.insert(row);
                    break;
                case SlotKind::kMovedBody:
                    bodies.insert(row);
                    break;
                case SlotKind::kDeleted:
                    break;
            }
        }
        if (page->view().u16(2) != data.freeBytes())
            faults_.push_back(pageName(number) + " of " + name_ + " tells a wrong number of free bytes");
    }

    Store& store_;
    Faults& faults_;
    std::string name_;
    std::vector<uint32_t> pages_;
};

class TableCheck {
  public:
    TableCheck(Store& store, Faults& faults, PageOwners& owners, std::string name, uint32_t page)
        : store_(store),
          faults_(faults),
          owners_(owners),
          name_(std::move(name)),
          definition_(std::make_shared<TableDefinition>(readDefinition(store, page))),
          records_(store, definition_) {}

    void run() {
        owners_.claim(definition_->page, "the definition of " + name_);
        for (uint32_t page : definition_->morePages) owners_.claim(page, "the definition of " + name_);
        DataPages data(store_, faults_, name_);
        data.check(definition_->owned, definition_->room, definition_->page, owners_);
        checkRows(data);
        checkLongValues();
        for (size_t i = 0; i < definition_->indexes.size(); ++i) checkIndex(i);
    }

  private:
    void fault(const std::string& text) { faults_.push_back(name_ + ": " + text); }

    void checkRows(DataPages& data) {
        Records::Place place;
        uint32_t count = 0;
        int64_t largest = 0;
        for (RowId row; records_.next(row, place); row = row.following(), ++count) {
            if (place.body != row) {
                // A body that has not moved may be pointed to by a damaged pointer only.
                if (data.bodies.erase(place.body) == 0)
                    fault("the pointer in " + rowName(row) + " leads to no moved row");
            }
            RowView view = records_.view(place);
            for (size_t i = 0; i < definition_->columns.size(); ++i) {
                const ColumnDefinition& column = definition_->columns[i];
                if (isLongValue(column.type) && view.has(column) && !view.bytes(column).empty())
                    for (RowId piece : LongValues::pieces(store_, view.bytes(column)))
                        if (!pieces_[column.number].insert(piece).second)
                            fault("the piece of a long value in " + rowName(piece) + " is used twice");
                Value value = records_.value(view, i);
                if (column.autonumber() && value.is<int32_t>())
                    largest = std::max<int64_t>(largest, value.get<int32_t>());
            }
            rowIds_.insert(row);
        }
        for (RowId body : data.bodies)
            fault("the moved row in " + rowName(body) + " is reached by no pointer");
        if (count != definition_->rows)
            fault("it has " + std::to_string(count) + " rows and tells " + std::to_string(definition_->rows));
        if (largest > static_cast<int32_t>(definition_->counter))
            fault("its counter is behind the autonumbers that were given");
    }

    void checkLongValues() {
        for (const LongValueMaps& maps : definition_->longValues) {
            int column = definition_->columnOf(maps.column);
            std::string name =
                "long values of " + name_ +
                (column < 0 ? "" : "." + definition_->columns[static_cast<size_t>(column)].name);
            DataPages data(store_, faults_, name);
            data.check(maps.owned, maps.room, kLongValueOwner, owners_);
            std::set<RowId> used = pieces_[maps.column];
            for (RowId piece : data.rows)
                if (used.erase(piece) == 0)
                    faults_.push_back(name + ": " + rowName(piece) + " is used by no record");
            if (maps.owned.page == 0) continue;
            for (RowId piece : used)
                faults_.push_back(name + ": " + rowName(piece) + " is on no page of theirs");
        }
    }

    std::string indexName(size_t index) const {
        for (const IndexName& name : definition_->indexNames)
            if (name.index == index) return "index " + name.name;
        return "index " + std::to_string(index);
    }

    void checkIndex(size_t index) {
        const IndexDefinition& definition = definition_->indexes[index];
        std::string name = indexName(index);
        owners_.claimMap(definition.map, name_ + " " + name);
        std::set<uint32_t> pages;
        std::vector<uint32_t> leaves;
        Bytes last;
        bool ascending = true;
        size_t leafDepth = 0;
        records_.tree(index).forEachPage([&](uint32_t number, const IndexPage& page, size_t depth) {
            pages.insert(number);
            owners_.claim(number, name_ + " " + name);
            if (store_.file.page(number)->view().u32(4) != definition_->page)
                fault(pageName(number) + " of the " + name + " tells another table");
            if (page.node) {
                checkNode(page, name);
                return;
            }
            if (!leaves.empty() && depth != leafDepth)
                fault("the leaves of the " + name + " are of different depths");
            leafDepth = depth;
            leaves.push_back(number);
            for (size_t i = 0; i < page.size(); ++i) {
                if (!last.empty() && compare(last, page.entry(i)) >= 0) ascending = false;
                last = page.entry(i).copy();
            }
        });
        if (!ascending) fault("the entries of the " + name + " are not in order");
        for (size_t i = 0; i < leaves.size(); ++i) {
            IndexPage page = IndexPage::read(store_.file, leaves[i]);
            if (page.previous != (i > 0 ? leaves[i - 1] : 0) ||
                page.next != (i + 1 < leaves.size() ? leaves[i + 1] : 0))
                fault(pageName(leaves[i]) + " of the " + name + " does not stand between its neighbours");
        }
        std::vector<uint32_t> mapped = UsageMap(store_.file, definition.map).pages();
        if (std::vector<uint32_t>(pages.begin(), pages.end()) != mapped)
            fault("the pages of the " + name + " are not those of its usage map");
        checkEntries(index, name);
    }

    // Each entry of a node must be the last one below its child.
    void checkNode(const IndexPage& node, const std::string& name) {
        for (size_t i = 0; i < node.size(); ++i) {
            IndexPage child = IndexPage::read(store_.file, node.child(i));
            if (child.node || child.empty()) continue;
            if (compare(child.entry(child.size() - 1), node.entry(i)) != 0)
                fault("a node of the " + name + " does not repeat the last entry of " +
                      pageName(node.child(i)));
        }
    }

    // False for text whose place in the order is not known.
    bool keyOf(size_t index, const Records::Place& place, std::optional<KeyMaker::Key>& key) const {
        try {
            key = records_.keyOf(index, records_.view(place));
            return true;
        } catch (const DamagedError&) {
            throw;
        } catch (const Error&) {
            return false;
        }
    }

    void checkEntries(size_t index, const std::string& name) {
        bool keysKnown = records_.keys(index).obstacle().empty();
        std::map<RowId, Bytes> entries;
        records_.tree(index).walk({}, [&](ByteView entry) {
            RowId row = rowOf(entry);
            Bytes key = entry.part(0, entry.size() - 4).copy();
            if (rowIds_.count(row) == 0)
                fault("the " + name + " has an entry for " + rowName(row) + ", which does not exist");
            if (!entries.emplace(row, key).second)
                fault("the " + name + " has two entries for " + rowName(row));
            return true;
        });
        Records::Place place;
        std::set<Bytes> seen;
        bool unique = true;
        for (RowId row : rowIds_) {
            if (!records_.find(row, place)) continue;
            std::optional<KeyMaker::Key> key;
            if (keysKnown && !keyOf(index, place, key)) continue;
            auto it = entries.find(row);
            bool wanted = keysKnown ? key.has_value() : true;
            if (wanted && it == entries.end()) fault("the " + name + " has no entry for " + rowName(row));
            if (!wanted && it != entries.end())
                fault("the " + name + " has an entry too many for " + rowName(row));
            if (key && it != entries.end() && it->second != key->bytes)
                fault("the " + name + " has a wrong key for " + rowName(row));
            if (key && !key->hasNull && definition_->indexes[index].unique() &&
                !seen.insert(key->bytes).second)
                unique = false;
        }
        if (!unique) fault("the " + name + " is unique, and has a value twice");
    }

    Store& store_;
    Faults& faults_;
    PageOwners& owners_;
    std::string name_;
    std::shared_ptr<TableDefinition> definition_;
    Records records_;
    std::set<RowId> rowIds_;
    std::map<uint16_t, std::set<RowId>> pieces_;
};

}  // namespace

std::vector<std::string> check(Database& database) {
    Database::Reading reading(database);
    Store& store = database.store();
    Faults faults;
    PageOwners owners(store, faults);
    owners.claim(0, "the header");
    owners.claim(kGlobalMapPage, "the map of free pages");
    auto guarded = [&](const std::string& what, const std::function<void()>& work) {
        try {
            work();
        } catch (const Error& error) {
            faults.push_back(what + ": " + error.what());
        }
    };
    if (!store.file.endsWithWholePage()) faults.push_back("the file does not end with a whole page");
    guarded("the map of free pages", [&] { owners.claimMap({kGlobalMapPage, 0}, "the file"); });
    guarded("the catalogue", [&] {
        for (const CatalogueEntry& entry : database.catalogue().entries()) {
            if (!entry.isTable()) continue;
            guarded(entry.name, [&] {
                TableCheck(store, faults, owners, entry.name, static_cast<uint32_t>(entry.id)).run();
                Properties(store.text, database.catalogue().properties(entry));
            });
        }
    });
    guarded("the map of free pages", [&] { owners.finish(); });
    return faults;
}

}  // namespace jet
