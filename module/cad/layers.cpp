#include "module/cad/layers.h"

#include "module/cad/ads_owners.h"
#include "module/cad/group_list.h"
#include "platform/ads/editor.h"

namespace norvane {

std::vector<std::string> LayerNames() {
    std::vector<std::string> names;
    for (ResultBuffers layer(acdbTblNext("LAYER", 1)); layer; layer.reset(acdbTblNext("LAYER", 0)))
        names.push_back(GroupText(layer.get(), 2));
    return names;
}

std::string CurrentLayer() {
    resbuf value{};
    if (acedGetVar("CLAYER", &value) != RTNORM || value.restype != RTSTR) return "";
    std::string name = value.resval.rstring;
    acad_free(value.resval.rstring);
    return name;
}

bool IsLayerHidden(const std::string& layer) {
    constexpr int kColour = 62, kFlags = 70, kFrozen = 1;
    const ResultBuffers record(acdbTblSearch("LAYER", layer.c_str(), 0));
    const resbuf* colour = FindResultBuffer(record.get(), kColour);
    const resbuf* flags = FindResultBuffer(record.get(), kFlags);
    return (colour && colour->resval.rint < 0) || (flags && flags->resval.rint & kFrozen);
}

bool IsOnHiddenLayer(const resbuf* groups) {
    return IsLayerHidden(GroupText(groups, 8));
}

}  // namespace norvane
