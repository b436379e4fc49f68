#include "hostcad/window/product_functions.h"

#include "hostcad/lisp/arguments.h"

namespace hostcad {
namespace {

std::string textOf(const lisp::Value& value) {
    return value.isString() ? value.asString() : std::string();
}

}  // namespace

std::optional<lisp::Value> callProduct(lisp::Interpreter& lisp, const char* function,
                                       const std::vector<lisp::Value>& arguments) {
    const lisp::Symbol* symbol = lisp.find(function);
    if (!symbol || symbol->value.isNil()) return {};
    lisp::Interpreter::Guard guard(lisp);
    lisp.clearCancel();
    lisp::ArgumentBuffer given;
    for (const lisp::Value& argument : arguments) given.add(argument);
    return lisp.apply(symbol->value, given.view());
}

std::vector<std::pair<std::string, std::string>> textPairs(const lisp::Value& list) {
    std::vector<std::pair<std::string, std::string>> pairs;
    for (lisp::Items item(list); !item.done(); item.next())
        pairs.emplace_back(textOf((*item).car()), textOf((*item).cdr()));
    return pairs;
}

}  // namespace hostcad
