#include "platform/images/row_reducer.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace images {
namespace {

// The sums of so many squared pixels of 255 times 255 fit into 32 bits.
constexpr int kLargestFactor = 256;

// Loops over so many bytes are done many at a time.
constexpr size_t kBlock = 32;

bool isOpaque(const uint8_t* row, size_t bytes) {
    uint8_t all[kBlock];
    std::fill_n(all, kBlock, uint8_t{0xFF});
    size_t i = 0;
    for (; i + kBlock <= bytes; i += kBlock)
        for (size_t j = 0; j < kBlock; ++j) all[j] &= row[i + j];
    for (size_t j = 0; i < bytes; ++i, ++j) all[j] &= row[i];
    bool isWhole = true;
    for (size_t j = 3; j < kBlock; j += kPixelBytes) isWhole = isWhole && all[j] == 0xFF;
    return isWhole;
}

// Adds some pixels of a row to the sums of one pixel. Colours count by how much they cover.
void addPixels(const uint8_t* pixel, int count, uint32_t* sums) {
    uint32_t red = 0, green = 0, blue = 0, covers = 0;
    for (const uint8_t* end = pixel + ptrdiff_t{count} * kPixelBytes; pixel != end; pixel += kPixelBytes) {
        const uint32_t a = pixel[3];
        red += a * pixel[0];
        green += a * pixel[1];
        blue += a * pixel[2];
        covers += a;
    }
    sums[0] += red;
    sums[1] += green;
    sums[2] += blue;
    sums[3] += covers;
}

// The same of columns of pixels that cover everything.
void addColumns(const uint16_t* column, int count, uint32_t* sums) {
    uint32_t sum[kPixelBytes] = {};
    for (int i = 0; i < count; ++i)
        for (int c = 0; c < kPixelBytes; ++c) sum[c] += *column++;
    for (int c = 0; c < 3; ++c) sums[c] += 255 * sum[c];
    sums[3] += sum[3];
}

}  // namespace

void RowReducer::begin(Size size) {
    size_ = size;
    factor_ = std::clamp(
        std::min(size.width / std::max(1, needed_.width), size.height / std::max(1, needed_.height)), 1,
        kLargestFactor);
    result_ = Image({(size.width + factor_ - 1) / factor_, (size.height + factor_ - 1) / factor_});
    sums_.assign(static_cast<size_t>(result_.size.width) * kPixelBytes, 0);
    opaque_.assign(static_cast<size_t>(size.width) * kPixelBytes, 0);
}

void RowReducer::add(const uint8_t* row) {
    if (done_ == result_.size.height) return;
    if (factor_ == 1) {
        std::copy_n(row, static_cast<size_t>(size_.width) * kPixelBytes, result_.pixel(0, done_++));
        return;
    }
    if (isOpaque(row, opaque_.size()))
        addOpaque(row);
    else
        for (int x = 0; x < result_.size.width; ++x)
            addPixels(row + static_cast<ptrdiff_t>(x) * factor_ * kPixelBytes,
                      std::min(factor_, size_.width - x * factor_),
                      &sums_[static_cast<size_t>(x) * kPixelBytes]);
    if (++gathered_ == factor_) finishRow();
}

void RowReducer::addOpaque(const uint8_t* row) {
    static_assert(kLargestFactor * 255 <= UINT16_MAX);
    hasOpaque_ = true;
    size_t i = 0;
    for (; i + kBlock <= opaque_.size(); i += kBlock) {
        uint8_t block[kBlock];
        std::memcpy(block, row + i, kBlock);
        uint16_t* const sums = &opaque_[i];
        for (size_t j = 0; j < kBlock; ++j) sums[j] = static_cast<uint16_t>(sums[j] + block[j]);
    }
    for (; i < opaque_.size(); ++i) opaque_[i] = static_cast<uint16_t>(opaque_[i] + row[i]);
}

void RowReducer::finishRow() {
    for (int x = 0; x < result_.size.width; ++x) {
        uint32_t* const sums = &sums_[static_cast<size_t>(x) * kPixelBytes];
        if (hasOpaque_)
            addColumns(&opaque_[static_cast<size_t>(x * factor_) * kPixelBytes],
                       std::min(factor_, size_.width - x * factor_), sums);
        const uint32_t covers = sums[3];
        const auto pixels = static_cast<uint32_t>(gathered_ * std::min(factor_, size_.width - x * factor_));
        uint8_t* pixel = result_.pixel(x, done_);
        for (int c = 0; c < 3; ++c)
            pixel[c] = covers ? static_cast<uint8_t>((uint64_t{sums[c]} + covers / 2) / covers) : 0;
        pixel[3] = static_cast<uint8_t>(covers / pixels);
    }
    std::fill(sums_.begin(), sums_.end(), 0u);
    if (std::exchange(hasOpaque_, false)) std::fill(opaque_.begin(), opaque_.end(), uint16_t{0});
    gathered_ = 0;
    ++done_;
}

Image RowReducer::take() {
    if (gathered_ > 0) finishRow();
    return std::move(result_);
}

}  // namespace images
