// Lists: taking apart, putting together, looking up.

#include "hostcad/lisp/arguments.h"
#include "hostcad/lisp/equality.h"
#include "hostcad/lisp/functions.h"
#include "hostcad/lisp/interpreter.h"
#include "hostcad/lisp/printer.h"

namespace hostcad::lisp {

namespace {

const Value& carOf(const Value& v) {
    if (!v.isList()) throwBadType("listp", v);
    return v.car();
}

const Value& cdrOf(const Value& v) {
    if (!v.isList()) throwBadType("listp", v);
    return v.cdr();
}

// C[AD]{1,4}R: one function for each path, the steps taken from the right.
template <int kSteps, unsigned kPath>
Value follow(Interpreter&, const Arguments& a) {
    const Value* v = &a[0];
    for (int i = 0; i < kSteps; ++i) v = kPath >> i & 1u ? &cdrOf(*v) : &carOf(*v);
    return *v;
}

template <int kSteps, unsigned kPath = 0>
void defineFollowers(Interpreter& lisp) {
    std::string name = "C";
    for (int i = kSteps; i-- > 0;) name += kPath >> i & 1u ? 'D' : 'A';
    lisp.define(name + "R", 1, 1, follow<kSteps, kPath>);
    if constexpr (kPath + 1 < 1u << kSteps) defineFollowers<kSteps, kPath + 1>(lisp);
}

// The items of a proper list; a dotted one is an error.
std::vector<Value> itemsOf(const Value& list) {
    if (!list.isList()) throwBadType("listp", list);
    std::vector<Value> items;
    Items walk(list);
    for (; !walk.done(); walk.next()) items.push_back(*walk);
    if (!walk.rest().isNil()) throw Error("bad list: " + toShortText(list));
    return items;
}

Value cons(Interpreter&, const Arguments& a) {
    return Value::pair(a[0], a[1]);
}

Value list(Interpreter&, const Arguments& a) {
    return Value::list({a.begin(), a.end()});
}

Value append(Interpreter&, const Arguments& a) {
    if (a.size() == 0) return {};
    Value result = a[a.size() - 1];
    for (size_t i = a.size() - 1; i-- > 0;) result = Value::list(itemsOf(a[i]), std::move(result));
    return result;
}

Value reverse(Interpreter&, const Arguments& a) {
    Value result;
    Items items(a.list(0));
    for (; !items.done(); items.next()) result = Value::pair(*items, std::move(result));
    return result;
}

Value length(Interpreter&, const Arguments& a) {
    std::int32_t count = 0;
    Items items(a.list(0));
    for (; !items.done(); items.next()) ++count;
    if (!items.rest().isNil()) throw Error("bad list: " + toShortText(a[0]));
    return Value::integer(count);
}

// nil for a dotted list, where LENGTH fails.
Value listLength(Interpreter&, const Arguments& a) {
    std::int32_t count = 0;
    Items items(a.list(0));
    for (; !items.done(); items.next()) ++count;
    return items.rest().isNil() ? Value::integer(count) : Value();
}

Value nth(Interpreter&, const Arguments& a) {
    std::int32_t n = a.integer(0);
    if (n < 0) throw Error("bad argument value: non-negative: " + std::to_string(n));
    Items items(a.list(1));
    while (n-- > 0 && !items.done()) items.next();
    return items.done() ? Value() : *items;
}

Value last(Interpreter&, const Arguments& a) {
    Value item;
    for (Items items(a.list(0)); !items.done(); items.next()) item = *items;
    return item;
}

Value member(Interpreter&, const Arguments& a) {
    for (Items items(a.list(1)); !items.done(); items.next())
        if (isEqual(*items, a[0])) return items.rest();
    return {};
}

Value assoc(Interpreter&, const Arguments& a) {
    for (Items items(a.list(1)); !items.done(); items.next()) {
        const Value& item = *items;
        if (!item.isPair()) throw Error("bad association list: " + toShortText(a[1]));
        if (isEqual(item.car(), a[0])) return item;
    }
    return {};
}

Value subst(Interpreter&, const Arguments& a) {
    std::vector<Value> items;
    Items walk(a.list(2));
    for (; !walk.done(); walk.next()) items.push_back(isEqual(*walk, a[1]) ? a[0] : *walk);
    return Value::list(std::move(items), walk.rest());
}

Value listStar(Interpreter&, const Arguments& a) {
    std::vector<Value> items(a.begin(), a.end());
    Value tail = std::move(items.back());
    items.pop_back();
    return Value::list(std::move(items), std::move(tail));
}

Value remove(Interpreter&, const Arguments& a) {
    ListBuilder kept;
    for (Items items(a.list(1)); !items.done(); items.next())
        if (!isEqual(*items, a[0])) kept.add(*items);
    return kept.take();
}

Value position(Interpreter&, const Arguments& a) {
    std::int32_t index = 0;
    for (Items items(a.list(1)); !items.done(); items.next(), ++index)
        if (isEqual(*items, a[0])) return Value::integer(index);
    return {};
}

}  // namespace

void defineListFunctions(Interpreter& lisp) {
    defineFollowers<1>(lisp);
    defineFollowers<2>(lisp);
    defineFollowers<3>(lisp);
    defineFollowers<4>(lisp);
    lisp.define("CONS", 2, 2, cons);
    lisp.define("LIST", 0, -1, list);
    lisp.define("APPEND", 0, -1, append);
    lisp.define("REVERSE", 1, 1, reverse);
    lisp.define("LENGTH", 1, 1, length);
    lisp.define("VL-LIST-LENGTH", 1, 1, listLength);
    lisp.define("NTH", 2, 2, nth);
    lisp.define("LAST", 1, 1, last);
    lisp.define("MEMBER", 2, 2, member);
    lisp.define("ASSOC", 2, 2, assoc);
    lisp.define("SUBST", 3, 3, subst);
    lisp.define("VL-LIST*", 1, -1, listStar);
    lisp.define("VL-REMOVE", 2, 2, remove);
    lisp.define("VL-POSITION", 2, 2, position);
}

}  // namespace hostcad::lisp
