// The labels and colours of features that the drawing keeps, and that travel with it.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "module/annotation/annotation_sets.h"

namespace norvane {

struct KeptAnnotation {
    std::map<std::string, FeatureLabels> labels;  // by feature, in capitals
    std::map<std::string, FeatureColours> colours;
    // What a user must know of entries that are not used, a sentence each. They stay in the drawing.
    std::vector<std::string> remarks;
};

KeptAnnotation ReadKeptAnnotation();

// Each is a step of undo, and gives "" when it was done, else a sentence that says why not.
std::string KeepLabels(std::string_view feature, const FeatureLabels& labels);
std::string KeepColours(std::string_view feature, const FeatureColours& colours);
// False when there are none.
bool ForgetLabels(std::string_view feature);
bool ForgetColours(std::string_view feature);

}  // namespace norvane
