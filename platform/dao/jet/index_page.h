// One page of an index: entries in ascending order of their bytes.
//
// An entry of a leaf is a key and the identity of its row; an entry of a node has the page of the child
// behind it, whose last entry it repeats. The child behind the last entry of a node is its tail.
#pragma once

#include <optional>
#include <vector>

#include "platform/dao/jet/data_page.h"
#include "platform/dao/jet/page_file.h"

namespace jet {

class IndexPage {
  public:
    // An empty leaf, or the page of a number as the file has it.
    IndexPage() = default;
    static IndexPage read(PageFile& file, uint32_t number);
    void write(PageFile& file, uint32_t table, uint32_t number) const;

    uint8_t level = 0;  // 0 is a leaf
    bool node = false;
    uint32_t previous = 0, next = 0;
    uint32_t tail = 0;

    size_t size() const { return ends_.size(); }
    bool empty() const { return ends_.empty(); }
    // Key and row of an entry.
    ByteView entry(size_t i) const { return {keys_.data() + begin(i), ends_[i] - begin(i)}; }
    // The child at a position; at size() it is the tail.
    uint32_t child(size_t i) const { return i < size() ? children_[i] : tail; }
    void setChild(size_t i, uint32_t page);
    // The first position whose entry is not less.
    size_t lowerBound(ByteView key) const;
    void insert(size_t i, ByteView key, uint32_t child = 0);
    void replace(size_t i, ByteView key);
    void erase(size_t i);
    void append(ByteView key, uint32_t child = 0) { insert(size(), key, child); }
    // Moves the entries from a position on to the end of another page.
    void moveEntries(size_t from, IndexPage& to);

    bool isAscending() const;
    // Bytes that the entries take as they would be written.
    size_t storedSize() const;
    bool fits(const Format& format) const { return storedSize() <= format.pageSize - format.indexEntriesAt; }
    // The position at which the second half begins, for a page that has become too full.
    size_t middle() const;

  private:
    size_t begin(size_t i) const { return i == 0 ? 0 : ends_[i - 1]; }
    size_t prefix() const;

    // The entries one behind the other, where each ends, and of nodes the child of each.
    Bytes keys_;
    std::vector<uint32_t> ends_;
    std::vector<uint32_t> children_;
};

// Entries as they are compared.
int compare(ByteView a, ByteView b);
RowId rowOf(ByteView entry);
Bytes entryOf(ByteView key, RowId row);

}  // namespace jet
