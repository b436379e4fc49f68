// What the dialogs remember from one run of the host to the next: texts by index, in featlink.ini.
#pragma once

#include <string>

#include "platform/dao/database_path.h"

namespace norvane {

// Which entry is whose. Indices 0 to 36 exist; those without a name here are free.
namespace state {
// An entry that holds a database.
struct DatabaseEntry {
    int index;
    constexpr operator int() const { return index; }
};

constexpr int kImageFolder = 0;
constexpr DatabaseEntry kTemplatePath = {1};
constexpr DatabaseEntry kOutputPath = {2};
constexpr int kOutputTable = 3;  // of the last save of the sheet
constexpr int kBlockLinkChoice = 15;
constexpr int kCameraSettings = 16;
constexpr int kBlockLinkSettings = 17;
constexpr int kBlockLinkRecord = 18;
constexpr int kImageFormat = 19;  // "BMP" or "JPG"
constexpr int kShapeFile = 20;
constexpr int kCoordinateFolder = 21;
constexpr int kFormChoice = 22;  // "+" or "-", output path, "|", form
constexpr int kShapeImportOption = 23;
constexpr DatabaseEntry kUtilityDatabase = {24};
constexpr int kAccessFormat = 25;  // "97" or "2000"
constexpr int kFeatureFileFolder = 26;
constexpr int kNoteFile = 27;
constexpr int kInsertBlocksGrid = 28;
constexpr int kAsciiSettings = 31;
constexpr int kReferenceFiles = 32;
constexpr int kImportedSets = 33;
constexpr int kShapeExport = 34;   // what was checked, the folder and the features of the last export
constexpr int kRecordsTable = 35;  // that the panel of records has shown last
}  // namespace state

// The value of an index; "" when there is none. The file is made when it is missing.
std::string readState(int index);
// Stores a value. Indices outside 0 to 36 are ignored, and so is a file that cannot be written.
void writeState(const std::string& value, int index);
void writeState(const dao::DatabasePath& path, state::DatabaseEntry entry);
void writeState(const std::string&, state::DatabaseEntry) = delete;

}  // namespace norvane
