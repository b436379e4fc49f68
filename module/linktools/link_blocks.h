// Links from blocks: an attribute of a block is the key of its record, another one, or the person, says in
// which table. No record is made or changed.
#pragma once

#include <string>
#include <vector>

#include "module/cad/call.h"
#include "platform/dao/database_path.h"

namespace norvane {

// A reference to a block, with attributes.
struct BlockReference {
    EntityName entity;
    std::string block;
};
// Those of a selection, in its order.
std::vector<BlockReference> CollectBlocks(const ads_name set);

struct BlockLinkChoice {
    // Where the name of the table comes from.
    enum class Table { kNone, kFromAttribute, kGiven };

    dao::DatabasePath templatePath;
    dao::DatabasePath outputPath;
    std::string block;
    std::string firstKey;   // the tag of the attribute whose value is the record's PT_ID
    std::string secondKey;  // a tag, or the name of a table
    Table table = Table::kNone;
};

// Links the references to the chosen block whose key is in the output, and tells what came of it. Escape ends
// it between two blocks; links that were made stay.
void LinkBlocks(const std::vector<BlockReference>& references, const BlockLinkChoice& choice);

// Asks for the choice and links the blocks of a selection. The databases are those that the dialogs remember.
void LinkBlocksOfSelection(const ads_name set);
// Function code 4: the same for a selection that the person makes, and the current databases. Gives 0.
void LinkFromBlocks(Call& call);

}  // namespace norvane
