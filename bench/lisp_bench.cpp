// What the Lisp costs, at three sizes each: a counting loop, calls of a function, a list that is built and
// walked, and the reading of a file.
#include <benchmark/benchmark.h>

#include "hostcad/lisp/interpreter.h"

namespace {

using hostcad::lisp::Interpreter;

void run(benchmark::State& state, const std::string& preparation, const std::string& program) {
    Interpreter lisp([](std::string_view) {});
    lisp.runText("(setq n " + std::to_string(state.range(0)) + ")");
    lisp.runText(preparation);
    for (auto _ : state) lisp.runText(program);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void countingLoop(benchmark::State& state) {
    run(state, "", "(setq i 0) (repeat n (setq i (1+ i)))");
}
BENCHMARK(countingLoop)->RangeMultiplier(10)->Range(10000, 1000000)->Unit(benchmark::kMillisecond);

void functionCalls(benchmark::State& state) {
    run(state, "(defun add (a b / c) (setq c (+ a b)) c)", "(setq i 0) (while (< i n) (setq i (add i 1)))");
}
BENCHMARK(functionCalls)->RangeMultiplier(10)->Range(10000, 1000000)->Unit(benchmark::kMillisecond);

void listsBuiltAndWalked(benchmark::State& state) {
    run(state, "",
        "(setq l nil i 0) (repeat n (setq l (cons (setq i (1+ i)) l)))"
        "(apply '+ (mapcar '(lambda (x) (* 2 x)) (reverse l)))");
}
BENCHMARK(listsBuiltAndWalked)->RangeMultiplier(10)->Range(10000, 1000000)->Unit(benchmark::kMillisecond);

void reading(benchmark::State& state) {
    std::string text;
    for (long i = 0; i < state.range(0); ++i) text += "(setq name '(1 2.5 \"text\" symbol))\n";
    Interpreter lisp([](std::string_view) {});
    for (auto _ : state) lisp.runText(text);
    state.SetBytesProcessed(state.iterations() * static_cast<long>(text.size()));
}
BENCHMARK(reading)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond);

}  // namespace
