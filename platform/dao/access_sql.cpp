#include "platform/dao/access_sql.h"

#include <algorithm>

#include "platform/dao/dao.h"
#include "platform/dao/sql_tokens.h"
#include "platform/text/text.h"

namespace dao {
namespace {

using Token = SqlToken;

constexpr SqlDialect kDialect = {.backquotedNames = true, .dates = true};

[[noreturn]] void syntaxError(const std::string& what, std::string_view sql) {
    throw CDaoException("Syntax error (" + what + ") in the statement: " + std::string(sql));
}

// What the statement lacks where something in it is not closed.
const char* missing(const Token& open) {
    switch (open.whole.front()) {
        case '[':
            return "a bracket is missing";
        case '#':
            return "a # of a date is missing";
        case '`':
            return "a quote of a name is missing";
        default:
            return "a quote is missing";
    }
}

// Without blanks, and without semicolons at the end. Throws for what is no piece of a statement. parameters:
// a ? is one.
std::vector<Token> tokensOf(std::string_view sql, bool parameters = false) {
    std::vector<Token> tokens = sqlTokens(sql, kDialect);
    std::erase_if(tokens, [](const Token& t) { return t.kind == Token::kBlank; });
    for (const Token& t : tokens) {
        if (!t.closed) syntaxError(missing(t), sql);
        if (t.kind == Token::kSymbol &&
            std::string_view("()*,=<>+-/&.;").find(t.text.front()) == std::string_view::npos &&
            !(parameters && t.text == "?"))
            syntaxError("the character " + t.text, sql);
    }
    while (!tokens.empty() && tokens.back().isSymbol(";")) tokens.pop_back();
    return tokens;
}

bool isKeyword(const Token& token) {
    return token.isKeyword() || token.is("MOD");
}

bool isName(const Token& token) {
    return token.kind == Token::kName || (token.kind == Token::kWord && !isKeyword(token));
}

bool hasForeignLetters(std::string_view s) {
    return std::any_of(s.begin(), s.end(), [](char c) { return (c & 0x80) != 0; });
}

std::string dateLiteral(const std::string& s) {
    Date date;
    if (!dateFromText(s, date)) throw CDaoException("#" + s + "# is no date.");
    return quotedText(dateAndTime(date));
}

// A pattern of Access as one of SQLite, with its escape.
std::string patternLiteral(const std::string& pattern) {
    std::string out;
    for (char c : pattern) {
        if (c == '#' || c == '[')
            throw CDaoException("The pattern \"" + pattern + "\" has " + c + ", which is not known here.");
        if (c == '_' || c == '\\') out += '\\';
        out += c == '*' ? '%' : c == '?' ? '_' : c;
    }
    return quotedText(out) + " ESCAPE '\\'";
}

// Parts of statements are put into others between parentheses, which they must not close.
bool parenthesesMatch(const std::vector<Token>& tokens) {
    int depth = 0;
    for (const Token& t : tokens) {
        if (t.isSymbol("(")) ++depth;
        if (t.isSymbol(")") && --depth < 0) return false;
    }
    return depth == 0;
}

// Writes tokens for SQLite.
class Writer {
  public:
    explicit Writer(const std::vector<Token>& tokens) : tokens_(tokens) {}

    std::string write(size_t begin, size_t end) {
        std::vector<std::string> pieces;
        bool condition = conditionFromStart_;
        for (size_t i = begin; i < end; ++i) {
            const Token& t = tokens_[i];
            if (t.is("WHERE") || t.is("HAVING") || t.is("SET") || t.is("VALUES")) condition = true;
            // SQLite compares text without regard to case only in the English alphabet. Other letters are
            // folded by a function, which costs the index.
            bool compared = (t.isSymbol("=") || t.isSymbol("<>")) && i > begin && i + 1 < end &&
                            isName(tokens_[i - 1]) && tokens_[i + 1].kind == Token::kText &&
                            hasForeignLetters(tokens_[i + 1].text) && !inValues_;
            if (compared) {
                pieces.back() = "UCASE(" + pieces.back() + ")";
                pieces.push_back(t.text);
                pieces.push_back(quotedText(text::upper(tokens_[++i].text)));
                continue;
            }
            if (t.is("LIKE") && i + 1 < end && tokens_[i + 1].kind == Token::kText) {
                pieces.push_back("LIKE " + patternLiteral(tokens_[++i].text));
                continue;
            }
            if (t.is("SET") || t.is("VALUES")) inValues_ = true;
            if (t.is("WHERE")) inValues_ = false;
            if (isBinaryLiteral(i, end)) {
                pieces.push_back("X" + quotedText(tokens_[++i].text));
                continue;
            }
            if (inValues_ && isExactNumber(i, end)) {
                bool isNegative = tokens_[i - 1].isSymbol("-");
                if (isNegative) pieces.pop_back();
                pieces.push_back(quotedText((isNegative ? "-" : "") + t.text));
                continue;
            }
            pieces.push_back(one(i, end, condition));
        }
        return text::join(pieces, " ");
    }
    void conditionFromStart() { conditionFromStart_ = true; }

  private:
    // X'00FF': bytes in hexadecimal digits.
    bool isBinaryLiteral(size_t i, size_t end) const {
        const Token& t = tokens_[i];
        if (!t.is("X") || t.kind != Token::kWord || i + 1 == end) return false;
        const Token& digits = tokens_[i + 1];
        bool joined = digits.kind == Token::kText && digits.whole.data() == t.whole.data() + t.whole.size() &&
                      digits.whole.front() == '\'';
        return joined && digits.text.size() % 2 == 0 &&
               digits.text.find_first_not_of("0123456789ABCDEFabcdef") == std::string::npos;
    }

    // A value by itself that has more digits than a real holds. As text it reaches a field of money whole.
    bool isExactNumber(size_t i, size_t end) const {
        constexpr std::ptrdiff_t kDigitsOfReal = 15;
        const Token& t = tokens_[i];
        if (t.kind != Token::kNumber || t.text.find_first_not_of("0123456789.") != std::string::npos ||
            std::count_if(t.text.begin(), t.text.end(), [](char c) { return c != '.'; }) <= kDigitsOfReal)
            return false;
        size_t before = i > 0 && tokens_[i - 1].isSymbol("-") ? i - 1 : i;
        auto opens = [](const Token& o) { return o.isSymbol("(") || o.isSymbol(",") || o.isSymbol("="); };
        auto closes = [](const Token& c) { return c.isSymbol(")") || c.isSymbol(",") || c.is("WHERE"); };
        return before > 0 && opens(tokens_[before - 1]) && (i + 1 == end || closes(tokens_[i + 1]));
    }

    std::string one(size_t i, size_t end, bool condition) const {
        const Token& t = tokens_[i];
        bool call = i + 1 < end && tokens_[i + 1].isSymbol("(");
        switch (t.kind) {
            case Token::kName:
                return quotedName(t.text);
            case Token::kText:
                return quotedText(t.text);
            case Token::kDate:
                return dateLiteral(t.text);
            case Token::kSymbol:
                return t.text == "&" ? "||" : t.text;
            case Token::kWord:
                if (condition && (t.is("TRUE") || t.is("YES"))) return "-1";
                if (condition && (t.is("FALSE") || t.is("NO"))) return "0";
                if (t.is("MOD")) return "%";
                if (t.is("COLLATE") && i + 1 < end && tokens_[i + 1].is("NOCASE")) return t.text;
                // In quotes where SQLite would take it for a word of its own.
                if (call && (t.is("LEFT") || t.is("RIGHT"))) return quotedName(t.text);
                if (call && t.is("DATE")) return "TODAY";
                return isKeyword(t) || call ? t.text : quotedName(t.text);
            default:
                return t.text;
        }
    }

    const std::vector<Token>& tokens_;
    bool conditionFromStart_ = false;
    bool inValues_ = false;  // what is written into a record
};

// The plain form of a SELECT, if it has one.
class PlainSelect {
  public:
    PlainSelect(const std::vector<Token>& tokens, AccessStatement& out) : tokens_(tokens), out_(out) {}

    void read() {
        size_t i = 1;
        if (!readColumns(i) || !at(i).is("FROM") || !isName(at(i + 1))) return;
        out_.table = at(i + 1).text;
        i += 2;
        size_t where = 0, order = 0, end = tokens_.size();
        int depth = 0;
        for (size_t k = i; k < end; ++k) {
            if (at(k).isSymbol("(")) ++depth;
            if (at(k).isSymbol(")")) --depth;
            if (at(k).is("SELECT") || at(k).is("UNION") || at(k).is("GROUP") || at(k).is("HAVING")) return;
            if (depth == 0 && at(k).is("WHERE")) where = k;
            if (depth == 0 && at(k).is("ORDER")) order = k;
        }
        if (i != end && i != where && i != order) return;  // a join, an alias
        if (where && order && order < where) return;
        Writer writer(tokens_);
        writer.conditionFromStart();
        size_t whereEnd = order ? order : end;
        if (where) {
            out_.where = writer.write(where + 1, whereEnd);
            readEqualities(where + 1, whereEnd);
        }
        if (order) out_.orderBy = writer.write(order, end);
        out_.plain = true;
    }

  private:
    const Token& at(size_t i) const {
        static const Token kNone;
        return i < tokens_.size() ? tokens_[i] : kNone;
    }

    bool readColumns(size_t& i) {
        if (at(i).isSymbol("*")) {
            out_.columns.push_back("*");
            ++i;
            return true;
        }
        for (;; ++i) {
            if (!isName(at(i))) return false;
            out_.columns.push_back(at(i++).text);
            if (!at(i).isSymbol(",")) return true;
        }
    }

    // name = literal, joined by AND, up to anything else.
    void readEqualities(size_t i, size_t end) {
        std::vector<std::string> found;
        while (i + 2 < end && isName(at(i)) && at(i + 1).isSymbol("=") && at(i + 2).kind == Token::kText &&
               !hasForeignLetters(at(i + 2).text)) {
            found.push_back(at(i).text);
            i += 3;
            if (i < end && !at(i).is("AND")) return;
            ++i;
        }
        if (i >= end) out_.equalities = std::move(found);
    }

    const std::vector<Token>& tokens_;
    AccessStatement& out_;
};

// INSERT INTO table (column, ...)
void readInsert(const std::vector<Token>& tokens, AccessStatement& out) {
    if (tokens.size() < 3 || !tokens[1].is("INTO") || !isName(tokens[2])) return;
    out.insertTable = tokens[2].text;
    out.insertColumnsAt = Writer(tokens).write(0, 3).size();
    if (tokens.size() < 5 || !tokens[3].isSymbol("(")) return;
    for (size_t i = 4; i + 1 < tokens.size() && isName(tokens[i]); i += 2) {
        out.insertColumns.push_back(tokens[i].text);
        if (!tokens[i + 1].isSymbol(",")) return;
    }
}

// Takes TOP n and DISTINCTROW out of a SELECT. What is to stand at its end; "" for nothing.
std::string takeTop(std::vector<Token>& tokens) {
    size_t at = 1;
    if (at < tokens.size() && tokens[at].is("DISTINCTROW")) tokens.erase(tokens.begin() + 1);
    if (at < tokens.size() && tokens[at].is("DISTINCT")) ++at;
    if (at + 1 >= tokens.size() || !tokens[at].is("TOP") || tokens[at + 1].kind != Token::kNumber) return "";
    std::string limit = " LIMIT " + tokens[at + 1].text;
    auto begin = tokens.begin() + static_cast<long>(at);
    tokens.erase(begin, begin + 2);
    return limit;
}

}  // namespace

AccessStatement translateStatement(std::string_view sql) {
    std::vector<Token> tokens = tokensOf(sql, true);
    if (tokens.empty()) syntaxError("it is empty", sql);
    if (!parenthesesMatch(tokens)) syntaxError("a parenthesis is missing", sql);
    AccessStatement out;
    out.select = tokens[0].is("SELECT");
    bool changes = tokens[0].is("UPDATE") || tokens[0].is("INSERT") || tokens[0].is("DELETE");
    if (!out.select && !changes) syntaxError("SELECT, INSERT, UPDATE or DELETE is expected", sql);
    for (const Token& t : tokens)
        if (t.isSymbol(";")) syntaxError("there is text behind the end", sql);
    out.parameters = static_cast<size_t>(
        std::count_if(tokens.begin(), tokens.end(), [](const Token& t) { return t.isSymbol("?"); }));
    if (tokens[0].is("DELETE") && tokens.size() > 1 && tokens[1].isSymbol("*"))
        tokens.erase(tokens.begin() + 1);
    std::string limit = out.select ? takeTop(tokens) : "";
    out.sql = Writer(tokens).write(0, tokens.size()) + limit;
    if (out.select && limit.empty()) PlainSelect(tokens, out).read();
    if (tokens[0].is("INSERT")) readInsert(tokens, out);
    return out;
}

AccessStatement translateSelect(std::string_view sql) {
    AccessStatement statement = translateStatement(sql);
    if (!statement.select) throw CDaoException("A record set needs a SELECT: " + std::string(sql));
    return statement;
}

AccessStatement translateChange(std::string_view sql) {
    AccessStatement statement = translateStatement(sql);
    if (statement.select) throw CDaoException("A SELECT is opened as a record set and cannot be executed.");
    return statement;
}

AccessStatement translateTable(std::string_view table) {
    AccessStatement statement;
    statement.select = statement.plain = true;
    statement.table = table;
    statement.columns = {"*"};
    statement.sql = "SELECT *" + statement.fromClause();
    return statement;
}

bool isAllColumns(const std::vector<std::string>& columns) {
    return columns.size() == 1 && columns.front() == "*";
}

std::string AccessStatement::fromClause(const std::string& condition) const {
    std::vector<std::string> conditions;
    if (!where.empty()) conditions.push_back("(" + where + ")");
    if (!condition.empty()) conditions.push_back(condition);
    std::string clause = " FROM " + quotedName(table);
    if (!conditions.empty()) clause += " WHERE " + text::join(conditions, " AND ");
    if (!orderBy.empty()) clause += " " + orderBy;
    return clause;
}

std::string translateRule(std::string_view rule, const std::string& field) {
    // A rule leaves out what it speaks of: "YES" Or "NO" means field = "YES" or field = "NO".
    std::vector<Token> tokens = tokensOf(rule);
    std::vector<Token> full;
    bool operand = true;  // a comparison begins here
    for (const Token& t : tokens) {
        bool comparison =
            t.kind == Token::kSymbol && std::string_view("<>=").find(t.text[0]) != std::string_view::npos;
        bool other = t.is("IN") || t.is("LIKE") || t.is("BETWEEN") || t.is("IS");
        bool literal = t.kind == Token::kText || t.kind == Token::kNumber || t.kind == Token::kDate;
        if (operand && (comparison || other || literal)) {
            full.push_back({Token::kName, field});
            if (literal) full.push_back({Token::kSymbol, "="});
        }
        if (!t.isSymbol("(") && !t.is("NOT")) operand = t.is("AND") || t.is("OR");
        full.push_back(t);
    }
    // BETWEEN a AND b keeps its AND to itself.
    for (size_t i = 0; i + 5 < full.size(); ++i)
        if (full[i].is("BETWEEN") && full[i + 2].is("AND") && full[i + 3].text == field &&
            full[i + 4].isSymbol("="))
            full.erase(full.begin() + static_cast<long>(i) + 3, full.begin() + static_cast<long>(i) + 5);
    if (full.empty() || !parenthesesMatch(tokens))
        throw CDaoException("The validation rule of the field " + field +
                            " is no condition: " + std::string(rule));
    Writer writer(full);
    writer.conditionFromStart();
    return writer.write(0, full.size());
}

std::string translateDefault(std::string_view expression, bool isText) {
    std::string_view s = text::trim(expression);
    if (!s.empty() && s.front() == '=') s = text::trim(s.substr(1));
    std::vector<Token> tokens;
    bool literal = !s.empty() && (s.front() == '"' || s.front() == '\'' || s.front() == '#');
    if (isText && !literal) return quotedText(s);
    tokens = tokensOf(s);
    bool single = tokens.size() == 1 && tokens[0].kind != Token::kSymbol && tokens[0].kind != Token::kName;
    bool negative = tokens.size() == 2 && tokens[0].isSymbol("-") && tokens[1].kind == Token::kNumber;
    if (!single && !negative)
        throw CDaoException("The default value " + std::string(s) + " is no text, number or date.");
    Writer writer(tokens);
    writer.conditionFromStart();
    return writer.write(0, tokens.size());
}

}  // namespace dao
