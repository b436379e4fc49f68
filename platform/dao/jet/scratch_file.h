// A file that is made beside a database, and goes in any case.
#pragma once

#include <unistd.h>

#include <string>

namespace jet {

class ScratchFile {
  public:
    explicit ScratchFile(std::string path) : path_(std::move(path)) { ::unlink(path_.c_str()); }
    ~ScratchFile() { ::unlink(path_.c_str()); }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;
    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

}  // namespace jet
