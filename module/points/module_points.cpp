#include "module/points/module_points.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <limits>

#include "module/cad/ads_owners.h"
#include "module/cad/lisp_symbols.h"
#include "module/cad/loaded_modules.h"
#include "module/coords/coordinate_format.h"
#include "module/coords/point_names.h"
#include "module/coords/point_range.h"
#include "platform/ads/editor.h"
#include "platform/files/files.h"
#include "platform/files/random_file.h"
#include "platform/text/code_page.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr const char* kModule = "kmapdb";
constexpr size_t kBoundRoom = 256;
constexpr size_t kLongestName = 255, kMostDigits = 7;
// What a call gives that did not come to its end.
constexpr long kNoAnswer = std::numeric_limits<long>::min();

long addressOf(const void* object) {
    return static_cast<long>(reinterpret_cast<intptr_t>(object));
}

// Calls a function of the module; the list is the call's. Its number, or kNoAnswer.
long answerTo(resbuf* call) {
    ResultBuffers list(call), result;
    if (acedInvoke(list.get(), result.out()) != RTNORM || !result) return kNoAnswer;
    const ads_u_val& value = result.get()->resval;
    switch (result.get()->restype) {
        case RTSHORT:
            return value.rint;
        case RTLONG:
            return value.rlong;
        case RTREAL:
            return static_cast<long>(std::clamp(value.rreal, 0.0, 2147483647.0));
        default:
            return kNoAnswer;
    }
}

int errorOf(long status) {
    switch (status) {
        case 1:
        case 2:
            return kNoError;
        case -13:
        case -12:
            return kCannotOpen;
        case -11:
        case -10:
        case -9:
            return kModuleError35;
        case -7:
            return kModuleBadRecord;
        case -5:
            return kNoDrawing;
        case -4:
            return kReadFailed;
        case -3:
        case -1:
            return kModuleError34;
        default:
            return kNotSupported;
    }
}

void alertCannotOpen() {
    acedAlert(
        "Failed to open coordinate file. File may already be opened by another application\n"
        "or may not exist or may be read-only.");
}

bool loadModule() {
    if (IsArxLoaded(kModule)) return true;
    std::string folder;
    GetLispValue(folder, "lspdir$");
    return acedArxLoad(files::join(folder, std::string(kModule) + ".arx").c_str()) == RTNORM;
}

template <size_t Room>
void putText(char (&to)[Room], const std::string& encoded) {
    std::memset(to, 0, Room);
    std::memcpy(to, encoded.data(), std::min(encoded.size(), Room - 1));
}

template <size_t Room>
std::string textOf(const char (&from)[Room]) {
    std::string_view bytes(from, Room);
    return text::decode(bytes.substr(0, bytes.find('\0')));
}

}  // namespace

ModulePoints::~ModulePoints() {
    close();
}

std::string ModulePoints::function(const std::string& pattern) const {
    return "cf:kmap_" + text::replaceAll(pattern, "*", format == kModuleZak ? "zak" : "ldd");
}

int ModulePoints::done(long status, int refusal) {
    error = status == 0 ? refusal : errorOf(status);
    return error == kNoError ? 1 : 0;
}

// --- Files --------------------------------------------------------------------------------------------

int ModulePoints::openWith(const std::string& filePath, bool create) {
    close();
    error = kNoError;
    std::string native = files::native(filePath);
    if (!text::endsWithNoCase(native, format == kModuleZak ? ".zak" : ".mdb")) return fail(kWrongExtension);
    if (!create && !files::RandomFile::open(native, files::RandomFile::Mode::kUpdate)) {
        alertCannotOpen();
        return fail(kCannotOpen);
    }
    if (!loadModule()) return fail(kNoModule);
    char highest[kBoundRoom] = "", lowest[kBoundRoom] = "";
    long status = answerTo(acutBuildList(RTSTR, function("open_*_db").c_str(), RTLONG, addressOf(&handle_),
                                         RTSTR, native.c_str(), RTSHORT, create ? 1 : 0, RTLONG,
                                         addressOf(highest), RTLONG, addressOf(lowest), 0));
    if (!done(status, kNotSupported)) {
        if (error == kCannotOpen) alertCannotOpen();
        handle_ = 0;
        return 0;
    }
    path = native;
    highestName = textOf(highest);
    lowestName = textOf(lowest);
    lastName.clear();
    atStart_ = true;
    return 1;
}

int ModulePoints::Open(const std::string& filePath) {
    return openWith(filePath, false);
}

int ModulePoints::createEmpty(const std::string& filePath, int) {
    return openWith(filePath, true);
}

void ModulePoints::close() {
    if (handle_)
        answerTo(acutBuildList(RTSTR, function("close_*_db").c_str(), RTLONG, addressOf(&handle_), 0));
    handle_ = 0;
}

int ModulePoints::DeleteFile() {
    close();
    return files::remove(path) ? 1 : fail(kCannotDelete);
}

int ModulePoints::CopyFile(const std::string& newPath) {
    std::string source = path, target = files::native(newPath);
    close();
    std::optional<std::string> content = files::read(source);
    if (content && files::replace(target, *content)) return Open(target);
    Open(source);
    return fail(kCannotCreate);
}

int ModulePoints::RenameFile(const std::string& newPath) {
    std::string source = path, target = files::onDisk(newPath);
    close();
    bool renamed = !files::exists(target) && std::rename(files::onDisk(source).c_str(), target.c_str()) == 0;
    int opened = Open(renamed ? target : source);
    return renamed ? opened : fail(kCannotRename);
}

int ModulePoints::Replace(const std::string& temporaryPath) {
    std::string target = files::onDisk(path);
    close();
    bool renamed = std::rename(files::onDisk(temporaryPath).c_str(), target.c_str()) == 0;
    int opened = Open(target);
    return renamed ? opened : fail(kCannotRename);
}

long ModulePoints::RecordCount() {
    if (!handle_) return 0;
    long count = answerTo(acutBuildList(RTSTR, function("get_number_points_*").c_str(), RTLONG, handle_,
                                        RTLONG, addressOf(this), 0));
    return std::max(count, 0L);
}

// --- Points -------------------------------------------------------------------------------------------

int ModulePoints::ValidateName(const std::string& name) const {
    if (name.empty() || name.size() > kLongestName) return kNameEmpty;
    auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    auto isAllowed = [&](char c) {
        return isDigit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
    };
    bool digits = std::all_of(name.begin(), name.end(), isDigit);
    bool good = digits ? name.size() <= kMostDigits : std::all_of(name.begin(), name.end(), isAllowed);
    return good ? 0 : kBadCharacters;
}

int ModulePoints::take(const ZakPointBlock& block, PointRecord& point) {
    point.northing = block.northing;
    point.easting = block.easting;
    point.elevation = block.elevation;
    point.name = textOf(block.name);
    point.description = textOf(block.description);
    point.attribute.clear();
    point.recordPosition = 0;
    lastName = point.name;
    atStart_ = false;
    error = kNoError;
    return 1;
}

int ModulePoints::Find(const std::string& name, PointRecord& point, int direction, int) {
    if (!handle_) return fail(kCannotOpen);
    if (int reason = ValidateName(name)) return fail(reason);
    ZakPointBlock block;
    lastName.clear();  // where the module stands after a search in vain is its own affair
    long status = answerTo(acutBuildList(RTSTR, function("find_point_*").c_str(), RTLONG, handle_, RTSTR,
                                         name.c_str(), RTSHORT, direction, RTLONG, addressOf(&block), 0));
    return done(status, kNoSuchPoint) ? take(block, point) : 0;
}

int ModulePoints::Move(const int32_t* from, PointRecord& point, int delta) {
    if (!handle_) return fail(kCannotOpen);
    if (delta < -1 || delta > 1) return fail(kNotSupported);
    if (from && *from < 0) Rewind();
    if (atStart_) {
        if (delta != 1 || lowestName.empty()) return fail(kNoSuchPoint);
        return Find(lowestName, point, 1, 1);
    }
    if (delta != 0) {
        long moved = answerTo(acutBuildList(RTSTR, function("move_record_pointer_*").c_str(), RTLONG, handle_,
                                            RTSHORT, delta, 0));
        if (!done(moved, kNoSuchPoint)) return 0;
    }
    ZakPointBlock block;
    long status = answerTo(acutBuildList(RTSTR, function("read_current_pos_*").c_str(), RTLONG, handle_,
                                         RTLONG, addressOf(&block), 0));
    return done(status, kNoSuchPoint) ? take(block, point) : 0;
}

int ModulePoints::Write(const PointRecord& point, int) {
    if (!handle_) return fail(kCannotOpen);
    if (int reason = ValidateName(point.name)) return fail(reason);
    std::string name = text::encode(point.name), description = text::encode(point.description);
    ZakPointBlock block;
    if (name.size() >= sizeof block.name) return fail(kNameTooLong);
    if (description.size() >= sizeof block.description) return fail(kDescriptionTooLong);
    block.northing = point.northing;
    block.easting = point.easting;
    block.elevation = point.elevation;
    putText(block.name, name);
    putText(block.description, description);
    long status = answerTo(acutBuildList(RTSTR, function("write_point_*").c_str(), RTLONG, handle_, RTLONG,
                                         addressOf(&block), 0));
    lastName.clear();
    if (!done(status, kModuleRefused)) return 0;
    widenBounds(point.name);
    return 1;
}

int ModulePoints::removeOne(const std::string& name) {
    lastName.clear();
    return done(answerTo(acutBuildList(RTSTR, function("remove_point_*").c_str(), RTLONG, handle_, RTSTR,
                                       name.c_str(), 0)),
                kNoSuchPoint);
}

int ModulePoints::removeAll() {
    highestName = format == kModuleZak ? "ZZZZZZZZ" : "ZZZZZZZ";
    lowestName = "1";
    error = kNotSupported;
    lastName.clear();
    return done(answerTo(acutBuildList(RTSTR, function("remove_points_*").c_str(), RTLONG, handle_, RTLONG,
                                       addressOf(this), 0)),
                kNotSupported);
}

int ModulePoints::Remove(const std::string& name, int) {
    if (!handle_) return fail(kCannotOpen);
    if (int reason = ValidateName(name)) return fail(reason);
    if (!removeOne(name)) return 0;
    RemoveNotes(PointRange(name));
    return 1;
}

int ModulePoints::RemoveRange(const char* range, const char* descriptionPattern, int) {
    if (!handle_) return -1;
    PointRange wanted(range ? range : "ALL");
    int removed = 0;
    if (wanted.isAll() && !descriptionPattern) {
        removed = static_cast<int>(RecordCount());
        if (!removeAll()) return -1;
    } else {
        std::vector<PointRecord> points;
        if (!readAll(points)) return -1;
        for (const PointRecord& point : points)
            if (isWanted(point, wanted, descriptionPattern) && removeOne(point.name)) ++removed;
    }
    RemoveNotes(wanted);
    return removed;
}

}  // namespace norvane
