// Functions that call functions: mapping, filtering, sorting.
#include <algorithm>

#include "hostcad/lisp/arguments.h"
#include "hostcad/lisp/equality.h"
#include "hostcad/lisp/functions.h"
#include "hostcad/lisp/interpreter.h"

namespace hostcad::lisp {

namespace {

Value call(Interpreter& lisp, const Value& function, const Value& argument) {
    return lisp.apply(function, Arguments({&argument, 1}));
}

// A function that is written out as a list is made once, before a loop calls it.
Value prepared(Interpreter& lisp, const Value& function) {
    bool isLambda =
        function.isPair() && function.car().isSymbol() && function.car().asSymbol()->name == "LAMBDA";
    return isLambda ? lisp.makeFunction(nullptr, function.cdr().car(), function.cdr().cdr()) : function;
}

Value apply(Interpreter& lisp, const Arguments& a) {
    ArgumentBuffer arguments;
    for (Items items(a.list(1)); !items.done(); items.next()) arguments.add(*items);
    return lisp.apply(a[0], arguments.view());
}

// Calls a function with the first items of all lists, then with the second ones, and so on to the end of the
// shortest; `take` gets each result and says whether to go on.
template <typename Take>
void forEachRow(Interpreter& lisp, const Arguments& a, Take take) {
    Value function = prepared(lisp, a[0]);
    std::vector<Items> rows;
    for (size_t i = 1; i < a.size(); ++i) rows.emplace_back(a.list(i));
    while (std::none_of(rows.begin(), rows.end(), [](const Items& row) { return row.done(); })) {
        ArgumentBuffer arguments;
        for (Items& row : rows) {
            arguments.add(*row);
            row.next();
        }
        if (!take(lisp.apply(function, arguments.view()))) return;
    }
}

Value mapcar(Interpreter& lisp, const Arguments& a) {
    ListBuilder results;
    forEachRow(lisp, a, [&](Value result) {
        results.add(std::move(result));
        return true;
    });
    return results.take();
}

Value some(Interpreter& lisp, const Arguments& a) {
    Value found;
    forEachRow(lisp, a, [&](Value result) {
        found = std::move(result);
        return found.isNil();
    });
    return found;
}

Value every(Interpreter& lisp, const Arguments& a) {
    bool all = true;
    forEachRow(lisp, a, [&](const Value& result) { return all = !result.isNil(); });
    return Value::truth(all);
}

template <bool kRemoved>
Value filter(Interpreter& lisp, const Arguments& a) {
    Value function = prepared(lisp, a[0]);
    ListBuilder kept;
    for (Items items(a.list(1)); !items.done(); items.next())
        if (call(lisp, function, *items).isNil() == kRemoved) kept.add(*items);
    return kept.take();
}

template <bool kWanted>
Value memberIf(Interpreter& lisp, const Arguments& a) {
    Value function = prepared(lisp, a[0]);
    for (Items items(a.list(1)); !items.done(); items.next())
        if (call(lisp, function, *items).isNil() != kWanted) return items.rest();
    return {};
}

// Merge sort by hand: the comparison is a Lisp function, which may be inconsistent or fail, and standard
// sorting would then be undefined.
void sortStably(std::vector<std::int32_t>& order,
                const std::function<bool(std::int32_t, std::int32_t)>& isLess) {
    std::vector<std::int32_t> merged(order.size());
    for (size_t width = 1; width < order.size(); width *= 2) {
        for (size_t start = 0; start < order.size(); start += 2 * width) {
            size_t middle = std::min(start + width, order.size());
            size_t end = std::min(start + 2 * width, order.size());
            size_t left = start, right = middle, out = start;
            while (left < middle && right < end)
                merged[out++] = isLess(order[right], order[left]) ? order[right++] : order[left++];
            while (left < middle) merged[out++] = order[left++];
            while (right < end) merged[out++] = order[right++];
        }
        order.swap(merged);
    }
}

std::vector<std::int32_t> sortedOrder(Interpreter& lisp, const Arguments& a,
                                      const std::vector<Value>& items) {
    Value function = prepared(lisp, a[1]);
    std::vector<std::int32_t> order(items.size());
    for (size_t i = 0; i < order.size(); ++i) order[i] = static_cast<std::int32_t>(i);
    sortStably(order, [&](std::int32_t left, std::int32_t right) {
        const Value pair[] = {items[static_cast<size_t>(left)], items[static_cast<size_t>(right)]};
        return !lisp.apply(function, Arguments(pair)).isNil();
    });
    return order;
}

// An integer or symbol that comes twice is kept once, as the dialect has it.
Value sort(Interpreter& lisp, const Arguments& a) {
    std::vector<Value> items;
    for (Items walk(a.list(0)); !walk.done(); walk.next()) items.push_back(*walk);
    ListBuilder sorted;
    const Value* previous = nullptr;
    for (std::int32_t i : sortedOrder(lisp, a, items)) {
        const Value& item = items[static_cast<size_t>(i)];
        bool isRepeated = previous && (item.isInteger() || item.isSymbol()) && item.isSame(*previous);
        if (!isRepeated) sorted.add(item);
        previous = &item;
    }
    return sorted.take();
}

Value sortIndices(Interpreter& lisp, const Arguments& a) {
    std::vector<Value> items;
    for (Items walk(a.list(0)); !walk.done(); walk.next()) items.push_back(*walk);
    ListBuilder sorted;
    for (std::int32_t i : sortedOrder(lisp, a, items)) sorted.add(Value::integer(i));
    return sorted.take();
}

}  // namespace

void defineSequenceFunctions(Interpreter& lisp) {
    lisp.define("APPLY", 2, 2, apply);
    lisp.define("MAPCAR", 2, -1, mapcar);
    lisp.define("VL-SOME", 2, -1, some);
    lisp.define("VL-EVERY", 2, -1, every);
    lisp.define("VL-REMOVE-IF", 2, 2, filter<true>);
    lisp.define("VL-REMOVE-IF-NOT", 2, 2, filter<false>);
    lisp.define("VL-MEMBER-IF", 2, 2, memberIf<true>);
    lisp.define("VL-MEMBER-IF-NOT", 2, 2, memberIf<false>);
    lisp.define("VL-SORT", 2, 2, sort);
    lisp.define("VL-SORT-I", 2, 2, sortIndices);
}

}  // namespace hostcad::lisp
