// The attributes of blocks and of references to them.
#pragma once

#include <string>
#include <vector>

#include "platform/ads/result_buffer.h"

namespace norvane {

struct BlockAttribute {
    std::string tag;
    std::string text;
};

// Those of an INSERT, in their order.
std::vector<BlockAttribute> ReadBlockAttributes(const ads_name insert);
// The text of the first of a tag, without regard to case; "" without one.
std::string AttributeText(const std::vector<BlockAttribute>& attributes, const std::string& tag);
// The tags of the attributes that a block defines, in capitals, in their order in the drawing.
std::vector<std::string> BlockTags(const std::string& block);

}  // namespace norvane
