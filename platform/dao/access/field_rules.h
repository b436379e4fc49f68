// What the fields of a table ask of their values: defaults, required values, zero-length text, validation
// rules.
#pragma once

#include <memory>
#include <vector>

#include "platform/dao/dao.h"
#include "platform/dao/sqlite/statement.h"

namespace dao::access {

class FieldRules {
  public:
    // db: where the expressions are computed.
    FieldRules(sqlite3* db, std::vector<CDaoFieldInfo> fields);

    const std::vector<CDaoFieldInfo>& fields() const { return fields_; }
    // The value of a field that a new record does not set; Null where it has no default.
    Variant defaultOf(size_t field);
    // Converts a value to its field's type and checks it.
    Variant accepted(size_t field, Variant value);

  private:
    sqlite3* db_;
    std::vector<CDaoFieldInfo> fields_;
    std::vector<std::unique_ptr<sqlite::Statement>> defaults_, rules_;
};

}  // namespace dao::access
