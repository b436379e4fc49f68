// A folder of coordinate files, and a host that keeps what it is told.
#pragma once

#include <gtest/gtest.h>

#include "module/coords/coordinate_file.h"
#include "module/coords/coordinate_format.h"
#include "module/coords/coordinate_host.h"
#include "platform/files/byte_order.h"
#include "platform/files/files.h"
#include "tests/platform/dao/scratch.h"

using namespace norvane;

class RecordingHost : public CoordinateHost {
  public:
    RecordingHost() { SetCoordinateHost(this); }
    ~RecordingHost() override { SetCoordinateHost(nullptr); }
    void print(const std::string& message) override { printed += message; }
    void alert(const std::string& message) override { alerts += message; }
    int formatOfNewFiles() override { return newFormat; }

    std::string printed, alerts;
    int newFormat = kAlphanumericCrd;
};

inline PointRecord makePoint(const std::string& name, double northing = 1, double easting = 2,
                             double elevation = 3, const std::string& description = "") {
    PointRecord p;
    p.name = name;
    p.northing = northing;
    p.easting = easting;
    p.elevation = elevation;
    p.description = description;
    return p;
}

// The names that a walk gives.
inline std::string namesOf(CoordinateFile& file, int delta = 1) {
    std::string names;
    PointRecord p;
    file.Rewind();
    while (file.Move(nullptr, p, delta)) names += (names.empty() ? "" : " ") + p.name;
    return names;
}

inline std::string littleDouble(double value) {
    std::string bytes(sizeof value, '\0');
    files::putLittle(bytes.data(), value);
    return bytes;
}

inline std::string padded(std::string text, size_t room) {
    text.resize(room, '\0');
    return text;
}

class CoordsTest : public testing::Test {
  protected:
    std::unique_ptr<CoordinateFile> create(int format, const std::string& name) {
        auto file = MakeCoordinateFile(format);
        EXPECT_TRUE(file->Create(folder_(name), 31));
        return file;
    }
    std::unique_ptr<CoordinateFile> open(const std::string& name) {
        auto file = MakeCoordinateFile(DetectFormat(folder_(name)));
        if (file && !file->Open(folder_(name))) file.reset();
        return file;
    }
    std::string bytes(const std::string& name) { return files::read(folder_(name)).value_or(""); }
    void put(const std::string& name, const std::string& content) { files::replace(folder_(name), content); }

    RecordingHost host_;
    ScratchFolder folder_;
    PointRecord point_;
};
