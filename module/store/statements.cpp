#include "module/store/statements.h"

#include <string_view>

#include "module/store/server_sign_in.h"

namespace norvane {

std::string BracketedName(const std::string& name) {
    if (name.find_first_of("[]") != std::string::npos)
        throw CDaoException("The name \"" + name + "\" has a bracket and cannot stand in a statement.");
    return "[" + name + "]";
}

std::string StatementName(const std::string& name) {
    constexpr std::string_view kDigits = "0123456789";
    constexpr std::string_view kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_";
    bool plain = !name.empty() && kDigits.find(name.front()) == std::string_view::npos;
    for (char c : name)
        plain = plain &&
                (kLetters.find(c) != std::string_view::npos || kDigits.find(c) != std::string_view::npos);
    return plain ? name : BracketedName(name);
}

std::string QualifiedTable(const CDaoDatabase& database, const std::string& table) {
    size_t dot = table.find('.');
    if (dot != std::string::npos)
        return StatementName(table.substr(0, dot)) + "." + StatementName(table.substr(dot + 1));
    std::string owner = TableOwner(database);
    return (owner.empty() ? "" : StatementName(owner) + ".") + StatementName(table);
}

}  // namespace norvane
