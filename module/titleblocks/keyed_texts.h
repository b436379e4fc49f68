// Many records of texts in little room, and a hash by which they are found.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace norvane {

// Records of the same number of texts, all of which stand one behind the other.
class TextRows {
  public:
    explicit TextRows(size_t columns = 0) : columns_(columns) {}
    uint32_t count() const { return static_cast<uint32_t>(columns_ ? ends_.size() / columns_ : 0); }
    void append(std::span<const std::string> texts);
    void removeLast();
    // Good until the next change.
    std::string_view text(uint32_t record, size_t column) const;

  private:
    size_t columns_;
    std::string bytes_;
    std::vector<size_t> ends_;  // of each text in the bytes
};

// Finds records by one of their texts, of several with a text the first.
class TextHash {
  public:
    explicit TextHash(size_t column = 0) : column_(column) {}
    // Takes in a record. False, and nothing is done, when there is one with its text.
    bool add(const TextRows& records, uint32_t record);
    std::optional<uint32_t> find(const TextRows& records, std::string_view text) const;
    // Those that were taken in, in their order.
    const std::vector<uint32_t>& records() const { return order_; }
    size_t column() const { return column_; }

  private:
    struct Slot {
        uint32_t hash = 0;
        uint32_t record = kFree;
    };
    static constexpr uint32_t kFree = 0xFFFFFFFF;
    // Where a text is, or would be.
    size_t slotOf(const TextRows& records, std::string_view text, uint32_t hash) const;
    void grow();

    size_t column_;
    std::vector<Slot> slots_;  // a power of two of them, at least half of them free
    std::vector<uint32_t> order_;
};

}  // namespace norvane
