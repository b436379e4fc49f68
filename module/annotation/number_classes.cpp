#include "module/annotation/number_classes.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numeric>

namespace norvane {

namespace {

std::vector<double> equalSteps(const std::vector<double>& sorted, size_t classes) {
    const double least = sorted.front(), greatest = sorted.back();
    std::vector<double> limits;
    for (size_t i = 1; i < classes; ++i) {
        const double share = static_cast<double>(i) / static_cast<double>(classes);
        // Not least + (greatest - least) * share: the difference of two numbers may be too great for one.
        const double limit = least * (1 - share) + greatest * share;
        if (limit < greatest && (limits.empty() || limits.back() < limit)) limits.push_back(limit);
    }
    limits.push_back(greatest);
    return limits;
}

std::vector<double> equalCounts(const std::vector<double>& sorted, size_t classes) {
    std::vector<double> limits;
    for (size_t i = 1; i <= classes; ++i) {
        const size_t upTo = (sorted.size() * i + classes - 1) / classes;
        const double limit = sorted[upTo - 1];
        if (limits.empty() || limits.back() < limit) limits.push_back(limit);
    }
    return limits;
}

// The division of sorted values into classes with the least sum of the squares by which values differ from
// the mean of their class. The best division of the first values into k classes follows from the best ones
// into k - 1; where its last class begins never moves back as values are added, by which each step is
// searched in halves.
class NaturalBreaks {
  public:
    NaturalBreaks(const std::vector<double>& sorted, size_t classes) {
        const long double mean =
            std::accumulate(sorted.begin(), sorted.end(), 0.0L) / static_cast<long double>(sorted.size());
        counts_ = sums_ = squares_ = {0};
        for (double value : sorted) {
            if (values_.empty() || values_.back() != value) {
                values_.push_back(value);
                counts_.push_back(counts_.back()), sums_.push_back(sums_.back());
                squares_.push_back(squares_.back());
            }
            const long double distance = value - mean;
            counts_.back() += 1, sums_.back() += distance, squares_.back() += distance * distance;
        }
        classes_ = std::min(classes, values_.size());
    }

    std::vector<double> limits() {
        const size_t count = values_.size();
        best_.assign(count, 0);
        for (size_t last = 0; last < count; ++last) best_[last] = spread(0, last);
        for (size_t k = 1; k < classes_; ++k) {
            before_ = best_;
            begins_.emplace_back(count, 0);
            search(k, count - 1, k, count - 1);
        }
        std::vector<double> limits;
        size_t last = count - 1;
        for (size_t k = classes_; k-- > 0;) {
            limits.push_back(values_[last]);
            if (k > 0) last = begins_[k - 1][last] - 1;
        }
        std::reverse(limits.begin(), limits.end());
        return limits;
    }

  private:
    // The sum of squares of one class of different values, the first and the last included.
    long double spread(size_t first, size_t last) const {
        const long double count = counts_[last + 1] - counts_[first], sum = sums_[last + 1] - sums_[first];
        return squares_[last + 1] - squares_[first] - sum * sum / count;
    }

    // Finds where the last class begins best for each end from `from` to `to`, between two beginnings.
    void search(size_t from, size_t to, size_t firstBegin, size_t lastBegin) {
        const size_t middle = from + (to - from) / 2;
        long double least = std::numeric_limits<long double>::infinity();
        size_t found = firstBegin;
        for (size_t begin = firstBegin; begin <= std::min(middle, lastBegin); ++begin) {
            const long double sum = before_[begin - 1] + spread(begin, middle);
            if (sum < least) least = sum, found = begin;
        }
        best_[middle] = least;
        begins_.back()[middle] = static_cast<uint32_t>(found);
        if (middle > from) search(from, middle - 1, firstBegin, found);
        if (middle < to) search(middle + 1, to, found, lastBegin);
    }

    std::vector<double> values_;  // each once
    size_t classes_ = 0;
    std::vector<long double> counts_, sums_, squares_;  // of the values in front of each, from their mean
    std::vector<long double> before_, best_;            // the sums for one class fewer, and for as many
    std::vector<std::vector<uint32_t>> begins_;         // where the last class begins, for each end
};

}  // namespace

std::vector<double> UpperLimits(std::vector<double> values, ClassKind kind, size_t classes) {
    std::erase_if(values, [](double value) { return !std::isfinite(value); });
    if (values.empty() || classes == 0) return {};
    std::sort(values.begin(), values.end());
    switch (kind) {
        case ClassKind::kEqualSteps:
            return equalSteps(values, classes);
        case ClassKind::kEqualCounts:
            return equalCounts(values, classes);
        case ClassKind::kNaturalBreaks:
            return NaturalBreaks(values, classes).limits();
    }
    return {};
}

size_t ClassOf(const std::vector<double>& limits, double value) {
    if (!std::isfinite(value)) return limits.size();
    return static_cast<size_t>(std::lower_bound(limits.begin(), limits.end(), value) - limits.begin());
}

}  // namespace norvane
