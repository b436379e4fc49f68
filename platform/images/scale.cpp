#include <algorithm>
#include <cmath>

#include "platform/images/image.h"

namespace images {
namespace {

// What part of which source pixels makes one pixel of the result.
struct Span {
    int first = 0;
    std::vector<float> weights;  // they add up to 1
};

// Of all pixels of a result along one axis.
std::vector<Span> spansOf(int from, int to) {
    std::vector<Span> spans(static_cast<size_t>(to));
    const double step = static_cast<double>(from) / to;
    for (int i = 0; i < to; ++i) {
        Span& span = spans[static_cast<size_t>(i)];
        if (step > 1) {
            const double begin = i * step, end = std::min<double>(from, (i + 1) * step);
            span.first = std::min(from - 1, static_cast<int>(begin));
            const int last = std::max(span.first, std::min(from, static_cast<int>(std::ceil(end))) - 1);
            for (int source = span.first; source <= last; ++source)
                span.weights.push_back(static_cast<float>(
                    (std::min<double>(end, source + 1) - std::max<double>(begin, source)) / (end - begin)));
        } else {
            const double at = std::clamp((i + 0.5) * step - 0.5, 0.0, from - 1.0);
            span.first = static_cast<int>(at);
            const float part = static_cast<float>(at - span.first);
            span.weights.push_back(1 - part);
            if (part > 0) span.weights.push_back(part);
        }
    }
    return spans;
}

uint8_t byteOf(float value) {
    return static_cast<uint8_t>(std::clamp(value + 0.5f, 0.0f, 255.0f));
}

// Colours count by how much they cover, so that what is not seen gives none of its colour.
void addWeighted(const uint8_t* pixel, float weight, float* sums) {
    const float covers = weight * static_cast<float>(pixel[3]);
    for (int c = 0; c < 3; ++c) sums[c] += covers * static_cast<float>(pixel[c]);
    sums[3] += covers;
}

}  // namespace

Image scaled(const Image& image, Size size) {
    if (image.empty() || size.width <= 0 || size.height <= 0) return {};
    const std::vector<Span> columns = spansOf(image.size.width, size.width);
    const std::vector<Span> rows = spansOf(image.size.height, size.height);
    Image result(size);
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x) {
            const Span& row = rows[static_cast<size_t>(y)];
            const Span& column = columns[static_cast<size_t>(x)];
            float sums[kPixelBytes] = {};
            for (size_t j = 0; j < row.weights.size(); ++j)
                for (size_t i = 0; i < column.weights.size(); ++i)
                    addWeighted(
                        image.pixel(column.first + static_cast<int>(i), row.first + static_cast<int>(j)),
                        row.weights[j] * column.weights[i], sums);
            uint8_t* pixel = result.pixel(x, y);
            for (int c = 0; c < 3; ++c) pixel[c] = sums[3] > 0 ? byteOf(sums[c] / sums[3]) : 0;
            pixel[3] = byteOf(sums[3]);
        }
    return result;
}

}  // namespace images
