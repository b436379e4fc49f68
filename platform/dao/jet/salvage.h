// Saving what can be read of a damaged database.
#pragma once

#include "platform/dao/jet/compact.h"

namespace jet {

// Makes a scratch database at a path from what can be read of a damaged one: every table whose definition is
// whole, with all of its records that can be read, its properties and indexes; queries, relations and
// whatever other objects the catalogue lists. Objects that have lost their names get new ones. Owners and
// rights are those of new objects.
//
// keepsHeader: whether the first page, with the password, is still that of the file.
// Gives a sentence for everything that was lost. Throws where nothing can be saved.
std::vector<std::string> salvage(Database& damaged, const std::string& path, bool keepsHeader,
                                 const Progress& progress);

}  // namespace jet
