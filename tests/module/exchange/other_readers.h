// Programs that read shape files and know nothing of ours. Both print the same of the same file.
#pragma once

#include <cstdlib>
#include <string>

#include "tests/platform/dao/scratch.h"

inline const std::string kScripts = NORVANE_SOURCE_DIR "/tests/module/exchange/";

inline bool havePyshp() {
    static const bool have = std::system("/usr/bin/python3 -c 'import shapefile' >/dev/null 2>&1") == 0;
    return have;
}
inline bool haveNodeShapefile() {
    static const bool have = std::system("node -e 'require(\"shapefile\")' >/dev/null 2>&1") == 0;
    return have;
}
inline std::string pyshp(const std::string& stem) {
    return outputOf("/usr/bin/python3 '" + kScripts + "dump_shapes.py' '" + stem + "'");
}
inline std::string nodeShapefile(const std::string& stem) {
    return outputOf("node '" + kScripts + "dump_shapes.js' '" + stem + "'");
}
