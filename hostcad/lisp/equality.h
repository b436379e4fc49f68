// When two values are equal as EQUAL has it.
#pragma once

#include "hostcad/lisp/value.h"

namespace hostcad::lisp {

// Numbers by value, integer or real alike, within fuzz; lists item by item; all else as by EQ.
bool isEqual(const Value& a, const Value& b, double fuzz = 0);

}  // namespace hostcad::lisp
