// Where the values of groups live: memory that only grows and is released as a whole.
#pragma once

#include <array>
#include <memory>
#include <vector>

#include "hostcad/drawing/group.h"

namespace hostcad {

class GroupArena {
  public:
    GroupArena() = default;
    GroupArena(const GroupArena&) = delete;
    GroupArena& operator=(const GroupArena&) = delete;

    // Groups whose values are copied into the arena. A text that was stored a short while ago is shared.
    Group text(int code, std::string_view value);
    Group point(int code, double x, double y);
    Group point(int code, double x, double y, double z);
    Group binary(int code, std::string_view bytes);

    // A copy of the groups in the arena; their values must be in the arena already.
    Groups store(Groups groups);

    // Bytes taken from the system.
    size_t footprint() const { return footprint_; }

  private:
    void* allocate(size_t bytes, size_t alignment);

    std::vector<std::unique_ptr<char[]>> blocks_;
    char* free_ = nullptr;
    char* end_ = nullptr;
    size_t footprint_ = 0;
    std::array<std::string_view, 4096> recent_{};
};

}  // namespace hostcad
