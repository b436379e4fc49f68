#include "platform/dao/jet/journal.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "platform/files/descriptor.h"

namespace jet {
namespace {

// Magic, page size, pages of the file, pages in the journal, checksum of all that is behind it.
constexpr std::string_view kMagic = "Norvane rollback journal 1\n";
constexpr size_t kHeaderSize = 64;
constexpr size_t kPageSizeAt = 32, kPageCountAt = 36, kEntriesAt = 40, kChecksumAt = 48;

using files::Descriptor;

[[noreturn]] void failed(const std::string& what, int error) {
    if (error == ENOSPC || error == EDQUOT) throw Error("The database cannot grow: the disk is full.");
    throw Error(what + ": " + std::strerror(error) + ".");
}

uint64_t checksum(ByteView bytes, uint64_t sum) {
    for (size_t i = 0; i + 8 <= bytes.size(); i += 8) {
        sum = (sum ^ bytes.u64(i)) * 0x9E3779B97F4A7C15u;
        sum ^= sum >> 29;
    }
    return sum;
}

// The journal's entries are page numbers of eight bytes and pages. Their sum goes on from that of the head.
uint64_t checksumOfHead(ByteView head) {
    return checksum(head.part(0, kChecksumAt), 0x6A09E667F3BCC908u);
}

}  // namespace

size_t readAt(int file, void* to, size_t size, uint64_t offset) {
    size_t done = 0;
    while (done < size) {
        ssize_t n =
            ::pread(file, static_cast<char*>(to) + done, size - done, static_cast<off_t>(offset + done));
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) failed("The database cannot be read", errno);
        if (n == 0) break;
        done += static_cast<size_t>(n);
    }
    return done;
}

void writeAt(int file, const void* from, size_t size, uint64_t offset) {
    size_t done = 0;
    while (done < size) {
        ssize_t n = ::pwrite(file, static_cast<const char*>(from) + done, size - done,
                             static_cast<off_t>(offset + done));
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) failed("The database cannot be written", errno);
        done += static_cast<size_t>(n);
    }
}

Journal::Journal(const std::string& databasePath) : path_(databasePath + "-journal") {}

bool Journal::exists() const {
    struct stat s;
    return ::stat(path_.c_str(), &s) == 0;
}

void Journal::write(int database, size_t pageSize, uint32_t pageCount, const std::vector<uint32_t>& pages) {
    Bytes headBytes(kHeaderSize);
    ByteSpan head(headBytes);
    head.set(0, ByteView(kMagic));
    head.setU32(kPageSizeAt, static_cast<uint32_t>(pageSize));
    head.setU32(kPageCountAt, pageCount);
    head.setU32(kEntriesAt, static_cast<uint32_t>(pages.size()));

    struct stat s;
    mode_t mode = ::fstat(database, &s) == 0 ? s.st_mode & 0777 : 0644;
    Descriptor file(::open(path_.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, mode));
    if (!file) failed("The journal \"" + path_ + "\" cannot be made", errno);
    uint64_t sum = checksumOfHead(head);
    uint64_t at = kHeaderSize;
    ByteWriter out;
    for (size_t i = 0; i < pages.size(); ++i) {
        out.u32(pages[i]);
        out.u32(0);
        size_t begin = out.bytes.size();
        out.fill(pageSize, 0);
        if (readAt(database, out.bytes.data() + begin, pageSize, uint64_t{pages[i]} * pageSize) != pageSize)
            damaged("the file ends within page " + std::to_string(pages[i]));
        constexpr size_t kLongestWrite = 1 << 20;
        if (out.bytes.size() < kLongestWrite && i + 1 < pages.size()) continue;
        sum = checksum(out.bytes, sum);
        writeAt(file.get(), out.bytes.data(), out.bytes.size(), at);
        at += out.bytes.size();
        out.bytes.clear();
    }
    head.setU32(kChecksumAt, static_cast<uint32_t>(sum));
    head.setU32(kChecksumAt + 4, static_cast<uint32_t>(sum >> 32));
    writeAt(file.get(), headBytes.data(), headBytes.size(), 0);
    if (::fdatasync(file.get()) != 0) failed("The journal \"" + path_ + "\" cannot be written", errno);
    syncFolder();
}

void Journal::playBack(int database, size_t pageSize) {
    {
        Descriptor file(::open(path_.c_str(), O_RDONLY | O_CLOEXEC));
        if (!file) failed("The journal \"" + path_ + "\" cannot be read", errno);
        struct stat s;
        if (::fstat(file.get(), &s) != 0) failed("The journal \"" + path_ + "\" cannot be read", errno);
        Bytes bytes(static_cast<size_t>(s.st_size));
        size_t size = readAt(file.get(), bytes.data(), bytes.size(), 0);
        ByteView all(bytes.data(), size);
        if (size >= kHeaderSize && all.text().substr(0, kMagic.size()) == kMagic &&
            all.u32(kPageSizeAt) == pageSize &&
            size - kHeaderSize == uint64_t{all.u32(kEntriesAt)} * (pageSize + 8) &&
            all.u64(kChecksumAt) == checksum(all.from(kHeaderSize), checksumOfHead(all))) {
            for (size_t at = kHeaderSize; at < size; at += pageSize + 8)
                writeAt(database, bytes.data() + at + 8, pageSize, uint64_t{all.u32(at)} * pageSize);
            if (::ftruncate(database, static_cast<off_t>(uint64_t{all.u32(kPageCountAt)} * pageSize)) != 0 ||
                ::fdatasync(database) != 0)
                failed("The database cannot be written", errno);
        }
    }
    remove();
}

void Journal::remove() {
    if (::unlink(path_.c_str()) != 0 && errno != ENOENT)
        failed("The journal \"" + path_ + "\" cannot be removed", errno);
    syncFolder();
}

void Journal::syncFolder() const {
    size_t slash = path_.rfind('/');
    std::string folder = slash == std::string::npos ? "." : path_.substr(0, slash + 1);
    Descriptor file(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (file) ::fsync(file.get());
}

}  // namespace jet
