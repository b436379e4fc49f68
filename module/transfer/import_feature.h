// The feature of an imported table in the template, for a table that has none yet.
#pragma once

#include <string>
#include <vector>

#include "platform/dao/dao.h"

namespace norvane {

// The columns of a table that a person fills in: those of text but its keys, pictures and labels.
std::vector<std::string> AttributesOfTable(CDaoDatabase& output, const std::string& table);

// Defines a feature with these attributes, at the end of the first category, unless it is defined or the
// database is no template. Whether it was added. Exceptions pass through.
bool AddFeature(CDaoDatabase& database, const std::string& feature,
                const std::vector<std::string>& attributes);

}  // namespace norvane
