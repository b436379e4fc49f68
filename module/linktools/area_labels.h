// The areas of linework with the texts in them.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "module/cad/ads_owners.h"

namespace norvane {

// For each key the handles of the entities that it stands for.
using KeyMap = std::map<std::string, std::vector<std::string>>;

struct LabelledAreas {
    enum class Outcome {
        kDone,
        kNoTracer,    // the host cannot trace areas; a line has been printed
        kCancelled,   // by Escape
        kLabelError,  // an area has several labels, which have been printed
    };
    Outcome outcome = Outcome::kDone;
    KeyMap keys;                               // the labels in capitals
    std::vector<std::string> unlabelled;       // handles of areas that were made and have no label
    std::vector<std::string> labelsElsewhere;  // texts in none of the areas
};

enum class AreaEntities {
    kNew,       // links go to the polylines that the tracer makes
    kOriginal,  // a selected polyline that is the area takes the place of the new one
};

// Makes a closed polyline round each text of a selection of texts and linework, and finds its label. Where
// that does not come to its end, none of the new polylines is left.
LabelledAreas FindLabelledAreas(const SelectionSet& selection, AreaEntities entities);

}  // namespace norvane
