// Texts of the drawing that were made of records: extended data says of which entity's.
#pragma once

#include <string>
#include <vector>

#include "module/cad/call.h"
#include "platform/ads/result_chain.h"

namespace norvane {

// A line of an entity's label.
struct LabelMark {
    std::string feature;  // in capitals
    std::string handle;   // of the entity
    int line = 0;         // from 0
};

struct MarkedText {
    EntityName text;
    LabelMark mark;
};

// Adds the mark to the groups of a text that is to be made; the application is registered.
void AddLabelMark(ResultChain& groups, const LabelMark& mark);
// All texts with a mark, in the order of the drawing. What the mark of does not make sense is none of them.
std::vector<MarkedText> ReadMarkedTexts();

}  // namespace norvane
