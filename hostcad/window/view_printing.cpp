#include "hostcad/window/view_printing.h"

#include <QPainter>
#include <QPrinter>
#include <algorithm>

#include "hostcad/window/label_painter.h"
#include "hostcad/window/legend.h"
#include "hostcad/window/overlay_colours.h"
#include "hostcad/window/scene_painter.h"

namespace hostcad {
namespace {

constexpr double kDesktopDots = 96;     // an inch
constexpr double kFinestPicture = 300;  // dots an inch; finer ones cost memory and look the same
constexpr int kLegendFromEdge = 10;     // pixels of the desktop

// Labels and legend. The legend is in the upper right corner, as on the screen, and no label is under it.
void paintOverlay(QImage& picture, const Scene& scene, const ViewPlace& place, double ratio,
                  bool withLegend) {
    const QSizeF desktop = QSizeF(picture.size()) / ratio;
    const QSize room = desktop.toSize() - 2 * QSize(kLegendFromEdge, kLegendFromEdge);
    const LegendPicture legend = withLegend ? LegendPicture(room) : LegendPicture();
    const QPointF corner(desktop.width() - legend.size().width() - kLegendFromEdge, kLegendFromEdge);
    LabelPlacer labels(scene);
    paintLabels(picture, labels.place(place, desktop, 0, QRectF(corner, legend.size())), place, ratio,
                kPaper);
    if (legend.isEmpty()) return;
    QPainter painter(&picture);
    painter.scale(ratio, ratio);
    painter.translate(corner);
    legend.paint(painter, kPaper);
}

}  // namespace

bool printView(const Scene& scene, const ViewBox& view, bool withLegend, QPrinter& printer) {
    if (!(view.width > 0) || !(view.height > 0)) return false;
    printer.setPageOrientation(view.width > view.height ? QPageLayout::Landscape : QPageLayout::Portrait);
    QPainter painter;
    if (!painter.begin(&printer)) return false;
    const QRectF page = printer.pageLayout().paintRectPixels(printer.resolution());
    const double dots = std::min<double>(printer.resolution(), kFinestPicture);
    const double shrunk = dots / printer.resolution();
    // Dots of the picture a unit of the drawing.
    const double scale = std::min(page.width() / view.width, page.height() / view.height) * shrunk;
    QImage picture((QSizeF(view.width, view.height) * scale).toSize().expandedTo({1, 1}),
                   QImage::Format_RGB32);
    const double ratio = dots / kDesktopDots;
    const ViewPlace place{{view.centre.x, view.centre.y}, scale / ratio};
    ScenePainter(scene, place, ratio, kPaper).paint(picture, {}, false, OverlayColours(scene).ofPlaces());
    paintOverlay(picture, scene, place, ratio, withLegend);
    const QSizeF size = QSizeF(picture.size()) / shrunk;
    painter.setRenderHint(QPainter::LosslessImageRendering);  // a photograph's loss shows on thin lines
    // The painter begins at the corner of what can be printed on.
    painter.drawImage(
        QRectF(QPointF((page.width() - size.width()) / 2, (page.height() - size.height()) / 2), size),
        picture);
    return painter.end();
}

}  // namespace hostcad
