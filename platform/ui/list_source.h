// Where a list has its items from. It asks for those that are seen.
#pragma once

#include <string>

namespace ui {

// Items and columns count from 0. Only items and columns that the list has are asked for.
class ListSource {
  public:
    virtual ~ListSource() = default;
    virtual int count() const = 0;
    virtual std::string text(int index, int column) const = 0;
};

}  // namespace ui
