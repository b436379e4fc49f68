// The links of each block of the drawing that can be filled: what the settings file says, tested against the
// block and the databases.
#pragma once

#include <string>
#include <vector>

#include "module/titleblocks/block_link.h"

namespace norvane {

// The links of one block in their order, which is that of filling.
struct BlockLinkSet {
    std::string block;
    std::vector<std::string> tags;  // of the block
    std::vector<BlockLink>
        links;  // those whose database, table and field are there; a key that is not there is empty
    std::vector<BlockLink> refused;  // those whose database could not be read

    // The first link of an attribute; null without one.
    const BlockLink* find(const std::string& attribute) const;
};

// The links of one block among many, without regard to case.
std::vector<BlockLink> LinksOf(const std::vector<BlockLink>& links, const std::string& block);
// Blocks among these that have links whose attributes are all among the tags of the block.
std::vector<std::string> BlocksWithLinks(const std::vector<std::string>& blocks,
                                         const std::vector<BlockLink>& links);
// Tests the links of a block against their sources, each opened once.
BlockLinkSet TestLinks(const std::string& block, const std::vector<BlockLink>& links);
// The sets of all blocks that have one link that is good, and an insert that can be seen.
struct FillableBlock {
    BlockLinkSet set;
    long inserts = 0;
};
std::vector<FillableBlock> FindFillableBlocks(const std::vector<BlockLink>& links);

}  // namespace norvane
