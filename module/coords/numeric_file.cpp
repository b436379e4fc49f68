#include "module/coords/numeric_file.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

#include "module/coords/coordinate_format.h"
#include "module/coords/coordinate_host.h"
#include "module/coords/point_names.h"
#include "platform/files/byte_order.h"
#include "platform/text/code_page.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr size_t kSlotSize = 56;
constexpr size_t kHighestAt = 0, kNumberAt = 8, kDateAt = 16, kTextAt = 24, kTextRoom = 32;
constexpr size_t kLongestDescription = 31;
constexpr int32_t kMostPoints = 99999;
// The elevation of a point that is at (0, 0, 0), since three zeros are a free slot.
constexpr double kOrigin = std::bit_cast<double>(uint64_t{0x3EB0C6F7A0B5ED8D});

bool isFree(const char* slot) {
    for (size_t at : {0, 8, 16})
        if (files::getLittle<double>(slot + at) != 0.0) return false;
    return true;
}

int32_t wholeNumber(double value) {
    constexpr double kMost = std::numeric_limits<int32_t>::max();
    return value >= 0 ? static_cast<int32_t>(std::min(value, kMost)) : 0;
}

// A date as YYYY.MMDD, of that form or of month/day/year.
double dateNumber(const std::string& date) {
    std::vector<std::string> parts = text::split(date, '/');
    if (parts.size() < 3) return text::toReal(date);
    return text::toReal(parts[2]) + text::toReal(parts[0]) / 100 + text::toReal(parts[1]) / 10000;
}

}  // namespace

NumericFile::NumericFile() : FlatFile(kNumericCrd, {kSlotSize, kSlotSize}) {}

std::string NumericFile::newHeader() const {
    std::string header(kSlotSize, '\0');
    CreationDate date = Today();
    std::string day = ZeroFilled(text::format("%4d.%2d%2d", date.year, date.month, date.day));
    files::putLittle(&header[kDateAt], text::toReal(day));
    return header;
}

bool NumericFile::load() {
    const char* start =
        file_->view(0, std::min<size_t>(kAlphanumericHeaderSize, static_cast<size_t>(file_->size())));
    if (start && IsAlphanumericHeader({start, static_cast<size_t>(file_->size())}))
        return fail(kNotSupported);
    const char* header = file_->view(0, kSlotSize);
    if (!header) return fail(kReadFailed);
    headerText = textAt(header + kTextAt, kTextRoom);
    headerNumber = text::format("%.3f", files::getLittle<double>(header + kNumberAt));
    headerDate = text::format("%4.4f", files::getLittle<double>(header + kDateAt));
    highestName = std::to_string(wholeNumber(files::getLittle<double>(header + kHighestAt)));
    lowestName = LowestAllowed();
    return true;
}

int32_t NumericFile::highest() const {
    return NumberOfName(highestName);
}

// The slot of the point with that index (its number less one); null when it cannot be read.
const char* NumericFile::slot(int32_t index) const {
    return file_ ? file_->view(offsetOf(index), kSlotSize) : nullptr;
}

void NumericFile::take(const char* bytes, int32_t index, PointRecord& point) {
    readCoordinates(bytes, point);
    bool origin = point.northing == 0.0 && point.easting == 0.0 && point.elevation == kOrigin;
    if (origin) point.elevation = 0.0;
    point.name = std::to_string(index + 1);
    point.recordPosition = index + 1;
    position = index;
    lastName = point.name;
    error = kNoError;
}

int NumericFile::Find(const std::string& name, PointRecord& point, int direction, int quiet) {
    int32_t number = NumberOfName(name);
    if (number > highest()) {
        if (direction != -1)
            return fail(kNoSuchPoint, quiet, "\nRequested point number greater than highest in file.");
        position = highest();  // as an index one above the highest
        return Move(nullptr, point, -1);
    }
    if (number < 1) {
        if (direction != 1) return fail(kNumberTooLow, quiet, "\nPoint numbers must be >= 1");
        Rewind();
        return Move(nullptr, point, 1);
    }
    const char* bytes = slot(number - 1);
    if (!bytes) return fail(kReadFailed, quiet, "\nCan't read point from numeric crd file.\n");
    position = number - 1;
    if (isFree(bytes)) return direction ? Move(nullptr, point, direction) : fail(kNoSuchPoint);
    take(bytes, position, point);
    return 1;
}

int NumericFile::Move(const int32_t* from, PointRecord& point, int delta) {
    int64_t index = int64_t{from ? *from : position} + delta;
    int64_t count = RecordCount();
    for (; index >= 0 && index < count; index += delta < 0 ? -1 : 1) {
        const char* bytes = slot(static_cast<int32_t>(index));
        if (!bytes) return fail(kReadFailed);
        if (!isFree(bytes)) {
            take(bytes, static_cast<int32_t>(index), point);
            return 1;
        }
        if (delta == 0) break;
    }
    return fail(kNoSuchPoint);
}

int NumericFile::ValidateName(const std::string& name) const {
    if (int reason = CoordinateFile::ValidateName(name)) return reason;
    int32_t number = NumberOfName(name);
    if (name != std::to_string(number)) return kNoNumber;
    return number < 1 ? kNumberTooLow : number > kMostPoints ? kNumberTooHigh : 0;
}

int NumericFile::Write(const PointRecord& point, int quiet) {
    int written = put(point, quiet);
    return written && !file_->flush() ? fail(kReadFailed) : written;
}

size_t NumericFile::WriteAll(const std::vector<PointRecord>& points, int quiet) {
    size_t written = 0;
    for (const PointRecord& point : points) {
        if (put(point, quiet)) ++written;
        if (error == kReadFailed) return 0;
    }
    if (!file_ || file_->flush()) return written;
    error = kReadFailed;
    return 0;
}

int NumericFile::put(const PointRecord& given, int quiet) {
    error = kNoError;
    if (!file_) return fail(kCannotOpen);
    PointRecord point = given;
    if (point.northing == 0.0 && point.easting == 0.0 && point.elevation == 0.0) point.elevation = kOrigin;
    std::string description = text::encode(point.description);
    if (description.size() > kLongestDescription) return fail(kDescriptionTooLong);
    int32_t number = NumberOfName(point.name);
    if (!point.name.empty() && point.name != std::to_string(number))
        return fail(
            kNoNumber, quiet,
            text::format("\nError: pt# %s invalid for current CRD format of numeric only point numbers.",
                         point.name.c_str()));
    if (number < 1) return fail(kNumberTooLow, quiet, "\nError: Point number must be greater than 0.");
    if (number > kMostPoints)
        return fail(kNumberTooHigh, quiet,
                    text::format("\nError: Point number must be less than %d.", kMostPoints + 1));
    char bytes[kSlotSize];
    putCoordinates(bytes, point, description);
    lastName.clear();
    return putSlot(number, bytes) ? 1 : fail(kReadFailed);
}

// Writes a slot, with the holes before it. The length of the file, not its header, says where it ends, and
// the header is mended by it; it comes last, so that it never tells of slots that are not there.
bool NumericFile::putSlot(int32_t number, const char* bytes) {
    int64_t oldSize = file_->size();
    auto last = static_cast<int32_t>(std::max<int64_t>(oldSize / static_cast<int64_t>(kSlotSize) - 1, 0));
    bool written = true;
    if (number > last + 1) {
        std::string holes(static_cast<size_t>(number - last - 1) * kSlotSize, '\0');
        written = file_->write(offsetOf(last), holes);
    }
    written = written && file_->write(offsetOf(number - 1), {bytes, kSlotSize});
    int32_t reached = std::max(last, number);
    if (written && reached != highest()) {
        char stored[sizeof(double)];
        files::putLittle(stored, static_cast<double>(reached));
        // The slots first: a full disk must not leave a header that counts them.
        written = file_->flush() && file_->write(kHighestAt, {stored, sizeof stored});
    }
    if (!written) {
        file_->truncate(oldSize);
        return false;
    }
    highestName = std::to_string(reached);
    return true;
}

int NumericFile::WriteHeader() {
    if (!file_) return fail(kCannotOpen);
    char header[kSlotSize - kNumberAt];
    files::putLittle(header, text::toReal(headerNumber));
    files::putLittle(header + (kDateAt - kNumberAt), dateNumber(headerDate));
    putText(header + (kTextAt - kNumberAt), kTextRoom, text::encode(headerText));
    bool written = file_->write(kNumberAt, {header, sizeof header}) && file_->flush();
    return written ? 1 : fail(kReadFailed);
}

}  // namespace norvane
