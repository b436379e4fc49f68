// Pieces of linework, and where two of them meet.
#pragma once

#include <optional>
#include <vector>

#include "platform/plane/arc.h"
#include "platform/plane/box.h"
#include "platform/plane/point.h"

namespace plane {

// A way from one point to another, straight or an arc by its bulge.
class Piece {
  public:
    Piece(Point from, Point to, double bulge = 0);

    const Point& from() const { return from_; }
    const Point& to() const { return to_; }
    // 0 for one that is as good as straight.
    double bulge() const { return arc_ ? bulge_ : 0; }
    const std::optional<Arc>& arc() const { return arc_; }

    // Places on the piece are shares of its length, from 0 to 1.
    Point at(double share) const;
    // The bulge of the part between two places, negative for an arc that is walked backwards.
    double bulgeOf(double fromShare, double toShare) const;

    struct Nearest {
        double share = 0;
        double distance = 0;
    };
    Nearest nearest(Point p) const;
    Box box() const;

  private:
    Point from_, to_;
    double bulge_;
    std::optional<Arc> arc_;
};

// Adds the points in which two pieces cross, touch, or begin to run along each other. An end that is within
// the tolerance of the other piece comes bit for bit, in place of a crossing there.
void addMeetings(const Piece& a, const Piece& b, double tolerance, std::vector<Point>& points);

}  // namespace plane
