#include "module/cad/call.h"

namespace norvane {

bool ArgumentReader::text(std::string& value) {
    if (!next(RTSTR)) return false;
    value = item_->resval.rstring ? item_->resval.rstring : "";
    item_ = item_->rbnext;
    return true;
}

bool ArgumentReader::real(double& value) {
    if (!next(RTREAL)) return false;
    value = item_->resval.rreal;
    item_ = item_->rbnext;
    return true;
}

bool ArgumentReader::shortInteger(int& value) {
    if (!next(RTSHORT)) return false;
    value = item_->resval.rint;
    item_ = item_->rbnext;
    return true;
}

bool ArgumentReader::entityName(ads_name value) {
    if (!next(RTENAME)) return false;
    ads_name_set(item_->resval.rlname, value);
    item_ = item_->rbnext;
    return true;
}

bool ArgumentReader::point(ads_point value) {
    if (!next(RTPOINT) && !next(RT3DPOINT)) return false;
    ads_point_set(item_->resval.rpoint, value);
    if (item_->restype == RTPOINT) value[2] = 0.0;
    item_ = item_->rbnext;
    return true;
}

bool ArgumentReader::selectionSet(ads_name value) {
    if (!next(RTPICKS)) return false;
    ads_name_set(item_->resval.rlname, value);
    item_ = item_->rbnext;
    return true;
}

}  // namespace norvane
