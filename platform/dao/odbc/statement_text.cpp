#include "platform/dao/odbc/statement_text.h"

#include <algorithm>
#include <array>

#include "platform/dao/variant.h"
#include "platform/text/text.h"

namespace dao::odbc {
namespace {

struct Token {
    enum Kind { kWord, kBracket, kText, kDate, kBlank, kSymbol } kind = kSymbol;
    std::string_view whole;  // as it stands in the statement
    std::string_view name() const { return kind == kBracket ? whole.substr(1, whole.size() - 2) : whole; }
    bool isName() const { return kind == kWord || kind == kBracket; }
    bool is(std::string_view word) const { return kind == kWord && text::equalNoCase(whole, word); }
    bool isSymbol(char c) const { return kind == kSymbol && whole.size() == 1 && whole[0] == c; }
};

bool isWordStart(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || (c & 0x80);
}
bool isWordPart(char c) {
    return isWordStart(c) || (c >= '0' && c <= '9') || c == '$';
}
bool isBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// Cuts a statement into pieces that together are the statement again. Nothing is an error here: the server
// is the one who complains.
class Scanner {
  public:
    Scanner(std::string_view sql, bool passThrough) : sql_(sql), passThrough_(passThrough) {}

    std::vector<Token> all() {
        std::vector<Token> tokens;
        while (at_ < sql_.size()) {
            size_t begin = at_;
            Token::Kind kind = next();
            tokens.push_back({kind, sql_.substr(begin, at_ - begin)});
        }
        return tokens;
    }

  private:
    Token::Kind next() {
        char c = sql_[at_];
        if (isBlank(c)) return skip(isBlank), Token::kBlank;
        if (isWordStart(c)) return skip(isWordPart), Token::kWord;
        // A number is one piece, so that its exponent is no name.
        if (c >= '0' && c <= '9')
            return skip([](char d) { return isWordPart(d) || d == '.'; }), Token::kSymbol;
        if (c == '\'') return enclosed('\''), Token::kText;
        if (c == '"') return enclosed('"'), passThrough_ ? Token::kSymbol : Token::kText;
        if (c == '#' && !passThrough_ && enclosed('#')) return Token::kDate;
        // What follows a name or another bracket directly is the server's own subscript.
        bool subscript =
            at_ > 0 && (isWordPart(sql_[at_ - 1]) || sql_[at_ - 1] == ']' || sql_[at_ - 1] == ')');
        if (c == '[' && !subscript && sql_.substr(at_ + 1, 1) != "]" && enclosed(']')) return Token::kBracket;
        ++at_;
        return Token::kSymbol;
    }

    template <typename Test>
    void skip(Test test) {
        while (at_ < sql_.size() && test(sql_[at_])) ++at_;
    }

    // Moves behind the closing character, doubled ones passed over; to the end when a quote is not closed.
    bool enclosed(char closing) {
        size_t end = at_ + 1;
        for (;; end += 2) {
            end = sql_.find(closing, end);
            if (end == std::string_view::npos) break;
            if (closing == ']' || end + 1 >= sql_.size() || sql_[end + 1] != closing) {
                at_ = end + 1;
                return true;
            }
        }
        if (closing == '\'' || closing == '"') at_ = sql_.size();
        return false;
    }

    std::string_view sql_;
    bool passThrough_;
    size_t at_ = 0;
};

template <size_t n>
bool isOneOf(const Token& token, const std::array<std::string_view, n>& words) {
    return std::any_of(words.begin(), words.end(), [&](std::string_view word) { return token.is(word); });
}

// Words that are never the name of a column where a column could stand.
constexpr std::array<std::string_view, 38> kKeywords = {
    "SELECT", "FROM",    "WHERE", "AND",    "OR",   "NOT",   "IN",       "IS",    "NULL", "LIKE",
    "ORDER",  "BY",      "GROUP", "HAVING", "ASC",  "DESC",  "DISTINCT", "AS",    "ALL",  "UPDATE",
    "SET",    "INSERT",  "INTO",  "VALUES", "JOIN", "INNER", "LEFT",     "RIGHT", "ON",   "UNION",
    "DELETE", "BETWEEN", "CASE",  "WHEN",   "THEN", "ELSE",  "END",      "EXISTS"};
constexpr std::array<std::string_view, 5> kBeforeTables = {"FROM", "INTO", "UPDATE", "JOIN", "TABLE"};
// Functions of ODBC that servers have under other names.
constexpr std::array<std::string_view, 18> kFunctions = {
    "UCASE",      "LCASE",     "LOCATE", "SPACE",  "IFNULL", "CURDATE", "CURTIME", "DAYNAME",  "MONTHNAME",
    "DAYOFMONTH", "DAYOFWEEK", "HOUR",   "MINUTE", "SECOND", "WEEK",    "QUARTER", "TRUNCATE", "RAND"};

class Translator {
  public:
    Translator(std::string_view sql, const Dialect& dialect, Catalogue& catalogue, bool passThrough)
        : tokens_(Scanner(sql, passThrough).all()),
          dialect_(dialect),
          catalogue_(catalogue),
          passThrough_(passThrough) {}

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
        while (token(i + 1).isSymbol('.') && token(i + 2).isName()) i += 2;
        return i + 1;
    }

    void findTables() {
        for (size_t i = 0; i < tokens_.size(); ++i) {
            if (!isOneOf(token(i), kBeforeTables)) continue;
            size_t name = behindBlanks(i + 1);
            if (!token(name).isName()) continue;
            size_t end = endOfChain(name);
            std::string_view owner = end > name + 1 ? token(end - 3).name() : "";
            mentions_.push_back({name, end, catalogue_.find(owner, token(end - 1).name())});
            if (token(i).is("INTO")) findColumnList(end);
            i = end - 1;
        }
    }

    // INSERT INTO TREE (PT_ID, DESC): all that stands between these parentheses are names.
    void findColumnList(size_t behindTable) {
        size_t open = behindBlanks(behindTable);
        if (!token(open).isSymbol('(')) return;
        size_t close = open;
        while (close < tokens_.size() && !token(close).isSymbol(')')) ++close;
        listBegin_ = open;
        listEnd_ = close;
    }

    // Writes what stands at at_, and moves behind it.
    std::string piece() {
        const Token& t = tokens_[at_];
        if (t.isName() && escapes_ == 0) return name();
        ++at_;
        if (t.kind == Token::kText && !passThrough_) return literal(t.whole);
        if (t.kind == Token::kDate) return date(t.whole);
        if (t.isSymbol('{')) ++escapes_;
        if (t.isSymbol('}') && escapes_ > 0) --escapes_;
        if (t.isSymbol('(')) opened_.push_back(false);
        std::string out(t.whole);
        if (t.isSymbol(')') && !opened_.empty()) {
            if (opened_.back()) out += "}";
            opened_.pop_back();
        }
        return out;
    }

    std::string name() {
        for (const Mention& mention : mentions_)
            if (mention.begin == at_) return tableName(mention);
        const Token& t = tokens_[at_];
        size_t open = behindBlanks(at_ + 1);
        if (t.kind == Token::kWord && token(open).isSymbol('(') && isOneOf(t, kFunctions))
            return function(open);
        bool inList = at_ > listBegin_ && at_ < listEnd_;
        ++at_;
        if (t.kind == Token::kWord && !inList && (isOneOf(t, kKeywords) || token(open).isSymbol('(')))
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
        }
        return text::join(parts, ".");
    }

    std::string columnName(const Token& t) {
        for (const Mention& mention : mentions_) {
            if (!mention.table) continue;
            const std::vector<std::string>& columns = catalogue_.columnsOf(*mention.table);
            // The name as it stands goes before one of another case.
            auto found = std::find(columns.begin(), columns.end(), t.name());
            if (found == columns.end())
                found = std::find_if(columns.begin(), columns.end(), [&](const std::string& column) {
                    return text::equalNoCase(column, t.name());
                });
            if (found != columns.end()) return asFound(t, *found);
        }
        return asWritten(t);
    }

    std::string asWritten(const Token& t) const {
        return t.kind == Token::kBracket ? dialect_.written(dialect_.forNew(t.name())) : std::string(t.whole);
    }
    std::string asFound(const Token& t, const std::string& actual) const {
        return dialect_.understands(t.name(), actual) ? std::string(t.name()) : dialect_.written(actual);
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

    // Text in double quotes as text in single ones.
    static std::string literal(std::string_view whole) {
        if (whole.front() != '"' || whole.size() < 2 || whole.back() != '"') return std::string(whole);
        std::string inside = text::replaceAll(whole.substr(1, whole.size() - 2), "\"\"", "\"");
        return "'" + text::replaceAll(inside, "'", "''") + "'";
    }

    static std::string date(std::string_view whole) {
        Date date;
        if (!dateFromText(whole.substr(1, whole.size() - 2), date)) return std::string(whole);
        Calendar c = calendarOf(date);
        return text::format("{ts '%04d-%02d-%02d %02d:%02d:%02d'}", c.year, c.month, c.day, c.hour, c.minute,
                            c.second);
    }

    // The table of SELECT columns FROM table [WHERE ...] [ORDER BY ...].
    const Catalogue::Table* onlyTable() const {
        size_t first = behindBlanks(0);
        if (!token(first).is("SELECT") || mentions_.size() != 1 || !mentions_[0].table) return nullptr;
        size_t from = mentions_[0].begin;
        for (size_t i = first + 1; i < from; ++i) {
            const Token& t = token(i);
            bool column = t.kind == Token::kBlank || t.kind == Token::kBracket || t.isSymbol('*') ||
                          t.isSymbol(',') || t.is("FROM") ||
                          (t.kind == Token::kWord && !isOneOf(t, kKeywords));
            if (!column) return nullptr;
        }
        size_t next = behindBlanks(mentions_[0].end);
        while (token(next).isSymbol(';')) next = behindBlanks(next + 1);
        if (next < tokens_.size() && !token(next).is("WHERE") && !token(next).is("ORDER")) return nullptr;
        for (size_t i = next; i < tokens_.size(); ++i)
            if (token(i).is("GROUP") || token(i).is("UNION")) return nullptr;
        return mentions_[0].table;
    }

    std::vector<Token> tokens_;
    const Dialect& dialect_;
    Catalogue& catalogue_;
    bool passThrough_;

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
