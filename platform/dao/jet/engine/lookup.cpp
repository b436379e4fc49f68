#include "platform/dao/jet/engine/lookup.h"

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

}  // namespace

Lookup::Lookup(std::shared_ptr<jet::Records> records, std::vector<size_t> columns)
    : columns_(std::move(columns)) {
    rows_.reserve(records->definition().rows);
    for (jet::Walk walk(records); walk.next();) {
        jet::RowView view = walk.view();
        uint64_t sum = 0;
        for (size_t column : columns_) sum = mix(sum, records->value(view, column));
        rows_.emplace(sum, walk.row().number());
    }
}

void Lookup::add(jet::RowId row, const std::vector<Variant>& values) {
    uint64_t sum = 0;
    for (size_t column : columns_) sum = mix(sum, values[column]);
    rows_.emplace(sum, row.number());
}

std::vector<jet::RowId> Lookup::find(const std::vector<Variant>& values) const {
    uint64_t sum = 0;
    for (const Variant& value : values) sum = mix(sum, value);
    std::vector<jet::RowId> rows;
    for (auto [it, end] = rows_.equal_range(sum); it != end; ++it)
        rows.push_back(jet::RowId::fromNumber(it->second));
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

}  // namespace dao::access
