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
    // Takes the cells of a box that is within the area; false when it is not, or one of them is taken.
    bool takeFree(const LabelBox& box);
    // Takes them whether they are free or not; false when the box is not within the area.
    bool take(const LabelBox& box);

  private:
    static constexpr double kCell = 4;
    static constexpr int kWord = 64;

    // Calls `visit` with each row of cells that a box within the area touches, and with its first and last
    // cell there, until it gives false. False when that happened.
    template <class Visit>
    bool visitRows(const LabelBox& box, const QRectF& bounds, Visit visit) const;
    static uint64_t bits(int word, int from, int to);
    bool holds(const QRectF& bounds) const;
    bool isFree(const LabelBox& box, const QRectF& bounds) const;
    void takeAll(const LabelBox& box, const QRectF& bounds);
    int columnOf(double x) const;
    int rowOf(double y) const;

    QRectF area_;
    double left_ = 0, top_ = 0;
    int columns_ = 0, rows_ = 0, words_ = 0;
    std::vector<uint64_t> taken_;  // words_ for each row
};

}  // namespace hostcad
