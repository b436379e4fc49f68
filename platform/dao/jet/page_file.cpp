#include "platform/dao/jet/page_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <thread>

#include "platform/dao/jet/invariants.h"

namespace jet {
namespace {

// Bytes that are locked: by who reads, by who is about to wait for the readers to go, by who writes, by who
// waits to write.
constexpr int kReaders = 0, kComing = 1, kWriter = 2, kWaiting = 3;
constexpr off_t kLockBytes = 0x7FFF0000;

// Pages kept in memory between two operations (of Access 2000: 64 MB).
constexpr size_t kMostKept = 16384;
constexpr size_t kLongestWrite = 1 << 20;

int64_t nanoseconds(const timespec& t) {
    return static_cast<int64_t>(t.tv_sec) * 1000000000 + t.tv_nsec;
}

}  // namespace

// Gives a lock back at the end of a block, unless it is to be kept.
class PageFile::UnlockAtEnd {
  public:
    UnlockAtEnd(PageFile& file, int byte) : file_(file), byte_(byte) {}
    ~UnlockAtEnd() {
        if (!kept_) file_.unlock(byte_);
    }
    UnlockAtEnd(const UnlockAtEnd&) = delete;
    UnlockAtEnd& operator=(const UnlockAtEnd&) = delete;
    void keep() { kept_ = true; }

  private:
    PageFile& file_;
    int byte_;
    bool kept_ = false;
};

PageFile::PageFile(const std::string& path, const Options& options)
    : path_(path), options_(options), journal_(path) {
    open();
    if (options_.exclusive) {
        lock(F_WRLCK, kWriter);
        lock(F_WRLCK, kReaders);
    }
    Reading reading(*this);
}

PageFile::~PageFile() {
    assert(reading_ == 0 && !changing_);
}

void PageFile::open() {
    file_ = files::Descriptor(::open(path_.c_str(), (options_.readOnly ? O_RDONLY : O_RDWR) | O_CLOEXEC));
    if (!file_ && !options_.readOnly && (errno == EACCES || errno == EROFS || errno == EPERM)) {
        options_.readOnly = true;
        file_ = files::Descriptor(::open(path_.c_str(), O_RDONLY | O_CLOEXEC));
    }
    if (!file_) throw Error("Cannot open the file \"" + path_ + "\": " + std::strerror(errno) + ".");
    uint8_t head[24] = {};
    readAt(file_.get(), head, sizeof head, 0);
    ByteView view(head, sizeof head);
    std::string_view name = view.text().substr(4, 16);
    uint32_t version = view.u32(0x14);
    if (view.u32(0) == 0x100 && name == std::string_view("Standard Jet DB\0", 16) && version <= 1)
        format_ = version == 0 ? &kJet3 : &kJet4;
    if (format_) return;
    if (name.substr(0, 9) == "Standard ")
        throw Error(
            "The file \"" + path_ +
            "\" is of a later version of Access. Files of Access 97 and of Access 2000 to 2003 can be "
            "opened.");
    throw Error("The file \"" + path_ + "\" is no Access database.");
}

void PageFile::locked() const {
    throw Error("The database \"" + path_ +
                "\" is locked by another process. Please try again when it is free.");
}

bool PageFile::tryLock(short type, int byte) {
    struct flock lock = {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = kLockBytes + byte;
    lock.l_len = 1;
    // A file opened for reading only can take no exclusive lock; and some file systems know no locks at all.
    bool done = ::fcntl(file_.get(), F_OFD_SETLK, &lock) == 0 || (errno != EAGAIN && errno != EACCES);
    if (done && byte == kWriter) holdsWriter_ = type == F_WRLCK;
    return done;
}

// What an exclusive user has locked stays so until the file is closed.
void PageFile::unlock(int byte) {
    if (!options_.exclusive) tryLock(F_UNLCK, byte);
}

void PageFile::lock(short type, int byte) {
    using Clock = std::chrono::steady_clock;
    if (tryLock(type, byte)) return;
    Clock::time_point end = Clock::now() + std::chrono::milliseconds(options_.lockTimeout);
    auto pause = std::chrono::microseconds(50);
    while (Clock::now() < end) {
        std::this_thread::sleep_for(pause);
        if (tryLock(type, byte)) return;
        pause = std::min(pause * 2, std::chrono::microseconds(1000));
    }
    locked();
}

void PageFile::beginRead() {
    if (reading_ == 0 && !writing_) enterReading();
    ++reading_;
}

void PageFile::enterReading() {
    using Clock = std::chrono::steady_clock;
    Clock::time_point end = Clock::now() + std::chrono::milliseconds(options_.lockTimeout);
    for (;;) {
        if (!options_.exclusive) {
            // Who waits for the readers to go holds kComing: no new one enters then.
            lock(F_RDLCK, kComing);
            UnlockAtEnd coming(*this, kComing);
            lock(F_RDLCK, kReaders);
        }
        {
            UnlockAtEnd readers(*this, kReaders);
            if (refresh()) return readers.keep();
        }
        // Another process is about to put the file right, and waits for its readers to go.
        if (Clock::now() > end) locked();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

void PageFile::endRead() {
    assert(reading_ > 0);
    if (--reading_ == 0) unlock(kReaders);
}

// False: the file must be put right first, and another process is about to do it.
bool PageFile::refresh() {
    if (journal_.exists() && !recover()) return false;
    FileState before = seen_;
    noteFile();
    if (seen_ == before) return true;
    forgetPages();
    ++generation_;
    return true;
}

void PageFile::noteFile() {
    struct stat s;
    if (::fstat(file_.get(), &s) != 0)
        throw Error("The database \"" + path_ + "\" cannot be read: " + std::strerror(errno) + ".");
    seen_ = {s.st_dev, s.st_ino, nanoseconds(s.st_mtim), s.st_size};
    constexpr uint64_t kMostPages = 0xFFFFFF;
    pageCount_ =
        static_cast<uint32_t>(std::min(static_cast<uint64_t>(s.st_size) / format_->pageSize, kMostPages));
}

// The caller holds the readers' lock, so that nobody is committing: a journal that is there was left over.
bool PageFile::recover() {
    if (options_.readOnly)
        throw Error("The database \"" + path_ +
                    "\" was not closed properly and must be opened for writing to be put right.");
    bool isWriter = holdsWriter_;
    if (!isWriter && !tryLock(F_WRLCK, kWriter)) return false;
    UnlockAtEnd writer(*this, kWriter);
    if (isWriter) writer.keep();
    if (journal_.exists()) {
        lock(F_WRLCK, kReaders);
        journal_.playBack(file_.get(), format_->pageSize);
        moveTimeForward();
    }
    if (!options_.exclusive) tryLock(F_RDLCK, kReaders);
    return true;
}

void PageFile::beginWrite() {
    if (writing_) return;
    if (options_.readOnly) throw Error("The database \"" + path_ + "\" cannot be changed: it is read-only.");
    if (!options_.exclusive && !tryLock(F_WRLCK, kWriter)) {
        // Who waits for a writer must not keep it from committing.
        if (reading_ > 0) locked();
        tryLock(F_RDLCK, kWaiting);
        UnlockAtEnd waiting(*this, kWaiting);
        lock(F_WRLCK, kWriter);
    }
    UnlockAtEnd writer(*this, kWriter);
    Reading reading(*this);
    if (!endsWithWholePage()) damaged("the file does not end with a whole page");
    writing_ = true;
    changed_ = false;
    writer.keep();
}

bool PageFile::othersWait() const {
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = kLockBytes + kWaiting;
    lock.l_len = 1;
    return ::fcntl(file_.get(), F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

void PageFile::commit() {
    if (!writing_) return;
    assert(!changing_);
    std::vector<std::shared_ptr<Page>> dirty;
    std::vector<uint32_t> originals;
    auto pagesBefore = static_cast<uint32_t>(static_cast<uint64_t>(seen_.size) / format_->pageSize);
    for (const auto& page : pages_) {
        if (!page || !page->dirty) continue;
        assert(page->number < pageCount_ && page->bytes.size() == format_->pageSize);
        dirty.push_back(page);
        if (page->number < pagesBefore) originals.push_back(page->number);
    }
    // Pages that go are kept in the journal as well.
    for (uint32_t page = pageCount_; shrinks_ && page < pagesBefore; ++page) originals.push_back(page);
    if (!dirty.empty()) {
        if (!options_.exclusive) {
            lock(F_WRLCK, kComing);
            UnlockAtEnd coming(*this, kComing);
            lock(F_WRLCK, kReaders);
            coming.keep();
        }
        try {
            if (!options_.scratch) journal_.write(file_.get(), format_->pageSize, pagesBefore, originals);
            writePages(dirty);
            if (!options_.scratch) journal_.remove();
        } catch (...) {
            // Whatever has been written of it goes back, so that the file is as it was.
            if (journal_.exists()) journal_.playBack(file_.get(), format_->pageSize);
            moveTimeForward();
            rollBack();
            throw;
        }
        for (const auto& page : dirty) page->dirty = false;
    }
    writing_ = shrinks_ = false;
    leaveWriting();
}

void PageFile::writePages(const std::vector<std::shared_ptr<Page>>& pages) {
    size_t pageSize = format_->pageSize;
    Bytes run;
    for (size_t i = 0; i < pages.size();) {
        uint64_t begin = uint64_t{pages[i]->number} * pageSize;
        run.clear();
        uint32_t next = pages[i]->number;
        while (i < pages.size() && pages[i]->number == next && run.size() < kLongestWrite) {
            run.insert(run.end(), pages[i]->bytes.begin(), pages[i]->bytes.end());
            ++i;
            ++next;
        }
        writeAt(file_.get(), run.data(), run.size(), begin);
    }
    if ((shrinks_ && ::ftruncate(file_.get(), static_cast<off_t>(uint64_t{pageCount_} * pageSize)) != 0) ||
        (!options_.scratch && ::fdatasync(file_.get()) != 0))
        throw Error("The database \"" + path_ + "\" cannot be written: " + std::strerror(errno) + ".");
    moveTimeForward();
    [[maybe_unused]] uint32_t wanted = pageCount_;
    noteFile();
    assert(pageCount_ == wanted && endsWithWholePage());
}

// The time of change of the file becomes later than it was when this process saw it last, however coarse the
// clock of the file system is.
void PageFile::moveTimeForward() {
    struct stat s;
    if (::fstat(file_.get(), &s) != 0) return;
    int64_t time = nanoseconds(s.st_mtim);
    if (time > seen_.time && seen_.time >= 0) return;
    time = std::max(time, seen_.time) + 1000;
    timespec times[2] = {{0, UTIME_OMIT}, {time / 1000000000, time % 1000000000}};
    ::futimens(file_.get(), times);
}

void PageFile::rollBack() {
    if (!writing_) return;
    assert(!changing_);
    writing_ = shrinks_ = false;
    forgetPages();
    ++generation_;
    noteFile();
    leaveWriting();
}

void PageFile::leaveWriting() {
    assert(holdsWriter_ && !writing_);
    if (options_.exclusive) return;
    if (reading_ > 0)
        tryLock(F_RDLCK, kReaders);
    else
        unlock(kReaders);
    unlock(kComing);
    unlock(kWriter);
}

void PageFile::forgetPages() {
    pages_.clear();
    kept_ = 0;
}

std::shared_ptr<Page>& PageFile::cached(uint32_t number) {
    if (number >= pages_.size()) pages_.resize(std::max<size_t>(number + 1, pageCount_));
    return pages_[number];
}

std::shared_ptr<Page> PageFile::load(uint32_t number) {
    if (number < pages_.size() && pages_[number]) return pages_[number];
    if (number >= pageCount_) damaged("page " + std::to_string(number) + " lies behind the end of the file");
    if (kept_ >= kMostKept) {
        for (auto& page : pages_)
            if (page && !page->dirty) page = nullptr;
        kept_ = static_cast<size_t>(
            std::count_if(pages_.begin(), pages_.end(), [](auto& p) { return p != nullptr; }));
        // A large transaction keeps what it has changed; let it read as much again before the next look.
        if (kept_ > kMostKept / 2) kept_ = kMostKept / 2;
    }
    auto page = std::make_shared<Page>();
    page->number = number;
    page->bytes.resize(format_->pageSize);
    if (readAt(file_.get(), page->bytes.data(), page->bytes.size(), uint64_t{number} * format_->pageSize) !=
        page->bytes.size())
        damaged("the file ends within page " + std::to_string(number));
    ++kept_;
    return cached(number) = page;
}

PagePtr PageFile::page(uint32_t number) {
    return load(number);
}

PagePtr PageFile::page(uint32_t number, PageType type) {
    PagePtr page = load(number);
    if (page->bytes[0] != static_cast<uint8_t>(type))
        damaged("page " + std::to_string(number) + " is of the wrong kind");
    return page;
}

ByteSpan PageFile::writable(uint32_t number) {
    if (!changing_) throw Error("A page can be changed only within a change.");
    std::shared_ptr<Page> page = load(number);
    if (page->savedIn != changeNumber_) {
        page->savedIn = changeNumber_;
        Bytes copy;
        if (!spare_.empty()) {
            copy = std::move(spare_.back());
            spare_.pop_back();
        }
        copy = page->bytes;
        saved_.push_back({page, std::move(copy), page->dirty});
    }
    page->dirty = true;
    return ByteSpan(page->bytes);
}

uint32_t PageFile::append() {
    if (!changing_) throw Error("A page can be added only within a change.");
    constexpr uint64_t kLargestFile3 = uint64_t{1} << 30, kLargestFile4 = uint64_t{1} << 31;
    uint64_t largest = format_->version == Version::kAccess97 ? kLargestFile3 : kLargestFile4;
    if ((uint64_t{pageCount_} + 1) * format_->pageSize > largest)
        throw Error("The database \"" + path_ + "\" has reached the largest size of its format.");
    auto page = std::make_shared<Page>();
    page->number = pageCount_++;
    page->bytes.resize(format_->pageSize);
    page->dirty = true;
    page->savedIn = changeNumber_;
    ++kept_;
    cached(page->number) = page;
    return page->number;
}

void PageFile::replaceBy(PageFile& other) {
    if (!writing_ || changing_) throw Error("A file can be replaced only in a transaction.");
    changed_ = true;
    forgetPages();
    ++generation_;
    shrinks_ = other.pageCount() < pageCount_;
    pageCount_ = other.pageCount();
    for (uint32_t number = 0; number < pageCount_; ++number) {
        auto page = std::make_shared<Page>(*other.page(number));
        page->dirty = true;
        page->savedIn = 0;
        cached(number) = std::move(page);
    }
}

PageFile::Change::Change(PageFile& file) : file_(file), outer_(!file.changing_) {
    if (!file.writing_) throw Error("A change needs a transaction.");
    file.changed_ = true;
    if (!outer_) return;
    assert(file.saved_.empty());
    file.changing_ = true;
    file.innerFailed_ = false;
    ++file.changeNumber_;
    file.pagesBefore_ = file.pageCount_;
}

void PageFile::Change::done() {
    // A part that was given up halfway must not become part of the whole.
    assert(!outer_ || !file_.innerFailed_);
    done_ = true;
}

PageFile::Change::~Change() {
    if (!outer_) {
        file_.innerFailed_ = file_.innerFailed_ || !done_;
        return;
    }
    if (!done_) file_.undoChange();
    for (Saved& saved : file_.saved_) file_.spare_.push_back(std::move(saved.bytes));
    file_.saved_.clear();
    constexpr size_t kMostSpare = 64;
    if (file_.spare_.size() > kMostSpare) file_.spare_.resize(kMostSpare);
    file_.changing_ = false;
}

void PageFile::undoChange() {
    for (Saved& saved : saved_) {
        std::swap(saved.page->bytes, saved.bytes);
        saved.page->dirty = saved.dirty;
    }
    for (size_t i = pagesBefore_; i < pages_.size(); ++i) pages_[i] = nullptr;
    pageCount_ = pagesBefore_;
    ++generation_;
}

}  // namespace jet
