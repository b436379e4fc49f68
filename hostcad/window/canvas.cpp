#include "hostcad/window/canvas.h"

#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "hostcad/window/colours.h"
#include "hostcad/window/label_painter.h"
#include "hostcad/window/scene_picking.h"

namespace hostcad {
namespace {

constexpr double kPickReach = 6;  // pixels
constexpr double kDragStart = 4;  // pixels
constexpr int kRest = 150;        // milliseconds without a movement until the picture is made complete

// A single point is looked at from a distance of its own size of nothing: some units round it.
Box withRoom(Box box) {
    if (box.width() > 0 || box.height() > 0) return box;
    box.add(box.minX - 5, box.minY - 5);
    box.add(box.maxX + 5, box.maxY + 5);
    return box;
}

}  // namespace

Canvas::Canvas(Scene& scene, QWidget* parent)
    : QWidget(parent), scene_(scene), labels_(scene), colours_(scene), legend_(new LegendPanel(this)) {
    setMouseTracking(true);
    setFocusPolicy(Qt::NoFocus);
    setCursor(Qt::CrossCursor);
    setMinimumSize(200, 120);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAccessibleName("Drawing");
    rest_.setSingleShot(true);
    rest_.setInterval(kRest);
    connect(&rest_, &QTimer::timeout, this, [this] { refresh(); });
}

// --- The view ----------------------------------------------------------------------------------------------

QPointF Canvas::toScreen(PlanePoint p) const {
    return {width() / 2.0 + (p.x - place_.centre.x) * place_.scale,
            height() / 2.0 - (p.y - place_.centre.y) * place_.scale};
}

PlanePoint Canvas::toWorld(QPointF p) const {
    return {place_.centre.x + (p.x() - width() / 2.0) / place_.scale,
            place_.centre.y - (p.y() - height() / 2.0) / place_.scale};
}

ViewBox Canvas::view() const {
    return {{place_.centre.x, place_.centre.y, 0}, height() / place_.scale, width() / place_.scale};
}

void Canvas::setPlace(PlanePoint centre, double scale) {
    constexpr double kLargest = 1e12, kSmallest = 1e-15;
    if (!std::isfinite(scale) || !std::isfinite(centre.x) || !std::isfinite(centre.y)) return;
    place_ = {centre, std::clamp(scale, kSmallest, kLargest)};
    refresh();
}

void Canvas::moveView(PlanePoint centre, double scale) {
    bool begins = !rest_.isActive();
    rest_.start();
    setPlace(centre, scale);
    if (onViewMoved) onViewMoved(begins);
}

void Canvas::setView(const ViewBox& box) {
    if (box.height > 0) setPlace({box.centre.x, box.centre.y}, height() / box.height);
}

void Canvas::showBox(const Box& box, double margin) {
    constexpr double kSmallest = 1e-9;
    double scale =
        std::min(width() / std::max(box.width(), kSmallest), height() / std::max(box.height(), kSmallest));
    setPlace({box.centre().x, box.centre().y}, scale / margin);
    if (onViewMoved) onViewMoved(true);
}

bool Canvas::zoomExtents() {
    constexpr double kMargin = 1.05;
    Box box = scene_.extents();
    if (box.empty()) return false;
    showBox(withRoom(box), kMargin);
    return true;
}

bool Canvas::zoomTo(const std::vector<ObjectId>& ids) {
    constexpr double kMargin = 2.5;
    Box box;
    for (ObjectId id : ids) {
        const size_t place = scene_.place(id);
        if (place == Scene::kNowhere) continue;
        const Box& entity = scene_.entities()[place].box;
        if (entity.empty()) continue;
        box.add(entity.minX, entity.minY);
        box.add(entity.maxX, entity.maxY);
    }
    if (box.empty()) return false;
    showBox(withRoom(box), kMargin);
    return true;
}

void Canvas::zoomBy(double factor, QPointF about) {
    PlanePoint fixed = toWorld(about);
    double scale = place_.scale * factor;
    moveView({fixed.x - (about.x() - width() / 2.0) / scale, fixed.y + (about.y() - height() / 2.0) / scale},
             scale);
}

void Canvas::refresh() {
    isStale_ = true;
    legend_->follow();
    update();
}

// --- Painting ----------------------------------------------------------------------------------------------

void Canvas::paintPicture() {
    std::vector<bool> marked;
    if (!selected_.empty() || !highlighted_.empty()) marked.resize(scene_.entities().size());
    auto mark = [&](ObjectId id) {
        if (size_t place = scene_.place(id); place != Scene::kNowhere) marked[place] = true;
    };
    for (ObjectId id : selected_) mark(id);
    for (ObjectId id : highlighted_) mark(id);
    const double ratio = devicePixelRatioF();
    ScenePainter(scene_, place_, ratio).paint(picture_, marked, rest_.isActive(), colours_.ofPlaces());
    paintLabels(picture_, labels(), place_, ratio, kScreen);
    isStale_ = false;
}

const std::vector<PlacedLabel>& Canvas::labels() {
    // So that a small movement needs no new places.
    return labels_.place(place_, size(), std::min(width(), height()) / 4.0);
}

overlay::LabelCounts Canvas::labelCounts() {
    labels();
    return labels_.counts(place_, size());
}

void Canvas::paintEvent(QPaintEvent*) {
    const double ratio = devicePixelRatioF();
    QSize pixels = (QSizeF(size()) * ratio).toSize();
    if (picture_.size() != pixels) {
        picture_ = QImage(pixels, QImage::Format_RGB32);
        isStale_ = true;
    }
    if (isStale_) paintPicture();
    QImage shown = picture_;
    size_t hovered = hovered_ ? scene_.place(hovered_) : Scene::kNowhere;
    if (hovered != Scene::kNowhere && !std::binary_search(selected_.begin(), selected_.end(), hovered_))
        ScenePainter(scene_, place_, ratio).paintOver(shown, {hovered}, kHoverColour, 1);
    QPainter painter(this);
    painter.drawImage(QRectF(rect()), shown);
    painter.setRenderHint(QPainter::Antialiasing);
    paintRubberBand(painter);
}

void Canvas::paintRubberBand(QPainter& painter) {
    const QColor line = QColor::fromRgb(kHoverColour);
    if (rubberBase_ && drag_ == Drag::None) {
        painter.setPen(QPen(line, 1, Qt::DashLine));
        QPointF base = toScreen({rubberBase_->x, rubberBase_->y});
        rubberIsBox_ ? painter.drawRect(QRectF(base, mouse_).normalized()) : painter.drawLine(base, mouse_);
    }
    if (drag_ != Drag::Box) return;
    const bool isCrossing = mouse_.x() < pressed_.x() && !zoomsToBox_;
    QColor ground = isCrossing ? QColor(0x40, 0xC0, 0x60, 40) : QColor(0x50, 0x90, 0xE0, 40);
    painter.setPen(QPen(ground.lighter(), 1, isCrossing ? Qt::DashLine : Qt::SolidLine));
    painter.setBrush(ground);
    painter.drawRect(QRectF(pressed_, mouse_).normalized());
}

void Canvas::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    refresh();
    if (onViewMoved) onViewMoved(false);
}

// --- Marks -------------------------------------------------------------------------------------------------

void Canvas::setSelected(std::vector<ObjectId> ids) {
    std::sort(ids.begin(), ids.end());
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
    if (ids == selected_) return;
    selected_ = std::move(ids);
    if (onSelected) onSelected();
    refresh();
}

void Canvas::setHighlighted(ObjectId id, bool on) {
    if (on)
        highlighted_.insert(id);
    else
        highlighted_.erase(id);
    refresh();
}

void Canvas::clearHighlights() {
    if (highlighted_.empty()) return;
    highlighted_.clear();
    refresh();
}

void Canvas::setRubberBand(std::optional<Point> base, bool isBox) {
    rubberBase_ = base;
    rubberIsBox_ = isBox;
    update();
}

// --- The mouse ---------------------------------------------------------------------------------------------

ObjectId Canvas::pick(QPointF at) const {
    return entityNear(scene_, toWorld(at), kPickReach / place_.scale);
}

void Canvas::hover(QPointF at) {
    ObjectId now = pick(at);
    if (now == hovered_) return;
    hovered_ = now;
    update();
}

void Canvas::wheelEvent(QWheelEvent* event) {
    constexpr double kStep = 1.0015;  // a step of a wheel is 120
    zoomBy(std::pow(kStep, event->angleDelta().y()), event->position());
}

void Canvas::mousePressEvent(QMouseEvent* event) {
    pressed_ = mouse_ = lastPan_ = event->position();
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
    if (drag_ == Drag::Pan) {
        QPointF by = (mouse_ - lastPan_) / place_.scale;
        lastPan_ = mouse_;
        moveView({place_.centre.x - by.x(), place_.centre.y + by.y()}, place_.scale);
    } else if (drag_ == Drag::None) {
        hover(mouse_);
    }
    PlanePoint at = toWorld(mouse_);
    if (onMove) onMove({at.x, at.y, 0});
    if (drag_ != Drag::None || rubberBase_) update();
}

void Canvas::mouseReleaseEvent(QMouseEvent* event) {
    mouse_ = event->position();
    if (drag_ != Drag::None) {
        endDrag(*event);
    } else if (event->button() == Qt::LeftButton && onClick) {
        PlanePoint at = toWorld(mouse_);
        onClick({at.x, at.y, 0}, pick(mouse_), event->modifiers());
    }
    update();
}

void Canvas::endDrag(const QMouseEvent& event) {
    bool isBox = drag_ == Drag::Box;
    drag_ = Drag::None;
    setCursor(Qt::CrossCursor);
    if (!isBox) return;
    PlanePoint from = toWorld(pressed_), to = toWorld(mouse_);
    Box box;
    box.add(from.x, from.y);
    box.add(to.x, to.y);
    if (std::exchange(zoomsToBox_, false))
        showBox(box, 1);
    else if (onBox)
        onBox(box, mouse_.x() < pressed_.x(), event.modifiers());
}

void Canvas::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    hovered_ = 0;
    update();
}

}  // namespace hostcad
