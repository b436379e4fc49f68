#include "hostcad/window/scene_picking.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "hostcad/geometry/crossing.h"
#include "hostcad/geometry/shape.h"

namespace hostcad {
namespace {

double distanceToSegment(PlanePoint p, PlanePoint a, PlanePoint b) {
    double dx = b.x - a.x, dy = b.y - a.y;
    double square = dx * dx + dy * dy;
    double t = square > 0 ? std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / square, 0.0, 1.0) : 0;
    return std::hypot(p.x - a.x - t * dx, p.y - a.y - t * dy);
}

// A text is hit anywhere in its box.
bool isInside(const SceneText& text, PlanePoint p) {
    double x = p.x - text.at.x, y = p.y - text.at.y;
    double size = static_cast<double>(text.alongX) * text.upY - static_cast<double>(text.alongY) * text.upX;
    if (size == 0) return false;
    double across = (x * text.upY - y * text.upX) / size + text.shiftX * text.width;
    double upwards = (y * text.alongX - x * text.alongY) / size + text.shiftY;
    return across >= 0 && across <= text.width && upwards >= 0 && upwards <= 1;
}

bool isInside(std::span<const PlanePoint> area, PlanePoint p) {
    bool inside = false;
    for (size_t i = 0; i < area.size(); ++i) {
        PlanePoint a = area[i], b = area[(i + 1) % area.size()];
        if ((a.y > p.y) != (b.y > p.y) && p.x < a.x + (b.x - a.x) * (p.y - a.y) / (b.y - a.y))
            inside = !inside;
    }
    return inside;
}

double distanceTo(const Scene& scene, const SceneEntity& entity, PlanePoint p, double reach) {
    double nearest = INFINITY;
    for (const SceneLine& line : scene.lines(entity)) {
        std::span<const PlanePoint> points = scene.vertices(line);
        for (size_t i = 0; i < points.size(); ++i)
            nearest = std::min(nearest,
                               distanceToSegment(p, points[i], points[std::min(i + 1, points.size() - 1)]));
        // What lies on a filled area comes first.
        if (line.fill != Fill::None && isInside(points, p)) nearest = std::min(nearest, reach);
    }
    for (const SceneText& text : scene.texts(entity))
        if (isInside(text, p)) nearest = 0;
    return nearest;
}

}  // namespace

ObjectId entityNear(const Scene& scene, PlanePoint p, double reach) {
    Box around;
    around.add(p.x - reach, p.y - reach);
    around.add(p.x + reach, p.y + reach);
    ObjectId best = kNoObject;
    double nearest = reach;
    scene.visit(around, [&](size_t place) {
        const SceneEntity& entity = scene.entities()[place];
        if (double distance = distanceTo(scene, entity, p, reach); distance <= nearest) {
            nearest = distance;
            best = entity.id;
        }
    });
    return best;
}

std::vector<ObjectId> entitiesInBox(const Drawing& drawing, const Scene& scene, const Box& box,
                                    bool crossing) {
    const std::array<Point, 4> corners{Point{box.minX, box.minY, 0}, Point{box.maxX, box.minY, 0},
                                       Point{box.maxX, box.maxY, 0}, Point{box.minX, box.maxY, 0}};
    std::vector<ObjectId> found;
    Shape shape;
    scene.visit(box, [&](size_t place) {
        const SceneEntity& entity = scene.entities()[place];
        bool isWhole = !entity.endless && isWithin(entity.box, box);
        // Only what sticks out of the box is looked at more closely.
        if (!isWhole) {
            shapeOf(drawing, entity.id, shape);
            if (!(crossing ? touchesPolygon(shape, corners) : isInsidePolygon(shape, corners))) return;
        }
        found.push_back(entity.id);
    });
    return found;
}

}  // namespace hostcad
