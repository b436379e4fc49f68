#include "module/images/image_files.h"

#include <algorithm>

#include "module/settings/dialog_state.h"
#include "platform/ads/editor.h"
#include "platform/files/files.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

ui::FileBox imageBox() {
    ui::FileBox box;
    box.filter = "JPEG Files (*.jpg)|*.jpg|Bitmap Files (*.bmp)|*.bmp|GIF Files (*.gif)|*.gif||";
    box.pattern = "*.jpg";
    box.folder = readState(state::kImageFolder);
    box.mustExist = true;
    return box;
}

void rememberFolder(const std::string& path) {
    writeState(files::folderOf(path), state::kImageFolder);
}

}  // namespace

std::vector<std::string> AskImages() {
    std::vector<std::string> paths = ui::severalFiles(imageBox());
    if (!paths.empty()) rememberFolder(paths.front());
    return paths;
}

std::optional<std::string> AskImage() {
    std::optional<std::string> path = ui::fileBox(imageBox());
    if (path) rememberFolder(*path);
    return path;
}

bool IsImageName(const std::string& path) {
    constexpr const char* kEndings[] = {"jpg", "jpeg", "bmp", "gif", "png"};
    return std::any_of(std::begin(kEndings), std::end(kEndings), [&](const char* ending) {
        return text::equalNoCase(files::extensionOf(path), ending);
    });
}

std::string FindImageFile(const std::string& path, const std::vector<std::string>& folders) {
    auto isFile = [](const std::string& file) { return files::exists(file) && !files::isFolder(file); };
    if (isFile(path)) return path;
    const std::string name = files::nameOf(path);
    for (const std::string& folder : folders) {
        std::string file = files::join(folder, name);
        if (name.empty() || folder.empty() || !isFile(file)) continue;
        acutPrintf("\n%s is not there. Shown in its place: %s", path.c_str(), file.c_str());
        return file;
    }
    return "";
}

}  // namespace norvane
