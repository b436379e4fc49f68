#include "hostcad/window/scene.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "hostcad/drawing/current_drawing.h"
#include "hostcad/geometry/references.h"
#include "hostcad/geometry/shape_builder.h"

namespace hostcad {
namespace {

constexpr double kDegree = std::numbers::pi / 180;
constexpr double kFarAway = 1e15;  // beyond it a picture has no digits left
constexpr int kDeepestNesting = 32;
constexpr size_t kMostCells = 10000;  // of the array of a reference
constexpr int kByBlock = 0;
constexpr int kByLayer = 256;

bool isDrawable(const Box& box) {
    for (double v : {box.minX, box.minY, box.maxX, box.maxY})
        if (!std::isfinite(v) || std::abs(v) > kFarAway) return false;
    return true;
}

}  // namespace

// The standard colours: nine by name, then rings of a hue circle in five shades, and greys.
uint32_t colourOfIndex(int index) {
    constexpr uint32_t kNamed[] = {0xFFFFFF, 0xFF0000, 0xFFFF00, 0x00FF00, 0x00FFFF,
                                   0x0000FF, 0xFF00FF, 0xFFFFFF, 0x808080, 0xC0C0C0};
    constexpr uint32_t kGreys[] = {0x333333, 0x505050, 0x696969, 0x828282, 0xBEBEBE, 0xFFFFFF};
    index = std::abs(index);
    if (index < 10) return kNamed[index];
    if (index >= 250 || index > 255) return kGreys[std::clamp(index - 250, 0, 5)];
    constexpr double kValues[] = {1.0, 0.74, 0.5, 0.41, 0.31};
    double hue = (index / 10 - 1) * 15.0;
    double value = kValues[index % 10 / 2];
    double saturation = index % 2 ? 0.33 : 1.0;
    auto channel = [&](double shift) {
        double k = std::fmod(shift + hue / 60, 6);
        return static_cast<uint32_t>(
            255 * (value - value * saturation * std::clamp(std::min(k, 4 - k), 0.0, 1.0)) + 0.5);
    };
    return channel(5) << 16 | channel(3) << 8 | channel(1);
}

// Takes an entity apart, down through its blocks.
class Scene::Builder {
  public:
    explicit Builder(const Drawing& drawing) : drawing_(drawing) {}

    SceneEntity build(ObjectId id) {
        SceneEntity entity;
        entity.id = id;
        entity.visible = isVisible(drawing_, id);
        into_ = &entity;
        add(Frame{}, id, layerOf(id), 7, 0);
        for (const Point& p : entity.vertices) entity.box.add(p.x, p.y);
        for (const SceneText& t : entity.texts) addTextBox(entity.box, t);
        return entity;
    }

  private:
    struct Layer {
        int colour = 7;
        bool shown = true;
    };

    std::string_view layerOf(ObjectId id) const { return textOf(drawing_.groups(id), 8, "0"); }

    const Layer& layer(std::string_view name) {
        auto [it, isNew] = layers_.try_emplace(std::string(name));
        if (isNew) {
            if (ObjectId record = drawing_.record("LAYER", name)) {
                Groups groups = drawing_.groups(record);
                int64_t colour = integerOf(groups, 62, 7);
                it->second = {static_cast<int>(std::abs(colour)),
                              colour >= 0 && !(integerOf(groups, 70) & 1)};
            }
        }
        return it->second;
    }

    // layerName: that of the reference, which entities on layer 0 of a block take over; blockColour: its
    // colour.
    void add(const Frame& frame, ObjectId id, std::string_view outerLayer, int blockColour, int depth) {
        Groups groups = drawing_.groups(id);
        std::string_view own = layerOf(id);
        std::string_view layerName = depth > 0 && own == "0" ? outerLayer : own;
        const Layer& on = layer(layerName);
        if ((depth > 0 && !on.shown) || integerOf(groups, 60) == 1) return;
        int colour = static_cast<int>(integerOf(groups, 62, kByLayer));
        if (colour == kByLayer) colour = on.colour;
        if (colour == kByBlock) colour = blockColour;
        uint32_t rgb = static_cast<uint32_t>(integerOf(groups, 420, colourOfIndex(colour)));

        std::string_view type = drawing_.type(id);
        if (type == "INSERT") return addReference(frame, id, layerName, colour, depth);
        if (type == "DIMENSION") return addBlock(frame, textOf(groups, 2), layerName, colour, depth);
        if (type == "TEXT" || type == "ATTRIB" || type == "ATTDEF") return addText(frame, groups, rgb);
        if (type == "MTEXT") return addParagraph(frame, groups, rgb);
        if (type == "VIEWPORT" || type == "SEQEND") return;
        shape_.clear();
        ShapeBuilder(drawing_, shape_).entity(frame, id);
        addShape(rgb);
    }

    void addReference(const Frame& frame, ObjectId id, std::string_view layerName, int colour, int depth) {
        if (depth >= kDeepestNesting) return;
        Groups groups = drawing_.groups(id);
        for (const Frame& inner : referenceFrames(drawing_, frame, groups, kMostCells))
            addContents(inner, drawing_.block(textOf(groups, 2)), layerName, colour, depth + 1);
        constexpr int64_t kInvisible = 1;
        for (ObjectId part = drawing_.firstPart(id); part; part = drawing_.nextPart(part))
            if (!(integerOf(drawing_.groups(part), 70) & kInvisible))
                add(frame, part, layerName, colour, depth + 1);
    }

    void addBlock(const Frame& frame, std::string_view name, std::string_view layerName, int colour,
                  int depth) {
        ObjectId block = drawing_.block(name);
        if (block && !drawing_.isSpace(block) && depth < kDeepestNesting)
            addContents(frame, block, layerName, colour, depth + 1);
    }

    void addContents(const Frame& frame, ObjectId block, std::string_view layerName, int colour, int depth) {
        constexpr int64_t kConstant = 2;
        for (ObjectId id = drawing_.firstPart(block); id && into_->vertices.size() < kMostVertices;
             id = drawing_.nextPart(id))
            if (drawing_.type(id) != "ATTDEF" || integerOf(drawing_.groups(id), 70) & kConstant)
                add(frame, id, layerName, colour, depth);
    }

    void begin(uint32_t colour, bool filled = false) {
        into_->lines.push_back({static_cast<uint32_t>(into_->vertices.size()), 0, colour, filled});
    }
    void vertex(const Point& p) {
        into_->vertices.push_back(p);
        ++into_->lines.back().count;
    }

    void addShape(uint32_t colour) {
        const Point* last = nullptr;
        for (const Segment& s : shape_.segments) {
            // Segments that follow each other are one line.
            bool joined = last && last->x == s.from.x && last->y == s.from.y;
            if (!joined) {
                begin(colour);
                vertex(s.from);
            }
            vertex(s.to);
            last = &s.to;
        }
        for (const Arc& arc : shape_.arcs) {
            constexpr double kStep = 5 * kDegree;
            int steps = std::clamp(static_cast<int>(std::abs(arc.sweep) / kStep) + 1, 2, 144);
            begin(colour);
            for (int i = 0; i <= steps; ++i) vertex(arc.at(arc.start + arc.sweep * i / steps));
        }
        for (const Point& p : shape_.points) {
            begin(colour);
            vertex(p);
        }
        for (const auto& area : shape_.areas) {
            begin(colour, true);
            for (const Point& p : area) vertex(p);
        }
    }

    static Point pointAt(Groups groups, int code) {
        const Group* group = hostcad::find(groups, code);
        return group ? Point{group->x(), group->y(), group->z()} : Point{};
    }

    void addText(const Frame& frame, Groups groups, uint32_t colour) {
        SceneText text;
        text.text = textOf(groups, 1);
        int64_t horizontal = integerOf(groups, 72);
        int64_t vertical = integerOf(groups, 73) ? integerOf(groups, 73) : integerOf(groups, 74);
        bool aligned = (horizontal != 0 || vertical != 0) && hostcad::find(groups, 11);
        constexpr double kShiftX[] = {0, 0.5, 1, 0, 0.5, 0};
        constexpr double kShiftY[] = {0, 0, 0.5, 1};
        if (aligned && horizontal != 3 && horizontal != 5) {
            text.shiftX = kShiftX[std::clamp<int64_t>(horizontal, 0, 5)];
            text.shiftY = horizontal == 4 ? 0.5 : kShiftY[std::clamp<int64_t>(vertical, 0, 3)];
        } else {
            aligned = false;
        }
        text.widthFactor = realOf(groups, 41, 1);
        place(frame, groups, pointAt(groups, aligned ? 11 : 10), realOf(groups, 40, 1),
              realOf(groups, 50) * kDegree, colour, text);
    }

    // Lines of a paragraph stand below each other; codes of its format are left out.
    void addParagraph(const Frame& frame, Groups groups, uint32_t colour) {
        std::string whole;
        for (const Group& group : groups)
            if (group.code == 3 || group.code == 1) whole += group.text();
        std::vector<std::string> lines = plainLines(whole);
        double height = realOf(groups, 40, 1);
        double angle = realOf(groups, 50) * kDegree;
        if (const Group* axis = hostcad::find(groups, 11)) angle = std::atan2(axis->y(), axis->x());
        int64_t attachment = std::clamp<int64_t>(integerOf(groups, 71, 1), 1, 9) - 1;
        double spacing = height * 5 / 3;
        double total = height + spacing * (static_cast<double>(lines.size()) - 1);
        double below = attachment / 3 == 0   ? height
                       : attachment / 3 == 1 ? height - total / 2
                                             : height - total;
        for (size_t i = 0; i < lines.size(); ++i) {
            SceneText text;
            text.text = lines[i];
            text.shiftX = static_cast<double>(attachment % 3) / 2;
            double down = below + spacing * static_cast<double>(i);
            Point at = pointAt(groups, 10) + Point{std::sin(angle) * down, -std::cos(angle) * down, 0};
            place(frame, groups, at, height, angle, colour, text);
        }
    }

    static std::vector<std::string> plainLines(std::string_view s) {
        std::vector<std::string> lines(1);
        for (size_t i = 0; i < s.size(); ++i) {
            if (s[i] == '{' || s[i] == '}') continue;
            if (s[i] != '\\' || i + 1 >= s.size()) {
                lines.back() += s[i];
                continue;
            }
            char code = s[++i];
            if (code == 'P')
                lines.emplace_back();
            else if (code == '~')
                lines.back() += ' ';
            else if (code == '\\' || code == '{' || code == '}')
                lines.back() += code;
            else if (std::string_view("LlOoKk").find(code) == std::string_view::npos)
                i = std::min(s.find(';', i), s.size() - 1);
        }
        return lines;
    }

    void place(const Frame& frame, Groups groups, Point at, double height, double angle, uint32_t colour,
               SceneText& text) {
        if (text.text.empty() || into_->texts.size() > kMostTexts) return;
        const Group* normal = hostcad::find(groups, 210);
        Frame plane = normal ? frame * extrusionFrame({normal->x(), normal->y(), normal->z()}) : frame;
        Point along = plane.direction({std::cos(angle), std::sin(angle), 0});
        Point up = plane.direction({-std::sin(angle), std::cos(angle), 0});
        text.at = plane(at);
        text.height = height * length(up);
        text.angle = std::atan2(along.y, along.x);
        text.colour = colour;
        if (std::isfinite(text.height) && text.height > 0) into_->texts.push_back(std::move(text));
    }

    static void addTextBox(Box& box, const SceneText& t) {
        double width = 0.9 * t.height * t.widthFactor * static_cast<double>(t.text.size());
        double c = std::cos(t.angle), s = std::sin(t.angle);
        for (double x : {-t.shiftX * width, (1 - t.shiftX) * width})
            for (double y : {-t.shiftY * t.height, (1 - t.shiftY) * t.height})
                box.add(t.at.x + c * x - s * y, t.at.y + s * x + c * y);
    }

    static constexpr size_t kMostVertices = 500000;
    static constexpr size_t kMostTexts = 20000;

    const Drawing& drawing_;
    SceneEntity* into_ = nullptr;
    Shape shape_;
    std::unordered_map<std::string, Layer> layers_;
};

void Scene::attach(Drawing* drawing) {
    detach();
    drawing_ = drawing;
    if (drawing_) observer_ = drawing_->addObserver([this](ObjectId id, Change) { note(id); });
    serial_ = drawing_ ? drawing_->serial() : 0;
    rebuild();
}

void Scene::note(ObjectId id) {
    const Object* object = &drawing_->object(id);
    if (object->kind == ObjectKind::Subentity) {
        id = object->owner;
        object = &drawing_->object(id);
    }
    if (object->kind == ObjectKind::Entity && drawing_->isSpace(object->owner)) changed_.push_back(id);
    // A layer, a block or what is in one: anything may look different.
    else if (object->kind == ObjectKind::Entity || object->kind == ObjectKind::Block ||
             drawing_->type(id) == "LAYER")
        rebuildAll_ = true;
}

void Scene::detach() {
    // A drawing that was replaced is gone with its observers.
    if (drawing_ && currentDrawing().serial() == serial_) drawing_->removeObserver(observer_);
    drawing_ = nullptr;
    observer_ = 0;
}

void Scene::rebuild() {
    entities_.clear();
    places_.clear();
    changed_.clear();
    rebuildAll_ = false;
    leftOut_ = 0;
    if (!drawing_) return;
    Builder builder(*drawing_);
    ObjectId space = drawing_->currentSpace();
    for (ObjectId id = drawing_->firstEntityOf(space); id; id = drawing_->nextEntityOf(space, id)) {
        SceneEntity entity = builder.build(id);
        if (!entity.box.empty() && !isDrawable(entity.box)) {
            ++leftOut_;
            continue;
        }
        places_[id] = entities_.size();
        entities_.push_back(std::move(entity));
    }
}

bool Scene::update() {
    if (!drawing_ || (!rebuildAll_ && changed_.empty())) return false;
    constexpr size_t kManyChanges = 20000;
    if (rebuildAll_ || changed_.size() > kManyChanges) {
        rebuild();
        return true;
    }
    Builder builder(*drawing_);
    std::sort(changed_.begin(), changed_.end());
    changed_.erase(std::unique(changed_.begin(), changed_.end()), changed_.end());
    for (ObjectId id : changed_) {
        SceneEntity entity;
        entity.id = id;
        entity.visible = false;
        if (drawing_->exists(id) && drawing_->object(id).owner == drawing_->currentSpace())
            entity = builder.build(id);
        if (!entity.box.empty() && !isDrawable(entity.box)) entity = SceneEntity{id, {}, {}, {}, {}, false};
        auto [place, isNew] = places_.try_emplace(id, entities_.size());
        if (isNew)
            entities_.push_back(std::move(entity));
        else
            entities_[place->second] = std::move(entity);
    }
    changed_.clear();
    return true;
}

const SceneEntity* Scene::find(ObjectId id) const {
    auto it = places_.find(id);
    return it == places_.end() ? nullptr : &entities_[it->second];
}

Box Scene::extents() const {
    Box box;
    for (const SceneEntity& entity : entities_)
        if (entity.visible) box.add(entity.box);
    return box;
}

}  // namespace hostcad
