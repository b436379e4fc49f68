// The thirteen attributes whose value is computed from the point: known by their name or by their special
// code.
#pragma once

#include <array>
#include <string_view>

#include "module/prompting/point_context.h"

namespace norvane {

constexpr std::string_view kEquationMark = "$EQN";
constexpr const char* kDescriptionCode = "$EQN=$DSC";
constexpr const char* kDateCode = "$EQN=$DAT";
constexpr const char* kTimeCode = "$EQN=$TIM";
constexpr const char* kInstrumentCode = "$EQN=$INS";

struct KnownAttribute {
    const char* abbreviation;
    const char* fullName;
    const char* code;
    const char* word;  // as the list of special codes shows it
    // Where the value comes from; neither of them: it is a text.
    double PointContext::*number = nullptr;          // always used
    OptionalReal PointContext::*optional = nullptr;  // used where it is given
    bool isText() const { return !number && !optional; }
};

// Numbers are put into equations in this order.
const std::array<KnownAttribute, 13>& KnownAttributes();
// Null when it is none of them. Case does not count.
const KnownAttribute* FindKnownAttribute(std::string_view abbreviation);
const KnownAttribute* FindKnownCode(std::string_view code);

}  // namespace norvane
