// What a run passes over, counted by reason, for the line that tells of it.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace norvane {

// Names behind each other, up to ten of them.
std::string FirstNames(std::vector<std::string> names);

class Tally {
  public:
    // One more, for a reason such as "without a key"; a name that tells which, "" for none.
    void add(const std::string& reason, const std::string& name);
    size_t count() const;
    // "1 without a key (2F), 2 without a record (P098, P099)": the reasons in the order in which they came,
    // each with up to ten names. "" for nothing.
    std::string text() const;

  private:
    struct Reason {
        std::string text;
        size_t count = 0;
        std::vector<std::string> names;
    };
    std::vector<Reason> reasons_;
};

}  // namespace norvane
