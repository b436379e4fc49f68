// PNG files as photographs are: rows one behind the other, of eight bits and in colour. They are read several
// times as fast as others.
#pragma once

#include <cstddef>
#include <string_view>

#include "platform/images/row_sink.h"

namespace images {

// chunks: the file from its first IDAT chunk on. pixelBytes: 3, or 4 where it has the part that pixels cover.
// Rows in front of what is faulty or cut off are given. False when there is none.
bool readPlainPng(std::string_view chunks, Size size, size_t pixelBytes, RowSink& sink);

}  // namespace images
