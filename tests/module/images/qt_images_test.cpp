// The images of the sheet and the camera's windows as real ones, worked by keys, mouse and files that are
// dropped, on the offscreen platform.
#include <QDropEvent>
#include <QLabel>
#include <QListWidget>
#include <QMimeData>
#include <QRadioButton>
#include <QTableView>
#include <set>

#include "platform/images/convert.h"
#include "platform/ui/qt/qt_backend.h"
#include "tests/module/module_fixture.h"
#include "tests/platform/ui/qt_person.h"

class QtImages : public ModuleTest, protected QtPerson {
  protected:
    void SetUp() override {
        ModuleTest::SetUp();
        makeTemplate();
        makeEntity();
        fs::create_directory(path("phone"));
        makePicture("red.bmp", {80, 40}, 200, 0);
        makePicture("blue.bmp", {40, 80}, 0, 200);
        makePicture("phone/1.bmp", {40, 20}, 200, 0);
        makePicture("phone/2.bmp", {40, 20}, 0, 200);
        ui::setBackend(&qt_);
    }
    void TearDown() override {
        EXPECT_TRUE(finished()) << "not every action was reached";
        ModuleTest::TearDown();
    }

    void makePicture(const std::string& name, images::Size size, uint8_t red, uint8_t blue) const {
        images::Image image(size);
        for (size_t i = 0; i < image.pixels.size(); i += images::kPixelBytes)
            image.pixels[i] = red, image.pixels[i + 2] = blue, image.pixels[i + 3] = 255;
        ASSERT_TRUE(images::writeBmp(image, path(name)));
    }
    Action drop(std::vector<std::string> names) {
        return [=, this] {
            QMimeData data;
            QList<QUrl> urls;
            for (const std::string& name : names)
                urls << QUrl::fromLocalFile(QString::fromStdString(path(name)));
            data.setUrls(urls);
            QDragEnterEvent enter({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(window(), &enter);
            EXPECT_TRUE(enter.isAccepted());
            QDropEvent fall({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(window(), &fall);
        };
    }
    static Action counts(const char* counter) {
        return until([=] { return child<QLabel>(1123) && child<QLabel>(1123)->text() == counter; }, counter);
    }
    // The colour in the middle of the preview, and whether it is as wide as its room there.
    static Action previewIs(QColor colour, int id = 1121) {
        return until(
            [=] {
                auto* preview = child<QWidget>(id);
                const QImage seen = preview->grab().toImage();
                return seen.pixelColor(seen.rect().center()) == colour;
            },
            "preview");
    }
    static Action clickCheck(int row) {
        return [=] {
            auto* table = child<QTableView>(1110);
            const QModelIndex cell = table->model()->index(row - 1, 1);
            table->scrollTo(cell);
            QTest::mouseClick(
                table->viewport(), Qt::LeftButton, {},
                table->visualRect(cell).topLeft() + QPoint(9, table->visualRect(cell).height() / 2));
        };
    }
    std::string record(const std::string& columns) const {
        return sqlite("output.mdb", "select " + columns + " from TREE");
    }

    const QColor red_{200, 0, 0}, blue_{0, 0, 200};
    ui::QtBackend qt_;
};

TEST_F(QtImages, FallOntoTheSheetAndAreWalkedThrough) {
    does({drop({"red.bmp", "blue.bmp"}),
          counts("2 / 2"),
          previewIs(blue_),
          press(Qt::Key_F5),
          counts("1 / 2"),
          previewIs(red_),
          press(Qt::Key_F6),
          counts("2 / 2"),
          press(Qt::Key_F7),
          counts("1 / 2"),
          press(Qt::Key_F8),
          counts("2 / 2"),
          clickCheck(13),
          counts("1 / 2"),
          previewIs(red_),
          [] { savePicture(); },
          press(Qt::Key_Space),
          counts("0 / 2"),
          press(Qt::Key_Space),
          counts("1 / 2"),
          press(Qt::Key_D, Qt::AltModifier),
          counts("0 / 1"),
          press(Qt::Key_F3),
          press(Qt::Key_Down),
          type("14"),
          clickButton(1)});
    EXPECT_EQ(prompt("17", "TREE"), "1");
    EXPECT_EQ(record("DBH, [IMAGE_ZGEO/1] is null, [IMAGE_ZGEO/2]"), "14|1|" + path("blue.bmp") + "\n")
        << "the record is new, so that nothing was there to be emptied";
}

// Photographs that other programs have made, as a person sees them.
TEST_F(QtImages, PhotographsOfAllKindsAreSeen) {
    const std::string shared = NORVANE_SHARED_DATA;
    if (!fs::exists(shared + "/photo1.jpg")) GTEST_SKIP() << "no shared pictures";
    const std::vector<std::string> names = {"photo2.bmp", "photo3.gif", "photo4.png", "photo1.jpg"};
    for (const std::string& name : names) fs::copy_file(shared + "/" + name, path(name));
    // Something is seen of each: it has many colours.
    auto isSeen = until(
        [] {
            const QImage seen = child<QWidget>(1121)->grab().toImage();
            std::set<QRgb> colours;
            for (int x = 0; x < seen.width(); x += 3)
                for (int y = 0; y < seen.height(); y += 3) colours.insert(seen.pixel(x, y));
            return colours.size() > 50;
        },
        "picture");
    does({drop(names), counts("4 / 4"), isSeen, press(Qt::Key_F5), counts("1 / 4"), isSeen, press(Qt::Key_F6),
          counts("2 / 4"), isSeen, press(Qt::Key_F6), counts("3 / 4"), isSeen, press(Qt::Key_F8),
          counts("4 / 4"), clickCheck(16), clickCheck(16), isSeen, [] { savePicture(); },
          [] { window()->close(); }});
    prompt("17", "TREE");
}

TEST_F(QtImages, TheSheetAndItsImagesFitASmallScreen) {
    fs::create_symlink(NORVANE_BIN_DIR "/capture.arx", path("capture.arx"));
    does({drop({"red.bmp"}), counts("1 / 1"), fitsSmallScreen(), [] { window()->close(); }});
    prompt("17", "TREE");
}

TEST_F(QtImages, APictureOfTheTelephoneIsCaptured) {
    fs::create_symlink(NORVANE_BIN_DIR "/capture.arx", path("capture.arx"));
    write("capture.ini", "folder=" + path("phone") + "\n");
    auto titled = [](const char* title) {
        return until([=] { return window() && window()->windowTitle() == title; }, title);
    };
    does({clickButton(1129),
          titled("Settings"),
          fitsSmallScreen(),
          clickButton(1212),
          until([] { return child<QListWidget>(1211)->count() == 3; }, "scalings"),
          clickButton(2),
          titled("GIS Smart Prompting - Entity has no GIS Data"),
          clickButton(1128),
          titled("Pick Camera"),
          fitsSmallScreen(),
          clickButton(2),
          titled("GIS Smart Prompting - Entity has no GIS Data"),
          [] { child<QRadioButton>(1136)->click(); },
          press(Qt::Key_F2),
          titled("Capture"),
          previewIs(blue_, 1902),
          press(Qt::Key_P, Qt::AltModifier),
          previewIs(red_, 1902),
          [] { savePicture(); },
          press(Qt::Key_C, Qt::AltModifier),
          counts("1 / 1"),
          press(Qt::Key_F3),
          press(Qt::Key_Down),
          type("14"),
          clickButton(1)});
    EXPECT_EQ(prompt("17", "TREE"), "1");
    EXPECT_EQ(record("[IMAGE_ZGEO/1]"), path("TREE_17_1.jpg") + "\n");
}

int main(int argc, char** argv) {
    return runQtTests(argc, argv);
}
