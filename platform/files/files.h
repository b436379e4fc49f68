// Files and paths. A path may hold either separator on the way in; results use "/".
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace files {

// Both separators as "/".
std::string native(std::string_view path);
// Everything up to and with the last separator; "" when there is none.
std::string folderOf(std::string_view path);
// What follows the last separator.
std::string nameOf(std::string_view path);
// What follows the last "." of the name, without it; "" when there is none.
std::string extensionOf(std::string_view path);
// Folder and name with one separator between them.
std::string join(std::string_view folder, std::string_view name);

// A regular file, or a folder, of that name exists. Letters of the path may differ in case from those on
// disk.
bool exists(std::string_view path);
bool isFolder(std::string_view path);
// The path as it stands on disk: letters of each part may differ in case, but a part that is there as it is
// written is that one. What is not there keeps the letters of the path, behind the folders that are.
std::string onDisk(std::string_view path);
// Removes a file. False when it is there and cannot be removed.
bool remove(std::string_view path);
// A file can be made in the folder of this path (the current folder where it has none).
bool folderIsWritable(std::string_view path);

// The whole content; nothing when it cannot be read. A folder cannot be read.
std::optional<std::string> read(std::string_view path);
// Lines without their line ends (LF or CR LF), each cut at `limit` bytes: what is behind the cut is the
// next line, as a reader with a fixed buffer sees it.
std::optional<std::vector<std::string>> readLines(std::string_view path, size_t limit = 4096);
// Replaces a file's content so that at any moment, a crash included, the file is the old or the new one.
// False when that cannot be done; the old file is then untouched.
bool replace(std::string_view path, std::string_view content);

// All that any process has written into the file system of a folder is on the disk: for who writes many
// files, in place of waiting for each. False when that cannot be said.
bool syncFileSystem(std::string_view folder);

}  // namespace files
