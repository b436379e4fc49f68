#include "hostcad/editor/previous_version.h"

#include <unistd.h>

#include <filesystem>

namespace hostcad {

namespace fs = std::filesystem;

// A second name costs no time and no room, whatever the size of the file; a file system without them gets a
// copy.
PreviousVersion::PreviousVersion(const std::string& path) {
    std::error_code error;
    const fs::path file = fs::weakly_canonical(path, error);
    if (error || !fs::is_regular_file(file, error)) return;
    kept_ = file.string() + ".bak";
    noted_ = kept_ + "." + std::to_string(::getpid());
    fs::remove(noted_, error);
    fs::create_hard_link(file, noted_, error);
    if (error && !fs::copy_file(file, noted_, fs::copy_options::overwrite_existing, error)) {
        fs::remove(noted_, error);
        noted_.clear();
    }
}

PreviousVersion::~PreviousVersion() {
    std::error_code ignored;
    if (!noted_.empty()) fs::remove(noted_, ignored);
}

void PreviousVersion::keep() {
    std::error_code error;
    if (!noted_.empty()) fs::rename(noted_, kept_, error);
    if (!error) noted_.clear();
}

}  // namespace hostcad
