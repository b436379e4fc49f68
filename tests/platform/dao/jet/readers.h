// Other programs that read Access files, to be compared with.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/text/text.h"
#include "tests/platform/dao/scratch.h"

namespace jet {

inline bool haveReader(const std::string& reader) {
    // Looked for, since starting each takes as long as a comparison.
    auto stands = [](const char* variable, const std::string& file) {
        const char* folders = std::getenv(variable);
        for (const std::string& folder : text::split(folders ? folders : "", ':'))
            if (std::filesystem::exists(folder + "/" + file)) return true;
        return false;
    };
    if (reader == "mdbtools") return stands("PATH", "mdb-json");
    return stands("NODE_PATH", "mdb-reader") && stands("PATH", "node");
}

// What a comparison of files prints: a line a difference, and how many records were compared. readers: their
// names with + between them.
inline std::string comparison(const std::string& readers, const std::vector<std::string>& files) {
    std::string command = "/usr/bin/python3 " NORVANE_SOURCE_DIR
                          "/tests/platform/dao/jet/compare_readers.py " NORVANE_BIN_DIR "/jet " +
                          readers;
    for (const std::string& file : files) command += " '" + file + "'";
    return outputOf(command);
}

// What the readers that are here read otherwise than we do; "" where all agree.
inline std::string disagreement(const std::vector<std::string>& files) {
    std::vector<std::string> readers;
    for (const char* reader : {"mdbtools", "mdb-reader"})
        if (haveReader(reader)) readers.push_back(reader);
    if (readers.empty()) return "";
    std::string out = comparison(text::join(readers, "+"), files);
    // Nothing but the last line, which begins with a number.
    constexpr std::string_view kEnd = " records compared\n";
    size_t digits = out.find_first_not_of("0123456789");
    return digits > 0 && out.substr(std::min(digits, out.size())) == kEnd ? "" : out;
}

inline std::string disagreement(const std::string& file) {
    return disagreement(std::vector<std::string>{file});
}

}  // namespace jet
