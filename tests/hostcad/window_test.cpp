// The window, worked with mouse and key events on the offscreen platform: the sample drawing is opened, a
// point is picked and prompted for, the link is seen, the drawing is saved and opened again.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <filesystem>
#include <fstream>

#include "hostcad/drawing/current_drawing.h"
#include "hostcad/window/command_panel.h"
#include "hostcad/window/main_window.h"
#include "hostcad/window/menu_file.h"
#include "hostcad/window/properties.h"
#include "platform/ads/entities.h"
#include "platform/ui/qt/qt_backend.h"

namespace fs = std::filesystem;
using hostcad::ObjectId;

namespace {

class Window : public testing::Test {
  protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "norvane-window-XXXXXX").string();
        folder_ = mkdtemp(pattern.data());
        setenv("NORVANE_USER_DIR", folder_.c_str(), 1);
        fs::copy_file(NORVANE_SOURCE_DIR "/samples/survey.dxf", path("survey.dxf"));
        host_ = std::make_unique<hostcad::Host>(window_, window_, window_);
        host_->setFolders(NORVANE_BIN_DIR "/", NORVANE_SOURCE_DIR "/hostcad/support/");
        ASSERT_EQ(host_->newDrawing(), "");  // the one of the test before may be changed
        ASSERT_TRUE(host_->modules().load(NORVANE_BIN_DIR "/norvane_gis.arx"));
        host_->runScript(NORVANE_SOURCE_DIR "/hostcad/support/gis.lsp");
        ui::setBackend(&backend_);
        window_.start(*host_, NORVANE_SOURCE_DIR "/hostcad/support/hostcad.mnu");
        window_.resize(1100, 800);
        window_.QMainWindow::show();
        window_.openDrawing(path("survey.dxf"));
    }
    void TearDown() override {
        ui::setBackend(nullptr);
        host_.reset();
        fs::remove_all(folder_);
    }

    std::string path(const std::string& name) const { return folder_ + "/" + name; }

    // Things a person does, each when what came before has settled; they go on inside of prompts and dialogs.
    void person(std::vector<std::function<void()>> actions) {
        actions_ = std::move(actions);
        next_ = 0;
        step();
    }
    void step() {
        QTimer::singleShot(15, &window_, [this] {
            if (next_ >= actions_.size()) return;
            auto action = actions_[next_++];
            step();
            action();
        });
    }
    void settle() {
        for (int i = 0; i < 400 && next_ < actions_.size(); ++i) QTest::qWait(10);
        EXPECT_EQ(next_, actions_.size());
        QTest::qWait(60);
    }

    // The pixel of a world point.
    QPoint pixelOf(double x, double y) {
        hostcad::ViewBox view = window_.canvas().view();
        double scale = window_.canvas().height() / view.height;
        return QPoint(qRound(window_.canvas().width() / 2.0 + (x - view.centre[0]) * scale),
                      qRound(window_.canvas().height() / 2.0 - (y - view.centre[1]) * scale));
    }
    QPoint pixelOf(const char* handle) {
        ObjectId id = hostcad::currentDrawing().byHandle(std::stoul(handle, nullptr, 16));
        const hostcad::Group* at = hostcad::find(hostcad::currentDrawing().groups(id), 10);
        return pixelOf(at->x(), at->y());
    }
    void click(QPoint at, Qt::KeyboardModifiers with = {}) {
        QTest::mouseClick(&window_.canvas(), Qt::LeftButton, with, at);
    }
    void drag(QPoint from, QPoint to) {
        QTest::mousePress(&window_.canvas(), Qt::LeftButton, {}, from);
        for (int i = 1; i <= 4; ++i) {
            QPointF at = from + (to - from) * i / 4.0;
            QMouseEvent move(QEvent::MouseMove, at, window_.canvas().mapToGlobal(at), Qt::NoButton,
                             Qt::LeftButton, {});
            QApplication::sendEvent(&window_.canvas(), &move);
        }
        QTest::mouseRelease(&window_.canvas(), Qt::LeftButton, {}, to);
    }
    void type(const char* line) {
        auto* edit = window_.commandPanel().findChild<QLineEdit*>();
        QTest::keyClicks(edit, line);
        QTest::keyClick(edit, Qt::Key_Enter);
    }
    QAction* menuEntry(const QString& caption) {
        for (QAction* heading : window_.menuBar()->actions())
            for (QAction* action : heading->menu()->actions())
                if (action->text().remove('&') == caption) return action;
        return nullptr;
    }
    std::string propertyText() {
        std::string all;
        QTreeWidget& tree = window_.properties();
        for (int i = 0; i < tree.topLevelItemCount(); ++i) {
            all += tree.topLevelItem(i)->text(0).toStdString() + "\n";
            for (int k = 0; k < tree.topLevelItem(i)->childCount(); ++k)
                all += "  " + tree.topLevelItem(i)->child(k)->text(0).toStdString() + " = " +
                       tree.topLevelItem(i)->child(k)->text(1).toStdString() + "\n";
        }
        return all;
    }

    std::string folder_;
    hostcad::MainWindow window_;
    ui::QtBackend backend_{&window_};
    std::unique_ptr<hostcad::Host> host_;

  private:
    std::vector<std::function<void()>> actions_;
    size_t next_ = 0;
};

// A template with one feature, written with the host's own Lisp.
void makeTemplate(hostcad::Host& host, const std::string& folder) {
    std::ofstream(folder + "/gps.ini")
        << "is_database=\ngisoutfile=" << folder << "/output.mdb\ngismdbfile=" << folder << "/template.mdb\n";
    std::string file = "\"" + folder + "/template.mdb\"";
    host.lisp().runText("(cf:gis_smart_prompting 20 \"x\" \"none\" " + file + ")");
    std::string tables =
        "sqlite3 '" + folder +
        "/template.mdb' \"create table ZGEO_SMART_PROMPTING (NO_GIS INTEGER PRIMARY KEY, GIS_NAME TEXT(255), "
        "FIELD_NAME TEXT(255), FIELD_PROMPT TEXT(255), DEFAULT_VALUE TEXT(255), LIST_VALUES TEXT(255)); "
        "create table ZGEO_CAT "
        "(INDEX_CAT_GIS INTEGER, CAT_GIS_NAME TEXT(255), GIS_NAME TEXT(255)); insert into "
        "ZGEO_SMART_PROMPTING (GIS_NAME, FIELD_NAME, "
        "FIELD_PROMPT) values ('TREE','~.DBH','Diameter'), ('TREE','SPECIES','Species')\"";
    ASSERT_EQ(std::system(tables.c_str()), 0);
    host.lisp().runText("(cf:gis_smart_prompting 20 \"x\" " + file + " \"" + folder + "/output.mdb\")");
}

}  // namespace

TEST_F(Window, DoesTheMainJobWithMouseAndKeys) {
    makeTemplate(*host_, folder_);
    // Point 74 of the drawing is a tree. Zoom until nothing else is near it.
    const char* tree = "315";
    for (int i = 0; i < 12; ++i) window_.canvas().zoomBy(1.5, pixelOf(tree));
    person({[&] { menuEntry("Smart prompting")->trigger(); }, [&] { click(pixelOf(tree)); },
            [&] {
                EXPECT_EQ(QApplication::activeModalWidget()->windowTitle(),
                          "GIS Smart Prompting - Entity has no GIS Data");
            },
            [&] { QTest::keyClicks(QApplication::focusWidget(), "14"); },
            [&] {
                QTest::mouseClick(QApplication::activeModalWidget()->findChild<QPushButton*>("1"),
                                  Qt::LeftButton);
            }});
    settle();
    click(pixelOf(tree));
    std::string shown = propertyText();
    EXPECT_NE(shown.find("PT# = 74"), std::string::npos) << shown;
    EXPECT_NE(shown.find("ZGEO_GIS_2000\n  Template = " + path("template.mdb")), std::string::npos) << shown;
    EXPECT_NE(shown.find("Feature = TREE\n  Key field = PT_ID\n  Key = 74"), std::string::npos) << shown;
    EXPECT_NE(shown.find("Linked record\n  PT_ID = 74\n  GIS_KEY = TREE\n  DBH = 14"), std::string::npos) << shown;
    EXPECT_TRUE(window_.isWindowModified());

    menuEntry("Save")->trigger();
    EXPECT_FALSE(window_.isWindowModified());
    window_.openDrawing(path("survey.dxf"));
    for (int i = 0; i < 12; ++i) window_.canvas().zoomBy(1.5, pixelOf(tree));
    click(pixelOf(tree));
    EXPECT_EQ(propertyText(), shown);
}

TEST_F(Window, BoxesSelectInsideToTheRightAndCrossingToTheLeft) {
    QSize size = window_.canvas().size();
    drag({2, 2}, {size.width() - 3, size.height() - 3});
    size_t inside = window_.canvas().selected().size();
    EXPECT_GT(inside, 400u);
    // Half of the picture: what it touches is more than what is in it.
    window_.canvas().setSelected({});
    drag({2, 2}, {size.width() / 4, size.height() - 3});
    size_t enclosed = window_.canvas().selected().size();
    window_.canvas().setSelected({});
    drag({size.width() / 4, size.height() - 3}, {2, 2});
    EXPECT_GT(window_.canvas().selected().size(), enclosed);
    EXPECT_GT(enclosed, 10u);
    EXPECT_NE(propertyText().find("entities selected"), std::string::npos);
}

TEST_F(Window, CommandsTakePointsFromTheCanvasAndAreUndone) {
    QPoint a(200, 150), b(300, 150);
    person({[&] { type("LINE"); }, [&] { click(a); }, [&] { click(b); }, [&] { type(""); }});
    settle();
    ads_name last;
    ASSERT_EQ(acdbEntLast(last), RTNORM);
    resbuf* groups = acdbEntGet(last);
    EXPECT_STREQ(groups->rbnext->resval.rstring, "LINE");
    acutRelRb(groups);
    size_t before = 0, after = 0;
    for (ObjectId id = hostcad::currentDrawing().firstEntity(); id;
         id = hostcad::currentDrawing().nextEntity(id))
        ++before;
    window_.runLine("U");
    for (ObjectId id = hostcad::currentDrawing().firstEntity(); id;
         id = hostcad::currentDrawing().nextEntity(id))
        ++after;
    EXPECT_EQ(after + 1, before);
}

TEST_F(Window, EscapeEndsAPromptAndAMenuEndsTheCommandThatWaits) {
    person({[&] { type("LINE"); },
            [&] { QTest::keyClick(window_.commandPanel().findChild<QLineEdit*>(), Qt::Key_Escape); },
            [&] { type("LINE"); }, [&] { menuEntry("Regenerate")->trigger(); }, [] {}});
    settle();
    EXPECT_FALSE(window_.isWindowModified());
    EXPECT_TRUE(window_.commandPanel().history().contains("Command: REGEN"));
}

TEST_F(Window, UnsavedWorkIsAskedFor) {
    host_->lisp().runText("(entmake '((0 . \"POINT\") (10 1.0 2.0 0.0)))");
    person({[&] { window_.close(); },
            [] {
                auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
                ASSERT_NE(box, nullptr);
                QTest::mouseClick(box->button(QMessageBox::Cancel), Qt::LeftButton);
            }});
    settle();
    EXPECT_TRUE(window_.isVisible());
}

TEST_F(Window, ProgressLinesAreWrittenOverThemselves) {
    window_.write("\nrecords 50");
    window_.write("\rrecords 100\r");
    window_.write("done\n");
    EXPECT_TRUE(window_.commandPanel().history().contains("done"));
    EXPECT_FALSE(window_.commandPanel().history().contains("records"));
}

TEST_F(Window, AnOddDrawingShowsWhatItCan) {
    std::ofstream(path("odd.dxf"))
        << "0\nSECTION\n2\nBLOCKS\n0\nBLOCK\n2\nSELF\n10\n0\n20\n0\n30\n0\n0\nINSERT\n8\n0\n2\nSELF\n10\n1\n2"
           "0\n1\n"
           "30\n0\n0\nLINE\n8\n0\n10\n0\n20\n0\n30\n0\n11\n1\n21\n1\n31\n0\n0\nENDBLK\n0\nENDSEC\n"
           "0\nSECTION\n2\nENTITIES\n0\nINSERT\n8\n0\n2\nSELF\n10\n5\n20\n5\n30\n0\n"
           "0\nPOINT\n8\n0\n10\n1e30\n20\n0\n30\n0\n0\nPOINT\n8\n0\n10\n3\n20\n4\n30\n0\n0\nENDSEC\n0\nEOF\n";
    window_.openDrawing(path("odd.dxf"));
    QTest::qWait(50);
    EXPECT_TRUE(window_.commandPanel().history().contains("1 entity is not shown"));
    EXPECT_LT(window_.canvas().view().height, 1000);
}

TEST(MenuFile, OffersWhatIsWrittenInIt) {
    auto headings = hostcad::readMenuFile(NORVANE_SOURCE_DIR "/hostcad/support/hostcad.mnu");
    ASSERT_EQ(headings.size(), 5u);
    EXPECT_EQ(headings[4].caption, "&GIS");
    EXPECT_EQ(headings[4].entries[0].command, "GIS-PROMPT");
    EXPECT_TRUE(headings[4].entries[0].enabled);
    EXPECT_FALSE(headings[4].entries[5].enabled);
    EXPECT_TRUE(hostcad::readMenuFile("no such file").empty());
}

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    QApplication::setOrganizationName("norvane-test");
    return RUN_ALL_TESTS();
}
