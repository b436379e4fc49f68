// The export of entities of the drawing to one set of shape files, with their records.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "module/transfer/export_entity.h"
#include "module/transfer/linked_records.h"
#include "module/transfer/new_shape_set.h"

namespace norvane {

struct ExportOptions {
    bool extraFields = false;           // coordinates, lengths and areas of the drawing go into the table
    bool holes = false;                 // a closed polyline within another becomes its hole
    bool leavesMissingHeights = false;  // a point without a height gets none, and not 0
    std::optional<double>
        deviation;          // of chords from their arcs; nothing: arcs become chords as they always have
    std::string reference;  // what the .prj says; "" for no .prj
};

// What became of the entities of a set.
struct ExportCounts {
    int written = 0;        // shapes, each with a row
    int holes = 0;          // entities that are holes of others
    int withoutRecord = 0;  // of the shapes written
    int cutTexts = 0;       // values that are longer than their column
    int tooLarge = 0;       // coordinates, lengths and areas that their column cannot hold
    int leftOutColumns = 0;
    // Left out.
    int meshes = 0;
    int tooShort = 0;    // fewer than two vertices
    int farOut = 0;      // coordinates that are none or not below 1e+30
    int otherKinds = 0;  // no shapes of this type come of them

    int leftOut() const { return meshes + tooShort + farOut + otherKinds; }
    void add(const ExportCounts& other);
};

enum class ExportOutcome {
    kWritten,
    kFailed,   // which has been told
    kStopped,  // by the user
};

struct ExportResult {
    ExportOutcome outcome = ExportOutcome::kFailed;
    ExportCounts counts;
    std::unique_ptr<NewShapeSet> set;  // closed; where it was written
};

constexpr long kEntitiesBetweenQuestions = 50;

// Writes the set of a name, without an ending, beside the files of a folder. shapeType: 1, 3, 5, or 11, 13,
// 15 with heights. The entities' records have been read. goOn is asked before the first entity and after
// each 50.
ExportResult ExportToShp(int32_t shapeType, SetFolder& folder, const std::string& name,
                         std::span<ExportEntity* const> entities, const ExportOptions& options,
                         const GoOn& goOn);

// Tells that a set has failed.
void TellNotWhole(const std::string& name);

// The name of a set in a path: that of the file up to its first ".".
std::string SetName(const std::string& path);

// "60 polygons written to lots.shp; 3 entities left out: 2 with fewer than two vertices, 1 mesh"
std::string ExportSummary(int32_t shapeType, const std::string& name, const ExportCounts& counts);
// What of it stands behind the words of what was written: "; 3 entities left out: ..." or "".
std::string LeftOutText(const ExportCounts& counts);
// "1 mesh", "2 meshes".
std::string Counted(int count, const std::string& one, const std::string& many);

}  // namespace norvane
