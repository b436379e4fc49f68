// Notes beside the coordinate file of their points.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "module/transfer/note_records.h"

namespace norvane {

struct NoteCheck {
    size_t points = 0, notes = 0;  // points of the file, ids of the notes
    std::vector<std::string> pointsWithoutNotes;
    std::vector<std::string> notesWithoutPoints;
    std::vector<std::string> differences;  // a line each, with both coordinates
};

// The coordinate file that stands beside a note file under the same name; "" for none.
std::string CoordinateFileOf(const std::string& notePath);

// Compares notes with a coordinate file; coordinates differ by more than a thousandth. Nothing when the file
// cannot be opened.
std::optional<NoteCheck> CheckNotes(const NoteRecordList& notes, const std::string& coordinateFile);
// The result as lines.
std::vector<std::string> CheckLines(const NoteCheck& check, const std::string& notePath,
                                    const std::string& coordinateFile);

}  // namespace norvane
