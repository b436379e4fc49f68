// What kind of coordinate file a path names or asks for, and in which form its points are handed on.
#pragma once

#include <optional>
#include <string>

#include "module/coords/point_record.h"

namespace norvane {

// The format of a file; kNoFile when there is none or it is empty, kIndexMissing for an indexed one without
// its index. The name of a drawing is told without a look at the disk.
int DetectFormat(const std::string& path);
// The format that a new file of this name gets; kNoFile for an extension that no coordinate file has.
int FormatOfNewFile(const std::string& path);
// Rules over the user's choice for new files while it is set.
void SetFixedFormat(std::optional<int> format);
std::optional<int> FixedFormat();

// The form in which callers of the point store expect points, 1 unless set.
int WorkingFormat();
void SetWorkingFormat(int format);
// Between a file's form and the working form. Nothing changes when the two formats are the same.
void ToWorkingForm(PointRecord& point, int fileFormat);
void ToFileForm(PointRecord& point, int fileFormat);

// The file beside a data file that holds its index: "name.idx" or "name.zgi".
std::string IndexPath(const std::string& dataPath);
// Where a new version of a coordinate file is made: "name_.crd" in the same folder.
std::string TemporaryPath(const std::string& path, int format);
// The file of notes of a coordinate file.
std::string NotePath(const std::string& path);

// The mark of an alphanumeric file, at its place.
constexpr const char* kAlphanumericMark = "New CRD Format";
constexpr size_t kAlphanumericMarkAt = 72;
constexpr size_t kAlphanumericHeaderSize = 104;
bool IsAlphanumericHeader(std::string_view bytes);

}  // namespace norvane
