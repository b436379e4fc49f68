#include "module/titleblocks/title_blocks.h"

#include <algorithm>

#include "module/cad/ads_owners.h"
#include "module/cad/block_attributes.h"
#include "module/cad/group_list.h"
#include "module/cad/layers.h"
#include "platform/text/text.h"
#include "platform/text/wild_cards.h"

namespace norvane {

namespace {

// Looks each layer up once.
class HiddenLayers {
  public:
    bool has(const std::string& layer) {
        const auto [known, isNew] = layers_.try_emplace(layer, false);
        if (isNew) known->second = IsLayerHidden(layer);
        return known->second;
    }

  private:
    std::map<std::string, bool> layers_;
};

// Calls `take` with each visible insert that a filter finds, and its groups.
template <class Take>
void forEachVisible(const resbuf* filter, Take take) {
    SelectionSet inserts;
    if (acedSSGet("X", nullptr, nullptr, filter, inserts.out()) != RTNORM) return;
    HiddenLayers hidden;
    EntityName insert;
    for (long i = 0, length = inserts.length(); i < length && inserts.at(i, insert.name); ++i) {
        const ResultBuffers groups(acdbEntGet(insert.name));
        if (groups && !hidden.has(GroupText(groups.get(), 8))) take(insert, groups.get());
    }
}

// Calls `take` with the groups of each attribute until it gives false.
template <class Take>
void forEachAttribute(const EntityName& insert, Take take) {
    EntityName entity = insert;
    while (acdbEntNext(entity.name, entity.name) == RTNORM) {
        ResultBuffers groups(acdbEntGet(entity.name));
        if (GroupText(groups.get(), 0) != "ATTRIB" || !take(std::move(groups))) break;
    }
}

}  // namespace

std::vector<std::string> BlocksWithAttributes() {
    constexpr int kFlags = 70, kHasAttributes = 2;
    std::vector<std::string> blocks;
    for (ResultBuffers block(acdbTblNext("BLOCK", 1)); block; block.reset(acdbTblNext("BLOCK", 0))) {
        const resbuf* flags = FindResultBuffer(block.get(), kFlags);
        const std::string name = GroupText(block.get(), 2);
        if (flags && flags->resval.rint & kHasAttributes && name.find('|') == std::string::npos)
            blocks.push_back(text::upper(name));
    }
    return blocks;
}

std::vector<std::string> TagsOfBlock(const std::string& block) {
    std::vector<std::string> tags;
    for (std::string& tag : BlockTags(block))
        if (std::find(tags.begin(), tags.end(), tag) == tags.end()) tags.push_back(std::move(tag));
    return tags;
}

std::vector<EntityName> VisibleInserts(const std::string& block) {
    std::vector<EntityName> inserts;
    const ResultBuffers filter(
        acutBuildList(-4, "<and", RTDXF0, "INSERT", 2, text::literalPattern(block).c_str(), -4, "and>", 0));
    forEachVisible(filter.get(), [&](const EntityName& insert, const resbuf*) { inserts.push_back(insert); });
    return inserts;
}

std::map<std::string, long> CountVisibleInserts() {
    std::map<std::string, long> counts;
    const ResultBuffers filter(acutBuildList(RTDXF0, "INSERT", 0));
    forEachVisible(filter.get(), [&](const EntityName&, const resbuf* groups) {
        ++counts[text::upper(GroupText(groups, 2))];
    });
    return counts;
}

std::vector<InsertAttribute> AttributesOfInsert(const EntityName& insert) {
    std::vector<InsertAttribute> attributes;
    forEachAttribute(insert, [&](ResultBuffers groups) {
        std::string tag = GroupText(groups.get(), 2), text = GroupText(groups.get(), 1);
        attributes.push_back({std::move(tag), std::move(text), std::move(groups)});
        return true;
    });
    return attributes;
}

std::string AttributeText(const EntityName& insert, const std::string& tag) {
    std::string found;
    forEachAttribute(insert, [&](const ResultBuffers& groups) {
        if (!text::equalNoCase(GroupText(groups.get(), 2), tag)) return true;
        found = GroupText(groups.get(), 1);
        return false;
    });
    return found;
}

std::string HandleOf(const EntityName& entity) {
    const ResultBuffers groups(acdbEntGet(entity.name));
    return GroupText(groups.get(), 5);
}

bool WriteAttributes(const EntityName& insert, std::vector<InsertAttribute>& attributes) {
    bool allTaken = true;
    for (InsertAttribute& attribute : attributes) {
        if (resbuf* text = FindResultBuffer(attribute.groups.get(), 1)) {
            acad_free(text->resval.rstring);
            text->resval.rstring = acad_strdup(attribute.text.c_str());
        }
        allTaken = acdbEntMod(attribute.groups.get()) == RTNORM && allTaken;
    }
    acdbEntUpd(insert.name);
    return allTaken;
}

}  // namespace norvane
