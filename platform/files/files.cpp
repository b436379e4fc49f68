#include "platform/files/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>

#include "platform/files/descriptor.h"
#include "platform/text/text.h"

namespace files {
namespace {

namespace fs = std::filesystem;

bool isRegular(const std::string& path) {
    std::error_code error;
    return fs::is_regular_file(path, error);
}

// The name of an entry of a folder whose letters may differ in case: of several the first in the order of
// their bytes, and the name itself when there is none.
std::string nameOnDisk(const std::string& folder, const std::string& name) {
    std::string found;
    std::error_code error;
    for (fs::directory_iterator it(folder.empty() ? "." : folder, error), end; !error && it != end;
         it.increment(error)) {
        std::string entry = it->path().filename().string();
        if (text::equalNoCase(entry, name) && (found.empty() || entry < found)) found = entry;
    }
    return found.empty() ? name : found;
}

bool writeAll(const Descriptor& file, std::string_view content) {
    while (!content.empty()) {
        ssize_t written = ::write(file.get(), content.data(), content.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        content.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

}  // namespace

std::string native(std::string_view path) {
    std::string out(path);
    for (char& c : out)
        if (c == '\\') c = '/';
    return out;
}

std::string folderOf(std::string_view path) {
    std::string p = native(path);
    return p.substr(0, p.rfind('/') + 1);
}

std::string nameOf(std::string_view path) {
    std::string p = native(path);
    return p.substr(p.rfind('/') + 1);
}

std::string extensionOf(std::string_view path) {
    std::string name = nameOf(path);
    size_t dot = name.rfind('.');
    return dot == std::string::npos ? "" : name.substr(dot + 1);
}

std::string join(std::string_view folder, std::string_view name) {
    std::string out = native(folder);
    if (!out.empty() && out.back() != '/') out += '/';
    return out += native(name);
}

std::string onDisk(std::string_view path) {
    std::string p = native(path);
    std::error_code error;
    if (p.empty() || fs::exists(p, error)) return p;
    std::string folder = folderOf(p), name = nameOf(p);
    if (folder == p && p.find_first_not_of('/') == std::string::npos) return p;
    std::string_view above = std::string_view(folder).substr(0, folder.size() - (folder.empty() ? 0 : 1));
    if (!above.empty()) folder = onDisk(above) + '/';
    return folder + (fs::exists(folder + name, error) ? name : nameOnDisk(folder, name));
}

bool exists(std::string_view path) {
    return isRegular(onDisk(path));
}

bool isFolder(std::string_view path) {
    std::error_code error;
    return fs::is_directory(onDisk(path), error);
}

bool remove(std::string_view path) {
    std::error_code error;
    fs::path p = onDisk(path);
    if (!fs::exists(p, error)) return true;
    return !fs::is_directory(p, error) && fs::remove(p, error);
}

bool folderIsWritable(std::string_view path) {
    std::string probe = onDisk(folderOf(path) + "$.txt");
    Descriptor file(::open(probe.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666));
    if (!file) return false;
    ::unlink(probe.c_str());
    return true;
}

std::optional<std::string> read(std::string_view path) {
    Descriptor file(::open(onDisk(path).c_str(), O_RDONLY | O_CLOEXEC));
    struct stat info {};
    if (!file || ::fstat(file.get(), &info) != 0 || S_ISDIR(info.st_mode)) return std::nullopt;
    std::string content;
    content.reserve(static_cast<size_t>(info.st_size));
    char block[1 << 16];
    for (;;) {
        ssize_t n = ::read(file.get(), block, sizeof block);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return std::nullopt;
        if (n == 0) return content;
        content.append(block, static_cast<size_t>(n));
    }
}

std::optional<std::vector<std::string>> readLines(std::string_view path, size_t limit) {
    std::optional<std::string> content = read(path);
    if (!content) return std::nullopt;
    std::vector<std::string> lines;
    std::string_view rest = *content;
    while (!rest.empty()) {
        size_t end = rest.find('\n');
        std::string_view line = rest.substr(0, end);
        if (line.size() > limit) {
            line = text::cutToBytes(line, limit);
            rest.remove_prefix(line.size());
        } else {
            rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
            if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        }
        lines.emplace_back(line);
    }
    return lines;
}

bool replace(std::string_view path, std::string_view content) {
    std::string target = onDisk(path);
    if (isFolder(target)) return false;
    std::error_code error;
    // A link is followed, so that what it points at is replaced and not the link.
    if (fs::is_symlink(target, error)) target = fs::weakly_canonical(target, error).string();
    struct stat old {};
    bool existed = ::stat(target.c_str(), &old) == 0;
    if (existed && ::access(target.c_str(), W_OK) != 0) return false;

    std::string temporary = target + ".XXXXXX";
    Descriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
    if (!file) return false;
    mode_t mask = ::umask(0);
    ::umask(mask);
    bool written = ::fchmod(file.get(), existed ? old.st_mode & 07777 : 0666 & ~mask) == 0 &&
                   writeAll(file, content) && ::fsync(file.get()) == 0;
    written = file.close() && written;
    if (!written || ::rename(temporary.c_str(), target.c_str()) != 0) {
        ::unlink(temporary.c_str());
        return false;
    }
    // The folder is not synced: a crash may bring the old name back, which is still a whole file.
    return true;
}

bool syncFileSystem(std::string_view folder) {
    Descriptor file(::open(onDisk(folder).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return file && ::syncfs(file.get()) == 0;
}

}  // namespace files
