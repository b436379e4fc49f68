// What a record may say of its entity: where it stands, how long it is, and what area it has.
#pragma once

#include <array>
#include <optional>
#include <vector>

#include "platform/ads/result_buffer.h"

namespace norvane {

enum class Measure { kNorthing, kEasting, kElevation, kLength, kArea };

// The fields of a table that hold measures.
struct MeasureField {
    const char* name;
    Measure measure;
};
constexpr std::array kMeasureFields = {
    MeasureField{"NORTHING", Measure::kNorthing},   MeasureField{"EASTING", Measure::kEasting},
    MeasureField{"ELEVATION", Measure::kElevation}, MeasureField{"LENGTH", Measure::kLength},
    MeasureField{"LENGTH_DWG", Measure::kLength},   MeasureField{"AREA", Measure::kArea},
    MeasureField{"AREA_DWG", Measure::kArea}};
constexpr size_t kMeasureFieldCount = kMeasureFields.size();

// A value for each measure that the entity has: places for points, circles, texts and blocks; lengths for
// lines and polylines, in the plan and along their arcs; areas for closed polylines and circles.
using EntityMeasures = std::array<std::optional<double>, 5>;
EntityMeasures MeasureEntity(const ads_name entity);

}  // namespace norvane
