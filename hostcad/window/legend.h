// The legends of what is coloured: a title each, and a row with colour, text and count for each class.
#pragma once

#include <QSize>
#include <QString>
#include <cstdint>
#include <optional>
#include <vector>

#include "hostcad/window/colours.h"

class QPainter;

namespace hostcad {

// The legends of the current drawing, laid out for a room. Sizes are in pixels of the desktop.
class LegendPicture {
  public:
    LegendPicture() = default;
    // What has no room is counted in the last row, and texts that are too long end in an ellipsis. `corner`
    // is the width that is kept free at the end of the first row.
    explicit LegendPicture(QSize room, int corner = 0);

    bool isEmpty() const { return rows_.empty(); }
    QSize size() const { return size_; }
    // With its ground and a frame, from the painter's origin on.
    void paint(QPainter& painter, const Surface& surface) const;
    // What it says, in lines.
    QString text() const;

  private:
    struct Row {
        std::optional<uint32_t> colour;  // none: a title, or a remark
        bool isTitle = false;
        QString text;
        QString count;
    };

    std::vector<Row> rows_;
    QSize size_;
};

}  // namespace hostcad
