#include "platform/dao/sqlite/handle.h"

#include <filesystem>

#include "platform/dao/engine.h"
#include "platform/dao/sqlite/functions.h"

namespace dao::sqlite {
namespace {

Handle open(const std::string& path, const char* file, int flags) {
    sqlite3* db = nullptr;
    int result = sqlite3_open_v2(file, &db, flags | SQLITE_OPEN_NOMUTEX, nullptr);
    Handle handle(db);
    if (result != SQLITE_OK)
        throw CDaoException("Cannot open the database \"" + path +
                            "\": " + (db ? sqlite3_errmsg(db) : "out of memory") + ".");
    sqlite3_extended_result_codes(db, 1);
    // Text in double quotes that is no name must not pass for text.
    sqlite3_db_config(db, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    addFunctions(db);
    return handle;
}

}  // namespace

Handle openFile(const std::string& path, int flags) {
    Handle db = open(path, std::filesystem::absolute(path).c_str(), flags);
    sqlite3_busy_timeout(db.get(), lockTimeout());
    return db;
}

Handle openMemory() {
    return open(":memory:", ":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
}

}  // namespace dao::sqlite
