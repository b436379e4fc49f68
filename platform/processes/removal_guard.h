// Files that must not outlive this program, however it ends.
//
// A second process waits for this one and then removes them; being killed is an end too.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "platform/files/descriptor.h"

namespace processes {

class RemovalGuard {
  public:
    // The paths of files, and of a folder that goes after them if it is empty then. None needs to be there.
    RemovalGuard(std::vector<std::string> files, std::string folder);
    // Removes them.
    ~RemovalGuard();
    RemovalGuard(const RemovalGuard&) = delete;
    RemovalGuard& operator=(const RemovalGuard&) = delete;

  private:
    std::vector<std::string> files_;
    std::string folder_;
    files::Descriptor life_;  // closed by our end
    pid_t watcher_ = -1;      // below 0 where the system has given none
};

}  // namespace processes
