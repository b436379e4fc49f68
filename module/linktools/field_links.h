// Links of data collectors: entities that carry the id of a point, whose feature stands in a note file.
#pragma once

#include <map>
#include <optional>
#include <string>

namespace norvane {

// Their application.
constexpr const char* kFieldLinkApplication = "ZGEOFL_GIS_2000";

// Handles of entities, each with the id of its point in capitals.
using FieldLinkMap = std::map<std::string, std::string>;
// Ids of points in capitals, each with its feature.
using NoteMap = std::map<std::string, std::string>;

// Reads a note file: lines "PT_ID: id GIS_FILE: feature.gis". A point without a feature is UNKNOWN; of
// several lines of an id the last counts. Nothing when the file cannot be read.
std::optional<NoteMap> ReadCollectorNotes(const std::string& path);

// What is to become of the links that were found.
enum class FieldLinkChoice { kLeave, kConvert, kEnd };
struct FieldLinkRequest {
    FieldLinkChoice choice = FieldLinkChoice::kLeave;
    std::string templatePath, outputPath, notePath;
};
// Asks whether to convert links, and with which files.
FieldLinkRequest AskForFieldLinks();

}  // namespace norvane
