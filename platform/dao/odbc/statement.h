// A statement of a server: running it, its parameters, its rows.
#pragma once

#include <list>
#include <string>
#include <vector>

#include "platform/dao/odbc/handles.h"
#include "platform/dao/odbc/types.h"

namespace dao::odbc {

class Statement {
  public:
    explicit Statement(SQLHDBC connection);

    SQLHSTMT handle() const { return handle_.get(); }
    // To be called with the result of a function of the driver manager that begins a set of rows.
    void ran(SQLRETURN result) { check(result, handle_); }

    // parameters: a value for each ?; any other number of them throws.
    void execute(const std::string& sql, const std::vector<Variant>& parameters = {});
    void prepare(const std::string& sql);
    // Parameters count from 1. The value is copied.
    void bind(int parameter, const Variant& value);
    // Runs a prepared statement; the parameters must be bound anew for the next time.
    void executePrepared();

    // False at the end of the rows; the statement can then be run again.
    bool fetch();
    int columns();
    // The name and type of a column; with all that its table would tell of it, which may ask the server
    // again.
    Column describe(int column);
    void describeFully(int number, Column& column);
    // A column of the present row, as a value of a field's type; as text where the two do not agree. Columns
    // count from 1 and are read in their order, each once.
    Variant value(int column, const Column& description, int fieldType);
    std::string text(int column);
    // Rows that the last statement has changed; -1 when the driver does not know.
    long changed();

  private:
    // Space for one parameter while its statement runs.
    struct Parameter {
        std::vector<SQLWCHAR> wide;
        std::string narrow;
        Binary bytes;
        SQL_TIMESTAMP_STRUCT date{};
        SQLINTEGER number = 0;
        SQLLEN length = 0;
    };

    template <typename Target>
    bool get(int column, SQLSMALLINT targetType, Target& target);
    Variant textValue(int column);
    Variant binaryValue(int column);
    Variant dateValue(int column, SQLSMALLINT sqlType);

    Handle handle_;
    std::list<Parameter> parameters_;
};

}  // namespace dao::odbc
