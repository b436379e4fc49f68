// New databases.
#pragma once

#include <functional>
#include <string>

#include "platform/dao/dao.h"

namespace norvane {

enum class DatabaseVersion { kAccess97, kAccess2000 };

// The path that a new database gets by the name that a person or a routine gives it. The endings .sqlite, .db
// and .gpkg stay, and say which kind of file is made; another ending of three letters, and none, becomes
// .mdb. "" for any other ending. Dots in the names of folders are no endings.
std::string NewDatabasePath(const std::string& path);

// Whether a file can be made in the folder of a path: 1 or 0.
int ProbeFolderWritable(const std::string& path);

// Makes a database at exactly this path and runs `fill` on it before it is closed. False when DAO is missing
// or the engine failed, which has been told.
bool MakeDatabase(const std::string& path, DatabaseVersion version,
                  const std::function<void(CDaoDatabase&)>& fill);

// The same at NewDatabasePath(path), in a folder that can be written to; false without a word where it
// cannot.
bool CreateDatabaseFile(const std::string& path, DatabaseVersion version,
                        const std::function<void(CDaoDatabase&)>& fill);
// An empty one.
bool CreateOutputDatabase(const std::string& path, DatabaseVersion version);

}  // namespace norvane
