// The one coordinate file that the process has open, whatever its kind. Points are in the working form.
//
// Operations give 1 (or a count) for success and 0 for failure; the reason is the `error` of the file.
// Messages go to the command line, and only when `quiet` is 0.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "module/coords/coordinate_file.h"
#include "module/coords/point_range.h"

namespace norvane {

struct PointStoreRecord {
    std::unique_ptr<CoordinateFile> currentFile;  // null when closed
    int isAutomation = 0;                         // the points are those of the drawing
    std::string rangeText;
    std::optional<RangeWalk> walk;  // through the range
};
extern PointStoreRecord PointStore;

// Opens a file, or makes it: when there is none, or with `create` in place of the one that is there. A format
// of -1 leaves that of a new file to its extension and the Lisp symbol new_crdform.
int PointStoreOpen(const std::string& path, int create, int format);
void PointStoreClose();
int PointStoreIsOpen();
int PointStoreFormat();  // -1 when closed
std::string PointStorePath();

// How many points a range has; null: how many places for points the file has.
long PointStoreCount(const char* range);
int PointStoreFind(const std::string& name, PointRecord& point, int quiet);
// The point or the next one in a direction: 1 above, -1 below.
int PointStoreFindNear(const std::string& name, PointRecord& point, int quiet, int direction);
// A description that is too long is cut.
int PointStoreWrite(const PointRecord& point, int quiet);
// Many at once, which is much faster on files that are kept in order. How many went in.
size_t PointStoreWriteAll(std::vector<PointRecord> points, int quiet);
// The same into a copy of the open file under another path, which PointStoreReplace then puts into its place;
// until then the open file is as it was. False when not all of them went in, and there is no copy.
bool PointStoreWriteBeside(std::vector<PointRecord> points, const std::string& temporaryPath);
std::string PointStoreHighest();
std::string PointStoreLowest();

// Sets out on a range; point groups in it are looked up by the survey product.
int PointStoreSetRange(const std::string& range);
// The next point of the range, or of the file when none is set. 0 at the end.
int PointStoreNext(PointRecord& point);

// Turns a name into the one `step` further on. 0 when the open file is numeric and the number was held within
// its bounds.
int IncrementPointName(std::string& name, long step);

int PointStoreCopyHeader(const CoordinateFile& source);
int PointStoreDelete();
int PointStoreRename(const std::string& newPath);
int PointStoreReplace(const std::string& temporaryPath);

}  // namespace norvane
