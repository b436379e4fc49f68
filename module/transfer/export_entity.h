// Entities of the drawing that can go out as shapes.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "module/store/gis_link.h"
#include "platform/ads/result_buffer.h"

namespace norvane {

class LinkedTable;

enum class ExportCategory {
    kPoint,
    kOpenPolyline,
    kClosedPolyline,
    kNone,  // no shape comes of it
};
constexpr int kExportCategories = 3;  // without kNone

struct ExportEntity {
    ads_name name = {0, 0};
    ExportCategory category = ExportCategory::kNone;
    // The third string of its link in capitals, which lists and file names show; "UNKNOWN" without one.
    std::string feature;
    // Its record, where it has a whole link by PT_ID to a database that is there: the paths as the link has
    // them, and the key. An empty output path: it has none.
    GisLink link;
    const LinkedTable* table = nullptr;  // of the record, once it has been read

    bool isLinked() const { return !link.outputPath.empty(); }
};

extern const char* const kUnknownFeature;

// The entities of a set in its order, with category and link.
std::vector<ExportEntity> ReadExportEntities(const ads_name selection);
// The same without those that are no survey point, line or polyline; linkedOthers: how many of these have a
// link.
std::vector<ExportEntity> ReadSurveyEntities(const ads_name selection, long& linkedOthers);

}  // namespace norvane
