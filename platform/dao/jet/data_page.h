// A page of rows: table rows, pieces of long values, or usage maps.
//
// The table of slots grows from the front, the rows from the end of the page. A slot says where its row
// begins; the row ends where the row of the slot before begins. A slot keeps its number for ever, since the
// page and the slot are the identity of a row.
#pragma once

#include "platform/dao/jet/bytes.h"
#include "platform/dao/jet/format.h"

namespace jet {

struct RowId {
    uint32_t page = 0;
    uint8_t slot = 0;
    bool operator==(const RowId&) const = default;
    auto operator<=>(const RowId&) const = default;
    // The identity as one number.
    uint32_t number() const { return page << 8 | slot; }
    static RowId fromNumber(uint32_t number) { return {number >> 8, static_cast<uint8_t>(number)}; }
    // The next place at which a row may be.
    RowId following() const { return fromNumber(number() + 1); }
};

// What a slot holds.
enum class SlotKind : uint8_t {
    kRow = 0,
    kMovedBody = 2,  // a row that is reached through the slot that it had first
    kPointer = 1,    // where the row of this slot has gone
    kDeleted = 3,
};

struct Slot {
    SlotKind kind;
    size_t start, end;
    size_t size() const { return end - start; }
};

// The owners of pages that belong to no table.
inline constexpr uint32_t kMapOwner = 0;
inline constexpr uint32_t kGlobalMapOwner = 1;
inline constexpr uint32_t kLongValueOwner = 0x4C41564C;  // "LVAL"

class DataPage {
  public:
    DataPage(const Format& format, ByteView page);

    uint32_t owner() const { return page_.u32(4); }
    size_t slots() const { return slots_; }
    // Throws where the slot does not exist or lies about its row.
    Slot slot(size_t number) const;
    ByteView bytes(const Slot& slot) const { return page_.part(slot.start, slot.size()); }
    ByteView row(size_t number) const { return bytes(slot(number)); }
    // Room for rows and their slots.
    size_t freeBytes() const;
    bool takes(size_t size) const;
    // Whether any slot still holds something.
    bool inUse() const;

  private:
    const Format& format_;
    ByteView page_;
    size_t slots_;
};

// The row that a pointer slot points to, or a pointer in the chain of a long value.
RowId readPointer(ByteView bytes);
void writePointer(ByteWriter& out, RowId row);

void initDataPage(const Format& format, ByteSpan page, uint32_t owner);
// Adds a row that the page takes, and gives its slot.
uint8_t addRow(const Format& format, ByteSpan page, ByteView row, SlotKind kind = SlotKind::kRow);
// Whether the row of a slot can be replaced in its page by one of this size.
bool takesReplacement(const Format& format, ByteView page, size_t slot, size_t size);
void replaceRow(const Format& format, ByteSpan page, size_t slot, ByteView row, SlotKind kind);
void deleteRow(const Format& format, ByteSpan page, size_t slot);

}  // namespace jet
