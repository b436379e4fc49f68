// Points of coordinate files, as every kind of file gives and takes them.
#pragma once

#include <cstdint>
#include <string>

namespace norvane {

// "No elevation", in the working form.
constexpr double kNoElevation = -99999999.0;

struct PointRecord {
    double easting = 0;
    double northing = 0;
    double elevation = 0;
    int32_t recordPosition = 0;  // place in the file
    std::string name;            // number or name
    std::string description;
    std::string attribute;  // short code
};

// Kinds of coordinate files. There is no 2.
enum CoordinateFormat : int {
    kNumericCrd = 0,       // .crd, the number is the place
    kAlphanumericCrd = 1,  // .crd, sorted by name
    kIndexedZgc = 3,       // .zgc with .zgi
    kIndexedCrd = 4,       // .crd with .idx
    kModuleZak = 5,        // .zak, through another module
    kModuleMdb = 6,        // .mdb, through another module
    kDrawingPoints = 7,    // points of the open drawing
};
constexpr int kNoFile = -1;
constexpr int kIndexMissing = -2;

// Why an operation on a coordinate file failed.
enum CoordinateError : int {
    kNoError = 0,
    kNameTooLong = 1,
    kNameEmpty = 2,
    kNumberTooLow = 3,
    kNumberTooHigh = 4,
    kNoNumber = 5,
    kWrongVersion = 6,
    kRefused = 7,
    kDescriptionTooLong = 8,
    kAttributeTooLong = 9,
    kNoSuchPoint = 10,
    kModuleRefused = 12,
    kModuleBadRecord = 13,
    kBadCharacters = 14,
    kAddFailed = 15,
    kRemoveFailed = 17,
    kCannotCreate = 20,
    kCannotOpen = 21,
    kNoDrawing = 22,
    kReadFailed = 23,
    kCannotDelete = 25,
    kCannotRename = 26,
    kIndexFailed = 29,
    kTooManyFiles = 30,
    kWrongExtension = 32,
    kNoModule = 33,
    kModuleError34 = 34,
    kModuleError35 = 35,
    kNotSupported = 50,
    kOutOfMemory = 51,
};

}  // namespace norvane
