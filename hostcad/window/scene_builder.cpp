#include "hostcad/window/scene_builder.h"

#include <algorithm>
#include <cmath>

#include "hostcad/geometry/references.h"
#include "hostcad/geometry/shape_builder.h"
#include "hostcad/window/colours.h"
#include "hostcad/window/drawn_text.h"
#include "platform/plane/angle.h"

namespace hostcad {
namespace {

constexpr double kFarAway = 1e15;  // beyond it a picture has no digits left
constexpr size_t kDeepestNesting = 32;
constexpr size_t kMostCells = 10000;  // of the array of a reference
// Entities of blocks that one entity and the whole drawing may show: far more than anybody draws, and what
// a drawing that is out to hang the program gets to.
constexpr size_t kMostPieces = 100000;
constexpr size_t kMostPiecesOfAll = 10000000;
constexpr size_t kMostVertices = 200000000;

bool isDrawable(const Box& box) {
    for (double v : {box.minX, box.minY, box.maxX, box.maxY})
        if (!(std::abs(v) <= kFarAway)) return false;
    return true;
}

Frame planeOf(const Frame& frame, Groups groups) {
    const Group* normal = find(groups, 210);
    return normal ? frame * extrusionFrame(normal->point()) : frame;
}

}  // namespace

SceneBuilder::SceneBuilder(const Drawing& drawing, Scene& scene)
    : drawing_(drawing), scene_(scene), patternScale_(drawing.headerReal("$LTSCALE", 1)) {}

SceneEntity SceneBuilder::build(ObjectId id) {
    entity_ = {};
    entity_.id = id;
    entity_.firstLine = static_cast<uint32_t>(scene_.lines_.size());
    entity_.firstText = static_cast<uint32_t>(scene_.texts_.size());
    entity_.visible = layer(textOf(drawing_.groups(id), 8, "0")).shown;
    blocks_.clear();
    pieces_ = 0;
    isShortened_ = false;
    add(Frame{}, id, {}, false);
    finish();
    return entity_;
}

// Counts what was added, and takes it back where it has no place on a screen.
void SceneBuilder::finish() {
    entity_.lineCount = static_cast<uint32_t>(scene_.lines_.size() - entity_.firstLine);
    entity_.textCount = static_cast<uint32_t>(scene_.texts_.size() - entity_.firstText);
    Box& box = entity_.box;
    for (const SceneLine& line : scene_.lines(entity_))
        for (const PlanePoint& p : scene_.vertices(line)) {
            // A number that is none would slip through every comparison.
            if (std::isnan(p.x) || std::isnan(p.y)) box.add(INFINITY, INFINITY);
            box.add(p.x, p.y);
        }
    if (isShortened_) ++scene_.shortened_;
    if (entity_.endless) box = {};
    if (box.empty() || isDrawable(box)) return;
    ++scene_.leftOut_;
    if (entity_.lineCount > 0) scene_.vertices_.resize(scene_.lines(entity_).front().first);
    scene_.lines_.resize(entity_.firstLine);
    scene_.texts_.resize(entity_.firstText);
    entity_.lineCount = entity_.textCount = 0;
    entity_.visible = false;
    box = {};
}

const SceneBuilder::Layer& SceneBuilder::layer(std::string_view name) {
    if (lastLayer_ && name == lastLayerName_) return *lastLayer_;
    auto [it, isNew] = layers_.try_emplace(name);
    lastLayerName_ = name;
    lastLayer_ = &it->second;
    if (!isNew) return it->second;
    if (ObjectId record = drawing_.record("LAYER", name)) {
        Groups groups = drawing_.groups(record);
        int64_t colour = integerOf(groups, 62, 7);
        constexpr int64_t kFrozen = 1;
        it->second = {static_cast<int>(std::abs(colour)), colour >= 0 && !(integerOf(groups, 70) & kFrozen),
                      textOf(groups, 6)};
    }
    return it->second;
}

ObjectId SceneBuilder::block(std::string_view name) {
    if (lastBlock_ && name == lastBlockName_) return lastBlock_;
    ObjectId found = drawing_.block(name);
    if (!found || drawing_.isSpace(found)) return kNoObject;
    lastBlockName_ = name;
    return lastBlock_ = found;
}

// Layer 0 within a block is the layer of the reference.
SceneBuilder::Style SceneBuilder::styleOf(const EntityLooks& looks, const Style& outer, bool inBlock) {
    Style style{looks.layer, looks.colour, looks.lineType};
    if (inBlock && style.layer == "0") style.layer = outer.layer;
    const Layer& on = layer(style.layer);
    if (style.colour == kByLayer) style.colour = on.colour;
    if (style.colour == kByBlock) style.colour = outer.colour;
    if (style.lineType == "BYLAYER" || style.lineType == "ByLayer") style.lineType = on.lineType;
    if (style.lineType == "BYBLOCK" || style.lineType == "ByBlock") style.lineType = outer.lineType;
    return style;
}

bool SceneBuilder::isFull() {
    if (pieces_ < kMostPieces && allPieces_ < kMostPiecesOfAll && scene_.vertices_.size() < kMostVertices)
        return false;
    isShortened_ = true;
    return true;
}

void SceneBuilder::add(const Frame& frame, ObjectId id, const Style& outer, bool inBlock) {
    Groups groups = drawing_.groups(id);
    const EntityLooks looks = looksOf(groups);
    Style style = styleOf(looks, outer, inBlock);
    if ((inBlock && !layer(style.layer).shown) || looks.isInvisible) return;
    std::string_view type = drawing_.type(id);
    if (type == "INSERT") return addReference(frame, id, style);
    if (type == "DIMENSION" || type == "ACAD_TABLE") return addBlock(frame, textOf(groups, 2), style);
    colour_ = looks.trueColour >= 0 ? static_cast<uint32_t>(looks.trueColour) : colourOfIndex(style.colour);
    if (type == "TEXT") return addText(frame, groups, false, false);
    if (type == "ATTRIB") return addText(frame, groups, true, false);
    // A definition shows its tag, and its text where that is the same in every reference.
    if (type == "ATTDEF") return addText(frame, groups, true, !inBlock);
    if (type == "MTEXT") return addParagraph(frame, id);
    if (type == "VIEWPORT" || type == "SEQEND") return;
    pattern_ = scene_.patterns_.number(drawing_, style.lineType, patternScale_ * looks.patternScale);
    shape_.clear();
    ShapeBuilder(drawing_, shape_).entity(frame, id);
    if (shape_.empty() && !inBlock) scene_.unknownTypes_.insert(std::string(type));
    const size_t firstLine = scene_.lines_.size();
    addShape(type == "SOLID" || type == "TRACE");
    // A solid hatch is filled; others show their outline.
    if (type == "HATCH" && integerOf(groups, 70) == 1) fillFrom(firstLine);
}

void SceneBuilder::addReference(const Frame& frame, ObjectId id, const Style& style) {
    Groups groups = drawing_.groups(id);
    if (ObjectId shown = block(textOf(groups, 2)))
        for (const Frame& inner : referenceFrames(drawing_, frame, groups, shown, kMostCells)) {
            if (isFull()) break;
            addContents(inner, shown, style);
        }
    constexpr int64_t kInvisible = 1;
    for (ObjectId part = drawing_.firstPart(id); part; part = drawing_.nextPart(part))
        if (!(integerOf(drawing_.groups(part), 70) & kInvisible)) add(frame, part, style, true);
}

void SceneBuilder::addBlock(const Frame& frame, std::string_view name, const Style& style) {
    if (ObjectId shown = block(name)) addContents(frame, shown, style);
}

void SceneBuilder::addContents(const Frame& frame, ObjectId block, const Style& style) {
    // A block that contains itself ends where it begins again.
    if (blocks_.size() >= kDeepestNesting ||
        std::find(blocks_.begin(), blocks_.end(), block) != blocks_.end()) {
        isShortened_ = true;
        return;
    }
    blocks_.push_back(block);
    constexpr int64_t kConstant = 2;
    for (ObjectId id = drawing_.firstPart(block); id && !isFull(); id = drawing_.nextPart(id)) {
        ++pieces_;
        ++allPieces_;
        if (drawing_.type(id) != "ATTDEF" || integerOf(drawing_.groups(id), 70) & kConstant)
            add(frame, id, style, true);
    }
    blocks_.pop_back();
}

// --- Lines -------------------------------------------------------------------------------------------------

void SceneBuilder::begin(Fill fill) {
    scene_.lines_.push_back({static_cast<uint32_t>(scene_.vertices_.size()), 0, colour_, pattern_, fill});
}

// The pieces of a boundary come straight ones first, then arcs, which may run either way: they are joined to
// rings by their ends.
void SceneBuilder::fillFrom(size_t firstLine) {
    constexpr size_t kMostPiecesOfBoundary = 2000;
    std::vector<SceneLine> pieces(scene_.lines_.begin() + static_cast<std::ptrdiff_t>(firstLine),
                                  scene_.lines_.end());
    if (pieces.empty() || pieces.size() > kMostPiecesOfBoundary) return;
    auto at = [&](const SceneLine& line, bool isEnd) {
        return scene_.vertices_[line.first + (isEnd ? line.count - 1 : 0)];
    };
    const Box box = shape_.box();
    const double near = 1e-6 * std::max(box.width(), box.height());
    auto isNear = [&](PlanePoint a, PlanePoint b) { return std::hypot(a.x - b.x, a.y - b.y) <= near; };
    scene_.lines_.resize(firstLine);
    while (!pieces.empty()) {
        begin(scene_.lines_.size() == firstLine ? Fill::Area : Fill::SameArea);
        auto add = [&](size_t piece, bool isTurned) {
            const SceneLine line = pieces[piece];
            pieces.erase(pieces.begin() + static_cast<std::ptrdiff_t>(piece));
            for (uint32_t i = 0; i < line.count; ++i) {
                const PlanePoint p = scene_.vertices_[line.first + (isTurned ? line.count - 1 - i : i)];
                vertex({p.x, p.y, 0});
            }
        };
        add(0, false);
        for (size_t i = 0; i < pieces.size();) {
            const PlanePoint end = scene_.vertices_.back();
            bool begins = isNear(at(pieces[i], false), end), ends = isNear(at(pieces[i], true), end);
            if (begins || ends) {
                add(i, !begins);
                i = 0;
            } else {
                ++i;
            }
        }
    }
}

void SceneBuilder::vertex(const Point& p) {
    scene_.vertices_.push_back({p.x, p.y});
    ++scene_.lines_.back().count;
}

void SceneBuilder::addShape(bool isSolid) {
    const Point* last = nullptr;
    for (const Segment& s : shape_.segments) {
        // Segments that follow each other are one line.
        bool isJoined = last && last->x == s.from.x && last->y == s.from.y;
        if (!isJoined) {
            begin();
            vertex(s.from);
        }
        vertex(s.to);
        last = &s.to;
    }
    for (const Arc& arc : shape_.arcs) {
        constexpr double kStep = 5 * plane::kDegree;
        constexpr int kMostSteps = 144;
        double wanted = std::abs(arc.sweep) / kStep + 1;
        int steps = wanted < kMostSteps ? std::max(static_cast<int>(wanted), 2) : kMostSteps;
        begin();
        for (int i = 0; i <= steps; ++i) vertex(arc.at(arc.start + arc.sweep * i / steps));
    }
    for (const Point& p : shape_.points) {
        begin();
        vertex(p);
    }
    for (const auto& area : shape_.areas) {
        begin(isSolid ? Fill::Area : Fill::None);
        for (const Point& p : area) vertex(p);
        if (!isSolid && !area.empty()) vertex(area.front());
    }
    for (const Segment& s : shape_.endless) {
        entity_.endless = true;
        begin();
        vertex(s.from);
        vertex(s.to);
    }
}

// --- Texts -------------------------------------------------------------------------------------------------

std::string_view SceneBuilder::keep(std::string text) {
    return scene_.ownTexts_.emplace_back(std::move(text));
}

void SceneBuilder::addText(const Frame& frame, Groups all, bool isAttribute, bool showsTag) {
    enum Horizontal { kLeft, kCentre, kRight, kAligned, kMiddle, kFit };
    const TextGroups groups = textGroupsOf(all);
    const Group* shown = showsTag ? groups.tag : groups.text;
    if (!shown || !groups.at) return;
    SceneText text;
    text.text = shown->text();
    if (hasTextCodes(text.text)) text.text = keep(withoutTextCodes(text.text));
    text.width = static_cast<float>(textWidth(text.text));
    int64_t horizontal = std::clamp<int64_t>(integerOr(groups.horizontal, 0), kLeft, kFit);
    int64_t vertical =
        std::clamp<int64_t>(integerOr(isAttribute ? groups.verticalOfAttribute : groups.vertical, 0), 0, 3);
    double height = realOr(groups.height, 1), factor = realOr(groups.factor, 1);
    double angle = realOr(groups.angle, 0) * plane::kDegree;
    Point at = groups.at->point();
    const Group* second = groups.second;
    if ((horizontal == kAligned || horizontal == kFit) && second) {
        double dx = second->x() - at.x, dy = second->y() - at.y;
        angle = std::atan2(dy, dx);
        if (text.width > 0 && height > 0) factor = std::hypot(dx, dy) / (text.width * height);
    } else if ((horizontal != kLeft || vertical != 0) && second) {
        constexpr float kShiftX[] = {0, 0.5, 1, 0, 0.5, 0};
        constexpr float kShiftY[] = {0, 0, 0.5, 1};
        at = second->point();
        text.shiftX = kShiftX[horizontal];
        text.shiftY = horizontal == kMiddle ? 0.5f : kShiftY[vertical];
    }
    Frame plane = frame;
    if (const Group* normal = groups.normal) plane = frame * extrusionFrame(normal->point());
    const size_t before = scene_.texts_.size();
    place(plane, at, height, angle, text);
    if (before == scene_.texts_.size()) return;
    SceneText& placed = scene_.texts_.back();
    placed.alongX *= static_cast<float>(factor);
    placed.alongY *= static_cast<float>(factor);
    addTextBox(placed, shown->text().size());
}

// Lines of a paragraph stand below each other.
void SceneBuilder::addParagraph(const Frame& frame, ObjectId id) {
    constexpr double kLineSpacing = 5.0 / 3;
    Groups groups = drawing_.groups(id);
    size_t before = scene_.texts_.size();
    std::string whole;
    for (const Group& group : groups)
        if (group.code == 3 || group.code == 1) whole += group.text();
    double height = realOf(groups, 40, 1);
    std::vector<std::string> lines = paragraphLines(whole, height > 0 ? realOf(groups, 41) / height : 0);
    double angle = realOf(groups, 50) * plane::kDegree;
    if (const Group* axis = find(groups, 11)) angle = std::atan2(axis->y(), axis->x());
    int64_t attachment = std::clamp<int64_t>(integerOf(groups, 71, 1), 1, 9) - 1;
    double spacing = height * kLineSpacing * realOf(groups, 44, 1);
    double total = height + spacing * (static_cast<double>(lines.size()) - 1);
    double down = height - total * static_cast<double>(attachment / 3) / 2;
    Frame plane = planeOf(frame, groups);
    for (std::string& line : lines) {
        SceneText text;
        text.text = keep(std::move(line));
        text.width = static_cast<float>(textWidth(text.text));
        text.shiftX = static_cast<float>(attachment % 3) / 2;
        place(plane, pointOf(groups, 10) + Point{std::sin(angle) * down, -std::cos(angle) * down, 0}, height,
              angle, text);
        down += spacing;
    }
    for (; before < scene_.texts_.size(); ++before) addTextBox(scene_.texts_[before], 0);
    shape_.clear();
    ShapeBuilder(drawing_, shape_).entity(frame, id);
    for (const auto& area : shape_.areas)
        for (const Point& p : area) entity_.box.add(p.x, p.y);
}

void SceneBuilder::place(const Frame& plane, Point at, double height, double angle, SceneText& text) {
    if (text.text.empty() || !(height > 0) || isFull()) return;
    const double c = angle == 0 ? 1 : std::cos(angle), s = angle == 0 ? 0 : std::sin(angle);
    Point along = plane.direction({c, s, 0}) * height;
    Point up = plane.direction({-s, c, 0}) * height;
    Point placed = plane(at);
    text.at = {placed.x, placed.y};
    text.alongX = static_cast<float>(along.x);
    text.alongY = static_cast<float>(along.y);
    text.upX = static_cast<float>(up.x);
    text.upY = static_cast<float>(up.y);
    text.colour = colour_;
    scene_.texts_.push_back(text);
}

// The box of a text holds what is drawn, and what selecting by place takes for it.
void SceneBuilder::addTextBox(const SceneText& drawn, size_t characters) {
    constexpr double kCharacterWidth = 0.9;
    SceneText text = drawn;
    text.width = std::max(text.width, static_cast<float>(kCharacterWidth * static_cast<double>(characters)));
    for (double x : {0.0, 1.0})
        for (double y : {0.0, 1.0}) {
            PlanePoint p = text.corner(x, y);
            entity_.box.add(std::isnan(p.x) ? INFINITY : p.x, std::isnan(p.y) ? INFINITY : p.y);
        }
}

}  // namespace hostcad
