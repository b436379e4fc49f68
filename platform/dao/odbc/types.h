// Types of a server as types of fields, and back.
#pragma once

#include <sql.h>

#include <string>
#include <string_view>
#include <vector>

#include "platform/dao/dao.h"
#include "platform/dao/odbc/dialect.h"

namespace dao::odbc {

// A column as the driver describes it.
struct Column {
    std::string name;
    SQLSMALLINT sqlType = SQL_VARCHAR;
    std::string typeName;  // the server's own
    long size = 0;         // characters, bytes or digits; 0 or less when there is no limit
    int decimals = 0;
    bool nullable = true;
    bool counts = false;
    bool hasDefault = false;
};

// A type that is not known is read as text.
CDaoFieldInfo fieldOf(const Column& column);

// The types that a server offers for new columns.
class ServerTypes {
  public:
    ServerTypes(SQLHDBC connection, const Dialect& dialect);
    // "varchar(255)", "serial". Throws when the server has nothing that holds such a field.
    std::string columnType(const CDaoFieldInfo& field) const;

  private:
    struct Type {
        SQLSMALLINT sqlType;
        std::string name;
        long size;
        std::string parameters;  // "length", "precision,scale"; "" for none
        bool counts;
    };
    const Type* find(SQLSMALLINT sqlType, bool counts) const;

    std::vector<Type> types_;
    std::string counter_;
};

}  // namespace dao::odbc
