// Reads stretches of data while the one before is still worked with.
#pragma once

#include <array>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <span>
#include <thread>
#include <vector>

namespace images {

class ReadAhead {
  public:
    // Fills a stretch; fewer bytes than asked for, also none, at the end. All calls are in one thread.
    using Read = std::function<size_t(uint8_t* to, size_t count)>;
    // Where a thread cannot be had, and where none is wanted, next() reads.
    ReadAhead(size_t stretchBytes, bool inThread, Read read);
    ~ReadAhead();
    ReadAhead(const ReadAhead&) = delete;
    ReadAhead& operator=(const ReadAhead&) = delete;

    // The next stretch, good until the next call; empty at the end. What it holds may be changed.
    std::span<uint8_t> next();

  private:
    struct Stretch {
        std::vector<uint8_t> bytes;
        size_t used = 0;
        bool isFull = false;
    };
    bool isAtEnd(const Stretch& stretch) const { return stretch.used < stretch.bytes.size(); }
    void readAll();

    Read read_;
    std::array<Stretch, 3> stretches_;
    size_t current_ = 0;  // that next() gives
    bool isTaken_ = false;
    bool isAbandoned_ = false;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::thread thread_;  // last, since it works with the others
};

}  // namespace images
