// A table of texts that an import fills: made anew, or one that is there and is given what it lacks.
#pragma once

#include <string>
#include <vector>

#include "platform/dao/dao.h"

namespace norvane {

struct TextTable {
    std::string table;  // the name in statements
    // For each column that was asked for: how many characters of text it takes. kNoText: it is of another
    // type, and texts are not written to it.
    std::vector<long> sizes;

    static constexpr long kNoText = -1;
};

// Whether key columns that are made take empty texts.
enum class EmptyKeys { kRefused, kAllowed };

// Makes sure that a table has PT_ID, GIS_KEY and the columns, all of them for text; columns come without
// names that repeat. A key column of another type becomes text and keeps its values; any other column stays
// as it is. Exceptions pass through.
TextTable EnsureTextTable(CDaoDatabase& database, const std::string& table,
                          const std::vector<std::string>& columns, EmptyKeys emptyKeys = EmptyKeys::kRefused);

// Whether a field takes texts. Servers have text without a limit too, which reads as a memo.
bool TakesText(const CDaoFieldInfo& field, const CDaoDatabase& database);

}  // namespace norvane
