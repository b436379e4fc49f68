#include "module/store/text_table.h"

#include <limits>

#include "module/store/output_database.h"
#include "module/store/records.h"
#include "module/store/statements.h"
#include "module/store/user_tables.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr const char* kKeyColumns[] = {"PT_ID", "GIS_KEY"};

bool findField(const CDaoTableDef& table, const std::string& name, CDaoFieldInfo& field) {
    for (int i = 0; i < table.GetFieldCount(); ++i) {
        table.GetFieldInfo(i, field);
        if (text::equalNoCase(field.name, name)) return true;
    }
    return false;
}

std::vector<std::string> valuesOf(CDaoDatabase& database, const std::string& statement) {
    std::vector<std::string> values;
    ForEachRecord(database, statement,
                  [&](CDaoRecordset& records) { values.push_back(dao::toText(records.GetFieldValue(0))); });
    return values;
}

CDaoFieldInfo keyColumn(const std::string& name, EmptyKeys emptyKeys) {
    CDaoFieldInfo column = KeyColumn(name);
    if (emptyKeys == EmptyKeys::kAllowed) column.allowZeroLength = true;
    return column;
}

// Gives a key column that is no text the type of one. Its values stay, as texts.
void makeText(CDaoDatabase& database, CDaoTableDef& table, const std::string& nameInStatements,
              const CDaoFieldInfo& column) {
    const std::string statement = "SELECT " + StatementName(column.name) + " FROM " + nameInStatements;
    const std::vector<std::string> values = valuesOf(database, statement);
    table.DeleteField(column.name);
    table.CreateField(column);
    size_t row = 0;
    ForEachRecord(database, statement, [&](CDaoRecordset& records) {
        const std::string& value = values[row++];
        if (value.empty()) return;
        records.Edit();
        records.SetFieldValue(0, value);
        records.Update();
    });
}

void makeTable(CDaoDatabase& database, const std::string& name, const std::vector<std::string>& columns,
               EmptyKeys emptyKeys) {
    CDaoTableDef table(&database);
    table.Create(name);
    for (const char* key : kKeyColumns) table.CreateField(keyColumn(key, emptyKeys));
    for (const std::string& column : columns) table.CreateField(AttributeColumn(column, FieldKind::kChar));
    table.Append();
    if (!database.GetConnect().empty())
        database.IndexForSearch(name, {std::begin(kKeyColumns), std::end(kKeyColumns)});
}

std::string nameInStatements(const CDaoDatabase& database, const std::string& table) {
    return database.GetConnect().empty() ? BracketedName(table) : QualifiedTable(database, table);
}

}  // namespace

TextTable EnsureTextTable(CDaoDatabase& database, const std::string& table,
                          const std::vector<std::string>& columns, EmptyKeys emptyKeys) {
    const std::string present = FindUserTable(database, table);
    if (present.empty()) {
        makeTable(database, table, columns, emptyKeys);
        const long size = AttributeColumn("", FieldKind::kChar).size;
        return {nameInStatements(database, table), std::vector<long>(columns.size(), size)};
    }
    TextTable made{nameInStatements(database, present), {}};
    CDaoTableDef definition(&database);
    definition.Open(present);
    CDaoFieldInfo field;
    for (const char* key : kKeyColumns) {
        if (!findField(definition, key, field))
            definition.CreateField(keyColumn(key, emptyKeys));
        else if (!TakesText(field, database))
            makeText(database, definition, made.table, keyColumn(field.name, emptyKeys));
    }
    for (const std::string& column : columns) {
        if (!findField(definition, column, field)) {
            field = AttributeColumn(column, FieldKind::kChar);
            definition.CreateField(field);
        }
        const bool isUnlimited = field.type == dbMemo;
        made.sizes.push_back(!TakesText(field, database) ? TextTable::kNoText
                             : isUnlimited               ? std::numeric_limits<long>::max()
                                                         : field.size);
    }
    return made;
}

bool TakesText(const CDaoFieldInfo& field, const CDaoDatabase& database) {
    return field.type == dbText || (field.type == dbMemo && !database.GetConnect().empty());
}

}  // namespace norvane
