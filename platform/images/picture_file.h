// A picture file of any format, as the rows of its picture.
#pragma once

#include <optional>
#include <string_view>

#include "platform/images/formats.h"
#include "platform/images/picture_bytes.h"

namespace images {

enum class Format { kNone, kJpeg, kPng, kGif, kBmp };
// By its first bytes.
Format formatOf(std::string_view bytes);

// The bytes of a file, or so many of them at its beginning. Nothing for a file that cannot be read or is too
// large to be a picture.
std::optional<PictureBytes> readPictureFile(std::string_view path, size_t most = SIZE_MAX);

std::optional<Heading> headingOf(std::string_view bytes);
// As the pixels lie in the file. A JPEG may come reduced, but no side below that of `needed`. False when
// there is nothing.
bool readRows(std::string_view bytes, Size needed, RowSink& sink);

}  // namespace images
