#include "hostcad/window/taken_cells.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace hostcad {
namespace {

struct Range {
    double from = INFINITY, to = -INFINITY;

    void add(double at) { from = std::min(from, at), to = std::max(to, at); }
};

using Corners = std::array<QPointF, 4>;

Corners cornersOf(const LabelBox& box) {
    const QPointF middle(box.x, box.y);
    const QPointF along = QPointF(box.alongX, -box.alongY) * box.halfWidth;
    const QPointF down = QPointF(box.alongY, box.alongX) * box.halfHeight;
    return {middle - along - down, middle + along - down, middle + along + down, middle - along + down};
}

// How far a turned box goes to the left and right between two heights.
Range rangeBetween(const Corners& corners, double upper, double lower) {
    Range range;
    for (size_t i = 0; i < corners.size(); ++i) {
        const QPointF a = corners[i], b = corners[(i + 1) % corners.size()];
        const double high = std::max(upper, std::min(a.y(), b.y()));
        const double low = std::min(lower, std::max(a.y(), b.y()));
        if (high > low) continue;
        if (a.y() == b.y()) {
            range.add(a.x()), range.add(b.x());
            continue;
        }
        for (double y : {high, low}) range.add(a.x() + (b.x() - a.x()) * (y - a.y()) / (b.y() - a.y()));
    }
    return range;
}

}  // namespace

QRectF LabelBox::bounds() const {
    const double c = std::abs(alongX), s = std::abs(alongY);
    const double across = halfWidth * c + halfHeight * s, upright = halfWidth * s + halfHeight * c;
    return {x - across, y - upright, 2 * across, 2 * upright};
}

void TakenCells::reset(const QRectF& area) {
    area_ = area;
    // Cells stand at the same places of the plan, wherever the area begins.
    left_ = std::floor(area.left() / kCell) * kCell;
    top_ = std::floor(area.top() / kCell) * kCell;
    columns_ = columnOf(area.right()) + 1;
    rows_ = rowOf(area.bottom()) + 1;
    words_ = columns_ / kWord + 1;
    taken_.assign(static_cast<size_t>(words_) * static_cast<size_t>(rows_), 0);
}

int TakenCells::columnOf(double x) const {
    return static_cast<int>((x - left_) / kCell);
}

int TakenCells::rowOf(double y) const {
    return static_cast<int>((y - top_) / kCell);
}

bool TakenCells::holds(const QRectF& bounds) const {
    return bounds.left() >= area_.left() && bounds.right() <= area_.right() && bounds.top() >= area_.top() &&
           bounds.bottom() <= area_.bottom();
}

template <class Visit>
bool TakenCells::visitRows(const LabelBox& box, const QRectF& bounds, Visit visit) const {
    const int first = rowOf(bounds.top()), last = rowOf(bounds.bottom());
    if (box.alongY == 0) {
        const int from = columnOf(bounds.left()), to = columnOf(bounds.right());
        for (int row = first; row <= last; ++row)
            if (!visit(row, from, to)) return false;
        return true;
    }
    const Corners corners = cornersOf(box);
    for (int row = first; row <= last; ++row) {
        const double upper = top_ + row * kCell;
        const Range range = rangeBetween(corners, upper, upper + kCell);
        // A rounding may put a side beyond the bounds, or the bounds beyond all sides.
        if (range.from > range.to) continue;
        const int from = columnOf(std::max(range.from, bounds.left()));
        const int to = columnOf(std::min(range.to, bounds.right()));
        if (from <= to && !visit(row, from, to)) return false;
    }
    return true;
}

// Those of a word for cells from one to another, both among them.
uint64_t TakenCells::bits(int word, int from, int to) {
    const int first = std::max(from - word * kWord, 0), last = std::min(to - word * kWord, kWord - 1);
    return (~uint64_t{0} << first) & (~uint64_t{0} >> (kWord - 1 - last));
}

bool TakenCells::isFree(const LabelBox& box, const QRectF& bounds) const {
    // Where labels are close to each other, the middle says it all.
    const int middle = columnOf(box.x);
    const uint64_t* row = taken_.data() + static_cast<ptrdiff_t>(rowOf(box.y)) * words_;
    if (row[middle / kWord] >> (middle % kWord) & 1) return false;
    return visitRows(box, bounds, [&](int at, int from, int to) {
        const uint64_t* words = taken_.data() + static_cast<ptrdiff_t>(at) * words_;
        for (int word = from / kWord; word <= to / kWord; ++word)
            if (words[word] & bits(word, from, to)) return false;
        return true;
    });
}

void TakenCells::takeAll(const LabelBox& box, const QRectF& bounds) {
    visitRows(box, bounds, [&](int row, int from, int to) {
        uint64_t* words = taken_.data() + static_cast<ptrdiff_t>(row) * words_;
        for (int word = from / kWord; word <= to / kWord; ++word) words[word] |= bits(word, from, to);
        return true;
    });
}

bool TakenCells::takeFree(const LabelBox& box) {
    const QRectF bounds = box.bounds();
    if (!holds(bounds) || !isFree(box, bounds)) return false;
    takeAll(box, bounds);
    return true;
}

bool TakenCells::take(const LabelBox& box) {
    const QRectF bounds = box.bounds();
    if (!holds(bounds)) return false;
    takeAll(box, bounds);
    return true;
}

}  // namespace hostcad
