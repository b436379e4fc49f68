// Values that are computed from the point: the special codes and the equations over them.
//
// A DEFAULT_VALUE that begins "$EQN=" is computed. Thirteen codes have a meaning of their own; anything else
// is an equation of numbers, codes, names of rows and the four operators.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "module/host/gis_request.h"
#include "module/prompting/prompt_model.h"

constexpr std::string_view kEquationMark = "$EQN";
constexpr std::string_view kDescriptionCode = "$EQN=$DSC";
constexpr std::string_view kDateCode = "$EQN=$DAT";
constexpr std::string_view kTimeCode = "$EQN=$TIM";
constexpr std::string_view kInstrumentCode = "$EQN=$INS";

// The point that the host passes with a call. Lengths and angles are in the units that the caller uses.
struct PointContext {
    double northing = 0.0, easting = 0.0, elevation = 0.0;  // always used
    OptionalReal latitude, longitude, rawElevation, rodHeight, hrms, vrms;
    std::string description;
    std::string instrument;
};
PointContext pointContextOf(const PromptRequestRecord& request);

// The codes in the order in which they are put into equations.
struct NumberCode {
    std::string_view code;  // "$NOR"
    double value;
    bool available;
    bool alwaysUsed;  // northing, easting, elevation
};
std::array<NumberCode, 9> numberCodes(const PointContext& point);

// A row that is computed, and its DEFAULT_VALUE.
struct SpecialRow {
    int row = 0;
    std::string code;
};

// The value of a code or equation as text, never empty. Divisions come before products, subtractions before
// sums; every intermediate value is rounded to nine decimals. What is no number counts as 0, and so does a
// quotient with a 0 on either side. names: those of the rows, by position; rows beyond them are named by
// their prompt.
std::string evaluateEquation(std::string_view code, const PointContext& point,
                             const std::vector<std::string>& names, const PromptCells& cells);

enum class RefreshReason { kLoadOrSave, kCellChange };
// Computes all special rows once, in order, except the four text codes.
void refreshSpecialRows(const std::vector<SpecialRow>& specialRows, const PointContext& point,
                        const std::vector<std::string>& names, PromptCells& cells, RefreshReason reason);

// What the four text codes show: the stored value when there is one, else what the point or the clock says.
// False when the code is none of the four, or there is nothing to show.
bool textCodeValue(std::string_view code, const std::string& stored, const PointContext& point,
                   std::string& value);
// The column whose stored value a text code keeps; "" for other codes.
std::string_view storedColumnOf(std::string_view code);
