// Values that are computed from the point: the special codes and the equations over them.
//
// A DEFAULT_VALUE that begins "$EQN=" is computed. Thirteen codes have a meaning of their own; anything else
// is an equation of numbers, codes, names of rows and the four operators.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "module/prompting/known_attributes.h"
#include "module/prompting/prompt_model.h"

namespace norvane {

// The value of a code or equation as text, never empty. Divisions come before products, subtractions before
// sums; every intermediate value is rounded to nine decimals. What is no number counts as 0, and so does a
// quotient with a 0 on either side. Cells beyond the rows are named by their prompt.
std::string EvaluateEquation(std::string_view code, const PointContext& point,
                             const std::vector<PromptRow>& rows, const PromptCells& cells);

enum class RefreshReason { kLoadOrSave, kCellChange };
// Computes all computed rows once, in order, except the four text codes.
void RefreshComputedRows(const std::vector<PromptRow>& rows, const PointContext& point, PromptCells& cells,
                         RefreshReason reason);

// What the four text codes show: the stored value when there is one, else what the point or the clock says.
// False when the code is none of the four, or there is nothing to show.
bool TextCodeValue(std::string_view code, const std::string& stored, const PointContext& point,
                   std::string& value);
// The column whose stored value a text code keeps; "" for other codes.
std::string_view StoredColumnOf(std::string_view code);

}  // namespace norvane
