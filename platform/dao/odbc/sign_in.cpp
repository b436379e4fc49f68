#include "platform/dao/odbc/sign_in.h"

#include <odbcinst.h>

#include <algorithm>

#include "platform/dao/dao.h"
#include "platform/dao/odbc/sign_in_dialog.h"
#include "platform/dao/odbc/wide_text.h"
#include "platform/text/text.h"

namespace dao::odbc {
namespace {

constexpr int kSecondsToConnect = 5;

bool namesASource(const ConnectString& connect) {
    for (const char* setting : {"DSN", "DRIVER", "FILEDSN"})
        if (!connect.value(setting).empty()) return true;
    return false;
}

std::vector<std::string> knownSources() {
    std::vector<std::string> sources;
    SQLWCHAR name[256], description[256];
    SQLSMALLINT nameUnits = 0, descriptionUnits = 0;
    for (SQLUSMALLINT which = SQL_FETCH_FIRST; SQL_SUCCEEDED(SQLDataSourcesW(
             environment(), which, name, 256, &nameUnits, description, 256, &descriptionUnits));
         which = SQL_FETCH_NEXT)
        sources.push_back(fromWide(name, static_cast<size_t>(std::clamp<SQLSMALLINT>(nameUnits, 0, 255))));
    return sources;
}

bool isAboutPassword(const std::vector<Diagnostic>& diagnostics) {
    return std::any_of(diagnostics.begin(), diagnostics.end(), [](const Diagnostic& d) {
        return text::startsWith(d.state, "28") || text::lower(d.text).find("password") != std::string::npos;
    });
}

// What a data source says about the schema of its tables, which drivers know nothing of; "" when it says
// nothing.
std::string schemaOf(const std::string& dataSource) {
    if (dataSource.empty()) return "";
    char schema[256] = "";
    SQLGetPrivateProfileString(dataSource.c_str(), "Schema", "", schema, sizeof schema, "odbc.ini");
    return schema;
}

// What the string calls its source.
std::string nameOf(const ConnectString& connect) {
    std::string dsn = connect.value("DSN");
    if (!dsn.empty()) return "\"" + dsn + "\"";
    return "\"" + connect.text() + "\"";
}

// One attempt. False, and what is wrong, when it fails. The user and the schema that the source has by itself
// go into the string.
bool attempt(const Handle& connection, ConnectString& connect, std::vector<Diagnostic>& wrong) {
    std::vector<SQLWCHAR> in = toWide(connect.forDriver().reveal());
    in.push_back(0);
    SQLWCHAR out[4096] = {};
    SQLSMALLINT units = 0;
    SQLRETURN result =
        SQLDriverConnectW(connection.get(), nullptr, in.data(), SQL_NTS, out,
                          static_cast<SQLSMALLINT>(std::size(out)), &units, SQL_DRIVER_NOPROMPT);
    if (!SQL_SUCCEEDED(result)) {
        wrong = diagnosticsOf(SQL_HANDLE_DBC, connection.get());
        return false;
    }
    // Of what drivers give back, a long list of settings, nothing else is of use.
    size_t most = std::size(out) - 1;
    ConnectString opened(fromWide(out, std::min(most, static_cast<size_t>(std::max<SQLSMALLINT>(units, 0)))));
    if (connect.value("UID").empty() && !opened.value("UID").empty()) connect.set("UID", opened.value("UID"));
    std::string schema = connect.has("SCHEMA") ? "" : schemaOf(connect.value("DSN"));
    if (!schema.empty()) connect.set("SCHEMA", schema);
    return true;
}

}  // namespace

ConnectString signIn(const Handle& connection, ConnectString connect, bool mayAsk) {
    SQLSetConnectAttr(connection.get(), SQL_ATTR_LOGIN_TIMEOUT,
                      reinterpret_cast<SQLPOINTER>(static_cast<SQLULEN>(kSecondsToConnect)), 0);
    if (!namesASource(connect) && !(mayAsk && askToSignIn(connect, knownSources(), "")))
        throw CDaoException("No data source is named.");
    std::vector<Diagnostic> wrong;
    while (!attempt(connection, connect, wrong)) {
        std::string reason = "The data source " + nameOf(connect) + " cannot be opened: " + sentenceOf(wrong);
        // Some repeat what they have been given.
        Secret password = connect.password();
        if (!password.empty()) reason = text::replaceAll(reason, "=" + password.reveal(), "=****");
        bool ask = mayAsk && isAboutPassword(wrong);
        if (!ask || !askToSignIn(connect, knownSources(), reason)) throw CDaoException(reason);
    }
    return connect;
}

}  // namespace dao::odbc
