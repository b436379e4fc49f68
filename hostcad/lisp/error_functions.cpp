// Errors as a program sees them: catching, leaving.
#include "hostcad/lisp/arguments.h"
#include "hostcad/lisp/functions.h"
#include "hostcad/lisp/interpreter.h"

namespace hostcad::lisp {

namespace {

Value catchAll(Interpreter& lisp, const Arguments& a) {
    Interpreter::Guard guard(lisp);
    try {
        ArgumentBuffer arguments;
        for (Items items(a.list(1)); !items.done(); items.next()) arguments.add(*items);
        return lisp.apply(a[0], arguments.view());
    } catch (const Error& error) {
        if (error.kind == Error::Kind::Limit) throw;
        return Value::caught(error.what());
    }
}

Value isCaught(Interpreter&, const Arguments& a) {
    return Value::truth(a[0].type() == Type::Caught);
}

Value caughtMessage(Interpreter&, const Arguments& a) {
    if (a[0].type() != Type::Caught) throwBadType("catch-all-apply-error-p", a[0]);
    return Value::string(a[0].caughtMessage());
}

Value quit(Interpreter&, const Arguments&) {
    throw Error("quit / exit abort", Error::Kind::Quit);
}
Value fail(Interpreter&, const Arguments& a) {
    throw Error(a.string(0));
}

}  // namespace

void defineErrorFunctions(Interpreter& lisp) {
    lisp.define("VL-CATCH-ALL-APPLY", 2, 2, catchAll);
    lisp.define("VL-CATCH-ALL-ERROR-P", 1, 1, isCaught);
    lisp.define("VL-CATCH-ALL-ERROR-MESSAGE", 1, 1, caughtMessage);
    lisp.define("QUIT", 0, 0, quit);
    lisp.define("EXIT", 0, 0, quit);
    lisp.define("VL-EXIT-WITH-ERROR", 1, 1, fail);
}

}  // namespace hostcad::lisp
