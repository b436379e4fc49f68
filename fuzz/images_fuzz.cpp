// Pictures of any bytes: what has a size has it in its preview too, and nothing is larger than its frame. The
// same bytes are also read as the packed rows of a PNG, whose sums would keep most of them away.
#include <string>
#include <string_view>

#include "fuzz/fuzz_folder.h"
#include "platform/files/byte_order.h"
#include "platform/images/decode.h"
#include "platform/images/plain_png.h"

namespace {

class CountedRows : public images::RowSink {
  public:
    explicit CountedRows(images::Size size) : size_(size) {}
    void begin(images::Size size) override { require(size == size_, "another size than was told"); }
    void add(const uint8_t* row) override {
        require(++count_ <= size_.height, "more rows than there are");
        uint8_t all = 0;
        for (int i = 0; i < size_.width * images::kPixelBytes; ++i) all |= row[i];
        isSeen_ |= all != 0;
    }
    bool any() const { return count_ > 0; }

  private:
    images::Size size_;
    int count_ = 0;
    bool isSeen_ = false;
};

void readPackedRows(std::string_view bytes) {
    for (const size_t pixelBytes : {size_t{3}, size_t{4}})
        for (const images::Size size : {images::Size{5, 30}, {3000, 200}}) {
            std::string chunk(4, '\0');
            files::putBig32(chunk.data(), static_cast<uint32_t>(bytes.size()));
            chunk += "IDAT";
            chunk += bytes;
            CountedRows rows(size);
            const bool any = images::readPlainPng(chunk, size, pixelBytes, rows);
            require(any == rows.any(), "rows that were not told");
        }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    constexpr int64_t kMostPixels = 1 << 18;  // larger ones take their time and show nothing new
    constexpr images::Size kFrame = {40, 37};
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    readPackedRows(bytes);
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
