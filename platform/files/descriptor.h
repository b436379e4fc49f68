// The owner of a file descriptor of the system.
#pragma once

#include <unistd.h>

#include <utility>

namespace files {

class Descriptor {
  public:
    Descriptor() = default;
    // Takes over what open() has given; below 0 for none.
    explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
    ~Descriptor() { close(); }
    Descriptor(Descriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }

    explicit operator bool() const { return descriptor_ >= 0; }
    int get() const { return descriptor_; }
    // False when the system has not closed it well: what was written may be lost. True where there is none.
    bool close() { return descriptor_ < 0 || ::close(std::exchange(descriptor_, -1)) == 0; }

  private:
    int descriptor_ = -1;
};

}  // namespace files
