// The choice of a coordinate file: one that is there, or a new one.
#pragma once

#include <optional>
#include <string>

namespace norvane {

struct PointFileChoice {
    std::string path;
    bool isNew = false;  // an older file of the name is to give way
};
// Nothing is made or changed. folder: where the file boxes start. Nothing when no file was chosen.
std::optional<PointFileChoice> ChoosePointFile(const std::string& folder);

}  // namespace norvane
