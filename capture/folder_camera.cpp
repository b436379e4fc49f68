#include "capture/folder_camera.h"

#include <algorithm>
#include <filesystem>

#include "platform/files/files.h"
#include "platform/images/decode.h"

namespace capture {
namespace {

namespace fs = std::filesystem;

class FolderCamera : public Camera {
  public:
    FolderCamera(std::string folder, std::vector<std::string> pictures)
        : folder_(std::move(folder)), pictures_(std::move(pictures)), at_(pictures_.size() - 1) {}

    std::string name() const override { return files::nameOf(pictures_[at_]) + " of " + folder_; }
    std::vector<images::Size> resolutions() override { return {}; }
    void setResolution(images::Size size) override { wanted_ = size; }
    bool setControl(Control, int) override { return false; }
    bool isLive() const override { return false; }
    void step(int direction) override {
        if (direction > 0 && at_ + 1 < pictures_.size()) ++at_;
        if (direction < 0 && at_ > 0) --at_;
    }

    std::optional<images::Image> next() override {
        const std::optional<std::string> bytes = files::read(pictures_[at_]);
        const std::optional<images::Size> size = bytes ? images::sizeOf(*bytes) : std::nullopt;
        if (!size) return std::nullopt;
        images::Image image = images::preview(*bytes, wanted_.width > 0 ? wanted_ : *size);
        if (image.empty()) return std::nullopt;
        return image;
    }

  private:
    std::string folder_;
    std::vector<std::string> pictures_;
    size_t at_;
    images::Size wanted_;
};

}  // namespace

std::unique_ptr<Camera> openFolder(const std::string& folder) {
    std::vector<std::string> pictures;
    std::error_code error;
    for (fs::directory_iterator it(files::onDisk(folder), error), end; !error && it != end;
         it.increment(error))
        if (images::sizeOfFile(it->path().string())) pictures.push_back(it->path().string());
    if (pictures.empty()) return nullptr;
    std::sort(pictures.begin(), pictures.end());
    return std::make_unique<FolderCamera>(folder, std::move(pictures));
}

}  // namespace capture
