#include "platform/dao/jet/long_value.h"

#include <functional>

namespace jet {
namespace {

constexpr size_t kHeadSize = 12, kPointerSize = 4;
constexpr uint8_t kInRow = 0x80, kOneRow = 0x40, kChain = 0x00;
constexpr size_t kLongest = 0xFFFFFF;

RowId pointerOfHead(ByteView head) {
    return readPointer(head.part(4, kPointerSize));
}

// Visits the pieces of a value outside its row, with the bytes of the value in each.
void forEachPiece(Store& store, ByteView head, const std::function<void(RowId, ByteView)>& visit) {
    uint8_t kind = head.u8(3);
    if (kind == kInRow) return;
    if (kind != kOneRow && kind != kChain) damaged("a long value is of no known kind");
    size_t length = head.u24(0), found = 0;
    RowId row = pointerOfHead(head);
    while (row.page != 0) {
        PagePtr page = store.file.page(row.page, PageType::kData);
        DataPage data(store.format, page->view());
        if (data.owner() != kLongValueOwner) damaged("a long value is not where it should be");
        Slot slot = data.slot(row.slot);
        if (slot.kind == SlotKind::kDeleted) damaged("a part of a long value has been deleted");
        ByteView bytes = data.bytes(slot);
        if (kind == kOneRow) return visit(row, bytes);
        visit(row, bytes.from(kPointerSize));
        // A piece without bytes could be one of an endless chain.
        if (bytes.size() == kPointerSize || found > length) damaged("a long value has no end");
        found += bytes.size() - kPointerSize;
        row = readPointer(bytes);
    }
}

}  // namespace

Bytes LongValues::read(Store& store, ByteView bytes) {
    size_t length = bytes.u24(0);
    if (bytes.u8(3) == kInRow) return bytes.part(kHeadSize, length).copy();
    bytes.part(0, kHeadSize);
    Bytes value;
    forEachPiece(store, bytes, [&](RowId, ByteView piece) {
        value.insert(value.end(), piece.data(), piece.data() + piece.size());
    });
    if (value.size() < length) damaged("a long value is cut off");
    value.resize(length);
    return value;
}

void LongValues::write(ByteView value, ByteWriter& row, bool inlineAllowed) {
    if (value.size() > kLongest) throw Error("A value is longer than a database can hold (16 MB).");
    auto putHead = [&](uint8_t kind, RowId place) {
        row.u24(static_cast<uint32_t>(value.size()));
        row.u8(kind);
        writePointer(row, place);
        row.u32(0);
    };
    // An empty value has a head as well: some readers count on it.
    bool stays = inlineAllowed || !hasMaps_ || value.empty();
    if (value.size() <= store_.format.longestInline && stays) {
        putHead(kInRow, {});
        row.put(value);
        return;
    }
    if (!hasMaps_) throw Error("The table has no place for long values.");
    size_t longest = store_.format.longestPiece;
    if (value.size() <= longest) return putHead(kOneRow, space_.add(value));
    // From the last piece to the first, since each tells where the next one is.
    size_t most = longest - kPointerSize;
    RowId next{};
    for (size_t end = value.size(); end > 0;) {
        size_t size = end % most ? end % most : most;
        ByteWriter piece;
        writePointer(piece, next);
        piece.put(value.part(end - size, size));
        next = space_.add(piece.bytes);
        end -= size;
    }
    putHead(kChain, next);
}

bool LongValues::isOutside(ByteView bytes) {
    return bytes.u8(3) != kInRow;
}

std::vector<RowId> LongValues::pieces(Store& store, ByteView bytes) {
    std::vector<RowId> rows;
    bytes.part(0, kHeadSize);
    forEachPiece(store, bytes, [&](RowId row, ByteView) { rows.push_back(row); });
    return rows;
}

void LongValues::release(ByteView bytes) {
    for (RowId row : pieces(store_, bytes)) space_.remove(row);
}

}  // namespace jet
