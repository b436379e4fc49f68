// A selection set: entities in the order in which they were selected, none of them twice.
#pragma once

#include <cstddef>
#include <unordered_map>
#include <vector>

#include "hostcad/drawing/drawing.h"

namespace hostcad {

class SelectionSet {
  public:
    size_t size() const { return slotOf_.size(); }
    bool contains(ObjectId id) const { return slotOf_.count(id) != 0; }
    // False when it was a member already.
    bool add(ObjectId id);
    // False when it was none.
    bool remove(ObjectId id);
    // The member at an index from 0, which must be below size(). Walking up or down takes constant time a
    // step, also when members are removed on the way.
    ObjectId at(size_t index) const;
    std::vector<ObjectId> members() const;

  private:
    void compact();

    std::vector<ObjectId> slots_;  // 0 where a member was removed
    std::unordered_map<ObjectId, size_t> slotOf_;
    // Where the last index led to, as the next is mostly near: the slot, and the members in front of it.
    mutable size_t cursorSlot_ = 0;
    mutable size_t cursorIndex_ = 0;
};

}  // namespace hostcad
