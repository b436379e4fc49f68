// The file in which the links of title blocks are kept, zgeoblk.ini.
//
// A link is a line of block, attribute, key, table, field and database, with bars between; the database may
// hold more of them. Lines that begin with "QUERY_ZGEO:" are another program's and stand at the end. Formats
// of links stand in lines of their own without a bar, "FORMAT_ZGEO:N2;BLOCK;ATTRIBUTE", which readers of
// links pass over. What is none of these stays as it is.
#pragma once

#include <string>
#include <vector>

#include "module/titleblocks/block_link.h"

namespace norvane {

// The file of this person: in the folder of usrdir$, or in the configuration folder where that is empty.
std::string BlockLinkFile();

// The links in the order of the file, those of fewer than five bars left out. A missing file is made; one
// that cannot be read has none.
std::vector<BlockLink> ReadBlockLinks(const std::string& path);

// Puts the links of a block, of which only those of that block are taken, in place of those that it had,
// behind the links of all others. False when the file cannot be written; it is then as it was.
bool SaveBlockLinks(const std::string& path, const std::string& block, const std::vector<BlockLink>& links);

}  // namespace norvane
