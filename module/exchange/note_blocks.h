// Note files: a text of blocks, one for each point. A block begins with a line "PT_ID:id  GIS_FILE:file", of
// which the second part may be missing.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace norvane {

struct NoteHeading {
    std::string_view id;
    std::optional<std::string_view> file;  // of the feature; nothing where the heading has no mark of it
};
// Reads the line of a block's beginning, trimmed; nothing for any other line.
std::optional<NoteHeading> ParseNoteHeading(std::string_view line);
// The feature that a file is called after: its name up to the first point, in upper case; "UNKNOWN" where
// that is empty.
std::string FeatureOfNoteFile(std::string_view file);

struct NoteBlock {
    std::string id;
    std::optional<std::string> file;
    std::vector<std::string> lines;  // trimmed, without empty ones
};

// The most characters of a line; what is behind them is the next line.
constexpr size_t kLongestNoteLine = 327;

// The blocks of a file in its order; what stands in front of the first is passed over. Nothing when the file
// cannot be read.
std::optional<std::vector<NoteBlock>> ReadNoteBlocks(const std::string& path);

}  // namespace norvane
