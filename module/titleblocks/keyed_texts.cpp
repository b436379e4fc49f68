#include "module/titleblocks/keyed_texts.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace norvane {

namespace {

uint32_t hashOf(std::string_view text) {
    const uint64_t hash = std::hash<std::string_view>()(text);
    return static_cast<uint32_t>(hash ^ hash >> 32);
}

}  // namespace

void TextRows::append(std::span<const std::string> texts) {
    for (const std::string& text : texts) {
        bytes_ += text;
        ends_.push_back(bytes_.size());
    }
}

void TextRows::removeLast() {
    ends_.resize(ends_.size() - columns_);
    bytes_.resize(ends_.empty() ? 0 : ends_.back());
}

std::string_view TextRows::text(uint32_t record, size_t column) const {
    const size_t place = record * columns_ + column;
    const size_t begin = place == 0 ? 0 : ends_[place - 1];
    return std::string_view(bytes_).substr(begin, ends_[place] - begin);
}

size_t TextHash::slotOf(const TextRows& records, std::string_view text, uint32_t hash) const {
    size_t slot = hash & (slots_.size() - 1);
    while (slots_[slot].record != kFree &&
           (slots_[slot].hash != hash || records.text(slots_[slot].record, column_) != text))
        slot = (slot + 1) & (slots_.size() - 1);
    return slot;
}

bool TextHash::add(const TextRows& records, uint32_t record) {
    if (order_.size() * 2 >= slots_.size()) grow();
    const std::string_view text = records.text(record, column_);
    const uint32_t hash = hashOf(text);
    Slot& slot = slots_[slotOf(records, text, hash)];
    if (slot.record != kFree) return false;
    slot = {hash, record};
    order_.push_back(record);
    return true;
}

std::optional<uint32_t> TextHash::find(const TextRows& records, std::string_view text) const {
    if (slots_.empty()) return std::nullopt;
    const Slot& slot = slots_[slotOf(records, text, hashOf(text))];
    return slot.record == kFree ? std::nullopt : std::optional(slot.record);
}

void TextHash::grow() {
    constexpr size_t kFirst = 1024;
    const std::vector<Slot> before =
        std::exchange(slots_, std::vector<Slot>(std::max(kFirst, slots_.size() * 2)));
    for (const Slot& taken : before) {
        if (taken.record == kFree) continue;
        // Texts differ, so that the first free slot is the one.
        size_t slot = taken.hash & (slots_.size() - 1);
        while (slots_[slot].record != kFree) slot = (slot + 1) & (slots_.size() - 1);
        slots_[slot] = taken;
    }
}

}  // namespace norvane
