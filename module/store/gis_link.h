// The link of a drawing entity to its record: extended data under the application ZGEO_GIS_2000.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/ads/objects.h"
#include "platform/ads/result_buffer.h"
#include "platform/dao/database_path.h"

namespace norvane {

constexpr const char* kGisLinkApplication = "ZGEO_GIS_2000";

struct GisLink {
    dao::DatabasePath templatePath;
    dao::DatabasePath outputPath;
    std::string featureName;
    std::string keyField;
    std::string keyValue;
};

enum class LinkState {
    kNone,       // no record
    kCorrupted,  // broken off before the third string; a line about it has been printed
    kFound,      // the feature and, as far as the record goes, the rest; not the paths are upper-cased and
                 // trimmed
};

// The strings of a link as they stand, in a list that acdbEntGetX gave for the application; none without a
// link.
std::vector<std::string> LinkStrings(const resbuf* groups);
// The same of any application, in a list that may hold several; nothing when it has no data there.
std::optional<std::vector<std::string>> ApplicationStrings(const resbuf* groups, const char* application);
// RTNORM when an entity carries a whole link, RTERROR otherwise.
int HasGisLink(const ads_name entity);
// Whether an entity carries this link already, in these very strings.
bool IsLinkedBy(const ads_name entity, const GisLink& link);
// Writes the link, or refreshes the one that is there, which keeps its number of strings. RTERROR when the
// entity cannot be opened.
int WriteGisLink(const ads_name entity, const GisLink& link);
// Gives an entity that was just made, and is open for write, its link. False when the host refuses it: a text
// of a link holds at most 255 bytes.
bool LinkNewEntity(AcDbObject& entity, const GisLink& link);
LinkState ReadGisLink(const ads_name entity, GisLink& link);
// Lets a link lead elsewhere: its first three strings, as far as it has them. The result of the host.
int RetargetGisLink(const ads_name entity, const dao::DatabasePath& templatePath,
                    const dao::DatabasePath& outputPath, const std::string& featureName);
// Takes the link, or the data of any application, off the entity. The result of the host.
int EraseGisLink(const ads_name entity);
int EraseApplicationData(const ads_name entity, const char* application);

}  // namespace norvane
