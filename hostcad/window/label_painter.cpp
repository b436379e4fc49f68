#include "hostcad/window/label_painter.h"

#include <QFontMetricsF>
#include <QPainter>
#include <cmath>

#include "hostcad/window/drawn_text.h"
#include "platform/ui/qt/qt_text.h"

namespace hostcad {
namespace {

constexpr int kVeil = 160;  // of 255: how much the ground behind a label covers what is there

class LabelPainter {
  public:
    LabelPainter(QImage& picture, double pixelRatio, const Surface& surface)
        : painter_(&picture), ratio_(pixelRatio), surface_(surface), metrics_(drawingFont()) {
        painter_.setRenderHint(QPainter::TextAntialiasing);
        veil_ = QColor::fromRgb(surface.ground);
        veil_.setAlpha(kVeil);
    }

    void paint(const PlacedLabel& label, QPointF at) {
        take(*label.style, label.capital * ratio_);
        const double turn = -label.angle * 180 / M_PI;
        painter_.setTransform(QTransform::fromTranslate(at.x(), at.y()).rotate(turn));
        const QSizeF size = QSizeF(label.width, label.height) * ratio_;
        const QRectF box(QPointF(-size.width() / 2, -size.height() / 2), size);
        painter_.fillRect(box, veil_);
        const double room = LabelSize::kRoom * capital_;
        double base = box.top() + room + capital_;
        for (const std::string& line : labelLines(label.label->text)) {
            const QString text = ui::toQt(line);
            double from = box.left() + room;
            if (label.alignment != LabelAlignment::Left) {
                const double rest = box.right() - room - from - metrics_.horizontalAdvance(text);
                from += label.alignment == LabelAlignment::Centre ? rest / 2 : rest;
            }
            painter_.drawText(QPointF(from, base), text);
            base += LabelSize::kLinePitch * capital_;
        }
    }

  private:
    // Labels of one style follow each other.
    void take(const overlay::LabelStyle& style, double capital) {
        if (&style == style_ && capital == capital_) return;
        style_ = &style;
        capital_ = capital;
        QFont font = drawingFont();
        const double em = font.pixelSize() * capital / drawingFontCapital();
        font.setPixelSize(std::max(1, static_cast<int>(std::lround(em))));
        // Widths that do not depend on the size: they were measured at another one.
        font.setHintingPreference(QFont::PreferVerticalHinting);
        metrics_ = QFontMetricsF(font, painter_.device());
        painter_.setFont(font);
        painter_.setPen(QColor::fromRgb(readableOn(surface_, style.colour)));
    }

    QPainter painter_;
    double ratio_;
    Surface surface_;
    QColor veil_;
    const overlay::LabelStyle* style_ = nullptr;
    double capital_ = 0;  // pixels of the picture
    QFontMetricsF metrics_;
};

}  // namespace

void paintLabels(QImage& picture, std::span<const PlacedLabel> labels, const ViewPlace& place,
                 double pixelRatio, const Surface& surface) {
    if (labels.empty()) return;
    LabelPainter painter(picture, pixelRatio, surface);
    const double scale = place.scale * pixelRatio;
    const QRectF seen(QPointF(), QSizeF(picture.size()));
    for (const PlacedLabel& label : labels) {
        const QPointF at(picture.width() / 2.0 + (label.at.x - place.centre.x) * scale,
                         picture.height() / 2.0 - (label.at.y - place.centre.y) * scale);
        const double reach = (label.width + label.height) / 2 * pixelRatio;
        if (seen.adjusted(-reach, -reach, reach, reach).contains(at)) painter.paint(label, at);
    }
}

}  // namespace hostcad
