// Arithmetic. Integers have 32 bits and wrap around; one real among the arguments makes the result real.
#include <cmath>
#include <numbers>
#include <numeric>

#include "hostcad/lisp/arguments.h"
#include "hostcad/lisp/functions.h"
#include "hostcad/lisp/interpreter.h"
#include "hostcad/lisp/printer.h"

namespace hostcad::lisp {

namespace {

using Integer = std::int32_t;
using Unsigned = std::uint32_t;

Integer wrapped(Unsigned bits) {
    return static_cast<Integer>(bits);
}
Integer plus(Integer a, Integer b) {
    return wrapped(static_cast<Unsigned>(a) + static_cast<Unsigned>(b));
}
Integer minus(Integer a, Integer b) {
    return wrapped(static_cast<Unsigned>(a) - static_cast<Unsigned>(b));
}
Integer times(Integer a, Integer b) {
    return wrapped(static_cast<Unsigned>(a) * static_cast<Unsigned>(b));
}
Integer over(Integer a, Integer b) {
    if (b == 0) throw Error("divide by zero");
    return b == -1 ? minus(0, a) : a / b;
}
Integer remainder(Integer a, Integer b) {
    if (b == 0) throw Error("divide by zero");
    return b == -1 ? 0 : a % b;
}
double realOver(double a, double b) {
    if (b == 0) throw Error("divide by zero");
    return a / b;
}
double realRemainder(double a, double b) {
    if (b == 0) throw Error("divide by zero");
    return std::fmod(a, b);
}
Value plusReal(double a, double b) {
    return Value::real(a + b);
}

void requireNumber(const Value& v) {
    if (!v.isNumber()) throwBadType("numberp:", v);
}

// Combines the arguments from left to right, in integers up to the first real.
template <typename OnIntegers, typename OnReals>
Value fold(const Arguments& a, OnIntegers onIntegers, OnReals onReals) {
    requireNumber(a[0]);
    Value result = a[0];
    for (size_t i = 1; i < a.size(); ++i) {
        requireNumber(a[i]);
        if (result.isInteger() && a[i].isInteger()) {
            result = Value::integer(onIntegers(result.asInteger(), a[i].asInteger()));
        } else {
            result = Value::real(onReals(result.asNumber(), a[i].asNumber()));
        }
    }
    return result;
}

Value add(Interpreter&, const Arguments& a) {
    if (a.size() == 0) return Value::integer(0);
    return fold(a, plus, [](double x, double y) { return x + y; });
}

Value subtract(Interpreter&, const Arguments& a) {
    if (a.size() == 0) return Value::integer(0);
    if (a.size() == 1) {
        requireNumber(a[0]);
        return a[0].isInteger() ? Value::integer(minus(0, a[0].asInteger())) : Value::real(-a[0].asReal());
    }
    return fold(a, minus, [](double x, double y) { return x - y; });
}

Value multiply(Interpreter&, const Arguments& a) {
    if (a.size() == 0) return Value::integer(0);
    return fold(a, times, [](double x, double y) { return x * y; });
}

Value divide(Interpreter&, const Arguments& a) {
    if (a.size() == 0) return Value::integer(0);
    return fold(a, over, realOver);
}

Value rem(Interpreter&, const Arguments& a) {
    if (a.size() == 0) return Value::integer(0);
    return fold(a, remainder, realRemainder);
}

Value increment(Interpreter&, const Arguments& a) {
    requireNumber(a[0]);
    return a[0].isInteger() ? Value::integer(plus(a[0].asInteger(), 1)) : plusReal(a[0].asReal(), 1);
}

Value decrement(Interpreter&, const Arguments& a) {
    requireNumber(a[0]);
    return a[0].isInteger() ? Value::integer(minus(a[0].asInteger(), 1)) : plusReal(a[0].asReal(), -1);
}

// The largest or smallest; a real when any argument is real.
template <bool kLargest>
Value extreme(Interpreter&, const Arguments& a) {
    if (a.size() == 0) return Value::integer(0);
    return fold(
        a, [](Integer x, Integer y) { return (x < y) == kLargest ? y : x; },
        [](double x, double y) { return (x < y) == kLargest ? y : x; });
}

Value absolute(Interpreter&, const Arguments& a) {
    requireNumber(a[0]);
    if (a[0].isReal()) return Value::real(std::abs(a[0].asReal()));
    return Value::integer(a[0].asInteger() < 0 ? minus(0, a[0].asInteger()) : a[0].asInteger());
}

Value gcd(Interpreter&, const Arguments& a) {
    long divisor = 0;
    for (size_t i = 0; i < a.size(); ++i) divisor = std::gcd(divisor, static_cast<long>(a.integer(i)));
    return Value::integer(wrapped(static_cast<Unsigned>(divisor)));
}

// --- Comparison --------------------------------------------------------------------------------------

// Numbers with numbers, strings with strings; anything else cannot be put in an order.
template <typename Compare>
Value compare(const Arguments& a, Compare holds) {
    for (size_t i = 0; i + 1 < a.size(); ++i) {
        const Value& x = a[i];
        const Value& y = a[i + 1];
        bool is;
        if (x.isInteger() && y.isInteger())
            is = holds(x.asInteger(), y.asInteger());
        else if (x.isNumber() && y.isNumber())
            is = holds(x.asNumber(), y.asNumber());
        else if (x.isString() && y.isString())
            is = holds(x.asString().compare(y.asString()), 0);
        else
            throw Error("bad argument type for compare: " + toShortText(x) + " " + toShortText(y));
        if (!is) return {};
    }
    return Value::truth(true);
}

Value less(Interpreter&, const Arguments& a) {
    return compare(a, [](auto x, auto y) { return x < y; });
}
Value lessOrEqual(Interpreter&, const Arguments& a) {
    return compare(a, [](auto x, auto y) { return x <= y; });
}
Value greater(Interpreter&, const Arguments& a) {
    return compare(a, [](auto x, auto y) { return x > y; });
}
Value greaterOrEqual(Interpreter&, const Arguments& a) {
    return compare(a, [](auto x, auto y) { return x >= y; });
}

// Values of different kinds are not equal, and that is no error.
bool areEqual(const Value& x, const Value& y) {
    if (x.isNumber() && y.isNumber()) return x.asNumber() == y.asNumber();
    return x.isSame(y);
}

Value equalTo(Interpreter&, const Arguments& a) {
    for (size_t i = 0; i + 1 < a.size(); ++i)
        if (!areEqual(a[i], a[i + 1])) return {};
    return Value::truth(true);
}

Value notEqualTo(Interpreter&, const Arguments& a) {
    for (size_t i = 0; i + 1 < a.size(); ++i)
        if (areEqual(a[i], a[i + 1])) return {};
    return Value::truth(true);
}

// --- Functions of reals ------------------------------------------------------------------------------

[[noreturn]] void throwUndefined(const Value& v) {
    throw Error("function undefined for argument: " + toShortText(v));
}

Value squareRoot(Interpreter&, const Arguments& a) {
    if (a.number(0) < 0) throwUndefined(a[0]);
    return Value::real(std::sqrt(a.number(0)));
}

Value logarithm(Interpreter&, const Arguments& a) {
    if (a.number(0) <= 0) throwUndefined(a[0]);
    return Value::real(std::log(a.number(0)));
}

Value exponential(Interpreter&, const Arguments& a) {
    return Value::real(std::exp(a.number(0)));
}
Value sine(Interpreter&, const Arguments& a) {
    return Value::real(std::sin(a.number(0)));
}
Value cosine(Interpreter&, const Arguments& a) {
    return Value::real(std::cos(a.number(0)));
}

Value arcTangent(Interpreter&, const Arguments& a) {
    return Value::real(a.has(1) ? std::atan2(a.number(0), a.number(1)) : std::atan(a.number(0)));
}

// Integers give an integer where the result is one that fits.
Value power(Interpreter&, const Arguments& a) {
    double result = std::pow(a.number(0), a.number(1));
    if (std::isnan(result)) throwUndefined(a[0]);
    bool isWhole = a[0].isInteger() && a[1].isInteger() && std::trunc(result) == result;
    if (isWhole && std::abs(result) <= std::numeric_limits<Integer>::max())
        return Value::integer(static_cast<Integer>(result));
    return Value::real(result);
}

// A real that no integer can hold stays real, without its fraction.
Value fix(Interpreter&, const Arguments& a) {
    requireNumber(a[0]);
    if (a[0].isInteger()) return a[0];
    double whole = std::trunc(a[0].asReal());
    bool fits = whole >= std::numeric_limits<Integer>::min() && whole <= std::numeric_limits<Integer>::max();
    return fits ? Value::integer(static_cast<Integer>(whole)) : Value::real(whole);
}

Value toFloat(Interpreter&, const Arguments& a) {
    return Value::real(a.number(0));
}

// --- Bits --------------------------------------------------------------------------------------------

Value logicalAnd(Interpreter&, const Arguments& a) {
    Integer bits = a.size() == 0 ? 0 : -1;
    for (size_t i = 0; i < a.size(); ++i) bits &= a.integer(i);
    return Value::integer(bits);
}

Value logicalOr(Interpreter&, const Arguments& a) {
    Integer bits = 0;
    for (size_t i = 0; i < a.size(); ++i) bits |= a.integer(i);
    return Value::integer(bits);
}

// Left by a positive number of bits, right by a negative one.
Value shift(Interpreter&, const Arguments& a) {
    auto bits = static_cast<Unsigned>(a.integer(0));
    Integer by = a.integer(1);
    if (by >= 32 || by <= -32) return Value::integer(0);
    return Value::integer(wrapped(by >= 0 ? bits << by : bits >> -by));
}

Value complement(Interpreter&, const Arguments& a) {
    return Value::integer(~a.integer(0));
}

// The function's bits 1, 2, 4 and 8 say which pairs of bits give 1: 11, 10, 01 and 00.
Value boole(Interpreter&, const Arguments& a) {
    Integer function = a.integer(0);
    Integer x = a.integer(1);
    for (size_t i = 2; i < a.size(); ++i) {
        Integer y = a.integer(i);
        Integer bits = 0;
        if (function & 1) bits |= x & y;
        if (function & 2) bits |= x & ~y;
        if (function & 4) bits |= ~x & y;
        if (function & 8) bits |= ~(x | y);
        x = bits;
    }
    return Value::integer(x);
}

}  // namespace

void defineNumberFunctions(Interpreter& lisp) {
    lisp.define("+", 0, -1, add);
    lisp.define("-", 0, -1, subtract);
    lisp.define("*", 0, -1, multiply);
    lisp.define("/", 0, -1, divide);
    lisp.define("1+", 1, 1, increment);
    lisp.define("1-", 1, 1, decrement);
    lisp.define("REM", 0, -1, rem);
    lisp.define("MIN", 0, -1, extreme<false>);
    lisp.define("MAX", 0, -1, extreme<true>);
    lisp.define("ABS", 1, 1, absolute);
    lisp.define("GCD", 0, -1, gcd);
    lisp.define("=", 1, -1, equalTo);
    lisp.define("/=", 1, -1, notEqualTo);
    lisp.define("<", 1, -1, less);
    lisp.define("<=", 1, -1, lessOrEqual);
    lisp.define(">", 1, -1, greater);
    lisp.define(">=", 1, -1, greaterOrEqual);
    lisp.define("SQRT", 1, 1, squareRoot);
    lisp.define("LOG", 1, 1, logarithm);
    lisp.define("EXP", 1, 1, exponential);
    lisp.define("EXPT", 2, 2, power);
    lisp.define("SIN", 1, 1, sine);
    lisp.define("COS", 1, 1, cosine);
    lisp.define("ATAN", 1, 2, arcTangent);
    lisp.define("FIX", 1, 1, fix);
    lisp.define("FLOAT", 1, 1, toFloat);
    lisp.define("LOGAND", 0, -1, logicalAnd);
    lisp.define("LOGIOR", 0, -1, logicalOr);
    lisp.define("LSH", 2, 2, shift);
    lisp.define("~", 1, 1, complement);
    lisp.define("BOOLE", 3, -1, boole);
    lisp.intern("PI")->value = Value::real(std::numbers::pi);
}

}  // namespace hostcad::lisp
