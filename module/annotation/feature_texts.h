// What labels say: the texts of a feature's entities, from their records.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "module/annotation/feature_records.h"
#include "module/cad/call.h"

namespace norvane {

struct EntityText {
    EntityName entity;
    std::string handle;
    std::string text;  // lines divided by \n; "" for an entity whose record says nothing
};

struct FeatureTexts {
    std::vector<EntityText> texts;      // of the entities that have a record
    std::vector<std::string> problems;  // sentences
    size_t records = 0;                 // that the tables have
    bool isWhole = true;                // false: it was ended
};

// The texts that expressions give, one a line of the label. Where an expression cannot be used on a table,
// its entities get no text, and a problem says why.
FeatureTexts ReadFeatureTexts(std::string_view feature, std::span<const std::string> expressions,
                              const LinkedRecordTable::GoOn& goOn = {});

// Why expressions cannot be the label of a feature, a sentence; "" where they can be used on all of its
// tables.
std::string LabelProblem(std::string_view feature, std::span<const std::string> expressions);

}  // namespace norvane
