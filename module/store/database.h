// Access to databases: is the engine there, opening and creating, and the one shape of every operation.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/dao/dao.h"

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

// Opens a file, or the source of a connect string that begins "ODBC;". The connect string that the source was
// really opened with, password included, stays in Lisp symbols until the host ends, and is stored nowhere
// else: what is shown, printed or written is the path, which TakePassword has freed of it.
void OpenDatabase(CDaoDatabase& database, const std::string& path);
// A path that begins "ODBC;".
bool IsOdbcPath(const std::string& path);
// What Open needs as its connect string for a path: "" for a file.
std::string OpenConnectString(const std::string& path);
// The path without a password that stands in it. The password is kept where OpenConnectString finds it.
std::string TakePassword(const std::string& path);
// Keeps the connect string, the name and the user of a source that was opened by a path.
void RememberConnection(const CDaoDatabase& database, const std::string& path);
// The user of an open ODBC source, upper case; "" when it is not known, and for files.
std::string ConnectionUser(const CDaoDatabase& database);

// Whether a table is one of the user's, neither the engine's own nor an attached one: 1 or 0. In an ODBC
// source with a known user only that user's tables count.
int IsUserTable(const CDaoTableDefInfo& table, const CDaoDatabase& database);
// The names of the user's tables as they stand, in the order of the database.
std::vector<std::string> UserTables(const CDaoDatabase& database);
// Names compare without regard to case, and OWNER.TABLE also matches TABLE.
bool SameTable(const std::string& name, const std::string& wanted);
// The user's table of a name as it stands in the database; "" when there is none.
std::string FindUserTable(const CDaoDatabase& database, const std::string& name);
// A name in statements: in brackets where it is more than letters, digits and underscores.
std::string StatementName(const std::string& name);
// The name of a table in statements: qualified with the user in an ODBC source.
std::string QualifiedTable(const CDaoDatabase& database, const std::string& table);

// Whether a file can be made in the folder of a path: 1 or 0.
int ProbeFolderWritable(const std::string& path);

// Makes the database that the request's outputPath names: a format character ("0" Access 97, "1" Access 2000)
// and the path, which gets the ending .mdb. 1 when it was made; 0 when the name cannot be made one, the
// folder cannot be written to, or the engine failed (its words have been shown).
int CreateOutputDatabase();

// The parts of such a text.
struct NewDatabaseName {
    int version = 0;   // dbVersion30 or dbVersion40; 0: the format character is neither "0" nor "1"
    std::string path;  // "" when the text gives no name
};
NewDatabaseName ParseNewDatabaseName(const std::string& text);
// Makes a database by such a text and runs `fill` on it before it is closed. 1 or 0, as CreateOutputDatabase.
int CreateDatabaseFile(const std::string& text, const std::function<void(CDaoDatabase&)>& fill);
