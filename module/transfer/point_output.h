// Points that an import of records also puts into a coordinate file.
#pragma once

#include <string>
#include <vector>

#include "module/coords/point_record.h"
#include "module/transfer/note_records.h"
#include "module/transfer/point_file_chooser.h"

namespace norvane {

struct PointOutput {
    std::string path;                  // "" when nothing was written
    std::vector<std::string> names;    // of the points that were written
    size_t withoutPlace = 0;           // records whose northing or easting is no number
    std::vector<std::string> refused;  // names that the file cannot have
    size_t kept = 0;                   // that the file has already and that stay as they are
};

// A point of texts; nothing where northing or easting is no number. An elevation that is none is no
// elevation.
std::optional<PointRecord> PointOf(const std::string& name, const std::string& northing,
                                   const std::string& easting, const std::string& elevation,
                                   const std::string& description);

// The points of records: of several of one name the last. nullopt stands for a record without a place.
using PointList = std::vector<std::optional<PointRecord>>;
PointList PointsOfNotes(const std::vector<NoteFeature>& features);

// Writes points into a file, a new one or one that is there. Before points of the file are overwritten the
// person is asked. keptNotes: a note file that stays even where it belongs to a file that gives way.
PointOutput WritePoints(const PointFileChoice& choice, const PointList& points, const std::string& keptNotes);

// Leaves the names of points for the routine that draws them, as the Lisp symbol imported-points$: a list of
// lists, each of which begins with the path of a file.
void LeaveForDrawing(const std::vector<PointOutput>& outputs);

}  // namespace norvane
