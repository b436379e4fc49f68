#include "platform/dao/jet/tool/statements.h"

#include <vector>

#include "platform/dao/jet/tool/column_types.h"
#include "platform/dao/jet/tool/print.h"
#include "platform/dao/sql_tokens.h"
#include "platform/dao/sqlite/handle.h"
#include "platform/dao/sqlite/schema.h"
#include "platform/dao/sqlite/statement.h"
#include "platform/text/text.h"

namespace jet {
namespace {

constexpr dao::SqlDialect kDialect = {.backquotedNames = true, .dates = true};

using Token = dao::SqlToken;

std::vector<std::string> splitStatements(const std::string& sql) {
    std::vector<std::string> statements(1);
    for (const Token& token : dao::sqlTokens(sql, kDialect))
        if (token.isSymbol(";"))
            statements.emplace_back();
        else
            statements.back() += token.whole;
    std::erase_if(statements, [](const std::string& s) { return text::trim(s).empty(); });
    return statements;
}

// Takes words off the front of a statement, and a name that may stand in quotes or brackets.
class Words {
  public:
    explicit Words(std::string_view statement) : tokens_(dao::sqlTokens(statement, kDialect)) {
        skipBlanks();
    }

    bool take(std::string_view word) {
        if (at_ >= tokens_.size() || !tokens_[at_].is(word)) return false;
        ++at_;
        skipBlanks();
        return true;
    }
    std::string name() {
        std::string name;
        if (at_ < tokens_.size() && !tokens_[at_].closed)
            throw CDaoException("A quote of a name is missing.");
        bool quoted = isAt(Token::kName) || isAt(Token::kText);
        if (quoted) name = tokens_[at_++].text;
        // Without quotes it goes up to a blank or a parenthesis.
        while (!quoted && at_ < tokens_.size() && !isAt(Token::kBlank) && !tokens_[at_].isSymbol("("))
            name += tokens_[at_++].whole;
        skipBlanks();
        return name;
    }
    std::string rest() const {
        std::string rest;
        for (size_t i = at_; i < tokens_.size(); ++i) rest += tokens_[i].whole;
        return rest;
    }

  private:
    bool isAt(Token::Kind kind) const { return at_ < tokens_.size() && tokens_[at_].kind == kind; }
    void skipBlanks() {
        while (isAt(Token::kBlank)) ++at_;
    }

    std::vector<Token> tokens_;
    size_t at_ = 0;
};

// The fields that definitions of columns describe. SQLite reads them.
std::vector<CDaoFieldInfo> describedFields(const Definitions& definitions) {
    dao::sqlite::Handle db = dao::sqlite::openMemory();
    dao::sqlite::Statement(db.get(), "CREATE TABLE x" + definitions.columns).run();
    return dao::sqlite::describeTable(db.get(), "x");
}

bool define(CDaoDatabase& database, const std::string& sql) {
    Words words(sql);
    if (words.take("CREATE")) {
        if (!words.take("TABLE")) throw CDaoException("Only tables can be created: " + sql);
        CDaoTableDef table(&database);
        table.Create(words.name());
        const Definitions definitions = readDefinitions(words.rest());
        for (const CDaoFieldInfo& field : describedFields(definitions)) table.CreateField(field);
        CDaoFieldInfo keyField;
        for (const std::string& name : definitions.primaryKey) table.GetFieldInfo(name, keyField);
        table.Append();
        if (!definitions.primaryKey.empty()) table.CreatePrimaryKey(definitions.primaryKey);
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
        if (!adds) {
            table.DeleteField(words.name());
        } else {
            const Definitions definitions = readDefinitions("(" + words.rest() + ")");
            if (!definitions.primaryKey.empty())
                throw CDaoException("A column that is added to a table cannot be its primary key.");
            table.CreateField(describedFields(definitions).at(0));
        }
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
