#include "module/transfer/database_utilities.h"

#include <optional>

#include "module/store/database.h"
#include "module/store/output_database.h"
#include "module/store/records.h"
#include "module/store/server_sign_in.h"
#include "module/store/statements.h"
#include "module/store/user_tables.h"
#include "platform/dao/sql_tokens.h"
#include "platform/files/files.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

constexpr const char* kFeature = "GIS_KEY";

std::string nameInStatements(const CDaoDatabase& database, const std::string& table) {
    return database.GetConnect().empty() ? BracketedName(table) : QualifiedTable(database, table);
}

void renameFeature(CDaoDatabase& database, const std::string& table, const std::string& name) {
    const std::optional<CDaoFieldInfo> field = FindField(database, table, kFeature);
    if (!field) return;
    {
        CDaoTableDef definition(&database);
        definition.Open(table);
        definition.DeleteField(field->name);
        CDaoFieldInfo made = KeyColumn(kFeature);
        made.allowZeroLength = true;
        definition.CreateField(made);
    }
    // A server has no way to tell records of one column from each other.
    if (!database.GetConnect().empty())
        return database.Execute(
            "UPDATE " + nameInStatements(database, table) + " SET GIS_KEY = " + dao::quotedText(name),
            dbSQLPassThrough);
    ForEachRecord(database, "SELECT GIS_KEY FROM " + nameInStatements(database, table),
                  [&](CDaoRecordset& records) {
                      records.Edit();
                      records.SetFieldValue(kFeature, name);
                      records.Update();
                  });
}

}  // namespace

std::vector<std::string> TablesOf(const std::string& database) {
    std::vector<std::string> names;
    WithDatabase(database, [&](CDaoDatabase& open) {
        names = UserTables(open);
        if (!open.GetConnect().empty())
            for (std::string& name : names) name = name.substr(name.find('.') + 1);
    });
    return names;
}

std::vector<CDaoFieldInfo> FieldsOf(const std::string& database, const std::string& table) {
    std::vector<CDaoFieldInfo> fields;
    if (table.empty()) return fields;
    WithDatabase(database, [&](CDaoDatabase& open) {
        const std::string present = FindUserTable(open, table);
        if (present.empty()) return;
        CDaoTableDef definition(&open);
        definition.Open(present);
        fields.resize(static_cast<size_t>(definition.GetFieldCount()));
        for (size_t i = 0; i < fields.size(); ++i) definition.GetFieldInfo(static_cast<int>(i), fields[i]);
    });
    return fields;
}

bool MakeUtilityDatabase(const std::string& path, DatabaseVersion version) {
    if (!CheckDao()) return false;
    if (!files::remove(path)) {
        ui::messageBox("Error", "Cannot delete *.mdb file!");
        return false;
    }
    return MakeDatabase(path, version, [](CDaoDatabase&) {});
}

bool DeleteTable(const std::string& database, const std::string& table) {
    const auto work = [&](CDaoDatabase& open) {
        const std::string present = FindUserTable(open, table);
        open.DeleteTableDef(present.empty() ? table : present);
    };
    return WithDatabase(database, work) == DatabaseOutcome::kDone;
}

bool RenameTable(const std::string& database, const std::string& table, const std::string& name) {
    const auto work = [&](CDaoDatabase& open) {
        const std::string present = FindUserTable(open, table);
        open.BeginTrans();
        {
            CDaoTableDef definition(&open);
            definition.Open(present.empty() ? table : present);
            definition.SetName(name);
        }
        const std::string renamed = FindUserTable(open, name);
        renameFeature(open, renamed.empty() ? name : renamed, name);
        open.CommitTrans();
    };
    return WithDatabase(database, work) == DatabaseOutcome::kDone;
}

}  // namespace norvane
