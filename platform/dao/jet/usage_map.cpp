#include "platform/dao/jet/usage_map.h"

#include <algorithm>

#include "platform/dao/jet/invariants.h"

namespace jet {
namespace {

constexpr uint8_t kInline = 0, kReferenced = 1;
constexpr size_t kWindowAt = 1, kInlineBitsAt = 5, kBitmapAt = 4;

uint32_t pagesOfBitmap(const Format& format) {
    return static_cast<uint32_t>((format.pageSize - kBitmapAt) * 8);
}

}  // namespace

ByteView UsageMap::bytes(const PagePtr& page) const {
    ByteView row = DataPage(file_.format(), page->view()).row(row_.slot);
    if (row.size() < kInlineBitsAt || row.u8(0) > kReferenced) damaged("a usage map is of no known kind");
    return row;
}

void UsageMap::forEachPart(const std::function<void(uint32_t, ByteView)>& visit) const {
    if (!exists()) return;
    PagePtr page = this->page();
    ByteView row = bytes(page);
    if (row.u8(0) == kInline) return visit(row.u32(kWindowAt), row.from(kInlineBitsAt));
    uint32_t covered = pagesOfBitmap(file_.format());
    for (size_t i = 0; kWindowAt + 4 * i + 4 <= row.size(); ++i) {
        uint32_t bitmap = row.u32(kWindowAt + 4 * i);
        if (bitmap == 0) continue;
        PagePtr bits = file_.page(bitmap, PageType::kBitmap);
        visit(static_cast<uint32_t>(i) * covered, bits->view().from(kBitmapAt));
    }
}

std::vector<uint32_t> UsageMap::pages() const {
    std::vector<uint32_t> pages;
    uint32_t end = file_.pageCount();
    forEachPart([&](uint32_t first, ByteView bits) {
        for (size_t byte = 0; byte < bits.size(); ++byte) {
            uint8_t value = bits.u8(byte);
            for (uint32_t bit = 0; value; ++bit, value >>= 1) {
                uint64_t page = uint64_t{first} + 8 * byte + bit;
                if ((value & 1) && page < end) pages.push_back(static_cast<uint32_t>(page));
            }
        }
    });
    return pages;
}

bool UsageMap::contains(uint32_t page) const {
    bool found = false;
    forEachPart([&](uint32_t first, ByteView bits) {
        if (page < first || (page - first) / 8 >= bits.size()) return;
        found = found || (bits.u8((page - first) / 8) >> ((page - first) % 8) & 1);
    });
    return found;
}

std::vector<uint32_t> UsageMap::bitmapPages() const {
    std::vector<uint32_t> pages;
    if (!exists()) return pages;
    PagePtr page = this->page();
    ByteView row = bytes(page);
    if (row.u8(0) == kReferenced)
        for (size_t at = kWindowAt; at + 4 <= row.size(); at += 4)
            if (row.u32(at) != 0) pages.push_back(row.u32(at));
    return pages;
}

bool UsageMap::isInline() const {
    return bytes(page()).u8(0) == kInline;
}

uint32_t UsageMap::inlineEnd() const {
    PagePtr page = this->page();
    ByteView row = bytes(page);
    return row.u32(kWindowAt) + static_cast<uint32_t>(8 * (row.size() - kInlineBitsAt));
}

void UsageMap::setInRow(size_t byte, uint8_t mask, bool member) {
    ByteSpan page = file_.writable(row_.page);
    size_t at = DataPage(file_.format(), page).slot(row_.slot).start + byte;
    uint8_t old = page.view().u8(at);
    page.setU8(at, static_cast<uint8_t>(member ? old | mask : old & ~mask));
}

void UsageMap::set(uint32_t page, bool member, const std::function<uint32_t()>& newPage) {
    if (!exists()) damaged("a usage map is missing");
    PagePtr holder = this->page();
    ByteView row = bytes(holder);
    auto mask = static_cast<uint8_t>(1u << (page % 8));
    if (row.u8(0) == kInline) {
        uint32_t first = row.u32(kWindowAt);
        size_t bits = 8 * (row.size() - kInlineBitsAt);
        if (page >= first && page - first < bits) {
            auto bit = static_cast<uint8_t>(1u << ((page - first) % 8));
            return setInRow(kInlineBitsAt + (page - first) / 8, bit, member);
        }
        if (!member) return;
        if (!moveWindow(page)) makeReferenced(newPage);
        return set(page, member, newPage);
    }
    uint32_t covered = pagesOfBitmap(file_.format());
    size_t at = kWindowAt + size_t{4} * (page / covered);
    if (at + 4 > row.size()) throw Error("The database has reached the largest size of its format.");
    uint32_t bitmap = row.u32(at);
    if (bitmap == 0) {
        if (!member) return;
        bitmap = newPage();
        ByteSpan fresh = file_.writable(bitmap);
        fresh.fill(0, fresh.size(), 0);
        fresh.setU8(0, static_cast<uint8_t>(PageType::kBitmap));
        fresh.setU8(1, 1);
        ByteSpan map = file_.writable(row_.page);
        map.setU32(DataPage(file_.format(), map).slot(row_.slot).start + at, bitmap);
    }
    file_.page(bitmap, PageType::kBitmap);
    ByteSpan bits = file_.writable(bitmap);
    size_t byte = kBitmapAt + page % covered / 8;
    uint8_t old = bits.view().u8(byte);
    bits.setU8(byte, static_cast<uint8_t>(member ? old | mask : old & ~mask));
}

// A map that is empty can begin anywhere.
bool UsageMap::moveWindow(uint32_t page) {
    PagePtr holder = this->page();
    ByteView row = bytes(holder);
    for (size_t at = kInlineBitsAt; at < row.size(); ++at)
        if (row.u8(at) != 0) return false;
    ByteSpan map = file_.writable(row_.page);
    map.setU32(DataPage(file_.format(), map).slot(row_.slot).start + kWindowAt, page & ~31u);
    return true;
}

void UsageMap::makeReferenced(const std::function<uint32_t()>& newPage) {
    std::vector<uint32_t> members = pages();
    ByteSpan map = file_.writable(row_.page);
    Slot slot = DataPage(file_.format(), map).slot(row_.slot);
    map.fill(slot.start, slot.size(), 0);
    map.setU8(slot.start, kReferenced);
    for (uint32_t member : members) set(member, true, newPage);
}

bool UsageMap::lengthen(uint32_t membersFrom) {
    constexpr size_t kStep = 32;
    PagePtr holder = this->page();
    Bytes longer = bytes(holder).copy();
    uint32_t end = inlineEnd();
    if (!takesReplacement(file_.format(), holder->view(), row_.slot, longer.size() + kStep)) return false;
    for (uint32_t i = 0; i < kStep; ++i) {
        uint8_t byte = 0;
        for (uint32_t bit = 0; bit < 8; ++bit)
            if (end + 8 * i + bit >= membersFrom) byte = static_cast<uint8_t>(byte | 1u << bit);
        longer.push_back(byte);
    }
    replaceRow(file_.format(), file_.writable(row_.page), row_.slot, longer, SlotKind::kRow);
    return true;
}

Bytes UsageMap::empty(const Format& format) {
    return Bytes(format.usageMapRow);
}

const std::vector<uint32_t>& Allocator::freePages() {
    if (generation_ != file_.generation()) {
        free_ = map_.pages();
        // The first pages of a file are never free, whatever the map says.
        std::erase_if(free_, [](uint32_t page) { return page <= kRelationsPage; });
        generation_ = file_.generation();
    }
    return free_;
}

uint32_t Allocator::take(uint32_t behind) {
    freePages();
    auto it = std::upper_bound(free_.begin(), free_.end(), behind);
    // Order is worth an eighth of the file, not more.
    constexpr size_t kShare = 8;
    if (it == free_.end() && free_.size() > file_.pageCount() / kShare) it = free_.begin();
    if (it == free_.end()) return append();
    uint32_t page = *it;
    free_.erase(it);
    map_.set(page, false, {});
    assert(!map_.contains(page));
    return page;
}

// Pages behind the end of the file count as free where the map speaks of them.
uint32_t Allocator::append() {
    uint32_t page = file_.append();
    while (map_.isInline() && page >= map_.inlineEnd())
        if (!map_.lengthen(page)) break;
    map_.set(page, false, {});
    return page;
}

void Allocator::give(uint32_t page) {
    if (isFree(page)) return;
    map_.set(page, true, [this] { return append(); });
    assert(map_.contains(page));
    free_.insert(std::lower_bound(free_.begin(), free_.end(), page), page);
}

bool Allocator::isFree(uint32_t page) {
    freePages();
    assert(std::adjacent_find(free_.begin(), free_.end(), std::greater_equal<>()) == free_.end());
    return std::binary_search(free_.begin(), free_.end(), page);
}

}  // namespace jet
