// A coordinate file for the length of a block.
#pragma once

#include <string>

#include "module/coords/coordinate_format.h"
#include "module/points/point_store.h"

namespace norvane {

// Its points say of themselves whether they have an elevation: those of flat files do in the working form of
// another kind of file.
class OpenPoints {
  public:
    // create: a new file in place of one that is there.
    explicit OpenPoints(const std::string& path, bool create = false) : workingFormat_(WorkingFormat()) {
        SetWorkingFormat(kIndexedCrd);
        isOpen_ = !path.empty() && PointStoreOpen(path, create ? 1 : 0, -1) != 0;
    }
    ~OpenPoints() {
        PointStoreClose();
        SetWorkingFormat(workingFormat_);
    }
    OpenPoints(const OpenPoints&) = delete;
    OpenPoints& operator=(const OpenPoints&) = delete;
    explicit operator bool() const { return isOpen_; }

  private:
    int workingFormat_;
    bool isOpen_ = false;
};

}  // namespace norvane
