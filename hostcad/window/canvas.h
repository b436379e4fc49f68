// The drawing on the screen: zoom and pan, hover and selection marks, and what the mouse points at.
#pragma once

#include <QImage>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <optional>
#include <set>
#include <vector>

#include "hostcad/editor/view.h"
#include "hostcad/geometry/frame.h"
#include "hostcad/window/label_placer.h"
#include "hostcad/window/legend_panel.h"
#include "hostcad/window/overlay_colours.h"
#include "hostcad/window/scene.h"
#include "hostcad/window/scene_painter.h"

namespace hostcad {

class Canvas : public QWidget {
  public:
    explicit Canvas(Scene& scene, QWidget* parent = nullptr);

    // What the mouse does, in world coordinates.
    std::function<void(Point)> onMove;
    // A click; `hit` is the entity under it, 0 for none.
    std::function<void(Point at, ObjectId hit, Qt::KeyboardModifiers)> onClick;
    // A box that was drawn: to the left it crosses, to the right it encloses.
    std::function<void(const Box& box, bool crossing, Qt::KeyboardModifiers)> onBox;
    // The user has moved the view; `begins` with the first step of a movement.
    std::function<void(bool begins)> onViewMoved;
    // Other entities are selected than before.
    std::function<void()> onSelected;
    std::function<void()> onRightClick;

    ViewBox view() const;
    void setView(const ViewBox& box);
    // False when there is nothing to show.
    bool zoomExtents();
    // Shows entities with some of what is round them. False when they have no place.
    bool zoomTo(const std::vector<ObjectId>& ids);
    void zoomBy(double factor, QPointF about);
    // The next box that is drawn is the new view.
    void zoomToNextBox(bool on) { zoomsToBox_ = on; }

    // Marks; the canvas is painted anew.
    void setSelected(std::vector<ObjectId> ids);
    // In ascending order.
    const std::vector<ObjectId>& selected() const { return selected_; }
    void setHighlighted(ObjectId id, bool on);
    void clearHighlights();
    // The rubber band to the mouse from a point on, as a line or as a box; as long as a prompt asks for a
    // second point.
    void setRubberBand(std::optional<Point> base, bool isBox = false);
    // Boxes may be drawn: a prompt takes several objects, or none is asked.
    void setTakesBoxes(bool on) { takesBoxes_ = on; }

    // --- What programs show with the drawing ---
    // The labels of what is seen and of a little round it, as they are shown.
    const std::vector<PlacedLabel>& labels();
    overlay::LabelCounts labelCounts();
    LegendPanel& legend() { return *legend_; }

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
    QPointF toScreen(PlanePoint p) const;
    PlanePoint toWorld(QPointF p) const;
    void setPlace(PlanePoint centre, double scale);
    void moveView(PlanePoint centre, double scale);
    void showBox(const Box& box, double margin);
    void paintPicture();
    void paintRubberBand(QPainter& painter);
    void hover(QPointF at);
    void endDrag(const QMouseEvent& event);

    Scene& scene_;
    LabelPlacer labels_;
    OverlayColours colours_;
    LegendPanel* legend_;
    ViewPlace place_;  // scale: pixels of the desktop a unit
    QImage picture_;
    bool isStale_ = true;
    QTimer rest_;  // runs while the view moves
    std::vector<ObjectId> selected_;
    std::set<ObjectId> highlighted_;
    ObjectId hovered_ = 0;
    std::optional<Point> rubberBase_;
    bool rubberIsBox_ = false;
    bool takesBoxes_ = true;
    bool zoomsToBox_ = false;
    QPointF mouse_;
    QPointF pressed_;
    QPointF lastPan_;
    enum class Drag { None, Pan, Box } drag_ = Drag::None;
};

}  // namespace hostcad
