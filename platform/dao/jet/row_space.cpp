#include "platform/dao/jet/row_space.h"

#include <algorithm>

#include "platform/dao/jet/invariants.h"

namespace jet {
namespace {

void insertSorted(std::vector<uint32_t>& pages, uint32_t page) {
    auto it = std::lower_bound(pages.begin(), pages.end(), page);
    if (it == pages.end() || *it != page) pages.insert(it, page);
}
void eraseSorted(std::vector<uint32_t>& pages, uint32_t page) {
    auto it = std::lower_bound(pages.begin(), pages.end(), page);
    if (it != pages.end() && *it == page) pages.erase(it);
}

}  // namespace

void RowSpace::refresh() {
    if (generation_ == store_.file.generation()) return;
    pages_ = owned_.pages();
    withRoom_ = room_.pages();
    generation_ = store_.file.generation();
}

const std::vector<uint32_t>& RowSpace::pages() {
    refresh();
    return pages_;
}

bool RowSpace::takes(uint32_t page, size_t size) const {
    PagePtr held = store_.file.page(page, PageType::kData);
    DataPage data(store_.format, held->view());
    if (data.owner() != owner_) damaged("page " + std::to_string(page) + " belongs to another table");
    return data.takes(size);
}

RowId RowSpace::add(ByteView row, SlotKind kind) {
    refresh();
    uint32_t page = 0;
    if (!pages_.empty() && takes(pages_.back(), row.size())) {
        page = pages_.back();
    } else {
        // The end of a page that was too short for a row is no gap.
        if (!pages_.empty()) setRoom(pages_.back(), false);
        // Gaps are filled when a quarter of the pages has some.
        constexpr size_t kShare = 4;
        if (withRoom_.size() > pages_.size() / kShare + 1)
            for (uint32_t candidate : withRoom_)
                if (takes(candidate, row.size())) {
                    page = candidate;
                    break;
                }
        if (page == 0) page = newPage();
    }
    uint8_t slot = addRow(store_.format, store_.file.writable(page), row, kind);
    noteRoom(page);
    return {page, slot};
}

uint32_t RowSpace::newPage() {
    uint32_t page = store_.allocator.take(pages_.empty() ? 0 : pages_.back());
    initDataPage(store_.format, store_.file.writable(page), owner_);
    owned_.set(page, true, [this] { return store_.allocator.take(); });
    insertSorted(pages_, page);
    assert(owned_.contains(page) && !store_.allocator.isFree(page));
    return page;
}

void RowSpace::setRoom(uint32_t page, bool has) {
    if (std::binary_search(withRoom_.begin(), withRoom_.end(), page) == has) return;
    room_.set(page, has, [this] { return store_.allocator.take(); });
    if (has)
        insertSorted(withRoom_, page);
    else
        eraseSorted(withRoom_, page);
}

void RowSpace::noteRoom(uint32_t page) {
    refresh();
    PagePtr held = store_.file.page(page, PageType::kData);
    setRoom(page, DataPage(store_.format, held->view()).freeBytes() >= store_.format.leastRoom);
}

void RowSpace::remove(RowId row) {
    refresh();
    ByteSpan page = store_.file.writable(row.page);
    deleteRow(store_.format, page, row.slot);
    if (DataPage(store_.format, page).inUse() || !owned_.contains(row.page)) {
        if (owned_.contains(row.page)) noteRoom(row.page);
        return;
    }
    setRoom(row.page, false);
    owned_.set(row.page, false, {});
    eraseSorted(pages_, row.page);
    store_.allocator.give(row.page);
    assert(!owned_.contains(row.page) && store_.allocator.isFree(row.page));
}

}  // namespace jet
