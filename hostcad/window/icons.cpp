#include "hostcad/window/icons.h"

#include <QPainter>
#include <QPainterPath>

namespace hostcad {
namespace {

constexpr int kSize = 48;  // drawn at twice the size at which it is shown

void lens(QPainter& p) {
    p.drawEllipse(QPointF(20, 20), 13, 13);
    p.drawLine(QPointF(30, 30), QPointF(42, 42));
}

void turn(QPainter& p, bool back) {
    if (!back) {
        p.translate(kSize, 0);
        p.scale(-1, 1);
    }
    QPainterPath path(QPointF(38, 38));
    path.cubicTo(44, 14, 22, 10, 10, 20);
    p.drawPath(path);
    p.drawPolyline(QPolygonF({QPointF(20, 10), QPointF(9, 20), QPointF(22, 28)}));
}

void zoomExtents(QPainter& p) {
    lens(p);
    p.drawLine(13, 20, 27, 20);
    p.drawLine(20, 13, 20, 27);
}

void zoomWindow(QPainter& p) {
    lens(p);
    p.drawRect(14, 15, 12, 10);
}

void zoomPrevious(QPainter& p) {
    lens(p);
    p.drawPolyline(QPolygonF({QPointF(22, 14), QPointF(15, 20), QPointF(22, 26)}));
}

void blankPage(QPainter& p) {
    p.drawPolygon(QPolygonF({{12, 6}, {30, 6}, {38, 14}, {38, 42}, {12, 42}}));
}

void folder(QPainter& p) {
    p.drawPolyline(QPolygonF({{6, 40}, {6, 10}, {18, 10}, {22, 16}, {38, 16}, {38, 22}}));
    p.drawPolygon(QPolygonF({{6, 40}, {13, 22}, {44, 22}, {38, 40}}));
}

void disk(QPainter& p) {
    p.drawRect(8, 8, 32, 32);
    p.drawRect(16, 8, 16, 11);
    p.drawRect(14, 26, 20, 14);
}

void sheet(QPainter& p) {
    p.drawRect(6, 8, 36, 32);
    for (int y : {18, 26, 34}) p.drawLine(6, y - 2, 42, y - 2);
    p.drawLine(20, 8, 20, 40);
}

void sliders(QPainter& p) {
    for (int y : {14, 24, 34}) p.drawLine(6, y, 42, y);
    p.setBrush(p.pen().color());
    p.drawEllipse(QPointF(16, 14), 4, 4);
    p.drawEllipse(QPointF(32, 24), 4, 4);
    p.drawEllipse(QPointF(20, 34), 4, 4);
}

struct Drawn {
    std::string_view name;
    void (*draw)(QPainter&);
};

constexpr Drawn kIcons[] = {
    {"new", blankPage},
    {"open", folder},
    {"save", disk},
    {"undo", [](QPainter& p) { turn(p, true); }},
    {"redo", [](QPainter& p) { turn(p, false); }},
    {"zoom-extents", zoomExtents},
    {"zoom-window", zoomWindow},
    {"zoom-previous", zoomPrevious},
    {"sheet", sheet},
    {"settings", sliders},
};

QPixmap pictureOf(const Drawn& icon, const QColor& colour, double opacity) {
    QPixmap picture(kSize, kSize);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(opacity);
    painter.setPen(QPen(colour, 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    icon.draw(painter);
    return picture;
}

}  // namespace

QIcon applicationIcon() {
    QIcon icon;
    for (int size : {16, 32, 64, 128, 256}) {
        QPixmap picture(size, size);
        picture.fill(Qt::transparent);
        QPainter p(&picture);
        p.setRenderHint(QPainter::Antialiasing);
        p.scale(size / 64.0, size / 64.0);
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0x1E, 0x22, 0x28));
        p.drawRoundedRect(QRectF(2, 2, 60, 60), 12, 12);
        p.setPen(QPen(QColor(0x80, 0xC8, 0xFF), 4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        p.setBrush(QColor(0x80, 0xC8, 0xFF, 70));
        p.drawPolygon(QPolygonF({{14, 46}, {20, 18}, {48, 14}, {50, 48}}));
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0xFF, 0x9F, 0x40));
        p.drawEllipse(QPointF(48, 14), 8, 8);
        p.end();
        icon.addPixmap(picture);
    }
    return icon;
}

QIcon drawnIcon(std::string_view name, const QColor& colour) {
    constexpr double kFaint = 0.35;
    for (const Drawn& icon : kIcons) {
        if (icon.name != name) continue;
        QIcon made(pictureOf(icon, colour, 1));
        // The look that Qt makes of its own can hardly be told from the other in dark themes.
        made.addPixmap(pictureOf(icon, colour, kFaint), QIcon::Disabled);
        return made;
    }
    return {};
}

}  // namespace hostcad
