// The host: variables, commands, modules, support files.
#include <cstdlib>

#include "hostcad/lisp/arguments.h"
#include "hostcad/lisp/functions.h"
#include "hostcad/lisp/interpreter.h"
#include "hostcad/lisp/result_values.h"
#include "platform/ads/editor.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace hostcad::lisp {

namespace {

// --- Variables ---------------------------------------------------------------------------------------

Value getvar(Interpreter&, const Arguments& a) {
    std::string name = a[0].isSymbol() ? a[0].asSymbol()->name : a.string(0);
    resbuf* value = acutNewRb(RTNONE);
    ResultList owner(value);
    if (acedGetVar(name.c_str(), value) != RTNORM) return {};
    return toValue(value);
}

Value setvar(Interpreter&, const Arguments& a) {
    std::string name = a[0].isSymbol() ? a[0].asSymbol()->name : a.string(0);
    if (acedSetVar(name.c_str(), toAnswers(a.behind(1)).get()) != RTNORM)
        throw Error("cannot set the variable " + text::upper(name));
    return a[1];
}

Value getenv(Interpreter&, const Arguments& a) {
    const char* value = std::getenv(a.string(0).c_str());
    return value ? Value::string(value) : Value();
}

Value setenv(Interpreter&, const Arguments& a) {
    return ::setenv(a.string(0).c_str(), a.string(1).c_str(), 1) == 0 ? a[1] : Value();
}

Value version(Interpreter& lisp, const Arguments&) {
    return Value::string(lisp.version());
}

// --- Commands ----------------------------------------------------------------------------------------

// Without arguments, and for nil, the command in progress is cancelled. A name that no command has is told on
// the command line and no error.
bool runCommand(const Arguments& a) {
    int status = a.size() == 0 ? acedCmd(nullptr) : acedCmd(toAnswers(a).get());
    if (status == RTCAN) throw Error("Function cancelled", Error::Kind::Cancel);
    if (status == RTERROR) throw Error("the command failed");
    return status == RTNORM;
}

Value command(Interpreter&, const Arguments& a) {
    runCommand(a);
    return {};
}

Value commandSucceeds(Interpreter&, const Arguments& a) {
    return Value::truth(runCommand(a));
}

// --- Files and modules -------------------------------------------------------------------------------

// Where the host finds a file; "" when it does not.
std::string found(const std::string& name) {
    char path[kPathSize];
    return acedFindFile(name.c_str(), path) == RTNORM ? path : "";
}

Value findfile(Interpreter&, const Arguments& a) {
    std::string path = found(a.string(0));
    return path.empty() ? Value() : Value::string(path);
}

// The value of the last expression, or the second argument when there is no such file.
Value load(Interpreter& lisp, const Arguments& a) {
    const std::string& name = a.string(0);
    std::string path = found(name);
    if (path.empty() && files::extensionOf(name).empty()) path = found(name + ".lsp");
    if (!path.empty()) return lisp.runFile(path);
    if (a.size() > 1) return a[1].isPair() ? lisp.eval(a[1]) : a[1];
    throw Error("LOAD failed: \"" + name + "\"");
}

Value arxload(Interpreter& lisp, const Arguments& a) {
    if (acedArxLoad(a.string(0).c_str()) == RTNORM) return a[0];
    if (a.size() > 1) return a[1].isPair() ? lisp.eval(a[1]) : a[1];
    throw Error("ARXLOAD failed: \"" + a.string(0) + "\"");
}

Value arxunload(Interpreter&, const Arguments& a) {
    if (acedArxUnload(a.string(0).c_str()) == RTNORM) return a[0];
    if (a.size() > 1) return a[1];
    throw Error("ARXUNLOAD failed: \"" + a.string(0) + "\"");
}

Value arx(Interpreter&, const Arguments&) {
    return toListValue(ResultList(acedArxLoaded()).get());
}

Value nothing(Interpreter&, const Arguments&) {
    return {};
}

}  // namespace

void defineHostFunctions(Interpreter& lisp) {
    lisp.define("GETVAR", 1, 1, getvar);
    lisp.define("SETVAR", 2, 2, setvar);
    lisp.define("GETENV", 1, 1, getenv);
    lisp.define("SETENV", 2, 2, setenv);
    lisp.define("VER", 0, 0, version);
    lisp.define("COMMAND", 0, -1, command);
    lisp.define("VL-CMDF", 0, -1, commandSucceeds);
    lisp.define("FINDFILE", 1, 1, findfile);
    lisp.define("LOAD", 1, 2, load);
    lisp.define("ARXLOAD", 1, 2, arxload);
    lisp.define("ARXUNLOAD", 1, 2, arxunload);
    lisp.define("ARX", 0, 0, arx);
    // Every function is there from the start; programs that ask for extensions go on as if they had come.
    lisp.define("VL-LOAD-COM", 0, 0, nothing);
    // What stands for a user's answer in the arguments of COMMAND.
    lisp.intern("PAUSE")->value = Value::string("\\");
}

}  // namespace hostcad::lisp
