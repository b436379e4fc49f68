#include "module/linktools/area_records.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>

#include "module/store/records.h"
#include "module/store/statements.h"
#include "module/store/text_table.h"
#include "module/store/user_tables.h"
#include "platform/ads/editor.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr long kTellEvery = 50;

std::string selectKeys(const std::string& table, const std::string& keyField) {
    return "SELECT PT_ID, GIS_KEY, " + StatementName(keyField) + " FROM " + table;
}

std::string nameInStatements(const CDaoDatabase& database, const std::string& table) {
    return database.GetConnect().empty() ? BracketedName(table) : QualifiedTable(database, table);
}

// 0 for what is not a whole number.
long numberOf(const std::string& id) {
    const std::string_view digits = text::trim(id);
    long number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return error == std::errc() && end == digits.data() + digits.size() ? number : 0;
}

void tellLeft(const char* line, long left) {
    if (left % kTellEvery == 0) acutPrintf(line, left);
}

// Goes through the records of a table once to number new ones, and once to change them.
class RecordWriter {
  public:
    RecordWriter(CDaoDatabase& database, const std::string& statement, std::string table,
                 std::string keyField, KeyMap keys, AreaRecords& result)
        : records_(&database),
          table_(std::move(table)),
          keyField_(std::move(keyField)),
          keys_(std::move(keys)),
          result_(result) {
        for (records_.Open(dbOpenDynaset, statement); !records_.IsEOF(); records_.MoveNext()) {
            highest_ = std::max(highest_, numberOf(FieldText(records_, "PT_ID")));
            ++count_;
        }
    }

    void run() {
        changeRecords();
        addRecords();
        result_.isDone = true;
    }

  private:
    // Between two records.
    bool isStopped() {
        if (acedUsrBrk()) result_.isStopped = true;
        return result_.isStopped;
    }

    void changeRecords() {
        long left = count_;
        acutPrintf("\rUpdating database table > %ld...", left);
        if (count_ == 0) return;
        for (records_.MoveFirst(); !records_.IsEOF(); records_.MoveNext(), --left) {
            if (left < count_) tellLeft("\rUpdating database table > %ld...", left);
            const auto key = keys_.find(text::upper(FieldText(records_, keyField_.c_str())));
            if (key == keys_.end()) continue;
            if (isStopped()) return;
            std::string id = FieldText(records_, "PT_ID");
            records_.Edit();
            if (id.empty()) {
                id = std::to_string(++highest_);
                records_.SetFieldValue("PT_ID", id);
            }
            records_.SetFieldValue("GIS_KEY", table_);
            records_.Update();
            ++result_.changed;
            result_.links.push_back({std::move(id), std::move(key->second), false});
            keys_.erase(key);
        }
    }

    void addRecords() {
        auto left = static_cast<long>(keys_.size());
        acutPrintf("\rChecking selected entities > %ld...", left);
        for (auto& [key, handles] : keys_) {
            if (isStopped()) return;
            std::string id = std::to_string(++highest_);
            records_.AddNew();
            records_.SetFieldValue(keyField_, key);
            records_.SetFieldValue("GIS_KEY", table_);
            records_.SetFieldValue("PT_ID", id);
            records_.Update();
            ++result_.added;
            result_.links.push_back({std::move(id), std::move(handles), true});
            tellLeft("\rChecking selected entities > %ld...", --left);
        }
    }

    CDaoRecordset records_;
    const std::string table_, keyField_;
    KeyMap keys_;
    long highest_ = 0, count_ = 0;
    AreaRecords& result_;
};

}  // namespace

size_t CountRecordsOfKeys(CDaoDatabase& database, const std::string& table, const std::string& keyField,
                          const KeyMap& keys) {
    const std::string present = FindUserTable(database, table);
    if (present.empty()) return 0;
    size_t found = 0;
    ForEachRecord(database,
                  "SELECT " + StatementName(keyField) + " FROM " + nameInStatements(database, present),
                  [&](CDaoRecordset& record) {
                      found += keys.count(text::upper(FieldText(record, keyField.c_str())));
                  });
    return found;
}

std::vector<std::string> KeyColumnsToConvert(CDaoDatabase& database, const std::string& table) {
    std::vector<std::string> columns;
    const std::string present = FindUserTable(database, table);
    if (present.empty()) return columns;
    for (const char* name : {"PT_ID", "GIS_KEY"}) {
        const std::optional<CDaoFieldInfo> field = FindField(database, present, name);
        if (!field || TakesText(*field, database)) continue;
        const std::string column = StatementName(field->name);
        if (HasRecords(database, "SELECT " + column + " FROM " + nameInStatements(database, present) +
                                     " WHERE " + column + " IS NOT NULL"))
            columns.push_back(field->name);
    }
    return columns;
}

void WriteAreaRecords(CDaoDatabase& database, const std::string& table, const std::string& keyField,
                      KeyMap keys, AreaRecords& result) {
    acutPrintf("\rBuilding database table...");
    const TextTable made = EnsureTextTable(database, table, {keyField}, EmptyKeys::kAllowed);
    if (made.sizes[0] == TextTable::kNoText) {
        acedAlert("Error: invalid selected field type.");
        return;
    }
    RecordWriter(database, selectKeys(made.table, keyField), table, keyField, std::move(keys), result).run();
}

}  // namespace norvane
