// The records of a note file: what each block says of its point.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "module/exchange/note_blocks.h"
#include "module/transfer/record_import.h"

namespace norvane {

struct FieldValue {
    std::string name;
    std::string value;
    bool operator==(const FieldValue&) const = default;
};

// Reads a line of a block, trimmed, and adds the fields that it has; the first rule that fits counts. A line
// that fits none goes to NOTES.
void ClassifyNoteLine(std::string_view line, std::string_view id, std::vector<FieldValue>& fields);

struct PointNote {
    std::string feature;  // "" for a block that names none
    std::string id;
    std::vector<FieldValue> fields;  // one may occur more than once
};

struct NoteRecordList {
    std::vector<PointNote> records;  // of the blocks that have an id, in the order of the file
    size_t blocks = 0;               // that were read
    size_t withoutId = 0;
    std::vector<std::string> withoutFeature;  // their ids: they are not imported
};
// Nothing when the file cannot be read.
std::optional<NoteRecordList> ReadNoteRecords(const std::string& path);

// The blocks of a feature.
struct NoteFeature {
    std::string name;
    std::vector<const PointNote*> records;  // in the order of the file
};
// Those of the list, in the order in which they first occur.
std::vector<NoteFeature> FeaturesOf(const NoteRecordList& list);

// The ids of a feature, each once, with all of its blocks.
struct NotePoint {
    std::string id;
    std::vector<const PointNote*> blocks;
};
std::vector<NotePoint> PointsOf(const NoteFeature& feature);

// "POLE: 3 points >> 4-5,19": the feature and its ids, as ranges where all of them are numbers.
std::string FeatureCaption(const NoteFeature& feature);

// What is to be in the table of a feature: columns in the order in which fields first occur, a record for
// each block. The last value of a field that is not empty counts; lines of NOTES are joined.
TableImport ImportOf(const NoteFeature& feature);

}  // namespace norvane
