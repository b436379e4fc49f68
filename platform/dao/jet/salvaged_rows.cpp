#include "platform/dao/jet/salvaged_rows.h"

#include <algorithm>

namespace jet {
namespace {

// The free pages; none where the map of them cannot be read.
std::vector<uint32_t> freePages(Store& store) {
    try {
        return UsageMap(store.file, {kGlobalMapPage, 0}).pages();
    } catch (const Error&) {
        return {};
    }
}

}  // namespace

PageCensus::PageCensus(Store& store) {
    std::vector<uint32_t> free = freePages(store);
    for (uint32_t number = kGlobalMapPage + 1; number < store.file.pageCount(); ++number) {
        if (std::binary_search(free.begin(), free.end(), number)) continue;
        PagePtr page = store.file.page(number);
        auto type = static_cast<PageType>(page->bytes[0]);
        if (type == PageType::kData) dataPages_[page->view().u32(4)].push_back(number);
        if (type == PageType::kDefinition) definitions_.push_back(number);
    }
}

const std::vector<uint32_t>& PageCensus::dataPages(uint32_t owner) const {
    static const std::vector<uint32_t> kNone;
    auto it = dataPages_.find(owner);
    return it == dataPages_.end() ? kNone : it->second;
}

SalvagedRows::SalvagedRows(Store& store, const TableDefinition& definition, const PageCensus& census)
    : store_(store),
      definition_(std::make_shared<TableDefinition>(definition)),
      records_(store, std::make_shared<TableDefinition>(definition)),
      pages_(findPages(census)) {}

// The table's own map tells best which pages are its own.
std::vector<uint32_t> SalvagedRows::findPages(const PageCensus& census) const {
    const std::vector<uint32_t>& saying = census.dataPages(definition_->page);
    try {
        std::vector<uint32_t> mapped = UsageMap(store_.file, definition_->owned).pages();
        // A map of nothing but pages of others has been overwritten.
        bool any = std::any_of(mapped.begin(), mapped.end(), [&](uint32_t page) {
            return std::binary_search(saying.begin(), saying.end(), page);
        });
        if (any || saying.empty()) return mapped;
    } catch (const Error&) {
    }
    return saying;
}

void SalvagedRows::forEach(const Visit& visit) {
    for (uint32_t page : pages_) {
        try {
            readPage(page, visit);
        } catch (const DamagedError&) {
            // What was on it is missing from the count.
        }
    }
    readOrphans(visit);
}

void SalvagedRows::readPage(uint32_t number, const Visit& visit) {
    PagePtr page = store_.file.page(number, PageType::kData);
    DataPage data(store_.format, page->view());
    constexpr size_t kMostSlots = 255;
    if (data.owner() != definition_->page || data.slots() > kMostSlots) damaged("a page of rows is lost");
    for (size_t slot = 0; slot < data.slots(); ++slot) {
        try {
            readSlot({number, static_cast<uint8_t>(slot)}, data, visit);
        } catch (const DamagedError&) {
            ++lostRows_;
        }
    }
}

void SalvagedRows::readSlot(RowId row, const DataPage& data, const Visit& visit) {
    Slot slot = data.slot(row.slot);
    switch (slot.kind) {
        case SlotKind::kRow:
            return take(data.bytes(slot), visit);
        case SlotKind::kPointer: {
            RowId body = readPointer(data.bytes(slot));
            PagePtr page;
            take(bodyOf(body, page), visit);
            reached_.insert(body);
            return;
        }
        case SlotKind::kMovedBody:
            bodies_.insert(row);
            return;
        case SlotKind::kDeleted:
            return;
    }
}

ByteView SalvagedRows::bodyOf(RowId body, PagePtr& page) const {
    page = store_.file.page(body.page, PageType::kData);
    DataPage data(store_.format, page->view());
    Slot slot = data.slot(body.slot);
    if (data.owner() != definition_->page || slot.kind != SlotKind::kMovedBody)
        damaged("a pointer leads to no moved row");
    return data.bytes(slot);
}

// Moved rows to which no pointer leads may be what is left of lost ones. Where no row is missing, they are
// what a careless program has left behind.
void SalvagedRows::readOrphans(const Visit& visit) {
    for (RowId body : bodies_) {
        if (reached_.count(body) || found_ >= definition_->rows) continue;
        try {
            PagePtr page;
            take(bodyOf(body, page), visit);
        } catch (const DamagedError&) {
            ++lostRows_;
        }
    }
}

void SalvagedRows::take(ByteView row, const Visit& visit) {
    RowView view(store_.format, *definition_, row);
    std::vector<Value> values(definition_->columns.size());
    for (size_t i = 0; i < values.size(); ++i) {
        try {
            values[i] = records_.value(view, i);
        } catch (const DamagedError&) {
            ++lostValues_[i];
        }
    }
    ++found_;
    visit(values);
}

}  // namespace jet
