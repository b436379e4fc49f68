#include "hostcad/lisp/equality.h"

#include <cmath>

#include "hostcad/lisp/error.h"

namespace hostcad::lisp {

namespace {

bool areEqualAtoms(const Value& a, const Value& b, double fuzz) {
    if (a.isNumber() && b.isNumber()) {
        double x = a.asNumber(), y = b.asNumber();
        return x == y || std::abs(x - y) <= fuzz;
    }
    return a.isSame(b);
}

}  // namespace

bool isEqual(const Value& first, const Value& second, double fuzz) {
    if (!first.isPair() || !second.isPair()) return areEqualAtoms(first, second, fuzz);
    // Pairs of lists that are still to be compared; nests may be deeper than the stack.
    std::vector<std::pair<const Value*, const Value*>> open{{&first, &second}};
    // Lists that share their parts can take longer to walk than anybody would wait.
    size_t stepsLeft = Heap::limit / sizeof(Pair);
    while (!open.empty()) {
        auto [a, b] = open.back();
        open.pop_back();
        while (a->isPair() && b->isPair()) {
            if (&a->asPair() == &b->asPair()) break;  // the same list
            if (stepsLeft-- == 0) throw Error("lists are too large to be compared");
            const Value& x = a->car();
            const Value& y = b->car();
            if (x.isPair() && y.isPair())
                open.emplace_back(&x, &y);
            else if (!areEqualAtoms(x, y, fuzz))
                return false;
            a = &a->cdr();
            b = &b->cdr();
        }
        if (a->isPair() && b->isPair()) continue;
        if (!areEqualAtoms(*a, *b, fuzz)) return false;
    }
    return true;
}

}  // namespace hostcad::lisp
