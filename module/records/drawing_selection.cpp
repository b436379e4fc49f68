#include "module/records/drawing_selection.h"

#include <algorithm>

#include "module/selection/select_records.h"
#include "platform/ads/editor.h"

namespace norvane {

std::vector<EntityName> SeenEntities() {
    resbuf centre{}, height{}, pixels{};
    if (acedGetVar("VIEWCTR", &centre) != RTNORM || acedGetVar("VIEWSIZE", &height) != RTNORM ||
        acedGetVar("SCREENSIZE", &pixels) != RTNORM)
        return {};
    const double aspect = pixels.resval.rpoint[1] > 0 ? pixels.resval.rpoint[0] / pixels.resval.rpoint[1] : 1;
    const double up = height.resval.rreal / 2, right = up * aspect;
    const ads_point low = {centre.resval.rpoint[0] - right, centre.resval.rpoint[1] - up, 0};
    const ads_point high = {centre.resval.rpoint[0] + right, centre.resval.rpoint[1] + up, 0};
    SelectionSet seen;
    if (acedSSGet("C", low, high, nullptr, seen.out()) != RTNORM) return {};
    return MembersOf(seen.name());
}

bool SameEntities(std::vector<EntityName> one, std::vector<EntityName> other) {
    if (one.size() != other.size()) return false;
    auto byName = [](const EntityName& a, const EntityName& b) {
        return std::lexicographical_compare(std::begin(a.name), std::end(a.name), std::begin(b.name),
                                            std::end(b.name));
    };
    std::sort(one.begin(), one.end(), byName);
    std::sort(other.begin(), other.end(), byName);
    return std::equal(one.begin(), one.end(), other.begin(), [](const EntityName& a, const EntityName& b) {
        return std::equal(std::begin(a.name), std::end(a.name), std::begin(b.name));
    });
}

}  // namespace norvane
