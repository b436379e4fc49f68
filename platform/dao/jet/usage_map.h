// A set of pages, kept as a bitmap in a row of a page, or for large files on pages of its own.
#pragma once

#include <functional>
#include <vector>

#include "platform/dao/jet/data_page.h"
#include "platform/dao/jet/page_file.h"

namespace jet {

class UsageMap {
  public:
    // row: where the map stands. A row on page 0 means that there is no map: it is then always empty.
    UsageMap(PageFile& file, RowId row) : file_(file), row_(row) {}

    bool exists() const { return row_.page != 0; }
    // The pages, in ascending order, as far as the file has them.
    std::vector<uint32_t> pages() const;
    bool contains(uint32_t page) const;
    // The pages that hold the map itself, apart from the one with its row.
    std::vector<uint32_t> bitmapPages() const;

    // Adds or removes a page. newPage gives a page for a part of the bitmap.
    void set(uint32_t page, bool member, const std::function<uint32_t()>& newPage);

    // The pages that the row can speak of: those behind are not members.
    uint32_t inlineEnd() const;
    bool isInline() const;
    // Makes the bitmap in the row longer, if its page has the room for it: new pages are members from a page
    // on.
    bool lengthen(uint32_t membersFrom);

    // The bytes of an empty map, and of one with all of its pages in it from a page on.
    static Bytes empty(const Format& format);

  private:
    PagePtr page() const { return file_.page(row_.page, PageType::kData); }
    ByteView bytes(const PagePtr& page) const;
    // The first page and the bits of each part of the map.
    void forEachPart(const std::function<void(uint32_t first, ByteView bits)>& visit) const;
    void setInRow(size_t byte, uint8_t mask, bool member);
    bool moveWindow(uint32_t page);
    void makeReferenced(const std::function<uint32_t()>& newPage);

    PageFile& file_;
    RowId row_;
};

// The free pages of a file.
class Allocator {
  public:
    explicit Allocator(PageFile& file) : file_(file), map_(file, {kGlobalMapPage, 0}) {}

    // A page to be used: the first free one behind a page, or else a new one at the end of the file. Its
    // bytes are whatever they were. With behind = 0 any page will do.
    uint32_t take(uint32_t behind = 0);
    // Whether a free page lies in front of a page.
    bool hasFreeBefore(uint32_t page);
    // A page that is free already stays so.
    void give(uint32_t page);
    bool isFree(uint32_t page);

  private:
    const std::vector<uint32_t>& freePages();
    uint32_t append();

    PageFile& file_;
    UsageMap map_;
    std::vector<uint32_t> free_;
    uint64_t generation_ = 0;
};

}  // namespace jet
