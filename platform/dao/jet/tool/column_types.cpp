#include "platform/dao/jet/tool/column_types.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "platform/dao/dao.h"
#include "platform/dao/sql_tokens.h"

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

    std::string written() const {
        size_t name = behindBlanks(0);
        if (name == tokens_.size() || isOneOf(tokens_[name], kConstraints)) return text(0, tokens_.size());
        size_t type = behindBlanks(name + 1);
        std::string word(type < tokens_.size() ? tokens_[type].whole : std::string_view());
        auto known = std::find_if(std::begin(kTypes), std::end(kTypes), [&](const ColumnType& t) {
            return type < tokens_.size() && tokens_[type].is(t.word);
        });
        if (known == std::end(kTypes))
            throw CDaoException(word.empty() ? "The column " + tokens_[name].text + " has no type."
                                             : "\"" + word + "\" is no type of a column.");
        size_t behind = type + 1;
        // DOUBLE PRECISION and CHARACTER VARYING say no more than their first word.
        size_t second = behindBlanks(behind);
        if (second < tokens_.size() && (tokens_[second].is("PRECISION") || tokens_[second].is("VARYING")))
            behind = second + 1;
        std::string before = text(0, type);
        if (known->written != kCounter)
            return before + std::string(known->written) + text(behind, tokens_.size());
        return before + "INTEGER PRIMARY KEY AUTOINCREMENT" + text(behindKey(behind), tokens_.size());
    }

  private:
    size_t behindBlanks(size_t i) const {
        while (i < tokens_.size() && tokens_[i].kind == Token::kBlank) ++i;
        return i;
    }

    // Behind the words PRIMARY KEY and AUTOINCREMENT, which a counter may have of its own.
    size_t behindKey(size_t i) const {
        for (const char* word : {"PRIMARY", "KEY", "AUTOINCREMENT"})
            if (size_t next = behindBlanks(i); next < tokens_.size() && tokens_[next].is(word)) i = next + 1;
        return i;
    }

    std::string text(size_t begin, size_t end) const {
        std::string out;
        for (size_t i = begin; i < end; ++i) out += tokens_[i].whole;
        return out;
    }

    std::vector<Token> tokens_;
};

}  // namespace

std::string withKnownTypes(std::string_view definitions) {
    std::string out;
    Definition definition;
    int depth = 0;
    for (const Token& token : dao::sqlTokens(definitions, kDialect)) {
        bool opens = token.isSymbol("("), closes = token.isSymbol(")");
        bool ends = depth == 1 && (token.isSymbol(",") || closes);
        if (ends) out += std::exchange(definition, {}).written();
        if (depth >= 1 && !ends)
            definition.add(token);
        else
            out += token.whole;
        depth += opens ? 1 : closes ? -1 : 0;
    }
    return out;
}

}  // namespace jet
