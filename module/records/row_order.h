// Records put into the order of one of their values.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/dao/table_rows.h"

namespace norvane {

// Numbers and dates by their amount, then texts without regard to case, letter by letter; Null and binary
// data first. Records of one value stay in the order of the table. Long texts count by their beginning.
class RowOrder {
  public:
    void add(dao::RowNumber row, const dao::Variant& value);
    // Sorts a part of what was added. False: nothing is left to sort.
    bool step();
    // The records in their order, once nothing is left; what was added is then forgotten.
    std::vector<dao::RowNumber> take(bool descending);

  private:
    struct Entry {
        uint64_t rank;  // of a number, and of the first letters of a text
        uint32_t text;  // where the rest of the letters begins in letters_; 0 for none
        uint8_t kind;   // Null, number, text
        dao::RowNumber row;
    };

    bool isLess(const Entry& a, const Entry& b) const;

    std::vector<Entry> entries_;
    std::vector<char> letters_ = {0};  // each text ends with a 0
    size_t sorted_ = 0;                // entries in sorted runs
    size_t run_ = 0;                   // their length while runs are put together; 0 before
    size_t merged_ = 0;                // where the next two begin
};

}  // namespace norvane
