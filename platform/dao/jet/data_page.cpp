#include "platform/dao/jet/data_page.h"

#include "platform/dao/jet/invariants.h"

namespace jet {
namespace {

constexpr uint16_t kStartMask = 0x1FFF;
constexpr int kKindShift = 14;
constexpr size_t kMostSlots = 255;
constexpr size_t kFreeAt = 2;

uint16_t slotWord(SlotKind kind, size_t start) {
    return static_cast<uint16_t>(static_cast<unsigned>(kind) << kKindShift | start);
}

// Whether all rows lie one behind the other, and the page tells how much room they leave.
bool isInOrder(const Format& format, ByteView page) {
    try {
        DataPage data(format, page);
        for (size_t i = 0; i < data.slots(); ++i) data.slot(i);
        return page.u16(kFreeAt) == data.freeBytes();
    } catch (const DamagedError&) {
        return false;
    }
}

// The bytes of all rows but one; of a page that is in order.
Bytes rowsBut(size_t slot, const Format& format, ByteView page) {
    ByteWriter rows;
    DataPage data(format, page);
    for (size_t i = 0; i < data.slots(); ++i)
        if (i != slot) rows.put(data.row(i));
    return std::move(rows.bytes);
}

// Makes the row of a slot longer or shorter; the rows behind it (lower in the page) move.
void resize(const Format& format, ByteSpan page, size_t slot, size_t size) {
    DataPage data(format, page);
    Slot old = data.slot(slot);
    size_t lowest = data.slot(data.slots() - 1).start;
    // Rows grow downward: the new start is where the row still ends where it ended.
    size_t start = old.end - size;
    page.move(lowest + start - old.start, lowest, old.start - lowest);
    for (size_t i = slot; i < data.slots(); ++i) {
        size_t at = format.rowTableAt + 2 * i;
        uint16_t word = page.view().u16(at);
        size_t moved = (word & kStartMask) + start - old.start;
        page.setU16(at, static_cast<uint16_t>((word & ~kStartMask) | moved));
    }
    page.setU16(kFreeAt, static_cast<uint16_t>(DataPage(format, page).freeBytes()));
}

}  // namespace

DataPage::DataPage(const Format& format, ByteView page)
    : format_(format), page_(page), slots_(page.u16(format.rowCountAt)) {
    if (format.rowTableAt + 2 * slots_ > page.size()) damaged("a page has too many rows");
}

Slot DataPage::slot(size_t number) const {
    if (number >= slots_) damaged("a row does not exist");
    size_t at = format_.rowTableAt + 2 * number;
    uint16_t word = page_.u16(at);
    Slot slot{static_cast<SlotKind>(word >> kKindShift), static_cast<size_t>(word & kStartMask),
              page_.size()};
    if (number > 0) slot.end = page_.u16(at - 2) & kStartMask;
    if (slot.start > slot.end || slot.end > page_.size() || slot.start < format_.rowTableAt + 2 * slots_)
        damaged("a row lies outside its page");
    return slot;
}

size_t DataPage::freeBytes() const {
    size_t lowest = slots_ == 0 ? page_.size() : slot(slots_ - 1).start;
    size_t tableEnd = format_.rowTableAt + 2 * slots_;
    return lowest > tableEnd ? lowest - tableEnd : 0;
}

bool DataPage::takes(size_t size) const {
    return slots_ < kMostSlots && freeBytes() >= size + 2;
}

bool DataPage::inUse() const {
    for (size_t i = 0; i < slots_; ++i)
        if (slot(i).kind != SlotKind::kDeleted) return true;
    return false;
}

RowId readPointer(ByteView bytes) {
    return {bytes.u24(1), bytes.u8(0)};
}
void writePointer(ByteWriter& out, RowId row) {
    out.u8(row.slot);
    out.u24(row.page);
}

void initDataPage(const Format& format, ByteSpan page, uint32_t owner) {
    page.fill(0, page.size(), 0);
    page.setU8(0, static_cast<uint8_t>(PageType::kData));
    page.setU8(1, 1);
    page.setU16(kFreeAt, static_cast<uint16_t>(page.size() - format.rowTableAt));
    page.setU32(4, owner);
}

uint8_t addRow(const Format& format, ByteSpan page, ByteView row, SlotKind kind) {
    StaysTrue inOrder([&] { return isInOrder(format, page); });
    DataPage data(format, page);
    if (!data.takes(row.size())) damaged("a page has less room than was thought");
    size_t slots = data.slots();
    size_t lowest = slots == 0 ? page.size() : data.slot(slots - 1).start;
    size_t start = lowest - row.size();
    page.set(start, row);
    page.setU16(format.rowTableAt + 2 * slots, slotWord(kind, start));
    page.setU16(format.rowCountAt, static_cast<uint16_t>(slots + 1));
    page.setU16(kFreeAt, static_cast<uint16_t>(start - format.rowTableAt - 2 * (slots + 1)));
    return static_cast<uint8_t>(slots);
}

bool takesReplacement(const Format& format, ByteView page, size_t slot, size_t size) {
    DataPage data(format, page);
    size_t old = data.slot(slot).size();
    return size <= old || size - old <= data.freeBytes();
}

void replaceRow(const Format& format, ByteSpan page, size_t slot, ByteView row, SlotKind kind) {
    StaysTrue inOrder([&] { return isInOrder(format, page); });
    bool checked = kAsserts && isInOrder(format, page);
    Bytes others = checked ? rowsBut(slot, format, page) : Bytes();
    if (DataPage(format, page).slot(slot).size() != row.size()) resize(format, page, slot, row.size());
    size_t start = DataPage(format, page).slot(slot).start;
    page.set(start, row);
    page.setU16(format.rowTableAt + 2 * slot, slotWord(kind, start));
    assert(!checked || rowsBut(slot, format, page) == others);
}

void deleteRow(const Format& format, ByteSpan page, size_t slot) {
    replaceRow(format, page, slot, {}, SlotKind::kDeleted);
}

}  // namespace jet
