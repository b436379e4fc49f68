// Panels of modules in the window: where they stand, what they are told and when, and whose the keys are.
#include <QDockWidget>
#include <QPushButton>
#include <QTableView>

#include "hostcad/window/panel_docks.h"
#include "platform/ui/panel.h"
#include "platform/ui/qt/dialog_window.h"
#include "tests/hostcad/window/window_fixture.h"

namespace {

constexpr int kEdit = 1001, kGrid = 1002, kAct = 1003;

// What a panel has seen, which outlives it.
struct Seen {
    ui::WindowChange told;
    int times = 0, works = 0, undone = 0, asked = 0;
    bool isForbidden = false;  // nothing may be asked of it
    bool mayEnd = true;
    std::vector<std::string> faults;
    std::function<void()> action;
};

class TestPanel : public ui::Panel, public ui::GridSource {
  public:
    explicit TestPanel(Seen& seen) : Panel(77, "Rows"), seen_(seen) {
        using namespace ui;
        add<Label>(1000, "&Words");
        add<Edit>(kEdit);
        add<Grid>(kGrid, 2);
        add<Button>(kAct, "Do &it");
        setLayout(column({row({item(1000), item(kEdit, 1), item(kAct)}), item(kGrid, 1)}));
        get<Grid>(kGrid).setSource(this);
    }
    int rows() const override { return 1000; }
    std::string text(int column, int row) const override {
        ++seen_.asked;
        if (seen_.isForbidden) seen_.faults.push_back("asked for a cell");
        return std::to_string(column * 10000 + row);
    }
    void setText(int, int, std::string) override {}
    void onWindowChange(const ui::WindowChange& change) override {
        seen_.told = change;
        ++seen_.times;
        left_ = 5;
        if (seen_.isForbidden) seen_.faults.push_back("told of a change");
    }
    bool work(std::chrono::milliseconds) override {
        ++seen_.works;
        if (seen_.isForbidden) seen_.faults.push_back("asked to work");
        return --left_ > 0;
    }
    bool onKey(const ui::Key& key) override {
        if (!(key.control && (key.name == "z" || key.name == "Z"))) return false;
        ++seen_.undone;
        return true;
    }
    bool mayEnd() override { return seen_.mayEnd; }
    void onCommand(int id) override {
        if (id == kAct) perform(seen_.action);
    }

  private:
    Seen& seen_;
    int left_ = 0;
};

class WindowPanels : public Window {
  protected:
    void SetUp() override {
        Window::SetUp();
        backend_.standPanelsIn(window_.modulePanels());
    }
    ui::Panel& show() {
        EXPECT_TRUE(ui::showPanel(std::make_unique<TestPanel>(seen_)));
        QTest::qWait(50);
        return *ui::openPanel(77);
    }
    QWidget& widget(int id) { return *backend_.window(*ui::openPanel(77))->widgetOf(id); }
    QDockWidget* dock() { return window_.findChild<QDockWidget*>("panel-77"); }

    Seen seen_;
};

}  // namespace

TEST_F(WindowPanels, APanelStandsBesideThePictureUntilItIsClosedAndComesBackToItsPlace) {
    show();
    ASSERT_TRUE(dock());
    EXPECT_TRUE(dock()->isVisible());
    EXPECT_EQ(dock()->windowTitle(), "Rows");
    EXPECT_TRUE(widget(kGrid).isVisible());
    EXPECT_FALSE(QApplication::activeModalWidget());
    EXPECT_TRUE(seen_.told.drawing && seen_.told.selection && seen_.told.view);
    EXPECT_EQ(seen_.works, 5) << "work goes on until it is done, and no longer";
    EXPECT_TRUE(widget(kEdit).hasFocus()) << "who opens it wants to use it";
    // All of the dock is the panel's.
    EXPECT_GT(widget(kGrid).width(), dock()->width() * 3 / 4);

    // What it has half done may keep it, and the program.
    seen_.mayEnd = false;
    dock()->close();
    EXPECT_TRUE(ui::openPanel(77));
    EXPECT_FALSE(window_.QMainWindow::close());
    seen_.mayEnd = true;

    window_.addDockWidget(Qt::LeftDockWidgetArea, dock());
    QTest::qWait(20);
    dock()->close();
    QTest::qWait(20);
    EXPECT_EQ(ui::openPanel(77), nullptr);
    EXPECT_FALSE(dock()->isVisible());
    EXPECT_TRUE(commandLine()->hasFocus()) << "the keyboard goes back";
    show();
    EXPECT_EQ(window_.dockWidgetArea(dock()), Qt::LeftDockWidgetArea);
    dock()->setFloating(true);
    QTest::qWait(20);
    EXPECT_TRUE(widget(kGrid).isVisible());
    ui::closePanel(77);
    EXPECT_EQ(ui::openPanel(77), nullptr);
    show();
    EXPECT_TRUE(dock()->isFloating());
    ui::setBackend(nullptr);  // as at the end of the program, before the module goes
    EXPECT_FALSE(dock()->isVisible());
}

TEST_F(WindowPanels, ItIsToldOfWhatChangesAndNeverAskedWhileACommandRuns) {
    show();
    int times = seen_.times;
    for (int i = 0; i < 8; ++i) window_.canvas().zoomBy(1.5, pixelOf("315"));
    click(pixelOf("315"));
    QTest::qWait(30);
    EXPECT_GT(seen_.times, times);
    EXPECT_TRUE(seen_.told.selection);
    EXPECT_FALSE(seen_.told.drawing);
    QTest::qWait(250);
    EXPECT_TRUE(seen_.told.view);

    const std::string before = lisp("(getvar \"LASTPOINT\")");
    person({[&] { type("(progn (getpoint \"Where? \") (repeat 3 (princ \"x\")))"); },
            [&] {
                seen_.isForbidden = true;
                // The window is painted, resized and worked on while the command waits.
                window_.resize(1000, 700);
                window_.repaint();
                QTest::keyClick(&widget(kGrid), Qt::Key_PageDown);
                QTest::keyClick(&widget(kEdit), Qt::Key_A);
                window_.modulePanels().note({true, true, true});
                dock()->close();
            },
            [&] {
                EXPECT_TRUE(dock()->isVisible()) << "it cannot be closed meanwhile";
                EXPECT_EQ(static_cast<QLineEdit&>(widget(kEdit)).text(), "");
                EXPECT_TRUE(commandLine()->hasFocus());
                seen_.isForbidden = false;
                type("5,5");
            }});
    settle();
    seen_.isForbidden = false;
    EXPECT_TRUE(seen_.faults.empty()) << seen_.faults.front();
    EXPECT_TRUE(seen_.told.drawing);
    EXPECT_NE(before, lisp("(getvar \"LASTPOINT\")"));
    // It lives on in the size that the window has now.
    EXPECT_EQ(backend_.window(*ui::openPanel(77))->width(), dock()->width());
    QTest::keyClicks(&widget(kEdit), "a");
    EXPECT_EQ(static_cast<QLineEdit&>(widget(kEdit)).text(), "a");
}

TEST_F(WindowPanels, KeysAreThePanelsWhereTheyEditAndTheWindowsElse) {
    show();
    widget(kGrid).setFocus();
    lisp("(entmake '((0 . \"LINE\") (10 0.0 0.0 0.0) (11 3.0 4.0 0.0)))");
    window_.runLine("REGEN");
    const size_t entities = count();
    QTest::keyClick(&widget(kGrid), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(seen_.undone, 1);
    EXPECT_EQ(count(), entities) << "the drawing is not undone from the panel";
    // A key of a menu that edits nothing.
    QAction* tool = menuEntry("Smart prompting");
    ASSERT_TRUE(tool);
    bool isTriggered = false;
    tool->disconnect();
    QObject::connect(tool, &QAction::triggered, tool, [&] { isTriggered = true; });
    QTest::keyClick(&widget(kGrid), Qt::Key_F9);
    EXPECT_TRUE(isTriggered);
    // Tab goes round in the panel, a letter with Alt to its control, Escape back to the drawing.
    QTest::keyClick(&widget(kGrid), Qt::Key_Tab);
    EXPECT_TRUE(widget(kAct).hasFocus());
    QTest::keyClick(&widget(kAct), Qt::Key_Tab);
    EXPECT_TRUE(widget(kEdit).hasFocus());
    QTest::keyClick(&widget(kEdit), Qt::Key_I, Qt::AltModifier);
    EXPECT_TRUE(widget(kAct).hasFocus());
    QWidget* mark = backend_.window(*ui::openPanel(77))->findChild<QWidget*>("focus");
    ASSERT_TRUE(mark);
    EXPECT_TRUE(mark->isVisible());
    QTest::keyClick(&widget(kAct), Qt::Key_Escape);
    EXPECT_TRUE(commandLine()->hasFocus());
    EXPECT_FALSE(mark->isVisible()) << "the frame is where the keyboard is";
    EXPECT_TRUE(ui::openPanel(77)) << "Escape does not close it";
    // What the panel shows meanwhile takes the keyboard from nobody.
    ui::openPanel(77)->setFocus(kGrid);
    EXPECT_TRUE(commandLine()->hasFocus());
    ui::openPanel(77)->enter();
    EXPECT_TRUE(widget(kGrid).hasFocus());
}

TEST_F(WindowPanels, AnActionIsACommandWhichOneUndoTakesBack) {
    show();
    const size_t entities = count();
    seen_.action = [&] {
        EXPECT_TRUE(window_.isBusy());
        seen_.isForbidden = true;
        lisp("(repeat 3 (entmake '((0 . \"LINE\") (10 0.0 0.0 0.0) (11 3.0 4.0 0.0))))");
        lisp("(princ \"working\")");
        seen_.isForbidden = false;
    };
    QTest::mouseClick(&widget(kAct), Qt::LeftButton);
    QTest::qWait(50);
    EXPECT_EQ(count(), entities + 3);
    EXPECT_TRUE(seen_.told.drawing);
    window_.runLine("U");
    EXPECT_EQ(count(), entities);
    EXPECT_TRUE(seen_.faults.empty());
    // A failing one is told, and the panel goes on.
    seen_.action = [&] { lisp("(car 5)"); };
    QTest::mouseClick(&widget(kAct), Qt::LeftButton);
    QTest::qWait(50);
    EXPECT_TRUE(says("; error:"));
    EXPECT_FALSE(window_.isBusy());
    // One that waits when the panel is closed is not done.
    bool isDone = false;
    seen_.action = [&] { isDone = true; };
    QTest::mouseClick(&widget(kAct), Qt::LeftButton);
    ui::closePanel(77);
    QTest::qWait(50);
    EXPECT_FALSE(isDone);
}
