// Compacting a file whatever its state is.
#pragma once

#include "platform/dao/jet/compact.h"

namespace jet {

using dao::CompactReport;

// Compacts a database that nobody else writes to. Of a damaged one, what can be read is saved into its place;
// where anything was lost the damaged file is kept beside it under another name. If anything fails, the file
// is as it was.
CompactReport compactAndRepair(const std::string& path, const Database::Options& options,
                               const Progress& progress = {});

}  // namespace jet
