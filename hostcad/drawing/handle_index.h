// Finds objects by their handle: a hash table with open addressing of (handle, id) pairs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace hostcad {

class HandleIndex {
  public:
    // The id of a handle, or 0.
    uint32_t find(uint64_t handle) const;
    // Enters a handle that is not 0. False when it has an id already, which stays.
    bool insert(uint64_t handle, uint32_t id);
    // Makes room for so many handles in all.
    void reserve(size_t handles);
    size_t size() const { return used_; }

  private:
    struct Entry {
        uint64_t handle = 0;
        uint32_t id = 0;
    };
    size_t slotOf(uint64_t handle) const;
    void grow(size_t slots);

    std::vector<Entry> entries_;  // a power of two, at most three quarters full
    size_t used_ = 0;
};

}  // namespace hostcad
