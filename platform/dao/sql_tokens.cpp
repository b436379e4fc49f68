#include "platform/dao/sql_tokens.h"

#include <algorithm>
#include <array>

#include "platform/text/text.h"

namespace dao {
namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
bool isHexDigit(char c) {
    return isDigit(c) || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}
bool isWordStart(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || (c & 0x80);
}
bool isWordPart(char c) {
    return isWordStart(c) || isDigit(c) || c == '$';
}
bool isBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

class Scanner {
  public:
    Scanner(std::string_view sql, const SqlDialect& dialect) : sql_(sql), dialect_(dialect) {}

    std::vector<SqlToken> all() {
        std::vector<SqlToken> tokens;
        while (at_ < sql_.size()) {
            size_t begin = at_;
            SqlToken token = next();
            token.whole = sql_.substr(begin, at_ - begin);
            if (token.kind != SqlToken::kName && token.kind != SqlToken::kText &&
                token.kind != SqlToken::kDate)
                token.text = token.whole;
            tokens.push_back(std::move(token));
        }
        return tokens;
    }

  private:
    char ahead(size_t distance) const { return at_ + distance < sql_.size() ? sql_[at_ + distance] : '\0'; }

    // Moves behind the token that begins here. Names, texts and dates come with their text.
    SqlToken next() {
        char c = ahead(0);
        if (isBlank(c) || isComment()) return skipBlanks(), SqlToken{SqlToken::kBlank};
        if (isWordStart(c)) return skip(isWordPart), SqlToken{SqlToken::kWord};
        if (isDigit(c) || (c == '.' && isDigit(ahead(1)))) return skipNumber(), SqlToken{SqlToken::kNumber};
        if (c == '\'') return quoted(SqlToken::kText);
        if (c == '"') return quoted(dialect_.doubleQuoted);
        if (c == '`' && dialect_.backquotedNames) return quoted(SqlToken::kName);
        if (c == '[' && !isSubscript()) return enclosed(SqlToken::kName, ']');
        if (c == '#' && dialect_.dates) return enclosed(SqlToken::kDate, '#');
        bool pair = (c == '<' && (ahead(1) == '>' || ahead(1) == '=')) || (c == '>' && ahead(1) == '=');
        at_ += pair ? 2 : 1;
        return {};
    }

    template <typename Test>
    void skip(Test test) {
        while (at_ < sql_.size() && test(sql_[at_])) ++at_;
    }

    bool isComment() const {
        return dialect_.comments && (sql_.substr(at_, 2) == "--" || sql_.substr(at_, 2) == "/*");
    }

    void skipBlanks() {
        if (!isComment()) return skip(isBlank);
        bool line = ahead(0) == '-';
        size_t end = line ? sql_.find('\n', at_) : sql_.find("*/", at_ + 2);
        at_ = end == std::string_view::npos ? sql_.size() : end + (line ? 1 : 2);
    }

    void skipNumber() {
        if (ahead(0) == '0' && (ahead(1) | 0x20) == 'x' && isHexDigit(ahead(2))) {
            at_ += 2;
            return skip(isHexDigit);
        }
        skip([](char c) { return isDigit(c) || c == '.'; });
        if ((ahead(0) | 0x20) != 'e') return;
        size_t digits = ahead(1) == '+' || ahead(1) == '-' ? 2 : 1;
        if (!isDigit(ahead(digits))) return;
        at_ += digits;
        skip(isDigit);
    }

    bool isSubscript() const {
        if (!dialect_.subscripts) return false;
        char before = at_ > 0 ? sql_[at_ - 1] : ' ';
        return isWordPart(before) || before == ']' || before == ')' || ahead(1) == ']';
    }

    // Up to the closing quote; a doubled quote stands for one.
    SqlToken quoted(SqlToken::Kind kind) {
        SqlToken token{kind};
        char quote = sql_[at_++];
        for (; at_ < sql_.size(); ++at_) {
            if (sql_[at_] == quote && ahead(1) != quote) return ++at_, token;
            if (sql_[at_] == quote) ++at_;
            token.text += sql_[at_];
        }
        token.closed = false;
        return token;
    }

    SqlToken enclosed(SqlToken::Kind kind, char closing) {
        size_t end = sql_.find(closing, at_ + 1);
        SqlToken token;
        token.closed = end != std::string_view::npos;
        if (token.closed) {
            token.kind = kind;
            token.text = sql_.substr(at_ + 1, end - at_ - 1);
        }
        at_ = token.closed ? end + 1 : at_ + 1;
        return token;
    }

    std::string_view sql_;
    const SqlDialect& dialect_;
    size_t at_ = 0;
};

}  // namespace

bool SqlToken::is(std::string_view word) const {
    return kind == kWord && text::equalNoCase(text, word);
}

bool SqlToken::isKeyword() const {
    static constexpr std::array<std::string_view, 34> kWords = {
        "SELECT", "FROM",   "WHERE",  "AND",   "OR",    "NOT",   "IN",     "IS",       "NULL",
        "LIKE",   "ORDER",  "BY",     "GROUP", "ASC",   "DESC",  "AS",     "DISTINCT", "ALL",
        "UPDATE", "SET",    "INSERT", "INTO",  "LEFT",  "RIGHT", "INNER",  "VALUES",   "HAVING",
        "DELETE", "EXISTS", "JOIN",   "OUTER", "UNION", "ON",    "BETWEEN"};
    return std::any_of(kWords.begin(), kWords.end(), [this](std::string_view word) { return is(word); });
}

std::vector<SqlToken> sqlTokens(std::string_view sql, const SqlDialect& dialect) {
    return Scanner(sql, dialect).all();
}

std::string inQuotes(std::string_view s, std::string_view quote) {
    std::string out(quote);
    out += text::replaceAll(s, quote, std::string(quote) + std::string(quote));
    return out += quote;
}

std::string quotedName(std::string_view name) {
    return inQuotes(name, "\"");
}

std::string quotedText(std::string_view s) {
    return inQuotes(s, "'");
}

}  // namespace dao
