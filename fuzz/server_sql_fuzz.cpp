// Statements on their way to a server, and connect strings.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/dao/connect_string.h"
#include "platform/dao/odbc/statement_text.h"
#include "platform/text/text.h"

namespace {

using dao::odbc::Catalogue;
using dao::odbc::Dialect;

class OneTable : public Catalogue {
  public:
    const Table* find(std::string_view, std::string_view name) override {
        return text::equalNoCase(name, table_.name) ? &table_ : nullptr;
    }
    const std::vector<std::string>& columnsOf(const Table&) override { return columns_; }

  private:
    Table table_{"jane", "FIRE HYDRANT"};
    std::vector<std::string> columns_ = {"pt_id", "Mixed", "a]b", "NO#", ""};
};

void check(bool holds) {
    if (!holds) std::abort();
}

void checkStatement(std::string_view sql) {
    OneTable catalogue;
    Dialect dialect;
    dialect.reserved = {"ORDER"};
    for (bool passThrough : {true, false})
        for (auto folding : {Dialect::Folding::kUpper, Dialect::Folding::kLower, Dialect::Folding::kNone,
                             Dialect::Folding::kAnyCase}) {
            dialect.folding = folding;
            translateForServer(sql, dialect, catalogue, passThrough);
        }
    // What holds no name in brackets, no function and no column of the table stays word for word.
    bool plain = sql.find_first_of("[(") == std::string_view::npos;
    for (const char* name : {"PT_ID", "MIXED", "NO", "A"})
        plain = plain && text::upper(sql).find(name) == std::string::npos;
    if (plain) check(translateForServer(sql, dialect, catalogue, true).sql == sql);
}

void checkConnectString(std::string_view connect) {
    std::string_view settings = connect;
    if (dao::isConnectString(connect)) settings.remove_prefix(5);
    check(dao::ConnectString(connect).withPassword().reveal() == connect);
    std::string open = dao::ConnectString(connect).text();
    check(dao::ConnectString(open).password().empty() && dao::ConnectString(open).text() == open);
    dao::ConnectString changed(connect);
    changed.set("NOTE", connect);
    // A brace that stood open before may take in what is added.
    if (settings.find('{') == std::string_view::npos) check(changed.value("NOTE") == connect);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string_view input(reinterpret_cast<const char*>(data), size);
    checkStatement(input);
    checkConnectString(input);
    return 0;
}
