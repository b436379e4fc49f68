// A variable that has another value for the length of a block.
#pragma once

#include <utility>

namespace scope {

// Sets a variable, and gives it its old value back at the end of the block, also where that is left by an
// exception. The variable must live longer.
template <class T>
class TemporaryValue {
  public:
    TemporaryValue(T& variable, T value)
        : variable_(variable), old_(std::exchange(variable, std::move(value))) {}
    ~TemporaryValue() { variable_ = std::move(old_); }
    TemporaryValue(const TemporaryValue&) = delete;
    TemporaryValue& operator=(const TemporaryValue&) = delete;

  private:
    T& variable_;
    T old_;
};

}  // namespace scope
