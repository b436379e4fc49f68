#include "hostcad/editor/file_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>

namespace hostcad {

std::optional<FileLock> FileLock::take(const std::string& path, const std::string& text) {
    constexpr mode_t kForAll = 0666;
    constexpr int kAttempts = 10;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        files::Descriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, kForAll));
        if (!file || ::flock(file.get(), LOCK_EX | LOCK_NB) != 0) return {};
        // Its last owner may have removed it between the two steps; then the lock is on nothing.
        struct stat locked {
        }, named{};
        if (::fstat(file.get(), &locked) != 0 || ::stat(path.c_str(), &named) != 0 ||
            locked.st_dev != named.st_dev || locked.st_ino != named.st_ino)
            continue;
        // A text that cannot be written only leaves others without the name of who holds it.
        if (::ftruncate(file.get(), 0) == 0) [[maybe_unused]]
            auto written = ::write(file.get(), text.data(), text.size());
        return FileLock(path, std::move(file));
    }
    return {};
}

bool FileLock::isHeld(const std::string& path) {
    files::Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    return file && ::flock(file.get(), LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

FileLock::~FileLock() {
    if (file_) ::unlink(path_.c_str());
}

FileLock::FileLock(FileLock&& other) noexcept
    : path_(std::move(other.path_)), file_(std::move(other.file_)) {}

FileLock& FileLock::operator=(FileLock&& other) noexcept {
    std::swap(path_, other.path_);
    std::swap(file_, other.file_);
    return *this;
}

}  // namespace hostcad
