#include "platform/dao/jet/index_page.h"

#include <algorithm>

#include "platform/dao/jet/invariants.h"

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
    size_t childSize = out.node ? kChildSize : 0;
    out.keys_.reserve(2 * page.size());
    out.ends_.reserve(page.size() / 8);
    ByteView common;  // what is left out of all entries but the first
    size_t begin = 0;
    for (size_t byte = 0; byte < bitmap.size(); ++byte) {
        uint8_t bits = bitmap.u8(byte);
        for (size_t bit = 0; bits; ++bit, bits >>= 1) {
            if (!(bits & 1)) continue;
            size_t end = 8 * byte + bit;
            ByteView stored = entries.part(begin, end - begin);
            if (common.size() + stored.size() < kRowSize + childSize)
                damaged("an entry of an index is too short");
            if (stored.size() < childSize) damaged("an entry of an index is too short");
            ByteView key = stored.part(0, stored.size() - childSize);
            out.keys_.insert(out.keys_.end(), common.data(), common.data() + common.size());
            out.keys_.insert(out.keys_.end(), key.data(), key.data() + key.size());
            out.ends_.push_back(static_cast<uint32_t>(out.keys_.size()));
            if (out.node) out.children_.push_back(stored.bigEndian32(key.size()));
            if (begin == 0) common = stored.part(0, prefix);
            begin = end;
        }
    }
    return out;
}

bool IndexPage::isAscending() const {
    for (size_t i = 1; i < size(); ++i)
        if (compare(entry(i - 1), entry(i)) >= 0) return false;
    return true;
}

size_t IndexPage::prefix() const {
    if (node || size() < 2) return 0;
    // What the first and the last entry have in common, all between them have.
    ByteView first = entry(0), last = entry(size() - 1);
    size_t most = std::min({first.size(), last.size(), size_t{255}});
    return static_cast<size_t>(std::mismatch(first.data(), first.data() + most, last.data()).first -
                               first.data());
}

size_t IndexPage::storedSize() const {
    if (empty()) return 0;
    return keys_.size() + children_.size() * kChildSize - (size() - 1) * prefix();
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
    for (size_t i = 0; i < size(); ++i) {
        ByteView key = entry(i).from(i == 0 ? 0 : prefix);
        page.set(at, key);
        at += key.size();
        if (node) {
            ByteWriter child;
            child.bigEndian32(children_[i]);
            page.set(at, child.bytes);
            at += kChildSize;
        }
        size_t end = at - format.indexEntriesAt;
        size_t bitmapByte = format.indexBitmapAt + end / 8;
        page.setU8(bitmapByte, static_cast<uint8_t>(page.view().u8(bitmapByte) | 1u << (end % 8)));
    }
    page.setU16(kFreeAt, static_cast<uint16_t>(page.size() - at));
    assert(at == format.indexEntriesAt + storedSize());
    assert(!isAscending() || read(file, number).keys_ == keys_);
}

void IndexPage::setChild(size_t i, uint32_t page) {
    if (i < size())
        children_[i] = page;
    else
        tail = page;
}

size_t IndexPage::lowerBound(ByteView key) const {
    size_t low = 0, high = size();
    while (low < high) {
        size_t middle = (low + high) / 2;
        if (compare(entry(middle), key) < 0)
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

void IndexPage::insert(size_t i, ByteView key, uint32_t child) {
    auto at = static_cast<std::ptrdiff_t>(begin(i));
    keys_.insert(keys_.begin() + at, key.data(), key.data() + key.size());
    ends_.insert(ends_.begin() + static_cast<std::ptrdiff_t>(i), static_cast<uint32_t>(at));
    for (size_t k = i; k < ends_.size(); ++k) ends_[k] += static_cast<uint32_t>(key.size());
    if (node) children_.insert(children_.begin() + static_cast<std::ptrdiff_t>(i), child);
}

void IndexPage::erase(size_t i) {
    ByteView gone = entry(i);
    auto size = static_cast<uint32_t>(gone.size());
    auto at = keys_.begin() + static_cast<std::ptrdiff_t>(begin(i));
    keys_.erase(at, at + size);
    ends_.erase(ends_.begin() + static_cast<std::ptrdiff_t>(i));
    for (size_t k = i; k < ends_.size(); ++k) ends_[k] -= size;
    if (node) children_.erase(children_.begin() + static_cast<std::ptrdiff_t>(i));
}

void IndexPage::replace(size_t i, ByteView key) {
    uint32_t child = node ? children_[i] : 0;
    erase(i);
    insert(i, key, child);
}

void IndexPage::moveEntries(size_t from, IndexPage& to) {
    for (size_t i = from; i < size(); ++i) to.append(entry(i), node ? children_[i] : 0);
    keys_.resize(begin(from));
    ends_.resize(from);
    if (node) children_.resize(from);
}

size_t IndexPage::middle() const {
    size_t i = 0;
    while (i + 1 < size() && begin(i) < keys_.size() / 2) ++i;
    return std::max<size_t>(i, 1);
}

}  // namespace jet
