// The pages of a database file: reading them, changing them in transactions, sharing them with other
// processes.
//
// Reading. Between beginRead and endRead the file is locked for readers: no process writes to it. Pages are
// kept between two readings and forgotten when another process has written, which is seen by the file's time
// of change; a commit always moves it forward.
//
// Writing. beginWrite makes this the one process that may write; it waits for others unless it stands between
// beginRead and endRead, when it fails at once. Changed pages stay in memory until commit,
// which writes the journal, waits for the readers to go, writes the pages and removes the journal. A Change
// within a transaction that is not completed is undone by itself.
//
// Locks are those of the file system on three bytes far behind the end of the file. They belong to the open
// file, not to the process, so that two databases of one process keep each other out as well.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/dao/jet/bytes.h"
#include "platform/dao/jet/format.h"
#include "platform/dao/jet/journal.h"
#include "platform/files/descriptor.h"

namespace jet {

struct Page {
    uint32_t number = 0;
    bool dirty = false;
    uint64_t savedIn = 0;  // the Change that holds a copy of it
    Bytes bytes;
    ByteView view() const { return bytes; }
};
using PagePtr = std::shared_ptr<const Page>;

// One state of one file: two that are equal had the same content.
struct FileState {
    uint64_t device = 0, inode = 0;
    int64_t time = -1, size = -1;  // of its last change, in nanoseconds; in bytes
    bool operator==(const FileState&) const = default;
};

class PageFile {
  public:
    struct Options {
        bool readOnly = false;
        bool exclusive = false;
        int lockTimeout = 3000;  // milliseconds
        // The file goes when the work on it ends, whatever happens: it has no journal and is not synced.
        bool scratch = false;
    };

    // Opens a file. Its first page says which of the two layouts it has. Throws an Error for a file that
    // cannot be opened, or is no Access file of the two versions.
    PageFile(const std::string& path, const Options& options);
    ~PageFile();
    PageFile(const PageFile&) = delete;
    PageFile& operator=(const PageFile&) = delete;

    const std::string& path() const { return path_; }
    const Format& format() const { return *format_; }
    bool readOnly() const { return options_.readOnly; }
    void setLockTimeout(int milliseconds) { options_.lockTimeout = milliseconds; }

    void beginRead();
    void endRead();
    void beginWrite();
    bool writing() const { return writing_; }
    // Whether all is as it was last committed: no transaction is under way, or it has changed nothing yet.
    bool isAsCommitted() const { return !writing_ || !changed_; }
    void commit();
    void rollBack();
    // Whether another process waits to write.
    bool othersWait() const;

    // Counts the changes that did not go through this object step by step: what was remembered of the content
    // is no longer good when it differs.
    uint64_t generation() const { return generation_; }
    // The state of the file when it was last looked at, or last committed.
    const FileState& state() const { return seen_; }
    uint32_t pageCount() const { return pageCount_; }
    // Whether the file has no part of a page at its end.
    bool endsWithWholePage() const { return seen_.size % static_cast<int64_t>(format_->pageSize) == 0; }

    PagePtr page(uint32_t number);
    // A page of a type, or a DamagedError.
    PagePtr page(uint32_t number, PageType type);
    // A page to be changed, within a Change.
    ByteSpan writable(uint32_t number);
    // A new page of zeros at the end of the file.
    uint32_t append();

    // Gives the file the pages of another one, within a transaction.
    void replaceBy(PageFile& other);

    // All changes of pages between its making and done() are whole or undone.
    class Change {
      public:
        explicit Change(PageFile& file);
        ~Change();
        Change(const Change&) = delete;
        Change& operator=(const Change&) = delete;
        void done();

      private:
        PageFile& file_;
        bool outer_;
        bool done_ = false;
    };

  private:
    struct Saved {
        std::shared_ptr<Page> page;
        Bytes bytes;
        bool dirty;
    };

    void open();
    void enterReading();
    bool refresh();
    void noteFile();
    void leaveWriting();
    bool recover();
    void lock(short type, int byte);
    bool tryLock(short type, int byte);
    void unlock(int byte);
    [[noreturn]] void locked() const;
    class UnlockAtEnd;
    void forgetPages();
    std::shared_ptr<Page>& cached(uint32_t number);
    std::shared_ptr<Page> load(uint32_t number);
    void writePages(const std::vector<std::shared_ptr<Page>>& pages);
    void moveTimeForward();
    void undoChange();

    std::string path_;
    Options options_;
    Journal journal_;
    files::Descriptor file_;
    const Format* format_ = nullptr;

    int reading_ = 0;
    bool writing_ = false;
    bool changed_ = false;      // by the transaction
    bool holdsWriter_ = false;  // the lock of who writes
    uint64_t generation_ = 1;
    uint32_t pageCount_ = 0;
    bool shrinks_ = false;  // the file is to become shorter with the next commit
    FileState seen_;

    std::vector<std::shared_ptr<Page>> pages_;
    size_t kept_ = 0;

    bool changing_ = false;
    bool innerFailed_ = false;  // a Change within the outer one was not completed
    uint64_t changeNumber_ = 0;
    uint32_t pagesBefore_ = 0;
    std::vector<Saved> saved_;
    std::vector<Bytes> spare_;  // buffers of earlier changes
};

// Keeps the file locked for reading as long as it lives.
class Reading {
  public:
    explicit Reading(PageFile& file) : file_(&file) { file.beginRead(); }
    ~Reading() { file_->endRead(); }
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;

  private:
    PageFile* file_;
};

}  // namespace jet
