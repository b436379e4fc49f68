// The arguments of a call of a built-in or external function.
#pragma once

#include <memory>
#include <span>
#include <string>

#include "hostcad/lisp/error.h"
#include "hostcad/lisp/value.h"

namespace hostcad::lisp {

// A point of two or three coordinates.
struct Point {
    double at[3] = {0, 0, 0};
    int dimensions = 3;
};

// Reads a list of two or three numbers. False when the value is none.
bool readPoint(const Value& value, Point& point);

[[noreturn]] void throwBadType(const char* expected, const Value& value);

// Each accessor throws the dialect's error when the argument is of another type. An index behind the last
// argument gives nil.
class Arguments {
  public:
    explicit Arguments(std::span<const Value> values) : values_(values) {}

    size_t size() const { return values_.size(); }
    bool has(size_t i) const { return i < values_.size() && !values_[i].isNil(); }
    const Value& operator[](size_t i) const;
    auto begin() const { return values_.begin(); }
    auto end() const { return values_.end(); }
    Arguments behind(size_t count) const {
        return Arguments(values_.subspan(std::min(count, values_.size())));
    }

    std::int32_t integer(size_t i) const;
    double number(size_t i) const;
    const std::string& string(size_t i) const;
    Symbol* symbol(size_t i) const;
    const Value& list(size_t i) const;
    const long* entity(size_t i) const;
    const long* selectionSet(size_t i) const;
    FileCell& file(size_t i) const;  // an open one
    Point point(size_t i) const;

    std::int32_t integerOr(size_t i, std::int32_t other) const { return has(i) ? integer(i) : other; }

  private:
    std::span<const Value> values_;
};

// Room for arguments that are being evaluated: a few in place, more on the heap.
class ArgumentBuffer {
  public:
    ArgumentBuffer() = default;
    ArgumentBuffer(const ArgumentBuffer&) = delete;
    ArgumentBuffer& operator=(const ArgumentBuffer&) = delete;

    void add(Value value);
    void resize(size_t size);
    size_t size() const { return size_; }
    Value& operator[](size_t i) { return data()[i]; }
    Arguments view() const { return Arguments({data(), size_}); }

  private:
    static constexpr size_t kInPlace = 5;
    Value* data() { return more_.empty() ? inPlace_ : more_.data(); }
    const Value* data() const { return more_.empty() ? inPlace_ : more_.data(); }

    Value inPlace_[kInPlace];
    std::vector<Value> more_;
    size_t size_ = 0;
};

}  // namespace hostcad::lisp
