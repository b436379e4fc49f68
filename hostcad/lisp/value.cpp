#include "hostcad/lisp/value.h"

#include <map>

#include "hostcad/lisp/error.h"
#include "platform/ads/entities.h"
#include "platform/scope/temporary_value.h"

namespace hostcad::lisp {

size_t Heap::used = 0;
size_t Heap::limit = size_t{2} << 30;

void Heap::expect(size_t bytes) {
    if (bytes > limit || used > limit - bytes) throw Error("insufficient memory");
}

void Heap::charge(size_t bytes) {
    expect(bytes);
    used += bytes;
}

namespace {

struct StringCell : Cell {
    std::string text;
};

struct NameCell : Cell {
    ads_name name;
};

struct CaughtCell : Cell {
    std::string message;
};

template <typename T>
T* make(size_t more = 0) {
    Heap::charge(sizeof(T) + more);
    return new T;
}

template <typename T>
void dispose(Cell* cell, size_t more = 0) {
    Heap::discharge(sizeof(T) + more);
    delete static_cast<T*>(cell);
}

using SetKey = std::pair<long, long>;

// Selection sets that some value names, so that a set that comes back from a module finds its own cell.
std::map<SetKey, NameCell*>& liveSets() {
    static auto* sets = new std::map<SetKey, NameCell*>;
    return *sets;
}

void freeSet(NameCell* cell) {
    liveSets().erase({cell->name[0], cell->name[1]});
    acedSSFree(cell->name);
}

void disposeNow(Type type, Cell* cell) {
    switch (type) {
        case Type::String:
            dispose<StringCell>(cell, static_cast<StringCell*>(cell)->text.capacity());
            break;
        case Type::Pair:
            dispose<Pair>(cell);
            break;
        case Type::Entity:
            dispose<NameCell>(cell);
            break;
        case Type::SelectionSet:
            freeSet(static_cast<NameCell*>(cell));
            dispose<NameCell>(cell);
            break;
        case Type::Function:
            dispose<FunctionCell>(cell);
            break;
        case Type::External:
            dispose<ExternalCell>(cell);
            break;
        case Type::File:
            dispose<FileCell>(cell);
            break;
        case Type::Caught:
            dispose<CaughtCell>(cell);
            break;
        default:
            break;
    }
}

// Cells whose turn it is to go. Disposing of one may add more, which the outermost call takes up.
std::vector<std::pair<Type, Cell*>>& doomed() {
    static auto* cells = new std::vector<std::pair<Type, Cell*>>;
    return *cells;
}

}  // namespace

void Value::destroy() noexcept {
    if (type_ != Type::Pair && type_ != Type::Function && type_ != Type::External) {
        disposeNow(type_, data_.cell);
        return;
    }
    static bool disposing = false;
    auto& cells = doomed();
    cells.emplace_back(type_, data_.cell);
    if (disposing) return;
    scope::TemporaryValue now(disposing, true);
    while (!cells.empty()) {
        auto [type, cell] = cells.back();
        cells.pop_back();
        disposeNow(type, cell);
    }
}

Symbol* Symbol::truth() {
    static Symbol* const symbol = [] {
        auto* made = new Symbol{"T", {}, true};
        made->value = Value::symbol(made);
        return made;
    }();
    return symbol;
}

Value Value::string(std::string text) {
    auto* cell = make<StringCell>(text.capacity());
    size_t charged = text.capacity();
    cell->text = std::move(text);
    Heap::used += cell->text.capacity() - charged;
    return {Type::String, cell};
}

Value Value::pair(Value car, Value cdr, std::uint32_t source) {
    auto* cell = make<Pair>();
    cell->source = source;
    cell->car = std::move(car);
    cell->cdr = std::move(cdr);
    return {Type::Pair, cell};
}

Value Value::entity(const ads_name name) {
    auto* cell = make<NameCell>();
    ads_name_set(name, cell->name);
    return {Type::Entity, cell};
}

Value Value::selectionSet(const ads_name name) {
    auto found = liveSets().find({name[0], name[1]});
    if (found != liveSets().end()) {
        ++found->second->references;
        return {Type::SelectionSet, found->second};
    }
    auto* cell = make<NameCell>();
    ads_name_set(name, cell->name);
    liveSets().emplace(SetKey{name[0], name[1]}, cell);
    return {Type::SelectionSet, cell};
}

Value Value::function(FunctionCell* cell) {
    Heap::used += sizeof *cell;
    return {Type::Function, cell};
}

Value Value::external(std::string name, ExternalFunction function) {
    auto* cell = make<ExternalCell>();
    cell->name = std::move(name);
    cell->function = std::move(function);
    return {Type::External, cell};
}

Value Value::file(std::FILE* stream, std::string path) {
    auto* cell = make<FileCell>();
    cell->stream = stream;
    cell->path = std::move(path);
    return {Type::File, cell};
}

Value Value::caught(std::string message) {
    auto* cell = make<CaughtCell>();
    cell->message = std::move(message);
    return {Type::Caught, cell};
}

Value Value::list(std::vector<Value> items, Value tail) {
    for (size_t i = items.size(); i-- > 0;) tail = pair(std::move(items[i]), std::move(tail));
    return tail;
}

Value Value::point(const double* coordinates, int dimensions) {
    Value list;
    for (int i = dimensions; i-- > 0;) list = pair(real(coordinates[i]), std::move(list));
    return list;
}

const std::string& Value::asString() const {
    return static_cast<const StringCell*>(data_.cell)->text;
}
const long* Value::asName() const {
    return static_cast<const NameCell*>(data_.cell)->name;
}
const FunctionCell& Value::asFunction() const {
    return *static_cast<const FunctionCell*>(data_.cell);
}
const ExternalCell& Value::asExternal() const {
    return *static_cast<const ExternalCell*>(data_.cell);
}
FileCell& Value::asFile() const {
    return *static_cast<FileCell*>(data_.cell);
}
const std::string& Value::caughtMessage() const {
    return static_cast<const CaughtCell*>(data_.cell)->message;
}

const Value& Value::car() const {
    static const Value nil;
    return isPair() ? asPair().car : nil;
}

const Value& Value::cdr() const {
    static const Value nil;
    return isPair() ? asPair().cdr : nil;
}

bool Value::isSame(const Value& other) const {
    if (type_ != other.type_) return false;
    switch (type_) {
        case Type::Nil:
            return true;
        case Type::Symbol:
            return data_.symbol == other.data_.symbol;
        case Type::Integer:
            return data_.integer == other.data_.integer;
        case Type::Real:
            return data_.real == other.data_.real;
        case Type::Builtin:
            return data_.builtin == other.data_.builtin;
        case Type::String:
            return asString() == other.asString();
        case Type::Entity:
            return ads_name_equal(asName(), other.asName());
        default:
            return data_.cell == other.data_.cell;
    }
}

void FileCell::close() {
    if (stream) std::fclose(stream);
    stream = nullptr;
}

}  // namespace hostcad::lisp
