#include "platform/plane/arc.h"

namespace plane {

bool Arc::covers(double angle) const {
    constexpr double kSlack = 1e-9;
    double ahead = withinTurn(angle - start);
    return ahead <= sweep + kSlack || ahead >= kFullTurn - kSlack;
}

void Arc::addTo(Box& box) const {
    box.add(first());
    box.add(last());
    for (int quarter = 0; quarter < 4; ++quarter) {
        double angle = quarter * kFullTurn / 4;
        if (covers(angle)) box.add(at(angle));
    }
}

double bulgeOf(double sweep) {
    return std::tan(sweep / 4);
}

double sweepOf(double bulge) {
    return 4 * std::atan(bulge);
}

std::optional<Arc> arcOf(Point from, Point to, double bulge) {
    constexpr double kStraight = 1e-12;
    double chord = distance(from, to);
    if (std::abs(bulge) < kStraight || !(chord > 0) || !std::isfinite(bulge)) return {};
    // The centre lies on the perpendicular through the middle of the chord.
    double radius = chord * (1 + bulge * bulge) / (4 * std::abs(bulge));
    double offset = (1 - bulge * bulge) / (4 * bulge);
    Point centre{(from.x + to.x) / 2 - offset * (to.y - from.y),
                 (from.y + to.y) / 2 + offset * (to.x - from.x), from.z};
    return Arc{centre, radius, direction(centre, bulge > 0 ? from : to), sweepOf(std::abs(bulge))};
}

}  // namespace plane
