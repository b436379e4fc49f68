#include "platform/dao/jet/tool/column_types.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "platform/dao/dao.h"
#include "platform/dao/sql_tokens.h"
#include "platform/text/text.h"

namespace jet {
namespace {

using Token = dao::SqlToken;

constexpr dao::SqlDialect kDialect = {.backquotedNames = true, .comments = true};

struct ColumnType {
    std::string_view word, written;
};

constexpr std::string_view kCounter = "INTEGER AUTOINCREMENT";

constexpr ColumnType kTypes[] = {
    {"YESNO", "BOOLEAN"},       {"BOOLEAN", "BOOLEAN"},
    {"BOOL", "BOOLEAN"},        {"LOGICAL", "BOOLEAN"},
    {"BIT", "BOOLEAN"},         {"BYTE", "TINYINT"},
    {"TINYINT", "TINYINT"},     {"SHORT", "SMALLINT"},
    {"SMALLINT", "SMALLINT"},   {"LONG", "INTEGER"},
    {"INTEGER", "INTEGER"},     {"INT", "INTEGER"},
    {"COUNTER", kCounter},      {"AUTOINCREMENT", kCounter},
    {"CURRENCY", "CURRENCY"},   {"MONEY", "CURRENCY"},
    {"SINGLE", "FLOAT4"},       {"FLOAT4", "FLOAT4"},
    {"DOUBLE", "DOUBLE"},       {"FLOAT", "DOUBLE"},
    {"FLOAT8", "DOUBLE"},       {"REAL", "DOUBLE"},
    {"NUMBER", "DOUBLE"},       {"NUMERIC", "DOUBLE"},
    {"DECIMAL", "DOUBLE"},      {"DATE", "DATETIME"},
    {"TIME", "DATETIME"},       {"DATETIME", "DATETIME"},
    {"TIMESTAMP", "DATETIME"},  {"TEXT", "TEXT"},
    {"STRING", "TEXT"},         {"CHAR", "TEXT"},
    {"CHARACTER", "TEXT"},      {"VARCHAR", "TEXT"},
    {"NCHAR", "TEXT"},          {"NVARCHAR", "TEXT"},
    {"MEMO", "TEXT"},           {"LONGTEXT", "TEXT"},
    {"NOTE", "TEXT"},           {"CLOB", "TEXT"},
    {"BINARY", "BLOB"},         {"VARBINARY", "BLOB"},
    {"BLOB", "BLOB"},           {"LONGBINARY", "BLOB"},
    {"OLEOBJECT", "BLOB"},      {"IMAGE", "BLOB"},
    {"GUID", "TEXT_GUID"},      {"UNIQUEIDENTIFIER", "TEXT_GUID"},
    {"TEXT_GUID", "TEXT_GUID"},
};

// Words that begin what is no column but a constraint of the table.
constexpr std::string_view kConstraints[] = {"CONSTRAINT", "PRIMARY", "UNIQUE", "CHECK", "FOREIGN"};

template <typename List>
bool isOneOf(const Token& token, const List& words) {
    return std::any_of(std::begin(words), std::end(words), [&](auto word) { return token.is(word); });
}

// One definition, between two commas.
class Definition {
  public:
    void add(const Token& token) { tokens_.push_back(token); }

    // Takes the words PRIMARY KEY off, with the name of the constraint in front of them; the columns that
    // they make the key. Those of the table's own stand in parentheses.
    std::vector<std::string> takeKey() {
        size_t word = 0;
        while (word < tokens_.size() && !(tokens_[word].is("PRIMARY") && isAt(behindBlanks(word + 1), "KEY")))
            ++word;
        if (word == tokens_.size()) return {};
        std::vector<std::string> names;
        size_t end = behindBlanks(word + 1) + 1;
        if (isConstraint()) {
            for (; end < tokens_.size(); ++end)
                if (isName(tokens_[end])) names.push_back(tokens_[end].text);
        } else {
            names.push_back(tokens_[behindBlanks(0)].text);
        }
        size_t begin = word;
        if (size_t named = wordBefore(wordBefore(word)); isAt(named, "CONSTRAINT")) begin = named;
        tokens_.erase(at(begin), at(end));
        return names;
    }

    bool isEmpty() const { return behindBlanks(0) == tokens_.size(); }

    std::string written() const {
        size_t name = behindBlanks(0);
        if (isConstraint()) return text(0, tokens_.size());
        size_t type = behindBlanks(name + 1);
        std::string typed(type < tokens_.size() ? tokens_[type].whole : std::string_view());
        auto known = std::find_if(std::begin(kTypes), std::end(kTypes),
                                  [&](const ColumnType& t) { return isAt(type, t.word); });
        if (known == std::end(kTypes))
            throw CDaoException(typed.empty() ? "The column " + tokens_[name].text + " has no type."
                                              : "\"" + typed + "\" is no type of a column.");
        size_t behind = type + 1;
        // DOUBLE PRECISION and CHARACTER VARYING say no more than their first word.
        size_t second = behindBlanks(behind);
        if (isAt(second, "PRECISION") || isAt(second, "VARYING")) behind = second + 1;
        const size_t end = tokens_.size();
        // INTEGER ... AUTOINCREMENT is a counter too, in the words of SQLite.
        const size_t word = find(behind, "AUTOINCREMENT");
        if (known->written != kCounter && (known->written != "INTEGER" || word == end))
            return text(0, type) + std::string(known->written) + text(behind, end);
        return text(0, type) + "INTEGER PRIMARY KEY AUTOINCREMENT" + text(behind, word) + text(word + 1, end);
    }

  private:
    static bool isName(const Token& token) {
        return token.kind == Token::kWord || token.kind == Token::kName;
    }
    bool isAt(size_t i, std::string_view word) const { return i < tokens_.size() && tokens_[i].is(word); }
    bool isConstraint() const {
        size_t first = behindBlanks(0);
        return first == tokens_.size() || isOneOf(tokens_[first], kConstraints);
    }
    size_t behindBlanks(size_t i) const {
        while (i < tokens_.size() && tokens_[i].kind == Token::kBlank) ++i;
        return i;
    }
    // The first token from one on that is a word; the number of tokens where there is none.
    size_t find(size_t i, std::string_view word) const {
        while (i < tokens_.size() && !tokens_[i].is(word)) ++i;
        return i;
    }
    // The token in front of one that is no blank; the number of tokens where there is none.
    size_t wordBefore(size_t i) const {
        if (i > tokens_.size()) return i;
        while (i-- > 0)
            if (tokens_[i].kind != Token::kBlank) return i;
        return tokens_.size();
    }
    std::vector<Token>::iterator at(size_t i) { return tokens_.begin() + static_cast<std::ptrdiff_t>(i); }

    std::string text(size_t begin, size_t end) const {
        std::string out;
        for (size_t i = begin; i < end; ++i) out += tokens_[i].whole;
        return out;
    }

    std::vector<Token> tokens_;
};

}  // namespace

Definitions readDefinitions(std::string_view definitions) {
    Definitions read;
    std::vector<std::string> written;
    Definition definition;
    int depth = 0;
    for (const Token& token : dao::sqlTokens(definitions, kDialect)) {
        bool opens = token.isSymbol("("), closes = token.isSymbol(")");
        bool ends = depth == 1 && (token.isSymbol(",") || closes);
        if (ends) {
            std::vector<std::string> key = definition.takeKey();
            if (!key.empty() && !read.primaryKey.empty()) throw CDaoException("A table has one primary key.");
            if (!key.empty()) read.primaryKey = std::move(key);
            if (!definition.isEmpty()) written.push_back(definition.written());
            definition = {};
            if (closes) read.columns += text::join(written, ",") + ")";
        } else if (depth >= 1) {
            definition.add(token);
        } else {
            read.columns += token.whole;
        }
        depth += opens ? 1 : closes ? -1 : 0;
    }
    return read;
}

}  // namespace jet
