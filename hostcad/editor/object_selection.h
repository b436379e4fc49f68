// Letting the user select entities: "Select objects:" with its options, until Enter.
#pragma once

#include <functional>
#include <vector>

#include "hostcad/drawing/selection_set.h"
#include "hostcad/editor/prompt.h"

namespace hostcad {

class Host;

class ObjectSelection {
  public:
    explicit ObjectSelection(Host& host);

    // What is to be asked next.
    const Prompt& prompt() const { return prompt_; }
    // True when the selection is over: by Enter, or because it was cancelled.
    bool take(const Answer& answer);
    bool isCancelled() const { return isCancelled_; }
    const SelectionSet& set() const { return set_; }

  private:
    using Step = void (ObjectSelection::*)(const Answer&);
    void askObjects();
    void ask(const std::string& text, Step step);
    void takeObjects(const Answer& answer);
    void askOppositeCorner(Step step);
    void takeOption(const std::string& option);
    void takePoint(const Point& at);
    void takeFirstCorner(const Answer& answer);
    void takeSecondCorner(const Answer& answer);
    void takeImpliedCorner(const Answer& answer);
    void takeVertex(const Answer& answer);
    void select(const char* mode, const void* first = nullptr, const void* second = nullptr);
    void join(const std::vector<ObjectId>& entities);
    // Shows in the picture that an entity is selected, or no longer.
    void mark(ObjectId id, bool on);

    Host& host_;
    Prompt prompt_;
    Step step_;
    SelectionSet set_;
    bool isRemoving_ = false;
    bool isCancelled_ = false;
    bool isOver_ = false;
    const char* mode_ = "";
    Point corner_{};
    std::vector<Point> vertices_;
};

// Runs a selection with the user: RTNORM, RTCAN, or RTERROR when nobody answers.
int selectObjects(Host& host, SelectionSet& set);
// The entity drawn last among those at a point, or 0.
ObjectId entityAt(Host& host, const Point& point);

}  // namespace hostcad
