#include "platform/dao/jet/tool/statements.h"

#include <vector>

#include "platform/dao/jet/tool/print.h"
#include "platform/dao/names.h"
#include "platform/dao/sqlite/handle.h"
#include "platform/dao/sqlite/schema.h"
#include "platform/dao/sqlite/statement.h"
#include "platform/text/text.h"

namespace jet {
namespace {

std::vector<std::string> splitStatements(const std::string& sql) {
    std::vector<std::string> statements(1);
    char quote = 0;
    for (char c : sql) {
        if (quote) {
            if (c == quote) quote = 0;
        } else if (c == '\'' || c == '"') {
            quote = c;
        } else if (c == '[') {
            quote = ']';
        } else if (c == ';') {
            statements.emplace_back();
            continue;
        }
        statements.back() += c;
    }
    std::erase_if(statements, [](const std::string& s) { return text::trim(s).empty(); });
    return statements;
}

// Takes words off the front of a statement, and a name that may stand in quotes or brackets.
class Words {
  public:
    explicit Words(std::string_view s) : rest_(text::trim(s)) {}
    bool take(std::string_view word) {
        if (!text::equalNoCase(rest_.substr(0, word.size()), word)) return false;
        std::string_view behind = rest_.substr(word.size());
        if (!behind.empty() && behind.front() != ' ') return false;
        rest_ = text::trimLeft(behind);
        return true;
    }
    std::string name() {
        bool quoted = !rest_.empty() && (rest_.front() == '"' || rest_.front() == '[');
        size_t end = quoted ? rest_.find(rest_.front() == '[' ? ']' : '"', 1) : rest_.find_first_of(" (");
        if (quoted && end == std::string_view::npos) throw CDaoException("A quote of a name is missing.");
        std::string name(rest_.substr(quoted ? 1 : 0, quoted ? end - 1 : end));
        rest_ = end == std::string_view::npos ? "" : text::trimLeft(rest_.substr(end + (quoted ? 1 : 0)));
        return name;
    }
    std::string rest() const { return std::string(rest_); }

  private:
    std::string_view rest_;
};

// The fields that definitions of columns in parentheses describe. SQLite reads them.
std::vector<CDaoFieldInfo> describedFields(const std::string& definitions) {
    dao::sqlite::Handle db = dao::sqlite::openMemory();
    dao::sqlite::Statement(db.get(), "CREATE TABLE x" + definitions).run();
    return dao::sqlite::describeTable(db.get(), "x");
}

bool define(CDaoDatabase& database, const std::string& sql) {
    Words words(sql);
    if (words.take("CREATE")) {
        if (!words.take("TABLE")) throw CDaoException("Only tables can be created: " + sql);
        CDaoTableDef table(&database);
        table.Create(words.name());
        for (const CDaoFieldInfo& field : describedFields(words.rest())) table.CreateField(field);
        table.Append();
    } else if (words.take("DROP")) {
        if (!words.take("TABLE")) throw CDaoException("Only tables can be dropped: " + sql);
        database.DeleteTableDef(words.name());
    } else if (words.take("ALTER")) {
        if (!words.take("TABLE")) throw CDaoException("Only tables can be altered: " + sql);
        CDaoTableDef table(&database);
        table.Open(words.name());
        bool adds = words.take("ADD");
        if (!adds && !words.take("DROP")) throw CDaoException("ADD or DROP is expected: " + sql);
        words.take("COLUMN");
        if (adds)
            table.CreateField(describedFields("(" + words.rest() + ")").at(0));
        else
            table.DeleteField(words.name());
    } else {
        return false;
    }
    return true;
}

}  // namespace

void runStatements(CDaoDatabase& database, const std::string& sql, std::ostream& out) {
    for (const std::string& statement : splitStatements(sql)) {
        if (define(database, statement)) continue;
        if (Words(statement).take("SELECT"))
            printRecords(database, statement, out);
        else
            database.Execute(statement);
    }
}

}  // namespace jet
