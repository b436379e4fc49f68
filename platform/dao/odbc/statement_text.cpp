#include "platform/dao/odbc/statement_text.h"

#include <algorithm>
#include <array>

#include "platform/dao/sql_tokens.h"
#include "platform/dao/variant.h"
#include "platform/text/text.h"

namespace dao::odbc {
namespace {

using Token = SqlToken;

// Text in double quotes is a name of the server's in a statement that is passed through.
constexpr SqlDialect kPassed = {.doubleQuoted = SqlToken::kSymbol, .subscripts = true};
constexpr SqlDialect kTranslated = {.dates = true, .subscripts = true};

bool isName(const Token& token) {
    return token.kind == Token::kWord || token.kind == Token::kName;
}

template <size_t n>
bool isOneOf(const Token& token, const std::array<std::string_view, n>& words) {
    return std::any_of(words.begin(), words.end(), [&](std::string_view word) { return token.is(word); });
}

constexpr std::array<std::string_view, 5> kCaseWords = {"CASE", "WHEN", "THEN", "ELSE", "END"};
constexpr std::array<std::string_view, 5> kBeforeTables = {"FROM", "INTO", "UPDATE", "JOIN", "TABLE"};
// Functions of ODBC that servers have under other names.
constexpr std::array<std::string_view, 18> kFunctions = {
    "UCASE",      "LCASE",     "LOCATE", "SPACE",  "IFNULL", "CURDATE", "CURTIME", "DAYNAME",  "MONTHNAME",
    "DAYOFMONTH", "DAYOFWEEK", "HOUR",   "MINUTE", "SECOND", "WEEK",    "QUARTER", "TRUNCATE", "RAND"};

// A word that is never the name of a column where a column could stand.
bool isKeyword(const Token& token) {
    return token.isKeyword() || isOneOf(token, kCaseWords);
}

class Translator {
  public:
    Translator(std::string_view sql, const Dialect& dialect, Catalogue& catalogue, bool passThrough)
        : tokens_(sqlTokens(sql, passThrough ? kPassed : kTranslated)),
          dialect_(dialect),
          catalogue_(catalogue) {}

    ServerStatement run() {
        findTables();
        ServerStatement out;
        for (at_ = 0; at_ < tokens_.size();) out.sql += piece();
        out.table = onlyTable();
        return out;
    }

  private:
    // A table of the statement: where its name stands, in tokens, and which one it is.
    struct Mention {
        size_t begin, end;
        const Catalogue::Table* table;
    };

    const Token& token(size_t i) const {
        static const Token kNone;
        return i < tokens_.size() ? tokens_[i] : kNone;
    }
    size_t behindBlanks(size_t i) const {
        while (token(i).kind == Token::kBlank) ++i;
        return i;
    }
    // The end of a name and those joined to it by points: JANE.TREE.
    size_t endOfChain(size_t i) const {
        while (token(i + 1).isSymbol(".") && isName(token(i + 2))) i += 2;
        return i + 1;
    }

    void findTables() {
        for (size_t i = 0; i < tokens_.size(); ++i) {
            if (!isOneOf(token(i), kBeforeTables)) continue;
            size_t name = behindBlanks(i + 1);
            if (!isName(token(name))) continue;
            size_t end = endOfChain(name);
            std::string owner = end > name + 1 ? token(end - 3).text : "";
            mentions_.push_back({name, end, catalogue_.find(owner, token(end - 1).text)});
            if (token(i).is("INTO")) findColumnList(end);
            i = end - 1;
        }
    }

    // INSERT INTO TREE (PT_ID, DESC): all that stands between these parentheses are names.
    void findColumnList(size_t behindTable) {
        size_t open = behindBlanks(behindTable);
        if (!token(open).isSymbol("(")) return;
        size_t close = open;
        while (close < tokens_.size() && !token(close).isSymbol(")")) ++close;
        listBegin_ = open;
        listEnd_ = close;
    }

    // Writes what stands at at_, and moves behind it.
    std::string piece() {
        const Token& t = tokens_[at_];
        if (isName(t) && escapes_ == 0) return name();
        ++at_;
        if (at_ >= 3 && token(at_ - 3).is("COLLATE") && isCollation(at_ - 1)) return std::string(t.whole);
        if (t.kind == Token::kText && t.whole.front() == '"' && t.closed) return quotedText(t.text);
        if (t.kind == Token::kDate) return date(t);
        if (t.isSymbol("{")) ++escapes_;
        if (t.isSymbol("}") && escapes_ > 0) --escapes_;
        if (t.isSymbol("(")) opened_.push_back(false);
        std::string out(t.whole);
        if (t.isSymbol(")") && !opened_.empty()) {
            if (opened_.back()) out += "}";
            opened_.pop_back();
        }
        return out;
    }

    // A name in double quotes behind COLLATE.
    bool isCollation(size_t i) const {
        return token(i).kind == Token::kText && token(i).whole.front() == '"' && token(i).closed;
    }

    std::string name() {
        for (const Mention& mention : mentions_)
            if (mention.begin == at_) return tableName(mention);
        const Token& t = tokens_[at_];
        size_t open = behindBlanks(at_ + 1);
        if (t.kind == Token::kWord && token(open).isSymbol("(") && isOneOf(t, kFunctions))
            return function(open);
        if (t.is("COLLATE") && isCollation(open)) return ++at_, std::string(t.whole);
        bool inList = at_ > listBegin_ && at_ < listEnd_;
        ++at_;
        if (t.kind == Token::kWord && !inList && (isKeyword(t) || token(open).isSymbol("(")))
            return std::string(t.whole);
        return columnName(t);
    }

    std::string tableName(const Mention& mention) {
        at_ = mention.end;
        std::vector<std::string> parts;
        for (size_t i = mention.begin; i < mention.end; i += 2) parts.push_back(asWritten(token(i)));
        if (mention.table) {
            parts.back() = asFound(token(mention.end - 1), mention.table->name);
            if (parts.size() > 1)
                parts[parts.size() - 2] = asFound(token(mention.end - 3), mention.table->owner);
            else if (mention.table->needsOwner)
                parts.insert(parts.begin(), dialect_.written(mention.table->owner));
        }
        return text::join(parts, ".");
    }

    std::string columnName(const Token& t) {
        for (const Mention& mention : mentions_) {
            if (!mention.table) continue;
            const std::vector<std::string>& columns = catalogue_.columnsOf(*mention.table);
            // The name as it stands goes before one of another case.
            auto found = std::find(columns.begin(), columns.end(), t.text);
            if (found == columns.end())
                found = std::find_if(columns.begin(), columns.end(), [&](const std::string& column) {
                    return text::equalNoCase(column, t.text);
                });
            if (found != columns.end()) return asFound(t, *found);
        }
        return asWritten(t);
    }

    std::string asWritten(const Token& t) const {
        return t.kind == Token::kName ? dialect_.written(dialect_.forNew(t.text)) : std::string(t.whole);
    }
    std::string asFound(const Token& t, const std::string& actual) const {
        return dialect_.understands(t.text, actual) ? std::string(t.text) : dialect_.written(actual);
    }

    std::string function(size_t open) {
        std::string word(tokens_[at_].whole);
        at_ = open + 1;
        opened_.push_back(dialect_.scalarFunctions);
        if (dialect_.scalarFunctions) return "{fn " + word + "(";
        if (text::equalNoCase(word, "UCASE")) return "UPPER(";
        if (text::equalNoCase(word, "LCASE")) return "LOWER(";
        return word + "(";
    }

    static std::string date(const Token& t) {
        Date date;
        if (!dateFromText(t.text, date)) return std::string(t.whole);
        return "{ts " + quotedText(dateAndTime(date)) + "}";
    }

    // The table of SELECT columns FROM table [WHERE ...] [ORDER BY ...].
    const Catalogue::Table* onlyTable() const {
        size_t first = behindBlanks(0);
        if (!token(first).is("SELECT") || mentions_.size() != 1 || !mentions_[0].table) return nullptr;
        size_t from = mentions_[0].begin;
        for (size_t i = first + 1; i < from; ++i) {
            const Token& t = token(i);
            bool column = t.kind == Token::kBlank || t.kind == Token::kName || t.isSymbol("*") ||
                          t.isSymbol(",") || t.is("FROM") || (t.kind == Token::kWord && !isKeyword(t));
            if (!column) return nullptr;
        }
        size_t next = behindBlanks(mentions_[0].end);
        while (token(next).isSymbol(";")) next = behindBlanks(next + 1);
        if (next < tokens_.size() && !token(next).is("WHERE") && !token(next).is("ORDER")) return nullptr;
        for (size_t i = next; i < tokens_.size(); ++i)
            if (token(i).is("GROUP") || token(i).is("UNION")) return nullptr;
        return mentions_[0].table;
    }

    std::vector<Token> tokens_;
    const Dialect& dialect_;
    Catalogue& catalogue_;

    std::vector<Mention> mentions_;
    size_t listBegin_ = 0, listEnd_ = 0;  // of the columns of an INSERT
    size_t at_ = 0;
    int escapes_ = 0;           // open braces
    std::vector<bool> opened_;  // for each open parenthesis, whether it began an escape
};

}  // namespace

ServerStatement translateForServer(std::string_view sql, const Dialect& dialect, Catalogue& catalogue,
                                   bool passThrough) {
    return Translator(sql, dialect, catalogue, passThrough).run();
}

}  // namespace dao::odbc
