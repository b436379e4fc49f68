// What is seen of a drawing: lines with their patterns, colours and layers, texts, and of a drawing that is
// out of order as much as can be shown.
#include <cmath>
#include <random>

#include "hostcad/window/drawn_text.h"
#include "hostcad/window/line_raster.h"
#include "hostcad/window/scene_picking.h"
#include "tests/hostcad/window/drawn_window.h"

using hostcad::ObjectId;

namespace {

class WindowPicture : public DrawnWindow {
  protected:
    // A drawing file with these blocks and entities.
    void openFile(const std::string& blocks, const std::string& entities) {
        std::ofstream(path("odd.dxf")) << "0\nSECTION\n2\nBLOCKS\n"
                                       << blocks << "0\nENDSEC\n0\nSECTION\n2\nENTITIES\n"
                                       << entities << "0\nENDSEC\n0\nEOF\n";
        hostcad::currentDrawing().setModified(false);  // nobody wants to save it
        open("odd.dxf");
        ASSERT_FALSE(says("Cannot open"));
    }
    static std::string point(const std::string& x, const std::string& y) {
        return "0\nPOINT\n8\n0\n10\n" + x + "\n20\n" + y + "\n30\n0\n";
    }
    static std::string insert(const std::string& block, int x = 0, int y = 0) {
        return "0\nINSERT\n8\n0\n2\n" + block + "\n10\n" + std::to_string(x) + "\n20\n" + std::to_string(y) +
               "\n30\n0\n";
    }
    static std::string block(const std::string& name, const std::string& content) {
        return "0\nBLOCK\n2\n" + name + "\n10\n0\n20\n0\n30\n0\n" + content + "0\nENDBLK\n";
    }
};

constexpr const char* kLine = "0\nLINE\n8\n0\n10\n0\n20\n0\n30\n0\n11\n1\n21\n1\n31\n0\n";

}  // namespace

TEST_F(WindowPicture, LinesHaveTheColoursAndPatternsOfTheirLayersOrTheirOwn) {
    make(
        "(0 . \"LTYPE\") (100 . \"AcDbSymbolTableRecord\") (100 . \"AcDbLinetypeTableRecord\") (2 . "
        "\"HALF\") (70 . 0) "
        "(3 . \"\") (72 . 65) (73 . 2) (40 . 20.0) (49 . 10.0) (74 . 0) (49 . -10.0) (74 . 0)");
    make(
        "(0 . \"LAYER\") (100 . \"AcDbSymbolTableRecord\") (100 . \"AcDbLayerTableRecord\") (2 . \"DASHES\") "
        "(70 . 0) "
        "(62 . 1) (6 . \"HALF\")");
    make(
        "(0 . \"LAYER\") (100 . \"AcDbSymbolTableRecord\") (100 . \"AcDbLayerTableRecord\") (2 . \"GONE\") "
        "(70 . 1) "
        "(62 . 1) (6 . \"CONTINUOUS\")");
    make("(0 . \"LINE\") (8 . \"DASHES\") (10 50.0 50.0 0.0) (11 250.0 50.0 0.0)");
    make(
        "(0 . \"LINE\") (8 . \"DASHES\") (6 . \"CONTINUOUS\") (62 . 3) (10 50.0 100.0 0.0) (11 250.0 100.0 "
        "0.0)");
    make("(0 . \"LINE\") (6 . \"HALF\") (48 . 2.0) (62 . 2) (10 50.0 150.0 0.0) (11 250.0 150.0 0.0)");
    make("(0 . \"LINE\") (8 . \"GONE\") (10 50.0 200.0 0.0) (11 250.0 200.0 0.0)");
    QImage shown = picture();
    EXPECT_NEAR(pixels(shown, 40, 48, 260, 52, kRed), 100, 12);
    EXPECT_NEAR(pixels(shown, 40, 98, 260, 102, kGreen), 201, 2);
    EXPECT_NEAR(pixels(shown, 40, 148, 260, 152, kYellow), 100, 12);
    EXPECT_EQ(pixels(shown, 40, 195, 260, 205, kRed), 0);
    // Twice as long dashes: half as many of them.
    auto dashes = [&](int y, uint32_t colour) {
        int count = 0;
        for (int x = 41; x < 260; ++x)
            count += pixels(shown, x, y - 1, x, y + 1, colour) &&
                     !pixels(shown, x - 1, y - 1, x - 1, y + 1, colour);
        return count;
    };
    EXPECT_EQ(dashes(50, kRed), 10);
    EXPECT_EQ(dashes(150, kYellow), 5);
    // A layer that is thawed is seen, and a layer's new colour too.
    lisp("(command \"_.LAYER\" \"_T\" \"GONE\" \"_C\" \"2\" \"DASHES\" \"\")");
    shown = picture();
    EXPECT_NEAR(pixels(shown, 40, 195, 260, 205, kRed), 201, 2);
    EXPECT_NEAR(pixels(shown, 40, 48, 260, 52, kYellow), 100, 12);
}

TEST_F(WindowPicture, DarkColoursCanBeReadOnTheDarkGround) {
    const char* kDark[] = {"(62 . 5)",  "(62 . 250)", "(62 . 178)",
                           "(62 . 18)", "(420 . 0)",  "(420 . 1973800)"};
    int y = 50;
    for (const char* colour : kDark) {
        const std::string row = std::to_string(y += 20) + ".0 0.0";
        make("(0 . \"LINE\") " + std::string(colour) + " (10 50.0 " + row + ") (11 250.0 " + row + ")");
    }
    make("(0 . \"TEXT\") (62 . 5) (10 300.0 70.0 0.0) (40 . 60.0) (1 . \"MMM\")");
    QImage shown = picture();
    // Contrast by the rule for texts on screens, in which 3 is the least for what is large.
    auto lightness = [](QRgb c) {
        auto linear = [](int value) {
            const double v = value / 255.0;
            return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(qRed(c)) + 0.7152 * linear(qGreen(c)) + 0.0722 * linear(qBlue(c));
    };
    const double ground = lightness(shown.pixel(5, 5));
    EXPECT_LT(ground, 0.05);
    auto best = [&](int left, int bottom, int right, int top) {
        double most = 0;
        for (int x = left; x <= right; ++x)
            for (int row = bottom; row <= top; ++row)
                most = std::max(most, lightness(shown.pixel(x, shown.height() - 1 - row)));
        return (most + 0.05) / (ground + 0.05);
    };
    y = 50;
    for (const char* colour : kDark) {
        y += 20;
        EXPECT_GT(best(150, y - 1, 150, y + 1), 2.7) << colour;
    }
    EXPECT_GT(best(300, 70, 400, 130), 2.7);
    // Blue is still blue.
    bool isBlue = false;
    for (int row = 69; row <= 71; ++row)
        isBlue = isBlue || QColor(shown.pixel(150, shown.height() - 1 - row)).hue() == 240;
    EXPECT_TRUE(isBlue);
}

TEST_F(WindowPicture, WhatIsSeenIsPrintedFittedInTheMiddleOfThePage) {
    QImage screen = picture();
    const int width = screen.width(), height = screen.height();
    // A frame at the edges of the view, and a filled square in its lower left quarter.
    make("(0 . \"LINE\") (62 . 7) (10 1.0 1.0 0.0) (11 " + std::to_string(width - 1) + ".0 1.0 0.0)");
    make(
        "(0 . \"SOLID\") (62 . 1) (10 100.0 100.0 0.0) (11 200.0 100.0 0.0) (12 100.0 200.0 0.0) (13 200.0 "
        "200.0 0.0)");
    picture();
    Page page;
    printPage(page);
    // The page lies on its side, as the view does.
    EXPECT_GT(page.width, page.height);
    const int across = page.picture.width(), down = page.picture.height();
    EXPECT_NEAR(across / double(down), width / double(height), 0.01);
    EXPECT_GT(across, 2000);                // 300 dots an inch
    auto pixel = [&](double x, double y) {  // of the drawing
        const int row = std::min(int((1 - y / height) * down), down - 1);
        return page.picture.pixel(int(x / width * across), row) & 0xFFFFFF;
    };
    EXPECT_EQ(pixel(150, 150), kRed);
    EXPECT_EQ(pixel(250, 150), kWhite);  // the paper, not the ground of the screen
    EXPECT_EQ(pixel(150, 250), kWhite);
    bool isInk = false;
    for (double y = 0; y < 3; y += 0.1) isInk = isInk || pixel(width / 2.0, y) == 0;
    EXPECT_TRUE(isInk);  // white on the screen is black on paper
}

TEST_F(WindowPicture, CurvesAreasAndBlocksStandWhereTheyShould) {
    make("(0 . \"CIRCLE\") (62 . 1) (10 100.0 100.0 0.0) (40 . 50.0)");
    make(
        "(0 . \"ELLIPSE\") (100 . \"AcDbEntity\") (8 . \"0\") (62 . 2) (100 . \"AcDbEllipse\") (10 300.0 "
        "100.0 0.0) "
        "(11 60.0 0.0 0.0) (40 . 0.5) (41 . 0.0) (42 . 6.283185307179586)");
    make(
        "(0 . \"SOLID\") (62 . 3) (10 400.0 60.0 0.0) (11 460.0 60.0 0.0) (12 400.0 120.0 0.0) (13 460.0 "
        "120.0 0.0)");
    QImage shown = picture();
    for (auto [x, y] : {std::pair(50, 100), {150, 100}, {100, 50}, {100, 150}})
        EXPECT_GT(pixels(shown, x - 1, y - 1, x + 1, y + 1, kRed), 0) << x << " " << y;
    EXPECT_EQ(pixels(shown, 80, 80, 120, 120, kRed), 0);
    for (auto [x, y] : {std::pair(240, 100), {360, 100}, {300, 130}, {300, 70}})
        EXPECT_GT(pixels(shown, x - 1, y - 1, x + 1, y + 1, kYellow), 0) << x << " " << y;
    EXPECT_NEAR(pixels(shown, 390, 50, 470, 130, kGreen), 3600, 130);
    // A solid hatch is filled with its islands left out, whichever way its arcs run.
    openFile("",
             "0\nHATCH\n8\n0\n62\n1\n10\n0\n20\n0\n30\n0\n2\nSOLID\n70\n1\n91\n2\n"
             "92\n3\n72\n1\n73\n1\n93\n3\n10\n100\n20\n100\n42\n-"
             "1\n10\n200\n20\n100\n42\n0\n10\n150\n20\n50\n42\n0\n97\n0\n"
             "92\n3\n72\n0\n73\n1\n93\n4\n10\n140\n20\n80\n10\n160\n20\n80\n10\n160\n20\n100\n10\n140\n20\n10"
             "0\n97\n0\n75\n0\n76\n1\n98\n0\n");
    shown = picture();
    EXPECT_NEAR(pixels(shown, 90, 40, 210, 160, kRed), 3927 + 2500 - 400, 150);
    EXPECT_EQ(pixels(shown, 142, 82, 158, 98, kRed), 0);
    // A block within a block: colours come down by block, and the innermost stands where both put it.
    std::string blocks = block("DOT", "0\nCIRCLE\n8\n0\n62\n0\n10\n0\n20\n0\n30\n0\n40\n10\n") +
                         block("PAIR", "0\nINSERT\n8\n0\n62\n0\n2\nDOT\n10\n50\n20\n0\n30\n0\n");
    openFile(blocks,
             "0\nINSERT\n8\n0\n62\n1\n2\nPAIR\n10\n200\n20\n200\n30\n0\n50\n90\n41\n2\n42\n2\n43\n2\n");
    shown = picture();
    EXPECT_GT(pixels(shown, 219, 299, 221, 301, kRed), 0);
    EXPECT_GT(pixels(shown, 179, 299, 181, 301, kRed), 0);
}

TEST_F(WindowPicture, TextsAreReadWhenLargeAndLinesWhenSmall) {
    make("(0 . \"TEXT\") (62 . 1) (10 50.0 50.0 0.0) (40 . 30.0) (1 . \"HHHH\")");
    make("(0 . \"TEXT\") (62 . 3) (10 50.0 150.0 0.0) (40 . 3.0) (1 . \"HHHHHHHHHHHH\")");
    make(
        "(0 . \"TEXT\") (62 . 2) (10 400.0 50.0 0.0) (11 300.0 200.0 0.0) (72 . 2) (40 . 20.0) (1 . \"II\")");
    QImage shown = picture();
    EXPECT_GT(pixels(shown, 50, 50, 200, 80, kRed), 200);
    EXPECT_EQ(pixels(shown, 50, 84, 200, 120, kRed), 0);
    EXPECT_EQ(pixels(shown, 50, 150, 100, 153, kGreen), 0);  // the faint line has half the colour
    EXPECT_GT(pixels(shown, 250, 198, 301, 222, kYellow), 10);
    EXPECT_EQ(pixels(shown, 302, 198, 400, 222, kYellow), 0);
}

TEST(DrawnText, CodesAreLeftOutAndParagraphsAreBroken) {
    using namespace hostcad;
    EXPECT_EQ(withoutTextCodes("%%c20 %%p1 45%%d 5%%% %%uline%%u \\U+00E4 %%065 %%x"),
              "\u2300"
              "20 \u00B1"
              "1 45\u00B0 5% line \u00E4 A %%x");
    EXPECT_EQ(withoutTextCodes("100%"), "100%");
    EXPECT_EQ(withoutTextCodes("%%"), "%%");
    using Lines = std::vector<std::string>;
    EXPECT_EQ(paragraphLines("{\\fArial|b0;Lot\\P\\C1;{\\H2x;12}\\~A} \\S1/2; \\\\ \\{x\\}", 0),
              (Lines{"Lot", "12 A 1/2 \\ {x}"}));
    Lines broken = paragraphLines("one two three four", textWidth("one two t"));
    EXPECT_EQ(broken, (Lines{"one two", "three", "four"}));
    EXPECT_EQ(paragraphLines("unbreakable", 0.1), Lines{"unbreakable"});
    EXPECT_EQ(paragraphLines("\\", 0), Lines{"\\"});
    EXPECT_EQ(paragraphLines("\\f", 5), Lines{""});
}

TEST(LineRaster, StaysWithinThePictureAndMeetsBothEnds) {
    std::mt19937 random(7);
    QImage picture(61, 47, QImage::Format_RGB32);
    for (double size : {100.0, 1e6, 1e30}) {
        std::uniform_real_distribution<double> any(-size, size);
        for (int i = 0; i < 3000; ++i) {
            hostcad::LineRaster raster(picture);
            raster.setThickness(i % 4);
            raster.line({any(random), any(random)}, {any(random), any(random)}, 1);
            raster.area(
                {{{any(random), any(random)}, {any(random), any(random)}, {any(random), any(random)}}}, 2);
            raster.dot({any(random), any(random)}, i % 5, 3);
        }
    }
    picture.fill(0u);
    hostcad::LineRaster raster(picture);
    raster.line({3, 4}, {50, 40}, 9);
    EXPECT_EQ(picture.pixel(3, 4) & 0xFF, 9u);
    EXPECT_EQ(picture.pixel(50, 40) & 0xFF, 9u);
    raster.line({NAN, 0}, {10, 10}, 9);
    raster.dot({NAN, NAN}, 3, 9);
}

// The picture follows every edit as if it had been made anew.
TEST_F(WindowPicture, TheSceneIsInStepWithEdits) {
    open("survey.dxf");
    hostcad::Drawing& drawing = hostcad::currentDrawing();
    hostcad::Scene followed;
    followed.attach(&drawing);
    std::mt19937 random(3);
    std::vector<ObjectId> all;
    for (ObjectId id = drawing.firstEntity(); id; id = drawing.nextEntity(id)) all.push_back(id);
    for (int round = 0; round < 40; ++round) {
        for (int i = 0; i < 5; ++i) {
            ObjectId id = all[random() % all.size()];
            if (random() % 3 == 0) {
                drawing.setErased(id, drawing.exists(id));
            } else if (const hostcad::Group* at = hostcad::find(drawing.groups(id), 10)) {
                hostcad::Groups old = drawing.groups(id);
                std::vector<hostcad::Group> groups(old.begin(), old.end());
                groups[static_cast<size_t>(at - old.data())] =
                    drawing.arena().point(10, at->x() + double(random() % 500), at->y());
                drawing.setGroups(id, groups);
            }
        }
        followed.update();
        hostcad::Scene fresh;
        fresh.attach(&drawing);
        for (ObjectId id : all) {
            size_t a = followed.place(id), b = fresh.place(id);
            bool isShown = a != hostcad::Scene::kNowhere && followed.entities()[a].visible;
            ASSERT_EQ(isShown, b != hostcad::Scene::kNowhere && fresh.entities()[b].visible);
            if (!isShown) continue;
            ASSERT_EQ(followed.entities()[a].box.minX, fresh.entities()[b].box.minX);
            ASSERT_EQ(followed.entities()[a].box.maxY, fresh.entities()[b].box.maxY);
        }
        for (int i = 0; i < 20; ++i) {
            hostcad::PlanePoint p{1630400.0 + random() % 1500, 480300.0 + random() % 700};
            ASSERT_EQ(hostcad::entityNear(followed, p, 4), hostcad::entityNear(fresh, p, 4));
        }
    }
}

// --- Drawings that are out of order
// --------------------------------------------------------------------------

TEST_F(WindowPicture, NothingAndASinglePointCanBeZoomedTo) {
    openFile("", "");
    menuEntry("Zoom extents")->trigger();
    QTest::qWait(30);
    EXPECT_GT(window_.canvas().view().height, 0);
    openFile("", point("1000", "2000"));
    EXPECT_NEAR(window_.canvas().view().centre.x, 1000, 1e-6);
    EXPECT_LT(window_.canvas().view().height, 100);
}

TEST_F(WindowPicture, CoordinatesThatAreFarAwayOrNoNumbersAreLeftOutAndTold) {
    openFile("", point("1e30", "0") + point("1", "1") + point("0", "-1e300") + point("3", "4") +
                     "0\nCIRCLE\n8\n0\n10\n5\n20\n5\n30\n0\n40\n1e300\n" +
                     "0\nTEXT\n8\n0\n10\n0\n20\n0\n30\n0\n40\n1e25\n1\nfar\n" + point("nan", "0") +
                     point("1.#QNAN", "0") + point("2", "-inf") + kLine);
    EXPECT_TRUE(says("7 entities are not shown: coordinates that are no numbers, or too far away"))
        << window_.commandPanel().history().toStdString();
    EXPECT_LT(window_.canvas().view().height, 100);
    // A program may make such a one too.
    hostcad::Drawing& drawing = hostcad::currentDrawing();
    ObjectId second = drawing.nextEntity(drawing.firstEntity());
    hostcad::Groups old = drawing.groups(second);
    std::vector<hostcad::Group> groups(old.begin(), old.end());
    for (hostcad::Group& group : groups)
        if (group.code == 10) group = drawing.arena().point(10, NAN, 1);
    drawing.setGroups(second, groups);
    window_.runLine("REGEN");
    QSize size = window_.canvas().size();
    drag({2, 2}, {size.width() - 3, size.height() - 3});
    EXPECT_EQ(window_.canvas().selected().size(), 2u);
}

TEST_F(WindowPicture, BlocksWithinThemselvesAndTooManyAreCutShortAndTold) {
    openFile(block("SELF", insert("SELF", 1, 1) + kLine) + block("A", insert("B") + kLine) +
                 block("B", insert("A") + kLine),
             insert("SELF", 5, 5) + insert("A") + insert("NONE") + point("3", "4"));
    EXPECT_TRUE(says("2 entities are shown in part"));
    // 2 to the 30th: every block has two of the next.
    std::string blocks;
    for (int i = 0; i < 30; ++i)
        blocks += block("N" + std::to_string(i),
                        insert("N" + std::to_string(i + 1)) + insert("N" + std::to_string(i + 1), 1));
    openFile(blocks + block("N30", kLine), insert("N0"));
    EXPECT_TRUE(says("1 entity is shown in part"));
    EXPECT_EQ(propertyText().find("INSERT = 1") != std::string::npos, true);
}

TEST_F(WindowPicture, AHundredThousandNestedInsertsAreShown) {
    std::string many;
    for (int i = 0; i < 1000; ++i) many += insert("LEAF", i * 2, 0);
    std::string rows;
    for (int i = 0; i < 100; ++i) rows += insert("ROW", 0, i * 2);
    openFile(block("LEAF", kLine) + block("ROW", many), rows);
    EXPECT_FALSE(says("in part"));
    // And a chain of blocks, each in the next: the first so many of them.
    std::string chain;
    constexpr int kLinks = 5000;
    for (int i = 0; i < kLinks; ++i)
        chain += block("L" + std::to_string(i), insert("L" + std::to_string(i + 1)) + kLine);
    openFile(chain + block("L" + std::to_string(kLinks), kLine), insert("L0"));
    EXPECT_TRUE(says("1 entity is shown in part"));
}

TEST_F(WindowPicture, FontsThatAreReplacedAreNamed) {
    std::ofstream(path("odd.dxf")) << "0\nSECTION\n2\nTABLES\n0\nTABLE\n2\nSTYLE\n70\n1\n0\nSTYLE\n2\nSTANDAR"
                                      "D\n70\n0\n3\nno-such-font.shx\n"
                                      "0\nENDTAB\n0\nENDSEC\n0\nSECTION\n2\nENTITIES\n0\nTEXT\n8\n0\n10\n0\n2"
                                      "0\n0\n30\n0\n40\n5\n1\nseen\n"
                                      "7\nSTANDARD\n0\nENDSEC\n0\nEOF\n";
    open("odd.dxf");
    EXPECT_TRUE(says("in place of no-such-font.shx.")) << window_.commandPanel().history().toStdString();
}

TEST_F(WindowPicture, KindsWithoutAPictureAreNamed) {
    openFile("", "0\nWIPEOUTISH\n8\n0\n10\n1\n20\n1\n30\n0\n" + point("3", "4"));
    EXPECT_TRUE(says("Entities of these kinds have no picture here: WIPEOUTISH."));
}

TEST_F(WindowPicture, ASmallScreenShowsEverything) {
    window_.resize(800, 600);
    open("survey.dxf");
    QTest::qWait(60);
    EXPECT_LE(window_.minimumSizeHint().width(), 800);
    EXPECT_LE(window_.minimumSizeHint().height(), 600);
    EXPECT_GE(window_.canvas().width(), 300);
    EXPECT_GE(window_.canvas().height(), 200);
    // The longest prompt with its words wraps rather than widening the window.
    person({[&] { type("ZOOM"); }, [&] { EXPECT_EQ(window_.width(), 800); }, [&] { press(Qt::Key_Escape); },
            [] {}});
    settle();
}
