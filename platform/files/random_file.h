// A file that is read and written at any place.
//
// One window of the file is kept in memory. A walk through the file, forwards or backwards, reads ever larger
// windows; a jump reads little more than what was asked for. Writes that follow one another are gathered.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files/descriptor.h"

namespace files {

class RandomFile {
  public:
    enum class Mode {
        kRead,
        kUpdate,  // an existing file, read and write
        kCreate,  // read and write; an existing file is emptied
    };
    enum class Sharing {
        kAny,
        kDenyWriters,  // refused while another opener, in this process or not, holds the file in this way
    };

    // Null when the file cannot be opened so; it is then untouched. A folder cannot be opened.
    static std::unique_ptr<RandomFile> open(std::string_view path, Mode mode,
                                            Sharing sharing = Sharing::kAny);
    // Writes what is gathered.
    ~RandomFile();
    RandomFile(const RandomFile&) = delete;
    RandomFile& operator=(const RandomFile&) = delete;

    // In bytes, with what is gathered.
    int64_t size() const { return size_; }
    // `count` bytes from a position on, valid until the next call; null when not all of them are there.
    const char* view(int64_t position, size_t count);
    // False when it has failed, now or before. A place behind the end leaves zeros before it.
    bool write(int64_t position, std::string_view bytes);
    // The same for who makes the bytes on the spot: all `count` of them, one at least, are to be filled in
    // before the next call. Null where write() is false.
    char* place(int64_t position, size_t count);
    // Hands over what is gathered to the system. False when any write so far has failed.
    bool flush();
    // The same, down to the disk.
    bool sync();
    // Cuts the file. What could not be written before is given up: later writes are tried again.
    bool truncate(int64_t size);

  private:
    RandomFile(Descriptor file, int64_t size) : file_(std::move(file)), size_(size) {}
    size_t windowFor(int64_t position, size_t count, int64_t& from);
    bool load(int64_t from, size_t count);
    bool writeAll(int64_t position, const char* bytes, size_t count);

    Descriptor file_;
    int64_t size_;
    bool failed_ = false;
    // The window: length_ bytes of the file from start_ on, of which those from dirtyFrom_ to dirtyTo_ are
    // not yet in the file.
    std::vector<char> window_;
    int64_t start_ = 0;
    size_t length_ = 0;
    size_t dirtyFrom_ = 0, dirtyTo_ = 0;
    size_t readAhead_ = 0;
};

}  // namespace files
