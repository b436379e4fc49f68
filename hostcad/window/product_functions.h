// Functions of Lisp that a product defines for the window: what it knows, and when it is told something.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "hostcad/lisp/interpreter.h"

namespace hostcad {

// Calls a function with its arguments; nothing when the product has none of that name. Throws lisp::Error.
std::optional<lisp::Value> callProduct(lisp::Interpreter& lisp, const char* function,
                                       const std::vector<lisp::Value>& arguments = {});

// A list of pairs of texts; "" for what is none.
std::vector<std::pair<std::string, std::string>> textPairs(const lisp::Value& list);

}  // namespace hostcad
