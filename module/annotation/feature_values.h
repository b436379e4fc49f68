// The values of one field in the records of a feature's entities.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "module/annotation/colour_classes.h"
#include "module/annotation/feature_records.h"

namespace norvane {

struct FeatureValues {
    std::vector<EntityValue> values;    // of the entities that have a record
    std::vector<std::string> problems;  // sentences
    size_t records = 0;                 // that the tables have
    bool isWhole = true;                // false: it was ended
};

FeatureValues ReadFeatureValues(std::string_view feature, std::string_view field,
                                const LinkedRecordTable::GoOn& goOn = {});

}  // namespace norvane
