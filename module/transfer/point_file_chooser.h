// The choice of a coordinate file: one that is there, or a new one.
#pragma once

#include <optional>
#include <string>

#include "module/cad/call.h"

namespace norvane {

struct PointFileChoice {
    std::string path;
    bool isNew = false;  // an older file of the name is to give way
};
// Nothing is made or changed. folder: where the file boxes start. Nothing when no file was chosen.
std::optional<PointFileChoice> ChoosePointFile(const std::string& folder);

// (gis:choose-points folder): the path of a coordinate file, or nil. A file that is to give way to a new one
// is deleted.
void ChoosePointFile(Call& call);

}  // namespace norvane
