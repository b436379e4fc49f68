#include "hostcad/lisp/interpreter.h"

#include <pthread.h>
#include <sys/resource.h>

#include <algorithm>

#include "hostcad/lisp/functions.h"
#include "hostcad/lisp/printer.h"
#include "hostcad/lisp/reader.h"
#include "platform/files/files.h"
#include "platform/text/code_page.h"
#include "platform/text/text.h"

namespace hostcad::lisp {

namespace {

// Kept free for error handlers and for the functions of the host that a program calls.
constexpr size_t kStackReserve = size_t{1} << 20;
constexpr size_t kHandlerReserve = size_t{1} << 19;
constexpr size_t kLargestStack = size_t{64} << 20;
constexpr size_t kLongestTrace = 40;

// The lowest address that programs may use of this thread's stack.
const char* findStackEnd() {
    void* lowest = nullptr;
    size_t size = 0;
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) == 0) {
        pthread_attr_getstack(&attributes, &lowest, &size);
        pthread_attr_destroy(&attributes);
    }
    const char* top = static_cast<const char*>(__builtin_frame_address(0));
    const char* end = lowest ? static_cast<const char*>(lowest) : top - (size_t{4} << 20);
    if (static_cast<size_t>(top - end) > kLargestStack) end = top - kLargestStack;
    return end + kStackReserve;
}

[[noreturn]] void throwTooMany() {
    throw Error("too many arguments");
}
[[noreturn]] void throwTooFew() {
    throw Error("too few arguments");
}

// Gives a call's variables their values and puts the old ones back at the end. The buffer holds the new
// values first and the old ones after, so a call needs no other memory.
class Bindings {
  public:
    Bindings(const std::vector<Symbol*>& variables, ArgumentBuffer& values)
        : variables_(variables), values_(values) {
        for (size_t i = 0; i < variables_.size(); ++i) variables_[i]->value.swap(values_[i]);
    }
    ~Bindings() {
        for (size_t i = variables_.size(); i-- > 0;) variables_[i]->value.swap(values_[i]);
    }
    Bindings(const Bindings&) = delete;
    Bindings& operator=(const Bindings&) = delete;

  private:
    const std::vector<Symbol*>& variables_;
    ArgumentBuffer& values_;
};

// Sets a member for the length of a block.
template <typename T>
class Scoped {
  public:
    Scoped(T& variable, T value) : variable_(variable), old_(variable) { variable = value; }
    ~Scoped() { variable_ = old_; }
    Scoped(const Scoped&) = delete;
    Scoped& operator=(const Scoped&) = delete;

  private:
    T& variable_;
    T old_;
};

}  // namespace

std::string Error::trace() const {
    std::string out;
    if (!place.empty() || !expression.empty()) out += "\n  at";
    if (!place.empty()) out += " " + place;
    if (!expression.empty()) out += " in " + expression;
    for (const std::string& caller : callers) out += "\n  " + caller;
    return out;
}

Interpreter::Interpreter(Output output)
    : output_(std::move(output)), sources_{""}, stackEnd_(findStackEnd()) {
    quote_ = intern("QUOTE");
    lambda_ = intern("LAMBDA");
    slash_ = intern("/");
    errorHandler_ = intern("*ERROR*");
    defineSpecialForms(*this);
    defineListFunctions(*this);
    defineSequenceFunctions(*this);
    definePredicates(*this);
    defineNumberFunctions(*this);
    defineStringFunctions(*this);
    defineUnitFunctions(*this);
    defineGeometryFunctions(*this);
    defineFileFunctions(*this);
    defineOutputFunctions(*this);
    defineErrorFunctions(*this);
    defineEntityFunctions(*this);
    defineSelectionFunctions(*this);
    definePromptFunctions(*this);
    defineHostFunctions(*this);
    defineDatabaseFunctions(*this);
}

Interpreter::~Interpreter() = default;

void Interpreter::allowDeepRecursion() {
    rlimit stack{};
    if (getrlimit(RLIMIT_STACK, &stack) != 0 || stack.rlim_cur == RLIM_INFINITY) return;
    rlim_t wanted =
        stack.rlim_max == RLIM_INFINITY ? kLargestStack : std::min<rlim_t>(stack.rlim_max, kLargestStack);
    if (wanted <= stack.rlim_cur) return;
    stack.rlim_cur = wanted;
    setrlimit(RLIMIT_STACK, &stack);
}

// --- Names -------------------------------------------------------------------------------------------

Symbol* Interpreter::intern(std::string_view name) {
    std::string upper = text::upper(name);
    if (upper == "T") return Symbol::truth();
    auto& slot = symbols_[upper];
    if (!slot) {
        Heap::charge(sizeof(Symbol) + 2 * upper.size());
        slot = std::make_unique<Symbol>();
        slot->name = std::move(upper);
    }
    return slot.get();
}

Symbol* Interpreter::find(std::string_view name) {
    std::string upper = text::upper(name);
    if (upper == "T") return Symbol::truth();
    auto found = symbols_.find(upper);
    return found == symbols_.end() ? nullptr : found->second.get();
}

void Interpreter::set(Symbol* symbol, Value value) {
    if (symbol->isConstant) throw Error("assignment to protected symbol: " + symbol->name);
    symbol->value = std::move(value);
}

void Interpreter::define(const std::string& name, int minimum, int maximum, Builtin::Function function) {
    builtins_.push_back(std::make_unique<Builtin>(Builtin{name, minimum, maximum, function, nullptr}));
    intern(name)->value = Value::builtin(builtins_.back().get());
}

void Interpreter::defineForm(const std::string& name, int minimum, int maximum, Builtin::SpecialForm form) {
    builtins_.push_back(std::make_unique<Builtin>(Builtin{name, minimum, maximum, nullptr, form}));
    intern(name)->value = Value::builtin(builtins_.back().get());
}

void Interpreter::defineExternal(const std::string& name, ExternalFunction function) {
    Symbol* symbol = intern(name);
    symbol->value = Value::external(symbol->name, std::move(function));
}

Value Interpreter::makeFunction(const Symbol* name, const Value& variables, const Value& body) {
    if (!variables.isList()) throwBadType("listp", variables);
    auto cell = std::make_unique<FunctionCell>();
    cell->name = name;
    bool areLocals = false;
    for (Items items(variables); !items.done(); items.next()) {
        if (!(*items).isSymbol()) throw Error("bad argument list: " + toShortText(variables));
        Symbol* variable = (*items).asSymbol();
        if (variable == slash_) {
            areLocals = true;
        } else if (variable->isConstant) {
            throw Error("bad argument list: " + toShortText(variables));
        } else {
            cell->variables.push_back(variable);
            if (!areLocals) ++cell->parameters;
        }
    }
    cell->body = body;
    return Value::function(cell.release());
}

// --- Evaluation --------------------------------------------------------------------------------------

Value Interpreter::eval(const Value& expression) {
    if (expression.isSymbol()) return expression.asSymbol()->value;
    if (expression.isPair()) return evalCall(expression.asPair());
    return expression;
}

Value Interpreter::evalBody(const Value& expressions) {
    Value value;
    for (Items items(expressions); !items.done(); items.next()) value = eval(*items);
    return value;
}

void Interpreter::evalArguments(const Value& operands, ArgumentBuffer& arguments) {
    for (Items items(operands); !items.done(); items.next()) arguments.add(eval(*items));
}

// What stands at the front of a call, as something to be called. A list counts as a function that is
// written out: (LAMBDA (X) ...) or ((X) ...).
Value Interpreter::functionFrom(const Value& given, const Value& name) {
    // A symbol stands for its value, which may be another symbol, but not without end: T is its own value.
    constexpr int kMostSymbols = 10;
    const Value* value = &given;
    const Value* called = &name;
    for (int i = 0; value->isSymbol() && i < kMostSymbols; ++i) {
        called = value;
        value = &value->asSymbol()->value;
    }
    bool isMade =
        value->type() == Type::Builtin || value->type() == Type::Function || value->type() == Type::External;
    if (isMade) return *value;
    if (value->isPair()) {
        const Value& head = value->car();
        if (head.isSymbol() && head.asSymbol() == lambda_)
            return makeFunction(nullptr, value->cdr().car(), value->cdr().cdr());
        if (head.isList()) return makeFunction(nullptr, head, value->cdr());
    }
    if (called->isSymbol() && value->isNil()) throw Error("no function definition: " + toShortText(*called));
    throw Error("bad function: " + toShortText(*value));
}

Value Interpreter::evalCall(const Pair& call) {
    try {
        checkLimits();
        Value function;
        const Value& head = call.car;
        if (head.isSymbol()) {
            function = head.asSymbol()->value;
        } else if (head.isPair() && !(head.car().isSymbol() && head.car().asSymbol() == lambda_)) {
            function = eval(head);
        } else {
            function = head;
        }
        if (function.type() == Type::Builtin && function.asBuiltin().form) {
            const Builtin& builtin = function.asBuiltin();
            int count = 0;
            for (Items items(call.cdr); !items.done(); items.next()) ++count;
            if (count < builtin.minimum) throwTooFew();
            if (builtin.maximum >= 0 && count > builtin.maximum) throwTooMany();
            return builtin.form(*this, call.cdr);
        }
        ArgumentBuffer arguments;
        switch (function.type()) {
            case Type::Builtin:
                evalArguments(call.cdr, arguments);
                return applyBuiltin(function.asBuiltin(), arguments.view());
            case Type::External:
                evalArguments(call.cdr, arguments);
                return function.asExternal().function(*this, arguments.view());
            default:
                function = functionFrom(function, head);
                evalArguments(call.cdr, arguments);
                if (function.type() != Type::Function) return apply(function, arguments.view());
                return callFunction(function, arguments, call.source);
        }
    } catch (Error& error) {
        if (!error.isReported) report(error, &call);
        throw;
    }
}

Value Interpreter::applyBuiltin(const Builtin& builtin, const Arguments& arguments) {
    if (static_cast<int>(arguments.size()) < builtin.minimum) throwTooFew();
    if (builtin.maximum >= 0 && static_cast<int>(arguments.size()) > builtin.maximum) throwTooMany();
    return builtin.function(*this, arguments);
}

Value Interpreter::callFunction(const Value& function, ArgumentBuffer& arguments, std::uint32_t place) {
    const FunctionCell& cell = function.asFunction();
    if (arguments.size() < cell.parameters) throwTooFew();
    if (arguments.size() > cell.parameters) throwTooMany();
    arguments.resize(cell.variables.size());
    Bindings bindings(cell.variables, arguments);
    Frame frame{frame_, cell.name, place};
    Scoped<const Frame*> entered(frame_, &frame);
    return evalBody(cell.body);
}

Value Interpreter::apply(const Value& value, const Arguments& arguments) {
    checkLimits();
    Value function = functionFrom(value, value);
    switch (function.type()) {
        case Type::Builtin: {
            const Builtin& builtin = function.asBuiltin();
            if (builtin.form) throw Error("bad function: " + builtin.name);
            return applyBuiltin(builtin, arguments);
        }
        case Type::External:
            return function.asExternal().function(*this, arguments);
        default:
            break;
    }
    ArgumentBuffer buffer;
    for (const Value& argument : arguments) buffer.add(argument);
    return callFunction(function, buffer, 0);
}

Value Interpreter::runText(std::string_view text, const std::string& sourceName) {
    Reader reader(*this, text, sourceNumber(sourceName));
    Value value;
    while (true) {
        Value expression;
        try {
            if (!reader.read(expression)) return value;
        } catch (Error& error) {
            error.place = sourceName.empty() ? "" : sourceName + ":" + std::to_string(reader.line());
            if (!error.isReported) report(error, nullptr);
            throw;
        }
        value = eval(expression);
    }
}

Value Interpreter::runFile(const std::string& path) {
    std::optional<std::string> content = files::read(path);
    if (!content) throw Error("cannot read file: " + path);
    if (!text::isValidUtf8(*content)) *content = text::decode(*content);
    return runText(*content, path);
}

// --- Errors ------------------------------------------------------------------------------------------

void Interpreter::report(Error& error, const Pair* call) {
    error.isReported = true;
    if (call) {
        error.expression = toShortText(Value::pair(call->car, call->cdr));
        if (error.place.empty()) error.place = placeText(call->source);
    }
    for (const Frame* frame = frame_; frame; frame = frame->caller) {
        if (error.callers.size() == kLongestTrace) {
            error.callers.push_back("...");
            break;
        }
        std::string caller = "in " + (frame->function ? frame->function->name : std::string("a lambda"));
        if (frame->place) caller += ", called at " + placeText(frame->place);
        error.callers.push_back(std::move(caller));
    }
    if (guards_ == 0 && error.kind != Error::Kind::Limit) callErrorHandler(error);
}

void Interpreter::callErrorHandler(const Error& error) {
    if (inErrorHandler_ || errorHandler_->value.isNil()) return;
    Scoped<bool> entered(inErrorHandler_, true);
    Scoped<const char*> moreStack(stackEnd_, stackEnd_ - kHandlerReserve);
    try {
        ArgumentBuffer arguments;
        arguments.add(Value::string(error.what()));
        apply(errorHandler_->value, arguments.view());
    } catch (const Error& second) {
        // A handler may end itself by (exit); any other error of its own is told and forgotten.
        if (second.kind != Error::Kind::Quit) write(std::string("\n; error in *error*: ") + second.what());
    }
}

void Interpreter::limitSteps(std::uint64_t steps) {
    limit_ = steps ? steps_ + steps : kNever;
    nextCheck_ = std::min(limit_, nextPulse_);
}

void Interpreter::setPulse(std::function<void()> pulse) {
    pulse_ = std::move(pulse);
    nextPulse_ = pulse_ ? steps_ : kNever;
    nextCheck_ = std::min(limit_, nextPulse_);
}

bool Interpreter::takeCancel() {
    if (pulse_) pulse_();
    return cancelled_.exchange(false);
}

void Interpreter::limitReached(const char* here) {
    if (cancelled_.exchange(false)) throw Error("Function cancelled", Error::Kind::Cancel);
    if (here < stackEnd_) throw Error("stack limit reached");
    if (steps_ >= limit_) throw Error("too many steps", Error::Kind::Limit);
    constexpr std::uint64_t kStepsOfPulse = 100000;
    nextPulse_ = steps_ + kStepsOfPulse;
    nextCheck_ = std::min(limit_, nextPulse_);
    pulse_();
    if (cancelled_.exchange(false)) throw Error("Function cancelled", Error::Kind::Cancel);
}

// --- Places ------------------------------------------------------------------------------------------

namespace {
constexpr int kLineBits = 20;
constexpr std::uint32_t kLastLine = (1u << kLineBits) - 1;
constexpr std::uint32_t kLastSource = (1u << (32 - kLineBits)) - 1;
}  // namespace

std::uint32_t Interpreter::makePlace(std::uint32_t source, int line) {
    if (source == 0 || source > kLastSource) return 0;
    return source << kLineBits | std::min(static_cast<std::uint32_t>(line), kLastLine);
}

std::string Interpreter::placeText(std::uint32_t place) const {
    if (place == 0) return "";
    return sources_[place >> kLineBits] + ":" + std::to_string(place & kLastLine);
}

std::uint32_t Interpreter::sourceNumber(const std::string& name) {
    auto found = std::find(sources_.begin(), sources_.end(), name);
    if (found == sources_.end()) {
        sources_.push_back(name);
        return static_cast<std::uint32_t>(sources_.size() - 1);
    }
    return static_cast<std::uint32_t>(found - sources_.begin());
}

}  // namespace hostcad::lisp
