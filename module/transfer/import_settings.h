// What an import of a set of shape files is asked for.
#pragma once

#include <string>

#include "platform/dao/database_path.h"

namespace norvane {

struct ImportShpSettings {
    std::string shpPath;
    dao::DatabasePath templatePath;
    dao::DatabasePath outputPath;  // a file, or a connect string that begins "ODBC;"
    std::string tableName;         // also the name of the feature

    // Of points.
    std::string crdPath;           // the coordinate file
    bool alphanumericCrd = false;  // a new one is one of names
    bool replacePoints = false;    // one that is there gives way to a new one
    // A point that is there gives way to one of its name; else the new one gets another name.
    bool overwritePoints = false;

    // Of lines and areas.
    std::string layerName;
    bool lightPolylines = false;  // in place of polylines of vertices, without a repeated last vertex

    int elevationField = -1;  // heights come from this field; -1: from the shapes
};

}  // namespace norvane
