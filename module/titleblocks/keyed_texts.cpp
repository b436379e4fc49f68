#include "module/titleblocks/keyed_texts.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <utility>

namespace norvane {

namespace {

uint32_t hashOf(std::string_view text) {
    const uint64_t hash = std::hash<std::string_view>()(text);
    return static_cast<uint32_t>(hash ^ hash >> 32);
}

}  // namespace

void TextRows::addPiece(size_t bytes) {
    constexpr size_t kPiece = size_t{1} << 16;
    left_ = std::max(kPiece, bytes);
    pieces_.push_back(std::make_unique_for_overwrite<char[]>(left_));
    free_ = pieces_.back().get();
}

void TextRows::append(std::span<const std::string> texts) {
    size_t bytes = columns_ * sizeof(uint32_t);
    for (const std::string& text : texts) bytes += text.size();
    if (bytes > left_) addPiece(bytes);
    char* length = free_;
    char* at = free_ + columns_ * sizeof(uint32_t);
    for (const std::string& text : texts) {
        const auto size = static_cast<uint32_t>(text.size());
        std::memcpy(length, &size, sizeof size);
        std::memcpy(at, text.data(), size);
        length += sizeof size;
        at += size;
    }
    records_.push_back(std::exchange(free_, at));
    left_ -= bytes;
}

void TextRows::removeLast() {
    left_ += static_cast<size_t>(free_ - records_.back());
    free_ = records_.back();
    records_.pop_back();
}

std::string_view TextRows::text(uint32_t record, size_t column) const {
    const char* length = records_[record];
    const char* at = length + columns_ * sizeof(uint32_t);
    for (;; --column) {
        uint32_t size = 0;
        std::memcpy(&size, length, sizeof size);
        if (column == 0) return {at, size};
        length += sizeof size;
        at += size;
    }
}

uint32_t TextHash::announce(std::string_view text) const {
    const uint32_t hash = hashOf(text);
    if (!slots_.empty()) __builtin_prefetch(&slots_[hash & (slots_.size() - 1)]);
    return hash;
}

size_t TextHash::slotOf(const TextRows& records, std::string_view text, uint32_t hash) const {
    size_t slot = hash & (slots_.size() - 1);
    while (slots_[slot].record != kFree &&
           (slots_[slot].hash != hash || records.text(slots_[slot].record, column_) != text))
        slot = (slot + 1) & (slots_.size() - 1);
    return slot;
}

bool TextHash::add(const TextRows& records, uint32_t record, uint32_t hash) {
    if (order_.size() * 2 >= slots_.size()) grow();
    Slot& slot = slots_[slotOf(records, records.text(record, column_), hash)];
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

void TextSet::add(const std::string& text) {
    texts_.append({&text, 1});
    if (!hash_.add(texts_, texts_.count() - 1, hash_.announce(text))) texts_.removeLast();
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
