#include "module/annotation/annotation_sets.h"

#include <array>
#include <charconv>
#include <cmath>
#include <utility>

#include "platform/dao/variant.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr std::array<std::pair<Division, const char*>, 4> kDivisions = {
    {{Division::kByValue, "values"},
     {Division::kEqualSteps, "steps"},
     {Division::kEqualCounts, "counts"},
     {Division::kNaturalBreaks, "breaks"}}};

// A set is a line "name=value" for each of its parts. Line ends within values are escaped.
std::string escaped(std::string_view value) {
    return text::replaceAll(text::replaceAll(value, "\\", "\\\\"), "\n", "\\n");
}

std::string unescaped(std::string_view value) {
    std::string plain;
    for (size_t i = 0; i < value.size(); ++i) {
        if (value[i] == '\\' && i + 1 < value.size())
            plain += value[++i] == 'n' ? '\n' : value[i];
        else
            plain += value[i];
    }
    return plain;
}

std::string line(const char* name, std::string_view value) {
    return std::string(name) + "=" + escaped(value) + "\n";
}

std::string line(const char* name, bool value) {
    return line(name, std::string_view(value ? "1" : "0"));
}

// Hands each part to a function that takes its name and its value, and gives false for what it does not take.
template <class Take>
bool forEachPart(std::string_view text, Take take) {
    for (const std::string& part : text::split(text, '\n')) {
        if (part.empty()) continue;
        const size_t equals = part.find('=');
        if (equals == std::string::npos) return false;
        if (!take(part.substr(0, equals), unescaped(std::string_view(part).substr(equals + 1)))) return false;
    }
    return true;
}

bool takeFlag(const std::string& value, bool& flag) {
    flag = value == "1";
    return flag || value == "0";
}

bool takeColour(const std::string& value, Colour& colour) {
    const std::optional<Colour> read = ColourIn(value);
    if (read) colour = *read;
    return read.has_value();
}

bool takeClass(const std::string& value, FeatureColours& colours) {
    const size_t blank = value.find(' ');
    FeatureColours::Class one;
    if (blank == std::string::npos || !takeColour(value.substr(0, blank), one.colour)) return false;
    one.upTo = value.substr(blank + 1);
    colours.classes.push_back(std::move(one));
    return true;
}

// Limits of classes are numbers that grow.
bool areLimits(const std::vector<FeatureColours::Class>& classes) {
    std::optional<double> before;
    for (const FeatureColours::Class& one : classes) {
        const std::optional<double> limit = text::wholeReal(one.upTo);
        if (!limit || (before && *limit <= *before)) return false;
        before = limit;
    }
    return true;
}

}  // namespace

const char* NameOf(Division division) {
    for (const auto& [known, name] : kDivisions)
        if (known == division) return name;
    return "";
}

std::optional<Division> DivisionOf(std::string_view name) {
    for (const auto& [division, known] : kDivisions)
        if (text::equalNoCase(name, known)) return division;
    return std::nullopt;
}

std::string TextOf(const FeatureLabels& labels) {
    std::string text;
    for (const std::string& expression : labels.lines) text += line("line", expression);
    text += line("height", dao::exactText(labels.height));
    text += line("on screen", labels.isOnScreen);
    return text + line("shown", labels.isShown);
}

std::optional<FeatureLabels> FeatureLabelsOf(std::string_view text) {
    FeatureLabels labels;
    const bool isWhole = forEachPart(text, [&](const std::string& name, std::string value) {
        if (name == "line") {
            labels.lines.push_back(std::move(value));
            return true;
        }
        if (name == "height") {
            labels.height = text::wholeReal(value).value_or(0);
            return labels.height > 0;
        }
        if (name == "on screen") return takeFlag(value, labels.isOnScreen);
        return name == "shown" && takeFlag(value, labels.isShown);
    });
    const bool hasLines = !labels.lines.empty() && labels.lines.size() <= kMostLabelLines;
    return isWhole && hasLines ? std::optional(std::move(labels)) : std::nullopt;
}

std::string TextOf(const FeatureColours& colours) {
    std::string text = line("field", colours.field);
    text += line("division", std::string_view(NameOf(colours.division)));
    for (const FeatureColours::Class& one : colours.classes)
        text += line("class", ColourText(one.colour) + " " + one.upTo);
    text += line("other", ColourText(colours.other));
    text += line("legend", colours.hasLegend);
    return text + line("shown", colours.isShown);
}

std::optional<FeatureColours> FeatureColoursOf(std::string_view text) {
    FeatureColours colours;
    const bool isWhole = forEachPart(text, [&](const std::string& name, std::string value) {
        if (name == "field") {
            colours.field = std::move(value);
            return true;
        }
        if (name == "division") {
            const std::optional<Division> division = DivisionOf(value);
            colours.division = division.value_or(Division::kByValue);
            return division.has_value();
        }
        if (name == "class") return takeClass(value, colours);
        if (name == "other") return takeColour(value, colours.other);
        if (name == "legend") return takeFlag(value, colours.hasLegend);
        return name == "shown" && takeFlag(value, colours.isShown);
    });
    if (!isWhole || colours.field.empty()) return std::nullopt;
    if (colours.division != Division::kByValue && !areLimits(colours.classes)) return std::nullopt;
    return colours;
}

std::string ColourText(Colour colour) {
    return text::format("#%06X", colour & 0xFFFFFF);
}

std::optional<Colour> ColourIn(std::string_view text) {
    constexpr size_t kDigits = 6;
    text = text::trim(text);
    if (text.starts_with('#')) text.remove_prefix(1);
    Colour colour = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), colour, 16);
    if (text.size() != kDigits || error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return colour;
}

}  // namespace norvane
