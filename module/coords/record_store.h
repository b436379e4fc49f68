// A keyed store of points in two files: records of one length in the data file, and an index of their keys in
// the order of CompareNames.
//
// The data file alone holds the points:
//
//     0   1  'a'                             record  0   11  key, the name; zeros in a record removed
//     1  48  what the file is, for people           11    5  attribute
//    50   4  "XXX" (.zgc) or "XX" (.crd)            16    8  northing
//    56   8  "VER 3"                                24    8  easting
//    64   8  what the index must say too            32    8  elevation
//    72   4  1 while the index may be behind        40  104  description
//    76   4  most bytes of a description
//    80   8  a number of the user's
//    88  32  date of creation
//   120  32  a text
//   288      the records of 144 bytes
//
// The index is derived: it is made anew from the data whenever it is missing, of another file, or behind.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/files/key_index.h"

namespace files {
class RandomFile;
}

namespace norvane {

class RecordStore {
  public:
    static constexpr size_t kRecordSize = 144;
    static constexpr size_t kLongestKey = 10;
    using Record = std::array<char, kRecordSize>;

    // What opening gives: kOpened, or one of the others.
    enum OpenStatus : int {
        kOpened = 1,
        kNoIndex = -3,
        kUnreadable = -4,
        kNoStore = -8,
        kTooMany = -9,
        kNoAccess = -12,
    };
    // What every other operation gives.
    enum Status : int { kDone = 1, kNoKey = 0, kFailed = -1, kRefusedKey = -2 };

    struct Header {
        int32_t descriptionLimit = 100;
        double number = 0;
        std::string date, text;  // as stored, at most 31 bytes
    };

    RecordStore();
    // Closes.
    ~RecordStore();
    RecordStore(const RecordStore&) = delete;
    RecordStore& operator=(const RecordStore&) = delete;

    int open(const std::string& dataPath, const std::string& indexPath);
    // An empty pair in place of one that is there.
    int create(const std::string& dataPath, const std::string& indexPath, const Header& header);
    // Brings both files to rest. False when not all was written.
    bool close();
    bool isOpen() const { return data_ != nullptr; }
    // The pair of file numbers that is in use, 2n - 1 and 2n; 0 when closed.
    int dataFileNumber() const { return slot_ ? 2 * slot_ - 1 : 0; }
    int indexFileNumber() const { return 2 * slot_; }

    // The key is filled in with the one found. Keys have 1 to kLongestKey bytes.
    int first(std::string& key, Record& record);
    int last(std::string& key, Record& record);
    int next(std::string& key, Record& record);
    int previous(std::string& key, Record& record);
    int read(const std::string& key, Record& record);
    // A record holds its key in its first bytes.
    int add(const std::string& key, const Record& record);
    int rewrite(const std::string& key, const Record& record);
    int remove(const std::string& key);
    long count();
    // The number in the data file of the record read last, and the key of a number.
    int32_t recordNumber() const { return recordNumber_; }
    int keyOf(int32_t number, std::string& key);

    const Header& header() const { return header_; }
    int setHeader(const Header& header);
    // Hands over what was written to the system.
    bool flush();

  private:
    int attach(const std::string& indexPath);
    bool indexMayBeBehind();
    bool rebuildIndex(const std::string& indexPath);
    int lookUp(files::KeyIndex::Step step, std::string& key, Record& record);
    bool beginChange();
    bool writeState(int32_t behind);
    bool writeHeader();
    bool loadHeader();
    int64_t offsetOf(int32_t number) const;
    int32_t recordTotal() const;

    std::unique_ptr<files::RandomFile> data_;
    std::unique_ptr<files::KeyIndex> index_;
    Header header_;
    uint64_t identity_ = 0;
    bool changing_ = false;  // the header says that the index may be behind
    int32_t recordNumber_ = -1;
    int slot_ = 0;
};

}  // namespace norvane
