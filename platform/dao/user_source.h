// Data sources of this user as the driver manager keeps them.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace dao {

// What the driver manager knows of a driver by its exact name: the value of a keyword, such as "Driver", its
// file. "" where there is no such driver, keyword or driver manager.
std::string driverValue(const std::string& driver, const std::string& keyword);

// The values of a section of the sources, in place of those of the same name that are there. False when it
// cannot be written. The section of a source is its name.
using SourceValues = std::vector<std::pair<std::string, std::string>>;
bool writeUserSource(const std::string& section, const SourceValues& values);

}  // namespace dao
