#include "hostcad/window/taken_cells.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace hostcad {
namespace {

using Corners = std::array<QPointF, 4>;

Corners cornersOf(const LabelBox& box) {
    const QPointF middle(box.x, box.y);
    const QPointF along = QPointF(box.alongX, -box.alongY) * box.halfWidth;
    const QPointF down = QPointF(box.alongY, box.alongX) * box.halfHeight;
    return {middle - along - down, middle + along - down, middle + along + down, middle - along + down};
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
    columns_ = static_cast<int>((area.right() - left_) / kCell) + 1;
    rows_ = static_cast<int>((area.bottom() - top_) / kCell) + 1;
    words_ = columns_ / kWord + 1;
    taken_.assign(static_cast<size_t>(words_) * static_cast<size_t>(rows_), 0);
}

template <class Visit>
bool TakenCells::visitRows(const LabelBox& box, Visit visit) const {
    const QRectF bounds = box.bounds();
    auto cell = [](double at, int count) {
        return static_cast<int>(std::clamp(std::floor(at / kCell), 0.0, count - 1.0));
    };
    if (!area_.intersects(bounds)) return true;
    const int first = cell(bounds.top() - top_, rows_), last = cell(bounds.bottom() - top_, rows_);
    double from = bounds.left(), to = bounds.right();
    const bool isLevel = box.alongY == 0;
    const Corners corners = isLevel ? Corners() : cornersOf(box);
    for (int row = first; row <= last; ++row) {
        if (!isLevel) {
            // Where the four sides are in this row.
            const double upper = top_ + row * kCell, lower = upper + kCell;
            from = INFINITY, to = -INFINITY;
            for (size_t i = 0; i < corners.size(); ++i) {
                const QPointF a = corners[i], b = corners[(i + 1) % corners.size()];
                const double high = std::max(upper, std::min(a.y(), b.y()));
                const double low = std::min(lower, std::max(a.y(), b.y()));
                if (high > low) continue;
                for (double y : {high, low}) {
                    const double part = a.y() == b.y() ? 0 : (y - a.y()) / (b.y() - a.y());
                    const double x = a.x() + (b.x() - a.x()) * part;
                    from = std::min(from, x), to = std::max(to, x);
                }
                if (a.y() == b.y()) from = std::min(from, b.x()), to = std::max(to, b.x());
            }
            if (from > to) continue;
        }
        if (!visit(row, cell(from - left_, columns_), cell(to - left_, columns_))) return false;
    }
    return true;
}

// Those of a word for cells from one to another, both among them.
uint64_t TakenCells::bits(int word, int from, int to) {
    const int first = std::max(from - word * kWord, 0), last = std::min(to - word * kWord, kWord - 1);
    return (~uint64_t{0} << first) & (~uint64_t{0} >> (kWord - 1 - last));
}

bool TakenCells::isTaken(double x, double y) const {
    const int column = static_cast<int>((x - left_) / kCell), row = static_cast<int>((y - top_) / kCell);
    if (column < 0 || column >= columns_ || row < 0 || row >= rows_) return false;
    return taken_[static_cast<size_t>(row * words_ + column / kWord)] >> (column % kWord) & 1;
}

bool TakenCells::isFree(const LabelBox& box) const {
    // Where labels are close to each other, the middle says it all.
    if (isTaken(box.x, box.y)) return false;
    return visitRows(box, [&](int row, int from, int to) {
        const uint64_t* words = taken_.data() + static_cast<ptrdiff_t>(row) * words_;
        for (int word = from / kWord; word <= to / kWord; ++word)
            if (words[word] & bits(word, from, to)) return false;
        return true;
    });
}

void TakenCells::take(const LabelBox& box) {
    visitRows(box, [&](int row, int from, int to) {
        uint64_t* words = taken_.data() + static_cast<ptrdiff_t>(row) * words_;
        for (int word = from / kWord; word <= to / kWord; ++word) words[word] |= bits(word, from, to);
        return true;
    });
}

}  // namespace hostcad
