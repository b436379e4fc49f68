#include "module/annotation/colour_classes.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>
#include <utility>

#include "module/annotation/number_classes.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

// The number that a value is; text counts where all of it is a number.
std::optional<double> numberIn(const dao::Variant& value) {
    if (value.is<std::string>()) return text::wholeReal(text::trim(value.get<std::string>()));
    double number = 0;
    if (value.isNull() || !dao::numberOf(value, number)) return std::nullopt;
    return number;
}

std::string textOf(const dao::Variant& value) {
    return std::string(text::trim(dao::toText(value)));
}

// Numbers in front of texts, by size; texts without regard to case.
bool comesBefore(const std::string& a, const std::string& b) {
    const std::optional<double> left = text::wholeReal(a), right = text::wholeReal(b);
    if (left && right && *left != *right) return *left < *right;
    if (left.has_value() != right.has_value()) return left.has_value();
    return text::upper(a) < text::upper(b);
}

std::vector<FeatureColours::Class> classesByValue(const std::vector<EntityValue>& values) {
    struct Kind {
        std::string text;
        size_t count = 0;
    };
    std::unordered_map<std::string, Kind> byText;
    for (const EntityValue& one : values) {
        std::string text = textOf(one.value);
        if (text.empty()) continue;
        Kind& kind = byText[text::upper(text)];
        if (kind.count++ == 0) kind.text = std::move(text);
    }
    std::vector<Kind> kinds;
    for (auto& [text, kind] : byText) kinds.push_back(std::move(kind));
    std::sort(kinds.begin(), kinds.end(), [](const Kind& a, const Kind& b) {
        return a.count != b.count ? a.count > b.count : comesBefore(a.text, b.text);
    });
    if (kinds.size() > kMostClassesByValue) kinds.resize(kMostClassesByValue);
    std::sort(kinds.begin(), kinds.end(),
              [](const Kind& a, const Kind& b) { return comesBefore(a.text, b.text); });
    const std::vector<Colour> colours = ColoursOfKinds(kinds.size());
    std::vector<FeatureColours::Class> classes;
    for (size_t i = 0; i < kinds.size(); ++i) classes.push_back({std::move(kinds[i].text), colours[i]});
    return classes;
}

ClassKind kindOf(Division division) {
    if (division == Division::kEqualSteps) return ClassKind::kEqualSteps;
    return division == Division::kEqualCounts ? ClassKind::kEqualCounts : ClassKind::kNaturalBreaks;
}

}  // namespace

std::vector<FeatureColours::Class> ClassesOf(const std::vector<EntityValue>& values, Division division,
                                             size_t count) {
    if (division == Division::kByValue) return classesByValue(values);
    std::vector<double> numbers;
    for (const EntityValue& one : values)
        if (const std::optional<double> number = numberIn(one.value)) numbers.push_back(*number);
    const std::vector<double> limits =
        UpperLimits(std::move(numbers), kindOf(division), std::min(count, kMostClasses));
    const std::vector<Colour> colours = ColoursInOrder(limits.size());
    std::vector<FeatureColours::Class> classes;
    for (size_t i = 0; i < limits.size(); ++i) classes.push_back({dao::exactText(limits[i]), colours[i]});
    return classes;
}

ClassFinder::ClassFinder(const FeatureColours& colours) : isByValue_(colours.division == Division::kByValue) {
    for (size_t i = 0; i < colours.classes.size(); ++i) {
        const std::string& upTo = colours.classes[i].upTo;
        if (isByValue_)
            texts_.emplace(text::upper(text::trim(upTo)), i);
        else
            limits_.push_back(text::wholeReal(upTo).value_or(0));
    }
}

std::optional<size_t> ClassFinder::find(const dao::Variant& value) const {
    if (isByValue_) {
        const auto known = texts_.find(text::upper(textOf(value)));
        return known == texts_.end() ? std::nullopt : std::optional(known->second);
    }
    const std::optional<double> number = numberIn(value);
    if (!number) return std::nullopt;
    const size_t place = ClassOf(limits_, *number);
    return place < limits_.size() ? std::optional(place) : std::nullopt;
}

ColouredValues ColourValues(const FeatureColours& colours, const std::vector<EntityValue>& values) {
    ColouredValues coloured;
    for (size_t i = 0; i < colours.classes.size(); ++i)
        coloured.rows.push_back({colours.classes[i].colour, ClassText(colours, i), 0});
    size_t others = 0;
    const ClassFinder finder(colours);
    for (const EntityValue& one : values) {
        const std::optional<size_t> place = finder.find(one.value);
        coloured.colours.push_back(place ? colours.classes[*place].colour : colours.other);
        ++(place ? coloured.rows[*place].count : others);
    }
    if (others > 0) coloured.rows.push_back({colours.other, "others", others});
    return coloured;
}

namespace {

// A limit as a person reads it, with four digits behind the point or four that say something.
std::string shownLimit(const std::string& limit) {
    constexpr double kSmall = 0.01, kGreat = 1e12;
    const double number = text::wholeReal(limit).value_or(0), size = std::abs(number);
    if (number != 0 && (size < kSmall || size > kGreat)) return text::format("%.4g", number);
    return text::stripZeros(text::format("%.4f", number));
}

}  // namespace

std::string ClassText(const FeatureColours& colours, size_t place) {
    const std::string& upTo = colours.classes[place].upTo;
    if (colours.division == Division::kByValue) return upTo;
    const std::string limit = shownLimit(upTo);
    return place == 0 ? "up to " + limit : shownLimit(colours.classes[place - 1].upTo) + " to " + limit;
}

}  // namespace norvane
