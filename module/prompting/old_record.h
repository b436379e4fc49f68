// What becomes of the record of an entity that the sheet has given another feature.
#pragma once

#include <string>

#include "module/store/gis_link.h"

namespace norvane {

// link: the one that the entity had before it got that of the new feature, as ReadGisLink gives it. Asks
// whether the old record is to be erased, by default No. Without a question it stays where the feature is the
// same and, with a line that says so, where other entities lead to it.
void AskAboutOldRecord(const GisLink& link, const std::string& newFeature);

}  // namespace norvane
