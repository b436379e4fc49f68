// The drawing on the screen: painting, zoom and pan, hover and selection marks, and what the mouse points at.
#pragma once

#include <QImage>
#include <QWidget>
#include <functional>
#include <set>

#include "hostcad/editor/view.h"
#include "hostcad/window/scene.h"

namespace hostcad {

class Canvas : public QWidget {
  public:
    explicit Canvas(Scene& scene, QWidget* parent = nullptr);

    // What the mouse does, in world coordinates.
    std::function<void(Point)> onMove;
    // A click; `hit` is the entity under it, 0 for none.
    std::function<void(Point at, ObjectId hit, Qt::KeyboardModifiers)> onClick;
    // A box that was drawn: to the left it crosses, to the right it encloses.
    std::function<void(Point from, Point to, bool crossing)> onBox;
    std::function<void()> onViewChanged;
    std::function<void()> onRightClick;

    ViewBox view() const;
    void setView(const ViewBox& box);
    void zoomExtents();
    void zoomPrevious();
    void zoomBy(double factor, QPointF about);
    // The next box is the new view.
    void zoomToNextBox() { zoomsToBox_ = true; }

    // Marks; the canvas is painted anew.
    void setSelected(std::set<ObjectId> ids);
    const std::set<ObjectId>& selected() const { return selected_; }
    void setHighlighted(ObjectId id, bool on);
    // Where a rubber band begins, as long as a prompt asks for a second point.
    void setRubberBase(std::optional<Point> base) { rubberBase_ = base; }
    // Boxes may be drawn: a prompt takes several objects, or none is asked.
    void setTakesBoxes(bool on) { takesBoxes_ = on; }

    // The entity nearest to a pixel, within the pick box; 0 for none.
    ObjectId pick(QPointF at) const;
    // The scene has changed.
    void refresh();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

  private:
    QPointF toScreen(const Point& p) const;
    Point toWorld(QPointF p) const;
    void changeView(Point centre, double scale, bool remember = true);
    void paintScene(QPainter& painter);
    void paintEntity(QPainter& painter, const SceneEntity& entity, const QPen* mark);
    void paintText(QPainter& painter, const SceneText& text, const QPen* mark);
    void paintMarks(QPainter& painter);
    void hover(QPointF at);

    struct Place {
        Point centre;
        double scale = 1;  // pixels a unit
    };

    Scene& scene_;
    Place place_;
    std::vector<Place> previous_;
    QImage picture_;
    bool stale_ = true;
    std::set<ObjectId> selected_;
    std::set<ObjectId> highlighted_;
    ObjectId hovered_ = 0;
    std::optional<Point> rubberBase_;
    bool takesBoxes_ = true;
    bool zoomsToBox_ = false;
    QPointF mouse_;
    QPointF pressed_;
    enum class Drag { None, Pan, Box } drag_ = Drag::None;
};

}  // namespace hostcad
