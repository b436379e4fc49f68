// Indexed coordinate files of any bytes. The first byte says whether an index of other points is there too.
#include "fuzz/coordinate_checks.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1) return 0;
    std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    std::filesystem::remove(fuzzFile("points.zgi"));
    // Some of the bytes as an index: it must be seen to be none.
    if (data[0] & 1) putFuzzFile("points.zgi", bytes.substr(0, bytes.size() / 2));
    putFuzzFile("points.zgc", bytes);
    auto file = MakeCoordinateFile(kIndexedZgc);
    if (!file->Open(fuzzFile("points.zgc"))) {
        require(file->error != kNoError, "a file is refused without a reason");
        require(fuzzFileContent("points.zgc") == bytes, "a file that is refused has changed");
        return 0;
    }
    exerciseCoordinateFile(*file, false);
    return 0;
}
