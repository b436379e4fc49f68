#include "module/store/user_tables.h"

#include "module/store/server_sign_in.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

bool isEngineTable(const std::string& upperName) {
    return text::startsWith(upperName, "MSYS") || text::startsWith(upperName, "~TMP");
}

}  // namespace

int IsUserTable(const CDaoTableDefInfo& table, const CDaoDatabase& database) {
    if (!table.connect.empty()) return 0;
    std::string name = text::upper(table.name);
    bool qualified = database.GetConnect().onServer() && name.find('.') != std::string::npos;
    if (!qualified && isEngineTable(name)) return 0;
    std::string owner = TableOwner(database);
    return owner.empty() || text::startsWith(name, owner + ".") ? 1 : 0;
}

std::vector<std::string> UserTables(const CDaoDatabase& database) {
    std::vector<std::string> names;
    CDaoTableDefInfo table;
    int count = database.GetTableDefCount();
    for (int i = 0; i < count; ++i) {
        database.GetTableDefInfo(i, table);
        if (IsUserTable(table, database)) names.push_back(table.name);
    }
    return names;
}

bool SameTable(const std::string& name, const std::string& wanted) {
    if (text::equalNoCase(name, wanted)) return true;
    size_t dot = name.find('.');
    return dot != std::string::npos && text::equalNoCase(std::string_view(name).substr(dot + 1), wanted);
}

std::string FindUserTable(const CDaoDatabase& database, const std::string& name) {
    for (const std::string& table : UserTables(database))
        if (SameTable(table, name)) return table;
    return "";
}

std::optional<CDaoFieldInfo> FindField(CDaoDatabase& database, const std::string& table,
                                       const std::string& name) {
    CDaoTableDef definition(&database);
    definition.Open(table);
    CDaoFieldInfo field;
    for (int i = 0; i < definition.GetFieldCount(); ++i) {
        definition.GetFieldInfo(i, field);
        if (text::equalNoCase(field.name, name)) return field;
    }
    return std::nullopt;
}

}  // namespace norvane
