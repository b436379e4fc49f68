// Lists of groups as the host hands them out: entities and extended data.
#pragma once

#include <string>

#include "platform/ads/result_buffer.h"

namespace norvane {

// The first item of a group at or behind the head of a list; null when there is none.
resbuf* FindResultBuffer(resbuf* list, int group);
const resbuf* FindResultBuffer(const resbuf* list, int group);
// The text of such an item; "" when there is none.
std::string GroupText(const resbuf* list, int group);

// acdbEntMod, with an update of the entity that a vertex or an attribute belongs to. Its result.
int ModifyEntity(const resbuf* list);

}  // namespace norvane
