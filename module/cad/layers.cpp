#include "module/cad/layers.h"

#include "module/cad/ads_owners.h"
#include "module/cad/group_list.h"

namespace norvane {

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
