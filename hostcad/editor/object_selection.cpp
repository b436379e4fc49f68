#include "hostcad/editor/object_selection.h"

#include <algorithm>

#include "hostcad/drawing/host_names.h"
#include "hostcad/editor/host.h"
#include "platform/ads/entities.h"
#include "platform/ads/result_chain.h"
#include "platform/text/text.h"

namespace hostcad {

namespace {

constexpr const char* kOptions = "ALL Last Previous Window Crossing Fence WPolygon,WP CPolygon,CP Remove Add";

// The members of a set that a call of the host's interface gives; none when the call failed.
std::vector<ObjectId> membersOf(const char* mode, const void* first, const void* second) {
    ads_name name;
    if (acedSSGet(mode, first, second, nullptr, name) != RTNORM) return {};
    std::vector<ObjectId> members = selectionOf(name)->members();
    acedSSFree(name);
    return members;
}

// What a pick at a point covers.
std::vector<ObjectId> entitiesAt(Host& host, const Point& at) {
    double pixel = host.viewBox().height / std::max(1, host.view().pixelHeight());
    double reach = static_cast<double>(host.variables().integer("PICKBOX")) * pixel;
    ads_point low{at.x - reach, at.y - reach, 0}, high{at.x + reach, at.y + reach, 0};
    return membersOf("C", low, high);
}

}  // namespace

ObjectId entityAt(Host& host, const Point& point) {
    std::vector<ObjectId> found = entitiesAt(host, point);
    return found.empty() ? kNoObject : *std::max_element(found.begin(), found.end());
}

ObjectSelection::ObjectSelection(Host& host) : host_(host) {
    askObjects();
}

void ObjectSelection::askObjects() {
    prompt_ = Prompt{Prompt::Kind::Objects,
                     isRemoving_ ? "\nRemove objects: " : "\nSelect objects: ",
                     0,
                     Keywords(kOptions),
                     {}};
    step_ = &ObjectSelection::takeObjects;
}

void ObjectSelection::ask(const std::string& text, Step step) {
    prompt_ = Prompt{Prompt::Kind::Point, text, 0, {}, {}};
    step_ = step;
}

void ObjectSelection::askOppositeCorner(Step step) {
    prompt_ = Prompt{Prompt::Kind::Point, "\nSpecify opposite corner: ", 0, {}, corner_, true};
    step_ = step;
}

bool ObjectSelection::take(const Answer& answer) {
    if (answer.kind == Answer::Kind::Cancelled || answer.kind == Answer::Kind::NoInput) {
        isCancelled_ = isOver_ = true;
    } else {
        (this->*step_)(answer);
    }
    if (isOver_)
        for (ObjectId id : set_.members()) mark(id, false);
    return isOver_;
}

void ObjectSelection::takeObjects(const Answer& answer) {
    if (answer.kind == Answer::Kind::None) {
        isOver_ = true;
        return;
    }
    if (answer.kind == Answer::Kind::Keyword) {
        takeOption(answer.text);
        return;
    }
    if (ads_name_nil(answer.name.data())) {
        takePoint(answer.point);
    } else if (!answer.isSet) {
        ObjectId id = idOf(answer.name.data());
        join(currentDrawing().exists(id) ? std::vector<ObjectId>{id} : std::vector<ObjectId>{});
    } else {
        const SelectionSet* given = selectionOf(answer.name.data());
        join(given ? given->members() : std::vector<ObjectId>{});
    }
}

void ObjectSelection::takeOption(const std::string& option) {
    if (option == "ALL") {
        select("X");
    } else if (option == "Last") {
        select("L");
    } else if (option == "Previous") {
        select("P");
    } else if (option == "Remove" || option == "Add") {
        isRemoving_ = option == "Remove";
        askObjects();
    } else if (option == "Window" || option == "Crossing") {
        mode_ = option == "Window" ? "W" : "C";
        ask("\nSpecify first corner: ", &ObjectSelection::takeFirstCorner);
    } else {
        mode_ = option == "Fence" ? "F" : option == "WPolygon" ? "WP" : "CP";
        vertices_.clear();
        ask("\nSpecify first point: ", &ObjectSelection::takeVertex);
    }
}

// A point on something selects it; a point beside everything is the first corner of a box.
void ObjectSelection::takePoint(const Point& at) {
    ObjectId id = entityAt(host_, at);
    if (id) {
        join({id});
        return;
    }
    corner_ = at;
    askOppositeCorner(&ObjectSelection::takeImpliedCorner);
}

void ObjectSelection::takeFirstCorner(const Answer& answer) {
    if (!answer.isValue()) {
        askObjects();
        return;
    }
    corner_ = answer.point;
    askOppositeCorner(&ObjectSelection::takeSecondCorner);
}

void ObjectSelection::takeSecondCorner(const Answer& answer) {
    if (!answer.isValue()) return askObjects();
    ads_point first, second;
    setPoint(corner_, first);
    setPoint(answer.point, second);
    select(mode_, first, second);
}

// Drawn to the right it takes what is inside, to the left also what it crosses.
void ObjectSelection::takeImpliedCorner(const Answer& answer) {
    mode_ = answer.point.x >= corner_.x ? "W" : "C";
    takeSecondCorner(answer);
}

void ObjectSelection::takeVertex(const Answer& answer) {
    if (answer.isValue()) {
        vertices_.push_back(answer.point);
        ask("\nSpecify next point: ", &ObjectSelection::takeVertex);
        return;
    }
    ResultChain points;
    for (const Point& vertex : vertices_) setPoint(vertex, points.add(RT3DPOINT).resval.rpoint);
    select(mode_, points.get());
}

void ObjectSelection::select(const char* mode, const void* first, const void* second) {
    join(membersOf(mode, first, second));
}

void ObjectSelection::join(const std::vector<ObjectId>& entities) {
    int count = 0;
    for (ObjectId id : entities) {
        bool isChanged = isRemoving_ ? set_.remove(id) : set_.add(id);
        if (!isChanged) continue;
        ++count;
        mark(id, !isRemoving_);
    }
    askObjects();
    if (host_.commands().isQuiet()) return;
    std::string found = text::format("\n%zu found", entities.size());
    if (isRemoving_) found += text::format(", %d removed", count);
    if (set_.size() != entities.size() || isRemoving_) found += text::format(", %zu total", set_.size());
    host_.write(found);
}

void ObjectSelection::mark(ObjectId id, bool on) {
    EntityName name{};
    nameOf(id, name.data());
    host_.view().highlight(name, on);
}

int selectObjects(Host& host, SelectionSet& set) {
    ObjectSelection selection(host);
    while (true) {
        Answer answer = host.ask(selection.prompt());
        if (!selection.take(answer)) continue;
        if (answer.kind == Answer::Kind::NoInput) {
            host.write("\nNothing answers the prompt \"" + std::string(text::trim(selection.prompt().text)) +
                       "\".\n");
            return RTERROR;
        }
        if (selection.isCancelled()) return RTCAN;
        for (ObjectId id : selection.set().members()) set.add(id);
        return RTNORM;
    }
}

}  // namespace hostcad
