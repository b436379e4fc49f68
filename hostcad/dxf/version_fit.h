// What stands in the way of saving a drawing in an older version, and what is left out then.
#pragma once

#include <string>
#include <string_view>

#include "hostcad/drawing/drawing.h"

namespace hostcad {

// A newer version only adds to an older one, R12 excepted: it has no owners, subclasses and objects. So a
// drawing is saved in a newer version as it is, and in an older one without the properties that came later
// (true colours, transparency, shadows). Entities that came later cannot be saved.
class VersionFit {
  public:
    VersionFit(const Drawing& drawing, DrawingVersion to);

    // Why the drawing cannot be saved in that version; "" when it can.
    const std::string& obstacle() const { return obstacle_; }
    // Every group of every object stays.
    bool keepsAll() const { return keepsAll_; }
    bool keepsSection(std::string_view name) const;
    // The groups of an object that stay, in the given buffer.
    void keep(ObjectId id, std::vector<Group>& groups) const;

  private:
    const Drawing& drawing_;
    DrawingVersion to_;
    bool keepsAll_;
    std::string obstacle_;
};

}  // namespace hostcad
