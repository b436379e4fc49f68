// A small file that stands for something in use, locked as long as its owner lives: the system lets go of the
// lock when a program ends, however it ends, so that a file which a crash leaves behind holds nobody up.
#pragma once

#include <optional>
#include <string>

#include "platform/files/descriptor.h"

namespace hostcad {

class FileLock {
  public:
    // Makes and locks the file, and writes a text into it for those who find it locked. Nothing when another
    // holds it, or when no file can be made there.
    static std::optional<FileLock> take(const std::string& path, const std::string& text);
    // Another program holds the file, or this one by another lock.
    static bool isHeld(const std::string& path);

    // Removes the file.
    ~FileLock();
    FileLock(FileLock&& other) noexcept;
    FileLock& operator=(FileLock&& other) noexcept;

  private:
    FileLock(std::string path, files::Descriptor file) : path_(std::move(path)), file_(std::move(file)) {}

    std::string path_;
    files::Descriptor file_;
};

}  // namespace hostcad
