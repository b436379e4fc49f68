#include "module/exchange/file_stem.h"

#include "platform/files/files.h"

namespace norvane {

std::string FileStem(std::string_view path) {
    std::string stem = files::native(path);
    size_t at = stem.find_last_of("./");
    if (at != std::string::npos && stem[at] == '.') stem.resize(at);
    return stem;
}

}  // namespace norvane
