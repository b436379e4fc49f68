// Compacting a file whatever its state is.
#pragma once

#include "platform/dao/jet/compact.h"

namespace jet {

// What became of a file.
struct CompactReport {
    uint64_t bytesBefore = 0, bytesAfter = 0;
    std::vector<std::string> losses;  // a sentence for each; none: everything is there
    std::string kept;                 // where the damaged file was put aside; "" when nothing was lost
};

// Compacts a database that nobody else writes to. Of a damaged one, what can be read is saved into its place;
// where anything was lost the damaged file is kept beside it under another name. If anything fails, the file
// is as it was.
CompactReport compactAndRepair(const std::string& path, const Database::Options& options,
                               const Progress& progress = {});

}  // namespace jet
