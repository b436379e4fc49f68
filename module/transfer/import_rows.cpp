#include "module/transfer/import_rows.h"

#include <algorithm>

#include "module/store/keyed_records.h"
#include "module/store/output_database.h"
#include "module/store/statements.h"
#include "module/store/text_table.h"
#include "module/store/user_tables.h"
#include "module/transfer/shape_set.h"
#include "module/transfer/table_text.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr const char* kIdColumn = "PT_ID";
constexpr const char* kFeatureColumn = "GIS_KEY";
constexpr const char* kKeyFields[] = {kIdColumn};

// A field of the set whose values are written.
struct Source {
    int field;
    DbfFieldClass type;
    std::string column;
    size_t mostCharacters;
};

std::vector<Source> sourcesOf(const DbfHandle& table, const std::vector<ImportedField>& fields,
                              const std::vector<long>& sizes, std::vector<std::string>& refused) {
    std::vector<Source> sources;
    for (size_t i = 0; i < fields.size(); ++i) {
        if (sizes[i] == TextTable::kNoText) {
            refused.push_back(fields[i].column);
            continue;
        }
        const DbfFieldClass type = DbfGetFieldInfo(&table, fields[i].index, nullptr, nullptr, nullptr);
        sources.push_back({fields[i].index, type, fields[i].column, static_cast<size_t>(sizes[i])});
    }
    return sources;
}

// The text without the characters that are too many. Whether there were any.
bool cutToCharacters(std::string& text, size_t most) {
    if (text.size() <= most) return false;
    size_t end = 0;
    for (size_t count = 0; end < text.size() && count < most; ++count) text::nextCodePoint(text, end);
    if (end == text.size()) return false;
    text.resize(end);
    return true;
}

}  // namespace

size_t CountRecordsOf(CDaoDatabase& database, const std::string& table, const std::vector<std::string>& ids) {
    const std::string present = FindUserTable(database, table);
    if (present.empty()) return 0;
    CDaoTableDef definition(&database);
    definition.Open(present);
    CDaoFieldInfo field;
    for (int i = 0; i < definition.GetFieldCount(); ++i) {
        definition.GetFieldInfo(i, field);
        if (!text::equalNoCase(field.name, kIdColumn)) continue;
        const std::string named =
            database.GetConnect().empty() ? BracketedName(present) : QualifiedTable(database, present);
        return KeyedRecords(database, "SELECT PT_ID FROM " + named, kKeyFields, ids).found();
    }
    return 0;
}

bool WriteRows(CDaoDatabase& database, const ImportShpSettings& settings, DbfHandle& table,
               const std::vector<std::string>& ids, ImportProgress& progress, ImportReport& report) {
    const std::vector<ImportedField> fields = ImportedFields(table);
    std::vector<std::string> columns;
    for (const ImportedField& field : fields) columns.push_back(field.column);
    const TextTable made = EnsureTextTable(database, settings.tableName, columns);
    const std::vector<Source> sources = sourcesOf(table, fields, made.sizes, report.fieldsRefused);

    KeyedRecords records(database, "SELECT * FROM " + made.table, kKeyFields, ids);
    auto writeValues = [&](CDaoRecordset& record, size_t row) {
        record.SetFieldValue(kIdColumn, ids[row]);
        record.SetFieldValue(kFeatureColumn, settings.tableName);
        for (const Source& source : sources) {
            std::string value =
                TableText(source.type, CellText(table, static_cast<int32_t>(row), source.field));
            if (value.empty()) continue;
            if (cutToCharacters(value, source.mostCharacters)) ++report.valuesCut;
            record.SetFieldValue(source.column, std::move(value));
        }
    };
    progress.begin("Writing record : ");
    const auto writeRecord = [&](CDaoRecordset& record, const std::vector<size_t>& rows, bool isNew) {
        for (size_t row : rows) writeValues(record, row);
        if (isNew) report.addedIds.push_back(ids[rows.front()]);
    };
    const bool done = records.writeRecords(writeRecord, [&](size_t left) { return progress.goOn(left); });
    progress.end();
    report.recordsChanged = records.found();
    report.recordsAdded = records.added();
    report.recordsWritten = true;
    return done;
}

}  // namespace norvane
