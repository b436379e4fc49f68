// Classes of numbers: where values are divided so that each class can have a colour of its own.
#pragma once

#include <cstddef>
#include <vector>

namespace norvane {

enum class ClassKind {
    kEqualSteps,     // classes are equally wide
    kEqualCounts,    // they have as many values each, as far as equal values stay together
    kNaturalBreaks,  // values of one class differ as little as can be (least sum of squares)
};

// The upper limits of classes, in ascending order: a value belongs to the first class whose limit is not
// below it. The last limit is the greatest value. There are fewer classes than were wished for where values
// do not differ enough; none without values. Values that are no finite numbers are passed over. Natural
// breaks are exact for any number of values.
std::vector<double> UpperLimits(std::vector<double> values, ClassKind kind, size_t classes);

// The class of a value; limits.size() for one that is above all of them or no finite number.
size_t ClassOf(const std::vector<double>& limits, double value);

}  // namespace norvane
