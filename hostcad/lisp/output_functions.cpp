// Printing, on the command line or into a file.
#include "hostcad/lisp/arguments.h"
#include "hostcad/lisp/functions.h"
#include "hostcad/lisp/interpreter.h"
#include "hostcad/lisp/printer.h"

namespace hostcad::lisp {

namespace {

void put(Interpreter& lisp, const Arguments& a, const std::string& text) {
    if (!a.has(1)) {
        lisp.write(text);
        return;
    }
    FileCell& file = a.file(1);
    if (std::fwrite(text.data(), 1, text.size(), file.stream) != text.size())
        throw Error("cannot write file: " + file.path);
}

// Without arguments the result is a symbol without a name, which prints as nothing: the way in which a
// command ends quietly.
Value nothing(Interpreter& lisp) {
    return Value::symbol(lisp.intern(""));
}

Value princ(Interpreter& lisp, const Arguments& a) {
    if (a.size() == 0) return nothing(lisp);
    put(lisp, a, toText(a[0], Style::Plain));
    return a[0];
}

Value prin1(Interpreter& lisp, const Arguments& a) {
    if (a.size() == 0) return nothing(lisp);
    put(lisp, a, toText(a[0]));
    return a[0];
}

Value print(Interpreter& lisp, const Arguments& a) {
    if (a.size() == 0) return nothing(lisp);
    put(lisp, a, "\n" + toText(a[0]) + " ");
    return a[0];
}

Value terpri(Interpreter& lisp, const Arguments&) {
    lisp.write("\n");
    return {};
}

Value prompt(Interpreter& lisp, const Arguments& a) {
    lisp.write(a.string(0));
    return {};
}

}  // namespace

void defineOutputFunctions(Interpreter& lisp) {
    lisp.define("PRINC", 0, 2, princ);
    lisp.define("PRIN1", 0, 2, prin1);
    lisp.define("PRINT", 0, 2, print);
    lisp.define("TERPRI", 0, 0, terpri);
    lisp.define("PROMPT", 1, 1, prompt);
}

}  // namespace hostcad::lisp
