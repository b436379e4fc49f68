#include "module/records/key_finder.h"

#include <algorithm>
#include <functional>

#include "module/store/matching_records.h"

namespace norvane {

namespace {

constexpr size_t kRecordsInSlice = 10'000;

uint64_t hashOf(const std::string& key) {
    return std::hash<std::string>()(key);
}

}  // namespace

KeyFinder::KeyFinder(dao::TableRows& source, size_t keyField) {
    dao::RowNumber last = dao::kBeforeAllRows;
    const auto add = [&](dao::RowNumber row, std::span<const dao::Variant> values) {
        entries_.push_back({hashOf(RecordKeyOf(values[0])), row});
    };
    while (source.walk(last, kRecordsInSlice, {&keyField, 1}, add)) {
    }
    std::sort(entries_.begin(), entries_.end());
}

std::vector<dao::RowNumber> KeyFinder::find(const std::string& key) const {
    const uint64_t hash = hashOf(key);
    std::vector<dao::RowNumber> rows;
    auto entry = std::lower_bound(entries_.begin(), entries_.end(), Entry{hash, dao::kBeforeAllRows});
    for (; entry != entries_.end() && entry->hash == hash; ++entry) rows.push_back(entry->row);
    return rows;
}

}  // namespace norvane
