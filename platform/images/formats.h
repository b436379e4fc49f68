// The readers of the formats, one a file. Each knows the bytes of a file and nothing of where they come from.
// A file that ends too early, or is faulty further on, gives the rows in front of that.
#pragma once

#include <optional>
#include <string_view>

#include "platform/images/row_sink.h"

namespace images {

// Pictures of more pixels than this are none of ours: what is larger was made to fill the memory.
constexpr int64_t kMostPixels = int64_t{1} << 28;
constexpr int kLongestSide = 65535;
inline bool isUsable(int64_t width, int64_t height) {
    return width > 0 && height > 0 && width <= kLongestSide && height <= kLongestSide &&
           width * height <= kMostPixels;
}

// What a file says of its picture: the size as its pixels lie there, and how it is to be turned to be seen
// (the numbers of Exif, 1 for as it is).
struct Heading {
    Size size;
    int orientation = 1;
};

std::optional<Heading> jpegHeading(std::string_view bytes);
// The picture may come reduced, but no side below that of `needed`. False when there is none at all.
bool readJpeg(std::string_view bytes, Size needed, RowSink& sink);

std::optional<Heading> pngHeading(std::string_view bytes);
bool readPng(std::string_view bytes, RowSink& sink);

// The first picture, at its place on the ground that the file has for all of them.
std::optional<Heading> gifHeading(std::string_view bytes);
bool readGif(std::string_view bytes, RowSink& sink);

std::optional<Heading> bmpHeading(std::string_view bytes);
bool readBmp(std::string_view bytes, RowSink& sink);

// The orientation that an Exif block says; 1 where it says none.
int exifOrientation(std::string_view block);

}  // namespace images
