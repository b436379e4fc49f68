// The attributes of block references.
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

}  // namespace norvane
