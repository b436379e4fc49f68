// The dialogs of labels and colours, and what comes of them.
#pragma once

#include "module/cad/call.h"

namespace norvane {

// (gis:labels [FEATURE]): lets a person define the labels of features. Gives the feature of whose labels
// texts are wanted; nil for none.
void ChooseLabels(Call& call);
// (gis:colours [FEATURE]): the same of colours. Gives the feature whose legend is wanted in the drawing; nil
// for none.
void ChooseColours(Call& call);

}  // namespace norvane
