#include "module/coords/flat_file.h"

#include <algorithm>
#include <cstdio>
#include <ctime>

#include "module/coords/coordinate_format.h"
#include "module/coords/coordinate_host.h"
#include "platform/files/byte_order.h"
#include "platform/files/files.h"
#include "platform/text/code_page.h"
#include "platform/text/text.h"

namespace norvane {

using files::RandomFile;

namespace {

constexpr size_t kDescriptionAt = 24, kDescriptionRoom = 32;

std::unique_ptr<RandomFile> openAlone(const std::string& path, RandomFile::Mode mode) {
    return RandomFile::open(path, mode, RandomFile::Sharing::kDenyWriters);
}

}  // namespace

CreationDate Today() {
    std::time_t now = std::time(nullptr);
    std::tm parts{};
    ::gmtime_r(&now, &parts);
    return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday};
}

std::string ZeroFilled(std::string s) {
    std::replace(s.begin(), s.end(), ' ', '0');
    return s;
}

std::string FlatFile::textAt(const char* bytes, size_t room) {
    std::string_view stored(bytes, room);
    return text::decode(stored.substr(0, std::min(stored.find('\0'), room - 1)));
}

void FlatFile::putText(char* bytes, size_t room, const std::string& encoded) {
    size_t length = std::min(encoded.size(), room - 1);
    std::copy_n(encoded.data(), length, bytes);
    std::fill(bytes + length, bytes + room, '\0');
}

void FlatFile::readCoordinates(const char* record, PointRecord& point) {
    point.northing = files::getLittle<double>(record);
    point.easting = files::getLittle<double>(record + 8);
    point.elevation = files::getLittle<double>(record + 16);
    point.description = textAt(record + kDescriptionAt, kDescriptionRoom);
    point.attribute.clear();
}

void FlatFile::putCoordinates(char* record, const PointRecord& point, const std::string& encodedDescription) {
    files::putLittle(record, point.northing);
    files::putLittle(record + 8, point.easting);
    files::putLittle(record + 16, point.elevation);
    putText(record + kDescriptionAt, kDescriptionRoom, encodedDescription);
}

// Makes an opened file the one of this object. It is let go again when it is not of this kind.
bool FlatFile::adopt(std::unique_ptr<RandomFile> file, const std::string& filePath) {
    file_ = std::move(file);
    path = filePath;
    position = -1;
    lastName.clear();
    highestName.clear();
    lowestName.clear();
    if (load()) return true;
    file_.reset();
    return false;
}

int FlatFile::Open(const std::string& filePath) {
    error = kNoError;
    file_.reset();
    std::string native = files::native(filePath);
    auto file = openAlone(native, RandomFile::Mode::kUpdate);
    if (!file) {
        TheCoordinateHost().alert("Failed to open coordinate file:\n  " + filePath +
                                  "\nFile may be read-only or already opened by another.\n"
                                  "Read-only files cannot be used. Use Windows\n"
                                  "Explorer to make sure file is not read-only.");
        return fail(kCannotOpen);
    }
    return adopt(std::move(file), native) ? 1 : 0;
}

int FlatFile::createEmpty(const std::string& filePath, int) {
    error = kNoError;
    file_.reset();
    std::string native = files::native(filePath);
    auto file = openAlone(native, RandomFile::Mode::kCreate);
    if (!file || !file->write(0, newHeader()) || !file->flush())
        return fail(kCannotCreate, 0, "\nCan't open new file " + filePath);
    file.reset();
    return Open(filePath);
}

int FlatFile::DeleteFile() {
    file_.reset();
    return files::remove(path) ? 1 : fail(kCannotDelete);
}

int FlatFile::CopyFile(const std::string& newPath) {
    if (!file_ || !file_->flush()) return fail(kReadFailed);
    std::string target = files::native(newPath);
    std::optional<std::string> content = files::read(path);
    if (!content) return fail(kReadFailed);
    // A file that somebody works with is left alone.
    if (files::exists(target) && !openAlone(target, RandomFile::Mode::kUpdate)) return fail(kCannotCreate);
    if (!files::replace(target, *content)) return fail(kCannotCreate);
    return Open(target);
}

int FlatFile::RenameFile(const std::string& newPath) {
    std::string old = path, target = files::onDisk(newPath);
    file_.reset();
    // Another file of that name is not overwritten.
    bool renamed = !files::exists(target) && std::rename(files::onDisk(old).c_str(), target.c_str()) == 0;
    int opened = Open(renamed ? target : old);
    return renamed ? opened : fail(kCannotRename);
}

long FlatFile::RecordCount() {
    if (!file_) return 0;
    return static_cast<long>(std::max<int64_t>(file_->size() - layout_.headerSize, 0) / layout_.recordSize);
}

int FlatFile::Replace(const std::string& temporaryPath) {
    error = kNoError;
    std::string temporary = files::native(temporaryPath);
    // Held from before it takes the name, so that nobody comes between.
    auto file = openAlone(temporary, RandomFile::Mode::kUpdate);
    if (!file || !file->sync()) return fail(kCannotOpen);
    std::string target = files::onDisk(path);
    if (std::rename(files::onDisk(temporary).c_str(), target.c_str()) != 0) return fail(kCannotRename);
    return adopt(std::move(file), target) ? 1 : 0;
}

}  // namespace norvane
