#include "hostcad/lisp/reader.h"

#include <cctype>
#include <charconv>
#include <cstdlib>

#include "hostcad/lisp/characters.h"
#include "hostcad/lisp/error.h"
#include "hostcad/lisp/interpreter.h"
#include "platform/text/text.h"

namespace hostcad::lisp {

namespace {

bool isBlank(char c) {
    return std::isspace(static_cast<unsigned char>(c)) || c == '\0' || c == '\x1a';
}
bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
bool endsWord(char c) {
    return isBlank(c) || c == '(' || c == ')' || c == '"' || c == '\'' || c == ';';
}

size_t countDigits(std::string_view s, size_t from) {
    size_t n = 0;
    while (from + n < s.size() && isDigit(s[from + n])) ++n;
    return n;
}

}  // namespace

bool parseNumber(std::string_view word, Value& number) {
    size_t i = !word.empty() && (word[0] == '+' || word[0] == '-') ? 1 : 0;
    size_t whole = countDigits(word, i);
    i += whole;
    bool isReal = false;
    size_t fraction = 0;
    if (i < word.size() && word[i] == '.') {
        isReal = true;
        fraction = countDigits(word, ++i);
        i += fraction;
    }
    if (whole + fraction == 0) return false;
    if (i < word.size() && (word[i] == 'e' || word[i] == 'E')) {
        isReal = true;
        ++i;
        if (i < word.size() && (word[i] == '+' || word[i] == '-')) ++i;
        size_t exponent = countDigits(word, i);
        if (exponent == 0) return false;
        i += exponent;
    }
    if (i != word.size()) return false;
    std::string_view unsignedPart = word.substr(word[0] == '+' ? 1 : 0);
    std::int32_t integer = 0;
    if (!isReal) {
        auto parsed =
            std::from_chars(unsignedPart.data(), unsignedPart.data() + unsignedPart.size(), integer);
        if (parsed.ec == std::errc()) {
            number = Value::integer(integer);
            return true;
        }
    }
    number = Value::real(text::toReal(unsignedPart));
    return true;
}

// A list, or a quotation, that has been begun and not ended.
struct Reader::Level {
    enum class Kind { List, Quote } kind;
    std::uint32_t place;
    std::vector<Value> items = {};
    enum class Dot { None, Seen, Done } dot = Dot::None;
    Value tail = {};

    void addDot() {
        if (kind == Kind::Quote || items.empty() || dot != Dot::None) throw Error("misplaced dot on input");
        dot = Dot::Seen;
    }

    void add(Value value) {
        if (dot == Dot::Done) throw Error("misplaced dot on input");
        if (dot == Dot::Seen) {
            tail = std::move(value);
            dot = Dot::Done;
        } else {
            items.push_back(std::move(value));
        }
    }

    Value close() {
        if (kind == Kind::Quote) throw Error("syntax error: nothing behind a quote");
        if (dot == Dot::Seen) throw Error("misplaced dot on input");
        Value list = std::move(tail);
        for (size_t i = items.size(); i-- > 0;)
            list = Value::pair(std::move(items[i]), std::move(list), place);
        return list;
    }
};

Reader::Reader(Interpreter& interpreter, std::string_view text, std::uint32_t source)
    : interpreter_(interpreter), text_(text), source_(source) {
    if (text::startsWith(text_, "\xEF\xBB\xBF")) text_.remove_prefix(3);
}

char Reader::peek(size_t ahead) const {
    return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0';
}

std::uint32_t Reader::placeHere() const {
    return Interpreter::makePlace(source_, line_);
}

void Reader::skipBlockComment() {
    at_ += 2;
    while (at_ < text_.size() && !(peek() == '|' && peek(1) == ';')) {
        if (peek() == '\n') ++line_;
        ++at_;
    }
    at_ = std::min(at_ + 2, text_.size());
}

void Reader::skipBlanks() {
    while (at_ < text_.size()) {
        char c = text_[at_];
        if (c == '\n') ++line_;
        if (isBlank(c)) {
            ++at_;
        } else if (c == ';' && peek(1) == '|') {
            skipBlockComment();
        } else if (c == ';') {
            while (at_ < text_.size() && text_[at_] != '\n') ++at_;
        } else {
            return;
        }
    }
}

Value Reader::readString() {
    std::string content;
    ++at_;
    while (true) {
        if (at_ >= text_.size()) throw Error("malformed string on input");
        char c = text_[at_++];
        if (c == '"') return Value::string(std::move(content));
        if (c == '\n') ++line_;
        if (c == '\r' && peek() == '\n') continue;  // line ends of other systems
        if (c != '\\' || at_ >= text_.size()) {
            content += c;
            continue;
        }
        c = text_[at_++];
        switch (c) {
            case 'n':
                content += '\n';
                break;
            case 'r':
                content += '\r';
                break;
            case 't':
                content += '\t';
                break;
            case 'e':
                content += '\x1b';
                break;
            case '\\':
            case '"':
                content += c;
                break;
            default:
                if (c >= '0' && c <= '7') {
                    int code = c - '0';
                    for (int i = 0; i < 2 && peek() >= '0' && peek() <= '7'; ++i)
                        code = code * 8 + text_[at_++] - '0';
                    content += characterOf(code & 0xFF);
                } else {
                    content += c;  // an unknown escape stands for its character
                    if (c == '\n') ++line_;
                }
        }
    }
}

std::string_view Reader::nextWord() {
    size_t start = at_;
    while (at_ < text_.size() && !endsWord(text_[at_])) ++at_;
    return text_.substr(start, at_ - start);
}

Value Reader::readAtom() {
    std::string_view word = nextWord();
    Value number;
    if (parseNumber(word, number)) return number;
    if (word.size() >= 2 && word.front() == '`' && word.back() == '`')
        return Value::string(std::string(word.substr(1, word.size() - 2)));
    if (word.size() == 3 && text::equalNoCase(word, "nil")) return {};
    return Value::symbol(interpreter_.intern(word));
}

// Puts a value that is complete where it belongs: into the quotations round it, and into the list that is
// open. True when no list is: the value is the expression.
bool Reader::place(std::vector<Level>& levels, Value& value) {
    while (!levels.empty() && levels.back().kind == Level::Kind::Quote) {
        std::uint32_t at = levels.back().place;
        levels.pop_back();
        Value quoted = Value::pair(std::move(value), {}, at);
        value = Value::pair(Value::symbol(interpreter_.quoteSymbol()), std::move(quoted), at);
    }
    if (levels.empty()) return true;
    levels.back().add(std::move(value));
    return false;
}

// Nests are kept in a list of their own, so that their depth is a matter of memory and not of the stack.
bool Reader::read(Value& expression) {
    std::vector<Level> levels;
    while (true) {
        skipBlanks();
        if (at_ >= text_.size()) {
            if (levels.empty()) return false;
            throw Error("malformed list on input");
        }
        char c = text_[at_];
        bool isDot = c == '.' && (at_ + 1 >= text_.size() || endsWord(text_[at_ + 1]));
        if (c == '(' || c == '\'') {
            Heap::expect(sizeof(Level) * (levels.size() + 1));
            levels.push_back({c == '(' ? Level::Kind::List : Level::Kind::Quote, placeHere()});
            ++at_;
            continue;
        }
        if (isDot) {
            if (levels.empty()) throw Error("misplaced dot on input");
            levels.back().addDot();
            ++at_;
            continue;
        }
        Value value;
        if (c == ')') {
            if (levels.empty()) throw Error("extra right paren on input");
            value = levels.back().close();
            levels.pop_back();
            ++at_;
        } else {
            value = c == '"' ? readString() : readAtom();
        }
        if (place(levels, value)) {
            expression = std::move(value);
            return true;
        }
    }
}

}  // namespace hostcad::lisp
