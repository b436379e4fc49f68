// What open databases in files have in common: the transactions.
//
// Writes share a transaction, since each one that ends is synced to the disk. It begins with the first of
// them and ends when the database or a changed table definition is closed, while writing goes on every
// kSecondsShared seconds, and sooner when another process waits to write.
#pragma once

#include <chrono>

#include "platform/dao/engine.h"

namespace dao {

class FileConnection : public Connection {
  public:
    static constexpr std::chrono::seconds kSecondsShared{2};

    // To be called before each write: begins the shared transaction unless one is under way.
    void beginWrite();
    // To be called after each write: commits when enough has been written.
    void wrote();

    void commit() final;
    void beginTransaction() final;
    void endTransaction(bool keep) final;

  protected:
    // The transaction of the file itself. begin waits a while for others who write. What keepChanges cannot
    // make to last is given to undoChanges.
    virtual bool inTransaction() const = 0;
    virtual void begin() = 0;
    virtual void keepChanges() = 0;
    virtual void undoChanges() = 0;
    // Whether another process waits to write, where that can be told.
    virtual bool othersWait() const { return false; }

  private:
    bool callersOwn_ = false;  // the transaction is the caller's, and ends when the caller says so
    int writes_ = 0;
    std::chrono::steady_clock::time_point began_;
};

}  // namespace dao
