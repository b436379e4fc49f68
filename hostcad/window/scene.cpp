#include "hostcad/window/scene.h"

#include <algorithm>

#include "hostcad/drawing/current_drawing.h"
#include "hostcad/window/drawn_text.h"
#include "hostcad/window/scene_builder.h"

namespace hostcad {

void Scene::attach(Drawing* drawing) {
    detach();
    drawing_ = drawing;
    if (drawing_) observer_ = drawing_->addObserver([this](ObjectId id, Change) { note(id); });
    serial_ = drawing_ ? drawing_->serial() : 0;
    rebuild();
}

void Scene::detach() {
    // A drawing that was replaced is gone with its observers.
    if (drawing_ && currentDrawing().serial() == serial_) drawing_->removeObserver(observer_);
    drawing_ = nullptr;
    observer_ = 0;
}

void Scene::note(ObjectId id) {
    const Object* object = &drawing_->object(id);
    if (object->kind == ObjectKind::Subentity) {
        id = object->owner;
        object = &drawing_->object(id);
    }
    if (object->kind == ObjectKind::Entity && drawing_->isSpace(object->owner)) {
        changed_.push_back(id);
        return;
    }
    // A layer, a line type, a block or what is in one: anything may look different.
    bool isTable = object->kind == ObjectKind::Record &&
                   (drawing_->type(id) == "LAYER" || drawing_->type(id) == "LTYPE");
    bool isScale =
        object->kind == ObjectKind::HeaderVariable && textOf(drawing_->groups(id), 9) == "$LTSCALE";
    if (object->kind == ObjectKind::Entity || object->kind == ObjectKind::Block || isTable || isScale)
        rebuildAll_ = true;
}

void Scene::put(const SceneEntity& entity) {
    constexpr double kEverywhere = 1e300;
    if (entity.id >= places_.size()) places_.resize(drawing_->idLimit());
    uint32_t& place = places_[entity.id];
    if (place == 0) {
        entities_.push_back(entity);
        place = static_cast<uint32_t>(entities_.size());
        if (entities_.size() > runs_.size() * kRun) runs_.emplace_back();
    } else {
        SceneEntity& old = entities_[place - 1];
        abandoned_ += old.lineCount + old.textCount;
        old = entity;
    }
    entities_[place - 1].revision = revision_;
    Box& run = runs_[(place - 1) / kRun];
    run.add(entity.box);
    if (entity.endless) {
        run.add(-kEverywhere, -kEverywhere);
        run.add(kEverywhere, kEverywhere);
    }
}

void Scene::rebuild() {
    entities_.clear();
    runs_.clear();
    places_.clear();
    vertices_.clear();
    lines_.clear();
    texts_.clear();
    ownTexts_.clear();
    patterns_.clear();
    changed_.clear();
    unknownTypes_.clear();
    rebuildAll_ = false;
    abandoned_ = leftOut_ = shortened_ = 0;
    ++revision_;
    if (!drawing_) return;
    // Room is taken at once, so that nothing is moved on the way; what is not used of it costs nothing.
    const size_t most = drawing_->idLimit();
    entities_.reserve(most);
    vertices_.reserve(most);
    lines_.reserve(most);
    texts_.reserve(most);
    SceneBuilder builder(*drawing_, *this);
    ObjectId space = drawing_->currentSpace();
    for (ObjectId id = drawing_->firstEntityOf(space); id; id = drawing_->nextEntityOf(space, id))
        put(builder.build(id));
}

void Scene::update() {
    if (!drawing_ || (!rebuildAll_ && changed_.empty())) return;
    constexpr size_t kManyChanges = 20000;
    if (rebuildAll_ || changed_.size() > kManyChanges || abandoned_ > lines_.size() / 2 + kManyChanges) {
        rebuild();
        return;
    }
    ++revision_;
    SceneBuilder builder(*drawing_, *this);
    std::sort(changed_.begin(), changed_.end());
    changed_.erase(std::unique(changed_.begin(), changed_.end()), changed_.end());
    for (ObjectId id : changed_) {
        SceneEntity gone;
        gone.id = id;
        gone.visible = false;
        bool isHere = drawing_->exists(id) && drawing_->object(id).owner == drawing_->currentSpace();
        put(isHere ? builder.build(id) : gone);
    }
    changed_.clear();
}

size_t Scene::place(ObjectId id) const {
    return id < places_.size() && places_[id] ? places_[id] - 1 : kNowhere;
}

Box Scene::extents() const {
    Box box;
    for (const SceneEntity& entity : entities_)
        if (entity.visible) box.add(entity.box);
    return box;
}

// The fonts of the text styles, where there are texts.
std::string Scene::replacedFonts() const {
    if (!drawing_ || texts_.empty()) return {};
    constexpr int64_t kShapes = 1;  // no style of texts
    std::set<std::string> names;
    ObjectId styles = drawing_->table("STYLE");
    for (ObjectId id = styles ? drawing_->firstPart(styles) : kNoObject; id; id = drawing_->nextPart(id)) {
        std::string_view font = textOf(drawing_->groups(id), 3);
        if (!font.empty() && !(integerOf(drawing_->groups(id), 70) & kShapes)) names.emplace(font);
    }
    std::string all;
    for (const std::string& name : names) all += (all.empty() ? "" : ", ") + name;
    return all;
}

std::vector<std::string> Scene::remarks() const {
    std::vector<std::string> all;
    auto entities = [](size_t count) {
        return std::to_string(count) + (count == 1 ? " entity is" : " entities are");
    };
    if (leftOut_ > 0)
        all.push_back(entities(leftOut_) +
                      " not shown: coordinates that are no numbers, or too far away for a picture.");
    if (shortened_ > 0)
        all.push_back(entities(shortened_) +
                      " shown in part: blocks within blocks too deep, within themselves, or too many.");
    if (!unknownTypes_.empty()) {
        std::string types;
        for (const std::string& type : unknownTypes_) types += (types.empty() ? "" : ", ") + type;
        all.push_back("Entities of these kinds have no picture here: " + types + ".");
    }
    if (std::string fonts = replacedFonts(); !fonts.empty())
        all.push_back("Texts are shown in " + drawingFontName() + " in place of " + fonts + ".");
    return all;
}

}  // namespace hostcad
