// The window, worked with mouse and key events: the sample drawing is opened, a point is picked and prompted
// for, the link and the record are seen, the drawing is saved and opened again.
#include <QDockWidget>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTableView>
#include <QTextBrowser>
#include <QToolBar>
#include <map>

#include "hostcad/window/entity_list.h"
#include "hostcad/window/icons.h"
#include "hostcad/window/menu_file.h"
#include "platform/ads/entities.h"
#include "tests/hostcad/window/window_fixture.h"

using hostcad::ObjectId;

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
            },
            [&] { QTest::keyClick(commandLine(), Qt::Key_Escape); }, [] {}});
    settle();
    click(pixelOf(tree));
    std::string shown = propertyText();
    EXPECT_NE(shown.find("PT# = 74"), std::string::npos) << shown;
    EXPECT_NE(shown.find("ZGEO_GIS_2000\n  Template = " + path("template.mdb")), std::string::npos) << shown;
    EXPECT_NE(shown.find("Feature = TREE\n  Key field = PT_ID\n  Key = 74"), std::string::npos) << shown;
    EXPECT_NE(shown.find("Linked record\n  PT_ID = 74\n  GIS_KEY = TREE\n  DBH = 14"), std::string::npos)
        << shown;
    EXPECT_TRUE(window_.isWindowModified());

    menuEntry("Save")->trigger();
    EXPECT_FALSE(window_.isWindowModified());
    window_.openDrawing(path("survey.dxf"));
    for (int i = 0; i < 12; ++i) window_.canvas().zoomBy(1.5, pixelOf(tree));
    click(pixelOf(tree));
    EXPECT_EQ(propertyText(), shown);
}

TEST_F(Window, SmartPromptingGoesOnToTheNextEntityUntilEnter) {
    makeTemplate(*host_, folder_);
    for (const char* x : {"1631000.0", "1631050.0", "1631100.0"})
        lisp("(entmake '((0 . \"POINT\") (8 . \"TREE\") (10 " + std::string(x) + " 480600.0 0.0)))");
    window_.runLine("(princ)");
    for (int i = 0; i < 6; ++i) window_.canvas().zoomBy(1.5, pixelOf(1631025, 480600));
    auto pick = [this](double x) { return [this, x] { click(pixelOf(x, 480600)); }; };
    auto fill = [](const char* diameter) {
        return [diameter] { QTest::keyClicks(QApplication::focusWidget(), diameter); };
    };
    auto save = [] {
        QTest::mouseClick(QApplication::activeModalWidget()->findChild<QPushButton*>("1"), Qt::LeftButton);
    };
    auto look = [] {};
    const std::string linked = "(if (setq s (ssget \"_X\" '((-3 (\"ZGEO_GIS_2000\"))))) (sslength s) 0)";
    const size_t before = count();
    QString question;
    person({[&] { type("GIS-PROMPT"); }, pick(1631000), look, fill("14"), save, look,
            [&] { question = window_.commandPanel().findChild<QLabel*>()->text(); }, pick(1631050), look,
            fill("15"), save, look, [&] { press(Qt::Key_Enter); }, [] {}});
    settle();
    EXPECT_TRUE(question.contains("Select next object")) << question.toStdString();
    EXPECT_EQ(lisp(linked), "2");
    EXPECT_FALSE(says("Function cancelled"));
    // Undo goes back an entity at a time.
    menuEntry("Undo")->trigger();
    EXPECT_EQ(lisp(linked), "1");
    menuEntry("Undo")->trigger();
    EXPECT_EQ(lisp(linked), "0");
    EXPECT_EQ(count(), before);
    // Who leaves a sheet without saving has done.
    person({[&] { type("GIS-PROMPT"); }, pick(1631100), look,
            [] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape); }, [] {}});
    settle();
    EXPECT_EQ(lisp("(getvar \"CMDACTIVE\")"), "0");
    EXPECT_TRUE(window_.commandPanel().history().endsWith("Nothing was saved."));
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

TEST_F(Window, ControlZTakesBackTheDrawingUnlessTextIsTyped) {
    QAction* undo = menuEntry("Undo");
    QAction* redo = menuEntry("Redo");
    QAction* button = nullptr;
    for (QAction* action : window_.findChild<QToolBar*>("drawing")->actions())
        if (action->text() == "Undo") button = action;
    ASSERT_NE(button, nullptr);
    auto offered = [&] { return std::vector{undo->isEnabled(), button->isEnabled(), redo->isEnabled()}; };
    EXPECT_EQ(offered(), (std::vector{false, false, false}));
    auto control = [&](Qt::Key key) {
        QTest::keyClick(QApplication::focusWidget(), key, Qt::ControlModifier);
    };
    const size_t before = count();
    control(Qt::Key_Z);  // nothing to take back
    EXPECT_EQ(commandLine()->text(), "");
    type("(entmake '((0 . \"POINT\") (10 1.0 2.0 0.0)))");
    EXPECT_EQ(count(), before + 1);
    EXPECT_EQ(offered(), (std::vector{true, true, false}));
    ASSERT_EQ(QApplication::focusWidget(), commandLine());
    control(Qt::Key_Z);
    EXPECT_EQ(count(), before);
    EXPECT_EQ(offered(), (std::vector{false, false, true}));
    EXPECT_EQ(commandLine()->text(), "");
    control(Qt::Key_Y);
    EXPECT_EQ(count(), before + 1);
    // What is being typed is taken back first.
    QTest::keyClicks(commandLine(), "LIN");
    control(Qt::Key_Z);
    EXPECT_EQ(commandLine()->text(), "");
    EXPECT_EQ(count(), before + 1);
    control(Qt::Key_Z);
    EXPECT_EQ(count(), before);
    // While a command waits, its changes can be taken back, with the command.
    person({[&] { type("LINE"); }, [&] { type("0,0"); }, [&] { type("5,5"); },
            [&] { EXPECT_EQ(offered()[0], true); }, [&] { control(Qt::Key_Z); }, [] {}});
    settle();
    EXPECT_EQ(count(), before);
    // Each line of Lisp is one step.
    type("(entmake '((0 . \"POINT\") (10 1.0 2.0 0.0)))");
    type("(entmake '((0 . \"POINT\") (10 3.0 4.0 0.0)))");
    control(Qt::Key_Z);
    EXPECT_EQ(count(), before + 1);
    control(Qt::Key_Z);
    EXPECT_EQ(count(), before);
    // The focus in the drawing or in a list makes no difference.
    type("(entmake '((0 . \"POINT\") (10 1.0 2.0 0.0)))");
    window_.entityList().view().setFocus();
    control(Qt::Key_Z);
    EXPECT_EQ(count(), before);
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

TEST_F(Window, SizePanelsAndColumnsAreRememberedFromRunToRun) {
    QTableView& view = window_.entityList().view();
    window_.resize(1040, 700);
    window_.move(30, 20);
    menuEntry("Properties")->trigger();
    window_.resizeDocks({window_.findChild<QDockWidget*>("commands")}, {240}, Qt::Vertical);
    view.setColumnWidth(hostcad::EntityTable::kLayer, 123);
    window_.canvas().legend().setWanted(false);
    QTest::qWait(20);
    const int commands = window_.findChild<QDockWidget*>("commands")->height();
    EXPECT_GT(commands, 200);
    ASSERT_TRUE(window_.close());

    hostcad::MainWindow next;
    next.start(*host_, norvaneGis(), {});
    next.QMainWindow::show();
    QTest::qWait(20);
    EXPECT_EQ(next.size(), QSize(1040, 700));
    EXPECT_EQ(next.pos(), QPoint(30, 20));
    EXPECT_FALSE(next.findChild<QDockWidget*>("properties")->isVisible());
    EXPECT_TRUE(next.findChild<QDockWidget*>("entities")->isVisible());
    EXPECT_NEAR(next.findChild<QDockWidget*>("commands")->height(), commands, 4);
    EXPECT_EQ(next.entityList().view().columnWidth(hostcad::EntityTable::kLayer), 123);
    EXPECT_FALSE(next.canvas().legend().isWanted());
    host_->lisp().setPulse({});
}

TEST_F(Window, OffersOnlyWhatIsThereAndHelp) {
    QMenu* programs = menuEntry("Called by programs")->menu();
    ASSERT_NE(programs, nullptr);
    EXPECT_EQ(programs->actions().size(), 4);
    EXPECT_EQ(menuEntry("Remembered value"), nullptr);  // not beside what a person needs
    for (QAction* heading : window_.menuBar()->actions())
        for (QAction* action : heading->menu()->actions())
            EXPECT_TRUE(action->isEnabled() || action->text() == "&Undo" || action->text() == "&Redo")
                << action->text().toStdString();
    EXPECT_FALSE(window_.windowIcon().isNull());
    EXPECT_EQ(window_.menuBar()->actions().last()->text(), "&Help");
    QString about, document;
    person({[&] { menuEntry("About")->trigger(); },
            [&] {
                auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
                ASSERT_NE(box, nullptr);
                about = box->text() + box->informativeText();
                QTest::keyClick(box, Qt::Key_Escape);
            },
            [&] { window_.activateWindow(); }, [&] { press(Qt::Key_F1); },
            [&] {
                auto* browser = window_.findChild<QTextBrowser*>();
                ASSERT_NE(browser, nullptr);
                document = browser->toPlainText();
                QTest::keyClick(browser, Qt::Key_Escape);
                EXPECT_FALSE(browser->isVisible());
            }});
    settle();
    EXPECT_TRUE(about.contains("Norvane GIS")) << about.toStdString();
    EXPECT_TRUE(about.contains("MIT")) << about.toStdString();
    EXPECT_TRUE(document.contains("How the work is done")) << document.toStdString();
}

TEST_F(Window, AnEmptyWindowOffersTheSampleAndRecentDrawings) {
    const size_t entities = count();
    ASSERT_EQ(host_->newDrawing(), "");
    auto buttonOf = [](hostcad::MainWindow& window, const QString& caption) {
        QPushButton* found = nullptr;
        for (auto* button : window.canvas().findChildren<QPushButton*>())
            if (button->isVisible() && button->text().remove('&').startsWith(caption)) found = button;
        return found;
    };
    {
        hostcad::MainWindow next;
        next.start(*host_, norvaneGis(), {});
        next.QMainWindow::show();
        ASSERT_NE(buttonOf(next, "Open a drawing"), nullptr);
        QTest::mouseClick(buttonOf(next, "Look at the sample"), Qt::LeftButton);
        EXPECT_EQ(count(), entities);
        EXPECT_EQ(hostcad::currentDrawing().path(), "");  // the sample stays what it is
        EXPECT_EQ(buttonOf(next, "Open a drawing"), nullptr);
    }
    ASSERT_EQ(host_->newDrawing(), "");
    {
        hostcad::MainWindow next;
        next.start(*host_, norvaneGis(), {});
        next.QMainWindow::show();
        QTest::mouseClick(buttonOf(next, "survey.dxf"), Qt::LeftButton);
        EXPECT_EQ(next.windowTitle(), "survey.dxf[*] - Norvane GIS");
    }
    ASSERT_EQ(host_->newDrawing(), "");
    hostcad::MainWindow next;
    next.start(*host_, norvaneGis(), {});
    next.QMainWindow::show();
    next.runLine("REGEN");  // whoever works does not need it
    EXPECT_EQ(buttonOf(next, "Open a drawing"), nullptr);
    host_->lisp().setPulse({});
}

TEST_F(Window, ADarkThemeIsDarkEverywhere) {
    auto lightness = [&](QWidget& widget) {
        QImage picture =
            widget.grab().toImage().scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        return QColor(picture.pixel(0, 0)).lightness();
    };
    auto iconLightness = [&] {
        QImage icon = window_.findChild<QToolBar*>("drawing")->actions()[0]->icon().pixmap(22).toImage();
        int most = 0, least = 255;
        for (int x = 0; x < icon.width(); ++x)
            for (int y = 0; y < icon.height(); ++y)
                if (QColor c = icon.pixelColor(x, y); c.alpha() > 200) {
                    most = std::max(most, c.lightness());
                    least = std::min(least, c.lightness());
                }
        return std::pair(least, most);
    };
    QTableView& list = window_.entityList().view();
    EXPECT_GT(lightness(list), 150);
    EXPECT_LT(iconLightness().first, 100);
    const QPalette old = QApplication::palette();
    QPalette dark(QColor(45, 45, 48), QColor(45, 45, 48));
    dark.setColor(QPalette::Base, QColor(30, 30, 30));
    dark.setColor(QPalette::AlternateBase, QColor(38, 38, 38));
    for (auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        dark.setColor(role, QColor(220, 220, 220));
    QApplication::setPalette(dark);
    QTest::qWait(50);
    for (QWidget* widget : {static_cast<QWidget*>(&list), static_cast<QWidget*>(&window_.properties()),
                            static_cast<QWidget*>(&window_.commandPanel())})
        EXPECT_LT(lightness(*widget), 90) << widget->accessibleName().toStdString();
    EXPECT_GT(iconLightness().second, 200);
    // Hints can be read, and what cannot be used looks so.
    for (QLineEdit* line : {commandLine(), window_.entityList().findChild<QLineEdit*>()})
        EXPECT_GT(line->palette().color(QPalette::PlaceholderText).lightness(), 200);
    QIcon icon = window_.findChild<QToolBar*>("drawing")->actions()[0]->icon();
    auto strength = [&](QIcon::Mode mode) {
        QImage picture = icon.pixmap(22, mode).toImage();
        int most = 0;
        for (int x = 0; x < picture.width(); ++x)
            for (int y = 0; y < picture.height(); ++y)
                most = std::max(most, picture.pixelColor(x, y).alpha());
        return most;
    };
    EXPECT_LT(strength(QIcon::Disabled), strength(QIcon::Normal) / 2);
    QApplication::setPalette(old);
    QTest::qWait(50);
}

TEST_F(Window, ProgressLinesAreWrittenOverThemselves) {
    window_.write("\nrecords 50");
    window_.write("\rrecords 100\r");
    window_.write("done\n");
    EXPECT_TRUE(window_.commandPanel().history().contains("done"));
    EXPECT_FALSE(window_.commandPanel().history().contains("records"));
}

TEST_F(Window, ShowsTheProductsTitleAndButtonsBehindItsOwn) {
    EXPECT_EQ(window_.windowTitle(), "survey.dxf[*] - Norvane GIS");
    std::map<QString, QAction*> buttons;
    QString captions;
    for (QAction* action : window_.findChild<QToolBar*>("drawing")->actions()) {
        captions += action->isSeparator() ? "-" : action->text() + ",";
        buttons[action->text()] = action;
        EXPECT_NE(action->icon().isNull(), !action->isSeparator()) << action->text().toStdString();
    }
    EXPECT_EQ(captions,
              "New drawing,Open a drawing,Save,-Undo,Redo,-Zoom to everything,Zoom to a window,"
              "Previous view,-GIS smart prompting,GIS settings,");
    EXPECT_TRUE(hostcad::drawnIcon("no such icon", Qt::black).isNull());

    // A zoom leaves the command waiting.
    const double height = window_.canvas().view().height;
    const size_t entities = count();
    window_.canvas().zoomBy(1.5, pixelOf("315"));
    double zoomed = 0;
    QString dialog;
    person({[&] { type("LINE"); }, [&] { type("0,0"); },
            [&] {
                buttons["Zoom to everything"]->trigger();
                zoomed = window_.canvas().view().height;
            },
            [&] { type("10,10"); }, [&] { buttons["GIS settings"]->trigger(); },
            [&] {
                dialog = QApplication::activeModalWidget()->windowTitle();
                QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape);
            }});
    settle();
    EXPECT_NEAR(zoomed, height, 1e-6 * height);
    EXPECT_EQ(count(), entities + 1);
    EXPECT_EQ(dialog, "GIS Settings");
}

TEST(MenuFile, OffersWhatIsWrittenInIt) {
    auto headings = hostcad::readMenuFile(NORVANE_SOURCE_DIR "/hostcad/support/hostcad.mnu");
    ASSERT_EQ(headings.size(), 5u);
    EXPECT_EQ(headings[0].caption, "&File");
    EXPECT_EQ(headings[0].entries[0].shortcut, "Ctrl+N");
    EXPECT_TRUE(headings[4].isToolBar);
    EXPECT_EQ(headings[4].entries[0].icon, "new");
    auto more = hostcad::readMenuFile(NORVANE_SOURCE_DIR "/product/gis.mnu");
    ASSERT_EQ(more.size(), 7u);
    EXPECT_EQ(more[0].caption, "&GIS");
    EXPECT_EQ(more[0].entries[0].command, "GIS-PROMPT");
    EXPECT_TRUE(more[0].entries[0].enabled);
    EXPECT_EQ(more[0].entries[6].command, "GIS-LINKS");
    EXPECT_EQ(more[0].entries.back().command, "GIS-TITLES");
    EXPECT_TRUE(more[0].entries.back().enabled);
    EXPECT_EQ(more[1].caption, "&GIS/&Records");
    EXPECT_EQ(more[2].caption, "&GIS/Called b&y programs");
    EXPECT_EQ(more[3].caption, "&View");
    EXPECT_TRUE(more[5].isToolBar);
    EXPECT_TRUE(hostcad::readMenuFile("no such file").empty());
    headings.insert(headings.end(), more.begin(), more.end());
    // Alt and a letter leads to one entry, whichever file has it, and to one of the menus within.
    std::map<std::string, std::string> letters;  // by menu
    const auto take = [&letters](const std::string& menu, const std::string& caption) {
        const size_t mark = caption.find('&');
        if (mark == std::string::npos) return;
        const char letter = static_cast<char>(std::tolower(caption[mark + 1]));
        EXPECT_EQ(letters[menu].find(letter), std::string::npos) << menu << ": " << caption;
        letters[menu] += letter;
    };
    for (const hostcad::MenuHeading& heading : headings) {
        for (const hostcad::MenuEntry& entry : heading.entries) take(heading.caption, entry.caption);
        if (const size_t slash = heading.caption.find('/'); slash != std::string::npos)
            take(heading.caption.substr(0, slash), heading.caption.substr(slash + 1));
    }
}

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    QApplication::setOrganizationName("norvane-test");
    return RUN_ALL_TESTS();
}
