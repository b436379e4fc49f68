#include "platform/files/random_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "platform/files/files.h"

namespace files {
namespace {

constexpr size_t kSmallWindow = 512;
constexpr size_t kLargeWindow = size_t{1} << 16;

int flagsOf(RandomFile::Mode mode) {
    switch (mode) {
        case RandomFile::Mode::kRead:
            return O_RDONLY | O_CLOEXEC;
        case RandomFile::Mode::kUpdate:
            return O_RDWR | O_CLOEXEC;
        default:
            return O_RDWR | O_CREAT | O_CLOEXEC;  // emptied only once it is ours
    }
}

// The file of this descriptor is still the one of that name: it was not replaced while we waited for it.
bool isFileOf(const Descriptor& file, const std::string& path) {
    struct stat opened {
    }, named{};
    return ::fstat(file.get(), &opened) == 0 && ::stat(path.c_str(), &named) == 0 &&
           opened.st_ino == named.st_ino && opened.st_dev == named.st_dev;
}

Descriptor openDescriptor(const std::string& path, RandomFile::Mode mode, RandomFile::Sharing sharing) {
    for (;;) {
        Descriptor file(::open(path.c_str(), flagsOf(mode), 0666));
        if (!file || sharing == RandomFile::Sharing::kAny) return file;
        bool locked = ::flock(file.get(), LOCK_EX | LOCK_NB) == 0;
        if (!locked) return {};
        if (isFileOf(file, path)) return file;
    }
}

}  // namespace

std::unique_ptr<RandomFile> RandomFile::open(std::string_view path, Mode mode, Sharing sharing) {
    Descriptor file = openDescriptor(onDisk(path), mode, sharing);
    if (!file) return nullptr;
    struct stat info {};
    if (::fstat(file.get(), &info) != 0 || !S_ISREG(info.st_mode) ||
        (mode == Mode::kCreate && ::ftruncate(file.get(), 0) != 0))
        return nullptr;
    int64_t size = mode == Mode::kCreate ? 0 : info.st_size;
    return std::unique_ptr<RandomFile>(new RandomFile(std::move(file), size));
}

RandomFile::~RandomFile() {
    flush();
}

// How much to read for a view, and from where.
size_t RandomFile::windowFor(int64_t position, size_t count, int64_t& from) {
    int64_t end = position + static_cast<int64_t>(count);
    int64_t windowEnd = start_ + static_cast<int64_t>(length_);
    bool forwards = position >= start_ && position <= windowEnd;
    bool backwards = position < start_ && end >= start_;
    readAhead_ =
        forwards || backwards ? std::clamp(readAhead_ * 2, kSmallWindow, kLargeWindow) : kSmallWindow;
    size_t wanted = std::max(count, readAhead_);
    from = backwards ? std::max<int64_t>(0, end - static_cast<int64_t>(wanted)) : position;
    return static_cast<size_t>(std::min<int64_t>(static_cast<int64_t>(wanted), size_ - from));
}

bool RandomFile::load(int64_t from, size_t count) {
    if (window_.size() < count) window_.resize(std::max(count, kSmallWindow));
    start_ = from;
    length_ = 0;
    while (length_ < count) {
        ssize_t n = ::pread(file_.get(), window_.data() + length_, count - length_,
                            from + static_cast<int64_t>(length_));
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;
        length_ += static_cast<size_t>(n);
    }
    return length_ == count;
}

const char* RandomFile::view(int64_t position, size_t count) {
    if (position < 0 || position > size_ || count > static_cast<size_t>(size_ - position)) return nullptr;
    int64_t end = position + static_cast<int64_t>(count);
    if (position < start_ || end > start_ + static_cast<int64_t>(length_)) {
        flush();
        int64_t from = 0;
        size_t wanted = windowFor(position, count, from);
        // A file that others have cut short meanwhile may still hold what was asked for.
        if (!load(from, wanted) && end > start_ + static_cast<int64_t>(length_)) return nullptr;
    }
    return window_.data() + (position - start_);
}

char* RandomFile::place(int64_t position, size_t count) {
    if (failed_ || position < 0) return nullptr;
    int64_t end = position + static_cast<int64_t>(count);
    bool joins = position >= start_ && position <= start_ + static_cast<int64_t>(length_) &&
                 end <= start_ + static_cast<int64_t>(kLargeWindow);
    if (!joins) {
        if (!flush()) return nullptr;
        start_ = position;
        length_ = 0;
    }
    size_t from = static_cast<size_t>(position - start_);
    size_t to = from + count;
    if (window_.size() < to)
        window_.resize(std::max(to, std::min(kLargeWindow, std::max(window_.size() * 2, kSmallWindow))));
    length_ = std::max(length_, to);
    bool clean = dirtyFrom_ == dirtyTo_;
    dirtyFrom_ = clean ? from : std::min(dirtyFrom_, from);
    dirtyTo_ = clean ? to : std::max(dirtyTo_, to);
    size_ = std::max(size_, end);
    return window_.data() + from;
}

bool RandomFile::write(int64_t position, std::string_view bytes) {
    if (bytes.empty()) return !failed_ && position >= 0;
    if (bytes.size() < kLargeWindow) {
        char* to = place(position, bytes.size());
        if (to) std::memcpy(to, bytes.data(), bytes.size());
        return to != nullptr;
    }
    // As much as a window and more is not copied into one; what the window shows would then be old.
    if (position < 0 || !flush()) return false;
    length_ = 0;
    failed_ = !writeAll(position, bytes.data(), bytes.size());
    if (!failed_) size_ = std::max(size_, position + static_cast<int64_t>(bytes.size()));
    return !failed_;
}

bool RandomFile::writeAll(int64_t position, const char* bytes, size_t count) {
    while (count > 0) {
        ssize_t n = ::pwrite(file_.get(), bytes, count, position);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        bytes += n;
        position += n;
        count -= static_cast<size_t>(n);
    }
    return true;
}

bool RandomFile::flush() {
    if (dirtyFrom_ != dirtyTo_) {
        failed_ = failed_ || !writeAll(start_ + static_cast<int64_t>(dirtyFrom_), window_.data() + dirtyFrom_,
                                       dirtyTo_ - dirtyFrom_);
        dirtyFrom_ = dirtyTo_ = 0;
    }
    return !failed_;
}

bool RandomFile::sync() {
    return flush() && ::fsync(file_.get()) == 0;
}

bool RandomFile::truncate(int64_t size) {
    flush();
    failed_ = ::ftruncate(file_.get(), size) != 0;
    start_ = 0;
    length_ = 0;
    if (!failed_) size_ = size;
    return !failed_;
}

}  // namespace files
