// Labels and colours for routines of Lisp. What a function cannot do is told on the command line, and it
// gives nil.
#pragma once

#include "module/cad/call.h"

namespace norvane {

// (gis:refresh-annotation [T]): brings what is shown in step with the drawing and the databases; with T the
// records are read in any case. Gives nil.
void RefreshAnnotation(Call& call);

// (gis:annotation): lists of a feature, the counts of its entities that have a label and a colour and of its
// texts, and the height that new texts have unless another is given. For the features that have any of it or
// linked entities.
void ListAnnotation(Call& call);

// (gis:set-labels FEATURE LINES [HEIGHT [PIXELS]]): labels a feature by expressions, one a line of LINES.
// HEIGHT is in drawing units, or in pixels of the screen with "PIXELS". No LINES takes the labels away. The
// number of labels.
void SetLabels(Call& call);

// (gis:set-colours FEATURE FIELD [DIVISION [COUNT]]): colours the entities of a feature by a field. DIVISION:
// "values", "steps", "counts" or "breaks". No FIELD takes the colours away. The number of entities with a
// colour.
void SetColours(Call& call);

// (gis:make-texts FEATURE [LAYER [HEIGHT]]): texts of the labels. The number of texts.
void MakeTextsOfLabels(Call& call);
// (gis:update-texts [FEATURE]): brings the texts of a feature, or of all, in step with the records. The
// number of texts that were made, changed and removed.
void UpdateTextsOfLabels(Call& call);
// (gis:draw-legend FEATURE POINT [HEIGHT [LAYER]]): the legend of the colours as entities. Their number.
void DrawLegendOfColours(Call& call);

}  // namespace norvane
