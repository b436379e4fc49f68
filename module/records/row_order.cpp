#include "module/records/row_order.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr size_t kRun = 32768;
constexpr size_t kMostLetters = 120;  // bytes
constexpr uint8_t kNull = 0, kNumber = 1, kText = 2;

// Whole numbers in the order of the reals.
uint64_t rankOf(double number) {
    if (number == 0) number = 0;  // without a sign
    const auto bits = std::bit_cast<uint64_t>(number);
    constexpr uint64_t kSign = uint64_t{1} << 63;
    return bits & kSign ? ~bits : bits | kSign;
}

// The first eight letters as a number that compares as they do.
uint64_t rankOf(std::string_view letters) {
    uint64_t rank = 0;
    for (size_t i = 0; i < sizeof rank; ++i)
        rank = rank << 8 | (i < letters.size() ? static_cast<unsigned char>(letters[i]) : 0U);
    return rank;
}

// Before the year 1900 the time of day still counts forward.
double momentOf(dao::Date date) {
    const double day = std::trunc(date.days);
    return day + std::fabs(date.days - day);
}

}  // namespace

void RowOrder::add(dao::RowNumber row, const dao::Variant& value) {
    Entry entry{0, 0, kNull, row};
    double number = 0;
    if (value.is<std::string>()) {
        entry.kind = kText;
        const std::string letters =
            text::upper(std::string_view(value.get<std::string>()).substr(0, kMostLetters));
        entry.rank = rankOf(letters);
        if (letters.size() > sizeof entry.rank && letters_.size() < UINT32_MAX - 4 * kMostLetters) {
            entry.text = static_cast<uint32_t>(letters_.size());
            letters_.insert(letters_.end(), letters.begin() + sizeof entry.rank, letters.end());
            letters_.push_back(0);
        }
    } else if (value.is<dao::Date>()) {
        entry.kind = kNumber;
        entry.rank = rankOf(momentOf(value.get<dao::Date>()));
    } else if (!value.isNull() && dao::numberOf(value, number)) {
        entry.kind = kNumber;
        entry.rank = rankOf(number);
    }
    entries_.push_back(entry);
}

bool RowOrder::isLess(const Entry& a, const Entry& b) const {
    if (a.kind != b.kind) return a.kind < b.kind;
    if (a.rank != b.rank) return a.rank < b.rank;
    return std::strcmp(letters_.data() + a.text, letters_.data() + b.text) < 0;
}

bool RowOrder::step() {
    const auto less = [&](const Entry& a, const Entry& b) { return isLess(a, b); };
    const auto at = [&](size_t i) {
        return entries_.begin() + static_cast<long>(std::min(i, entries_.size()));
    };
    if (sorted_ < entries_.size()) {
        std::stable_sort(at(sorted_), at(sorted_ + kRun), less);
        sorted_ = std::min(sorted_ + kRun, entries_.size());
        run_ = kRun;
        merged_ = 0;
        return true;
    }
    if (run_ == 0 || run_ >= entries_.size()) return false;
    std::inplace_merge(at(merged_), at(merged_ + run_), at(merged_ + 2 * run_), less);
    merged_ += 2 * run_;
    if (merged_ >= entries_.size()) {
        merged_ = 0;
        run_ *= 2;
    }
    return run_ < entries_.size();
}

std::vector<dao::RowNumber> RowOrder::take(bool descending) {
    std::vector<dao::RowNumber> rows;
    rows.reserve(entries_.size());
    for (const Entry& entry : entries_) rows.push_back(entry.row);
    if (descending) std::reverse(rows.begin(), rows.end());
    *this = RowOrder();
    return rows;
}

}  // namespace norvane
