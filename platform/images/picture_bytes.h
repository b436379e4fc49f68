// Room for the bytes of a picture file.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace images {

class PictureBytes {
  public:
    // So many bytes of anything.
    explicit PictureBytes(size_t size);
    char* data() { return bytes_.get(); }
    size_t size() const { return size_; }
    void shrink(size_t size) { size_ = size; }
    operator std::string_view() const { return {bytes_.get(), size_}; }

  private:
    struct Free {
        void operator()(char* bytes) const { std::free(bytes); }
    };
    std::unique_ptr<char, Free> bytes_;
    size_t size_;
};

}  // namespace images
