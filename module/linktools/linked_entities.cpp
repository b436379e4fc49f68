#include "module/linktools/linked_entities.h"

#include <optional>
#include <utility>

#include "module/cad/group_list.h"
#include "module/store/gis_link.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

std::string comparable(const std::string& text) {
    return std::string(text::trim(text::upper(text)));
}

}  // namespace

std::vector<LinkedEntity> ReadLinkedEntities() {
    constexpr size_t kNeeded = 3, kStrings = 5;
    constexpr int kLayer = 8, kHandle = 5;
    std::vector<LinkedEntity> linked;
    const ResultBuffers application(acutBuildList(RTSTR, kGisLinkApplication, 0));
    SelectionSet all;
    acedSSGet("X", nullptr, nullptr, nullptr, all.out());
    const long count = all.length();
    for (long i = 0; i < count; ++i) {
        LinkedEntity entity;
        if (!all.at(i, entity.entity.name)) continue;
        const ResultBuffers groups(acdbEntGetX(entity.entity.name, application.get()));
        std::optional<std::vector<std::string>> strings =
            ApplicationStrings(groups.get(), kGisLinkApplication);
        if (!strings) continue;
        entity.isBrokenOff = strings->size() < kNeeded;
        strings->resize(kStrings);
        entity.handle = GroupText(groups.get(), kHandle);
        entity.layer = GroupText(groups.get(), kLayer);
        entity.templatePath = std::move((*strings)[0]);
        entity.outputPath = std::move((*strings)[1]);
        entity.feature = comparable((*strings)[2]);
        entity.keyField = comparable((*strings)[3]);
        entity.keyValue = comparable((*strings)[4]);
        linked.push_back(std::move(entity));
    }
    return linked;
}

}  // namespace norvane
