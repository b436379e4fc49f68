// Reading and writing of drawing interchange files, text and binary.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "hostcad/drawing/drawing.h"

namespace hostcad {

// Opens a drawing. Null when it cannot be read; error then says why and where (the line of a text file, the
// byte of a binary one). What the reader does not understand is kept. Entities without a handle get one.
// Faults that it mends (a section without an end, groups between sections, numbers that are none) are told in
// remarks, a sentence each with its place.
std::unique_ptr<Drawing> readDxf(const std::string& path, std::string& error,
                                 std::vector<std::string>* remarks = nullptr);
// The same from the content of a file.
std::unique_ptr<Drawing> parseDxf(std::string_view content, std::string& error,
                                  std::vector<std::string>* remarks = nullptr);

// Writes a drawing to a file in a format: drawing.format() keeps that of the file it came from. The file is
// replaced at once or not at all. False when it cannot be written, or not in that version; error says why.
// The drawing's own path and format do not change.
bool writeDxf(const Drawing& drawing, const std::string& path, const DxfFormat& format, std::string& error);
// The content that writeDxf writes. False as there.
bool formatDxf(const Drawing& drawing, const DxfFormat& format, std::string& content, std::string& error);

}  // namespace hostcad
