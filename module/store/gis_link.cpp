#include "module/store/gis_link.h"

#include <algorithm>
#include <array>
#include <span>

#include "module/cad/ads_owners.h"
#include "module/cad/group_list.h"
#include "platform/ads/editor.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr int kExtendedData = -3;
constexpr int kApplicationName = 1001;
constexpr int kString = 1000;

// The strings in the order of the record.
constexpr size_t kStrings = 5;
std::array<std::string, kStrings> stringsOf(const GisLink& link) {
    return {link.templatePath.text(), link.outputPath.text(), link.featureName, link.keyField, link.keyValue};
}

ResultBuffers entityWithData(const ads_name entity, const char* application) {
    ResultBuffers applications(acutBuildList(RTSTR, application, 0));
    return ResultBuffers(acdbEntGetX(entity, applications.get()));
}

ResultBuffers entityWithLink(const ads_name entity) {
    return entityWithData(entity, kGisLinkApplication);
}

ResultBuffers newRecord(const GisLink& link) {
    const auto strings = stringsOf(link);
    return ResultBuffers(acutBuildList(kApplicationName, kGisLinkApplication, 1002, "{", kString,
                                       strings[0].c_str(), kString, strings[1].c_str(), kString,
                                       strings[2].c_str(), kString, strings[3].c_str(), kString,
                                       strings[4].c_str(), 1002, "}", 0));
}

// Overwrites the strings that stand one behind the other, as far as there are any.
void overwrite(resbuf* item, std::span<const std::string> strings) {
    item = FindResultBuffer(item, kString);
    for (const std::string& string : strings) {
        if (!item || item->restype != kString) return;
        acad_free(item->resval.rstring);
        item->resval.rstring = acad_strdup(string.c_str());
        item = item->rbnext;
    }
}

}  // namespace

std::vector<std::string> LinkStrings(const resbuf* groups) {
    std::vector<std::string> strings;
    const resbuf* item = FindResultBuffer(groups, kExtendedData);
    while (item && (item = FindResultBuffer(item->rbnext, kString)))
        strings.emplace_back(item->resval.rstring ? item->resval.rstring : "");
    return strings;
}

std::optional<std::vector<std::string>> ApplicationStrings(const resbuf* groups, const char* application) {
    const resbuf* item = FindResultBuffer(groups, kExtendedData);
    while (item && (item = FindResultBuffer(item->rbnext, kApplicationName)))
        if (text::equalNoCase(item->resval.rstring, application)) break;
    if (!item) return std::nullopt;
    std::vector<std::string> strings;
    for (item = item->rbnext; item && item->restype != kApplicationName; item = item->rbnext)
        if (item->restype == kString) strings.emplace_back(item->resval.rstring ? item->resval.rstring : "");
    return strings;
}

int HasGisLink(const ads_name entity) {
    return LinkStrings(entityWithLink(entity).get()).size() >= kStrings ? RTNORM : RTERROR;
}

bool IsLinkedBy(const ads_name entity, const GisLink& link) {
    const std::vector<std::string> there = LinkStrings(entityWithLink(entity).get());
    const auto wanted = stringsOf(link);
    return there.size() >= kStrings && std::equal(wanted.begin(), wanted.end(), there.begin());
}

int WriteGisLink(const ads_name entity, const GisLink& link) {
    OpenObject<AcDbObject> object(entity, AcDb::kForRead);
    if (!object) return RTERROR;
    ResultBuffers record(object->xData(kGisLinkApplication));
    if (record) {
        overwrite(record.get(), stringsOf(link));
    } else {
        acdbRegApp(kGisLinkApplication);
        record = newRecord(link);
    }
    bool written = object->upgradeOpen() == Acad::eOk && object->setXData(record.get()) == Acad::eOk;
    return written ? RTNORM : RTERROR;
}

bool LinkNewEntity(AcDbObject& entity, const GisLink& link) {
    acdbRegApp(kGisLinkApplication);
    return entity.setXData(newRecord(link).get()) == Acad::eOk;
}

LinkState ReadGisLink(const ads_name entity, GisLink& link) {
    link = {};
    const ResultBuffers data = entityWithLink(entity);
    if (!FindResultBuffer(data.get(), kExtendedData)) return LinkState::kNone;
    std::vector<std::string> strings = LinkStrings(data.get());
    const size_t found = strings.size();
    strings.resize(kStrings);
    link = {dao::DatabasePath(strings[0]), dao::DatabasePath(strings[1]), strings[2], strings[3], strings[4]};
    if (found < 3) {
        acutPrintf("\nGIS Data corrupted! Please run Audit Links!");
        return LinkState::kCorrupted;
    }
    for (auto member : {&GisLink::featureName, &GisLink::keyField, &GisLink::keyValue})
        link.*member = text::trim(text::upper(link.*member));
    return LinkState::kFound;
}

int RetargetGisLink(const ads_name entity, const dao::DatabasePath& templatePath,
                    const dao::DatabasePath& outputPath, const std::string& featureName) {
    const ResultBuffers data = entityWithLink(entity);
    resbuf* extended = FindResultBuffer(data.get(), kExtendedData);
    if (!extended) return RTERROR;
    overwrite(extended, std::array{templatePath.text(), outputPath.text(), featureName});
    return acdbEntMod(data.get());
}

int EraseGisLink(const ads_name entity) {
    return EraseApplicationData(entity, kGisLinkApplication);
}

int EraseApplicationData(const ads_name entity, const char* application) {
    ResultBuffers data = entityWithData(entity, application);
    if (!data) return RTERROR;
    resbuf* last = data.get();
    while (last->rbnext && last->rbnext->restype != kExtendedData) last = last->rbnext;
    ResultBuffers cut(last->rbnext);
    last->rbnext = acutNewRb(kExtendedData);
    last->rbnext->rbnext = acutBuildList(kApplicationName, application, 0);
    return acdbEntMod(data.get());
}

}  // namespace norvane
