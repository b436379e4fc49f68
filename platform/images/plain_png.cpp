#include "platform/images/plain_png.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <vector>

#include "platform/images/png_data.h"
#include "platform/images/png_filters.h"
#include "platform/images/read_ahead.h"

namespace images {
namespace {

constexpr size_t kOpaquePixel = 3;

class PlainRows {
  public:
    PlainRows(Size size, size_t pixelBytes, RowSink& sink)
        : pixelBytes_(pixelBytes),
          rowBytes_(static_cast<size_t>(size.width) * pixelBytes),
          above_(rowBytes_),
          shown_(static_cast<size_t>(size.width) * kPixelBytes),
          sink_(sink) {}

    size_t storedBytes() const { return rowBytes_ + 1; }

    // Takes a row as it is stored. False for one that is faulty.
    bool add(uint8_t* stored) {
        uint8_t* const row = stored + 1;
        if (!undoPngFilter(*stored, row, above_.data(), rowBytes_, pixelBytes_)) return false;
        if (pixelBytes_ == kOpaquePixel) {
            show(row);
            sink_.add(shown_.data());
        } else {
            sink_.add(row);
        }
        std::memcpy(above_.data(), row, rowBytes_);
        return true;
    }

  private:
    void show(const uint8_t* row) {
        uint8_t* to = shown_.data();
        for (const uint8_t* end = row + rowBytes_; row != end; row += kOpaquePixel, to += kPixelBytes) {
            to[0] = row[0];
            to[1] = row[1];
            to[2] = row[2];
            to[3] = 0xFF;
        }
    }

    size_t pixelBytes_, rowBytes_;
    std::vector<uint8_t> above_, shown_;
    RowSink& sink_;
};

}  // namespace

bool readPlainPng(std::string_view chunks, Size size, size_t pixelBytes, RowSink& sink) {
    constexpr size_t kStretch = size_t{1} << 18;
    PngData data(chunks);
    PlainRows rows(size, pixelBytes, sink);
    const auto height = static_cast<size_t>(size.height);
    const size_t rowsOfStretch = std::clamp(kStretch / rows.storedBytes(), size_t{1}, height);
    ReadAhead ahead(rowsOfStretch * rows.storedBytes(), rowsOfStretch < height,
                    [&](uint8_t* to, size_t count) { return data.read(to, count); });
    sink.begin(size);
    size_t done = 0;
    for (std::span<uint8_t> stretch = ahead.next(); !stretch.empty(); stretch = ahead.next())
        for (; stretch.size() >= rows.storedBytes() && done < height; ++done) {
            if (!rows.add(stretch.data())) return done > 0;
            stretch = stretch.subspan(rows.storedBytes());
        }
    return done > 0;
}

}  // namespace images
