#include "platform/dao/jet/repair.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "platform/dao/jet/check.h"
#include "platform/dao/jet/salvage.h"
#include "platform/dao/jet/schema.h"
#include "platform/dao/jet/scratch_file.h"
#include "platform/files/descriptor.h"

namespace jet {
namespace {

files::Descriptor openFile(const std::string& path, int flags) {
    files::Descriptor file(::open(path.c_str(), flags | O_CLOEXEC));
    if (!file) throw Error("Cannot open the file \"" + path + "\": " + std::strerror(errno) + ".");
    return file;
}

// Whether the first page does not even look like that of a database any more.
bool hasLostHeader(const std::string& path) {
    std::array<uint8_t, 24> head{};
    size_t size = readAt(openFile(path, O_RDONLY).get(), head.data(), head.size(), 0);
    std::string_view text = ByteView(head.data(), size).text();
    return text.find("Standard ") == std::string_view::npos;
}

// The version of a file by its other pages: the size at which pages begin.
const Format* guessFormat(const std::string& path) {
    files::Descriptor file = openFile(path, O_RDONLY);
    uint64_t size = std::filesystem::file_size(path);
    size_t pages3 = 0, pages4 = 0;
    for (uint64_t at = kJet3.pageSize; at + kJet3.pageSize <= size; at += kJet3.pageSize) {
        std::array<uint8_t, 2> head{};
        readAt(file.get(), head.data(), head.size(), at);
        if (head[0] < 1 || head[0] > 5 || head[1] != 1) continue;
        ++(at % kJet4.pageSize ? pages3 : pages4);
    }
    // Every other page of an Access 97 file begins where no page of an Access 2000 file does.
    if (pages3 + pages4 < 3) return nullptr;
    return pages3 * 3 > pages4 ? &kJet3 : &kJet4;
}

// Gives a file the first page of a new database, if its own is lost, and fills up its last page.
void mend(const std::string& path, const Format* newHeader, size_t pageSize) {
    files::Descriptor file = openFile(path, O_RDWR);
    if (newHeader) {
        Bytes header = newDatabaseHeader(*newHeader);
        writeAt(file.get(), header.data(), header.size(), 0);
    }
    uint64_t size = std::filesystem::file_size(path);
    uint64_t whole = (size + pageSize - 1) / pageSize * pageSize;
    if (whole != size && ::ftruncate(file.get(), static_cast<off_t>(whole)) != 0)
        throw Error("The database \"" + path + "\" cannot be written: " + std::strerror(errno) + ".");
}

// A copy of the damaged file. It goes when nothing was lost, and takes its old place again when the repair
// fails.
class PutAside {
  public:
    explicit PutAside(const std::string& path) : path_(path), copy_(path + ".damaged") {
        for (int number = 2; std::filesystem::exists(copy_); ++number)
            copy_ = path + ".damaged" + std::to_string(number);
        std::error_code error;
        std::filesystem::copy_file(path_, copy_, error);
        if (error)
            throw Error("The damaged file cannot be copied to \"" + copy_ + "\": " + error.message() + ".");
    }
    ~PutAside() {
        std::error_code ignored;
        if (!done_) std::filesystem::rename(copy_, path_, ignored);
    }
    PutAside(const PutAside&) = delete;
    PutAside& operator=(const PutAside&) = delete;

    std::string keep() {
        done_ = true;
        return copy_;
    }
    void drop() {
        done_ = true;
        ::unlink(copy_.c_str());
    }

  private:
    std::string path_, copy_;
    bool done_ = false;
};

// False for a damaged database.
bool compactSound(const std::string& path, const Database::Options& options, const Progress& progress) {
    try {
        Database database(path, options);
        if (database.readOnly()) database.begin();  // which says so
        if (!check(database).empty()) return false;
        compact(database, progress);
        return true;
    } catch (const DamagedError&) {
        return false;
    }
}

std::vector<std::string> repair(const std::string& path, const Database::Options& options,
                                const Format* newHeader, const Progress& progress) {
    std::vector<std::string> losses;
    if (newHeader) {
        mend(path, newHeader, newHeader->pageSize);
        losses.push_back("The first page is lost, and a password with it.");
    } else {
        mend(path, nullptr, PageFile(path, {}).format().pageSize);
    }
    ScratchFile scratch(path + ".compact");
    Database database(path, options);
    database.begin();
    std::vector<std::string> more = salvage(database, scratch.path(), !newHeader, progress);
    losses.insert(losses.end(), more.begin(), more.end());
    Database saved(scratch.path(), options);
    if (std::vector<std::string> faults = check(saved); !faults.empty())
        throw Error("The database \"" + path + "\" could not be repaired: " + faults.front() + ".");
    database.store().file.replaceBy(saved.store().file);
    database.commit();
    return losses;
}

}  // namespace

CompactReport compactAndRepair(const std::string& path, const Database::Options& options,
                               const Progress& progress) {
    CompactReport report;
    std::error_code error;
    report.bytesBefore = std::filesystem::file_size(path, error);
    if (error) throw Error("Cannot open the file \"" + path + "\": " + error.message() + ".");
    const Format* newHeader = hasLostHeader(path) ? guessFormat(path) : nullptr;
    if (newHeader || !compactSound(path, options, progress)) {
        PutAside aside(path);
        report.losses = repair(path, options, newHeader, progress);
        if (report.losses.empty())
            aside.drop();
        else
            report.kept = aside.keep();
    }
    report.bytesAfter = std::filesystem::file_size(path);
    return report;
}

}  // namespace jet
