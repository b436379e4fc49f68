// Strings. Positions and lengths count characters.
#include <algorithm>

#include "hostcad/lisp/arguments.h"
#include "hostcad/lisp/characters.h"
#include "hostcad/lisp/functions.h"
#include "hostcad/lisp/interpreter.h"
#include "hostcad/lisp/printer.h"
#include "hostcad/lisp/reader.h"
#include "platform/ads/result_buffer.h"
#include "platform/text/text.h"

namespace hostcad::lisp {

namespace {

Value number(size_t n) {
    return Value::integer(static_cast<std::int32_t>(n));
}

Value strcat(Interpreter&, const Arguments& a) {
    size_t length = 0;
    for (size_t i = 0; i < a.size(); ++i) length += a.string(i).size();
    Heap::expect(length);
    std::string joined;
    joined.reserve(length);
    for (size_t i = 0; i < a.size(); ++i) joined += a.string(i);
    return Value::string(std::move(joined));
}

Value strlen(Interpreter&, const Arguments& a) {
    size_t length = 0;
    for (size_t i = 0; i < a.size(); ++i) length += characterCount(a.string(i));
    return number(length);
}

// The first character has position 1.
Value substr(Interpreter&, const Arguments& a) {
    std::string_view s = a.string(0);
    std::int32_t start = a.integer(1);
    if (start < 1) throw Error("bad argument value: positive: " + std::to_string(start));
    s.remove_prefix(byteOffset(s, static_cast<size_t>(start) - 1));
    if (a.has(2)) {
        std::int32_t length = a.integer(2);
        if (length < 0) throw Error("bad argument value: non-negative: " + std::to_string(length));
        s = s.substr(0, byteOffset(s, static_cast<size_t>(length)));
    }
    return Value::string(std::string(s));
}

Value strcase(Interpreter&, const Arguments& a) {
    return Value::string(a.has(1) ? text::lower(a.string(0)) : text::upper(a.string(0)));
}

Value ascii(Interpreter&, const Arguments& a) {
    size_t at = 0;
    const std::string& s = a.string(0);
    return Value::integer(s.empty() ? 0 : static_cast<std::int32_t>(nextCode(s, at)));
}

Value chr(Interpreter&, const Arguments& a) {
    return Value::string(characterOf(a.integer(0)));
}
Value itoa(Interpreter&, const Arguments& a) {
    return Value::string(std::to_string(a.integer(0)));
}

Value atoi(Interpreter&, const Arguments& a) {
    long n = text::toLong(a.string(0));
    return Value::integer(static_cast<std::int32_t>(std::clamp<long>(n, INT32_MIN, INT32_MAX)));
}

Value atof(Interpreter&, const Arguments& a) {
    return Value::real(text::toReal(a.string(0)));
}

// The first expression of a text; nil when there is none.
Value read(Interpreter& lisp, const Arguments& a) {
    if (!a.has(0)) return {};
    Value expression;
    Reader(lisp, a.string(0)).read(expression);
    return expression;
}

Value wcmatch(Interpreter&, const Arguments& a) {
    return Value::truth(acutWcMatch(a.string(0).c_str(), a.string(1).c_str()) == RTNORM);
}

Value toPlainText(Interpreter&, const Arguments& a) {
    return Value::string(toText(a[0], Style::Plain));
}
Value toQuotedText(Interpreter&, const Arguments& a) {
    return Value::string(toText(a[0], Style::Quoted));
}

// --- Searching; the first character has position 0 ---------------------------------------------------

size_t startOf(const Arguments& a, size_t i) {
    return static_cast<size_t>(std::max<std::int32_t>(0, a.integerOr(i, 0)));
}

Value search(Interpreter&, const Arguments& a) {
    const std::string& s = a.string(1);
    size_t at = s.find(a.string(0), byteOffset(s, startOf(a, 2)));
    return at == std::string::npos ? Value() : number(characterCount(std::string_view(s).substr(0, at)));
}

Value substitute(Interpreter&, const Arguments& a) {
    const std::string& with = a.string(0);
    const std::string& what = a.string(1);
    std::string s = a.string(2);
    size_t at = s.find(what, byteOffset(s, startOf(a, 3)));
    if (at != std::string::npos) s.replace(at, what.size(), with);
    return Value::string(std::move(s));
}

// Codes of all characters.
std::vector<long> codesOf(std::string_view s) {
    std::vector<long> codes;
    for (size_t at = 0; at < s.size();) codes.push_back(nextCode(s, at));
    return codes;
}

Value position(Interpreter&, const Arguments& a) {
    std::vector<long> codes = codesOf(a.string(1));
    long wanted = a.integer(0);
    size_t start = startOf(a, 2);
    if (a.has(3)) {
        for (size_t i = a.has(2) ? std::min(start + 1, codes.size()) : codes.size(); i-- > 0;)
            if (codes[i] == wanted) return number(i);
        return {};
    }
    for (size_t i = start; i < codes.size(); ++i)
        if (codes[i] == wanted) return number(i);
    return {};
}

Value element(Interpreter&, const Arguments& a) {
    const std::string& s = a.string(0);
    std::int32_t index = a.integer(1);
    size_t at = index < 0 ? s.size() : byteOffset(s, static_cast<size_t>(index));
    if (at >= s.size()) throw Error("bad argument value: string index: " + std::to_string(index));
    return Value::integer(static_cast<std::int32_t>(nextCode(s, at)));
}

Value toCodes(Interpreter&, const Arguments& a) {
    ListBuilder list;
    for (long code : codesOf(a.string(0))) list.add(Value::integer(static_cast<std::int32_t>(code)));
    return list.take();
}

Value fromCodes(Interpreter&, const Arguments& a) {
    std::string s;
    for (Items items(a.list(0)); !items.done(); items.next()) {
        if (!(*items).isInteger()) throwBadType("fixnump:", *items);
        s += characterOf((*items).asInteger());
    }
    return Value::string(std::move(s));
}

Value translate(Interpreter&, const Arguments& a) {
    std::vector<long> from = codesOf(a.string(0)), to = codesOf(a.string(1));
    std::string out;
    for (long code : codesOf(a.string(2))) {
        auto found = std::find(from.begin(), from.end(), code);
        size_t index = static_cast<size_t>(found - from.begin());
        out += characterOf(found != from.end() && index < to.size() ? to[index] : code);
    }
    return Value::string(std::move(out));
}

// Cuts the characters of a set at the left end, the right end, or both.
template <bool kLeft, bool kRight>
Value trim(Interpreter&, const Arguments& a) {
    std::vector<long> set = codesOf(a.string(0));
    std::string_view s = a.string(1);
    auto isInSet = [&](size_t from) {
        return std::find(set.begin(), set.end(), nextCode(s, from)) != set.end();
    };
    size_t first = 0, last = s.size();
    while (kLeft && first < last && isInSet(first)) nextCode(s, first);
    while (kRight && last > first) {
        size_t start = last - 1;
        while (start > first && (static_cast<unsigned char>(s[start]) & 0xC0) == 0x80) --start;
        if (!isInSet(start)) break;
        last = start;
    }
    return Value::string(std::string(s.substr(first, last - first)));
}

}  // namespace

void defineStringFunctions(Interpreter& lisp) {
    lisp.define("STRCAT", 0, -1, strcat);
    lisp.define("STRLEN", 0, -1, strlen);
    lisp.define("SUBSTR", 2, 3, substr);
    lisp.define("STRCASE", 1, 2, strcase);
    lisp.define("ASCII", 1, 1, ascii);
    lisp.define("CHR", 1, 1, chr);
    lisp.define("ITOA", 1, 1, itoa);
    lisp.define("ATOI", 1, 1, atoi);
    lisp.define("ATOF", 1, 1, atof);
    lisp.define("READ", 0, 1, read);
    lisp.define("WCMATCH", 2, 2, wcmatch);
    lisp.define("VL-PRINC-TO-STRING", 1, 1, toPlainText);
    lisp.define("VL-PRIN1-TO-STRING", 1, 1, toQuotedText);
    lisp.define("VL-STRING-SEARCH", 2, 3, search);
    lisp.define("VL-STRING-SUBST", 3, 4, substitute);
    lisp.define("VL-STRING-POSITION", 2, 4, position);
    lisp.define("VL-STRING-ELT", 2, 2, element);
    lisp.define("VL-STRING->LIST", 1, 1, toCodes);
    lisp.define("VL-LIST->STRING", 1, 1, fromCodes);
    lisp.define("VL-STRING-TRANSLATE", 3, 3, translate);
    lisp.define("VL-STRING-TRIM", 2, 2, trim<true, true>);
    lisp.define("VL-STRING-LEFT-TRIM", 2, 2, trim<true, false>);
    lisp.define("VL-STRING-RIGHT-TRIM", 2, 2, trim<false, true>);
}

}  // namespace hostcad::lisp
