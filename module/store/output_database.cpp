#include "module/store/output_database.h"

#include <algorithm>
#include <ctime>

#include "module/store/database.h"
#include "module/store/records.h"
#include "module/store/server_sign_in.h"
#include "module/store/statements.h"
#include "module/store/user_tables.h"
#include "platform/dao/sql_tokens.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

using dao::quotedText;

namespace {

constexpr const char* kGisKey = "GIS_KEY";

bool contains(const std::vector<std::string>& names, const std::string& upperName) {
    return std::find(names.begin(), names.end(), upperName) != names.end();
}

std::vector<std::string> columnsOf(const CDaoTableDef& table) {
    std::vector<std::string> columns;
    CDaoFieldInfo field;
    for (int i = 0; i < table.GetFieldCount(); ++i) {
        table.GetFieldInfo(i, field);
        columns.push_back(text::upper(field.name));
    }
    return columns;
}

// The key column of a table is always text; one of another type loses its values. Servers have text without a
// limit too, which reads as a memo.
void makeKeyColumnText(CDaoTableDef& table, const std::string& keyField, Route route) {
    CDaoFieldInfo field;
    for (int i = 0; i < table.GetFieldCount(); ++i) {
        table.GetFieldInfo(i, field);
        bool isText = field.type == dbText || (route == Route::kOdbc && field.type == dbMemo);
        if (!text::equalNoCase(field.name, keyField) || isText) continue;
        table.DeleteField(i);
        table.CreateField(KeyColumn(field.name));
        return;
    }
}

// Adds the fields that a table lacks. Names that are empty or come twice are passed over.
class MissingColumns {
  public:
    explicit MissingColumns(CDaoTableDef& table) : table_(table), present_(columnsOf(table)) {}
    // True when the column was missing.
    bool add(const CDaoFieldInfo& field) {
        std::string upper = text::upper(field.name);
        if (upper.empty() || contains(present_, upper)) return false;
        table_.CreateField(field);
        present_.push_back(std::move(upper));
        return true;
    }

  private:
    CDaoTableDef& table_;
    std::vector<std::string> present_;
};

// What stands in the statements of a route.
RecordKey routed(Route route, RecordKey key) {
    if (route == Route::kOdbc) {
        key.keyField = text::upper(key.keyField);
        key.keyValue = text::upper(key.keyValue);
        key.feature = text::upper(key.feature);
    }
    return key;
}

std::string odbcCondition(const RecordKey& k) {
    return " WHERE UCASE(" + StatementName(k.keyField) + ") = " + quotedText(k.keyValue) +
           " AND UCASE(GIS_KEY) = " + quotedText(k.feature);
}

bool isWritten(const OutputField& field) {
    return !field.name.empty() && (!field.value.empty() || field.clears);
}

void clearField(CDaoRecordset& records, const std::string& name) {
    CDaoFieldInfo info;
    records.GetFieldInfo(name, info);
    records.SetFieldValue(name, info.allowZeroLength ? dao::Variant(std::string()) : dao::Variant());
}

SavedAs writeThroughRecordset(CDaoDatabase& database, const RecordKey& key, const TableState& state,
                              const std::vector<OutputField>& fields) {
    CDaoRecordset records(&database);
    records.Open(dbOpenDynaset,
                 FindRecordStatement(Route::kAccess, key, !state.gisKeyAdded, FindPurpose::kSave));
    const bool isNew = records.IsEOF();
    if (isNew)
        records.AddNew();
    else
        records.Edit();
    records.SetFieldValue(key.keyField, key.keyValue);
    records.SetFieldValue(kGisKey, key.feature);
    for (const OutputField& field : fields) {
        if (!isWritten(field)) continue;
        if (field.value.empty())
            clearField(records, field.name);
        else if (field.kind == FieldKind::kReal)
            records.SetFieldValue(field.name, text::toReal(field.value));
        else
            records.SetFieldValue(field.name, field.value);
    }
    records.Update();
    records.Close();
    return isNew ? SavedAs::kNewRecord : SavedAs::kPresentRecord;
}

SavedAs writeThroughStatements(CDaoDatabase& database, const RecordKey& key,
                               const std::vector<OutputField>& fields) {
    RecordKey k = routed(Route::kOdbc, key);
    CDaoRecordset records(&database);
    // Two who save the same record at the same time must not both find none.
    records.Open(dbOpenDynaset, FindRecordStatement(Route::kOdbc, key, true, FindPurpose::kSave),
                 dbDenyWrite);
    bool found = !records.IsEOF();
    records.Close();
    if (found) database.Execute("DELETE FROM " + k.table + odbcCondition(k), dbSQLPassThrough);
    // A name that comes twice is one column, and the last value counts.
    std::vector<std::pair<std::string, std::string>> values = {{k.keyField, k.keyValue},
                                                               {kGisKey, k.feature}};
    for (const OutputField& field : fields) {
        if (!isWritten(field)) continue;
        auto same = std::find_if(values.begin(), values.end(), [&](const auto& value) {
            return text::equalNoCase(value.first, field.name);
        });
        if (same == values.end())
            values.emplace_back(field.name, field.value);
        else
            same->second = field.value;
    }
    std::string names, texts;
    for (const auto& [name, value] : values) {
        names += (names.empty() ? "" : ",") + StatementName(name);
        texts += (texts.empty() ? "" : ",") + quotedText(value);
    }
    database.Execute("INSERT INTO " + k.table + " (" + names + ") VALUES(" + texts + ")", dbSQLPassThrough);
    return found ? SavedAs::kPresentRecord : SavedAs::kNewRecord;
}

}  // namespace

Route RouteOf(const std::string& path) {
    return IsOdbcPath(path) ? Route::kOdbc : Route::kAccess;
}

const char* const kAutomaticKey = "#AUTO#";

std::string GeneratedKey(const std::string& keyValue) {
    if (keyValue != kAutomaticKey) return keyValue;
    static long last = 0;
    last = std::max(static_cast<long>(std::time(nullptr)), last + 1);
    return text::format("%ld", last);
}

bool LoadedRecord::hasColumn(const std::string& name) const {
    return contains(columns, text::upper(name));
}

std::string LoadedRecord::value(const std::string& name) const {
    auto it = values.find(text::upper(name));
    return it == values.end() ? "" : it->second;
}

LoadedRecord LoadRecord(const std::string& path, const RecordKey& key) {
    LoadedRecord record;
    WithDatabase(path, [&](CDaoDatabase& database) {
        std::string table = FindUserTable(database, key.table);
        if (table.empty()) return;
        CDaoTableDef definition(&database);
        definition.Open(table);
        Route route = RouteOf(path);
        // On a server the old column must not be gone without the new one.
        if (route == Route::kOdbc) database.BeginTrans();
        makeKeyColumnText(definition, key.keyField, route);
        if (route == Route::kOdbc) database.CommitTrans();
        record.columns = columnsOf(definition);
        definition.Close();
        if (!record.hasColumn(key.keyField)) return;

        RecordKey wanted = key;
        wanted.table = route == Route::kOdbc ? QualifiedTable(database, key.table) : table;
        CDaoRecordset records(&database);
        records.Open(dbOpenDynaset,
                     FindRecordStatement(route, wanted, record.hasColumn(kGisKey), FindPurpose::kLoad));
        if (records.IsEOF()) return;
        record.found = true;
        CDaoFieldInfo field;
        for (int i = 0; i < records.GetFieldCount(); ++i) {
            records.GetFieldInfo(i, field);
            record.values[text::upper(field.name)] = dao::toText(records.GetFieldValue(i));
        }
    });
    return record;
}

namespace {

SavedAs saveInto(CDaoDatabase& database, Route route, const RecordKey& key,
                 const std::vector<OutputField>& fields) {
    TableState state = EnsureOutputTable(database, key, fields);
    if (state.gisKeyAdded) FillGisKey(database, route, key, state);
    return WriteRecord(database, route, key, state, fields);
}

// A save that is refused leaves no table, no column and no value of GIS_KEY behind, and on a server, where
// the record that is replaced is deleted first, no gap.
SavedAs saveWholly(CDaoDatabase& database, Route route, const RecordKey& key,
                   const std::vector<OutputField>& fields) {
    constexpr int kMostConflicts = 10;
    // What the sheet has read of the tables will do, unless somebody has changed them since.
    database.UseKnownTables();
    for (int conflicts = 0;;) {
        SavedAs saved{};
        database.BeginTrans();
        try {
            saved = saveInto(database, route, key, fields);
        } catch (const CDaoConflict&) {
            // Someone else has made the table or a column of it at this moment. It is there now.
            database.Rollback();
            if (conflicts++ == kMostConflicts) throw;
            continue;
        } catch (const CDaoException&) {
            if (!database.ForgetKnownTables()) throw;
            database.Rollback();
            continue;
        }
        database.CommitTrans();
        return saved;
    }
}

}  // namespace

std::optional<SavedAs> SaveRecord(const std::string& path, const RecordKey& key,
                                  const std::vector<OutputField>& fields) {
    std::optional<SavedAs> saved;
    if (!CheckDao()) return saved;
    const bool isDone = ShowDatabaseErrors([&] {
        Route route = RouteOf(path);
        CDaoDatabase database;
        if (route == Route::kAccess && !files::exists(path))
            database.Create(path, dbLangGeneral, dbVersion30);
        else
            OpenDatabase(database, path);
        saved = saveWholly(database, route, key, fields);
        database.Close();
    });
    return isDone ? saved : std::nullopt;
}

TableState EnsureOutputTable(CDaoDatabase& database, const RecordKey& key,
                             const std::vector<OutputField>& fields) {
    TableState state;
    std::string present = FindUserTable(database, key.table);
    CDaoTableDef table(&database);
    state.created = present.empty();
    if (state.created)
        table.Create(key.table);
    else
        table.Open(present);
    MissingColumns columns(table);
    columns.add(KeyColumn(key.keyField));
    bool gisKeyAdded = columns.add(KeyColumn(kGisKey));
    for (const OutputField& field : fields) columns.add(AttributeColumn(field.name, field.kind));
    if (state.created) {
        table.Append();
        if (!database.GetConnect().empty()) database.IndexForSearch(key.table, {key.keyField, kGisKey});
    }
    state.gisKeyAdded = gisKeyAdded && !state.created;
    state.table = database.GetConnect().empty() ? table.GetName() : QualifiedTable(database, key.table);
    return state;
}

void FillGisKey(CDaoDatabase& database, Route route, const RecordKey& key, const TableState& state) {
    if (route == Route::kOdbc)
        return database.Execute("UPDATE " + state.table + " SET GIS_KEY = " + quotedText(key.table),
                                dbSQLPassThrough);
    CDaoRecordset records(&database);
    for (records.Open(dbOpenDynaset, "SELECT GIS_KEY FROM " + BracketedName(state.table)); !records.IsEOF();
         records.MoveNext()) {
        records.Edit();
        records.SetFieldValue(kGisKey, key.feature);
        records.Update();
    }
}

SavedAs WriteRecord(CDaoDatabase& database, Route route, const RecordKey& key, const TableState& state,
                    const std::vector<OutputField>& fields) {
    RecordKey placed = key;
    placed.table = state.table;
    return route == Route::kOdbc ? writeThroughStatements(database, placed, fields)
                                 : writeThroughRecordset(database, placed, state, fields);
}

CDaoFieldInfo KeyColumn(const std::string& name) {
    CDaoFieldInfo field;
    field.name = name;
    field.type = dbText;
    field.size = 255;
    field.attributes = dbVariableField | dbUpdatableField;
    return field;
}

CDaoFieldInfo AttributeColumn(const std::string& name, FieldKind kind) {
    CDaoFieldInfo field = KeyColumn(name);
    field.allowZeroLength = kind == FieldKind::kChar;
    if (kind == FieldKind::kChar) return field;
    field.type = kind == FieldKind::kReal ? dbDouble : dbLong;
    field.size = kind == FieldKind::kReal ? 7 : 4;
    field.attributes = dbUpdatableField;
    return field;
}

std::string FindRecordStatement(Route route, const RecordKey& key, bool hasGisKey, FindPurpose purpose) {
    RecordKey k = routed(route, key);
    if (route == Route::kAccess)
        return SelectTable(k.table) + " WHERE " + BracketedName(k.keyField) + " = " + quotedText(k.keyValue) +
               (hasGisKey ? " AND GIS_KEY = " + quotedText(k.feature) : "");
    std::string select = "SELECT * FROM " + k.table;
    std::string keyField = StatementName(k.keyField);
    if (!hasGisKey) return select + " WHERE UCASE(" + keyField + ") = " + quotedText(k.keyValue);
    if (purpose == FindPurpose::kSave) return select + odbcCondition(k);
    // Servers have always been sent this one without the blank.
    return select + " WHERE UCASE(" + keyField + ") = " + quotedText(k.keyValue) +
           " AND UCASE(GIS_KEY) =" + quotedText(k.feature);
}

std::string SelectTable(const std::string& table) {
    return "SELECT * FROM " + BracketedName(table);
}

std::string SelectKeys(const std::string& table) {
    return "SELECT PT_ID FROM " + BracketedName(table);
}

std::string SelectByPointId(const std::string& table, const std::string& id) {
    return SelectTable(table) + " WHERE PT_ID = " + quotedText(id);
}

std::vector<std::string> ListKeys(CDaoDatabase& database, const std::string& table) {
    std::vector<std::string> keys;
    const std::string found = FindUserTable(database, table);
    if (found.empty() || !FindField(database, found, "PT_ID")) return keys;
    ForEachRecord(database,
                  database.GetConnect().onServer() ? "SELECT PT_ID FROM " + QualifiedTable(database, found)
                                                   : SelectKeys(found),
                  [&](CDaoRecordset& records) {
                      std::string key = dao::toText(records.GetFieldValue(0));
                      if (!key.empty()) keys.push_back(std::move(key));
                  });
    return keys;
}

}  // namespace norvane
