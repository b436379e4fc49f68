#include "platform/dao/jet/index_tree.h"

#include <unordered_set>

#include "platform/dao/jet/invariants.h"

namespace jet {
namespace {

// Deeper trees would hold more entries than a file has bytes.
constexpr size_t kDeepest = 12;

[[noreturn]] void tooLong() {
    throw Error("The values are too long for an index of the table.");
}

}  // namespace

IndexTree::Path IndexTree::pathTo(ByteView entry) const {
    Path path;
    for (uint32_t number = index_.root;;) {
        if (path.size() > kDeepest) damaged("an index is too deep");
        IndexPage page = read(number);
        size_t position = page.lowerBound(entry);
        uint32_t child = page.node ? page.child(position) : 0;
        bool node = page.node;
        path.push_back({number, std::move(page), position});
        if (!node) return path;
        number = child;
    }
}

bool IndexTree::isInOrder(const Path& path) const {
    Bytes lower, upper;  // the entries that lead to a page; none: nothing
    for (const Step& step : path) {
        const IndexPage& page = step.page;
        if (!page.isAscending() || store_.allocator.isFree(step.number)) return false;
        if (!page.empty()) {
            ByteView last = page.entry(page.size() - 1);
            if (!lower.empty() && compare(page.entry(0), lower) <= 0) return false;
            if (!upper.empty() && (page.node ? compare(last, upper) >= 0 : compare(last, upper) != 0))
                return false;
        }
        if (step.position > 0) lower = page.entry(step.position - 1).copy();
        if (step.position < page.size()) upper = page.entry(step.position).copy();
    }
    return true;
}

void IndexTree::walk(ByteView from, const std::function<bool(ByteView)>& visit) const {
    Path path = pathTo(from);
    IndexPage page = std::move(path.back().page);
    size_t position = path.back().position;
    for (uint32_t pages = 0;; ++pages) {
        if (pages > store_.file.pageCount()) damaged("the pages of an index run in a circle");
        for (; position < page.size(); ++position)
            if (!visit(page.entry(position))) return;
        if (page.next == 0) return;
        page = read(page.next);
        if (page.node) damaged("the leaves of an index are not in a row");
        position = 0;
    }
}

std::vector<RowId> IndexTree::find(ByteView key) const {
    std::vector<RowId> rows;
    walk(key, [&](ByteView entry) {
        if (entry.size() < key.size() || compare(entry.part(0, key.size()), key) != 0) return false;
        rows.push_back(rowOf(entry));
        return true;
    });
    return rows;
}

bool IndexTree::hasOther(ByteView key, RowId row) const {
    bool found = false;
    walk(key, [&](ByteView entry) {
        if (entry.size() < key.size() || compare(entry.part(0, key.size()), key) != 0) return false;
        found = found || (entry.size() == entryOf(key, row).size() && rowOf(entry) != row);
        return !found;
    });
    return found;
}

void IndexTree::insert(ByteView key, RowId row) {
    Bytes entry = entryOf(key, row);
    if (entry.size() + 8 > (store_.format.pageSize - store_.format.indexEntriesAt) / 3) tooLong();
    Path path = pathTo(entry);
    Step& leaf = path.back();
    if (leaf.position < leaf.page.size() && compare(leaf.page.entry(leaf.position), entry) == 0)
        damaged("an index has an entry for a row that is new");
    [[maybe_unused]] bool inOrder = kAsserts && isInOrder(path);
    leaf.page.insert(leaf.position, entry);
    save(path, path.size() - 1);
    assert(!inOrder || isInOrder(pathTo(entry)));
    assert(!inOrder || hasEntry(entry));
}

void IndexTree::erase(ByteView key, RowId row) {
    Bytes entry = entryOf(key, row);
    Path path = pathTo(entry);
    Step& leaf = path.back();
    if (leaf.position >= leaf.page.size() || compare(leaf.page.entry(leaf.position), entry) != 0)
        damaged("an index lacks the entry of a row");
    [[maybe_unused]] bool inOrder = kAsserts && isInOrder(path);
    leaf.page.erase(leaf.position);
    size_t depth = path.size() - 1;
    bool pageGoes = leaf.page.empty() && depth > 0;
    if (pageGoes)
        removePage(path, depth);
    else
        save(path, depth);
    assert(!inOrder || !hasEntry(entry));
    // Where a page has gone the way leads to another one, which may be damaged.
    assert(!inOrder || pageGoes || isInOrder(pathTo(entry)));
}

bool IndexTree::hasEntry(ByteView entry) const {
    const Step leaf = pathTo(entry).back();
    return leaf.position < leaf.page.size() && compare(leaf.page.entry(leaf.position), entry) == 0;
}

// Writes a page that has been changed, in pieces where it has become too full, and sees to it that the entry
// that leads to it still repeats its last one.
void IndexTree::save(Path& path, size_t depth) {
    Step& step = path[depth];
    if (!step.page.fits(store_.format)) return depth == 0 ? splitRoot(path) : split(path, depth);
    write(step.page, step.number);
    if (!step.page.node && !step.page.empty()) correctBound(path, depth);
}

// The last entry of a leaf stands again in the nearest node in which the way to it is not the tail.
void IndexTree::correctBound(Path& path, size_t depth) {
    Bytes last = path[depth].page.entry(path[depth].page.size() - 1).copy();
    for (size_t above = depth; above-- > 0;) {
        Step& step = path[above];
        if (step.position >= step.page.size()) continue;
        if (compare(step.page.entry(step.position), last) == 0) return;
        step.page.replace(step.position, last);
        return save(path, above);
    }
}

// The content of the root goes to two new pages.
void IndexTree::splitRoot(Path& path) {
    IndexPage left = std::move(path[0].page), right;
    size_t middle = left.middle();
    bool appending = !left.node && path[0].position + 1 == left.size();
    if (appending) middle = left.size() - 1;
    right.node = left.node;
    right.level = left.level;
    right.tail = left.tail;
    left.moveEntries(middle, right);
    uint32_t leftNumber = newPage(), rightNumber = newPage();
    IndexPage root;
    root.node = true;
    root.level = static_cast<uint8_t>(left.level + 1);
    root.append(left.entry(left.size() - 1), leftNumber);
    root.tail = rightNumber;
    if (left.node) {
        // The last entry of the left half becomes its tail.
        left.tail = left.child(left.size() - 1);
        left.erase(left.size() - 1);
    }
    left.next = rightNumber;
    right.previous = leftNumber;
    write(left, leftNumber);
    write(right, rightNumber);
    write(root, index_.root);
}

void IndexTree::split(Path& path, size_t depth) {
    Step& step = path[depth];
    Step& parent = path[depth - 1];
    IndexPage& left = step.page;
    IndexPage right;
    // A page that fills from behind is left full.
    bool appending = !left.node && left.next == 0 && step.position + 1 == left.size();
    size_t middle = appending ? left.size() - 1 : left.middle();
    right.node = left.node;
    right.level = left.level;
    right.tail = left.tail;
    left.moveEntries(middle, right);
    Bytes bound = left.entry(left.size() - 1).copy();
    if (left.node) {
        left.tail = left.child(left.size() - 1);
        left.erase(left.size() - 1);
    }
    uint32_t rightNumber = newPage();
    right.previous = step.number;
    right.next = left.next;
    if (left.next != 0) {
        IndexPage next = read(left.next);
        next.previous = rightNumber;
        write(next, left.next);
    }
    left.next = rightNumber;
    write(left, step.number);
    write(right, rightNumber);
    // What led to the page leads to its right half now, and a new entry to the left one.
    parent.page.setChild(parent.position, rightNumber);
    parent.page.insert(parent.position, bound, step.number);
    if (!right.node) {
        // The right half may end with a new last entry.
        Bytes last = right.entry(right.size() - 1).copy();
        size_t position = parent.position + 1;
        if (position < parent.page.size()) parent.page.replace(position, last);
    }
    save(path, depth - 1);
}

// Takes an empty page out of the tree.
void IndexTree::removePage(Path& path, size_t depth) {
    Step& step = path[depth];
    Step& parent = path[depth - 1];
    if (step.page.previous != 0) {
        IndexPage previous = read(step.page.previous);
        previous.next = step.page.next;
        write(previous, step.page.previous);
    }
    if (step.page.next != 0) {
        IndexPage next = read(step.page.next);
        next.previous = step.page.previous;
        write(next, step.page.next);
    }
    freePage(step.number);
    if (parent.position < parent.page.size()) {
        parent.page.erase(parent.position);
    } else if (!parent.page.empty()) {
        // The child before becomes the tail; its bound stands further up now.
        size_t last = parent.page.size() - 1;
        Bytes bound = parent.page.entry(last).copy();
        parent.page.tail = parent.page.child(last);
        parent.page.erase(last);
        write(parent.page, parent.number);
        for (size_t above = depth - 1; above-- > 0;) {
            if (path[above].position >= path[above].page.size()) continue;
            path[above].page.replace(path[above].position, bound);
            save(path, above);
            break;
        }
        return shrinkRoot();
    } else if (depth == 1) {
        // It was the last page of all.
        write(IndexPage(), index_.root);
        return;
    } else {
        return removePage(path, depth - 1);
    }
    write(parent.page, parent.number);
    shrinkRoot();
}

// A root with no other child than its tail takes the content of the tail.
void IndexTree::shrinkRoot() {
    for (;;) {
        IndexPage root = read(index_.root);
        if (!root.node || !root.empty()) return;
        uint32_t only = root.tail;
        root = read(only);
        freePage(only);
        write(root, index_.root);
    }
}

uint32_t IndexTree::newPage() {
    uint32_t page = store_.allocator.take();
    UsageMap(store_.file, index_.map).set(page, true, [this] { return store_.allocator.take(); });
    return page;
}

void IndexTree::freePage(uint32_t page) {
    UsageMap(store_.file, index_.map).set(page, false, {});
    store_.allocator.give(page);
}

void IndexTree::drop() {
    for (uint32_t page : UsageMap(store_.file, index_.map).pages()) store_.allocator.give(page);
}

void IndexTree::build(const std::vector<Bytes>& entries) {
    for (uint32_t page : UsageMap(store_.file, index_.map).pages())
        if (page != index_.root) freePage(page);
    struct Level {
        std::vector<IndexPage> pages;
        std::vector<Bytes> bounds;  // the last entry below each page
    };
    // Leaves, filled one after the other.
    Level level;
    level.pages.emplace_back();
    for (const Bytes& entry : entries) {
        if (entry.size() + 8 > (store_.format.pageSize - store_.format.indexEntriesAt) / 3) tooLong();
        level.pages.back().append(entry);
        if (level.pages.back().fits(store_.format)) continue;
        IndexPage next;
        level.pages.back().moveEntries(level.pages.back().size() - 1, next);
        level.pages.push_back(std::move(next));
    }
    for (const IndexPage& page : level.pages)
        level.bounds.push_back(page.empty() ? Bytes() : page.entry(page.size() - 1).copy());
    while (level.pages.size() > 1) {
        std::vector<uint32_t> numbers;
        for (size_t i = 0; i < level.pages.size(); ++i) numbers.push_back(newPage());
        Level above;
        above.pages.emplace_back();
        for (size_t i = 0; i < level.pages.size(); ++i) {
            level.pages[i].previous = i > 0 ? numbers[i - 1] : 0;
            level.pages[i].next = i + 1 < numbers.size() ? numbers[i + 1] : 0;
            write(level.pages[i], numbers[i]);
            IndexPage& node = above.pages.back();
            node.node = true;
            node.level = static_cast<uint8_t>(level.pages[i].level + 1);
            node.append(level.bounds[i], numbers[i]);
            bool last = i + 1 == level.pages.size();
            if (node.fits(store_.format) && !last) continue;
            // The last child of a node is its tail.
            node.tail = numbers[i];
            node.erase(node.size() - 1);
            above.bounds.push_back(level.bounds[i]);
            if (!last) above.pages.emplace_back();
        }
        level = std::move(above);
    }
    write(level.pages.front(), index_.root);
}

void IndexTree::forEachPage(const std::function<void(uint32_t, const IndexPage&, size_t)>& visit) const {
    std::unordered_set<uint32_t> seen;
    std::function<void(uint32_t, size_t)> walkPage = [&](uint32_t number, size_t depth) {
        if (depth > kDeepest || !seen.insert(number).second) damaged("the pages of an index run in a circle");
        IndexPage page = read(number);
        visit(number, page, depth);
        if (!page.node) return;
        for (size_t i = 0; i <= page.size(); ++i) walkPage(page.child(i), depth + 1);
    };
    walkPage(index_.root, 0);
}

}  // namespace jet
