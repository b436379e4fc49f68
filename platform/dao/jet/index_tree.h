// An index as a tree of pages, changed in place: pages are split as they fill and given back as they empty.
// The root keeps its page for ever.
#pragma once

#include <functional>

#include "platform/dao/jet/index_page.h"
#include "platform/dao/jet/table_definition.h"

namespace jet {

class IndexTree {
  public:
    IndexTree(Store& store, uint32_t table, const IndexDefinition& index)
        : store_(store), table_(table), index_(index) {}

    // Walks the entries from the first that is not less than a key, until visit gives false.
    void walk(ByteView from, const std::function<bool(ByteView entry)>& visit) const;
    // The rows whose entries begin with a key, or with keys of the first columns.
    std::vector<RowId> find(ByteView key) const;
    // Whether there is an entry of exactly this key, for another row than the given one.
    bool hasOther(ByteView key, RowId row) const;

    void insert(ByteView key, RowId row);
    void erase(ByteView key, RowId row);
    // Makes the tree anew of entries in ascending order. The old pages but the root are given back.
    void build(const std::vector<Bytes>& entries);
    // Gives back all pages, the root with them.
    void drop();

    // The pages in the order in which a walk from the root meets them, each with its level as the depth below
    // the root tells it.
    void forEachPage(
        const std::function<void(uint32_t page, const IndexPage& content, size_t depth)>& visit) const;

  private:
    // A page on the way from the root to a leaf, and the position of the child that is taken.
    struct Step {
        uint32_t number;
        IndexPage page;
        size_t position;
    };
    using Path = std::vector<Step>;

    Path pathTo(ByteView entry) const;
    // Whether the pages on the way are in use and in order: their entries ascend between those that lead to
    // them, and the last one of a leaf is the one that leads to it.
    bool isInOrder(const Path& path) const;
    bool hasEntry(ByteView entry) const;
    void save(Path& path, size_t depth);
    void splitRoot(Path& path);
    void split(Path& path, size_t depth);
    void correctBound(Path& path, size_t depth);
    void removePage(Path& path, size_t depth);
    void shrinkRoot();
    uint32_t newPage();
    void freePage(uint32_t page);
    void write(const IndexPage& page, uint32_t number) { page.write(store_.file, table_, number); }
    IndexPage read(uint32_t number) const { return IndexPage::read(store_.file, number); }

    Store& store_;
    uint32_t table_;
    const IndexDefinition& index_;
};

}  // namespace jet
