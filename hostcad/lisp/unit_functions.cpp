// Numbers to text and back in the unit formats of the drawing.
#include "hostcad/lisp/arguments.h"
#include "hostcad/lisp/functions.h"
#include "hostcad/lisp/host_variables.h"
#include "hostcad/lisp/interpreter.h"
#include "hostcad/lisp/units.h"

namespace hostcad::lisp {

namespace {

LengthFormat lengthFormat(const Arguments& a, size_t i) {
    int mode = a.has(i) ? a.integer(i) : integerVariable("LUNITS", 2);
    if (mode < 1 || mode > 5) throw Error("bad argument value: unit mode: " + std::to_string(mode));
    return static_cast<LengthFormat>(mode);
}

AngleFormat angleFormat(const Arguments& a, size_t i) {
    int mode = a.has(i) ? a.integer(i) : integerVariable("AUNITS", 0);
    if (mode < 0 || mode > 4) throw Error("bad argument value: unit mode: " + std::to_string(mode));
    return static_cast<AngleFormat>(mode);
}

Value rtos(Interpreter&, const Arguments& a) {
    int precision = a.has(2) ? a.integer(2) : integerVariable("LUPREC", 4);
    return Value::string(
        lengthText(a.number(0), lengthFormat(a, 1), precision, integerVariable("DIMZIN", 0)));
}

Value angtos(Interpreter&, const Arguments& a) {
    int precision = a.has(2) ? a.integer(2) : integerVariable("AUPREC", 0);
    return Value::string(angleText(a.number(0), angleFormat(a, 1), precision, integerVariable("DIMZIN", 0)));
}

Value distof(Interpreter&, const Arguments& a) {
    lengthFormat(a, 1);
    std::optional<double> length = parseLength(a.string(0));
    return length ? Value::real(*length) : Value();
}

Value angtof(Interpreter&, const Arguments& a) {
    std::optional<double> radians = parseAngle(a.string(0), angleFormat(a, 1));
    return radians ? Value::real(*radians) : Value();
}

}  // namespace

void defineUnitFunctions(Interpreter& lisp) {
    lisp.define("RTOS", 1, 3, rtos);
    lisp.define("ANGTOS", 1, 3, angtos);
    lisp.define("DISTOF", 1, 2, distof);
    lisp.define("ANGTOF", 1, 2, angtof);
}

}  // namespace hostcad::lisp
