#include "platform/dao/jet/salvage.h"

#include <unistd.h>

#include <algorithm>
#include <map>
#include <optional>

#include "platform/dao/jet/salvaged_rows.h"
#include "platform/dao/jet/schema.h"
#include "platform/text/text.h"

namespace jet {
namespace {

using Losses = std::vector<std::string>;

// "1 value is", "3 values are"
std::string counted(uint32_t count, const std::string& what) {
    return std::to_string(count) + " " + what + (count == 1 ? " is" : "s are");
}

// An entry of the catalogue, by the names of its columns.
struct Object {
    std::map<std::string, Value> entry;

    int32_t number(const char* column) const {
        auto it = entry.find(column);
        if (it == entry.end()) return 0;
        if (it->second.is<int16_t>()) return it->second.get<int16_t>();
        return it->second.is<int32_t>() ? it->second.get<int32_t>() : 0;
    }
    std::string text(const char* column) const {
        auto it = entry.find(column);
        return it != entry.end() && it->second.is<std::string>() ? it->second.get<std::string>() : "";
    }
    int32_t id() const { return number("Id"); }
    std::string name() const { return text("Name"); }
    bool isTable() const { return number("Type") == static_cast<int>(ObjectType::kTable); }
};

// Fills a table of the new file with the records of a damaged one.
class TableSalvage {
  public:
    TableSalvage(Store& from, Store& to, const PageCensus& census, std::string name, Losses& losses)
        : from_(from), to_(to), census_(census), name_(std::move(name)), losses_(losses) {}

    // definition: as it stands in the damaged file, placed in the new one.
    void run(const TableDefinition& old, TableDefinition definition) {
        // Indexes are filled when all records are there.
        TableDefinition bare = definition;
        bare.indexes.clear();
        bare.indexNames.clear();
        writeDefinition(to_, bare);
        Records records(to_, std::make_shared<TableDefinition>(bare));
        copyRows(old, records);
        definition.morePages = bare.morePages;
        definition.rows = records.definition().rows;
        definition.counter = records.definition().counter;
        writeDefinition(to_, definition);
        for (size_t i = definition.indexes.size(); i-- > 0;) {
            try {
                fillIndex(definition, i);
            } catch (const Error&) {
                dropIndex(definition, i);
            }
        }
    }

  private:
    void lose(const std::string& what) { losses_.push_back(name_ + ": " + what); }

    void copyRows(const TableDefinition& old, Records& records) {
        SalvagedRows rows(from_, old, census_);
        uint32_t refused = 0;
        rows.forEach([&](std::vector<Value>& values) {
            try {
                records.insert(values);
            } catch (const Error&) {
                ++refused;  // no program could have written it
            }
        });
        uint32_t saved = rows.found() - refused;
        if (saved < rows.expected())
            lose(counted(rows.expected() - saved, "record") + " lost, of " + std::to_string(rows.expected()) +
                 ".");
        for (auto [column, count] : rows.lostValues())
            lose(counted(count, "value") + " lost in " + old.columns[column].name + ", and Null now.");
    }

    // An index cannot be made anew where the order of its values is not known.
    void dropIndex(TableDefinition& definition, size_t index) {
        lose("the index " + indexName(definition, index) + " is lost.");
        std::erase_if(definition.indexNames, [&](const IndexName& name) { return name.index == index; });
        for (IndexName& name : definition.indexNames)
            if (name.index > index) --name.index;
        IndexTree(to_, definition.page, definition.indexes[index]).drop();
        MapSpace(to_).remove(definition.indexes[index].map);
        definition.indexes.erase(definition.indexes.begin() + static_cast<long>(index));
        writeDefinition(to_, definition);
    }

    static std::string indexName(const TableDefinition& definition, size_t index) {
        for (const IndexName& name : definition.indexNames)
            if (name.index == index) return name.name;
        return std::to_string(index);
    }

    void fillIndex(TableDefinition& definition, size_t index) {
        auto records = [&] { return Records(to_, std::make_shared<TableDefinition>(definition)); };
        if (!records().keys(index).obstacle().empty()) throw Error("The order of its values is not known.");
        if (hasFaults(records(), index)) {
            lose("the values of the index " + indexName(definition, index) +
                 " are no longer all there, or unique; it allows that now.");
            constexpr auto kAsked =
                static_cast<uint8_t>(IndexDefinition::kUnique | IndexDefinition::kNoNulls);
            uint8_t& flags = definition.indexes[index].flags;
            flags = static_cast<uint8_t>(flags & ~kAsked);
            for (IndexName& name : definition.indexNames)
                if (name.index == index && name.kind == IndexName::kPrimary) name.kind = IndexName::kPlain;
            writeDefinition(to_, definition);
        }
        records().buildIndex(index);
    }

    // Whether records break what an index asks of them.
    static bool hasFaults(Records records, size_t index) {
        const IndexDefinition& definition = records.definition().indexes[index];
        std::set<Bytes> seen;
        Records::Place place;
        for (RowId row; records.next(row, place); row = row.following()) {
            std::optional<KeyMaker::Key> key = records.keyOf(index, records.view(place));
            if (!key) continue;
            if (key->hasNull && (definition.flags & IndexDefinition::kNoNulls)) return true;
            if (definition.unique() && !key->hasNull && !seen.insert(key->bytes).second) return true;
        }
        return false;
    }

    Store& from_;
    Store& to_;
    const PageCensus& census_;
    std::string name_;
    Losses& losses_;
};

class Salvage {
  public:
    Salvage(Database& from, const std::string& path, bool keepsHeader, const Progress& progress)
        : from_(from.store()),
          census_(from.store()),
          path_(path),
          keepsHeader_(keepsHeader),
          progress_(progress) {}

    Losses run() {
        makeNewFile();
        readCatalogue();
        placeTables();
        size_t done = 0;
        for (const Object& object : tables_) {
            if (progress_) progress_(done++, tables_.size());
            if (!attempt("The table " + object.name(), [&] { copyTable(object); })) givePlaceBack(object);
        }
        for (const Object& object : others_)
            attempt("The object " + object.name(), [&] { to_->catalogue().addObject(object.entry); });
        attempt("The queries", [&] { copySystemTable(kQueriesPage, "The queries"); });
        attempt("The relations", [&] { copySystemTable(kRelationsPage, "The relations"); });
        to_->commit();
        return std::move(losses_);
    }

  private:
    // Does a part of the work whole or not at all.
    template <typename Work>
    bool attempt(const std::string& what, Work work) {
        try {
            PageFile::Change change(to_->store().file);
            work();
            change.done();
            return true;
        } catch (const Error& error) {
            losses_.push_back(what + " cannot be saved. " + error.what());
            return false;
        }
    }

    std::optional<TableDefinition> definitionOf(uint32_t page) {
        try {
            return readDefinition(from_, page);
        } catch (const Error&) {
            return {};
        }
    }

    // A file with the header of the old one, if the identities of its users are known; else with one of its
    // own.
    void makeNewFile() {
        Version version = from_.format.version;
        createDatabase(path_, version, nullptr, true);
        open("");
        catalogue_ = definitionOf(kObjectsPage);
        bool whole = catalogue_ && catalogue_->columnNamed("Id") >= 0 &&
                     catalogue_->columnNamed("Name") >= 0 && catalogue_->columnNamed("Type") >= 0;
        if (!whole) {
            losses_.push_back("The catalogue has lost its definition; that of a new database was taken.");
            catalogue_ = readDefinition(to_->store(), kObjectsPage);
            catalogue_->rows = 0;
        }
        readObjects();
        Heritage heritage;
        if (!keepsHeader_) return;
        if (!findUserMask(heritage.userMask)) {
            losses_.push_back(from_.header.password.empty() ? "The users of the database are lost."
                                                            : "The password of the database is lost.");
            return;
        }
        heritage.header = from_.file.page(0)->bytes;
        to_ = nullptr;
        ::unlink(path_.c_str());
        createDatabase(path_, version, &heritage, true);
        open(from_.header.password);
    }

    bool findUserMask(uint16_t& mask) const {
        if (from_.format.version == Version::kAccess97) return true;
        for (const Object& object : objects_) {
            auto owner = object.entry.find("Owner");
            if (object.name() == "MSysDb" && owner != object.entry.end())
                return userMaskOf(owner->second, mask);
        }
        return false;
    }

    void open(const std::string& password) {
        to_ = std::make_unique<Database>(path_, Database::Options{.password = password, .scratch = true});
        to_->begin();
    }

    void readObjects() {
        SalvagedRows rows(from_, *catalogue_, census_);
        rows.forEach([&](std::vector<Value>& values) {
            Object object;
            for (size_t i = 0; i < values.size(); ++i)
                if (!values[i].isNull()) object.entry[catalogue_->columns[i].name] = std::move(values[i]);
            objects_.push_back(std::move(object));
        });
        if (rows.found() < rows.expected())
            losses_.push_back("The catalogue: " + counted(rows.expected() - rows.found(), "object") +
                              " lost, of " + std::to_string(rows.expected()) + ".");
        for (auto [column, count] : rows.lostValues()) {
            bool properties = catalogue_->columns[column].name == "LvProp";
            losses_.push_back("The catalogue: " + counted(count, "value") + " lost in " +
                              catalogue_->columns[column].name +
                              (properties ? ", the rules and defaults of a table." : "."));
        }
    }

    // Parts the objects into tables and others. What a new file has already is left out.
    void readCatalogue() {
        std::set<int32_t> have;
        for (const CatalogueEntry& entry : to_->catalogue().entries()) have.insert(entry.id);
        for (Object& object : objects_) {
            if (have.count(object.id())) continue;
            if (!object.isTable())
                others_.push_back(std::move(object));
            else if (definitionOf(static_cast<uint32_t>(object.id())))
                tables_.push_back(std::move(object));
            else
                losses_.push_back("The table " + object.name() + " is lost: its definition cannot be read.");
        }
        for (Object& table : tables_)
            if (table.name().empty()) nameAnew(table);
        if (!losses_.empty()) addNamelessTables();
    }

    void nameAnew(Object& table) {
        std::string name = "Recovered table " + std::to_string(++newNames_);
        losses_.push_back("A table has lost its name; it is called " + name + " now.");
        table.entry["Name"] = Value(name);
    }

    // Tables whose entries in the catalogue are lost.
    void addNamelessTables() {
        std::set<uint32_t> known = {kObjectsPage, kAccessPage, kQueriesPage, kRelationsPage};
        for (const Object& object : tables_) known.insert(static_cast<uint32_t>(object.id()));
        for (uint32_t page : census_.definitions()) {
            std::optional<TableDefinition> definition = definitionOf(page);
            if (known.count(page) || !definition || definition->columns.empty() || definition->system)
                continue;
            Object object;
            object.entry = {{"Id", Value(static_cast<int32_t>(page))},
                            {"Type", Value(static_cast<int16_t>(ObjectType::kTable))},
                            {"Flags", Value(int32_t{0})}};
            nameAnew(object);
            tables_.push_back(std::move(object));
        }
    }

    // Gives all tables their pages, since they name each other by them.
    void placeTables() {
        PageFile::Change change(to_->store().file);
        for (const Object& object : tables_)
            places_[static_cast<uint32_t>(object.id())] = to_->store().allocator.take();
        mapPage_ = readDefinition(to_->store(), kRelationsPage).owned.page;
        change.done();
    }

    void givePlaceBack(const Object& object) {
        PageFile::Change change(to_->store().file);
        to_->store().allocator.give(places_.at(static_cast<uint32_t>(object.id())));
        change.done();
    }

    void copyTable(const Object& object) {
        Store& to = to_->store();
        auto oldPage = static_cast<uint32_t>(object.id());
        TableDefinition old = readDefinition(from_, oldPage), definition = old;
        placeDefinition(to, definition, places_.at(oldPage), mapPage_);
        for (IndexName& name : definition.indexNames) freeOfLostTables(to, name);
        TableSalvage(from_, to, census_, object.name(), losses_).run(old, definition);
        std::map<std::string, Value> entry = object.entry;
        entry["Id"] = Value(static_cast<int32_t>(definition.page));
        entry["ParentId"] = Value(kTablesContainer);
        checkProperties(object, entry);
        to_->catalogue().addObject(std::move(entry));
        mapPage_ = definition.owned.page;
    }

    // One side of a relation whose other table is lost is a plain index.
    void freeOfLostTables(const Store& to, IndexName& name) {
        if (name.otherTable == 0) return;
        auto it = places_.find(name.otherTable);
        if (it != places_.end()) {
            name.otherTable = it->second;
            return;
        }
        name.block = newIndexNameBlock(to);
        name.otherTable = 0;
        name.kind = IndexName::kPlain;
    }

    void checkProperties(const Object& object, std::map<std::string, Value>& entry) {
        auto it = entry.find("LvProp");
        if (it == entry.end() || !it->second.is<dao::Binary>()) return;
        try {
            Properties(from_.text, it->second.get<dao::Binary>());
        } catch (const Error&) {
            losses_.push_back(object.name() + ": its rules and default values are lost.");
            entry.erase(it);
        }
    }

    // Copies the rows of a system table into the one that a new file has.
    void copySystemTable(uint32_t page, const std::string& what) {
        std::optional<TableDefinition> old = definitionOf(page);
        Records records(to_->store(), std::make_shared<TableDefinition>(readDefinition(to_->store(), page)));
        if (!old) {
            if (!census_.dataPages(page).empty()) throw Error("Their definition cannot be read.");
            return;
        }
        SalvagedRows rows(from_, *old, census_);
        rows.forEach([&](std::vector<Value>& values) {
            std::vector<Value> fresh(records.definition().columns.size());
            for (size_t i = 0; i < values.size(); ++i) {
                int column = records.definition().columnNamed(old->columns[i].name);
                if (column >= 0) fresh[static_cast<size_t>(column)] = std::move(values[i]);
            }
            records.insert(fresh);
        });
        if (rows.found() < rows.expected() || !rows.lostValues().empty())
            losses_.push_back(what + " are not whole.");
    }

    Store& from_;
    PageCensus census_;
    std::string path_;
    bool keepsHeader_;
    const Progress& progress_;
    Losses losses_;
    std::unique_ptr<Database> to_;
    std::optional<TableDefinition> catalogue_;
    std::vector<Object> objects_, tables_, others_;
    std::map<uint32_t, uint32_t> places_;
    uint32_t mapPage_ = 0;
    int newNames_ = 0;
};

}  // namespace

std::vector<std::string> salvage(Database& damaged, const std::string& path, bool keepsHeader,
                                 const Progress& progress) {
    return Salvage(damaged, path, keepsHeader, progress).run();
}

}  // namespace jet
