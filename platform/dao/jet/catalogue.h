// The catalogue: the objects of a database and who may use them.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/dao/jet/records.h"

namespace jet {

enum class ObjectType : int16_t {
    kTable = 1,
    kDatabase = 2,
    kContainer = 3,
    kOdbcTable = 4,
    kQuery = 5,
    kLinkedTable = 6,
    kRelation = 8,
};

struct CatalogueEntry {
    RowId row;
    int32_t id = 0;  // of a table the page of its definition
    int32_t parent = 0;
    std::string name;
    int16_t type = 0;
    int32_t flags = 0;
    std::string connect;  // of linked tables
    std::string database;

    bool isTable() const { return type == static_cast<int16_t>(ObjectType::kTable); }
    bool isLinked() const {
        return type == static_cast<int16_t>(ObjectType::kOdbcTable) ||
               type == static_cast<int16_t>(ObjectType::kLinkedTable);
    }
    // Made by the engine or by a program for itself.
    bool isSystem() const { return (static_cast<uint32_t>(flags) & 0x8000000Au) != 0; }
};

inline constexpr int32_t kTablesContainer = 0x0F000001;

// The present moment, of the local clock.
dao::Date now();

class Catalogue {
  public:
    explicit Catalogue(Store& store);

    const std::vector<CatalogueEntry>& entries() const { return entries_; }
    // A table, or a linked one, by its name without regard to case; nullptr.
    const CatalogueEntry* table(std::string_view name) const;

    // The stored properties of an object.
    Bytes properties(const CatalogueEntry& entry);
    void setProperties(const CatalogueEntry& entry, const Bytes& stored);

    void addTable(const std::string& name, uint32_t page, const Bytes& properties);
    // Adds an object by what stands in the columns of its entry. It belongs to the owner of the database, and
    // all who may use the container of the tables may use it.
    void addObject(std::map<std::string, Value> entry);
    // Who owns what is made in the database; "" where that cannot be read.
    Value owner();
    // Takes the table and its access rights out.
    void removeTable(const CatalogueEntry& entry);
    void rename(const CatalogueEntry& entry, const std::string& name);

    Records& objects() { return objects_; }

  private:
    void load();
    size_t column(const char* name) const;
    void addAccess(int32_t id, const dao::Binary& sid, int32_t rights);
    std::vector<dao::Binary> usersOfTables();

    Store& store_;
    Records objects_;
    Records access_;
    std::vector<CatalogueEntry> entries_;
};

}  // namespace jet
