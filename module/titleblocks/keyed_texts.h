// Many records of texts in little room, and a hash by which they are found.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace norvane {

// Records of the same number of texts. They stand one behind the other in pieces of memory that stay where
// they are.
class TextRows {
  public:
    explicit TextRows(size_t columns = 0) : columns_(columns) {}
    uint32_t count() const { return static_cast<uint32_t>(records_.size()); }
    void append(std::span<const std::string> texts);
    // Takes the last append back.
    void removeLast();
    // Good until the record is removed.
    std::string_view text(uint32_t record, size_t column) const;

  private:
    void addPiece(size_t bytes);

    size_t columns_;
    std::vector<std::unique_ptr<char[]>> pieces_;
    char* free_ = nullptr;  // in the last piece
    size_t left_ = 0;       // bytes of it
    // Of each record the lengths of its texts, and behind them the texts.
    std::vector<char*> records_;
};

// Finds records by one of their texts, of several with a text the first.
class TextHash {
  public:
    explicit TextHash(size_t column = 0) : column_(column) {}
    // The hash of a text that is soon to be added. The memory that this needs begins to come.
    uint32_t announce(std::string_view text) const;
    // Takes in a record, with the hash of its text. False, and nothing is done, when there is one with its
    // text.
    bool add(const TextRows& records, uint32_t record, uint32_t hash);
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

// Texts, each once.
class TextSet {
  public:
    void add(const std::string& text);
    bool has(std::string_view text) const { return hash_.find(texts_, text).has_value(); }

  private:
    TextRows texts_{1};
    TextHash hash_;
};

}  // namespace norvane
