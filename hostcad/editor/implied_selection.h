// What is selected before a command begins: by the user in the window, or by a program.
#pragma once

#include <optional>
#include <vector>

#include "hostcad/drawing/drawing.h"
#include "hostcad/editor/prompt.h"

namespace hostcad {

// The first prompt of whatever is run next may take the selection as its answer. It does not get empty by
// that.
class ImpliedSelection {
  public:
    // Those that are not erased, in the order of selecting; none of another drawing than the current.
    std::vector<ObjectId> members() const;
    bool isEmpty() const { return members().empty(); }
    // By the user, or by a program: then a command that a program runs takes it too.
    void set(std::vector<ObjectId> members, bool isByProgram);
    void clear() { set({}, false); }

    // The next prompt may take it from now on, or no longer. Whoever has made it, it now counts as the
    // user's: a program that begins has not made it for its commands.
    void offer() {
        isOffered_ = true;
        isByProgram_ = false;
    }
    void withdraw() { isOffered_ = false; }
    // What answers a prompt that is asked now, in turn: for one that takes objects all of them and Enter, for
    // one that takes an entity the only one. Nothing for any other prompt. The offer is used up.
    std::vector<Input> take(const Prompt& prompt);
    // The same for the first prompt of a command that a program runs.
    std::vector<Input> takeForProgram(const Prompt& prompt);

  private:
    std::vector<ObjectId> members_;
    long drawing_ = 0;  // its serial
    bool isByProgram_ = false;
    bool isOffered_ = false;
};

}  // namespace hostcad
