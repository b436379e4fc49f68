// A prepared statement that frees itself, and SQLite's errors in the words of this program.
#pragma once

#include <sqlite3.h>

#include <string>
#include <vector>

#include "platform/dao/variant.h"

namespace dao::sqlite {

// Throws the CDaoException for the last error of a connection.
[[noreturn]] void fail(sqlite3* db, const std::string& sql = "");

class Statement {
  public:
    Statement(sqlite3* db, const std::string& sql);
    ~Statement() { sqlite3_finalize(statement_); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    // Parameters count from 1. The value must live until the statement has run.
    void bind(int parameter, const Variant& value);
    // The first parameters, from 1 on.
    void bindAll(const std::vector<Variant>& values);
    void bind(int parameter, int64_t value) { sqlite3_bind_int64(statement_, parameter, value); }

    // True: there is a row. Throws on errors; the statement is then reset.
    bool step();
    // Runs a statement without rows, and makes it ready for the next time.
    void run();
    void reset() { sqlite3_reset(statement_); }

    int columns() const { return sqlite3_column_count(statement_); }
    int64_t integer(int column) const { return sqlite3_column_int64(statement_, column); }
    std::string text(int column) const;
    // A column as a value of the type of a field, or of the type that is stored where the two do not agree.
    Variant value(int column, int fieldType) const;
    sqlite3_stmt* handle() const { return statement_; }

  private:
    sqlite3_stmt* statement_ = nullptr;
};

// Resets a statement at the end of a block.
class Resetting {
  public:
    explicit Resetting(Statement& statement) : statement_(statement) {}
    ~Resetting() { statement_.reset(); }
    Resetting(const Resetting&) = delete;
    Resetting& operator=(const Resetting&) = delete;

  private:
    Statement& statement_;
};

}  // namespace dao::sqlite
