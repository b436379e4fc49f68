// Statements, validation rules, defaults and dates as users and Lisp routines may write them, and the schemas
// of databases that other programs have made. The first byte tells which.
#include <sqlite3.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/dao/access_sql.h"
#include "platform/dao/names.h"
#include "platform/dao/sqlite/handle.h"
#include "platform/dao/sqlite/schema.h"
#include "platform/dao/sqlite/statement.h"

using dao::sqlite::FileKind;

namespace {

void require(bool condition) {
    if (!condition) std::abort();
}

class MemoryDatabase {
  public:
    sqlite3* handle() const { return db_.get(); }
    // Whether text is one statement that SQLite takes; never may it be two.
    bool takes(const std::string& sql) {
        sqlite3_stmt* statement = nullptr;
        const char* rest = nullptr;
        bool good = sqlite3_prepare_v2(handle(), sql.c_str(), static_cast<int>(sql.size()), &statement,
                                       &rest) == SQLITE_OK;
        require(!good || rest == sql.c_str() + sql.size());
        sqlite3_finalize(statement);
        return good;
    }
    void run(const std::string& sql) { sqlite3_exec(handle(), sql.c_str(), nullptr, nullptr, nullptr); }

  private:
    dao::sqlite::Handle db_ = dao::sqlite::openMemory();
};

void tryStatement(const std::string& text) {
    static MemoryDatabase db;
    static bool made = (db.run("CREATE TABLE T(A TEXT, B INTEGER)"), true);
    require(made);
    dao::AccessStatement statement = dao::translateStatement(text);
    db.takes(statement.sql);
}

constexpr FileKind kKinds[] = {FileKind::kPlain, FileKind::kGeoPackage};

// What SQLite takes as a definition reads back as it was given.
void tryRule(const std::string& text) {
    size_t half = text.size() / 2;
    CDaoFieldInfo field;
    field.name = "F";
    field.validationRule = text.substr(0, half);
    field.defaultValue = text.substr(half);
    field = dao::completed(field);
    for (FileKind kind : kKinds) {
        std::string sql = dao::sqlite::createTableStatement("T", {field}, kind);
        MemoryDatabase db;
        if (sql.find('\0') != std::string::npos || !db.takes(sql)) continue;
        dao::sqlite::Statement(db.handle(), sql).run();
        std::vector<CDaoFieldInfo> fields = dao::sqlite::describeTable(db.handle(), "T");
        require(fields.size() == 1 && fields[0].name == "F" &&
                fields[0].validationRule == field.validationRule);
    }
}

void tryForeignSchema(const std::string& text) {
    MemoryDatabase db;
    sqlite3_limit(db.handle(), SQLITE_LIMIT_VDBE_OP, 5000);
    if (text.find("SELECT") == std::string::npos && text.find("select") == std::string::npos) db.run(text);
    dao::sqlite::Statement tables(db.handle(), "SELECT name FROM sqlite_master WHERE type = 'table'");
    while (tables.step()) {
        dao::sqlite::describeTable(db.handle(), tables.text(0));
        for (FileKind kind : kKinds) dao::sqlite::isOwnTable(db.handle(), tables.text(0), kind);
    }
}

void tryDate(const std::string& text) {
    dao::Date date, again;
    if (!dao::dateFromText(text, date)) return;
    require(dao::dateFromText(dao::toText(dao::Variant(date)), again) && again == date);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    std::string text(reinterpret_cast<const char*>(data + 1), size - 1);
    try {
        switch (data[0]) {
            case 'r':
                tryRule(text);
                break;
            case 'f':
                tryForeignSchema(text);
                break;
            case 'd':
                tryDate(text);
                break;
            default:
                tryStatement(text);
        }
    } catch (const CDaoException&) {
        // A refusal with a message is an answer.
    }
    return 0;
}
