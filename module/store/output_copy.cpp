#include "module/store/output_copy.h"

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <vector>

#include "module/store/server_sign_in.h"
#include "platform/files/files.h"
#include "platform/files/random_file.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

namespace fs = std::filesystem;

constexpr size_t kKept = 3;
constexpr std::string_view kMark = " before ";
constexpr const char* kMoment = "%Y-%m-%d %H-%M-%S";
constexpr std::string_view kMomentPattern = "####-##-## ##-##-##";  // what it is for a reader

std::string momentText(std::time_t moment) {
    std::tm local{};
    localtime_r(&moment, &local);
    char text[sizeof "2026-11-25 20-41-07"];
    std::strftime(text, sizeof text, kMoment, &local);
    return text;
}

bool isMoment(std::string_view text) {
    return std::equal(text.begin(), text.end(), kMomentPattern.begin(), kMomentPattern.end(),
                      [](char c, char wanted) { return wanted == '#' ? c >= '0' && c <= '9' : c == wanted; });
}

// Written under a name of its own first: a copy that bears the name of one is whole.
bool copyWhole(const std::string& from, const std::string& to) {
    const std::string unfinished = to + ".part";
    std::error_code error;
    bool done = fs::copy_file(from, unfinished, fs::copy_options::overwrite_existing, error);
    if (done) {
        const auto file = files::RandomFile::open(unfinished, files::RandomFile::Mode::kUpdate);
        done = file && file->sync();
    }
    if (done) fs::rename(unfinished, to, error);
    if (!done || error) files::remove(unfinished);
    return done && !error;
}

// The names of the copies, from the first to the last.
std::vector<std::string> copiesIn(const std::string& folder, const std::string& beginning,
                                  const std::string& extension) {
    std::vector<std::string> copies;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder.empty() ? "." : folder, error)) {
        const std::string name = entry.path().filename().string();
        if (text::startsWith(name, beginning) && name.ends_with(extension) &&
            name.size() == beginning.size() + kMomentPattern.size() + extension.size() &&
            isMoment(std::string_view(name).substr(beginning.size(), kMomentPattern.size())))
            copies.push_back(name);
    }
    std::sort(copies.begin(), copies.end());
    return copies;
}

}  // namespace

std::string KeepOutputCopy(const std::string& path) {
    if (IsOdbcPath(path)) return "";
    const std::string database = files::onDisk(path);
    const std::string folder = files::folderOf(database), name = files::nameOf(database);
    const std::string extension = name.find('.') == std::string::npos ? "" : "." + files::extensionOf(name);
    const std::string beginning = name.substr(0, name.size() - extension.size()) + std::string(kMark);

    std::vector<std::string> copies = copiesIn(folder, beginning, extension);
    std::time_t moment = std::time(nullptr);
    std::string copy;
    // Two within a second, or a clock that was set back: the later one has the later name all the same.
    do copy = beginning + momentText(moment++) + extension;
    while (!copies.empty() && copy <= copies.back());
    if (!copyWhole(database, folder + copy)) return "";
    copies.push_back(copy);
    for (size_t i = 0; i + kKept < copies.size(); ++i) files::remove(folder + copies[i]);
    return folder + copy;
}

}  // namespace norvane
