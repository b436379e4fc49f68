// What ties an attribute of a block to a field: the value comes from the record of a table whose key field
// has the key of the block.
#pragma once

#include <string>

#include "module/titleblocks/link_format.h"
#include "platform/dao/database_path.h"

namespace norvane {

struct BlockLink {
    // In capitals, but for the database. They compare without regard to case, the database exactly.
    std::string block;
    std::string attribute;
    std::string key;  // the field by which a record is found
    std::string table;
    std::string field;  // the one whose value goes into the attribute
    dao::DatabasePath database;
    LinkFormat format;
};

}  // namespace norvane
