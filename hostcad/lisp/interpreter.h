// The evaluator of the Lisp dialect.
//
// Variables are dynamically scoped: a call saves the values of its parameters and locals and puts them back
// when it ends, also by an error. An error is reported where it arises: the call stack is noted and the
// program's own *error* function runs while the locals of the failed call are still to be seen.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "hostcad/lisp/arguments.h"
#include "hostcad/lisp/error.h"
#include "hostcad/lisp/value.h"

namespace hostcad::lisp {

class Interpreter {
  public:
    // Takes the text that programs print.
    using Output = std::function<void(std::string_view)>;
    explicit Interpreter(Output output);
    ~Interpreter();
    Interpreter(const Interpreter&) = delete;
    Interpreter& operator=(const Interpreter&) = delete;

    // Lets the main thread's stack grow to what deep recursion needs, where the system allows it. A program
    // calls it before it makes its interpreter.
    static void allowDeepRecursion();

    // --- Running programs ---
    // Each throws Error. The value of the last expression; nil without any.
    Value runText(std::string_view text, const std::string& sourceName = "");
    // A file of expressions, UTF-8 or code page 1252. The error of a file that cannot be read says so.
    Value runFile(const std::string& path);
    Value eval(const Value& expression);
    Value apply(const Value& function, const Arguments& arguments);
    // Runs the operands of a special form in turn.
    Value evalBody(const Value& expressions);

    // --- Names ---
    Symbol* intern(std::string_view name);  // in capitals
    Symbol* find(std::string_view name);    // null when no program has named it
    Symbol* quoteSymbol() const { return quote_; }
    // Throws for a symbol that is constant.
    void set(Symbol* symbol, Value value);
    void define(const std::string& name, int minimum, int maximum, Builtin::Function function);
    void defineForm(const std::string& name, int minimum, int maximum, Builtin::SpecialForm form);
    void defineExternal(const std::string& name, ExternalFunction function);
    // A function from its list of variables and its body.
    Value makeFunction(const Symbol* name, const Value& variables, const Value& body);

    // What (ver) gives.
    const std::string& version() const { return version_; }
    void setVersion(std::string version) { version_ = std::move(version); }

    // --- Errors ---
    // While one lives, errors are somebody's business and *error* is not called.
    class Guard {
      public:
        explicit Guard(Interpreter& interpreter) : interpreter_(interpreter) { ++interpreter_.guards_; }
        ~Guard() { --interpreter_.guards_; }
        Guard(const Guard&) = delete;
        Guard& operator=(const Guard&) = delete;

      private:
        Interpreter& interpreter_;
    };
    // Ends the running program with "Function cancelled" at its next step. May come from a signal handler.
    void cancel() { cancelled_ = true; }
    // Forgets a cancellation that came when nothing ran.
    void clearCancel() { cancelled_ = false; }
    // Whether there was one since this was asked last. Work that is no program of Lisp asks, and ends itself;
    // the program that called it runs on.
    bool takeCancel();
    // A guarded run ends with an error after so many steps; 0: no limit.
    void limitSteps(std::uint64_t steps);
    // Calls a function now and then while a program runs, so that a window lives on; it may cancel(). Null
    // for none.
    void setPulse(std::function<void()> pulse);
    // Throws where the stack or the steps are used up, or the user has cancelled.
    void checkLimits() {
        const char* here = static_cast<const char*>(__builtin_frame_address(0));
        if (++steps_ >= nextCheck_ || here < stackEnd_ || cancelled_.load(std::memory_order_relaxed))
            limitReached(here);
    }

    // --- Output and places ---
    void write(std::string_view text) { output_(text); }
    // A number for a file and a line in it, small enough for a cell; 0 is nowhere.
    static std::uint32_t makePlace(std::uint32_t source, int line);
    std::string placeText(std::uint32_t place) const;
    std::uint32_t sourceNumber(const std::string& name);

  private:
    struct Frame {
        const Frame* caller;
        const Symbol* function;
        std::uint32_t place;
    };

    Value evalCall(const Pair& call);
    Value callFunction(const Value& function, ArgumentBuffer& arguments, std::uint32_t place);
    Value applyBuiltin(const Builtin& builtin, const Arguments& arguments);
    Value functionFrom(const Value& value, const Value& name);
    void evalArguments(const Value& operands, ArgumentBuffer& arguments);
    void report(Error& error, const Pair* call);
    void callErrorHandler(const Error& error);
    void limitReached(const char* here);

    Output output_;
    std::unordered_map<std::string, std::unique_ptr<Symbol>> symbols_;
    std::vector<std::unique_ptr<Builtin>> builtins_;
    std::vector<std::string> sources_;
    Symbol* quote_ = nullptr;
    Symbol* lambda_ = nullptr;
    Symbol* slash_ = nullptr;
    Symbol* errorHandler_ = nullptr;
    const Frame* frame_ = nullptr;
    int guards_ = 0;
    bool inErrorHandler_ = false;
    std::uint64_t steps_ = 0;
    static constexpr std::uint64_t kNever = ~std::uint64_t{0};
    std::uint64_t limit_ = kNever;
    std::uint64_t nextPulse_ = kNever;
    std::uint64_t nextCheck_ = kNever;  // the nearer of the two
    std::function<void()> pulse_;
    const char* stackEnd_ = nullptr;
    std::atomic<bool> cancelled_{false};
    std::string version_ = "Lisp 1.0 (en)";
};

}  // namespace hostcad::lisp
