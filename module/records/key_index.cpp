#include "module/records/record_view.h"
#include "platform/dao/names.h"

namespace norvane {

namespace {

constexpr size_t kMostWithoutIndex = 20'000;

}  // namespace

bool NeedsIndex(CDaoDatabase& database, const std::string& table, const std::string& keyField) {
    const std::unique_ptr<dao::TableRows> rows = dao::openTableRows(database, table);
    const int field = dao::findField(rows->fields(), keyField);
    if (field < 0 || rows->hasIndex(static_cast<size_t>(field))) return false;
    std::vector<dao::RowNumber> found;
    dao::RowNumber last = dao::kBeforeAllRows;
    while (found.size() <= kMostWithoutIndex && rows->list(last, kMostWithoutIndex + 1, found)) {
    }
    return found.size() > kMostWithoutIndex;
}

bool MakeIndex(CDaoDatabase& database, const std::string& table, const std::string& keyField) {
    const std::unique_ptr<dao::TableRows> rows = dao::openTableRows(database, table);
    const int field = dao::findField(rows->fields(), keyField);
    if (field >= 0 && rows->hasIndex(static_cast<size_t>(field))) return false;
    database.CreateIndex(table, keyField);
    return true;
}

}  // namespace norvane
