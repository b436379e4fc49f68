#include "hostcad/window/line_raster.h"

#include <cmath>
#include <cstdlib>

namespace hostcad {

bool LineRaster::clip(QPointF& from, QPointF& to) const {
    // Most lines lie within as a whole.
    const double right = width_ - 1, bottom = height_ - 1;
    auto isWithin = [&](const QPointF& p) {
        return p.x() >= 0 && p.y() >= 0 && p.x() <= right && p.y() <= bottom;
    };
    if (isWithin(from) && isWithin(to)) return true;
    // The part of the line from t0 to t1 is on the inner side of each edge.
    const double dx = to.x() - from.x(), dy = to.y() - from.y();
    double t0 = 0, t1 = 1;
    auto edge = [&](double speed, double distance) {
        if (speed == 0) return distance >= 0;
        double t = distance / speed;
        speed < 0 ? t0 = std::max(t0, t) : t1 = std::min(t1, t);
        return t0 <= t1;
    };
    bool isSeen = edge(-dx, from.x()) && edge(dx, right - from.x()) && edge(-dy, from.y()) &&
                  edge(dy, bottom - from.y());
    if (!isSeen) return false;
    QPointF start = from;
    from = start + QPointF(dx, dy) * t0;
    to = start + QPointF(dx, dy) * t1;
    return std::isfinite(from.x() + from.y() + to.x() + to.y());
}

void LineRaster::line(QPointF from, QPointF to, uint32_t colour) {
    if (!clip(from, to)) return;
    auto whole = [](double v, int limit) { return std::clamp(static_cast<int>(v + 0.5), 0, limit - 1); };
    int x0 = whole(from.x(), width_), y0 = whole(from.y(), height_);
    int x1 = whole(to.x(), width_), y1 = whole(to.y(), height_);
    thinLine(x0, y0, x1, y1, colour);
    // Wider ones are thin ones side by side.
    bool isFlat = std::abs(x1 - x0) > std::abs(y1 - y0);
    for (int i = 1; i < thickness_; ++i) {
        int shift = i % 2 ? (i + 1) / 2 : -i / 2;
        int sx = isFlat ? 0 : shift, sy = isFlat ? shift : 0;
        if (std::min(x0, x1) + sx < 0 || std::max(x0, x1) + sx >= width_ || std::min(y0, y1) + sy < 0 ||
            std::max(y0, y1) + sy >= height_)
            continue;
        thinLine(x0 + sx, y0 + sy, x1 + sx, y1 + sy, colour);
    }
}

void LineRaster::thinLine(int x0, int y0, int x1, int y1, uint32_t colour) {
    const int dx = std::abs(x1 - x0), dy = std::abs(y1 - y0);
    const int64_t stepX = x0 < x1 ? 1 : -1, stepY = y0 < y1 ? stride_ : -stride_;
    uint32_t* pixel = bits_ + y0 * stride_ + x0;
    const bool isFlat = dx >= dy;
    const int steps = std::max(dx, dy), other = std::min(dx, dy);
    const int64_t along = isFlat ? stepX : stepY, across = isFlat ? stepY : stepX;
    int error = steps / 2;
    *pixel = colour;
    for (int i = 0; i < steps; ++i) {
        pixel += along;
        error -= other;
        if (error < 0) {
            error += steps;
            pixel += across;
        }
        *pixel = colour;
    }
}

// Row by row: where the rings cross the middle of a row, the inside begins and ends.
void LineRaster::area(const std::vector<std::vector<QPointF>>& rings, uint32_t colour) {
    double top = height_, bottom = 0;
    for (const std::vector<QPointF>& ring : rings)
        for (const QPointF& p : ring) {
            if (!std::isfinite(p.x()) || !std::isfinite(p.y())) return;
            top = std::min(top, p.y());
            bottom = std::max(bottom, p.y());
        }
    const int first = static_cast<int>(std::max(top, 0.0));
    const int last = static_cast<int>(std::min(bottom, height_ - 1.0));
    for (int row = first; row <= last; ++row) {
        const double y = row + 0.5;
        crossings_.clear();
        for (const std::vector<QPointF>& ring : rings)
            for (size_t i = 0; i < ring.size(); ++i) {
                const QPointF a = ring[i], b = ring[i + 1 < ring.size() ? i + 1 : 0];
                if ((a.y() <= y) != (b.y() <= y))
                    crossings_.push_back(a.x() + (b.x() - a.x()) * (y - a.y()) / (b.y() - a.y()));
            }
        std::sort(crossings_.begin(), crossings_.end());
        for (size_t i = 0; i + 1 < crossings_.size(); i += 2) {
            const int left = static_cast<int>(std::clamp(crossings_[i] + 0.5, 0.0, width_ * 1.0));
            const int right = static_cast<int>(std::clamp(crossings_[i + 1] + 0.5, 0.0, width_ * 1.0));
            std::fill(bits_ + row * stride_ + left, bits_ + row * stride_ + std::max(left, right), colour);
        }
    }
}

void LineRaster::dot(QPointF at, int size, uint32_t colour) {
    // Far away places have no whole numbers.
    if (!(at.x() > -size && at.y() > -size && at.x() < width_ + size && at.y() < height_ + size)) return;
    int left = static_cast<int>(std::floor(at.x() - (size - 1) / 2.0 + 0.5));
    int top = static_cast<int>(std::floor(at.y() - (size - 1) / 2.0 + 0.5));
    for (int y = std::max(top, 0); y < std::min(top + size, height_); ++y)
        for (int x = std::max(left, 0); x < std::min(left + size, width_); ++x)
            bits_[y * stride_ + x] = colour;
}

}  // namespace hostcad
