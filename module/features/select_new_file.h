// Select New File: an existing database, or the path and format of a new one.
#pragma once

#include <string>

struct NewFileChoice {
    std::string path;         // "" when the person cancelled
    bool existing = false;    // a database that is there
    bool access2000 = false;  // the format of a new one
};

// folder: where the file boxes start.
NewFileChoice SelectNewFile(const std::string& folder);
