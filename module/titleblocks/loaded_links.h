// Saved links as the settings dialog takes them up again: tested against their databases, and emptied where
// these have changed.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "module/titleblocks/block_link.h"

namespace norvane {

// Where a database that is missing is now; nothing when nobody knows. Asked once a database.
using FindMissing = std::function<std::optional<dao::DatabasePath>(const dao::DatabasePath& missing)>;

// A key or field that the table does not have is empty in the result; so are all four of table, database, key
// and field where the table or the database is missing. What a source refuses is shown in a box, once a
// database.
std::vector<BlockLink> LoadLinks(std::vector<BlockLink> saved, const FindMissing& findMissing);

}  // namespace norvane
