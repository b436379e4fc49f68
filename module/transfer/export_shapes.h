// The export of entities of the drawing to one set of shape files, with their records.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "module/transfer/export_counts.h"
#include "module/transfer/export_entity.h"
#include "module/transfer/export_options.h"
#include "module/transfer/linked_records.h"
#include "module/transfer/new_shape_set.h"

namespace norvane {

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

}  // namespace norvane
