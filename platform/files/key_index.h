// The index of a file of records: which record holds a key, with the keys in an order of the caller's. An
// SQLite file without a journal, since it can be made anew from the records at any time.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace files {

class KeyIndex {
  public:
    enum class Step { kExact, kFirst, kLast, kNext, kPrevious };
    enum class Found { kYes, kNo, kFailed };

    // -1, 0 or 1. The bytes of a key may be of any code page.
    using Order = int (*)(std::string_view a, std::string_view b);

    // The index in this file if it belongs to the records of that identity; null otherwise. The order must be
    // the one that it was created with.
    static std::unique_ptr<KeyIndex> open(const std::string& path, uint64_t identity, Order order);
    // An empty one, in place of whatever is there. Null when it cannot be made.
    static std::unique_ptr<KeyIndex> create(const std::string& path, uint64_t identity, Order order);
    ~KeyIndex();
    KeyIndex(const KeyIndex&) = delete;
    KeyIndex& operator=(const KeyIndex&) = delete;

    // Fills in the key that was found, and its record.
    Found find(Step step, std::string& key, int32_t& record);
    // kNo: the key is there already, and stays as it is.
    Found add(const std::string& key, int32_t record);
    // The key names this record from now on, whether it was there or not.
    bool put(const std::string& key, int32_t record);
    bool remove(const std::string& key);
    long count();

    // Changes reach the file between the two.
    bool begin() { return run("BEGIN"); }
    bool commit() { return run("COMMIT"); }

  private:
    // The first five are those of Step.
    enum Statement { kAdd = 5, kPut, kRemove, kCount };

    struct Connection;  // to SQLite, whose names stay out of here

    KeyIndex();
    static std::unique_ptr<KeyIndex> openFile(const std::string& path, Order order);
    bool run(const char* sql);
    bool belongsTo(uint64_t identity);
    bool prepare();
    int change(Statement which, const std::string& key, int32_t record);

    std::unique_ptr<Connection> connection_;
};

}  // namespace files
