// Undo of whole commands: each change notes what an object was before.
#include <utility>

#include "hostcad/drawing/drawing.h"

namespace hostcad {

void Drawing::remember(ObjectId id) {
    if (beforeChange_) beforeChange_(id);
    const Object& object = objects_[id];
    step_.push_back({id, object.groups, object.count, object.erased});
    redo_.clear();
    modified_ = true;
    ++changes_;
}

void Drawing::endStep() {
    ++undoStep_;
    if (!step_.empty()) undo_.push_back(std::exchange(step_, {}));
}

void Drawing::beginUndoGroup() {
    if (groupDepth_++ == 0) endStep();
}

void Drawing::endUndoGroup() {
    if (groupDepth_ > 0 && --groupDepth_ == 0) endStep();
}

// Takes a step from one list, puts its objects into the state that it noted, and notes their present state in
// the other list.
bool Drawing::exchange(std::vector<Step>& from, std::vector<Step>& to) {
    if (groupDepth_ > 0) return false;
    if (!step_.empty()) undo_.push_back(std::exchange(step_, {}));
    if (from.empty()) return false;
    Step step = std::move(from.back());
    from.pop_back();
    Step back;
    for (auto state = step.rbegin(); state != step.rend(); ++state) {
        if (beforeChange_) beforeChange_(state->id);
        Object& object = objects_[state->id];
        back.push_back({state->id, object.groups, object.count, object.erased});
        bool wasErased = object.erased;
        object.groups = state->groups;
        object.count = state->count;
        object.erased = state->erased;
        forgetSymbols(state->id);
        announce(state->id, wasErased == object.erased ? Change::Modified
                            : object.erased            ? Change::Erased
                                                       : Change::Added);
    }
    to.push_back(std::move(back));
    modified_ = true;
    ++changes_;
    return true;
}

bool Drawing::undo() {
    return exchange(undo_, redo_);
}

bool Drawing::redo() {
    return exchange(redo_, undo_);
}

void Drawing::clearUndo() {
    undo_.clear();
    redo_.clear();
    step_.clear();
}

}  // namespace hostcad
