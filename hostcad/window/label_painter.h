// Paints labels that have their places into a picture.
#pragma once

#include <QImage>
#include <span>

#include "hostcad/window/colours.h"
#include "hostcad/window/label_placer.h"
#include "hostcad/window/scene_painter.h"

namespace hostcad {

// The place is that for which the labels were placed; `pixelRatio`: pixels of the picture for one of the
// desktop's.
void paintLabels(QImage& picture, std::span<const PlacedLabel> labels, const ViewPlace& place,
                 double pixelRatio, const Surface& surface);

}  // namespace hostcad
