// A connection of SQLite that closes itself, with the functions of the dialect.
#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>

namespace dao::sqlite {

struct Closing {
    void operator()(sqlite3* db) const { sqlite3_close_v2(db); }
};
using Handle = std::unique_ptr<sqlite3, Closing>;

// flags: SQLITE_OPEN_READONLY or SQLITE_OPEN_READWRITE, perhaps with SQLITE_OPEN_CREATE. Both throw a
// CDaoException.
Handle openFile(const std::string& path, int flags);
Handle openMemory();

}  // namespace dao::sqlite
