// The links of the drawing, as its entities carry them.
#pragma once

#include <string>
#include <vector>

#include "module/cad/call.h"

namespace norvane {

struct LinkedEntity {
    EntityName entity;
    std::string handle, layer;
    std::string templatePath, outputPath;  // as they stand
    std::string feature;                   // in capitals and trimmed, as the two that follow
    std::string keyField, keyValue;
    bool isBrokenOff = false;  // before the third string
};

// Those of all entities, in the order of the drawing. Nothing is printed, whatever state they are in.
std::vector<LinkedEntity> ReadLinkedEntities();

}  // namespace norvane
