// The records of entities.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "module/cad/call.h"

namespace norvane {

struct LinkedValues {
    EntityName entity;
    std::string table;
    // The fields of the table in their order, with the values as text; empty for Null and for binary data.
    std::vector<std::pair<std::string, std::string>> values;
};

// The records that entities lead to, in the order of the entities; those without a record are left out. Each
// table is read once, in full. problem: what an engine refused, a sentence for each table that could not be
// read.
std::vector<LinkedValues> ValuesOf(const std::vector<EntityName>& entities,
                                   std::vector<std::string>& problems);

}  // namespace norvane
