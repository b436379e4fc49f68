// Takes entities apart into the pieces of a shape.
#pragma once

#include <vector>

#include "hostcad/geometry/polyline_points.h"
#include "hostcad/geometry/shape.h"

namespace hostcad {

class ShapeBuilder {
  public:
    ShapeBuilder(const Drawing& drawing, Shape& shape) : drawing_(drawing), shape_(shape) {}

    // The pieces of an entity whose coordinates are those of a frame.
    void entity(const Frame& frame, ObjectId id);

  private:
    // Pieces, given in coordinates of a frame. Angles in radians; arcs run counterclockwise.
    void segment(const Frame& frame, Point from, Point to);
    void point(const Frame& frame, Point p);
    void area(const Frame& frame, std::vector<Point> corners);
    void endless(const Frame& frame, Point from, Point direction, bool bothWays);
    void arc(const Frame& frame, Point center, double radius, double start, double sweep);
    void ellipse(const Frame& frame, Point center, Point major, Point minor, double start, double sweep);
    void bulge(const Frame& frame, Point from, Point to, double bulge);
    void polyline(const Frame& frame, const std::vector<PolylinePoint>& vertices, bool closed);

    // Entities by type.
    void polylineEntity(const Frame& frame, ObjectId id);
    void mesh(const Frame& frame, ObjectId id);
    void ellipseEntity(const Frame& frame, Groups groups);
    void spline(const Frame& frame, Groups groups);
    void hatch(const Frame& frame, Groups groups);
    void hatchPath(const Frame& frame, Groups path);
    void hatchEdge(const Frame& frame, Groups edge);
    void text(const Frame& frame, Groups groups, bool attribute);
    void paragraph(const Frame& frame, Groups groups);
    void image(const Frame& frame, Groups groups);
    void reference(const Frame& frame, ObjectId id);
    void blockEntities(const Frame& frame, std::string_view block);

    // False when the entity has more pieces than anything that was drawn: then it is cut short.
    bool take();

    const Drawing& drawing_;
    Shape& shape_;
    size_t budget_ = 200000;
    int depth_ = 0;
};

}  // namespace hostcad
