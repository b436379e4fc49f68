// The two databases that a request names, before work begins on them.
#pragma once

#include <string>

namespace norvane {

// Whether there is a template; a line tells when there is none.
bool TemplateIsThere(const std::string& path);
// Makes an output database that is missing: always of the Access 97 format. A line tells when that fails.
bool CreateMissingOutput(const std::string& path);

}  // namespace norvane
