// Access to databases: is the engine there, opening, and the one shape of every operation.
#pragma once

#include <functional>
#include <string>

#include "platform/dao/dao.h"

namespace norvane {

// Whether the database engine of a version ("3.6" or "3.2") is installed: 1 or 0.
int IsDaoAvailable(const std::string& version);
// The same for 3.6, which every operation needs; prints "Please install DAO 3.6..." when it is missing.
bool CheckDao();

// How an operation on a database ended.
enum class DatabaseOutcome {
    kDone,
    kNoDao,   // a line about it has been printed
    kFailed,  // the engine's words have been shown in a box
};

// The one shape of every operation on a database: the check for DAO, the opening (a file, or a connect string
// that begins "ODBC;"), the work, the closing. An exception of the engine is shown in a box titled "Error".
// The database is closed in every case; what the work wrote before an exception stays written.
DatabaseOutcome WithDatabase(const std::string& path, const std::function<void(CDaoDatabase&)>& work);

// Runs work on databases that the caller keeps open. False: the engine's words have been shown.
bool ShowDatabaseErrors(const std::function<void()>& work);

// Does work in a transaction, which is kept when the work gives true. Otherwise, and when an exception comes
// through, all of it is taken back. What the work gives.
bool InTransaction(CDaoDatabase& database, const std::function<bool()>& work);

// Opens a file, or the source of a connect string that begins "ODBC;" and keeps what it was opened with.
void OpenDatabase(CDaoDatabase& database, const std::string& path);

}  // namespace norvane
