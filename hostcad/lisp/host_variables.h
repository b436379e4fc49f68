// System variables as built-in functions need them.
#pragma once

#include <string>

namespace hostcad::lisp {

// The value of a system variable; `otherwise` when the host has none of that name and type.
int integerVariable(const char* name, int otherwise);
std::string textVariable(const char* name);

}  // namespace hostcad::lisp
