#include "platform/dao/jet/index_page.h"

#include <algorithm>

namespace jet {
namespace {

constexpr size_t kRowSize = 4, kChildSize = 4;
constexpr size_t kFreeAt = 2, kTableAt = 4;

}  // namespace

int compare(ByteView a, ByteView b) {
    size_t common = std::min(a.size(), b.size());
    int order = common ? std::memcmp(a.data(), b.data(), common) : 0;
    if (order != 0) return order;
    return a.size() < b.size() ? -1 : a.size() > b.size();
}

RowId rowOf(ByteView entry) {
    if (entry.size() < kRowSize) damaged("an entry of an index is too short");
    size_t at = entry.size() - kRowSize;
    return {entry.bigEndian24(at), entry.u8(at + 3)};
}

Bytes entryOf(ByteView key, RowId row) {
    ByteWriter out;
    out.put(key);
    out.bigEndian24(row.page);
    out.u8(row.slot);
    return std::move(out.bytes);
}

IndexPage IndexPage::read(PageFile& file, uint32_t number) {
    const Format& format = file.format();
    PagePtr held = file.page(number);
    ByteView page = held->view();
    IndexPage out;
    out.node = page.u8(0) == static_cast<uint8_t>(PageType::kNode);
    if (!out.node && page.u8(0) != static_cast<uint8_t>(PageType::kLeaf))
        damaged("page " + std::to_string(number) + " is no page of an index");
    out.level = page.u8(format.indexLevelAt);
    out.previous = page.u32(format.indexPreviousAt);
    out.next = page.u32(format.indexNextAt);
    if (out.node) out.tail = page.u32(format.indexTailAt);
    size_t prefix = format.unicode ? page.u16(format.indexPrefixAt) : page.u8(format.indexPrefixAt);
    ByteView bitmap = page.part(format.indexBitmapAt, format.indexEntriesAt - format.indexBitmapAt);
    ByteView entries = page.from(format.indexEntriesAt);
    size_t tailSize = kRowSize + (out.node ? kChildSize : 0);
    Bytes first;
    size_t begin = 0;
    for (size_t byte = 0; byte < bitmap.size(); ++byte) {
        uint8_t bits = bitmap.u8(byte);
        for (size_t bit = 0; bits; ++bit, bits >>= 1) {
            if (!(bits & 1)) continue;
            size_t end = 8 * byte + bit;
            ByteView stored = entries.part(begin, end - begin);
            Entry entry{{}, 0};
            if (out.entries_.empty()) {
                entry.key = first = stored.copy();
            } else {
                entry.key = ByteView(first).part(0, prefix).copy();
                entry.key.insert(entry.key.end(), stored.data(), stored.data() + stored.size());
            }
            if (entry.key.size() < tailSize) damaged("an entry of an index is too short");
            if (out.node) {
                entry.child = ByteView(entry.key).bigEndian32(entry.key.size() - kChildSize);
                entry.key.erase(entry.key.end() - kChildSize, entry.key.end());
            }
            out.entries_.push_back(std::move(entry));
            begin = end;
        }
    }
    return out;
}

size_t IndexPage::prefix() const {
    if (node || entries_.size() < 2) return 0;
    // What the first and the last entry have in common, all between them have.
    const Bytes &first = entries_.front().key, &last = entries_.back().key;
    size_t most = std::min({first.size(), last.size(), size_t{255}});
    return static_cast<size_t>(
        std::mismatch(first.begin(), first.begin() + static_cast<long>(most), last.begin()).first -
        first.begin());
}

size_t IndexPage::storedSize() const {
    size_t size = 0;
    for (const Entry& entry : entries_) size += entry.key.size() + (node ? kChildSize : 0);
    return entries_.empty() ? 0 : size - (entries_.size() - 1) * prefix();
}

void IndexPage::write(PageFile& file, uint32_t table, uint32_t number) const {
    const Format& format = file.format();
    ByteSpan page = file.writable(number);
    page.fill(0, page.size(), 0);
    page.setU8(0, static_cast<uint8_t>(node ? PageType::kNode : PageType::kLeaf));
    page.setU8(1, 1);
    page.setU32(kTableAt, table);
    page.setU32(format.indexPreviousAt, previous);
    page.setU32(format.indexNextAt, next);
    page.setU32(format.indexTailAt, node ? tail : 0);
    size_t prefix = this->prefix();
    if (format.unicode)
        page.setU16(format.indexPrefixAt, static_cast<uint16_t>(prefix));
    else
        page.setU8(format.indexPrefixAt, static_cast<uint8_t>(prefix));
    page.setU8(format.indexLevelAt, level);
    size_t at = format.indexEntriesAt;
    for (size_t i = 0; i < entries_.size(); ++i) {
        ByteView key = ByteView(entries_[i].key).from(i == 0 ? 0 : prefix);
        page.set(at, key);
        at += key.size();
        if (node) {
            ByteWriter child;
            child.bigEndian32(entries_[i].child);
            page.set(at, child.bytes);
            at += kChildSize;
        }
        size_t end = at - format.indexEntriesAt;
        size_t bitmapByte = format.indexBitmapAt + end / 8;
        page.setU8(bitmapByte, static_cast<uint8_t>(page.view().u8(bitmapByte) | 1u << (end % 8)));
    }
    page.setU16(kFreeAt, static_cast<uint16_t>(page.size() - at));
}

void IndexPage::setChild(size_t i, uint32_t page) {
    if (i < size())
        entries_[i].child = page;
    else
        tail = page;
}

size_t IndexPage::lowerBound(ByteView key) const {
    auto it = std::lower_bound(entries_.begin(), entries_.end(), key,
                               [](const Entry& entry, ByteView k) { return compare(entry.key, k) < 0; });
    return static_cast<size_t>(it - entries_.begin());
}

void IndexPage::insert(size_t i, ByteView key, uint32_t child) {
    entries_.insert(entries_.begin() + static_cast<long>(i), Entry{key.copy(), child});
}

void IndexPage::moveEntries(size_t from, IndexPage& to) {
    auto begin = entries_.begin() + static_cast<long>(from);
    to.entries_.insert(to.entries_.end(), std::make_move_iterator(begin),
                       std::make_move_iterator(entries_.end()));
    entries_.erase(begin, entries_.end());
}

size_t IndexPage::middle() const {
    size_t whole = 0;
    for (const Entry& entry : entries_) whole += entry.key.size();
    size_t half = 0, i = 0;
    while (i + 1 < entries_.size() && half < whole / 2) half += entries_[i++].key.size();
    return std::max<size_t>(i, 1);
}

}  // namespace jet
