// Entities that lose their link to a record of a database: because they are erased, because a program takes
// the link off, or because either of its making is undone. The record stays, which nobody sees in the
// drawing.
//
// What a link is, Lisp says: link-application$ is the application whose extended data is one. A program that
// takes links off and tells by itself what becomes of the records sets link-loss-told$, which serves once.
#pragma once

#include <set>
#include <string>

#include "hostcad/drawing/drawing.h"
#include "hostcad/lisp/interpreter.h"

namespace hostcad {

class LostLinks {
  public:
    explicit LostLinks(lisp::Interpreter& lisp) : lisp_(lisp) {}

    // Watches the current drawing from now on.
    void watch();
    // A line about what was lost since the last call; "" when nothing was.
    std::string takeLine();

  private:
    std::string application() const;
    bool isToldAlready();
    bool isLinked(const Drawing& drawing, ObjectId id, const std::string& application) const;

    lisp::Interpreter& lisp_;
    std::set<ObjectId> changed_;  // entities that had a link before their first change
};

}  // namespace hostcad
