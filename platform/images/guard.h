// A call into a library that leaves by a jump where it fails.
#pragma once

#include <csetjmp>

namespace images {

class JumpGuard {
  public:
    // Runs a step; false when it was left by leave(). The step keeps nothing on its own stack that has a
    // destructor, since that would not run.
    template <typename Step>
    bool run(const Step& step) {
        if (setjmp(point_)) return false;
        step();
        return true;
    }
    // From within the step, however deep.
    [[noreturn]] void leave() { std::longjmp(point_, 1); }

  private:
    std::jmp_buf point_;
};

}  // namespace images
