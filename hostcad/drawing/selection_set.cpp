#include "hostcad/drawing/selection_set.h"

#include <algorithm>

namespace hostcad {

bool SelectionSet::add(ObjectId id) {
    if (!slotOf_.emplace(id, slots_.size()).second) return false;
    slots_.push_back(id);
    return true;
}

bool SelectionSet::remove(ObjectId id) {
    auto found = slotOf_.find(id);
    if (found == slotOf_.end()) return false;
    if (found->second < cursorSlot_) --cursorIndex_;
    slots_[found->second] = kNoObject;
    slotOf_.erase(found);
    if (slots_.size() > 64 && slots_.size() > 4 * slotOf_.size()) compact();
    return true;
}

ObjectId SelectionSet::at(size_t index) const {
    // The cursor may stand on a slot that was emptied: then it means the next member behind it.
    while (cursorIndex_ > index) {
        --cursorSlot_;
        if (slots_[cursorSlot_]) --cursorIndex_;
    }
    while (!slots_[cursorSlot_] || cursorIndex_ < index) {
        if (slots_[cursorSlot_]) ++cursorIndex_;
        ++cursorSlot_;
    }
    return slots_[cursorSlot_];
}

std::vector<ObjectId> SelectionSet::members() const {
    std::vector<ObjectId> ids;
    ids.reserve(size());
    std::copy_if(slots_.begin(), slots_.end(), std::back_inserter(ids),
                 [](ObjectId id) { return id != kNoObject; });
    return ids;
}

void SelectionSet::compact() {
    slots_ = members();
    for (size_t i = 0; i < slots_.size(); ++i) slotOf_[slots_[i]] = i;
    cursorSlot_ = cursorIndex_ = 0;
}

}  // namespace hostcad
