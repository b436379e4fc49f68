#include "module/store/server_sign_in.h"

#include "module/cad/lisp_symbols.h"
#include "platform/dao/connect_string.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

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

// The text between "UID=" and the next ";" of a connect string, in upper case.
std::string userOfConnect(const std::string& connect) {
    return text::upper(dao::ConnectString(connect).value("UID"));
}

}  // namespace

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
    return IsOdbcPath(database.GetConnect()) ? lispText("~" + database.GetConnect()) : "";
}

}  // namespace norvane
