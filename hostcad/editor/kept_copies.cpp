#include "hostcad/editor/kept_copies.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <ctime>
#include <filesystem>

#include "hostcad/dxf/dxf.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace hostcad {
namespace {

namespace fs = std::filesystem;

constexpr const char* kLockEnding = ".lock";

}  // namespace

std::string KeptCopies::keep(const Drawing& drawing) {
    if (folder_.empty()) return "There is no folder for it.";
    if (copy_.empty()) {
        std::error_code error;
        fs::create_directories(folder_, error);
        std::string name = drawing.path().empty() ? "unnamed.dxf" : files::nameOf(drawing.path());
        std::string copy;
        // The number of a program that has crashed may be given again.
        for (int n = 1; copy.empty() || files::exists(copy); ++n)
            copy = files::join(folder_, text::format("%d-%d-", static_cast<int>(::getpid()), n) + name);
        lock_ = FileLock::take(copy + kLockEnding, drawing.path());
        if (!lock_) return "No file can be made in " + folder_ + ".";
        copy_ = std::move(copy);
    }
    std::string problem;
    writeDxf(drawing, copy_, drawing.format(), problem);
    return problem;
}

// The copy goes before its lock, so that nobody takes it for one that was left behind.
void KeptCopies::forget() {
    if (!copy_.empty()) files::remove(copy_);
    copy_.clear();
    lock_.reset();
}

std::vector<KeptCopies::LeftBehind> KeptCopies::leftBehind() const {
    std::vector<LeftBehind> found;
    std::error_code error;
    if (folder_.empty()) return found;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder_, error)) {
        std::string path = entry.path().string();
        if (!text::equalNoCase(files::extensionOf(path), "dxf") || FileLock::isHeld(path + kLockEnding))
            continue;
        found.push_back({path, files::read(path + kLockEnding).value_or(""), timeOfFile(path)});
    }
    std::sort(found.begin(), found.end(),
              [](const LeftBehind& a, const LeftBehind& b) { return a.time > b.time; });
    return found;
}

void KeptCopies::adopt(const LeftBehind& copy) {
    forget();
    lock_ = FileLock::take(copy.copy + kLockEnding, copy.drawing);
    if (lock_) copy_ = copy.copy;
}

void KeptCopies::remove(const LeftBehind& copy) {
    files::remove(copy.copy);
    files::remove(copy.copy + kLockEnding);
}

std::string timeOfFile(const std::string& path) {
    struct stat state {};
    std::tm local{};
    if (::stat(path.c_str(), &state) != 0 || !::localtime_r(&state.st_mtime, &local)) return "";
    char written[32];
    return std::strftime(written, sizeof written, "%Y-%m-%d %H:%M", &local) ? written : "";
}

}  // namespace hostcad
