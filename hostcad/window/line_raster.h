// Thin lines, dots and areas straight into a picture. A drawing has hundreds of thousands of them, and this
// costs a tenth of what a painter that can do everything costs.
#pragma once

#include <QImage>
#include <QPointF>
#include <algorithm>
#include <cstdint>
#include <vector>

namespace hostcad {

class LineRaster {
  public:
    // The picture has 32 bits a pixel and stays the caller's; nobody else may write to it meanwhile.
    explicit LineRaster(QImage& picture)
        : bits_(reinterpret_cast<uint32_t*>(picture.bits())),
          stride_(picture.bytesPerLine() / 4),
          width_(picture.width()),
          height_(picture.height()) {}

    // Lines are so many pixels wide.
    void setThickness(int pixels) { thickness_ = std::max(1, pixels); }
    // A line between two places, which may lie anywhere; both ends are drawn.
    void line(QPointF from, QPointF to, uint32_t colour);
    // A square of the given size round a place.
    void dot(QPointF at, int size, uint32_t colour);
    // The inside of rings, by the even-odd rule.
    void area(const std::vector<std::vector<QPointF>>& rings, uint32_t colour);
    // Cuts a line to what is within the picture; false when nothing is.
    bool clip(QPointF& from, QPointF& to) const;

  private:
    void thinLine(int x0, int y0, int x1, int y1, uint32_t colour);

    uint32_t* bits_;
    int64_t stride_;
    int width_, height_;
    int thickness_ = 1;
    std::vector<double> crossings_;
};

}  // namespace hostcad
