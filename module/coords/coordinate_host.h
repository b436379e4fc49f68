// What coordinate files ask of the program around them. Without one they are silent, and new files are
// alphanumeric.
#pragma once

#include <string>

#include "module/coords/point_record.h"

namespace norvane {

class CoordinateHost {
  public:
    virtual ~CoordinateHost() = default;
    // On the command line; the text brings its own line feeds.
    virtual void print(const std::string& message) = 0;
    // In a box that waits for the user.
    virtual void alert(const std::string& message) = 0;
    // The format that the user wants of a new file.
    virtual int formatOfNewFiles() = 0;
};

// The host belongs to the caller and outlives its use; null takes it away.
void SetCoordinateHost(CoordinateHost* host);
CoordinateHost& TheCoordinateHost();

}  // namespace norvane
