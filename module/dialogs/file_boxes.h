// The file boxes of the module: what they show, and what they take. Each starts in a folder, "" leaving it to
// the view, and gives the chosen path, or nothing when the person cancelled.
#pragma once

#include <optional>
#include <string>

namespace norvane {

// A database that is there.
std::optional<std::string> AskExistingDatabase(const std::string& folder);
// The same by the menu of the editor, whose filter is written without a blank.
std::optional<std::string> AskTemplateToOpen(const std::string& folder);
// A new database; a name that is taken is asked about, and gets the ending .mdb.
std::optional<std::string> AskNewDatabase(const std::string& folder);

// An output database that is there, and a new one: of any kind that can be one.
std::optional<std::string> AskExistingOutput(const std::string& folder);
std::optional<std::string> AskNewOutput(const std::string& folder);

// A file with tables from which texts of title blocks come.
std::optional<std::string> AskRecordSource(const std::string& folder);

// What says in which reference system coordinates are.
std::optional<std::string> AskProjectionFile(const std::string& folder);

// A feature file to read, to write, to delete.
std::optional<std::string> AskFeatureFileToImport(const std::string& folder);
std::optional<std::string> AskFeatureFileToExport(const std::string& folder);
std::optional<std::string> AskFeatureFileToDelete(const std::string& folder);

// The notes that a data collector has left.
std::optional<std::string> AskCollectorNotes(const std::string& folder);
// The codes that a data collector knows, and a folder, such as that of its memory card.
std::optional<std::string> AskCodeDefinitions(const std::string& folder);
std::optional<std::string> AskFolder(const std::string& title);

// A text file to write.
std::optional<std::string> AskTextFileToSave(const std::string& folder);

// Notes of the field, and lines of text, to import.
std::optional<std::string> AskNoteFile(const std::string& folder);
std::optional<std::string> AskAsciiFile(const std::string& folder);
// The fields of lines of text, to read and to write.
std::optional<std::string> AskFieldSettings(const std::string& folder);
std::optional<std::string> AskNewFieldSettings(const std::string& folder);

// A set of shape files by its .shp, and a coordinate file that is there, or a new one.
std::optional<std::string> AskShapeSet(const std::string& folder);
std::optional<std::string> AskExistingPoints(const std::string& folder);
std::optional<std::string> AskNewPoints(const std::string& folder);
// The coordinate file where the points of records are looked up, and a drawing that becomes a block.
std::optional<std::string> AskPointsOfRecords(const std::string& folder);
std::optional<std::string> AskBlockFile(const std::string& folder);

}  // namespace norvane
