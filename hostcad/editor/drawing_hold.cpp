#include "hostcad/editor/drawing_hold.h"

#include <pwd.h>
#include <unistd.h>

#include <filesystem>

#include "platform/files/files.h"
#include "platform/text/text.h"

namespace hostcad {
namespace {

// Beside the file itself, by whatever link it was reached.
std::string lockPath(const std::string& drawing) {
    std::error_code error;
    std::string file = std::filesystem::weakly_canonical(drawing, error).string();
    if (error) file = drawing;
    return files::join(files::folderOf(file), "." + files::nameOf(file) + ".lock");
}

std::string ownName() {
    const passwd* user = ::getpwuid(::getuid());
    char computer[256] = "";
    ::gethostname(computer, sizeof computer - 1);
    return std::string(user ? user->pw_name : "somebody") + " on " + computer + " (process " +
           std::to_string(::getpid()) + ")";
}

}  // namespace

bool DrawingHold::take(const std::string& drawing) {
    release();
    const std::string lock = lockPath(drawing);
    lock_ = FileLock::take(lock, ownName());
    if (!lock_ && FileLock::isHeld(lock)) {
        holder_ = text::trim(files::read(lock).value_or(""));
        if (holder_.empty()) holder_ = "another program";
        return false;
    }
    path_ = drawing;
    return true;
}

void DrawingHold::release() {
    lock_.reset();
    path_.clear();
    holder_.clear();
}

}  // namespace hostcad
