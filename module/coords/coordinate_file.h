// A coordinate file of any kind. Operations give 1 (or a count) for success and 0 for failure; `error` then
// tells the reason. Messages come only when `quiet` is 0. Points are in the file's own form.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "module/coords/point_record.h"

namespace norvane {

class PointRange;

class CoordinateFile {
  public:
    explicit CoordinateFile(int fileFormat) : format(fileFormat) {}
    virtual ~CoordinateFile() = default;
    CoordinateFile(const CoordinateFile&) = delete;
    CoordinateFile& operator=(const CoordinateFile&) = delete;

    std::string highestName, lowestName;
    std::string path;
    int format;
    int error = kNoError;
    std::string headerText, headerNumber, headerDate;
    std::string lastName;  // of the point that was read last; "" after a change of the file

    // Opens a file for this process alone, or makes an empty one in place of one that is there, whose notes
    // go too, and opens it. descriptionLimit is the most bytes of a description, for files that can choose.
    virtual int Open(const std::string& filePath) = 0;
    int Create(const std::string& filePath, int descriptionLimit);

    // On failure the file is open as before, if that can be done. A copy goes over a file that is there, and
    // is then the open file.
    virtual int DeleteFile() = 0;
    virtual int CopyFile(const std::string& newPath) = 0;
    virtual int RenameFile(const std::string& newPath) = 0;

    virtual long RecordCount() = 0;
    // In bytes, with the one that ends the text.
    virtual int MaxNameLength() const = 0;
    virtual int MaxDescriptionLength() const = 0;
    // The names between which all names must lie; "" for no bound.
    virtual std::string HighestAllowed() const { return ""; }
    virtual std::string LowestAllowed() const { return ""; }

    // direction 0: the point of that name; 1: it or the next one above; -1: it or the next one below.
    virtual int Find(const std::string& name, PointRecord& point, int direction, int quiet) = 0;
    // Adds a point, or overwrites the one of its name.
    virtual int Write(const PointRecord& point, int quiet) = 0;
    // Writes many: the points in the file are afterwards the same as after single writes. How many went in;
    // `error` tells why one of the others did not.
    virtual size_t WriteAll(const std::vector<PointRecord>& points, int quiet);

    virtual int Remove(const std::string& name, int quiet);
    // Closes the gaps that removed and rewritten points have left.
    virtual int Pack();
    // Removes the points of a range (null: all) whose descriptions match a pattern with wild cards (null:
    // any), and their notes. How many were removed; -1 when that failed and the file is as it was.
    virtual int RemoveRange(const char* range, const char* descriptionPattern, int quiet);
    // 0 for a good name; 1 too long, 2 empty, 3 and 4 out of bounds, 5 not of the right kind.
    virtual int ValidateName(const std::string& name) const;

    int SetHeaderText(const std::string& text);
    int SetHeaderNumber(const std::string& number);
    int SetHeaderDate(const std::string& date);
    // The texts of another file's header.
    int CopyHeader(const CoordinateFile& source);
    // Puts another file in the place of this one and opens it. At any moment, a crash included, the old or
    // the new one is there whole.
    virtual int Replace(const std::string& temporaryPath) = 0;

    // From a position, or with null from the point read last, `delta` points further.
    virtual int Move(const int32_t* position, PointRecord& point, int delta) = 0;
    virtual int32_t GetPosition() const = 0;
    // Before the first point: a Move by 1 gives it.
    virtual void Rewind() = 0;
    // Writes the three texts of the header into the file.
    virtual int WriteHeader() = 0;
    // Takes the blocks of points of the range that are no longer in the file out of the file of notes.
    virtual int RemoveNotes(const PointRange& range);

  protected:
    // As Create, but the file of notes stays.
    virtual int createEmpty(const std::string& filePath, int descriptionLimit) = 0;
    // A closed file of the same kind, for a new version of this one.
    virtual std::unique_ptr<CoordinateFile> makeSame() const = 0;
    // Every point of the file in its order; false when one cannot be read.
    bool readAll(std::vector<PointRecord>& points);
    // A new version that holds these points. The file is as it was on failure.
    bool replaceBy(const std::vector<PointRecord>& points);
    // Whether a point falls in a range and its description matches.
    static bool isWanted(const PointRecord& point, const PointRange& range, const char* descriptionPattern);
    void widenBounds(const std::string& name);
    int fail(int reason) {
        error = reason;
        return 0;
    }
    // Prints unless quiet, and fails.
    int fail(int reason, int quiet, const std::string& message);
};

// A closed file of a format that this program reads by itself; null for any other.
std::unique_ptr<CoordinateFile> MakeCoordinateFile(int format);

}  // namespace norvane
