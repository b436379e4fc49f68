// What is shown of the records of a feature: labels and colours, as values and as the texts by which the
// drawing keeps them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "module/annotation/colour_ramp.h"

namespace norvane {

// The version of the texts; entries of others are kept and not used.
constexpr int kAnnotationVersion = 1;

constexpr size_t kMostLabelLines = 4;

struct FeatureLabels {
    std::vector<std::string> lines;  // an expression each, 1 to kMostLabelLines
    double height = 2;
    bool isOnScreen = false;  // the height is in pixels and not in drawing units
    bool isShown = true;

    bool operator==(const FeatureLabels&) const = default;
};

// How entities are divided by the values of a field.
enum class Division { kByValue, kEqualSteps, kEqualCounts, kNaturalBreaks };

// "values", "steps", "counts" and "breaks".
const char* NameOf(Division division);
std::optional<Division> DivisionOf(std::string_view name);

struct FeatureColours {
    struct Class {
        // Of a division by value: the value as text. Else the upper limit as exact text, and the class takes
        // what is above the limit of the one before.
        std::string upTo;
        Colour colour = kOtherColour;

        bool operator==(const Class&) const = default;
    };

    std::string field;
    Division division = Division::kByValue;
    std::vector<Class> classes;
    Colour other = kOtherColour;  // of values for which there is no class, and of none
    bool isShown = true;
    bool hasLegend = true;  // in the window

    bool operator==(const FeatureColours&) const = default;
};

std::string TextOf(const FeatureLabels& labels);
std::string TextOf(const FeatureColours& colours);
// Nothing for a text that is none of a set: without what it must have, or with what it cannot have.
std::optional<FeatureLabels> FeatureLabelsOf(std::string_view text);
std::optional<FeatureColours> FeatureColoursOf(std::string_view text);

// "#1F77B4", and the colour that such a text is, with or without the sign.
std::string ColourText(Colour colour);
std::optional<Colour> ColourIn(std::string_view text);

}  // namespace norvane
