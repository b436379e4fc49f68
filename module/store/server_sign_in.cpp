#include "module/store/server_sign_in.h"

#include "module/cad/lisp_symbols.h"
#include "platform/files/files.h"
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

}  // namespace

bool IsOdbcPath(const std::string& path) {
    return dao::isConnectString(path);
}

bool IsOutputThere(const std::string& path) {
    return IsOdbcPath(path) || files::exists(path);
}

dao::ConnectString OpenConnectString(const std::string& path) {
    if (!IsOdbcPath(path)) return dao::ConnectString();
    std::string symbol = connectSymbol(path);
    std::string known = symbol.empty() ? "" : lispText(symbol);
    return dao::ConnectString(known.empty() ? path : known);
}

dao::DatabasePath TakePassword(const std::string& given) {
    dao::DatabasePath path(given);
    std::string symbol = connectSymbol(path);
    if (path.text() != given && !symbol.empty()) SetLispString(symbol, given);
    return path;
}

void RememberConnection(const CDaoDatabase& database, const std::string& path) {
    const dao::ConnectString connect = database.GetConnect();
    const std::string whole = connect.withPassword().reveal();
    SetLispString("@" + whole, database.GetName());
    SetLispString("~" + whole, text::upper(connect.tableOwner()));
    // These are the symbols that the next opening reads: of the same path, and of what the path would be with
    // all that is known now but the password.
    for (const std::string& symbol : {connectSymbol(path), connectSymbol(connect.text())})
        if (!symbol.empty()) SetLispString(symbol, whole);
}

std::string TableOwner(const CDaoDatabase& database) {
    const dao::ConnectString connect = database.GetConnect();
    return connect.onServer() ? lispText("~" + connect.withPassword().reveal()) : "";
}

}  // namespace norvane
