#include "module/store/database.h"

#include "module/host/gis_request.h"
#include "module/host/host_helpers.h"
#include "platform/ads/editor.h"
#include "platform/dao/connect_string.h"
#include "platform/files/files.h"
#include "platform/registry/registry.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace {

bool isOdbc(const CDaoDatabase& database) {
    return IsOdbcPath(database.GetConnect());
}

// The symbol that holds the connect string of a path; "" when nothing is named.
std::string connectSymbol(const std::string& path) {
    std::string_view source = dao::sourceOf(path);
    return source.empty() ? "" : "@" + std::string(source);
}

std::string lispText(const std::string& symbol) {
    std::string value;
    GetLispValue(value, symbol);
    return value;
}

bool isEngineTable(const std::string& upperName) {
    return text::startsWith(upperName, "MSYS") || text::startsWith(upperName, "~TMP");
}

// The text between "UID=" and the next ";" of a connect string, in upper case.
std::string userOfConnect(const std::string& connect) {
    return text::upper(dao::ConnectString(connect).value("UID"));
}

}  // namespace

int IsDaoAvailable(const std::string& version) {
    std::string program = version == "3.6" ? "DAO.DBEngine.36" : "DAO.DBEngine";
    // A registered class is enough. Whether the file of its server is there would not change the answer.
    return registry::readString(registry::kClassesRoot, program + "\\CLSID") ? 1 : 0;
}

bool CheckDao() {
    if (IsDaoAvailable("3.6")) return true;
    acutPrintf("\nPlease install DAO 3.6...");
    return false;
}

bool ShowDatabaseErrors(const std::function<void()>& work) {
    try {
        work();
        return true;
    } catch (const CDaoException& error) {
        ui::messageBox("Error", error.description());
        return false;
    }
}

DatabaseOutcome WithDatabase(const std::string& path, const std::function<void(CDaoDatabase&)>& work) {
    if (!CheckDao()) return DatabaseOutcome::kNoDao;
    bool done = ShowDatabaseErrors([&] {
        CDaoDatabase database;
        OpenDatabase(database, path);
        work(database);
        database.Close();
    });
    return done ? DatabaseOutcome::kDone : DatabaseOutcome::kFailed;
}

bool IsOdbcPath(const std::string& path) {
    return dao::isConnectString(path);
}

std::string OpenConnectString(const std::string& path) {
    if (!IsOdbcPath(path)) return "";
    std::string symbol = connectSymbol(path);
    std::string known = symbol.empty() ? "" : lispText(symbol);
    return known.empty() ? path : known;
}

std::string TakePassword(const std::string& path) {
    if (!IsOdbcPath(path) || dao::ConnectString(path).password().empty()) return path;
    std::string open = dao::withoutPassword(path);
    SetLispString(connectSymbol(open), path);
    return open;
}

void OpenDatabase(CDaoDatabase& database, const std::string& path) {
    if (!IsOdbcPath(path)) return database.Open(path);
    database.Open("", false, false, OpenConnectString(path));
    RememberConnection(database, path);
}

void RememberConnection(const CDaoDatabase& database, const std::string& path) {
    std::string connect = database.GetConnect();
    SetLispString("@" + connect, database.GetName());
    SetLispString("~" + connect, userOfConnect(connect));
    // These are the symbols that the next opening reads: of the same path, and of what the path would be with
    // all that is known now but the password.
    for (const std::string& symbol : {connectSymbol(path), connectSymbol(dao::withoutPassword(connect))})
        if (!symbol.empty()) SetLispString(symbol, connect);
}

std::string ConnectionUser(const CDaoDatabase& database) {
    return isOdbc(database) ? lispText("~" + database.GetConnect()) : "";
}

int IsUserTable(const CDaoTableDefInfo& table, const CDaoDatabase& database) {
    if (!table.connect.empty()) return 0;
    std::string name = text::upper(table.name);
    bool qualified = isOdbc(database) && name.find('.') != std::string::npos;
    if (!qualified && isEngineTable(name)) return 0;
    std::string user = ConnectionUser(database);
    return user.empty() || text::startsWith(name, user + ".") ? 1 : 0;
}

std::vector<std::string> UserTables(const CDaoDatabase& database) {
    std::vector<std::string> names;
    CDaoTableDefInfo table;
    int count = database.GetTableDefCount();
    for (int i = 0; i < count; ++i) {
        database.GetTableDefInfo(i, table);
        if (IsUserTable(table, database)) names.push_back(table.name);
    }
    return names;
}

bool SameTable(const std::string& name, const std::string& wanted) {
    if (text::equalNoCase(name, wanted)) return true;
    size_t dot = name.find('.');
    return dot != std::string::npos && text::equalNoCase(std::string_view(name).substr(dot + 1), wanted);
}

std::string FindUserTable(const CDaoDatabase& database, const std::string& name) {
    for (const std::string& table : UserTables(database))
        if (SameTable(table, name)) return table;
    return "";
}

std::string StatementName(const std::string& name) {
    constexpr std::string_view kDigits = "0123456789";
    constexpr std::string_view kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_";
    bool plain = !name.empty() && kDigits.find(name.front()) == std::string_view::npos;
    for (char c : name)
        plain = plain &&
                (kLetters.find(c) != std::string_view::npos || kDigits.find(c) != std::string_view::npos);
    return plain ? name : "[" + name + "]";
}

std::string QualifiedTable(const CDaoDatabase& database, const std::string& table) {
    size_t dot = table.find('.');
    if (dot != std::string::npos)
        return StatementName(table.substr(0, dot)) + "." + StatementName(table.substr(dot + 1));
    std::string user = ConnectionUser(database);
    return (user.empty() ? "" : StatementName(user) + ".") + StatementName(table);
}

int ProbeFolderWritable(const std::string& path) {
    return files::folderIsWritable(path) ? 1 : 0;
}

NewDatabaseName ParseNewDatabaseName(const std::string& text) {
    NewDatabaseName name;
    if (text.empty()) return name;
    if (text[0] == '0') name.version = dbVersion30;
    if (text[0] == '1') name.version = dbVersion40;
    std::string path = text.substr(1);
    size_t dot = path.find('.');
    if (dot == std::string::npos)
        name.path = path + ".mdb";
    else if (dot + 4 == path.size())
        name.path = path.substr(0, dot + 1) + "mdb";
    // A dot anywhere else, in the name of a folder for instance, gives no name.
    return name;
}

int CreateDatabaseFile(const std::string& text, const std::function<void(CDaoDatabase&)>& fill) {
    if (!CheckDao()) return 0;
    NewDatabaseName name = ParseNewDatabaseName(text);
    if (name.version == 0 || name.path.empty() || !ProbeFolderWritable(name.path)) return 0;
    bool done = ShowDatabaseErrors([&] {
        CDaoDatabase database;
        database.Create(name.path, dbLangGeneral, name.version);
        fill(database);
        database.Close();
    });
    return done ? 1 : 0;
}

int CreateOutputDatabase() {
    return CreateDatabaseFile(PromptRequest.outputPath, [](CDaoDatabase&) {});
}
