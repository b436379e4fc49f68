#include "platform/dao/sqlite/functions.h"

#include "platform/text/text.h"

namespace dao::sqlite {
namespace {

template <std::string (*Change)(std::string_view)>
void changeCase(sqlite3_context* context, int, sqlite3_value** arguments) {
    auto* bytes = reinterpret_cast<const char*>(sqlite3_value_text(arguments[0]));
    if (!bytes) return sqlite3_result_null(context);
    std::string changed = Change({bytes, static_cast<size_t>(sqlite3_value_bytes(arguments[0]))});
    sqlite3_result_text(context, changed.c_str(), static_cast<int>(changed.size()), SQLITE_TRANSIENT);
}

}  // namespace

void addFunctions(sqlite3* db) {
    constexpr int kFlags = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
    sqlite3_create_function_v2(db, "UCASE", 1, kFlags, nullptr, changeCase<text::upper>, nullptr, nullptr,
                               nullptr);
    sqlite3_create_function_v2(db, "LCASE", 1, kFlags, nullptr, changeCase<text::lower>, nullptr, nullptr,
                               nullptr);
}

}  // namespace dao::sqlite
