#include "module/records/key_index.h"

#include <algorithm>
#include <vector>

#include "module/settings/current_databases.h"
#include "module/store/database.h"
#include "module/store/user_tables.h"
#include "platform/ads/editor.h"
#include "platform/dao/names.h"
#include "platform/dao/table_rows.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr size_t kMostWithoutIndex = 20'000;
constexpr const char* kKeyField = "PT_ID";
constexpr const char* kFeatureField = "GIS_KEY";

bool hasIndex(dao::TableRows& rows, int field) {
    return field >= 0 && rows.hasIndex(static_cast<size_t>(field));
}

struct Indexed {
    size_t made = 0, present = 0, withoutField = 0;
    std::vector<std::string> faults;
};

void index(CDaoDatabase& database, const std::string& table, Indexed& indexed) {
    try {
        if (!FindField(database, table, kKeyField))
            ++indexed.withoutField;
        else if (MakeIndex(database, table, kKeyField))
            ++indexed.made;
        else
            ++indexed.present;
    } catch (const CDaoException& error) {
        indexed.faults.push_back(table + ": " + error.description());
    }
}

void tell(const Indexed& indexed) {
    for (const std::string& fault : indexed.faults) acutPrintf("\n%s", fault.c_str());
    std::string line = text::counted(static_cast<long>(indexed.made), "table has", "tables have") +
                       " got an index of " + kKeyField;
    if (indexed.present)
        line += "; " + text::counted(static_cast<long>(indexed.present), "had", "had") + " one";
    if (indexed.withoutField)
        line +=
            "; " + text::counted(static_cast<long>(indexed.withoutField), "has", "have") + " no such field";
    if (!indexed.faults.empty())
        line +=
            "; " + text::counted(static_cast<long>(indexed.faults.size()), "could", "could") + " not get one";
    acutPrintf("\n%s.", line.c_str());
}

}  // namespace

bool NeedsIndex(CDaoDatabase& database, const std::string& table, const std::string& keyField) {
    const std::unique_ptr<dao::TableRows> rows = dao::openTableRows(database, table);
    const int field = dao::findField(rows->fields(), keyField);
    if (field < 0 || hasIndex(*rows, field)) return false;
    std::vector<dao::RowNumber> found;
    dao::RowNumber last = dao::kBeforeAllRows;
    while (found.size() <= kMostWithoutIndex && rows->list(last, kMostWithoutIndex + 1, found)) {
    }
    return found.size() > kMostWithoutIndex;
}

bool MakeIndex(CDaoDatabase& database, const std::string& table, const std::string& keyField) {
    std::vector<std::string> fields = {keyField};
    {
        const std::unique_ptr<dao::TableRows> rows = dao::openTableRows(database, table);
        if (hasIndex(*rows, dao::findField(rows->fields(), keyField))) return false;
        // Those who look for a record name its feature too.
        if (!text::equalNoCase(keyField, kFeatureField) && dao::findField(rows->fields(), kFeatureField) >= 0)
            fields.push_back(kFeatureField);
    }
    database.CreateIndex(table, fields);
    return true;
}

void IndexTables(Call& call) {
    std::string wanted;
    call.arguments.text(wanted);
    call.result = Nil{};
    WithDatabase(CurrentOutputPath(), [&](CDaoDatabase& database) {
        std::vector<std::string> tables = UserTables(database);
        if (!wanted.empty()) {
            const std::string table = FindUserTable(database, wanted);
            if (table.empty()) {
                acutPrintf("\nThe output database has no table %s.", wanted.c_str());
                return;
            }
            tables = {table};
        }
        Indexed indexed;
        for (const std::string& table : tables) index(database, table, indexed);
        tell(indexed);
        call.result = static_cast<int>(indexed.made);
    });
}

}  // namespace norvane
