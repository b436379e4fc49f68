// The labels and colours that programs show with the current drawing; see platform/ads/overlay.h.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "platform/ads/overlay.h"

namespace hostcad {

class OverlaySets {
  public:
    void setLabels(const std::string& name, overlay::LabelSet set);
    void setColours(const std::string& name, overlay::ColourSet set);
    void clear();

    // By name. A set stays where it is until it is set anew.
    const std::map<std::string, overlay::LabelSet>& labels() const { return labels_; }
    const std::map<std::string, overlay::ColourSet>& colours() const { return colours_; }
    // A number that is another one after each change.
    uint64_t revision() const { return revision_; }

  private:
    std::map<std::string, overlay::LabelSet> labels_;
    std::map<std::string, overlay::ColourSet> colours_;
    uint64_t revision_ = 1;
};

// Those of the current drawing: those of another are gone.
OverlaySets& overlaySets();

}  // namespace hostcad
