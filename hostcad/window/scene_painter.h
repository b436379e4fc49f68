// Paints a scene into a picture.
//
// What costs little is what is seen little: an entity smaller than a pixel and a half is one dot, a text too
// small to be read is a line of its length, a pattern too fine to be seen is a plain line. While the view
// moves, texts are lines where there are too many of them to keep up; the picture at rest has them all.
#pragma once

#include <QImage>
#include <array>
#include <cstdint>
#include <vector>

#include "hostcad/window/colours.h"
#include "hostcad/window/line_raster.h"
#include "hostcad/window/scene.h"

namespace hostcad {

// Where the drawing is seen: the world point in the middle of a picture, and pixels a unit.
struct ViewPlace {
    PlanePoint centre;
    double scale = 1;
};

class ScenePainter {
  public:
    // `pixelRatio`: pixels of the picture for one of the desktop's.
    ScenePainter(const Scene& scene, const ViewPlace& place, double pixelRatio,
                 const Surface& surface = kScreen);

    // Paints everything that is in view, with the entities at marked places in the colour of marks.
    // `colours`: by place, in place of the entity's own where it is not 0.
    void paint(QImage& picture, const std::vector<bool>& marked, bool isMoving,
               std::span<const uint32_t> colours = {});
    // Paints some entities over a picture in one colour.
    void paintOver(QImage& picture, const std::vector<size_t>& places, uint32_t colour, int thickness);

  private:
    struct PendingText {
        const SceneText* text;
        uint32_t colour;
    };

    QPointF toPicture(const PlanePoint& p) const {
        return {halfWidth_ + (p.x - place_.centre.x) * place_.scale,
                halfHeight_ - (p.y - place_.centre.y) * place_.scale};
    }
    void begin(const QImage& picture);
    uint32_t shown(uint32_t colour);
    void paintEntity(LineRaster& raster, const SceneEntity& entity, const uint32_t* colour);
    void paintDot(LineRaster& raster, const SceneEntity& entity, const uint32_t* colour);
    void paintLine(LineRaster& raster, const SceneLine& line, uint32_t colour);
    size_t paintArea(LineRaster& raster, std::span<const SceneLine> lines, uint32_t colour);
    void paintDashes(LineRaster& raster, const SceneLine& line, uint32_t colour);
    void paintTextLine(LineRaster& raster, const SceneText& text, uint32_t colour);
    void paintTexts(QImage& picture);

    const Scene& scene_;
    ViewPlace place_;
    double pixelRatio_;
    double halfWidth_ = 0, halfHeight_ = 0;
    Surface surface_;
    // Colours that were looked up: a drawing has few.
    struct ShownColour {
        uint32_t colour, shown;
    };
    std::array<ShownColour, 64> colours_;
    Box area_;  // of the world that is seen
    std::vector<PendingText> texts_;
};

}  // namespace hostcad
