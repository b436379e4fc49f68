// Line types as patterns of dashes and gaps.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "hostcad/drawing/drawing.h"

namespace hostcad {

struct LinePattern {
    std::vector<double> dashes;  // in units of the drawing: a dash, a gap (below 0), a dot (0), ...
    double length = 0;           // of one repetition; 0 for a continuous line
};

// The patterns that a drawing uses, by small numbers. 0 is the continuous line.
class LinePatterns {
  public:
    LinePatterns() { clear(); }
    void clear();
    // The number of a line type, drawn at a scale. Unknown ones are continuous.
    uint16_t number(const Drawing& drawing, std::string_view lineType, double scale);
    const LinePattern& operator[](uint16_t number) const { return patterns_[number]; }

  private:
    uint16_t make(const Drawing& drawing, std::string_view lineType, double scale);

    std::map<std::pair<std::string, double>, uint16_t> numbers_;
    std::string lastLineType_;  // the last answer: neighbours mostly look alike
    double lastScale_ = 0;
    uint16_t lastNumber_ = 0;
    std::vector<LinePattern> patterns_;
};

}  // namespace hostcad
