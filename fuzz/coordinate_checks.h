// What must hold of a coordinate file of any bytes.
#pragma once

#include "fuzz/fuzz_folder.h"
#include "module/coords/coordinate_file.h"
#include "module/coords/point_range.h"

using namespace norvane;

// Walks, finds, writes and removes in an open file. `mayFail`: bytes that are no points, so that reading may
// fail on the way.
inline void exerciseCoordinateFile(CoordinateFile& file, bool mayFail) {
    constexpr int kMostPoints = 3000;
    PointRecord point;
    file.RecordCount();
    for (int direction : {1, -1}) {
        file.Rewind();
        for (int i = 0; i < kMostPoints && file.Move(nullptr, point, direction); ++i) continue;
    }
    for (const char* name : {"1", "5", "A1", "ZZ", "", "-3", "99999999999"})
        for (int direction : {-1, 0, 1}) file.Find(name, point, direction, 1);
    RangeWalk walk(file, PointRange("9-3,A-B,1", file.format == kNumericCrd));
    for (int i = 0; i < kMostPoints && walk.next(point); ++i) continue;

    PointRecord added;
    added.name = "77";
    added.northing = 12.5;
    if (file.Write(added, 1))
        require(mayFail || (file.Find("77", point, 0, 1) && point.northing == 12.5),
                "a point that was written is gone");
    file.SetHeaderText("text");
    file.RemoveRange("70-80,B", nullptr, 1);
    file.Pack();
    std::vector<PointRecord> many(3);
    for (size_t i = 0; i < many.size(); ++i) many[i].name = std::to_string(3 - i);
    file.WriteAll(many, 1);
}
