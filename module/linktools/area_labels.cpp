#include "module/linktools/area_labels.h"

#include <algorithm>
#include <array>
#include <optional>

#include "module/cad/call.h"
#include "module/cad/group_list.h"
#include "module/cad/polyline_vertices.h"
#include "module/geometry/point_in_polygon.h"
#include "module/linktools/area_shape.h"
#include "platform/ads/editor.h"
#include "platform/ads/result_chain.h"
#include "platform/plane/box_tree.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

using plane::Box;
using plane::Point;
using Outcome = LabelledAreas::Outcome;

constexpr double kOnEdge = 1e-6;

struct Label {
    std::string text;  // in capitals
    Point place;
    bool isFound = false;
};

// An area of the drawing.
struct Area {
    EntityName entity;
    std::string handle;
    AreaShape shape;
};

bool isPolyline(const resbuf* groups) {
    const std::string type = GroupText(groups, 0);
    return type == "POLYLINE" || type == "LWPOLYLINE";
}

Area readArea(const EntityName& entity, const resbuf* groups) {
    return {entity, GroupText(groups, 5), ReadAreaShape(entity.name, groups)};
}

Box boxOf(Point place) {
    Box box;
    box.add(place.x - kOnEdge, place.y - kOnEdge), box.add(place.x + kOnEdge, place.y + kOnEdge);
    return box;
}

// The selected polylines, each of which may be the area that the tracer has found.
class Originals {
  public:
    void add(Area area) {
        if (area.shape.empty()) return;
        byExtents_[extentsOf(area.shape)].push_back(areas_.size());
        areas_.push_back(std::move(area));
    }
    // The handle of the one that is this area and holds the point, which is not offered again.
    std::optional<std::string> take(const AreaShape& shape, Point inside) {
        const auto found = byExtents_.find(extentsOf(shape));
        if (found == byExtents_.end()) return {};
        std::vector<size_t>& candidates = found->second;
        for (size_t i = 0; i < candidates.size(); ++i) {
            const Area& area = areas_[candidates[i]];
            if (!area.shape.isLike(shape) || !PointInPolygon(inside, area.shape.vertices)) continue;
            candidates.erase(candidates.begin() + static_cast<std::ptrdiff_t>(i));
            return area.handle;
        }
        return {};
    }

  private:
    using Extents = std::array<double, 4>;
    static Extents extentsOf(const AreaShape& shape) {
        return {shape.box.minX, shape.box.minY, shape.box.maxX, shape.box.maxY};
    }
    std::vector<Area> areas_;
    std::map<Extents, std::vector<size_t>> byExtents_;
};

class AreaLabelling {
  public:
    AreaLabelling(const SelectionSet& selection, AreaEntities entities)
        : selection_(selection), entities_(entities) {}

    LabelledAreas run() {
        acutPrintf("\nBuilding list of entities...");
        readSelection();
        if (!trace()) return std::move(result_);
        acutPrintf("\rChecking for text duplicates...");
        readNewAreas();
        if (result_.outcome == Outcome::kDone) matchAll();
        if (result_.outcome == Outcome::kLabelError)
            acedAlert("Error: multiple text labels found within same area");
        removeWhatIsNotWanted();
        for (const Label& label : labels_)
            if (!label.isFound) result_.labelsElsewhere.push_back(label.text);
        return std::move(result_);
    }

  private:
    void readSelection() {
        EntityName entity;
        for (long i = 0; selection_.at(i, entity.name); ++i) {
            const ResultBuffers groups(acdbEntGet(entity.name));
            if (isPolyline(groups.get()))
                originals_.add(readArea(entity, groups.get()));
            else if (GroupText(groups.get(), 0) == "TEXT")
                addLabel(groups.get());
        }
    }

    void addLabel(const resbuf* groups) {
        Label label{text::upper(GroupText(groups, 1)), ReadInsertionPoint(groups)};
        label.place.z = 0;
        seeds_.push_back(label.place);
        if (!text::trim(label.text).empty()) labels_.push_back(std::move(label));
    }

    bool trace() {
        acdbEntLast(last_.name);
        ResultChain call;
        call.addText(RTSTR, "cf:scbpoly");
        call.addInteger(RTSHORT, 1);
        ads_name_set(selection_.name(), call.add(RTPICKS).resval.rlname);
        for (const Point& seed : seeds_) {
            ads_point& place = call.add(RT3DPOINT).resval.rpoint;
            place[0] = seed.x, place[1] = seed.y, place[2] = 0;
        }
        ResultBuffers answer;
        if (acedInvoke(call.get(), answer.out()) != RTNORM) {
            acutPrintf("\nThe areas cannot be traced: the function cf:scbpoly is not there.");
            result_.outcome = Outcome::kNoTracer;
        } else if (!answer || answer.get()->restype == RTNIL) {
            result_.outcome = Outcome::kCancelled;
        }
        return result_.outcome == Outcome::kDone;
    }

    void readNewAreas() {
        EntityName entity = last_;
        while (acdbEntNext(entity.name, entity.name) == RTNORM) {
            const ResultBuffers groups(acdbEntGet(entity.name));
            if (!isPolyline(groups.get())) continue;
            created_.push_back(entity);
            if (Area area = readArea(entity, groups.get()); !area.shape.empty())
                areas_.push_back(std::move(area));
        }
        // What lies within another area takes its labels first.
        std::stable_sort(areas_.begin(), areas_.end(),
                         [](const Area& a, const Area& b) { return a.shape.area < b.shape.area; });
    }

    void matchAll() {
        std::vector<Box> places;
        for (const Label& label : labels_) places.push_back(boxOf(label.place));
        const plane::BoxTree tree(places);
        acedSetStatusBarProgressMeter("Checking text entities...", 0, static_cast<int>(areas_.size()));
        for (size_t i = 0; i < areas_.size(); ++i) {
            if (acedUsrBrk()) {
                result_.outcome = Outcome::kCancelled;
                break;
            }
            match(areas_[i], tree);
            acedSetStatusBarProgressMeterPos(static_cast<int>(i + 1));
        }
        acedRestoreStatusBar();
    }

    void match(const Area& area, const plane::BoxTree& tree) {
        std::vector<uint32_t> near;
        tree.each(area.shape.box, [&](uint32_t label) { near.push_back(label); });
        std::sort(near.begin(), near.end());
        Label* own = nullptr;
        for (uint32_t index : near) {
            Label& label = labels_[index];
            if (label.isFound || !PointInPolygon(label.place, area.shape.vertices)) continue;
            if (!own) own = &label;
            // A label that is one too many is left for the areas around this one.
            if (own->text == label.text)
                label.isFound = true;
            else
                tellSeveral(*own, label);
        }
        if (result_.outcome == Outcome::kLabelError) return;
        if (own)
            enter(area, *own);
        else
            result_.unlabelled.push_back(area.handle);
    }

    void tellSeveral(const Label& own, const Label& other) {
        if (result_.outcome == Outcome::kDone) acutPrintf("\n");
        result_.outcome = Outcome::kLabelError;
        acutPrintf("\nError: multiple text labels %s and %s found within area at %.2f,%.2f", own.text.c_str(),
                   other.text.c_str(), other.place.x, other.place.y);
    }

    void enter(const Area& area, const Label& label) {
        std::string handle = area.handle;
        if (entities_ == AreaEntities::kOriginal) {
            if (std::optional<std::string> original = originals_.take(area.shape, label.place)) {
                handle = std::move(*original);
                replaced_.push_back(area.entity);
            }
        }
        result_.keys[label.text].push_back(std::move(handle));
    }

    void removeWhatIsNotWanted() {
        const bool isDone = result_.outcome == Outcome::kDone;
        for (const EntityName& entity : isDone ? replaced_ : created_) acdbEntDel(entity.name);
    }

    const SelectionSet& selection_;
    const AreaEntities entities_;
    EntityName last_;  // of the drawing, before the tracer
    std::vector<Label> labels_;
    std::vector<Point> seeds_;
    Originals originals_;
    std::vector<EntityName> created_, replaced_;
    std::vector<Area> areas_;
    LabelledAreas result_;
};

}  // namespace

LabelledAreas FindLabelledAreas(const SelectionSet& selection, AreaEntities entities) {
    return AreaLabelling(selection, entities).run();
}

}  // namespace norvane
