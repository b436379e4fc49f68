#include "module/coords/coordinate_file.h"

#include "module/coords/alphanumeric_file.h"
#include "module/coords/coordinate_format.h"
#include "module/coords/coordinate_host.h"
#include "module/coords/indexed_file.h"
#include "module/coords/note_file.h"
#include "module/coords/numeric_file.h"
#include "module/coords/point_names.h"
#include "module/coords/point_range.h"
#include "platform/files/files.h"
#include "platform/text/text.h"
#include "platform/text/wild_cards.h"

namespace norvane {

std::unique_ptr<CoordinateFile> MakeCoordinateFile(int format) {
    switch (format) {
        case kNumericCrd:
            return std::make_unique<NumericFile>();
        case kAlphanumericCrd:
            return std::make_unique<AlphanumericFile>();
        case kIndexedZgc:
        case kIndexedCrd:
            return std::make_unique<IndexedFile>(format);
        default:
            return nullptr;
    }
}

int CoordinateFile::fail(int reason, int quiet, const std::string& message) {
    if (!quiet) TheCoordinateHost().print(message);
    return fail(reason);
}

void CoordinateFile::widenBounds(const std::string& name) {
    if (highestName.empty() || CompareNames(name, highestName) > 0) highestName = name;
    if (lowestName.empty() || CompareNames(name, lowestName) < 0) lowestName = name;
}

int CoordinateFile::Create(const std::string& filePath, int descriptionLimit) {
    if (!createEmpty(filePath, descriptionLimit)) return 0;
    files::remove(NotePath(files::native(filePath)));
    return 1;
}

size_t CoordinateFile::WriteAll(const std::vector<PointRecord>& points, int quiet) {
    size_t written = 0;
    for (const PointRecord& point : points)
        if (Write(point, quiet)) ++written;
    return written;
}

int CoordinateFile::ValidateName(const std::string& name) const {
    if (static_cast<int>(name.size()) >= MaxNameLength()) return kNameTooLong;
    return name.empty() ? kNameEmpty : 0;
}

int CoordinateFile::SetHeaderText(const std::string& text) {
    headerText = text;
    return WriteHeader();
}

int CoordinateFile::SetHeaderNumber(const std::string& number) {
    headerNumber = number;
    return WriteHeader();
}

int CoordinateFile::SetHeaderDate(const std::string& date) {
    headerDate = date;
    return WriteHeader();
}

int CoordinateFile::CopyHeader(const CoordinateFile& source) {
    headerText = source.headerText;
    headerNumber = source.headerNumber;
    headerDate = source.headerDate;
    return WriteHeader();
}

bool CoordinateFile::readAll(std::vector<PointRecord>& points) {
    PointRecord point;
    Rewind();
    while (Move(nullptr, point, 1)) points.push_back(point);
    return error == kNoSuchPoint;
}

bool CoordinateFile::replaceBy(const std::vector<PointRecord>& points) {
    std::string temporary = TemporaryPath(path, format);
    std::unique_ptr<CoordinateFile> file = makeSame();
    if (!file->createEmpty(temporary, MaxDescriptionLength() - 1)) return false;
    bool whole = file->CopyHeader(*this) && file->WriteAll(points, 1) == points.size();
    if (!whole) {
        file->DeleteFile();
        return false;
    }
    file.reset();
    return Replace(temporary) != 0;
}

int CoordinateFile::Pack() {
    std::vector<PointRecord> points;
    return readAll(points) && replaceBy(points) ? 1 : 0;
}

bool CoordinateFile::isWanted(const PointRecord& point, const PointRange& range,
                              const char* descriptionPattern) {
    if (!range.contains(point.name)) return false;
    if (!descriptionPattern) return true;
    std::string description = text::upper(point.description), pattern = text::upper(descriptionPattern);
    return description == pattern || text::matchesWildCards(description, pattern);
}

int CoordinateFile::Remove(const std::string& name, int quiet) {
    return RemoveRange(name.c_str(), nullptr, quiet);
}

int CoordinateFile::RemoveRange(const char* range, const char* descriptionPattern, int quiet) {
    PointRange wanted(range ? range : "ALL", format == kNumericCrd);
    std::vector<PointRecord> points, kept;
    bool read = readAll(points);
    for (PointRecord& point : points)
        if (!isWanted(point, wanted, descriptionPattern)) kept.push_back(std::move(point));
    int removed = static_cast<int>(points.size() - kept.size());
    if (read && removed == 0) return 0;
    if (!read || !replaceBy(kept)) {
        fail(error ? error : kCannotCreate, quiet, "\nError: Could not create temporary file.\n");
        return -1;
    }
    RemoveNotes(wanted);
    return removed;
}

int CoordinateFile::RemoveNotes(const PointRange& range) {
    NoteFile notes(NotePath(path));
    if (!notes.read()) return 1;
    PointRecord point;
    bool removed =
        notes.removeIf([&](const std::string& id) { return range.contains(id) && !Find(id, point, 0, 1); });
    error = kNoError;
    return !removed || notes.write() ? 1 : 0;
}

}  // namespace norvane
