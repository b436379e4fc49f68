// The sheet, GIS Settings and a dialog of tiles in real windows, worked by key and mouse events on the
// offscreen platform. The same flows must give the same databases and links as the scripted ones.
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QTimer>

#include "platform/ui/qt/dialog_window.h"
#include "platform/ui/qt/qt_backend.h"
#include "tests/module/module_fixture.h"

class QtSheet : public ModuleTest {
  protected:
    using Action = std::function<void()>;

    void SetUp() override {
        ModuleTest::SetUp();
        makeTemplate();
        makeEntity();
        ui::setBackend(&qt_);
    }
    void TearDown() override {
        EXPECT_EQ(next_, actions_.size()) << "not every action was reached";
        ModuleTest::TearDown();
    }

    // Actions of the person at the screen, one after the other, each when the window before it has settled.
    void person(std::vector<Action> actions) {
        actions_ = std::move(actions);
        next_ = 0;
        step();
    }
    // The next one is set off first: an action may open a window with an event loop of its own.
    void step() {
        constexpr int kPause = 15;  // milliseconds
        QTimer::singleShot(kPause, &context_, [this] {
            if (next_ >= actions_.size()) return;
            Action action = actions_[next_++];
            step();
            action();
        });
    }

    static QWidget* window() { return QApplication::activeModalWidget(); }
    template <class W>
    static W* child(int id) {
        return window() ? window()->findChild<W*>(QString::number(id)) : nullptr;
    }
    static Action press(Qt::Key key, Qt::KeyboardModifiers with = Qt::NoModifier) {
        return [=] {
            QWidget* target = QApplication::focusWidget() ? QApplication::focusWidget() : window();
            ASSERT_NE(target, nullptr);
            QTest::keyClick(target, key, with);
        };
    }
    static Action type(const char* text) {
        return [=] {
            ASSERT_NE(QApplication::focusWidget(), nullptr);
            for (const char* c = text; *c; ++c) QTest::keyClick(QApplication::focusWidget(), *c);
        };
    }
    static Action clickButton(int id) {
        return [=] {
            ASSERT_NE(child<QPushButton>(id), nullptr);
            QTest::mouseClick(child<QPushButton>(id), Qt::LeftButton);
        };
    }
    static Action clickCell(int column, int row) {
        return [=] {
            auto* table = child<QTableView>(1110);
            ASSERT_NE(table, nullptr);
            QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                              table->visualRect(table->model()->index(row - 1, column - 1)).center());
        };
    }
    static Action see(std::function<bool()> what, const char* name) {
        return [=] { EXPECT_TRUE(what()) << name; };
    }
    std::string record(const std::string& columns) const {
        return sqlite("output.mdb", "select " + columns + " from TREE");
    }

    ui::QtBackend qt_;

  private:
    std::vector<Action> actions_;
    size_t next_ = 0;
    QObject context_;
};

TEST_F(QtSheet, IsFilledByKeyboardAlone) {
    person({see([] { return window()->windowTitle() == "GIS Smart Prompting - Entity has no GIS Data"; },
                "title"),
            see([] { return child<QLineEdit>(1108)->text() == "TREE"; }, "table"),
            press(Qt::Key_R),  // the list cell: RED OAK
            press(Qt::Key_Enter), press(Qt::Key_Enter), type("14x"), press(Qt::Key_Enter), type("42.5"),
            press(Qt::Key_F4), press(Qt::Key_F3), press(Qt::Key_Enter), press(Qt::Key_Escape),
            press(Qt::Key_F4),
            // From the grid on to OK, past what is disabled.
            see([] { return QApplication::focusWidget()->objectName() != "1110"; }, "F4 leaves the grid"),
            [] { child<QPushButton>(1)->setFocus(); }, press(Qt::Key_Enter)});
    EXPECT_EQ(prompt("17", "TREE12"), "1");
    EXPECT_EQ(record("PT_ID, GIS_KEY, SPECIES, DBH, HEIGHT, TWICE"), "17|TREE|RED OAK|14|42.5|85\n");
    EXPECT_NE(link().find("(1000 . \"17\")"), std::string::npos);
}

TEST_F(QtSheet, IsFilledByMouse) {
    person({clickCell(2, 2), type("9"), clickCell(2, 12), type("by the gate"), clickButton(1)});
    EXPECT_EQ(prompt("18", "TREE"), "1");
    EXPECT_EQ(record("DBH, REMARKS"), "9|by the gate\n");
}

TEST_F(QtSheet, EnterOutsideTheButtonKeepsItOpenAndEscapeCancels) {
    person({clickCell(2, 2), type("9"), [] { child<QComboBox>(1106)->setFocus(); }, press(Qt::Key_Enter),
            see([] { return window() && window()->isVisible(); }, "still open"), press(Qt::Key_Escape)});
    EXPECT_EQ(prompt("18", "TREE"), "0");
    EXPECT_EQ(link(), "nil");
}

TEST_F(QtSheet, AFaultIsShownAndItsCellIsReady) {
    person({clickButton(1),
            see(
                [] {
                    auto* box = qobject_cast<QMessageBox*>(window());
                    return box && box->windowTitle() == "Error" &&
                           box->text() == "Attribute DBH must be set!";
                },
                "box"),
            press(Qt::Key_Enter), type("15"), clickButton(1)});
    EXPECT_EQ(prompt("18", "TREE"), "1");
    EXPECT_EQ(record("DBH"), "15\n");
}

TEST_F(QtSheet, TheFeatureIsChangedInItsList) {
    person({[] { child<QComboBox>(1106)->setFocus(); }, press(Qt::Key_Down),
            see([] { return child<QComboBox>(1106)->currentText() == "POLE"; }, "POLE"),
            see([] { return child<QTableView>(1110)->model()->rowCount() == 11; }, "rows of POLE"),
            clickButton(2)});
    EXPECT_EQ(prompt("18", "TREE"), "0");
}

TEST_F(QtSheet, SettingsAndChooserAreWindowsInEachOther) {
    person({see([] { return window()->windowTitle() == "GIS Settings"; }, "settings"), clickButton(1006),
            see([] { return window()->windowTitle() == "New or Existing File"; }, "chooser"),
            [] { window()->close(); }, see([] { return window()->windowTitle() == "GIS Settings"; }, "back"),
            press(Qt::Key_X, Qt::AltModifier)});
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 7)"), "0");
    EXPECT_NE(read("gps.ini").find("gismdbfile=" + path("template.mdb")), std::string::npos);
}

TEST_F(QtSheet, ClosingTheFrameIsCancelling) {
    person({[] { window()->close(); }});
    EXPECT_EQ(prompt("18", "TREE"), "0");
}

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
