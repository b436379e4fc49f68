// The drawing as a picture: for each main entity its lines, points and texts in world coordinates with their
// colours, and the box round them. It follows the drawing's changes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "hostcad/drawing/drawing.h"
#include "hostcad/geometry/extents.h"
#include "hostcad/geometry/shape.h"

namespace hostcad {

// 0xRRGGBB of a colour number from 1 to 255; 7 is the one that shows on the ground.
uint32_t colourOfIndex(int index);

struct SceneText {
    std::string text;
    Point at;           // the left end of the base line
    double height = 1;  // of capitals
    double angle = 0;   // radians, counterclockwise
    double widthFactor = 1;
    double shiftX = 0,
           shiftY = 0;  // where the point is in the text: 0 left or base, 0.5 middle, 1 right or top
    uint32_t colour = 0xFFFFFF;
};

struct SceneLine {
    uint32_t first = 0, count = 0;  // of the vertices of its entity
    uint32_t colour = 0xFFFFFF;
    bool filled = false;
};

struct SceneEntity {
    ObjectId id = 0;
    std::vector<Point> vertices;
    std::vector<SceneLine> lines;  // a line of one vertex is a point
    std::vector<SceneText> texts;
    Box box;
    bool visible = true;
};

class Scene {
  public:
    Scene() = default;
    ~Scene() { detach(); }
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    // Makes the picture of a drawing and follows it until the next call. Null shows nothing.
    void attach(Drawing* drawing);
    // Takes in what has changed since the last call. True when there was something.
    bool update();

    const std::vector<SceneEntity>& entities() const { return entities_; }
    const SceneEntity* find(ObjectId id) const;
    // Of all that is visible.
    Box extents() const;
    // Entities that could not be shown: with coordinates that are no numbers, or too far away.
    size_t leftOut() const { return leftOut_; }

  private:
    class Builder;
    void detach();
    void rebuild();
    void note(ObjectId id);

    Drawing* drawing_ = nullptr;
    long serial_ = 0;
    int observer_ = 0;
    bool rebuildAll_ = false;
    std::vector<ObjectId> changed_;
    std::vector<SceneEntity> entities_;
    std::unordered_map<ObjectId, size_t> places_;
    size_t leftOut_ = 0;
};

}  // namespace hostcad
