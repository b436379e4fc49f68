// Pictures between us and Qt.
#pragma once

#include <QImage>

#include "platform/images/image.h"

namespace ui {

// For a screen of so many pixels to the one of Qt's; null for an empty picture.
inline QImage toQt(const images::Image& image, qreal ratio) {
    if (image.empty()) return {};
    QImage shared(image.pixels.data(), image.size.width, image.size.height,
                  qsizetype{image.size.width} * images::kPixelBytes, QImage::Format_RGBA8888);
    QImage own = shared.copy();
    own.setDevicePixelRatio(ratio);
    return own;
}

}  // namespace ui
