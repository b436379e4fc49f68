// Copies of drawings with changes that are not saved, kept in a folder of the user so that a crash costs
// minutes and not the day. A program has one copy at most; it is gone when the drawing is saved or given up,
// and what is left behind belongs to a program that has crashed.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "hostcad/drawing/drawing.h"
#include "hostcad/editor/file_lock.h"

namespace hostcad {

class KeptCopies {
  public:
    // The folder is made when it is needed. "": nothing is kept.
    void setFolder(std::string folder) { folder_ = std::move(folder); }

    // Writes the copy, in place of the one before. "" when done, else why not.
    std::string keep(const Drawing& drawing);
    // Removes the copy.
    void forget();

    struct LeftBehind {
        std::string copy;
        std::string drawing;  // the path that it had; "" when it had none
        std::string time;     // when the copy was made: "2026-11-25 18:05"
    };
    // The copies of programs that do not run any more, the newest first.
    std::vector<LeftBehind> leftBehind() const;
    // Makes a copy this program's own, in place of the one that it had.
    void adopt(const LeftBehind& copy);
    static void remove(const LeftBehind& copy);

    KeptCopies() = default;
    ~KeptCopies() { forget(); }
    KeptCopies(const KeptCopies&) = delete;
    KeptCopies& operator=(const KeptCopies&) = delete;

  private:
    std::string folder_;
    std::string copy_;
    std::optional<FileLock> lock_;  // holds the path of the drawing
};

// When a file was last written, as people read it; "" when there is no such file.
std::string timeOfFile(const std::string& path);

}  // namespace hostcad
