// The pieces of a statement, whoever's dialect it is in, and names and texts as statements write them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace dao {

struct SqlToken {
    enum Kind {
        kWord,    // a name or a word of SQL
        kName,    // a name in brackets or quotes
        kText,    // text in quotes
        kNumber,  // without its sign
        kDate,    // between # signs
        kBlank,   // blanks and comments
        kSymbol,  // a sign; <>, <= and >= are one
    };
    Kind kind = kSymbol;
    // Without brackets and quotes; a quote that is doubled within stands once.
    std::string text{};
    // As it stands in the statement.
    std::string_view whole{};
    // False for what is opened and never closed. A text then goes to the end of the statement, and a bracket
    // or a # is a sign.
    bool closed = true;

    bool is(std::string_view word) const;
    bool isSymbol(std::string_view symbol) const { return kind == kSymbol && text == symbol; }
    // Whether it is one of the words of SQL that are never names.
    bool isKeyword() const;
};

// What differs between dialects.
struct SqlDialect {
    SqlToken::Kind doubleQuoted =
        SqlToken::kText;  // what stands in double quotes; kSymbol: no concern of ours
    bool backquotedNames = false;
    bool dates = false;       // #5/31/2004#
    bool comments = false;    // -- to the end of the line, and between /* and */
    bool subscripts = false;  // a bracket that follows a name, another bracket or nothing but ] is no name
};

// Together the pieces are the statement again. They point into it.
std::vector<SqlToken> sqlTokens(std::string_view sql, const SqlDialect& dialect);

// Text between two quotes, with those inside it doubled.
std::string inQuotes(std::string_view text, std::string_view quote);
// A name in double quotes, a text in single ones.
std::string quotedName(std::string_view name);
std::string quotedText(std::string_view text);

}  // namespace dao
