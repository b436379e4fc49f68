// Other programs that read Access files, to be compared with.
#pragma once

#include <cctype>
#include <cstdlib>
#include <string>

#include "tests/platform/dao/scratch.h"

namespace jet {

inline bool haveReader(const std::string& reader) {
    static const bool mdbtools = std::system("mdb-ver -M >/dev/null 2>&1") == 0;
    static const bool mdbReader =
        std::system("node -e 'require.resolve(\"mdb-reader\")' >/dev/null 2>&1") == 0;
    return reader == "mdbtools" ? mdbtools : mdbReader;
}

// What a comparison of files prints: a line a difference, and how many records were compared.
inline std::string comparison(const std::string& reader, const std::string& files) {
    return outputOf("/usr/bin/python3 " NORVANE_SOURCE_DIR
                    "/tests/platform/dao/jet/compare_readers.py " NORVANE_BIN_DIR "/jet " +
                    reader + " " + files);
}

// What a reader reads otherwise than we do; "" where they agree, or the reader is not here.
inline std::string disagreement(const std::string& reader, const std::string& path) {
    if (!haveReader(reader)) return "";
    std::string out = comparison(reader, "'" + path + "'");
    constexpr std::string_view kEnd = " records compared\n";
    return out.find(kEnd) + kEnd.size() == out.size() && std::isdigit(out[0]) ? "" : out;
}

// The same for all of them.
inline std::string disagreement(const std::string& path) {
    return disagreement("mdbtools", path) + disagreement("mdb-reader", path);
}

}  // namespace jet
