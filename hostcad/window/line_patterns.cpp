#include "hostcad/window/line_patterns.h"

#include <cmath>

namespace hostcad {

void LinePatterns::clear() {
    numbers_.clear();
    patterns_.assign(1, {});
    lastLineType_.clear();
}

uint16_t LinePatterns::number(const Drawing& drawing, std::string_view lineType, double scale) {
    if (lineType.empty()) return 0;
    if (lineType != lastLineType_ || scale != lastScale_) {
        lastNumber_ = make(drawing, lineType, scale);
        lastLineType_ = lineType;
        lastScale_ = scale;
    }
    return lastNumber_;
}

uint16_t LinePatterns::make(const Drawing& drawing, std::string_view lineType, double scale) {
    constexpr size_t kMostPatterns = 10000;
    if (patterns_.size() >= kMostPatterns) return 0;
    auto [it, isNew] = numbers_.try_emplace({std::string(lineType), scale}, uint16_t{0});
    if (!isNew) return it->second;
    ObjectId record = drawing.record("LTYPE", lineType);
    if (!record || !std::isfinite(scale) || scale <= 0) return 0;
    LinePattern pattern;
    for (const Group& group : drawing.groups(record)) {
        if (group.code != 49) continue;
        double dash = group.asReal() * scale;
        if (!std::isfinite(dash)) return 0;
        pattern.dashes.push_back(dash);
        pattern.length += std::abs(dash);
    }
    // A line without gaps is drawn at once.
    bool hasGap = false;
    for (double dash : pattern.dashes) hasGap |= dash < 0;
    if (!hasGap) return 0;
    it->second = static_cast<uint16_t>(patterns_.size());
    patterns_.push_back(std::move(pattern));
    return it->second;
}

}  // namespace hostcad
