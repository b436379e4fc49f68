// What of an entity's groups says how it looks, found in one pass: a look for each code would go over all of
// the groups every time.
#pragma once

#include "hostcad/drawing/group.h"

namespace hostcad {

constexpr int kByBlock = 0;
constexpr int kByLayer = 256;

// The properties that all entities have.
struct EntityLooks {
    std::string_view layer = "0";
    std::string_view lineType = "BYLAYER";
    int colour = kByLayer;
    int64_t trueColour = -1;
    double patternScale = 1;
    bool isInvisible = false;
};
EntityLooks looksOf(Groups groups);

// The groups of a text, the first of each code; null where there is none.
struct TextGroups {
    const Group *text = nullptr, *tag = nullptr, *at = nullptr, *second = nullptr, *height = nullptr,
                *factor = nullptr, *angle = nullptr, *horizontal = nullptr, *vertical = nullptr,
                *verticalOfAttribute = nullptr, *normal = nullptr;
};
TextGroups textGroupsOf(Groups groups);

inline double realOr(const Group* group, double absent) {
    return group ? group->asReal() : absent;
}

inline int64_t integerOr(const Group* group, int64_t absent) {
    return group ? group->asInteger() : absent;
}

}  // namespace hostcad
