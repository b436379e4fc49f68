// From the request to the sheet: which feature a description means, and whether it may be shown at all.
#pragma once

// Shows the sheet for PromptRequest. A locked feature name must be in the template, itself or without the
// digits at its end; a description such as TREE12 is shortened to TREE in PromptRequest. Sets
// GisReturnStatus: 1 saved, 0 cancelled or not shown.
void OpenPromptSheet();
