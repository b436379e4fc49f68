// Picture files that other programs have made: photographs, and odd ones.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/files/files.h"
#include "platform/images/convert.h"
#include "platform/images/decode.h"

using namespace images;

namespace {

const std::string kShared = NORVANE_SHARED_DATA;

struct Colour {
    int red, green, blue;
};

class PictureFiles : public testing::Test {
  protected:
    void SetUp() override {
        if (!files::exists(kShared + "/pictures/progressive.jpg")) GTEST_SKIP() << "no shared pictures";
    }
    static std::string file(const std::string& name) {
        return kShared + (name.rfind("photo", 0) == 0 ? "/" : "/pictures/") + name;
    }
    // The mean of a part of a picture, given by its middle and in hundredths of its sides.
    static Colour colourAt(const Image& image, int across, int down) {
        const uint8_t* p = image.pixel(image.size.width * across / 100, image.size.height * down / 100);
        return {p[0], p[1], p[2]};
    }
    static void expectColour(const std::string& name, Size frame, int across, int down, Colour wanted,
                             int tolerance) {
        const Image image = previewOfFile(file(name), frame);
        ASSERT_FALSE(image.empty()) << name;
        const Colour c = colourAt(image, across, down);
        const std::string where = name + ": " + std::to_string(c.red) + " " + std::to_string(c.green) + " " +
                                  std::to_string(c.blue);
        EXPECT_NEAR(c.red, wanted.red, tolerance) << where;
        EXPECT_NEAR(c.green, wanted.green, tolerance) << where;
        EXPECT_NEAR(c.blue, wanted.blue, tolerance) << where;
    }
};

constexpr Size kWhole = {160, 120};
constexpr Colour kRed = {230, 20, 20};

}  // namespace

TEST_F(PictureFiles, HaveTheirSizes) {
    struct Case {
        const char* name;
        Size size;
    };
    for (const Case& c : {Case{"photo1.jpg", {640, 480}},
                          {"photo2.bmp", {640, 480}},
                          {"photo3.gif", {480, 640}},
                          {"photo4.png", {640, 480}},
                          {"turned.jpg", {160, 120}},  // stored upright
                          {"progressive.jpg", {160, 120}},
                          {"really_jpeg.bmp", {160, 120}},
                          {"topdown.bmp", {160, 120}},
                          {"one_pixel.png", {1, 1}}})
        EXPECT_EQ(sizeOfFile(file(c.name)).value_or(Size()), c.size) << c.name;
    for (const char* name : {"text.jpg", "empty.jpg", "missing.jpg", ""}) {
        EXPECT_FALSE(sizeOfFile(file(name))) << name;
        EXPECT_TRUE(previewOfFile(file(name), kWhole).empty()) << name;
    }
}

// A red square stands in the upper left corner whatever the kind of file.
TEST_F(PictureFiles, OfAllKindsLookTheSame) {
    for (const char* name : {"progressive.jpg", "cmyk.jpg", "turned.jpg", "mirrored.jpg", "really_jpeg.bmp",
                             "bits8.bmp", "rle8.bmp", "topdown.bmp", "cut.jpg"})
        expectColour(name, kWhole, 6, 8, kRed, 3);
    expectColour("bits24_topdown.bmp", {80, 60}, 6, 8, kRed, 3);
    expectColour("animated.gif", kWhole, 6, 8, kRed, 40);
}

TEST_F(PictureFiles, AreTheSameAtAPartOfTheirSize) {
    for (const char* name : {"progressive.jpg", "turned.jpg", "mirrored.jpg", "cmyk.jpg", "rle8.bmp"})
        expectColour(name, {20, 15}, 6, 8, kRed, 40);
    const Image large = previewOfFile(file("photo1.jpg"), {640, 480});
    const Image small = previewOfFile(file("photo1.jpg"), {64, 48});
    ASSERT_EQ(small.size, (Size{64, 48}));
    const Image averaged = scaled(large, {64, 48});
    int64_t difference = 0;
    for (size_t i = 0; i < small.pixels.size(); ++i)
        difference += std::abs(small.pixels[i] - averaged.pixels[i]);
    EXPECT_LT(difference / static_cast<int64_t>(small.pixels.size()), 4);
}

TEST_F(PictureFiles, WithoutAGroundLetItThrough) {
    auto clear = [](const std::string& name) {
        const Image image = previewOfFile(file(name), *sizeOfFile(file(name)));
        int count = 0;
        for (size_t i = 3; i < image.pixels.size(); i += kPixelBytes) count += image.pixels[i] < 255 ? 1 : 0;
        return count;
    };
    EXPECT_GT(clear("transparent.gif"), 0);
    EXPECT_EQ(clear("alpha.png"), 0) << "has the part, and covers everywhere";
    EXPECT_EQ(clear("photo4.png"), 0);
    EXPECT_EQ(clear("grey16.png"), 0);
    EXPECT_EQ(clear("photo3.gif"), 0) << "interlaced, every row has come";
}

TEST_F(PictureFiles, CutAnywhereTheyDoNoHarm) {
    for (const char* name :
         {"progressive.jpg", "cmyk.jpg", "animated.gif", "photo4.png", "rle8.bmp", "bits1.bmp"}) {
        const std::string bytes = *files::read(file(name));
        for (size_t size = 0; size < bytes.size(); size += bytes.size() / 500 + 1)
            preview(std::string_view(bytes).substr(0, size), {40, 40});
        const Image most = preview(std::string_view(bytes).substr(0, bytes.size() * 9 / 10), {40, 40});
        EXPECT_FALSE(most.empty()) << name;
    }
}

TEST_F(PictureFiles, ABitmapBecomesAJpeg) {
    const std::string made = testing::TempDir() + "picture_files_test.jpg";
    ASSERT_TRUE(convertToJpeg(file("photo2.bmp"), made));
    EXPECT_EQ(files::read(made)->substr(0, 3), "\xFF\xD8\xFF");
    const Image before = previewOfFile(file("photo2.bmp"), {640, 480}),
                after = previewOfFile(made, {640, 480});
    ASSERT_EQ(after.size, before.size);
    int64_t difference = 0;
    for (size_t i = 0; i < before.pixels.size(); ++i)
        difference += std::abs(before.pixels[i] - after.pixels[i]);
    EXPECT_LT(difference / static_cast<int64_t>(before.pixels.size()), 4);
    EXPECT_FALSE(convertToJpeg(file("text.jpg"), made));
    EXPECT_FALSE(convertToJpeg(file("photo2.bmp"), testing::TempDir() + "no_such_folder/x.jpg"));
    EXPECT_GT(files::read(made)->size(), 1000u) << "what failed left the file alone";
    files::remove(made);
}
