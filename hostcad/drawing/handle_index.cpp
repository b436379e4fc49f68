#include "hostcad/drawing/handle_index.h"

#include <bit>

namespace hostcad {

size_t HandleIndex::slotOf(uint64_t handle) const {
    // Handles are mostly numbered in the order of the file: neighbours share a run of slots, so that most
    // look-ups find their memory in the cache. The runs are scattered.
    constexpr int kRunBits = 6;
    size_t mask = entries_.size() - 1;
    uint64_t run = (handle >> kRunBits) * 0x9E3779B97F4A7C15u;
    size_t slot = ((run >> 32) << kRunBits | (handle & ((1u << kRunBits) - 1))) & mask;
    while (entries_[slot].handle && entries_[slot].handle != handle) slot = (slot + 1) & mask;
    return slot;
}

uint32_t HandleIndex::find(uint64_t handle) const {
    return handle && !entries_.empty() ? entries_[slotOf(handle)].id : 0;
}

bool HandleIndex::insert(uint64_t handle, uint32_t id) {
    if (!handle) return false;
    if ((used_ + 1) * 4 > entries_.size() * 3) grow(entries_.empty() ? 1024 : entries_.size() * 2);
    Entry& entry = entries_[slotOf(handle)];
    if (entry.handle) return false;
    entry = {handle, id};
    ++used_;
    return true;
}

void HandleIndex::reserve(size_t handles) {
    size_t slots = std::bit_ceil(handles * 4 / 3 + 1);
    if (slots > entries_.size()) grow(slots);
}

void HandleIndex::grow(size_t slots) {
    std::vector<Entry> old(slots);
    old.swap(entries_);
    for (const Entry& entry : old)
        if (entry.handle) entries_[slotOf(entry.handle)] = entry;
}

}  // namespace hostcad
