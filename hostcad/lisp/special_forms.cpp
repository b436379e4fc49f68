// Forms that choose themselves which of their operands are evaluated.
#include "hostcad/lisp/arguments.h"
#include "hostcad/lisp/functions.h"
#include "hostcad/lisp/interpreter.h"
#include "hostcad/lisp/printer.h"

namespace hostcad::lisp {

namespace {

Symbol* symbolOf(const Value& v) {
    if (!v.isSymbol()) throwBadType("symbolp", v);
    return v.asSymbol();
}

Value quote(Interpreter&, const Value& operands) {
    return operands.car();
}

// (function (lambda ...)) makes the function at once; a symbol stays a symbol.
Value function(Interpreter& lisp, const Value& operands) {
    const Value& what = operands.car();
    static constexpr std::string_view kLambda = "LAMBDA";
    if (what.isPair() && what.car().isSymbol() && what.car().asSymbol()->name == kLambda)
        return lisp.makeFunction(nullptr, what.cdr().car(), what.cdr().cdr());
    return what;
}

Value lambda(Interpreter& lisp, const Value& operands) {
    return lisp.makeFunction(nullptr, operands.car(), operands.cdr());
}

Value defun(Interpreter& lisp, const Value& operands) {
    Symbol* name = symbolOf(operands.car());
    lisp.set(name, lisp.makeFunction(name, operands.cdr().car(), operands.cdr().cdr()));
    return Value::symbol(name);
}

Value setq(Interpreter& lisp, const Value& operands) {
    Value value;
    for (Items items(operands); !items.done(); items.next()) {
        Symbol* name = symbolOf(*items);
        items.next();
        if (items.done()) throw Error("too few arguments");
        value = lisp.eval(*items);
        lisp.set(name, value);
    }
    return value;
}

Value ifForm(Interpreter& lisp, const Value& operands) {
    const Value& choices = operands.cdr();
    return lisp.eval(lisp.eval(operands.car()) ? choices.car() : choices.cdr().car());
}

Value cond(Interpreter& lisp, const Value& operands) {
    for (Items clauses(operands); !clauses.done(); clauses.next()) {
        const Value& clause = *clauses;
        if (!clause.isPair()) throw Error("bad conditional clause: " + toShortText(clause));
        Value test = lisp.eval(clause.car());
        if (!test) continue;
        return clause.cdr().isNil() ? test : lisp.evalBody(clause.cdr());
    }
    return {};
}

Value andForm(Interpreter& lisp, const Value& operands) {
    for (Items items(operands); !items.done(); items.next())
        if (!lisp.eval(*items)) return {};
    return Value::truth(true);
}

Value orForm(Interpreter& lisp, const Value& operands) {
    for (Items items(operands); !items.done(); items.next())
        if (lisp.eval(*items)) return Value::truth(true);
    return {};
}

Value progn(Interpreter& lisp, const Value& operands) {
    return lisp.evalBody(operands);
}

Value whileForm(Interpreter& lisp, const Value& operands) {
    Value value;
    while (lisp.eval(operands.car())) {
        lisp.checkLimits();
        value = lisp.evalBody(operands.cdr());
    }
    return value;
}

Value repeat(Interpreter& lisp, const Value& operands) {
    Value times = lisp.eval(operands.car());
    if (!times.isInteger()) throwBadType("fixnump:", times);
    Value value;
    for (std::int32_t i = times.asInteger(); i > 0; --i) {
        lisp.checkLimits();
        value = lisp.evalBody(operands.cdr());
    }
    return value;
}

// The loop's variable is a local of the loop.
Value foreach (Interpreter& lisp, const Value& operands) {
    Symbol* name = symbolOf(operands.car());
    if (name->isConstant) lisp.set(name, {});
    Value list = lisp.eval(operands.cdr().car());
    if (!list.isList()) throwBadType("listp", list);
    struct Local {
        Symbol* symbol;
        Value old;
        explicit Local(Symbol* s) : symbol(s), old(s->value) {}
        ~Local() { symbol->value.swap(old); }
    } local(name);
    Value value;
    for (Items items(list); !items.done(); items.next()) {
        lisp.checkLimits();
        name->value = *items;
        value = lisp.evalBody(operands.cdr().cdr());
    }
    return value;
}

}  // namespace

void defineSpecialForms(Interpreter& lisp) {
    lisp.defineForm("QUOTE", 1, 1, quote);
    lisp.defineForm("FUNCTION", 1, 1, function);
    lisp.defineForm("LAMBDA", 1, -1, lambda);
    lisp.defineForm("DEFUN", 2, -1, defun);
    lisp.defineForm("DEFUN-Q", 2, -1, defun);
    lisp.defineForm("SETQ", 0, -1, setq);
    lisp.defineForm("IF", 2, 3, ifForm);
    lisp.defineForm("COND", 0, -1, cond);
    lisp.defineForm("AND", 0, -1, andForm);
    lisp.defineForm("OR", 0, -1, orForm);
    lisp.defineForm("PROGN", 0, -1, progn);
    lisp.defineForm("WHILE", 1, -1, whileForm);
    lisp.defineForm("REPEAT", 1, -1, repeat);
    lisp.defineForm("FOREACH", 2, -1, foreach);
}

}  // namespace hostcad::lisp
