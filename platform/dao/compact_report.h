// What became of a database file that was compacted.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace dao {

struct CompactReport {
    uint64_t bytesBefore = 0, bytesAfter = 0;
    std::vector<std::string> losses;  // a sentence for each; none: everything is there
    std::string kept;                 // where the damaged file was put aside; "" when nothing was lost
};

// How many tables are done, of how many.
using CompactProgress = std::function<void(size_t done, size_t all)>;

}  // namespace dao
