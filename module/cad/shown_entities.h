// Entities that are shown to the person: the view goes to them, and they are lit up.
#pragma once

#include <span>
#include <vector>

#include "module/cad/call.h"

namespace norvane {

// They are lit up until the object goes.
class ShownEntities {
  public:
    ShownEntities() = default;
    ~ShownEntities();
    ShownEntities(const ShownEntities&) = delete;
    ShownEntities& operator=(const ShownEntities&) = delete;

    void show(std::span<const EntityName> entities);

  private:
    std::vector<EntityName> lit_;
};

}  // namespace norvane
