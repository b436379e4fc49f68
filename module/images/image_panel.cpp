#include "module/images/image_panel.h"

#include <algorithm>

#include "module/cad/drawing_folder.h"
#include "module/cad/lisp_symbols.h"
#include "module/images/camera_dialog.h"
#include "module/images/capture.h"
#include "module/images/image_controls.h"
#include "module/images/image_files.h"
#include "module/settings/dialog_state.h"
#include "platform/files/files.h"
#include "platform/images/convert.h"
#include "platform/images/decode.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

using namespace image_controls;

namespace {

constexpr const char* kBetween = " / ";
constexpr const char* kNothingChecked = "Please check an image from table!";

// What a person is told in words of our own.
void tell(const std::string& text) {
    ui::ask({"Images", text, ui::kBoxAlert, ui::kOk});
}

void tellFault(const char* text) {
    ui::messageBox("Error", text);
}

// A record holds so many characters of a path.
bool fitsRecord(const std::string& path) {
    constexpr int kMost = 255;
    const int characters = ui::characterCount(path);
    if (characters > kMost)
        tell(text::format("The path has %d characters, and a record holds %d. Left out:\n", characters,
                          kMost) +
             path);
    return characters <= kMost;
}

// The sheet takes nothing while a camera is at work.
class ControlsOff {
  public:
    explicit ControlsOff(ui::Dialog& dialog) : dialog_(dialog), focus_(dialog.focus()) {
        for (const auto& control : dialog.controls()) {
            if (!control->enabled()) continue;
            control->enable(false);
            off_.push_back(control.get());
        }
    }
    ~ControlsOff() {
        for (ui::Control* control : off_) control->enable();
        dialog_.setFocus(focus_);
    }
    ControlsOff(const ControlsOff&) = delete;
    ControlsOff& operator=(const ControlsOff&) = delete;

  private:
    ui::Dialog& dialog_;
    int focus_;
    std::vector<ui::Control*> off_;
};

std::string withEnding(const std::string& path, const char* ending) {
    return path.substr(0, path.size() - files::extensionOf(path).size()) + ending;
}

}  // namespace

ImagePanel::ImagePanel(ui::Dialog& dialog, ui::Grid& grid, Owner& owner)
    : dialog_(dialog), grid_(grid), owner_(owner) {
    dialog.setTakesFiles();
}

void ImagePanel::open() {
    dialog_.get<ui::RadioButton>(readState(state::kImageFormat) == "JPG" ? kJpg : kBmp).check();
    showCamera(dialog_, CaptureIsThere(owner_.imagePlace().binDirectory));
    showCurrent();
}

void ImagePanel::load(const LoadedRecord& record) {
    const std::vector<std::string> folders = otherFolders();
    rows_.load(record, [&](const std::string& path) { return FindImageFile(path, folders); });
    showRows();
}

void ImagePanel::clear() {
    rows_.clear();
    showCurrent();
}

// Where an image is looked for that is not at its place.
std::vector<std::string> ImagePanel::otherFolders() const {
    std::vector<std::string> folders;
    const std::string output = owner_.imagePlace().outputPath;
    if (RouteOf(output) == Route::kAccess) folders.push_back(files::folderOf(output));
    if (const std::optional<std::string> folder = SavedDrawingFolder()) folders.push_back(*folder);
    return folders;
}

// --- What is seen
// -------------------------------------------------------------------------------------------

void ImagePanel::showRows() {
    grid_.setRows(owner_.promptRows() + rows_.size());
    for (int image = 0; image < rows_.size(); ++image) {
        const ImageRow& row = rows_.rows()[static_cast<size_t>(image)];
        const int at = gridRow(image);
        grid_.setType(1, at, ui::CellType::fixed());
        grid_.setText(1, at, row.column);
        grid_.setType(2, at, ui::CellType::checkBox(row.file.empty() ? kNoImage : row.file));
    }
    showCurrent();
}

void ImagePanel::showCurrent() {
    for (int image = 0; image < rows_.size(); ++image)
        grid_.setChecked(2, gridRow(image), image == rows_.current());
    std::string file, path;
    if (rows_.current() >= 0) {
        const ImageRow& row = rows_.rows()[static_cast<size_t>(rows_.current())];
        file = row.file;
        path = file.empty() ? row.path : file;
    }
    auto& preview = dialog_.get<ui::Picture>(kPreview);
    const std::optional<images::Size> size = file.empty() ? std::nullopt : images::sizeOfFile(file);
    if (size)
        preview.setPath(file, images::fitted(*size, {preview.width(), preview.height()}));
    else
        preview.setPath("");
    dialog_.find(kPath)->setText(path);
    dialog_.find(kCounter)->setText(std::to_string(rows_.position()) + kBetween +
                                    std::to_string(rows_.count()));
}

void ImagePanel::choose(int image) {
    rows_.choose(image);
    showCurrent();
}

void ImagePanel::view() {
    const std::string& path = dialog_.get<ui::Picture>(kPreview).path();
    if (!path.empty() && !ui::showInViewer(path)) tell("There is no program that shows " + path + ".");
}

// --- Reactions --------------------------------------------------------------------------------------------

bool ImagePanel::command(int id) {
    switch (id) {
        case kNew:
            if (owner_.featureIsGood()) addImages(AskImages());
            return true;
        case kUpdate:
            if (owner_.featureIsGood()) update();
            return true;
        case kDelete:
            if (owner_.featureIsGood()) remove();
            return true;
        case kCapture:
            if (owner_.featureIsGood()) capture();
            return true;
        case kPickCamera:
            pickCamera();
            return true;
        case kSetCamera:
            // The values that are kept can be changed without the camera's word.
            LoadCapture(owner_.imagePlace().binDirectory);
            RunCameraSettings();
            return true;
        case kFirst:
        case kNext:
        case kPrevious:
        case kLast:
            step(id);
            return true;
        case kBmp:
        case kJpg:
            setFormat(id);
            return true;
        case kPreview:
            view();
            return true;
        default:
            return false;
    }
}

bool ImagePanel::key(const ui::Key& key) {
    constexpr std::pair<const char*, int> kKeys[] = {
        {"F2", kCapture}, {"F5", kFirst}, {"F6", kNext}, {"F7", kPrevious}, {"F8", kLast}};
    for (const auto& [name, id] : kKeys) {
        if (!key.is(name)) continue;
        grid_.setEditing(false);
        if (dialog_.find(id)->visible()) command(id);
        return true;
    }
    return false;
}

bool ImagePanel::cellChanged(ui::CellPosition at) {
    const int image = at.row - owner_.promptRows() - 1;
    if (at.column != 2 || image < 0 || image >= rows_.size()) return false;
    if (grid_.checked(at.column, at.row))
        choose(image);
    else if (image == rows_.current())
        choose(-1);
    return true;
}

// Rows that have come since then stay. Which one is checked was taken back where all of them were there.
void ImagePanel::undone() {
    if (grid_.rows() == owner_.promptRows() + rows_.size()) {
        int checked = -1;
        for (int image = 0; image < rows_.size(); ++image)
            if (grid_.checked(2, gridRow(image))) checked = image;
        rows_.choose(checked);
    }
    showRows();
}

void ImagePanel::clickedAgain(const ui::RadioButton& button) {
    if (button.id() != kBmp && button.id() != kJpg) return;
    const int other = button.id() == kBmp ? kJpg : kBmp;
    dialog_.get<ui::RadioButton>(other).check();
    setFormat(other);
}

void ImagePanel::setFormat(int id) {
    writeState(id == kJpg ? "JPG" : "BMP", state::kImageFormat);
}

// The text of the counter is what is moved: it says where one is.
void ImagePanel::step(int id) {
    const std::string& counter = dialog_.find(kCounter)->text();
    const size_t between = counter.find(kBetween);
    if (between == std::string::npos) return;
    const auto current = static_cast<int>(text::toLong(counter));
    const auto total =
        static_cast<int>(text::toLong(counter.substr(between + std::string_view(kBetween).size())));
    const int wanted = id == kFirst ? 1 : id == kLast ? total : id == kNext ? current + 1 : current - 1;
    if (wanted >= 1 && wanted <= total) choose(rows_.nth(wanted));
}

// --- Images come and go -----------------------------------------------------------------------------------

void ImagePanel::addImages(const std::vector<std::string>& paths) {
    bool any = false;
    for (const std::string& path : paths) {
        if (!fitsRecord(path)) continue;
        const int image = rows_.free();
        rows_.put(image, path);
        rows_.choose(image);
        any = true;
    }
    if (!any) return;
    showRows();
    owner_.fitColumns();
}

void ImagePanel::drop(const std::vector<std::string>& paths) {
    if (!owner_.featureIsGood()) return;
    std::vector<std::string> taken;
    std::string others;
    for (const std::string& path : paths) {
        if (IsImageName(path) && files::exists(path) && !files::isFolder(path))
            taken.push_back(path);
        else
            others += "\n" + path;
    }
    addImages(taken);
    if (!others.empty()) tell("Images are JPEG, BMP, GIF and PNG files. Left out:" + others);
}

void ImagePanel::update() {
    if (rows_.current() < 0) return tellFault(kNothingChecked);
    const std::optional<std::string> path = AskImage();
    if (!path || !fitsRecord(*path)) return;
    rows_.put(rows_.current(), *path);
    showRows();
    owner_.fitColumns();
}

void ImagePanel::remove() {
    if (rows_.current() < 0) return tellFault(kNothingChecked);
    if (rows_.rows()[static_cast<size_t>(rows_.current())].path.empty())
        return tellFault("Invalid selection!");
    rows_.empty(rows_.current());
    showRows();
}

// --- The camera -------------------------------------------------------------------------------------------

void ImagePanel::capture() {
    const ImagePlace place = owner_.imagePlace();
    if (!LoadCapture(place.binDirectory)) return;
    std::string folder = files::folderOf(place.outputPath);
    if (RouteOf(place.outputPath) == Route::kOdbc) {
        folder = readState(state::kImageFolder);
        if (folder.empty()) GetLispValue(folder, "tmpdir$");
    }
    const int image = rows_.free();
    const std::string proposed = CapturePath(folder, place.table, place.key, rows_.numberOf(image));
    const bool wasThere = files::exists(proposed);
    std::optional<std::string> captured;
    {
        const ControlsOff off(dialog_);
        captured = CaptureImage(proposed);
    }
    if (!captured) return;
    const std::string path = inFormat(*captured, wasThere);
    if (!fitsRecord(path)) return;
    rows_.put(image, path);
    rows_.choose(image);
    showRows();
    owner_.fitColumns();
}

std::string ImagePanel::inFormat(const std::string& captured, bool wasThere) {
    const bool isJpeg = text::equalNoCase(files::extensionOf(captured), "jpg");
    if (!dialog_.get<ui::RadioButton>(kJpg).checked()) {
        const std::string bitmap = isJpeg ? withEnding(captured, "bmp") : captured;
        return files::exists(bitmap) ? bitmap : captured;
    }
    if (isJpeg) return captured;
    std::string jpeg = withEnding(captured, "jpg");
    if (!images::convertToJpeg(captured, jpeg)) {
        tell("The image could not be written as " + jpeg + ". It stays " + captured + ".");
        return captured;
    }
    if (!wasThere) files::remove(captured);
    return jpeg;
}

void ImagePanel::pickCamera() {
    if (!LoadCapture(owner_.imagePlace().binDirectory)) return;
    const ControlsOff off(dialog_);
    PickCamera();
}

}  // namespace norvane
