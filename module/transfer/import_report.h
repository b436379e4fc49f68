// What an import did, and what is told at its end.
#pragma once

#include <cstddef>
#include <string>
#include <unordered_set>
#include <vector>

#include "module/transfer/import_settings.h"

namespace norvane {

// The names of the points that were written, some of them twice where a point took the place of another one
// of the set.
using ImportResultList = std::vector<std::string>;

struct ImportReport {
    ImportResultList points;
    size_t polylines = 0;
    std::unordered_set<std::string> linkedIds;  // of records to which a polyline leads
    std::vector<std::string> addedIds;          // of records that were added
    size_t recordsAdded = 0, recordsChanged = 0;
    bool recordsWritten = false;  // false: there is no engine
    bool featureAdded = false;
    std::string outputCopy;  // the path of a copy of the output as it was before; "" for none
    // Left out.
    size_t unreadable = 0;      // records
    size_t shortParts = 0;      // of fewer than two vertices
    size_t badCoordinates = 0;  // parts and points that are nowhere
    size_t pointsRefused = 0;   // by the coordinate file
    size_t pointsReplaced = 0;  // by later ones of the set that have the same id
    size_t linksRefused = 0;    // by the drawing: a text of the link is too long
    size_t valuesCut = 0;       // to the size of their column
    size_t idsChanged = 0;      // of points: theirs were taken, or cannot stand in the coordinate file
    std::vector<std::string> fieldsRefused;  // those that the table has, but not for texts
};

// Lines on the command line: what was made and where, what was left out and why, and which reference system
// the set has.
void TellImport(const ImportShpSettings& settings, const ImportReport& report);

}  // namespace norvane
