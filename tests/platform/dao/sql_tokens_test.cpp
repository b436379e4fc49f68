#include "platform/dao/sql_tokens.h"

#include <gtest/gtest.h>

namespace {

using dao::SqlDialect;
using dao::SqlToken;

constexpr SqlDialect kOfAccess = {.backquotedNames = true, .dates = true};
constexpr SqlDialect kOfSqlite = {.doubleQuoted = SqlToken::kName, .backquotedNames = true, .comments = true};
constexpr SqlDialect kOfServer = {.doubleQuoted = SqlToken::kSymbol, .subscripts = true};

// A letter for the kind and the text of each token but blanks: "w:SELECT n:a b". A ! follows what is not
// closed.
std::string read(std::string_view sql, const SqlDialect& dialect) {
    std::string out, whole;
    for (const SqlToken& token : dao::sqlTokens(sql, dialect)) {
        whole += token.whole;
        if (token.kind == SqlToken::kBlank) continue;
        if (!out.empty()) out += ' ';
        out += std::string(1, "wntNd_s"[token.kind]) + ":" + token.text + (token.closed ? "" : "!");
    }
    EXPECT_EQ(whole, sql) << "the pieces are the statement";
    return out;
}

TEST(SqlTokens, NamesTextsAndDatesAreTakenOutOfTheirMarks) {
    EXPECT_EQ(read("[a b]='it''s' AND `x``y`<>\"q\"\"r\"", kOfAccess),
              "n:a b s:= t:it's w:AND n:x`y s:<> t:q\"r");
    EXPECT_EQ(read("D>=#5/31/2004# OR NO#", kOfAccess), "w:D s:>= d:5/31/2004 w:OR w:NO s:#!");
    EXPECT_EQ(read("\"a]\" [b\"] 'c'", kOfSqlite), "n:a] n:b\" t:c");
    EXPECT_EQ(read("\"a b\".\"c\" #1#", kOfServer), "s:\"a b\" s:. s:\"c\" s:# N:1 s:#");
}

TEST(SqlTokens, NumbersEndWhereTheyEnd) {
    EXPECT_EQ(read("1.5e-3 .5 1AND 2E 0x1F 3.e5 T$1 _a é1", kOfAccess),
              "N:1.5e-3 N:.5 N:1 w:AND N:2 w:E N:0x1F N:3.e5 w:T$1 w:_a w:é1");
}

TEST(SqlTokens, CommentsAndSubscriptsBelongToTheirDialects) {
    EXPECT_EQ(read("a -- [b]\n/* 'c */ d /*", kOfSqlite), "w:a w:d");
    EXPECT_EQ(read("a--b", kOfAccess), "w:a s:- s:- w:b");
    EXPECT_EQ(read("a[1] ARRAY[[x],2] f()[i] [] [a]", kOfServer),
              "w:a s:[ N:1 s:] w:ARRAY s:[ n:x s:, N:2 s:] w:f s:( s:) s:[ w:i s:] s:[ s:] n:a");
}

TEST(SqlTokens, WhatIsNeverClosedIsTold) {
    for (const auto& [sql, tokens] : {std::pair("a 'b ''", "w:a t:b '!"), std::pair("`b [c", "n:b [c!"),
                                      std::pair("[b'", "s:[! w:b t:!"), std::pair("#1", "s:#! N:1")})
        EXPECT_EQ(read(sql, kOfAccess), tokens);
}

TEST(SqlTokens, QuotesWithinQuotesAreDoubled) {
    EXPECT_EQ(dao::quotedName("a \"b\""), "\"a \"\"b\"\"\"");
    EXPECT_EQ(dao::quotedText("it's"), "'it''s'");
    EXPECT_EQ(dao::inQuotes("a`", "`"), "`a```");
}

}  // namespace
