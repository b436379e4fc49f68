// The sheet, GIS Settings and a dialog of tiles in real windows, worked by key and mouse events on the
// offscreen platform. The same flows must give the same databases and links as the scripted ones.
#include <QComboBox>
#include <QMessageBox>
#include <QTableView>

#include "platform/ui/qt/dialog_window.h"
#include "platform/ui/qt/qt_backend.h"
#include "tests/module/module_fixture.h"
#include "tests/platform/ui/qt_person.h"

class QtSheet : public ModuleTest, protected QtPerson {
  protected:
    void SetUp() override {
        ModuleTest::SetUp();
        makeTemplate();
        makeEntity();
        ui::setBackend(&qt_);
    }
    void TearDown() override {
        EXPECT_TRUE(finished()) << "not every action was reached";
        ModuleTest::TearDown();
    }

    static Action clickCell(int column, int row) {
        return [=] {
            auto* table = child<QTableView>(1110);
            ASSERT_NE(table, nullptr);
            QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                              table->visualRect(table->model()->index(row - 1, column - 1)).center());
        };
    }
    std::string record(const std::string& columns) const {
        return sqlite("output.mdb", "select " + columns + " from TREE");
    }

    ui::QtBackend qt_;
};

TEST_F(QtSheet, IsFilledByKeyboardAlone) {
    does({see([] { return window()->windowTitle() == "GIS Smart Prompting - Entity has no GIS Data"; },
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
    does({clickCell(2, 2), type("9"), clickCell(2, 12), type("by the gate"), clickButton(1)});
    EXPECT_EQ(prompt("18", "TREE"), "1");
    EXPECT_EQ(record("DBH, REMARKS"), "9|by the gate\n");
}

TEST_F(QtSheet, EnterOutsideTheButtonKeepsItOpenAndEscapeCancels) {
    does({clickCell(2, 2), type("9"), [] { child<QComboBox>(1106)->setFocus(); }, press(Qt::Key_Enter),
          see([] { return window() && window()->isVisible(); }, "still open"), press(Qt::Key_Escape)});
    EXPECT_EQ(prompt("18", "TREE"), "0");
    EXPECT_EQ(link(), "nil");
}

// Every rule of the grid's keys, told by where the active cell stands afterwards.
TEST_F(QtSheet, KeysOfTheGridWalkTheRecord) {
    auto at = [](int column, int row) {
        return see(
            [=] {
                QModelIndex cell = child<QTableView>(1110)->currentIndex();
                return cell.column() == column - 1 && cell.row() == row - 1;
            },
            "cell " + std::to_string(column) + ", " + std::to_string(row));
    };
    auto editing = [](bool on) {
        return see([=] { return (qobject_cast<QLineEdit*>(QApplication::focusWidget()) != nullptr) == on; },
                   on ? "editing" : "not editing");
    };
    does({
        at(2, 1),
        press(Qt::Key_Tab),
        at(1, 2),  // Tab: column 1 of the next row
        press(Qt::Key_Tab),
        at(2, 2),  // and from column 1 to the value beside it
        press(Qt::Key_Enter),
        at(2, 2),
        editing(true),  // Enter: first the editing,
        type("31"),
        press(Qt::Key_Enter),
        at(2, 3),
        editing(false),  // then the next row
        clickCell(1, 4),
        press(Qt::Key_Enter),
        at(2, 4),  // a cell that is not edited: to its value
        clickCell(2, 6),
        press(Qt::Key_Enter),
        at(2, 7),  // a computed one: on
        clickCell(2, 12),
        press(Qt::Key_Enter),
        editing(true),
        press(Qt::Key_Enter),
        at(2, 1),  // from the last row to the first
        clickCell(2, 12),
        press(Qt::Key_Tab),
        at(1, 1),
        clickCell(2, 5),
        press(Qt::Key_F4),  // out of the grid, to a control that takes the focus
        see([] { return !qobject_cast<QTableView*>(QApplication::focusWidget()); }, "F4"),
        press(Qt::Key_F3),
        at(2, 1),
        see([] { return qobject_cast<QTableView*>(QApplication::focusWidget()) != nullptr; }, "F3"),
        clickButton(1),
    });
    EXPECT_EQ(prompt("18", "TREE"), "1");
    EXPECT_EQ(record("DBH"), "31\n");
}

TEST_F(QtSheet, TheGridShowsWholeRows) {
    does({[] { window()->resize(900, 700); },
          see(
              [] {
                  auto* table = child<QTableView>(1110);
                  int row = table->rowHeight(0);
                  return table->viewport()->height() % row <= 1 && table->viewport()->height() >= 6 * row;
              },
              "whole rows"),
          [] { window()->close(); }});
    EXPECT_EQ(prompt("18", "TREE"), "0");
}

TEST_F(QtSheet, AFaultIsShownAndItsCellIsReady) {
    does({clickButton(1),
          see(
              [] {
                  auto* box = qobject_cast<QMessageBox*>(window());
                  return box && box->windowTitle() == "Error" &&
                         box->text() ==
                             "Attribute DBH must be set!\nRow 2: Diameter at breast height (inches)";
              },
              "box"),
          press(Qt::Key_Enter), type("15"), clickButton(1)});
    EXPECT_EQ(prompt("18", "TREE"), "1");
    EXPECT_EQ(record("DBH"), "15\n");
}

TEST_F(QtSheet, TheFeatureIsChangedInItsList) {
    does({[] { child<QComboBox>(1106)->setFocus(); }, press(Qt::Key_Down),
          see([] { return child<QComboBox>(1106)->currentText() == "POLE"; }, "POLE"),
          see([] { return child<QTableView>(1110)->model()->rowCount() == 11; }, "rows of POLE"),
          clickButton(2)});
    EXPECT_EQ(prompt("18", "TREE"), "0");
}

TEST_F(QtSheet, SettingsAndChooserAreWindowsInEachOther) {
    does({see([] { return window()->windowTitle() == "GIS Settings"; }, "settings"), clickButton(1006),
          see([] { return window()->windowTitle() == "New or Existing File"; }, "chooser"),
          [] { window()->close(); }, see([] { return window()->windowTitle() == "GIS Settings"; }, "back"),
          press(Qt::Key_X, Qt::AltModifier)});
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 7)"), "0");
    EXPECT_NE(read("gps.ini").find("gismdbfile=" + path("template.mdb")), std::string::npos);
}

TEST_F(QtSheet, ATemplateIsMadeByKeyboardAlone) {
    auto titled = [](const char* title) {
        return until([=] { return window() && window()->windowTitle() == title; }, title);
    };
    auto name = [this](const char* file) {
        return Action([=, this] {
            window()->findChild<QLineEdit*>("fileNameEdit")->setText(QString::fromStdString(path(file)));
        });
    };
    does(
        {titled("GIS Settings"), press(Qt::Key_T, Qt::AltModifier), titled("New or Existing File"),
         press(Qt::Key_S, Qt::AltModifier), titled("Save As"), name("made.mdb"), press(Qt::Key_Enter),
         titled("Alert"), press(Qt::Key_Enter),
         see([this] { return child<QLineEdit>(1104)->text().toStdString() == path("made.mdb"); }, "template"),
         // A text is no template; the chooser stays open until it is closed.
         press(Qt::Key_T, Qt::AltModifier), press(Qt::Key_E, Qt::AltModifier), titled("Open"),
         name("gps.ini"), press(Qt::Key_Enter), titled("Error"),
         press(Qt::Key_Enter),  // the engine's words, then the chooser's
         titled("Error"), press(Qt::Key_Enter), titled("New or Existing File"), press(Qt::Key_Escape),
         titled("GIS Settings"), press(Qt::Key_X, Qt::AltModifier)});
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 7)"), "0");
    EXPECT_NE(read("gps.ini").find("gismdbfile=" + path("made.mdb")), std::string::npos);
}

// What is done in the window and what a script does must come to the same.
TEST_F(QtSheet, AWindowAndAScriptLeaveTheSameBehind) {
    does({clickCell(2, 2), type("9"), clickCell(2, 5), press(Qt::Key_F), clickCell(2, 12),
          type("by the gate"), clickButton(1)});
    EXPECT_EQ(prompt("18", "TREE"), "1");
    const std::string columns =
        "PT_ID, GIS_KEY, SPECIES, DBH, HEIGHT, SPREAD, CONDITION, TWICE, NORTHING, EASTING, "
        "ELEVATION, DESCRIPTION, DATE, REMARKS";
    const std::string byWindow = record(columns), linkByWindow = link();
    EXPECT_NE(byWindow.find("|FAIR|"), std::string::npos);

    fs::remove(path("output.mdb"));
    makeEntity();
    ui::setBackend(&ui_);
    answer(134, {cell(2, "9"), cell(5, "FAIR"), cell(12, "by the gate"), click("OK")});
    EXPECT_EQ(prompt("18", "TREE"), "1");
    EXPECT_EQ(record(columns), byWindow);
    EXPECT_EQ(link(), linkByWindow);
    ui::setBackend(&qt_);
}

TEST_F(QtSheet, CtrlZTakesBackWhatWasTypedAndComputed) {
    auto shows = [](int row, const char* text) {
        return see(
            [=] { return child<QTableView>(1110)->model()->index(row - 1, 1).data().toString() == text; },
            text);
    };
    const Action undo = press(Qt::Key_Z, Qt::ControlModifier);
    does({clickCell(2, 3), type("40"), clickCell(2, 2), shows(6, "80"), type("12"), undo,
          see([] { return static_cast<QLineEdit*>(QApplication::focusWidget())->text() == "1"; }, "a letter"),
          undo, see([] { return !qobject_cast<QLineEdit*>(QApplication::focusWidget()); }, "the editing"),
          undo, shows(3, ""), shows(6, "0"), [] { window()->close(); }});
    EXPECT_EQ(prompt("18", "TREE"), "0");
}

TEST_F(QtSheet, DialogsFitASmallScreen) {
    does({fitsSmallScreen(), [] { window()->close(); }});
    EXPECT_EQ(prompt("18", "TREE"), "0");
    does({fitsSmallScreen(), clickButton(1006), fitsSmallScreen(), [] { window()->close(); },
          press(Qt::Key_X, Qt::AltModifier)});
    lisp("(cf:gis_smart_prompting 7)");
}

TEST_F(QtSheet, ClosingTheFrameIsCancelling) {
    does({[] { window()->close(); }});
    EXPECT_EQ(prompt("18", "TREE"), "0");
}

int main(int argc, char** argv) {
    return runQtTests(argc, argv);
}
