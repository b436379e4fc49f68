// The drawing as a picture: for each main entity its lines, points and texts in world coordinates with their
// colours, and the box round them. It follows the drawing's changes.
//
// All vertices, lines and texts stand in three arrays, and an entity is a range of each: a large drawing is
// read and painted without running after pointers. Every 64 entities have a box round them together, so that
// what is not looked at is passed over in runs; a change only widens it.
#pragma once

#include <cstdint>
#include <deque>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "hostcad/drawing/drawing.h"
#include "hostcad/geometry/extents.h"
#include "hostcad/window/line_patterns.h"

namespace hostcad {

struct PlanePoint {
    double x = 0, y = 0;
};

// A line of text. `along` and `up` are the height of its capitals to the right and upwards in the world.
struct SceneText {
    std::string_view text;
    PlanePoint at;
    float alongX = 1, alongY = 0;
    float upX = 0, upY = 1;
    float width = 0;  // of the text, in units of `along`
    // Where the point is in the text: 0 left or base, 0.5 middle, 1 right or top.
    float shiftX = 0, shiftY = 0;
    uint32_t colour = 0xFFFFFF;

    // A place in the text: 0, 0 is the left end of the base line, 1, 1 the right end of the capitals' top.
    PlanePoint corner(double across, double upwards) const {
        double x = (across - shiftX) * width, y = upwards - shiftY;
        return {at.x + alongX * x + upX * y, at.y + alongY * x + upY * y};
    }
};

// Rings that follow each other may bound one area, by the even-odd rule.
enum class Fill : uint8_t { None, Area, SameArea };

struct SceneLine {
    uint32_t first = 0, count = 0;  // vertices; a line of one vertex is a point
    uint32_t colour = 0xFFFFFF;
    uint16_t pattern = 0;
    Fill fill = Fill::None;
};

struct SceneEntity {
    ObjectId id = 0;
    uint32_t firstLine = 0, lineCount = 0;
    uint32_t firstText = 0, textCount = 0;
    bool visible = true;
    bool endless = false;  // rays and construction lines: in no box
    Box box;
    uint64_t revision = 0;  // of the picture, since which the entity is as it is
};

class Scene {
  public:
    Scene() = default;
    ~Scene() { detach(); }
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    // Makes the picture of a drawing and follows it until the next call. Null shows nothing.
    void attach(Drawing* drawing);
    // Takes in what has changed since the last call.
    void update();
    // A number that is another one after each change of the picture.
    uint64_t revision() const { return revision_; }

    // In drawing order: later ones lie over earlier ones.
    std::span<const SceneEntity> entities() const { return entities_; }
    std::span<const SceneLine> lines(const SceneEntity& e) const {
        return {lines_.data() + e.firstLine, e.lineCount};
    }
    std::span<const SceneText> texts(const SceneEntity& e) const {
        return {texts_.data() + e.firstText, e.textCount};
    }
    std::span<const PlanePoint> vertices(const SceneLine& line) const {
        return {vertices_.data() + line.first, line.count};
    }
    const LinePattern& pattern(const SceneLine& line) const { return patterns_[line.pattern]; }

    // The place of an entity in entities(); kNowhere for one that is not shown.
    static constexpr size_t kNowhere = ~size_t{0};
    size_t place(ObjectId id) const;
    // Calls `visit` with the place of each visible entity whose box meets an area, in drawing order.
    template <class Visit>
    void visit(const Box& area, Visit visit) const;
    // Of all that is visible.
    Box extents() const;

    // What is not in the picture, or other than it should be, in sentences for the user.
    std::vector<std::string> remarks() const;

  private:
    friend class SceneBuilder;
    static constexpr size_t kRun = 64;

    void detach();
    void rebuild();
    void note(ObjectId id);
    void put(const SceneEntity& entity);
    std::string replacedFonts() const;

    Drawing* drawing_ = nullptr;
    long serial_ = 0;
    int observer_ = 0;
    bool rebuildAll_ = false;
    uint64_t revision_ = 0;
    std::vector<ObjectId> changed_;

    std::vector<SceneEntity> entities_;
    std::vector<Box> runs_;
    std::vector<uint32_t> places_;  // by object: one more than the place
    std::vector<PlanePoint> vertices_;
    std::vector<SceneLine> lines_;
    std::vector<SceneText> texts_;
    std::deque<std::string> ownTexts_;  // those that differ from what is in the drawing
    LinePatterns patterns_;
    size_t abandoned_ = 0;  // lines and texts that no entity uses any more

    size_t leftOut_ = 0;
    size_t shortened_ = 0;
    std::set<std::string> unknownTypes_;
};

template <class Visit>
void Scene::visit(const Box& area, Visit visit) const {
    for (size_t run = 0; run < runs_.size(); ++run) {
        if (!meet(runs_[run], area)) continue;
        const size_t end = std::min((run + 1) * kRun, entities_.size());
        for (size_t i = run * kRun; i < end; ++i) {
            const SceneEntity& entity = entities_[i];
            if (entity.visible && (entity.endless || meet(entity.box, area))) visit(i);
        }
    }
}

}  // namespace hostcad
