// The printed form of values.
#pragma once

#include <string>

#include "hostcad/lisp/value.h"

namespace hostcad::lisp {

enum class Style {
    Plain,   // princ: strings as they are
    Quoted,  // prin1: strings between quotation marks, special characters escaped
};

std::string toText(const Value& value, Style style = Style::Quoted);
// The quoted form, cut where it is long: for messages.
std::string toShortText(const Value& value);
// A real as the dialect shows it: six significant digits, always with a point or an exponent.
std::string realText(double number);

}  // namespace hostcad::lisp
