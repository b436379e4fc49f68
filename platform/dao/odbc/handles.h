// Handles of the driver manager that free themselves, and what a driver says when something fails.
#pragma once

#include <sql.h>
#include <sqlext.h>

#include <string>
#include <string_view>
#include <vector>

namespace dao::odbc {

class Handle {
  public:
    // kind: SQL_HANDLE_ENV, SQL_HANDLE_DBC or SQL_HANDLE_STMT. Throws when there is none to be had.
    Handle(SQLSMALLINT kind, SQLHANDLE parent);
    ~Handle();
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    SQLHANDLE get() const { return handle_; }
    SQLSMALLINT kind() const { return kind_; }

  private:
    SQLSMALLINT kind_;
    SQLHANDLE handle_ = SQL_NULL_HANDLE;
};

// The one environment of the process.
SQLHENV environment();

struct Diagnostic {
    std::string state;  // five characters
    std::string text;   // in the words of the server or the driver, without who passed it on
};
std::vector<Diagnostic> diagnosticsOf(SQLSMALLINT kind, SQLHANDLE handle);
// All of them as one sentence.
std::string sentenceOf(const std::vector<Diagnostic>& diagnostics);

// Throws a CDaoException with the driver's words unless the result is a success.
void check(SQLRETURN result, const Handle& handle);

}  // namespace dao::odbc
