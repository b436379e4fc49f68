#include "hostcad/lisp/host_variables.h"

#include "platform/ads/editor.h"

namespace hostcad::lisp {

int integerVariable(const char* name, int otherwise) {
    resbuf value{};
    if (acedGetVar(name, &value) != RTNORM) return otherwise;
    if (value.restype == RTSTR) acad_free(value.resval.rstring);
    return value.restype == RTSHORT  ? value.resval.rint
           : value.restype == RTLONG ? static_cast<int>(value.resval.rlong)
                                     : otherwise;
}

std::string textVariable(const char* name) {
    resbuf value{};
    if (acedGetVar(name, &value) != RTNORM || value.restype != RTSTR) return "";
    std::string text = value.resval.rstring;
    acad_free(value.resval.rstring);
    return text;
}

}  // namespace hostcad::lisp
