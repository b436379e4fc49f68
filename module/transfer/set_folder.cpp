#include "module/transfer/set_folder.h"

#include <cstdlib>
#include <filesystem>

#include "platform/ads/editor.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

namespace fs = std::filesystem;
using files::RandomFile;

constexpr const char* kHiddenFolder = ".export-";
constexpr const char* kLock = "lock";        // held by the run that writes into the hidden folder
constexpr const char* kWhole = "committed";  // is there once all sets in the hidden folder are whole

// What other programs, and we, keep beside a set and would take for the new one's.
constexpr const char* kCompanions[] = {"cpg", "prj", "sbn", "sbx", "qix"};
// The table first and the shapes last: which of them has been moved tells how far a killed run has come.
constexpr const char* kFirstPart = "dbf";
constexpr const char* kParts[] = {kFirstPart, "shx", "cpg", "prj", "shp"};

// The name of the set in a folder; "" for none, or one that has been moved.
std::string setIn(const fs::path& folder) {
    std::error_code error;
    for (const fs::directory_entry& file : fs::directory_iterator(folder, error))
        if (file.path().extension() == ".shp") return file.path().stem().string();
    return "";
}

}  // namespace

SetFolder::SetFolder(const std::string& path) : path_(files::onDisk(files::native(path))) {
    list();
    finishBroken();
}

SetFolder::~SetFolder() {
    std::error_code error;
    if (!hidden_.empty()) fs::remove_all(hidden_, error);
}

void SetFolder::list() {
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(path_.empty() ? "." : path_, error))
        if (std::string name = entry.path().filename().string(); !name.empty()) {
            std::string key = text::upper(name);
            names_.emplace(std::move(key), std::move(name));
        }
}

std::vector<std::string> SetFolder::find(const std::string& name) const {
    std::vector<std::string> found;
    const auto [first, last] = names_.equal_range(text::upper(name));
    for (auto it = first; it != last; ++it) found.push_back(it->second);
    return found;
}

// --- The hidden folder ---------------------------------------------------------------------------------

bool SetFolder::makeHidden() {
    // Whoever looks for broken runs may remove a folder that has not been locked yet.
    constexpr int kAttempts = 3;
    for (int i = 0; i < kAttempts && !lock_; ++i) {
        std::string pattern = path_ + kHiddenFolder + "XXXXXX";
        if (!::mkdtemp(pattern.data())) return false;
        hidden_ = pattern + "/";
        lock_ =
            RandomFile::open(hidden_ + kLock, RandomFile::Mode::kCreate, RandomFile::Sharing::kDenyWriters);
    }
    return lock_ != nullptr;
}

std::string SetFolder::makeUnfinished() {
    if (!lock_ && !makeHidden()) return "";
    // A folder for each: a file is looked for in any case of letters, which costs what its folder holds.
    const std::string folder = hidden_ + std::to_string(++sets_);
    std::error_code error;
    return fs::create_directory(folder, error) ? folder + "/" : "";
}

bool SetFolder::commit() {
    return lock_ && files::syncFileSystem(hidden_) &&
           RandomFile::open(hidden_ + kWhole, RandomFile::Mode::kCreate) != nullptr;
}

// --- Into place ----------------------------------------------------------------------------------------

bool SetFolder::putInPlace(const std::string& unfinished, const std::string& name) {
    if (files::exists(unfinished + name + "." + kFirstPart))
        for (const char* companion : kCompanions) remove(name + "." + companion);
    for (const char* part : kParts)
        if (const std::string file = name + "." + part;
            files::exists(unfinished + file) && !move(unfinished + file, file))
            return false;
    return true;
}

bool SetFolder::move(const std::string& from, const std::string& name) {
    std::error_code error;
    fs::rename(from, path_ + name, error);
    if (error) return false;
    removeOthers(name);
    if (find(name).empty()) names_.emplace(text::upper(name), name);
    return true;
}

void SetFolder::remove(const std::string& name) {
    removeOthers(name);
    std::error_code error;
    if (!find(name).empty() && fs::remove(path_ + name, error)) names_.erase(text::upper(name));
}

// Removes what has the name in other letters.
void SetFolder::removeOthers(const std::string& name) {
    const auto [first, last] = names_.equal_range(text::upper(name));
    for (auto it = first; it != last;) {
        std::error_code error;
        const bool goes = it->second != name && fs::remove(path_ + it->second, error);
        it = goes ? names_.erase(it) : std::next(it);
    }
}

// --- What killed runs have left ------------------------------------------------------------------------

void SetFolder::finishBroken() {
    std::vector<std::string> hidden;
    for (const auto& [key, name] : names_)
        if (name.starts_with(kHiddenFolder)) hidden.push_back(name);
    size_t finished = 0;
    for (const std::string& name : hidden) finished += finish(name);
    if (finished > 0)
        acutPrintf("\n%s of an export that was broken off put in place.",
                   text::counted(finished, "set", "sets").c_str());
}

// Gives how many sets were put in place.
size_t SetFolder::finish(const std::string& hidden) {
    const std::string folder = path_ + hidden + "/";
    std::error_code error;
    const auto lock =
        RandomFile::open(folder + kLock, RandomFile::Mode::kUpdate, RandomFile::Sharing::kDenyWriters);
    if (!lock) {
        // Its run is at work, or was killed before it had written anything: only an empty folder goes.
        fs::remove(folder.substr(0, folder.size() - 1), error);
        return 0;
    }
    size_t finished = 0;
    if (files::exists(folder + kWhole))
        for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
            const std::string name = entry.is_directory(error) ? setIn(entry.path()) : "";
            if (!name.empty() && putInPlace(entry.path().string() + "/", name)) ++finished;
        }
    fs::remove_all(folder, error);
    return finished;
}

void FinishBrokenExports(const std::string& folder) {
    const SetFolder finished(folder);
}

}  // namespace norvane
