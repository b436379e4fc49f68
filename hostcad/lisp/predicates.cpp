// What a value is, and whether two are the same.
#include <cmath>

#include "hostcad/lisp/arguments.h"
#include "hostcad/lisp/equality.h"
#include "hostcad/lisp/functions.h"
#include "hostcad/lisp/interpreter.h"

namespace hostcad::lisp {

namespace {

Value isNull(Interpreter&, const Arguments& a) {
    return Value::truth(a[0].isNil());
}
Value isAtom(Interpreter&, const Arguments& a) {
    return Value::truth(!a[0].isPair());
}
Value isList(Interpreter&, const Arguments& a) {
    return Value::truth(a[0].isList());
}
Value isPair(Interpreter&, const Arguments& a) {
    return Value::truth(a[0].isPair());
}
Value isNumber(Interpreter&, const Arguments& a) {
    return Value::truth(a[0].isNumber());
}
Value isSymbol(Interpreter&, const Arguments& a) {
    return Value::truth(a[0].isSymbol());
}
Value isString(Interpreter&, const Arguments& a) {
    return Value::truth(a[0].isString());
}
Value isZero(Interpreter&, const Arguments& a) {
    return Value::truth(a.number(0) == 0);
}
Value isMinus(Interpreter&, const Arguments& a) {
    return Value::truth(a.number(0) < 0);
}
Value isBound(Interpreter&, const Arguments& a) {
    return Value::truth(a[0].isSymbol() && !a[0].asSymbol()->value.isNil());
}

Value eq(Interpreter&, const Arguments& a) {
    return Value::truth(a[0].isSame(a[1]));
}

Value equal(Interpreter&, const Arguments& a) {
    return Value::truth(isEqual(a[0], a[1], a.has(2) ? std::abs(a.number(2)) : 0.0));
}

const char* typeName(Type type) {
    switch (type) {
        case Type::Symbol:
            return "SYM";
        case Type::Integer:
            return "INT";
        case Type::Real:
            return "REAL";
        case Type::String:
            return "STR";
        case Type::Pair:
            return "LIST";
        case Type::Entity:
            return "ENAME";
        case Type::SelectionSet:
            return "PICKSET";
        case Type::Builtin:
            return "SUBR";
        case Type::Function:
            return "USUBR";
        case Type::External:
            return "EXRXSUBR";
        case Type::File:
            return "FILE";
        case Type::Caught:
            return "VL-CATCH-ALL-APPLY-ERROR";
        case Type::Nil:
            break;
    }
    return nullptr;
}

Value type(Interpreter& lisp, const Arguments& a) {
    const char* name = typeName(a[0].type());
    return name ? Value::symbol(lisp.intern(name)) : Value();
}

Value set(Interpreter& lisp, const Arguments& a) {
    lisp.set(a.symbol(0), a[1]);
    return a[1];
}

Value eval(Interpreter& lisp, const Arguments& a) {
    return lisp.eval(a[0]);
}
Value symbolName(Interpreter&, const Arguments& a) {
    return Value::string(a.symbol(0)->name);
}
Value symbolValue(Interpreter&, const Arguments& a) {
    return a.symbol(0)->value;
}

}  // namespace

void definePredicates(Interpreter& lisp) {
    lisp.define("NULL", 1, 1, isNull);
    lisp.define("NOT", 1, 1, isNull);
    lisp.define("ATOM", 1, 1, isAtom);
    lisp.define("LISTP", 1, 1, isList);
    lisp.define("VL-CONSP", 1, 1, isPair);
    lisp.define("NUMBERP", 1, 1, isNumber);
    lisp.define("VL-SYMBOLP", 1, 1, isSymbol);
    lisp.define("VL-STRINGP", 1, 1, isString);
    lisp.define("ZEROP", 1, 1, isZero);
    lisp.define("MINUSP", 1, 1, isMinus);
    lisp.define("BOUNDP", 1, 1, isBound);
    lisp.define("EQ", 2, 2, eq);
    lisp.define("EQUAL", 2, 3, equal);
    lisp.define("TYPE", 1, 1, type);
    lisp.define("SET", 2, 2, set);
    lisp.define("EVAL", 1, 1, eval);
    lisp.define("VL-SYMBOL-NAME", 1, 1, symbolName);
    lisp.define("VL-SYMBOL-VALUE", 1, 1, symbolValue);
}

}  // namespace hostcad::lisp
