// The version of a file before the last save, which stays beside it as FILE.bak.
#pragma once

#include <string>

namespace hostcad {

class PreviousVersion {
  public:
    // Notes the file as it is now, before it is replaced. Nothing is noted where there is no such file.
    explicit PreviousVersion(const std::string& path);
    // What was noted and not kept is forgotten, and the .bak before it stays.
    ~PreviousVersion();
    PreviousVersion(const PreviousVersion&) = delete;
    PreviousVersion& operator=(const PreviousVersion&) = delete;

    // The file has been replaced: what was noted becomes the .bak.
    void keep();

  private:
    std::string noted_;  // "" when nothing is
    std::string kept_;
};

}  // namespace hostcad
