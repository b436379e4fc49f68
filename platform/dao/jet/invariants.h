// What debug builds check of our own work.
//
// A file may be damaged, and so nothing is asserted of what stands in it. What is asserted is that a change
// leaves in order what it has found in order.
#pragma once

#include <cassert>
#include <exception>
#include <utility>

namespace jet {

#ifdef NDEBUG
inline constexpr bool kAsserts = false;
#else
inline constexpr bool kAsserts = true;
#endif

// Asserts at the end of a block what held at its beginning. A block that an exception ends is passed over:
// what it has changed is undone. The condition must not throw.
template <typename Condition>
class StaysTrue {
  public:
    explicit StaysTrue(Condition condition)
        : condition_(std::move(condition)), held_(kAsserts && condition_()) {}
    ~StaysTrue() { assert(!held_ || std::uncaught_exceptions() > exceptions_ || condition_()); }
    StaysTrue(const StaysTrue&) = delete;
    StaysTrue& operator=(const StaysTrue&) = delete;

  private:
    Condition condition_;
    bool held_;
    int exceptions_ = std::uncaught_exceptions();
};

}  // namespace jet
