// The classes into which values fall, each with its colour.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "module/annotation/annotation_sets.h"
#include "module/cad/call.h"
#include "platform/ads/overlay.h"
#include "platform/dao/variant.h"

namespace norvane {

struct EntityValue {
    EntityName entity;
    dao::Variant value;
};

// Values as a division by value compares them: as text without blanks round it, without regard to case.
// Beyond so many different ones the most frequent have classes of their own.
constexpr size_t kMostClassesByValue = 40;
constexpr size_t kMostClasses = 12;

// The classes of values with colours by their order. count: of classes that are wished for; a division by
// value has one for each value, in order of their size or text.
std::vector<FeatureColours::Class> ClassesOf(const std::vector<EntityValue>& values, Division division,
                                             size_t count);

// Finds the classes of values.
class ClassFinder {
  public:
    explicit ClassFinder(const FeatureColours& colours);
    // The place of the class; nothing for a value that has none.
    std::optional<size_t> find(const dao::Variant& value) const;

  private:
    bool isByValue_;
    std::vector<double> limits_;
    std::map<std::string, size_t> texts_;  // in capitals
};

// What values look like: the colour of each, and the rows of the legend with their counts. Classes that
// nothing falls into have a row, too; that of all other values comes last, where there are such.
struct ColouredValues {
    std::vector<Colour> colours;
    std::vector<overlay::LegendRow> rows;
};
ColouredValues ColourValues(const FeatureColours& colours, const std::vector<EntityValue>& values);

// What the legend says of a class: its value, or "10 to 20"; the first class says "up to 10".
std::string ClassText(const FeatureColours& colours, size_t place);

}  // namespace norvane
