#include "module/cad/block_attributes.h"

#include "module/cad/ads_owners.h"
#include "module/cad/group_list.h"
#include "platform/text/text.h"

namespace norvane {

std::vector<BlockAttribute> ReadBlockAttributes(const ads_name insert) {
    std::vector<BlockAttribute> attributes;
    ads_name entity;
    ads_name_set(insert, entity);
    while (acdbEntNext(entity, entity) == RTNORM) {
        const ResultBuffers groups(acdbEntGet(entity));
        if (GroupText(groups.get(), 0) != "ATTRIB") break;
        attributes.push_back({GroupText(groups.get(), 2), GroupText(groups.get(), 1)});
    }
    return attributes;
}

std::string AttributeText(const std::vector<BlockAttribute>& attributes, const std::string& tag) {
    for (const BlockAttribute& attribute : attributes)
        if (text::equalNoCase(attribute.tag, tag)) return attribute.text;
    return "";
}

std::vector<std::string> BlockTags(const std::string& block) {
    constexpr int kFirstEntity = -2;
    std::vector<std::string> tags;
    const ResultBuffers record(acdbTblSearch("BLOCK", block.c_str(), 0));
    const resbuf* first = FindResultBuffer(record.get(), kFirstEntity);
    if (!first) return tags;
    ads_name entity;
    ads_name_set(first->resval.rlname, entity);
    do {
        const ResultBuffers groups(acdbEntGet(entity));
        const std::string type = GroupText(groups.get(), 0);
        if (type == "ENDBLK") break;
        if (type == "ATTDEF") tags.push_back(text::upper(GroupText(groups.get(), 2)));
    } while (acdbEntNext(entity, entity) == RTNORM);
    return tags;
}

}  // namespace norvane
