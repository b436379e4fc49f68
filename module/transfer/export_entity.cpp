#include "module/transfer/export_entity.h"

#include <unordered_map>

#include "module/cad/ads_owners.h"
#include "module/cad/group_list.h"
#include "module/cad/polyline_vertices.h"
#include "module/store/server_sign_in.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

const char* const kUnknownFeature = "UNKNOWN";

namespace {

constexpr const char* kSurveyPoint = "SRVPNO1";
constexpr int kFlags = 70;
constexpr int kClosed = 1;

bool isSurveyEntity(const resbuf* groups) {
    const std::string type = GroupText(groups, 0);
    for (const char* exported : {"POLYLINE", "LWPOLYLINE", "LINE"})
        if (text::equalNoCase(type, exported)) return true;
    return text::equalNoCase(type, "INSERT") && text::equalNoCase(GroupText(groups, 2), kSurveyPoint);
}

ExportCategory categoryOf(const ads_name entity, const resbuf* groups) {
    constexpr double kSamePlace = 1e-7;
    const std::string type = GroupText(groups, 0);
    if (type == "INSERT") return ExportCategory::kPoint;
    if (type == "LINE") return ExportCategory::kOpenPolyline;
    if (IsMesh(groups)) return ExportCategory::kNone;
    const resbuf* flags = FindResultBuffer(groups, kFlags);
    if (flags && flags->resval.rint & kClosed) return ExportCategory::kClosedPolyline;
    const std::vector<plane::PolylineVertex> vertices = ReadPolylineVertices(entity, groups);
    if (vertices.empty()) return ExportCategory::kNone;
    return plane::length(vertices.back() - vertices.front()) > kSamePlace ? ExportCategory::kOpenPolyline
                                                                          : ExportCategory::kClosedPolyline;
}

// Whether outputs are there, each looked for once.
class Outputs {
  public:
    bool isThere(const std::string& path) {
        auto [known, isNew] = known_.try_emplace(path);
        if (isNew) known->second = IsOutputThere(path);
        return known->second;
    }

  private:
    std::unordered_map<std::string, bool> known_;
};

void readLink(const resbuf* groups, Outputs& outputs, ExportEntity& entity) {
    const std::vector<std::string> strings = LinkStrings(groups);
    if (strings.size() > 2) entity.feature = text::upper(text::trim(strings[2]));
    if (entity.feature.empty()) {
        entity.feature = kUnknownFeature;
        return;
    }
    if (strings.size() < 5 || !text::equalNoCase(text::trim(strings[3]), "PT_ID")) return;
    const std::string output(text::trim(strings[1]));
    if (output.empty() || !outputs.isThere(output)) return;
    entity.link = {dao::DatabasePath(strings[0]), dao::DatabasePath(output), entity.feature, "PT_ID",
                   std::string(text::trim(strings[4]))};
}

template <typename Wanted>
std::vector<ExportEntity> readEntities(const ads_name selection, Wanted isWanted) {
    std::vector<ExportEntity> entities;
    Outputs outputs;
    const ResultBuffers application(acutBuildList(RTSTR, kGisLinkApplication, 0));
    long count = 0;
    acedSSLength(selection, &count);
    for (long i = 0; i < count; ++i) {
        ExportEntity entity;
        if (acedSSName(selection, i, entity.name) != RTNORM) continue;
        const ResultBuffers groups(acdbEntGetX(entity.name, application.get()));
        if (!groups || !isWanted(groups.get())) continue;
        entity.category = categoryOf(entity.name, groups.get());
        readLink(groups.get(), outputs, entity);
        entities.push_back(std::move(entity));
    }
    return entities;
}

}  // namespace

std::vector<ExportEntity> ReadExportEntities(const ads_name selection) {
    return readEntities(selection, [](const resbuf*) { return true; });
}

std::vector<ExportEntity> ReadSurveyEntities(const ads_name selection, long& linkedOthers) {
    linkedOthers = 0;
    return readEntities(selection, [&](const resbuf* groups) {
        const bool isWanted = isSurveyEntity(groups);
        if (!isWanted && !LinkStrings(groups).empty()) ++linkedOthers;
        return isWanted;
    });
}

}  // namespace norvane
