// Flat coordinate files of any bytes.
#include "fuzz/coordinate_checks.h"
#include "module/coords/coordinate_format.h"
#include "module/coords/point_names.h"

using namespace norvane;

namespace {

// A file whose names are in order finds each of its points.
bool isSorted(CoordinateFile& file) {
    PointRecord point;
    std::string previous;
    file.Rewind();
    while (file.Move(nullptr, point, 1)) {
        if (CompareNames(point.name, previous) <= 0 || point.name != NormalizedName(point.name)) return false;
        previous = point.name;
    }
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    putFuzzFile("points.crd", {reinterpret_cast<const char*>(data), size});
    std::string path = fuzzFile("points.crd");
    int format = DetectFormat(path);
    if (format != kNumericCrd && format != kAlphanumericCrd) return 0;
    auto file = MakeCoordinateFile(format);
    if (!file->Open(path)) {
        require(file->error != kNoError, "a file is refused without a reason");
        return 0;
    }
    exerciseCoordinateFile(*file, format == kAlphanumericCrd && !isSorted(*file));
    return 0;
}
