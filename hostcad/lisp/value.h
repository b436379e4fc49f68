// Values of the Lisp dialect: nil, symbols, 32-bit integers, reals, strings, pairs, entity names, selection
// sets, built-in, external and user functions, files, and caught errors.
//
// A value is 16 bytes. What does not fit is a counted cell. The dialect has no way to change a pair once it
// is made, so there are no cycles and counting frees everything; long lists and deep nests are taken apart
// without recursion. One thread only.
#pragma once

#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/ads/result_buffer.h"

namespace hostcad::lisp {

class Arguments;
class Interpreter;
struct Builtin;
struct Symbol;

// Counted types stand last.
enum class Type : std::uint8_t {
    Nil,
    Symbol,
    Integer,
    Real,
    Builtin,
    String,
    Pair,
    Entity,
    SelectionSet,
    Function,
    External,
    File,
    Caught
};

struct Cell {
    std::uint32_t references = 1;
    std::uint32_t source = 0;  // pairs that were read from a file: where, as Interpreter::place() reads it
};

struct Pair;
struct FunctionCell;
struct ExternalCell;
struct FileCell;

using ExternalFunction = std::function<class Value(Interpreter&, const Arguments&)>;

class Value {
  public:
    Value() : type_(Type::Nil), data_{} {}  // nil
    Value(const Value& other) : type_(other.type_), data_(other.data_) {
        if (isCounted()) ++data_.cell->references;
    }
    Value(Value&& other) noexcept : type_(other.type_), data_(other.data_) { other.type_ = Type::Nil; }
    Value& operator=(Value other) noexcept {
        swap(other);
        return *this;
    }
    ~Value() {
        if (isCounted() && --data_.cell->references == 0) destroy();
    }
    void swap(Value& other) noexcept {
        std::swap(type_, other.type_);
        std::swap(data_, other.data_);
    }

    static Value integer(std::int32_t number);
    static Value real(double number);
    static Value symbol(Symbol* symbol);
    static Value builtin(const Builtin* builtin);
    static Value string(std::string text);
    static Value pair(Value car, Value cdr, std::uint32_t source = 0);
    static Value entity(const ads_name name);
    // The set is freed with its last value. The same set always gives the same cell.
    static Value selectionSet(const ads_name name);
    static Value function(FunctionCell* cell);  // takes the reference that a new cell has
    static Value external(std::string name, ExternalFunction function);
    static Value file(std::FILE* stream, std::string path);  // closed with its last value
    static Value caught(std::string message);
    static Value truth(bool condition);  // T or nil
    static Value list(std::vector<Value> items, Value tail = {});
    static Value point(const double* coordinates, int dimensions = 3);

    Type type() const { return type_; }
    bool isNil() const { return type_ == Type::Nil; }
    explicit operator bool() const { return type_ != Type::Nil; }
    bool isPair() const { return type_ == Type::Pair; }
    bool isSymbol() const { return type_ == Type::Symbol; }
    bool isString() const { return type_ == Type::String; }
    bool isInteger() const { return type_ == Type::Integer; }
    bool isReal() const { return type_ == Type::Real; }
    bool isNumber() const { return isInteger() || isReal(); }
    bool isList() const { return isNil() || isPair(); }

    // Each only for its own type.
    std::int32_t asInteger() const { return data_.integer; }
    double asReal() const { return data_.real; }
    double asNumber() const { return isInteger() ? data_.integer : data_.real; }
    Symbol* asSymbol() const { return data_.symbol; }
    const Builtin& asBuiltin() const { return *data_.builtin; }
    const std::string& asString() const;
    const Pair& asPair() const;
    const long* asName() const;  // of an entity or a selection set
    const FunctionCell& asFunction() const;
    const ExternalCell& asExternal() const;
    FileCell& asFile() const;
    const std::string& caughtMessage() const;

    // Of a pair; nil gives nil.
    const Value& car() const;
    const Value& cdr() const;

    bool isSame(const Value& other) const;  // eq: numbers, strings and names by value, lists by identity

  private:
    bool isCounted() const { return type_ >= Type::String; }
    void destroy() noexcept;
    Value(Type type, Cell* cell) : type_(type) { data_.cell = cell; }

    Type type_;
    union {
        std::int32_t integer;
        double real;
        Symbol* symbol;
        const Builtin* builtin;
        Cell* cell;
    } data_;
};

struct Pair : Cell {
    Value car, cdr;
};

// A symbol has one value, which may be a function. Its name is in capitals.
struct Symbol {
    std::string name;
    Value value;
    bool isConstant = false;
    // The symbol T, the same for all interpreters.
    static Symbol* truth();
};

// A built-in function. A special form gets its operands as they stand, as one list.
struct Builtin {
    using Function = Value (*)(Interpreter&, const Arguments&);
    using SpecialForm = Value (*)(Interpreter&, const Value& operands);
    std::string name;
    int minimum = 0, maximum = -1;  // number of arguments; -1: any
    Function function = nullptr;
    SpecialForm form = nullptr;
};

// A function written in Lisp. Its parameters come first among the variables, then the locals behind "/".
struct FunctionCell : Cell {
    const Symbol* name = nullptr;  // null for a lambda
    std::vector<Symbol*> variables;
    size_t parameters = 0;
    Value body;
};

struct ExternalCell : Cell {
    std::string name;
    ExternalFunction function;
};

struct FileCell : Cell {
    std::FILE* stream = nullptr;  // null once closed
    std::string path;
    void close();
    ~FileCell() { close(); }
};

// Walks the items of a list; the tail of a dotted list is not an item.
class Items {
  public:
    explicit Items(const Value& list) : rest_(&list) {}
    bool done() const { return !rest_->isPair(); }
    const Value& operator*() const { return rest_->asPair().car; }
    void next() { rest_ = &rest_->asPair().cdr; }
    const Value& rest() const { return *rest_; }

  private:
    const Value* rest_;
};

// Makes a list from front to back.
class ListBuilder {
  public:
    void add(Value item) { items_.push_back(std::move(item)); }
    Value take(Value tail = {}) { return Value::list(std::move(items_), std::move(tail)); }

  private:
    std::vector<Value> items_;
};

// Memory of all cells, in bytes. Making a cell beyond the limit throws Error.
struct Heap {
    static size_t used;
    static size_t limit;
    static void charge(size_t bytes);
    static void discharge(size_t bytes) { used -= bytes; }
    // Throws when so much more would be too much.
    static void expect(size_t bytes);
};

inline Value Value::integer(std::int32_t number) {
    Value v;
    v.type_ = Type::Integer;
    v.data_.integer = number;
    return v;
}
inline Value Value::real(double number) {
    Value v;
    v.type_ = Type::Real;
    v.data_.real = number;
    return v;
}
inline Value Value::symbol(Symbol* symbol) {
    Value v;
    v.type_ = Type::Symbol;
    v.data_.symbol = symbol;
    return v;
}
inline Value Value::builtin(const Builtin* builtin) {
    Value v;
    v.type_ = Type::Builtin;
    v.data_.builtin = builtin;
    return v;
}
inline Value Value::truth(bool condition) {
    return condition ? symbol(Symbol::truth()) : Value();
}
inline const Pair& Value::asPair() const {
    return *static_cast<const Pair*>(data_.cell);
}

}  // namespace hostcad::lisp
