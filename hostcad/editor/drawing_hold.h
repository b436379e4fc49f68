// The hold of a program on the file of a drawing, so that two programs do not write over each other's work.
// It is a locked file beside the drawing, because saving puts a new file in the drawing's place.
#pragma once

#include <optional>
#include <string>

#include "hostcad/editor/file_lock.h"

namespace hostcad {

class DrawingHold {
  public:
    // Takes hold of a file, and lets go of the one before. False when another program has it: holder() then
    // says which. Where no file can be made beside the drawing, nobody can save it there either, and it
    // counts as held.
    bool take(const std::string& drawing);
    void release();
    // Of the drawing that is held; "" when there is none.
    const std::string& path() const { return path_; }
    // Who has the file that take() could not have: "anna on office-3 (process 4711)".
    const std::string& holder() const { return holder_; }

  private:
    std::optional<FileLock> lock_;
    std::string path_;
    std::string holder_;
};

}  // namespace hostcad
