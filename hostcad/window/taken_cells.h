// What of a picture is taken by labels: a grid of small cells. A box takes every cell that it touches.
#pragma once

#include <QRectF>
#include <cstdint>
#include <vector>

namespace hostcad {

// Coordinates are pixels to the right and down.
struct LabelBox {
    double x = 0, y = 0;  // the middle
    double halfWidth = 0, halfHeight = 0;
    double alongX = 1, alongY = 0;  // the direction of its width, of length 1; up is positive, as it is seen

    // The box along the axes round it.
    QRectF bounds() const;
};

class TakenCells {
  public:
    // Begins with nothing taken, over an area.
    void reset(const QRectF& area);
    bool holds(const LabelBox& box) const { return area_.contains(box.bounds()); }
    // None of the cells of a box is taken.
    bool isFree(const LabelBox& box) const;
    void take(const LabelBox& box);

  private:
    static constexpr double kCell = 4;
    static constexpr int kWord = 64;

    // Calls `visit` with each row of cells that a box touches, and its first and last cell there, until it
    // gives false. False when that happened.
    template <class Visit>
    bool visitRows(const LabelBox& box, Visit visit) const;
    static uint64_t bits(int word, int from, int to);
    bool isTaken(double x, double y) const;

    QRectF area_;
    double left_ = 0, top_ = 0;
    int columns_ = 0, rows_ = 0, words_ = 0;
    std::vector<uint64_t> taken_;  // words_ for each row
};

}  // namespace hostcad
