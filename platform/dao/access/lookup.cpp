#include "platform/dao/access/lookup.h"

#include <algorithm>
#include <functional>

#include "platform/text/text.h"

namespace dao::access {
namespace {

// Values that compare as equal give the same number: text without regard to case and blanks at the end,
// numbers of all types by their amount.
struct Number {
    uint64_t operator()(std::monostate) const { return 1; }
    uint64_t operator()(const std::string& v) const {
        size_t end = v.find_last_not_of(' ');
        std::string_view s(v.data(), end == std::string::npos ? 0 : end + 1);
        bool plain = std::all_of(s.begin(), s.end(), [](char c) { return !(c & 0x80); });
        if (!plain) return std::hash<std::string>()(text::upper(s));
        uint64_t hash = 0xCBF29CE484222325u;
        for (char c : s) {
            auto letter = static_cast<unsigned char>(c >= 'a' && c <= 'z' ? c - 32 : c);
            hash = (hash ^ letter) * 0x100000001B3u;
        }
        return hash;
    }
    uint64_t operator()(const Binary& v) const {
        return std::hash<std::string_view>()({reinterpret_cast<const char*>(v.data()), v.size()});
    }
    uint64_t operator()(Currency v) const { return real(static_cast<double>(v.tenThousandths) / 10000); }
    uint64_t operator()(Date v) const { return (*this)(toText(Variant(v))); }
    uint64_t operator()(bool v) const { return real(v ? -1 : 0); }
    template <typename T>
    uint64_t operator()(T v) const {
        return real(static_cast<double>(v));
    }
    static uint64_t real(double v) { return std::hash<double>()(v); }
};

uint64_t mix(uint64_t sum, const Variant& value) {
    uint64_t number = std::visit(Number(), value.content());
    return (sum ^ number) * 0x9E3779B97F4A7C15u + (sum >> 7);
}

uint32_t folded(uint64_t sum) {
    return static_cast<uint32_t>(sum >> 32 ^ sum);
}

}  // namespace

Lookup::Lookup(const std::shared_ptr<jet::Records>& records, std::vector<size_t> columns)
    : columns_(std::move(columns)) {
    for (jet::Walk walk(records); walk.next();) {
        jet::RowView view = walk.view();
        uint64_t sum = 0;
        for (size_t column : columns_) sum = mix(sum, records->value(view, column));
        rows_.push_back({folded(sum), walk.row().number()});
    }
    std::sort(rows_.begin(), rows_.end(), [](const Entry& a, const Entry& b) { return a.number < b.number; });
}

void Lookup::add(jet::RowId row, const std::vector<Variant>& values) {
    uint64_t sum = 0;
    for (size_t column : columns_) sum = mix(sum, values[column]);
    added_.emplace(folded(sum), row.number());
}

std::vector<jet::RowId> Lookup::find(const std::vector<Variant>& values) const {
    uint64_t sum = 0;
    for (const Variant& value : values) sum = mix(sum, value);
    uint32_t number = folded(sum);
    std::vector<jet::RowId> rows;
    auto it = std::lower_bound(rows_.begin(), rows_.end(), number,
                               [](const Entry& entry, uint32_t wanted) { return entry.number < wanted; });
    for (; it != rows_.end() && it->number == number; ++it) rows.push_back(jet::RowId::fromNumber(it->row));
    for (auto [added, end] = added_.equal_range(number); added != end; ++added)
        rows.push_back(jet::RowId::fromNumber(added->second));
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

LookupStore& LookupStore::instance() {
    static LookupStore store;
    return store;
}

void LookupStore::keep(const jet::FileState& state, const std::string& table, std::list<Lookup> lookups) {
    if (lookups.empty()) return;
    kept_.push_front({state, table, std::move(lookups)});
    constexpr size_t kMostRows = 4'000'000;  // 32 MB
    size_t rows = 0;
    auto it = kept_.begin();
    for (; it != kept_.end() && rows <= kMostRows; ++it)
        for (const Lookup& lookup : it->lookups) rows += lookup.size();
    kept_.erase(it, kept_.end());
}

std::list<Lookup> LookupStore::take(const jet::FileState& state, const std::string& table) {
    std::list<Lookup> found;
    std::erase_if(kept_, [&](Kept& kept) {
        bool sameFile = kept.state.device == state.device && kept.state.inode == state.inode;
        if (!sameFile || kept.table != table) return false;
        if (kept.state == state) found = std::move(kept.lookups);
        return true;
    });
    return found;
}

}  // namespace dao::access
