// Places for rows on the pages of one owner: the pages it owns, and those of them that have room.
#pragma once

#include "platform/dao/jet/store.h"

namespace jet {

class RowSpace {
  public:
    // owner: the page of a table definition, or kLongValueOwner.
    RowSpace(Store& store, uint32_t owner, RowId owned, RowId room)
        : store_(store), owner_(owner), owned_(store.file, owned), room_(store.file, room) {}

    // Puts a row on a page and gives its identity. New rows go behind all older ones as long as not too much
    // room is left over in front of them, so that rows are read in the order in which they were added.
    RowId add(ByteView row, SlotKind kind = SlotKind::kRow);
    // Takes a row away, and the page with it when nothing is left on it.
    void remove(RowId row);
    // To be called when rows of a page have become longer or shorter.
    void noteRoom(uint32_t page);

    const std::vector<uint32_t>& pages();

  private:
    void refresh();
    bool takes(uint32_t page, size_t size) const;
    uint32_t newPage();
    void setRoom(uint32_t page, bool has);

    Store& store_;
    uint32_t owner_;
    UsageMap owned_, room_;

    // What the maps say, kept as long as the file's generation.
    uint64_t generation_ = 0;
    std::vector<uint32_t> pages_;
    std::vector<uint32_t> withRoom_;
};

}  // namespace jet
