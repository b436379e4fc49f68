// Making and changing the definitions of tables.
#pragma once

#include "platform/dao/jet/database.h"

namespace jet {

// The first page of a new database.
Bytes newDatabaseHeader(const Format& format);

// A file with nothing but a header (of a new database when it is empty), the map of free pages and room for
// the definitions of the system tables.
void makeEmptyFile(const std::string& path, Version version, const Bytes& header);

// What a new database may take over from an older one: the first page, and the word that lies on the
// identities of users in Access 2000.
struct Heritage {
    Bytes header;
    uint16_t userMask = 0;
};
// scratch: the file goes when the work on it ends.
void createDatabase(const std::string& path, Version version, const Heritage* heritage, bool scratch = false);
// The word that lies on the identities of a database, by the owner of what is made in it. False where the
// owner is nobody who is known.
bool userMaskOf(const Value& owner, uint16_t& mask);

// A place for a usage map: a row on one of the pages that hold them.
class MapSpace {
  public:
    explicit MapSpace(Store& store) : store_(store) {}
    // near: a page with maps that may have room, which is tried before the last one that had some; 0 for
    // none.
    RowId add(uint32_t near);
    // Takes a map away, and gives back its pages and the page it stood on when nothing else is there.
    void remove(RowId map);

  private:
    Store& store_;
};

// The definition of a new table on a page that is its own already. Its maps are made near other ones.
TableDefinition newDefinition(Store& store, uint32_t page, const std::vector<Column>& columns, bool system,
                              uint32_t mapPage);
// Adds a column behind the others.
void addColumnTo(Store& store, TableDefinition& definition, const Column& column);
void removeColumnFrom(Store& store, TableDefinition& definition, size_t column);
// Adds an index with an empty tree.
void addIndexTo(Store& store, TableDefinition& definition, const Index& index);
// Gives a definition that comes from another file a page, maps and empty indexes of its own.
void placeDefinition(Store& store, TableDefinition& definition, uint32_t page, uint32_t mapPage);
// Gives back all pages of a table, its definition with them.
void dropStorage(Store& store, const TableDefinition& definition);

// What the properties add to a column, and the properties of a column.
void readColumnProperties(const Store& store, const Properties& properties, Column& column);
void writeColumnProperties(const Store& store, Properties& properties, const Column& column);

}  // namespace jet
