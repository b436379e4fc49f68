// The files of images: how they are chosen, and where one is looked for that is not at its place.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace norvane {

// The box for images that are there, which starts in the folder of the last choice and remembers the new one.
std::vector<std::string> AskImages();
std::optional<std::string> AskImage();

// Whether a name ends as the files of images do.
bool IsImageName(const std::string& path);

// The file that is shown for a path: that of the path where it is there, else one of its name in one of the
// folders, which a line on the command line tells. "" without one.
std::string FindImageFile(const std::string& path, const std::vector<std::string>& folders);

}  // namespace norvane
