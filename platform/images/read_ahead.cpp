#include "platform/images/read_ahead.h"

#include <system_error>
#include <utility>

namespace images {

ReadAhead::ReadAhead(size_t stretchBytes, bool inThread, Read read) : read_(std::move(read)) {
    for (Stretch& stretch : stretches_) stretch.bytes.resize(stretchBytes);
    if (!inThread) return;
    try {
        thread_ = std::thread([this] { readAll(); });
    } catch (const std::system_error&) {
        // There are too many of them: it goes without one, too.
    }
}

ReadAhead::~ReadAhead() {
    if (!thread_.joinable()) return;
    {
        const std::lock_guard lock(mutex_);
        isAbandoned_ = true;
    }
    changed_.notify_all();
    thread_.join();
}

void ReadAhead::readAll() {
    for (size_t i = 0;; i = (i + 1) % stretches_.size()) {
        Stretch& stretch = stretches_[i];
        {
            std::unique_lock lock(mutex_);
            changed_.wait(lock, [&] { return !stretch.isFull || isAbandoned_; });
            if (isAbandoned_) return;
        }
        const size_t used = read_(stretch.bytes.data(), stretch.bytes.size());
        {
            const std::lock_guard lock(mutex_);
            stretch.used = used;
            stretch.isFull = true;
        }
        changed_.notify_all();
        if (isAtEnd(stretch)) return;
    }
}

std::span<uint8_t> ReadAhead::next() {
    std::unique_lock lock(mutex_);
    if (Stretch& last = stretches_[current_]; isTaken_) {
        if (isAtEnd(last)) return {};
        last.isFull = false;
        current_ = (current_ + 1) % stretches_.size();
        changed_.notify_all();
    }
    isTaken_ = true;
    Stretch& stretch = stretches_[current_];
    if (thread_.joinable())
        changed_.wait(lock, [&] { return stretch.isFull; });
    else
        stretch.used = read_(stretch.bytes.data(), stretch.bytes.size());
    return std::span(stretch.bytes).first(stretch.used);
}

}  // namespace images
