#include "module/cad/group_list.h"

#include "platform/ads/entities.h"

namespace norvane {

const resbuf* FindResultBuffer(const resbuf* list, int group) {
    while (list && list->restype != group) list = list->rbnext;
    return list;
}

resbuf* FindResultBuffer(resbuf* list, int group) {
    return const_cast<resbuf*>(FindResultBuffer(const_cast<const resbuf*>(list), group));
}

std::string GroupText(const resbuf* list, int group) {
    const resbuf* item = FindResultBuffer(list, group);
    return item && item->resval.rstring ? item->resval.rstring : "";
}

int ModifyEntity(const resbuf* list) {
    int result = acdbEntMod(list);
    std::string type = GroupText(list, 0);
    const resbuf* name = FindResultBuffer(list, -1);
    if (result == RTNORM && name && (type == "VERTEX" || type == "ATTRIB")) acdbEntUpd(name->resval.rlname);
    return result;
}

}  // namespace norvane
