// What an import of a set of shape files is asked for, and what it did.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace norvane {

struct ImportRequest {
    std::string shapePath;
    std::string templatePath;
    std::string outputPath;      // a file, or a connect string that begins "ODBC;"
    std::string pointPath;       // the coordinate file; of points only
    std::string table;           // also the name of the feature
    std::string layer;           // of lines and areas only
    bool alphanumeric = false;   // a new coordinate file is one of names
    bool replacePoints = false;  // a coordinate file that is there gives way to a new one
    bool overwritePoints =
        false;                // a point that is there gives way to one of its name; else it gets another name
    int elevationField = -1;  // heights come from this field; -1: from the shapes
    bool lightPolylines = false;  // in place of polylines of vertices, without a repeated last vertex
};

struct ImportReport {
    std::vector<std::string> points;  // the names of those that were written
    size_t polylines = 0;
    size_t recordsAdded = 0, recordsChanged = 0;
    bool recordsWritten = false;  // false: there is no engine
    bool featureAdded = false;
    std::string outputCopy;  // the path of a copy of the output as it was before; "" for none
    // Left out.
    size_t unreadable = 0;      // records
    size_t shortParts = 0;      // of fewer than two vertices
    size_t badCoordinates = 0;  // parts and points that are nowhere
    size_t pointsRefused = 0;   // by the coordinate file
    size_t linksRefused = 0;    // by the drawing: a text of the link is too long
    size_t valuesCut = 0;       // to the size of their column
};

}  // namespace norvane
