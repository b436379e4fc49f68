// The progress meter in the host's status bar.
#pragma once

#include <string>

namespace norvane {

// The meter of a walk over many entities. It is shown only for more than 150 of them, and moves after each
// 150. It ends with the block.
class ProgressMeter {
  public:
    ProgressMeter(const std::string& label, long total);
    ~ProgressMeter();
    ProgressMeter(const ProgressMeter&) = delete;
    ProgressMeter& operator=(const ProgressMeter&) = delete;

    // One more entity is done.
    void advance();

  private:
    long end_ = 0;  // of the meter's range; 0: it is not shown
    long done_ = 0;
};

}  // namespace norvane
