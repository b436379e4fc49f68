// A few values that are remembered under keys, those used last: of this drawing, of that table.
#pragma once

#include <string>

namespace norvane {

class RecentValues {
  public:
    // Which entry of what the dialogs remember holds them.
    explicit RecentValues(int stateIndex) : index_(stateIndex) {}

    // The value of a key; "" when there is none, or it was too long ago.
    std::string find(const std::string& key) const;
    void remember(const std::string& key, const std::string& value) const;

  private:
    int index_;
};

// The set of shape files whose rows a table of an output holds.
RecentValues ImportedSets();
// The file that describes the reference system of a drawing (.prj), by the path of the drawing.
RecentValues ReferenceFiles();

}  // namespace norvane
