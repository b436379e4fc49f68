// The unpacked data of a PNG file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace images {

class PngData {
  public:
    // The file from its first IDAT chunk on, which must be there as long as this object.
    explicit PngData(std::string_view chunks);
    ~PngData();

    // Reads the bytes that are next; fewer than that where the data end, are cut off, or are faulty. A chunk
    // whose sum is wrong is the last that counts.
    size_t read(uint8_t* to, size_t count);

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace images
