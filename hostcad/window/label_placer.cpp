#include "hostcad/window/label_placer.h"

#include <algorithm>
#include <cmath>

#include "hostcad/drawing/host_names.h"
#include "hostcad/drawing/overlay_sets.h"

namespace hostcad {
namespace {

using overlay::Placement;

// In pixels of the desktop.
constexpr double kSmallestCapital = 5;  // smaller ones cannot be read
constexpr double kLargestCapital = 3000;
constexpr double kGap = 3;  // between an entity and its label

bool isReadable(double capital) {
    return capital >= kSmallestCapital && capital <= kLargestCapital;
}

LabelBox boxOf(const PlacedLabel& label, double scale) {
    return {label.at.x * scale, -label.at.y * scale,   label.width / 2,
            label.height / 2,   std::cos(label.angle), std::sin(label.angle)};
}

QRectF seenBy(const ViewPlace& place, QSizeF size) {
    const QPointF centre(place.centre.x * place.scale, -place.centre.y * place.scale);
    return {centre - QPointF(size.width(), size.height()) / 2, size};
}

bool holds(const Box& box, double x, double y) {
    return x >= box.minX && x <= box.maxX && y >= box.minY && y <= box.maxY;
}

Box worldOf(const QRectF& area, double scale) {
    Box box;
    box.add(area.left() / scale, -area.top() / scale);
    box.add(area.right() / scale, -area.bottom() / scale);
    return box;
}

}  // namespace

// --- What there is -----------------------------------------------------------------------------------------

bool LabelPlacer::update() {
    const OverlaySets& sets = overlaySets();
    const bool isNew = sets.revision() != setsRevision_;
    if (!isNew && scene_.revision() == sceneRevision_) return false;
    if (isNew) list();
    for (Item& item : items_) item.place = scene_.place(item.entity);
    auto isBefore = [](const Item& a, const Item& b) { return a.place < b.place; };
    if (!std::is_sorted(items_.begin(), items_.end(), isBefore))
        std::stable_sort(items_.begin(), items_.end(), isBefore);
    setsRevision_ = sets.revision();
    sceneRevision_ = scene_.revision();
    return true;
}

void LabelPlacer::list() {
    items_.clear();
    for (const auto& [name, set] : overlaySets().labels())
        for (const overlay::Label& label : set.labels) {
            const ObjectId entity = idOf(label.entity.data());
            const LabelSize size = entity ? labelSize(label.text) : LabelSize();
            if (size.lines > 0) items_.push_back({0, entity, &label, &set.style, size});
        }
    if (items_.empty()) known_.clear(), knownAt_.clear();
}

const LabelSpots& LabelPlacer::spotsOf(const Item& item) {
    const SceneEntity& entity = scene_.entities()[item.place];
    if (knownAt_.size() <= item.place) knownAt_.resize(scene_.entities().size());
    uint32_t& at = knownAt_[item.place];
    if (at == 0) {
        known_.emplace_back();
        at = static_cast<uint32_t>(known_.size());
    }
    KnownSpots& known = known_[at - 1];
    const Placement wish = item.style->placement;
    if (known.entity != entity.id || known.revision != entity.revision || known.wish != wish)
        known = {entity.id, entity.revision, wish, labelSpots(currentDrawing(), entity.id, wish)};
    return known.spots;
}

// --- Placing -----------------------------------------------------------------------------------------------

const std::vector<PlacedLabel>& LabelPlacer::place(const ViewPlace& place, QSizeF size, double margin,
                                                   const QRectF& covered) {
    const QRectF seen = seenBy(place, size);
    const bool hasChanged = update() || place.scale != scale_;
    if (!hasChanged && area_.contains(seen)) return placed_;
    scale_ = place.scale;
    area_ = seen.adjusted(-margin, -margin, margin, margin);
    seen_ = worldOf(seen, scale_);
    cells_.reset(area_);
    leftOut_.clear();
    for (Item& item : items_) item.isPlaced = false;
    if (hasChanged) placed_.clear(), placedItems_.clear();
    keepPlaced();
    if (!covered.isEmpty()) {
        const QPointF middle = seen.topLeft() + covered.center();
        cells_.take({middle.x(), middle.y(), covered.width() / 2, covered.height() / 2});
    }
    placeNew();
    return placed_;
}

// Those that are still within the area stay where they are, but for what has its label in what was seen of
// it.
void LabelPlacer::keepPlaced() {
    size_t kept = 0;
    for (size_t i = 0; i < placed_.size(); ++i) {
        const PlacedLabel& label = placed_[i];
        Item& item = items_[placedItems_[i]];
        if (isLargerThanSeen(item) && !holds(seen_, label.at.x, label.at.y)) continue;
        if (!cells_.take(boxOf(label, scale_))) continue;
        item.isPlaced = true;
        placed_[kept] = label;
        placedItems_[kept++] = placedItems_[i];
    }
    placed_.resize(kept);
    placedItems_.resize(kept);
}

void LabelPlacer::placeNew() {
    found_.clear();
    if (items_.empty()) return;
    const Box area = worldOf(area_, scale_);
    auto item = items_.begin();
    scene_.visit(area, [&](size_t place) {
        auto isBefore = [](const Item& a, size_t b) { return a.place < b; };
        if (item != items_.end() && item->place < place)
            item = std::lower_bound(item, items_.end(), place, isBefore);
        for (; item != items_.end() && item->place == place; ++item)
            if (!item->isPlaced && isReadable(capitalOf(*item->style))) found_.push_back(&*item);
    });
    // An entity that is brought back may stand behind others in the picture.
    auto isBefore = [](const Item* a, const Item* b) { return a->entity < b->entity; };
    if (!std::is_sorted(found_.begin(), found_.end(), isBefore))
        std::stable_sort(found_.begin(), found_.end(), isBefore);
    for (Item* one : found_) put(*one);
}

void LabelPlacer::put(Item& item) {
    const LabelSpots& whole = spotsOf(item);
    if (!whole.hasPlace) return;
    const bool isPart = isLabelledBeyond(item, whole);
    const LabelSpots part =
        isPart ? labelSpots(currentDrawing(), item.entity, item.style->placement, seen_) : LabelSpots();
    const std::span<const Candidate> candidates = candidatesFor(item, isPart ? part : whole);
    if (candidates.empty()) return;
    for (const auto& [box, alignment] : candidates) {
        if (!cells_.takeFree(box)) continue;
        item.isPlaced = true;
        placedItems_.push_back(static_cast<size_t>(&item - items_.data()));
        placed_.push_back({item.entity,
                           item.label,
                           item.style,
                           {box.x / scale_, -box.y / scale_},
                           static_cast<float>(std::atan2(box.alongY, box.alongX)),
                           static_cast<float>(2 * box.halfWidth),
                           static_cast<float>(2 * box.halfHeight),
                           static_cast<float>(capitalOf(*item.style)),
                           alignment});
        return;
    }
    leftOut_.push_back({candidates[0].box.x / scale_, -candidates[0].box.y / scale_});
}

bool LabelPlacer::isLargerThanSeen(const Item& item) const {
    const Box& box = scene_.entities()[item.place].box;
    return box.width() > seen_.width() || box.height() > seen_.height();
}

bool LabelPlacer::isLabelledBeyond(const Item& item, const LabelSpots& spots) const {
    if (spots.count == 0 || !isLargerThanSeen(item)) return false;
    return std::none_of(spots.spots.begin(), spots.spots.begin() + spots.count,
                        [&](const LabelSpot& spot) { return holds(seen_, spot.x, spot.y); });
}

std::span<const LabelPlacer::Candidate> LabelPlacer::candidatesFor(const Item& item,
                                                                   const LabelSpots& spots) {
    const double capital = capitalOf(*item.style);
    const double halfWidth = capital * (item.size.width / 2 + LabelSize::kRoom);
    const double halfHeight = capital * (item.size.height() / 2 + LabelSize::kRoom);
    candidates_.clear();
    switch (spots.placement) {
        case Placement::Inside:
            for (size_t i = 0; i < spots.count; ++i)
                candidates_.push_back(
                    {{spots.spots[i].x * scale_, -spots.spots[i].y * scale_, halfWidth, halfHeight}});
            break;
        case Placement::Along:
            addAlong(spots, halfWidth, halfHeight);
            break;
        default:
            addBeside(scene_.entities()[item.place].box, halfWidth, halfHeight);
    }
    return candidates_;
}

// To the right and left, above and below, and at the corners.
void LabelPlacer::addBeside(const Box& box, double halfWidth, double halfHeight) {
    using enum LabelAlignment;
    const double x = (box.minX + box.maxX) / 2 * scale_, y = -(box.minY + box.maxY) / 2 * scale_;
    const double across = box.width() / 2 * scale_ + kGap + halfWidth;
    const double upright = box.height() / 2 * scale_ + kGap + halfHeight;
    struct Side {
        int x, y;
        LabelAlignment alignment;
    };
    constexpr Side kSides[] = {{1, 0, Left},  {-1, 0, Right}, {0, -1, Centre}, {0, 1, Centre},
                               {1, -1, Left}, {1, 1, Left},   {-1, -1, Right}, {-1, 1, Right}};
    for (const Side& side : kSides)
        candidates_.push_back(
            {{x + side.x * across, y + side.y * upright, halfWidth, halfHeight}, side.alignment});
}

// Above and below the line.
void LabelPlacer::addAlong(const LabelSpots& spots, double halfWidth, double halfHeight) {
    for (size_t i = 0; i < spots.count; ++i) {
        const LabelSpot& spot = spots.spots[i];
        const double away = halfHeight + kGap;
        const double dx = -spot.alongY * away, dy = -spot.alongX * away;
        for (int side : {1, -1})
            candidates_.push_back({{spot.x * scale_ + side * dx, -spot.y * scale_ + side * dy, halfWidth,
                                    halfHeight, spot.alongX, spot.alongY}});
    }
}

overlay::LabelCounts LabelPlacer::counts(const ViewPlace& place, QSizeF size) const {
    overlay::LabelCounts counts;
    const QRectF seen = seenBy(place, size);
    for (const PlacedLabel& label : placed_) {
        const LabelBox box = boxOf(label, scale_);
        counts.placed += seen.intersects(box.bounds());
    }
    for (const PlanePoint& at : leftOut_) counts.leftOut += seen.contains(at.x * scale_, -at.y * scale_);
    const Box area = worldOf(seen, scale_);
    for (const Item& item : items_) {
        if (item.place == Scene::kNowhere || capitalOf(*item.style) >= kSmallestCapital) continue;
        const SceneEntity& entity = scene_.entities()[item.place];
        counts.tooSmall += entity.visible && meet(entity.box, area);
    }
    return counts;
}

}  // namespace hostcad
