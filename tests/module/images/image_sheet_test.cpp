// Images on the sheet, from the Lisp call to the record. Feature TREE has 12 rows, so that its images stand
// from row 13 on.
#include "tests/module/module_fixture.h"
#include "tests/platform/dao/scratch.h"

#include "platform/images/convert.h"
#include "platform/images/decode.h"

class ImageSheet : public ModuleTest {
  protected:
    void SetUp() override {
        ModuleTest::SetUp();
        makeTemplate();
        makeEntity();
        // Each has its own shape, which the frame of the preview tells.
        makePicture("wide.bmp", {80, 40});
        makePicture("high.bmp", {40, 80});
        makePicture("square.bmp", {20, 20});
    }

    void makePicture(const std::string& name, images::Size size) const {
        images::Image image(size);
        std::fill(image.pixels.begin(), image.pixels.end(), uint8_t{200});
        ASSERT_TRUE(images::writeBmp(image, path(name)));
    }
    static ui::Step mark(int image, bool on = true) { return cell(12 + image, on ? "1" : "0"); }
    static ui::Step drop(std::vector<std::string> files) {
        ui::Step step{ui::Step::Kind::Drop};
        step.files = std::move(files);
        return step;
    }
    static ui::Step text(std::string control, std::string value) {
        return {ui::Step::Kind::Text, std::move(control), std::move(value)};
    }
    // The record of a tree with images at their places, made by another program.
    void makeRecord(const std::string& columns, const std::string& values) {
        answer(134, {cell(2, "14"), click("OK")});
        ASSERT_EQ(prompt("17", "TREE"), "1");
        std::string all = columns;
        for (size_t at = 0; at < all.size();) {
            const size_t end = std::min(all.find(';', at), all.size());
            sqlite("output.mdb", "alter table TREE add column [" + all.substr(at, end - at) + "] TEXT(255)");
            at = end + 1;
        }
        if (!values.empty()) sqlite("output.mdb", "update TREE set " + values);
        ui_.clearLog();
    }
    std::string record(const std::string& columns) const {
        return sqlite("output.mdb", "select " + columns + " from TREE");
    }
    bool counted(const std::string& counter) const { return shown("label \"" + counter + "\""); }
    // How the preview frames a file.
    std::string preview(const std::string& name, const std::string& frame) const {
        return "1121 picture \"" + path(name) + "\" in " + frame;
    }
};

TEST_F(ImageSheet, NewImagesGoIntoTheRecord) {
    ui_.answerFile(path("wide.bmp"));
    ui_.answerFile(path("high.bmp"));
    answer(134, {show(), cell(2, "14"), click("&New"), show(), click("New"), show(), click("OK")});
    EXPECT_EQ(prompt("17", "TREE"), "1");
    EXPECT_TRUE(counted("0 / 0"));
    EXPECT_TRUE(shown("grid 2 x 13"));
    EXPECT_TRUE(shown("IMAGE_ZGEO/1                         [x] " + path("wide.bmp")));
    EXPECT_TRUE(shown(preview("wide.bmp", "158 x 79")));
    EXPECT_TRUE(counted("1 / 1"));
    EXPECT_TRUE(shown("IMAGE_ZGEO/1                         [ ] " + path("wide.bmp")))
        << "one is checked at a time";
    EXPECT_TRUE(shown("IMAGE_ZGEO/2                         [x] " + path("high.bmp")));
    EXPECT_TRUE(shown(preview("high.bmp", "73 x 146")));
    EXPECT_TRUE(counted("2 / 2"));
    EXPECT_TRUE(shown("edit \"" + path("high.bmp") + "\" (read-only)"));
    EXPECT_TRUE(
        shown("open file box \"JPEG Files (*.jpg)|*.jpg|Bitmap Files (*.bmp)|*.bmp|GIF Files "
              "(*.gif)|*.gif||\" pattern \"*.jpg\""));
    EXPECT_EQ(record("[IMAGE_ZGEO/1], [LABEL/1], [IMAGE_ZGEO/2], [LABEL/2]"),
              path("wide.bmp") + "||" + path("high.bmp") + "|\n");
    // The folder of the last one is where the next box begins.
    EXPECT_EQ(boxFolders().back(), path(""));
    ui_.clearLog();
    answer(134, {show(), click("Cancel")});
    prompt("17", "TREE");
    EXPECT_TRUE(counted("1 / 2")) << "the first image is shown";
    EXPECT_TRUE(shown(preview("wide.bmp", "158 x 79")));
}

TEST_F(ImageSheet, ColumnsWithAGapAndOutOfOrder) {
    makeRecord("IMAGE_ZGEO/10;LABEL/10;IMAGE_ZGEO/2;IMAGE_ZGEO/1",
               "[IMAGE_ZGEO/10] = '" + path("wide.bmp") + "', [LABEL/10] = 'crown', [IMAGE_ZGEO/1] = '" +
                   path("high.bmp") + "'");
    ui_.answerFile(path("square.bmp"));
    ui_.answerFile(path("square.bmp"));
    answer(134, {show(), click("New"), click("New"), show(), click("OK")});
    EXPECT_EQ(prompt("17", "TREE"), "1");
    EXPECT_TRUE(counted("1 / 2"));
    EXPECT_TRUE(shown("IMAGE_ZGEO/2                         [ ] No image!"));
    EXPECT_TRUE(counted("4 / 4"));
    EXPECT_EQ(record("[IMAGE_ZGEO/10], [LABEL/10], [IMAGE_ZGEO/2], [IMAGE_ZGEO/11]"),
              path("wide.bmp") + "|crown|" + path("square.bmp") + "|" + path("square.bmp") + "\n")
        << "New fills the gap, then takes one more than the highest";
}

TEST_F(ImageSheet, NavigationFollowsTheCounterAndWrapsNowhere) {
    makeRecord("IMAGE_ZGEO/1;IMAGE_ZGEO/2;IMAGE_ZGEO/3",
               "[IMAGE_ZGEO/1] = '" + path("wide.bmp") + "', [IMAGE_ZGEO/3] = '" + path("high.bmp") + "'");
    auto at = [&](std::vector<ui::Step> steps, const std::string& counter, const std::string& checked) {
        steps.push_back(show());
        steps.push_back(click("Cancel"));
        answer(134, steps);
        prompt("17", "TREE");
        EXPECT_TRUE(counted(counter)) << counter << checked;
        if (!checked.empty()) {
            EXPECT_TRUE(shown("IMAGE_ZGEO/" + checked + "                         [x]")) << checked;
        }
        ui_.clearLog();
    };
    at({}, "1 / 2", "1");
    at({click("> F6")}, "2 / 2", "3");
    at({key("F6"), key("F6")}, "2 / 2", "3");
    at({key("F6"), click("< F7")}, "1 / 2", "1");
    at({key("F7")}, "1 / 2", "1");
    at({key("F8")}, "2 / 2", "3");
    at({click("<< F8"), click(">> F5")}, "1 / 2", "1");
    at({mark(1, false)}, "0 / 2", "");
    at({mark(1, false), key("F6")}, "1 / 2", "1");
    at({mark(1, false), key("F7")}, "0 / 2", "");
    at({mark(2)}, "1 / 2", "2");
    at({mark(3), mark(2), mark(2, false)}, "0 / 2", "");
    // The keys work in a cell that is edited, and keep what is typed.
    at({cell(2, "15"), key("Enter"), key("9"), key("F6")}, "2 / 2", "3");
}

TEST_F(ImageSheet, WithoutImagesNavigationDoesNothing) {
    answer(134, {click(">> F5"), click("> F6"), click("< F7"), click("<< F8"), key("F5"), show(),
                 click("Cancel")});
    prompt("17", "TREE");
    EXPECT_TRUE(counted("0 / 0"));
    EXPECT_TRUE(shown("1121 picture \"\""));
}

TEST_F(ImageSheet, ARowWithoutAnImageClearsThePreview) {
    makeRecord("IMAGE_ZGEO/1;IMAGE_ZGEO/2", "[IMAGE_ZGEO/1] = '" + path("wide.bmp") + "'");
    answer(134, {mark(2), show(), click("Cancel")});
    prompt("17", "TREE");
    EXPECT_TRUE(shown("1121 picture \"\""));
    EXPECT_TRUE(shown("1122 edit \"\""));
}

TEST_F(ImageSheet, UpdateReplacesTheCheckedImage) {
    makeRecord("IMAGE_ZGEO/1;IMAGE_ZGEO/2;LABEL/2", "[IMAGE_ZGEO/1] = '" + path("square.bmp") +
                                                        "', [IMAGE_ZGEO/2] = '" + path("wide.bmp") +
                                                        "', [LABEL/2] = 'crown'");
    ui_.answerFile(path("high.bmp"));
    answer(134, {mark(1, false), click("Update"), mark(2), click("Update"), show(), click("OK")});
    EXPECT_EQ(prompt("17", "TREE"), "1");
    EXPECT_TRUE(shown("box [Error] \"Please check an image from table!\" flags 0x40030"));
    EXPECT_TRUE(shown(preview("high.bmp", "73 x 146")));
    EXPECT_TRUE(counted("2 / 2"));
    const std::string after = path("square.bmp") + "|" + path("high.bmp") + "|crown\n";
    EXPECT_EQ(record("[IMAGE_ZGEO/1], [IMAGE_ZGEO/2], [LABEL/2]"), after);
    ui_.answerFile("");
    answer(134, {click("Update"), click("OK")});
    EXPECT_EQ(prompt("17", "TREE"), "1");
    EXPECT_EQ(record("[IMAGE_ZGEO/1], [IMAGE_ZGEO/2], [LABEL/2]"), after)
        << "a box that is cancelled changes nothing";
}

TEST_F(ImageSheet, DeleteEmptiesTheRowAndKeepsTheFile) {
    makeRecord("IMAGE_ZGEO/1;LABEL/1;IMAGE_ZGEO/2;LABEL/2", "[IMAGE_ZGEO/1] = '" + path("wide.bmp") +
                                                                "', [LABEL/1] = 'crown', [IMAGE_ZGEO/2] = '" +
                                                                path("high.bmp") + "', [LABEL/2] = 'trunk'");
    answer(134, {click("Delete"), show(), click("Delete"), mark(1), click("Delete"), click("OK")});
    EXPECT_EQ(prompt("17", "TREE"), "1");
    EXPECT_TRUE(counted("0 / 1"));
    EXPECT_TRUE(shown("IMAGE_ZGEO/1                         [ ] No image!"));
    EXPECT_TRUE(shown("1121 picture \"\""));
    EXPECT_TRUE(shown("1122 edit \"\""));
    EXPECT_TRUE(shown("box [Error] \"Please check an image from table!\""));
    EXPECT_TRUE(shown("box [Error] \"Invalid selection!\" flags 0x40030"));
    EXPECT_EQ(record("[IMAGE_ZGEO/1], coalesce([LABEL/1], ''), [IMAGE_ZGEO/2], [LABEL/2]"),
              "No image!||" + path("high.bmp") + "|trunk\n");
    EXPECT_TRUE(fs::exists(path("wide.bmp")));
}

// Columns that the sheet has made take texts of no length, and so say that a label was there.
TEST_F(ImageSheet, ALabelThatGoesWithItsImageIsAnEmptyText) {
    ui_.answerFile(path("wide.bmp"));
    answer(134, {cell(2, "14"), click("New"), click("OK")});
    EXPECT_EQ(prompt("17", "TREE"), "1");
    sqlite("output.mdb", "update TREE set [LABEL/1] = 'crown'");
    answer(134, {click("Delete"), click("OK")});
    EXPECT_EQ(prompt("17", "TREE"), "1");
    EXPECT_EQ(record("[IMAGE_ZGEO/1], [LABEL/1] is null, length([LABEL/1])"), "No image!|0|0\n");
}

TEST_F(ImageSheet, PathsOfFilesThatAreGoneAreNotLost) {
    makeRecord("IMAGE_ZGEO/1;IMAGE_ZGEO/2", "[IMAGE_ZGEO/1] = 'C:\\photos\\gone.jpg'");
    ui_.answerFile(path("wide.bmp"));
    answer(134, {show(), mark(1), show(), click("New"), click("OK")});
    EXPECT_EQ(prompt("17", "TREE"), "1");
    EXPECT_TRUE(shown("IMAGE_ZGEO/1                         [ ] No image!"));
    EXPECT_TRUE(shown("1122 edit \"C:\\photos\\gone.jpg\"")) << "what the record holds can be seen";
    EXPECT_EQ(record("[IMAGE_ZGEO/1], [IMAGE_ZGEO/2]"), "C:\\photos\\gone.jpg|" + path("wide.bmp") + "\n");
    answer(134, {mark(1), click("Delete"), click("OK")});
    EXPECT_EQ(prompt("17", "TREE"), "1");
    EXPECT_EQ(record("[IMAGE_ZGEO/1]"), "No image!\n");
}

TEST_F(ImageSheet, AnImageThatHasMovedIsShownFromBesideTheOutput) {
    makeRecord("IMAGE_ZGEO/1", "[IMAGE_ZGEO/1] = 'C:\\photos\\wide.bmp'");
    answer(134, {show(), click("OK")});
    EXPECT_EQ(prompt("17", "TREE"), "1");
    EXPECT_TRUE(shown(preview("wide.bmp", "158 x 79")));
    EXPECT_TRUE(shown("IMAGE_ZGEO/1                         [x] " + path("wide.bmp")));
    EXPECT_TRUE(counted("1 / 1"));
    EXPECT_NE(printed().find("\nC:\\photos\\wide.bmp is not there. Shown in its place: " + path("wide.bmp")),
              std::string::npos);
    EXPECT_EQ(record("[IMAGE_ZGEO/1]"), "C:\\photos\\wide.bmp\n") << "what is stored stays";
}

TEST_F(ImageSheet, ANewRecordGetsNothingInColumnsWithoutAnImage) {
    makeRecord("IMAGE_ZGEO/1;IMAGE_ZGEO/2", "");
    answer(134, {show(), cell(2, "15"), click("OK")});
    EXPECT_EQ(prompt("18", "TREE"), "1");
    EXPECT_TRUE(shown("IMAGE_ZGEO/2                         [ ] No image!"));
    EXPECT_EQ(record("PT_ID, [IMAGE_ZGEO/1] is null"), "17|1\n18|1\n");
    // Nor one that is taken and emptied before it is there.
    ui_.answerFile(path("wide.bmp"));
    answer(134, {cell(2, "15"), click("New"), click("Delete"), show(), click("OK")});
    EXPECT_EQ(prompt("19", "TREE"), "1");
    EXPECT_TRUE(counted("0 / 0"));
    EXPECT_EQ(
        sqlite("output.mdb", "select [IMAGE_ZGEO/1] is null, [LABEL/1] is null from TREE where PT_ID = '19'"),
        "1|1\n");
}

TEST_F(ImageSheet, SeveralFilesComeAtOnceOrFallOntoTheSheet) {
    write("notes.txt", "no image");
    ui_.answerFile(path("wide.bmp") + "\n" + path("high.bmp"));
    answer(134, {cell(2, "14"), click("New"), show(),
                 drop({path("square.bmp"), path("notes.txt"), path("missing.jpg")}), show(), click("OK")});
    EXPECT_EQ(prompt("17", "TREE"), "1");
    EXPECT_TRUE(counted("2 / 2"));
    EXPECT_TRUE(counted("3 / 3"));
    EXPECT_TRUE(shown("question [Images] \"Images are JPEG, BMP, GIF and PNG files. Left out:\n" +
                      path("notes.txt") + "\n" + path("missing.jpg") + "\""));
    EXPECT_EQ(record("[IMAGE_ZGEO/1], [IMAGE_ZGEO/2], [IMAGE_ZGEO/3]"),
              path("wide.bmp") + "|" + path("high.bmp") + "|" + path("square.bmp") + "\n");
}

TEST_F(ImageSheet, AClickShowsTheImageInItsOwnProgram) {
    ui_.answerFile(path("wide.bmp"));
    answer(134, {click("New"), click("1121"), focus("1121"), key("Enter"), click("Cancel")});
    prompt("17", "TREE");
    EXPECT_EQ(std::count(ui_.log().begin(), ui_.log().end(), "viewer \"" + path("wide.bmp") + "\""), 2);
}

TEST_F(ImageSheet, FilesThatAreNoPicturesHaveNoPreview) {
    write("text.jpg", "no picture at all");
    write("empty.jpg", "");
    ui_.answerFile(path("text.jpg"));
    ui_.answerFile(path("empty.jpg"));
    answer(134, {cell(2, "14"), click("New"), click("New"), show(), click("OK")});
    EXPECT_EQ(prompt("17", "TREE"), "1");
    EXPECT_TRUE(shown("1121 picture \"\""));
    EXPECT_TRUE(counted("2 / 2"));
    EXPECT_EQ(record("[IMAGE_ZGEO/1]"), path("text.jpg") + "\n");
}

TEST_F(ImageSheet, PathsThatNoRecordHoldsAreRefused) {
    const std::string long300 = "/" + std::string(150, 'a') + "/" + std::string(144, 'b') + ".jpg";
    fs::create_directory(path("a, b"));
    makePicture("a, b/c,d.bmp", {4, 4});
    ui_.answerFile(long300);
    ui_.answerFile(path("a, b/c,d.bmp"));
    answer(134, {cell(2, "14"), click("New"), click("New"), click("OK")});
    EXPECT_EQ(prompt("17", "TREE"), "1");
    EXPECT_TRUE(shown("question [Images] \"The path has 300 characters, and a record holds 255. Left out:\n" +
                      long300));
    EXPECT_EQ(record("[IMAGE_ZGEO/1]"), path("a, b/c,d.bmp") + "\n");
}

// Photographs and odd pictures that other programs have made; the record is read by one too.
TEST_F(ImageSheet, PicturesOfAllKindsAreShownAndStored) {
    const std::string shared = NORVANE_SHARED_DATA;
    if (!fs::exists(shared + "/pictures/cmyk.jpg")) GTEST_SKIP() << "no shared pictures";
    std::vector<std::string> pictures;
    for (const char* name : {"photo1.jpg", "photo2.bmp", "photo3.gif", "photo4.png"})
        pictures.push_back(shared + "/" + name);
    for (const char* name :
         {"progressive.jpg", "grey.jpg", "cmyk.jpg", "turned.jpg", "mirrored.jpg", "cut.jpg",
          "really_jpeg.bmp", "bits1.bmp", "rle8.bmp", "topdown.bmp", "animated.gif", "grey16.png"})
        pictures.push_back(shared + "/pictures/" + name);
    for (std::string& picture : pictures) {
        fs::copy_file(picture, path(fs::path(picture).filename()));
        picture = path(fs::path(picture).filename());
    }
    std::vector<ui::Step> steps = {cell(2, "14"), drop(pictures), key("F5")};
    for (size_t i = 0; i < pictures.size(); ++i) steps.insert(steps.end(), {show(), key("F6")});
    steps.push_back(click("OK"));
    answer(134, steps);
    EXPECT_EQ(prompt("17", "TREE"), "1");
    for (const auto& [name, frame] : {std::pair{"photo1.jpg", "158 x 118"},
                                      {"photo3.gif", "109 x 146"},
                                      {"turned.jpg", "158 x 118"},
                                      {"cmyk.jpg", "158 x 118"},
                                      {"rle8.bmp", "158 x 118"},
                                      {"grey16.png", "158 x 118"}})
        EXPECT_TRUE(shown(preview(name, frame))) << name;
    for (size_t i = 1; i <= pictures.size(); ++i) EXPECT_TRUE(counted(std::to_string(i) + " / 16"));
    const std::string exported = outputOf("mdb-export -H '" + path("output.mdb") + "' TREE");
    for (const std::string& picture : pictures)
        EXPECT_NE(exported.find("\"" + picture + "\""), std::string::npos) << picture << " in " << exported;
}

TEST_F(ImageSheet, ImagesAreForFeaturesWithGoodNames) {
    answer(134, {click("New"), click("Update"), click("Delete"), drop({path("wide.bmp")}), show(),
                 click("Cancel")});
    prompt("2", "", 0);
    EXPECT_EQ(std::count_if(ui_.log().begin(), ui_.log().end(),
                            [](const std::string& line) {
                                return line.find("Feature name cannot be an empty string!") != line.npos;
                            }),
              4);
    EXPECT_TRUE(shown("grid 2 x 0"));
}

TEST_F(ImageSheet, UndoTakesBackACheckAndKeepsNewRows) {
    ui_.answerFile(path("wide.bmp"));
    ui_.answerFile(path("high.bmp"));
    answer(134, {cell(3, "10"), click("New"), click("New"), mark(1), key("Ctrl+Z"), show(), key("Ctrl+Z"),
                 show(), click("Cancel")});
    prompt("17", "TREE");
    EXPECT_TRUE(shown("IMAGE_ZGEO/2                         [x] " + path("high.bmp")));
    EXPECT_TRUE(shown("Height (feet)                        ''"))
        << "what was typed before is taken back too";
    EXPECT_TRUE(shown("Height (feet)                        ''\n") && counted("2 / 2")) << "and images stay";
    EXPECT_FALSE(counted("0 / 2"));
}

TEST_F(ImageSheet, AnotherFeatureHasItsOwnImages) {
    ui_.answerFile(path("wide.bmp"));
    answer(134, {click("New"), pick("1106", "MANHOLE"), show(), click("Cancel")});
    prompt("17", "TREE");
    EXPECT_TRUE(shown("grid 2 x 7"));
    EXPECT_TRUE(shown("1121 picture \"\""));
    EXPECT_TRUE(counted("0 / 0"));
}

// --- The camera --------------------------------------------------------------------------------------------

class CameraSheet : public ImageSheet {
  protected:
    void SetUp() override {
        ImageSheet::SetUp();
        fs::create_symlink(NORVANE_BIN_DIR "/capture.arx", path("capture.arx"));
        fs::create_directory(path("phone"));
        makePicture("phone/1.bmp", {40, 20});
        makePicture("phone/2.bmp", {60, 30});
    }
    void useFolder() { write("capture.ini", "folder=" + path("phone") + "\n"); }
    std::string sizeOf(const std::string& name) const {
        const std::optional<images::Size> size = images::sizeOfFile(path(name));
        return size ? std::to_string(size->width) + "x" + std::to_string(size->height) : "none";
    }
};

TEST_F(CameraSheet, WithoutTheModuleThereIsNoCamera) {
    fs::remove(path("capture.arx"));
    answer(134, {show(), key("F2"), click("Cancel")});
    prompt("17", "TREE");
    for (const char* text : {"Captu", "Camera", "BMP", "F2 - "}) EXPECT_FALSE(shown(text)) << text;
    EXPECT_TRUE(shown("Space bar"));
}

TEST_F(CameraSheet, AnImageIsCapturedAsJpegOrBitmap) {
    useFolder();
    write("featlink.ini", "#CJPG\n");
    answer(1422, {show(), click("&Previous Picture"), show(), click("&Capture")});
    answer(1422, {click("Capture")});
    answer(134, {show(), cell(2, "14"), key("F2"), show(), click("&BMP"), click("Captu&re"), click("OK")});
    EXPECT_EQ(prompt("1:7", "TREE"), "1");
    EXPECT_TRUE(shown("(o) \"JPG\""));
    EXPECT_TRUE(shown("F2 - Capture image"));
    EXPECT_EQ(record("[IMAGE_ZGEO/1], [IMAGE_ZGEO/2]"),
              path("TREE_1_7_1.jpg") + "|" + path("TREE_1_7_2.bmp") + "\n");
    EXPECT_EQ(sizeOf("TREE_1_7_1.jpg"), "40x20");
    EXPECT_FALSE(fs::exists(path("TREE_1_7_1.bmp"))) << "the bitmap goes once it is converted";
    EXPECT_EQ(sizeOf("TREE_1_7_2.bmp"), "60x30") << "the last picture of the folder comes first";
    EXPECT_NE(read("featlink.ini").find("#CBMP\n"), std::string::npos);
}

TEST_F(CameraSheet, ABitmapThatWasThereBeforeStays) {
    useFolder();
    write("featlink.ini", "#CJPG\n");
    write("TREE_17_1.bmp", "of somebody else");
    answer(1422, {click("Capture")});
    answer(134, {cell(2, "14"), click("Captu&re"), click("OK")});
    EXPECT_EQ(prompt("17", "TREE"), "1");
    EXPECT_EQ(record("[IMAGE_ZGEO/1]"), path("TREE_17_1.jpg") + "\n");
    EXPECT_TRUE(fs::exists(path("TREE_17_1.bmp")));
}

TEST_F(CameraSheet, ACaptureThatIsCancelledMakesNoRow) {
    useFolder();
    write("TREE_17_1.bmp", "of somebody else");
    answer(1422, {click("Cancel")});
    answer(134, {click("Captu&re"), show(), click("Cancel")});
    prompt("17", "TREE");
    EXPECT_TRUE(shown("grid 2 x 12"));
    EXPECT_EQ(read("TREE_17_1.bmp"), "of somebody else");
}

TEST_F(CameraSheet, WithoutACameraThereIsOneMessage) {
    fs::remove_all(path("phone"));
    useFolder();
    answer(134, {click("Captu&re"), click("Captu&re"), show(), click("Cancel")});
    prompt("17", "TREE");
    EXPECT_TRUE(
        shown("question [Capture] \"No camera is there. Connect one, or pick another camera or a folder of "
              "pictures.\""));
    EXPECT_TRUE(shown("grid 2 x 12"));
    EXPECT_FALSE(shown("\"&New\" (disabled)")) << "the sheet works on";
}

// The folder goes while the window is open: the step after the next has nothing to see.
TEST_F(CameraSheet, ACameraThatGoesAwayIsTold) {
    useFolder();
    write("phone/1.bmp", read("phone/2.bmp").substr(0, 54));
    answer(1422, {click("&Previous Picture")});
    answer(134, {click("Captu&re"), show(), click("Cancel")});
    prompt("17", "TREE");
    EXPECT_TRUE(shown("gives no picture."));
    EXPECT_TRUE(shown("grid 2 x 12"));
}

TEST_F(CameraSheet, TheCameraIsPicked) {
    ui_.answerFile(path("phone/1.bmp"));
    answer(1421, {click("&Folder of Pictures..."), show(), click("OK")});
    answer(134, {click("&Pick Camera"), click("Cancel")});
    prompt("17", "TREE");
    EXPECT_TRUE(shown("Pictures of " + path("phone/")));
    EXPECT_EQ(read("capture.ini"), "folder=" + path("phone/") + "\n");
}

TEST_F(CameraSheet, ItsSettingsAreAskedForKeptAndUsed) {
    useFolder();
    answer(142, {show(), click("Return X x Y &Scalings"), pick("1211", "2x2"),
                 click("Return &Brightness Values"), pick("1221", "100"), click("Return X x Y &Resolutions"),
                 text("1204", "30x15"), show(), click("OK")});
    answer(1422, {click("Capture")});
    answer(134, {cell(2, "14"), click("&Set Camera"), click("Captu&re"), click("OK")});
    EXPECT_EQ(prompt("17", "TREE"), "1");
    EXPECT_TRUE(shown("Press button\n      to retreive the values!"));
    EXPECT_NE(read("featlink.ini").find("#930x15|2x2|100|\n"), std::string::npos) << read("featlink.ini");
    EXPECT_EQ(sizeOf("TREE_17_1.bmp"), "60x30");
    const images::Image taken = images::previewOfFile(path("TREE_17_1.bmp"), {60, 30});
    EXPECT_EQ(taken.pixel(0, 0)[0], 255) << "as bright as can be";
    ui_.clearLog();
    answer(142, {pick("1231", "Press button"), show(), click("Return Co&ntrast Values"), text("1234", "10"),
                 click("Cancel")});
    answer(134, {click("&Set Camera"), click("Cancel")});
    prompt("17", "TREE");
    EXPECT_TRUE(shown("1234 edit \"\"")) << "what tells to press the button is no value";
    EXPECT_NE(read("featlink.ini").find("#930x15|2x2|100|\n"), std::string::npos);
}

// They would be no picture, or fill the memory.
TEST_F(CameraSheet, SizesThatNoCameraHasAreNotAskedFor) {
    useFolder();
    for (const char* wanted : {"8193x20", "600x0", "-600x20"}) {
        write("featlink.ini", "#9" + std::string(wanted) + "|1x1||\n");
        answer(1422, {click("Capture")});
        answer(134, {click("Captu&re"), click("Cancel")});
        prompt("17", "TREE");
        EXPECT_EQ(sizeOf("TREE_17_1.bmp"), "60x30") << wanted;
        fs::remove(path("TREE_17_1.bmp"));
    }
}

// Its values can be changed all the same; the buttons have nothing to list.
TEST_F(CameraSheet, TheSettingsOfAModuleThatDoesNotLoadCanBeChanged) {
    fs::remove(path("capture.arx"));
    write("capture.arx", "no module");
    write("featlink.ini", "#9640x480|1x1|50|60\n");
    answer(142, {click("Return X x Y &Scalings"), show(), text("1224", "70"), click("OK")});
    answer(134, {click("&Set Camera"), click("Cancel")});
    prompt("17", "TREE");
    EXPECT_TRUE(shown("1211 list\n      Press button\n      to retreive the values!"));
    EXPECT_NE(read("featlink.ini").find("#9640x480|1x1|70|60\n"), std::string::npos) << read("featlink.ini");
}

TEST_F(CameraSheet, AButtonThatIsOnTurnsToTheOther) {
    answer(134, {show(), click("&BMP"), show(), click("&BMP"), click("&JPG"), key("Alt+J"), show(),
                 click("Cancel")});
    prompt("17", "TREE");
    EXPECT_TRUE(shown("1136 radio (o) \"JPG\""));
    EXPECT_NE(read("featlink.ini").find("#CBMP\n"), std::string::npos) << "the format that is on afterwards";
}
