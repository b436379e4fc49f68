#include "module/store/bulk_add.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <string_view>
#include <unordered_map>

#include "module/store/database.h"
#include "module/store/output_database.h"
#include "module/store/server_sign_in.h"
#include "module/store/statements.h"
#include "module/store/user_tables.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr double kDone = 1.0;
constexpr double kNothing = 0.0;
constexpr double kEmptyList = -1.0;
constexpr double kNoFile = -2.0;
constexpr double kFailed = -4.0;
constexpr size_t kLongestPath = 1023;

// One record to add. All texts are those of the list, which outlives it.
struct NewRecord {
    std::string_view table;
    std::vector<std::pair<std::string_view, std::string_view>> values;  // by field
};

std::string_view stringOf(const resbuf* item) {
    return item && item->restype == RTSTR && item->resval.rstring ? item->resval.rstring : std::string_view();
}

std::string_view nameOf(const resbuf* item) {
    return text::trim(stringOf(item));
}

bool isMarker(const resbuf* item) {
    return item && item->restype == RTSHORT;
}

// A marker and a table name begin a record; an empty name leaves what follows to the record before. Values
// that are empty, and fields without a name, are dropped.
std::vector<NewRecord> readRecords(const resbuf* item) {
    std::vector<NewRecord> records;
    while (item) {
        if (isMarker(item)) {
            item = item->rbnext;
            if (!item || isMarker(item)) continue;
            if (std::string_view table = nameOf(item); !table.empty()) records.push_back({table, {}});
            item = item->rbnext;
            continue;
        }
        if (records.empty()) break;
        const resbuf* field = item;
        item = item->rbnext;
        if (stringOf(field).data() == nullptr) continue;
        if (!item || isMarker(item)) continue;
        std::string_view name = nameOf(field), value = stringOf(item);
        if (!name.empty() && !value.empty()) records.back().values.emplace_back(name, value);
        item = item->rbnext;
    }
    return records;
}

dao::Variant valueFor(int type, std::string_view value) {
    constexpr long kLeast = std::numeric_limits<int32_t>::min(), kMost = std::numeric_limits<int32_t>::max();
    switch (type) {
        case dbInteger:
        case dbLong:
            return static_cast<int32_t>(std::clamp(text::toLong(value), kLeast, kMost));
        case dbSingle:
            return static_cast<float>(text::toReal(value));
        case dbDouble:
            return text::toReal(value);
        default:
            return value;
    }
}

// The table that records are being added to.
class OpenTable {
  public:
    OpenTable(CDaoDatabase& database, const std::string& table) : records_(&database) {
        const bool onServer = database.GetConnect().onServer();
        records_.Open(dbOpenDynaset,
                      onServer ? "SELECT * FROM " + QualifiedTable(database, table) : SelectTable(table));
        CDaoFieldInfo field;
        for (int i = 0; i < records_.GetFieldCount(); ++i) {
            records_.GetFieldInfo(i, field);
            for (int type : {dbInteger, dbLong, dbSingle, dbDouble, dbText, dbMemo})
                if (field.type == type) fields_[text::upper(field.name)] = {i, type};
        }
    }

    void add(const NewRecord& record) {
        records_.AddNew();
        for (const auto& [name, value] : record.values)
            if (const Field& field = fieldOf(name); field.index >= 0)
                records_.SetFieldValue(field.index, valueFor(field.type, value));
        records_.Update();
    }

  private:
    struct Field {
        int index = -1;  // the table has no such field
        int type = 0;
    };

    // The same spellings come again in every record.
    const Field& fieldOf(std::string_view name) {
        auto [spelling, isNew] = spellings_.try_emplace(name);
        if (isNew)
            if (auto field = fields_.find(text::upper(name)); field != fields_.end())
                spelling->second = field->second;
        return spelling->second;
    }

    CDaoRecordset records_;
    std::unordered_map<std::string, Field> fields_;
    std::unordered_map<std::string_view, Field> spellings_;
};

void addRecords(CDaoDatabase& database, const std::vector<NewRecord>& records) {
    std::unordered_map<std::string, std::string> tables;
    for (const std::string& table : UserTables(database)) {
        tables[text::upper(table)] = table;
        // Tables of a server are listed with their owners.
        if (size_t dot = table.find('.'); dot != std::string::npos)
            tables.try_emplace(text::upper(table.substr(dot + 1)), table);
    }
    std::string_view present;
    std::unique_ptr<OpenTable> open;  // null when there is no table of the present name
    for (const NewRecord& record : records) {
        if (record.table != present) {
            present = record.table;
            auto table = tables.find(text::upper(present));
            open = table == tables.end() ? nullptr : std::make_unique<OpenTable>(database, table->second);
        }
        if (open) open->add(record);
    }
}

}  // namespace

double BulkAddRecords(const resbuf* arguments) {
    if (!arguments) return kEmptyList;
    std::string given(stringOf(arguments));
    if (given.empty() || given.size() > kLongestPath) return kNoFile;
    const dao::DatabasePath path = TakePassword(given);
    if (!IsOutputThere(path)) return kNoFile;
    std::vector<NewRecord> records = readRecords(arguments->rbnext);
    if (records.empty()) return kNothing;
    switch (WithDatabase(path, [&](CDaoDatabase& database) { addRecords(database, records); })) {
        case DatabaseOutcome::kDone:
            return kDone;
        case DatabaseOutcome::kNoDao:
            return kNothing;
        default:
            return kFailed;
    }
}

void AddRecords(Call& call) {
    call.result = BulkAddRecords(call.arguments.rest());
}

}  // namespace norvane
