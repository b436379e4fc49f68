// The record of an entity that the person points at.
#pragma once

#include <string>

#include "module/cad/call.h"

namespace norvane {

// Opens the sheet of an entity: of the record that it is linked to, else of a new one under the key, whose
// link it gets once it is saved.
void ShowEntityData(const ads_name entity, const std::string& key);

// Function code 18: shows records until the person has seen enough. They select objects, pick points inside
// of polygons, or type numbers of survey points. Takes nothing; gives 0.
void QueryEntities(Call& call);

}  // namespace norvane
