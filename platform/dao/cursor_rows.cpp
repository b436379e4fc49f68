#include "platform/dao/cursor_rows.h"

#include <algorithm>

namespace dao {

CursorRows::CursorRows(Connection& connection, const std::string& table)
    : cursor_(connection.open(dbOpenDynaset, table, 0, {})) {}

bool CursorRows::list(RowNumber& last, size_t count, std::vector<RowNumber>& rows) {
    last = std::max<RowNumber>(last, -1);
    for (size_t i = 0; i < count; ++i) {
        if (!cursor_->moveTo(static_cast<long>(last + 1))) return false;
        rows.push_back(++last);
    }
    return true;
}

bool CursorRows::walk(RowNumber& last, size_t count, std::span<const size_t> fields, const Visit& visit) {
    std::vector<RowNumber> rows;
    const bool goesOn = list(last, count, rows);
    read(rows, fields, visit);
    return goesOn;
}

void CursorRows::read(std::span<const RowNumber> rows, std::span<const size_t> fields, const Visit& visit) {
    std::vector<Variant> values;
    for (RowNumber row : rows) {
        values.clear();
        try {
            if (!cursor_->moveTo(static_cast<long>(row))) continue;
            for (size_t field : fields) values.push_back(cursor_->value(static_cast<int>(field)));
        } catch (const CDaoRecordDeleted&) {
            continue;
        }
        visit(row, values);
    }
}

std::unique_ptr<TableRows> openTableRows(CDaoDatabase& database, const std::string& table) {
    if (std::unique_ptr<TableRows> rows = database.connection().rows(table)) return rows;
    return std::make_unique<CursorRows>(database.connection(), table);
}

}  // namespace dao
