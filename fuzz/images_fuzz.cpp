// Pictures of any bytes: what has a size has it in its preview too, and nothing is larger than its frame.
#include <string_view>

#include "fuzz/fuzz_folder.h"
#include "platform/images/decode.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    constexpr int64_t kMostPixels = 1 << 18;  // larger ones take their time and show nothing new
    constexpr images::Size kFrame = {40, 37};
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::optional<images::Size> whole = images::sizeOf(bytes);
    if (!whole) {
        require(images::preview(bytes, kFrame).empty(), "a picture without a size");
        return 0;
    }
    require(whole->width > 0 && whole->height > 0, "a picture without an extent");
    if (int64_t{whole->width} * whole->height > kMostPixels) return 0;
    const images::Image image = images::preview(bytes, kFrame);
    if (!image.empty()) require(image.size == images::fitted(*whole, kFrame), "another size than was told");
    return 0;
}
