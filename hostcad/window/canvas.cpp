#include "hostcad/window/canvas.h"

#include <QFontMetricsF>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

namespace hostcad {
namespace {

constexpr double kPickReach = 6;         // pixels
constexpr double kSmallestText = 3.5;    // pixels high; smaller ones are lines
constexpr double kSmallestEntity = 1.5;  // pixels; smaller ones are dots
constexpr double kDragStart = 4;         // pixels
constexpr size_t kMostPrevious = 30;
const QColor kGround(0x1E, 0x22, 0x28);
const QColor kSelected(0xFF, 0x9F, 0x40);
const QColor kHovered(0x80, 0xC8, 0xFF);

double distanceToSegment(const Point& p, const Point& a, const Point& b) {
    double dx = b.x - a.x, dy = b.y - a.y;
    double square = dx * dx + dy * dy;
    double t = square > 0 ? std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / square, 0.0, 1.0) : 0;
    return std::hypot(p.x - a.x - t * dx, p.y - a.y - t * dy);
}

// A text is hit anywhere in its box.
bool isInside(const SceneText& text, const Point& p) {
    double c = std::cos(text.angle), s = std::sin(text.angle);
    double x = c * (p.x - text.at.x) + s * (p.y - text.at.y),
           y = c * (p.y - text.at.y) - s * (p.x - text.at.x);
    double width = 0.8 * text.height * text.widthFactor * static_cast<double>(text.text.size());
    x += text.shiftX * width;
    y += text.shiftY * text.height;
    return x >= 0 && x <= width && y >= 0 && y <= text.height;
}

// How far a point is from an entity's picture.
double distanceTo(const SceneEntity& entity, const Point& p) {
    double nearest = 1e300;
    for (const SceneLine& line : entity.lines)
        for (uint32_t i = 0; i < line.count; ++i) {
            const Point& a = entity.vertices[line.first + i];
            const Point& b = entity.vertices[line.first + std::min(i + 1, line.count - 1)];
            nearest = std::min(nearest, distanceToSegment(p, a, b));
        }
    for (const SceneText& text : entity.texts)
        if (isInside(text, p)) nearest = 0;
    return nearest;
}

bool meets(const Box& box, const Box& area) {
    return box.minX <= area.maxX && box.maxX >= area.minX && box.minY <= area.maxY && box.maxY >= area.minY;
}

}  // namespace

Canvas::Canvas(Scene& scene, QWidget* parent) : QWidget(parent), scene_(scene) {
    setMouseTracking(true);
    setFocusPolicy(Qt::NoFocus);
    setCursor(Qt::CrossCursor);
    setMinimumSize(300, 200);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAccessibleName("Drawing");
}

// --- The view
// -----------------------------------------------------------------------------------------------

QPointF Canvas::toScreen(const Point& p) const {
    return {width() / 2.0 + (p.x - place_.centre.x) * place_.scale,
            height() / 2.0 - (p.y - place_.centre.y) * place_.scale};
}

Point Canvas::toWorld(QPointF p) const {
    return {place_.centre.x + (p.x() - width() / 2.0) / place_.scale,
            place_.centre.y - (p.y() - height() / 2.0) / place_.scale, 0};
}

ViewBox Canvas::view() const {
    return {{place_.centre.x, place_.centre.y, 0}, height() / place_.scale, width() / place_.scale};
}

void Canvas::changeView(Point centre, double scale, bool remember) {
    constexpr double kLargest = 1e12, kSmallest = 1e-12;
    if (!std::isfinite(scale) || !std::isfinite(centre.x) || !std::isfinite(centre.y)) return;
    if (remember) {
        previous_.push_back(place_);
        if (previous_.size() > kMostPrevious) previous_.erase(previous_.begin());
    }
    place_ = {centre, std::clamp(scale, kSmallest, kLargest)};
    refresh();
    if (onViewChanged) onViewChanged();
}

void Canvas::setView(const ViewBox& box) {
    if (box.height > 0) changeView({box.centre[0], box.centre[1], 0}, height() / box.height);
}

void Canvas::zoomExtents() {
    Box box = scene_.extents();
    if (box.empty()) return;
    constexpr double kMargin = 1.05;
    double scale = std::min(width() / std::max(box.maxX - box.minX, 1e-9),
                            height() / std::max(box.maxY - box.minY, 1e-9));
    changeView({(box.minX + box.maxX) / 2, (box.minY + box.maxY) / 2, 0}, scale / kMargin);
}

void Canvas::zoomPrevious() {
    if (previous_.empty()) return;
    Place place = previous_.back();
    previous_.pop_back();
    changeView(place.centre, place.scale, false);
}

void Canvas::zoomBy(double factor, QPointF about) {
    Point fixed = toWorld(about);
    double scale = place_.scale * factor;
    changeView(
        {fixed.x - (about.x() - width() / 2.0) / scale, fixed.y + (about.y() - height() / 2.0) / scale, 0},
        scale);
}

void Canvas::refresh() {
    stale_ = true;
    update();
}

// --- Painting
// -----------------------------------------------------------------------------------------------

void Canvas::paintScene(QPainter& painter) {
    painter.fillRect(rect(), kGround);
    Point low = toWorld({0.0, static_cast<double>(height())}),
          high = toWorld({static_cast<double>(width()), 0.0});
    Box area;
    area.add(low.x, low.y);
    area.add(high.x, high.y);
    for (const SceneEntity& entity : scene_.entities()) {
        if (!entity.visible || (!entity.box.empty() && !meets(entity.box, area))) continue;
        double size =
            std::max(entity.box.maxX - entity.box.minX, entity.box.maxY - entity.box.minY) * place_.scale;
        if (size >= kSmallestEntity || entity.vertices.empty()) {
            paintEntity(painter, entity, nullptr);
            continue;
        }
        // Far away an entity is one dot: the picture looks the same and costs a hundredth.
        QPoint at = toScreen(entity.vertices.front()).toPoint();
        if (rect().contains(at) && !entity.lines.empty())
            picture_.setPixel(at, 0xFF000000 | entity.lines.front().colour);
    }
}

void Canvas::paintEntity(QPainter& painter, const SceneEntity& entity, const QPen* mark) {
    constexpr double kDot = 2;
    uint32_t colour = 0;
    bool penSet = false;
    for (const SceneLine& line : entity.lines) {
        if (mark) {
            painter.setPen(*mark);
        } else if (!penSet || line.colour != colour) {
            painter.setPen(QPen(QColor(line.colour), 0));
            colour = line.colour;
            penSet = true;
        }
        QPolygonF points;
        points.reserve(static_cast<int>(line.count));
        for (uint32_t i = 0; i < line.count; ++i) points << toScreen(entity.vertices[line.first + i]);
        if (line.count == 1) {
            painter.fillRect(QRectF(points[0].x() - kDot / 2, points[0].y() - kDot / 2, kDot, kDot),
                             painter.pen().color());
        } else if (line.filled) {
            painter.setBrush(mark ? mark->color() : QColor(line.colour));
            painter.drawPolygon(points);
            painter.setBrush(Qt::NoBrush);
        } else {
            painter.drawPolyline(points);
        }
    }
    for (const SceneText& text : entity.texts) paintText(painter, text, mark);
}

void Canvas::paintText(QPainter& painter, const SceneText& text, const QPen* mark) {
    double height = text.height * place_.scale;
    QColor colour = mark ? mark->color() : QColor(text.colour);
    QPointF at = toScreen(text.at);
    if (height < kSmallestText) {
        if (height < 0.7) return;
        // Too small to be read: a line of its length shows where it is.
        double length = 0.7 * height * text.widthFactor * static_cast<double>(text.text.size());
        QPointF along(std::cos(text.angle) * length, -std::sin(text.angle) * length);
        QColor faint = colour;
        faint.setAlphaF(0.5);
        painter.setPen(QPen(faint, 0));
        painter.drawLine(at - along * text.shiftX, at + along * (1 - text.shiftX));
        return;
    }
    constexpr double kLargestFont = 2000;
    if (height > kLargestFont) return;
    QFont font("sans-serif");
    font.setPixelSize(100);
    static const QFontMetricsF metrics(font);
    static const double capital = metrics.capHeight() > 0 ? metrics.capHeight() : 72;
    QString shown = QString::fromStdString(text.text);
    double width = metrics.horizontalAdvance(shown);
    painter.save();
    painter.translate(at);
    painter.rotate(-text.angle * 180 / M_PI);
    painter.scale(height / capital * text.widthFactor, height / capital);
    painter.setFont(font);
    painter.setPen(colour);
    painter.drawText(QPointF(-width * text.shiftX, capital * text.shiftY), shown);
    painter.restore();
}

void Canvas::paintMarks(QPainter& painter) {
    QPen selected(kSelected, 2), hovered(kHovered, 1);
    for (const std::set<ObjectId>* marks : {&selected_, &highlighted_})
        for (ObjectId id : *marks)
            if (const SceneEntity* entity = scene_.find(id); entity && entity->visible)
                paintEntity(painter, *entity, &selected);
    if (hovered_ && !selected_.count(hovered_))
        if (const SceneEntity* entity = scene_.find(hovered_)) paintEntity(painter, *entity, &hovered);
    if (rubberBase_) {
        painter.setPen(QPen(kHovered, 1, Qt::DashLine));
        painter.drawLine(toScreen(*rubberBase_), mouse_);
    }
    if (drag_ != Drag::Box) return;
    bool crossing = mouse_.x() < pressed_.x();
    QColor ground = crossing ? QColor(0x40, 0xC0, 0x60, 40) : QColor(0x50, 0x90, 0xE0, 40);
    painter.setPen(QPen(ground.lighter(), 1, crossing ? Qt::DashLine : Qt::SolidLine));
    painter.setBrush(ground);
    painter.drawRect(QRectF(pressed_, mouse_).normalized());
    painter.setBrush(Qt::NoBrush);
}

void Canvas::paintEvent(QPaintEvent*) {
    if (picture_.size() != size()) {
        picture_ = QImage(size(), QImage::Format_RGB32);
        stale_ = true;
    }
    if (stale_) {
        QPainter painter(&picture_);
        painter.setRenderHint(QPainter::TextAntialiasing);
        paintScene(painter);
        stale_ = false;
    }
    QPainter painter(this);
    QPointF shift = drag_ == Drag::Pan ? mouse_ - pressed_ : QPointF();
    if (!shift.isNull()) painter.fillRect(rect(), kGround);
    painter.drawImage(shift, picture_);
    painter.translate(shift);
    painter.setRenderHint(QPainter::Antialiasing);
    paintMarks(painter);
}

void Canvas::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    refresh();
    if (onViewChanged) onViewChanged();
}

// --- Marks
// --------------------------------------------------------------------------------------------------

void Canvas::setSelected(std::set<ObjectId> ids) {
    selected_ = std::move(ids);
    update();
}

void Canvas::setHighlighted(ObjectId id, bool on) {
    if (on)
        highlighted_.insert(id);
    else
        highlighted_.erase(id);
    update();
}

// --- The mouse
// ----------------------------------------------------------------------------------------------

ObjectId Canvas::pick(QPointF at) const {
    Point p = toWorld(at);
    double reach = kPickReach / place_.scale;
    Box around;
    around.add(p.x - reach, p.y - reach);
    around.add(p.x + reach, p.y + reach);
    ObjectId best = 0;
    double nearest = reach;
    // Later entities lie over earlier ones.
    for (const SceneEntity& entity : scene_.entities()) {
        if (!entity.visible || entity.box.empty() || !meets(entity.box, around)) continue;
        if (double distance = distanceTo(entity, p); distance <= nearest) {
            nearest = distance;
            best = entity.id;
        }
    }
    return best;
}

void Canvas::hover(QPointF at) {
    ObjectId now = pick(at);
    if (now == hovered_) return;
    hovered_ = now;
    update();
}

void Canvas::wheelEvent(QWheelEvent* event) {
    zoomBy(std::pow(1.0015, event->angleDelta().y()), event->position());
}

void Canvas::mousePressEvent(QMouseEvent* event) {
    pressed_ = mouse_ = event->position();
    if (event->button() == Qt::MiddleButton) {
        drag_ = Drag::Pan;
        setCursor(Qt::ClosedHandCursor);
    } else if (event->button() == Qt::RightButton && onRightClick) {
        onRightClick();
    }
}

void Canvas::mouseMoveEvent(QMouseEvent* event) {
    mouse_ = event->position();
    bool boxing = takesBoxes_ || zoomsToBox_;
    if (drag_ == Drag::None && (event->buttons() & Qt::LeftButton) && boxing &&
        (mouse_ - pressed_).manhattanLength() > kDragStart)
        drag_ = Drag::Box;
    if (drag_ == Drag::None) hover(mouse_);
    if (onMove) onMove(toWorld(mouse_));
    if (drag_ != Drag::None || rubberBase_) update();
}

void Canvas::mouseReleaseEvent(QMouseEvent* event) {
    mouse_ = event->position();
    Drag ended = drag_;
    drag_ = Drag::None;
    setCursor(Qt::CrossCursor);
    Point from = toWorld(pressed_), to = toWorld(mouse_);
    if (ended == Drag::Pan) {
        changeView({place_.centre.x + from.x - to.x, place_.centre.y + from.y - to.y, 0}, place_.scale);
    } else if (ended == Drag::Box && zoomsToBox_) {
        zoomsToBox_ = false;
        double w = std::abs(to.x - from.x), h = std::abs(to.y - from.y);
        changeView({(from.x + to.x) / 2, (from.y + to.y) / 2, 0},
                   std::min(width() / std::max(w, 1e-12), height() / std::max(h, 1e-12)));
    } else if (ended == Drag::Box) {
        if (onBox) onBox(from, to, mouse_.x() < pressed_.x());
    } else if (event->button() == Qt::LeftButton && onClick) {
        onClick(to, pick(mouse_), event->modifiers());
    }
    update();
}

void Canvas::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    hovered_ = 0;
    update();
}

}  // namespace hostcad
