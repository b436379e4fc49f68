#include "platform/dao/file_connection.h"

#include <cassert>
#include <thread>
#include <utility>

namespace dao {

void FileConnection::beginWrite() {
    if (inTransaction()) return;
    begin();
    writes_ = 0;
    began_ = std::chrono::steady_clock::now();
    assert(inTransaction());
}

void FileConnection::wrote() {
    constexpr int kWritesBetweenLooks = 64;
    constexpr std::chrono::milliseconds kLeastShared{100}, kPauseForOthers{3};
    if (++writes_ % kWritesBetweenLooks != 0 || callersOwn_) return;
    auto shared = std::chrono::steady_clock::now() - began_;
    bool waiting = shared >= kLeastShared && othersWait();
    if (!waiting && shared < kSecondsShared) return;
    commit();
    if (waiting) std::this_thread::sleep_for(kPauseForOthers);
}

void FileConnection::commit() {
    if (callersOwn_ || !inTransaction()) return;
    try {
        keepChanges();
    } catch (...) {
        // The file must not be left locked.
        undoChanges();
        throw;
    }
    assert(!inTransaction());
}

void FileConnection::beginTransaction() {
    commit();
    beginWrite();
    callersOwn_ = true;
}

void FileConnection::endTransaction(bool keep) {
    if (!std::exchange(callersOwn_, false)) return;
    if (keep)
        commit();
    else
        undoChanges();
}

}  // namespace dao
