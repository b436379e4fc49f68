// What the module of the camera does to pictures, which camera it takes, and its window, without a host.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "capture/adjust.h"
#include "capture/camera_choice.h"
#include "capture/capture_window.h"
#include "capture/device_pixels.h"
#include "platform/files/files.h"
#include "platform/images/convert.h"
#include "tests/platform/ui/checked_script.h"

using namespace capture;
using images::Image;

namespace {

Image grey(uint8_t value, images::Size size = {1, 1}) {
    Image image(size);
    for (size_t i = 0; i < image.pixels.size(); ++i)
        image.pixels[i] = i % images::kPixelBytes == 3 ? uint8_t{255} : value;
    return image;
}

int brightened(uint8_t value, int percent) {
    Image image = grey(value);
    brighten(image, percent);
    EXPECT_EQ(image.pixels[3], 255) << "what it covers stays";
    return image.pixels[0];
}

int contrasted(uint8_t value, int percent) {
    Image image = grey(value);
    contrast(image, percent);
    return image.pixels[0];
}

// A device that shows the number of the picture as its brightness, and goes away after some.
class CountingCamera : public Camera {
  public:
    explicit CountingCamera(int pictures, bool doesControls = false)
        : left_(pictures), doesControls_(doesControls) {}
    std::string name() const override { return "Counter"; }
    std::vector<images::Size> resolutions() override { return {}; }
    void setResolution(images::Size size) override { wished = size; }
    bool setControl(Control, int) override { return doesControls_; }
    bool isLive() const override { return true; }
    std::optional<Image> next() override {
        if (left_-- == 0) return std::nullopt;
        return grey(static_cast<uint8_t>(++taken_), {4, 2});
    }
    images::Size wished;

  private:
    int left_, taken_ = 0;
    bool doesControls_;
};

class CaptureTest : public testing::Test {
  protected:
    void SetUp() override {
        std::string pattern = (std::filesystem::temp_directory_path() / "norvane-capture-XXXXXX").string();
        folder_ = std::string(mkdtemp(pattern.data())) + "/";
        ui::setBackend(&ui_);
    }
    void TearDown() override {
        ui::setBackend(nullptr);
        std::filesystem::remove_all(folder_);
    }
    static ui::Step click(std::string control) { return {ui::Step::Kind::Click, std::move(control)}; }
    bool shown(const std::string& part) const {
        for (const std::string& line : ui_.log())
            if (line.find(part) != line.npos) return true;
        return false;
    }

    std::string folder_;
    CheckedScript ui_;
};

}  // namespace

TEST(DevicePixels, PairsShareTheirColour) {
    // Black and white, then two reds.
    const std::string bytes("\x10\x80\xEB\x80\x51\x5A\x51\xF0", 8);
    const Image image = imageOfYuyv(bytes, {2, 2}, 4);
    EXPECT_EQ(image.pixel(0, 0)[0], 0);
    EXPECT_EQ(image.pixel(1, 0)[2], 255);
    EXPECT_NEAR(image.pixel(0, 1)[0], 255, 2);
    EXPECT_NEAR(image.pixel(1, 1)[1], 0, 2);
    const Image cut = imageOfYuyv(std::string_view(bytes).substr(0, 6), {2, 2}, 4);
    EXPECT_EQ(cut.pixel(1, 0)[3], 255);
    EXPECT_EQ(cut.pixel(0, 1)[3], 0) << "a row that has not come";
    EXPECT_EQ(imageOfYuyv(bytes, {8, 1}, 4).pixel(0, 0)[3], 0) << "rows that are too short for their pixels";
}

TEST(Adjusting, FiftyPercentLeavesThePicture) {
    EXPECT_EQ(brightened(100, 50), 100);
    EXPECT_EQ(brightened(100, 60), 151);
    EXPECT_EQ(brightened(100, 0), 0);
    EXPECT_EQ(brightened(100, 1000), 255);
    EXPECT_EQ(contrasted(100, 50), 100);
    EXPECT_EQ(contrasted(100, 75), 86);
    EXPECT_EQ(contrasted(100, 0), 128);
    EXPECT_EQ(contrasted(1, 100), 0);
    EXPECT_EQ(scaledBy(grey(7, {4, 2}), {1, 2}).size, (images::Size{4, 4}));
    EXPECT_EQ(scaledBy(grey(7, {4, 2}), {2, 2}).pixel(7, 3)[0], 7);
}

TEST_F(CaptureTest, TheChoiceIsKept) {
    EXPECT_EQ(readChoice(folder_).device + readChoice(folder_).folder, "");
    ASSERT_TRUE(writeChoice(folder_, {"/dev/video7", ""}));
    EXPECT_EQ(readChoice(folder_).device, "/dev/video7");
    EXPECT_EQ(openCamera(readChoice(folder_)), nullptr) << "there is no such device";
    ASSERT_TRUE(writeChoice(folder_, {"", folder_ + "phone"}));
    EXPECT_EQ(readChoice(folder_).folder, folder_ + "phone");
    EXPECT_EQ(openCamera(readChoice(folder_)), nullptr) << "there is no such folder";
    EXPECT_FALSE(writeChoice("", {"/dev/video7", ""}));
    EXPECT_FALSE(writeChoice(folder_ + "nowhere", {"/dev/video7", ""}));
}

TEST_F(CaptureTest, AFolderShowsItsPicturesFromTheLast) {
    std::filesystem::create_directory(folder_ + "sub.jpg");
    ASSERT_TRUE(files::replace(folder_ + "notes.jpg", "no picture"));
    ASSERT_TRUE(images::writeBmp(grey(1, {1, 1}), folder_ + "b.bmp"));
    ASSERT_TRUE(images::writeBmp(grey(2, {2, 2}), folder_ + "a.bmp"));
    const std::unique_ptr<Camera> camera = openCamera({"", folder_});
    ASSERT_NE(camera, nullptr);
    EXPECT_EQ(camera->next()->size, (images::Size{1, 1}));
    camera->step(1);
    EXPECT_EQ(camera->next()->size, (images::Size{1, 1})) << "there is none behind the last";
    camera->step(-1);
    camera->step(-1);
    EXPECT_EQ(camera->next()->size, (images::Size{2, 2}));
    camera->setResolution({8, 8});
    EXPECT_EQ(camera->next()->size, (images::Size{8, 8}));
    files::remove(folder_ + "a.bmp");
    EXPECT_FALSE(camera->next()) << "gone in the meantime";
}

TEST_F(CaptureTest, ThePictureThatIsSeenIsTaken) {
    CountingCamera camera(10);
    ui_.answer(1422, {{ui::Step::Kind::Show}, {ui::Step::Kind::Show}, click("&Capture")});
    const std::optional<Image> taken = takePicture(camera, {{640, 480}, {2, 1}, std::nullopt, std::nullopt});
    ASSERT_TRUE(taken);
    EXPECT_EQ(int{taken->pixels[0]}, 3) << "one for each that was looked at";
    EXPECT_EQ(taken->size, (images::Size{8, 2}));
    EXPECT_EQ(camera.wished, (images::Size{640, 480}));
    EXPECT_TRUE(shown("label \"Counter\""));
    EXPECT_FALSE(shown("Next Picture")) << "a device shows what it sees";
}

TEST_F(CaptureTest, WhatTheCameraDoesItselfIsNotDoneAgain) {
    Wishes bright, flat;
    bright.brightness = 100;
    flat.contrast = 0;
    for (const auto& [wishes, changed] : {std::pair{bright, 255}, {flat, 128}}) {
        CountingCamera does(10, true), doesNot(10, false);
        ui_.answer(1422, {click("Capture")});
        ui_.answer(1422, {click("Capture")});
        EXPECT_EQ(takePicture(does, wishes)->pixels[0], 1);
        EXPECT_EQ(takePicture(doesNot, wishes)->pixels[0], changed);
    }
}

TEST_F(CaptureTest, ACameraThatGoesAwayEndsTheWindowWithAWord) {
    CountingCamera camera(2);
    ui_.answer(1422, {{ui::Step::Kind::Show}, {ui::Step::Kind::Show}});
    EXPECT_FALSE(takePicture(camera, {}));
    EXPECT_TRUE(shown("The camera \"Counter\" gives no picture."));
    CountingCamera none(0);
    EXPECT_FALSE(takePicture(none, {}));
}
