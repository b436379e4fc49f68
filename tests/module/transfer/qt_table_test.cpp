// The table dialog in a real window. With NORVANE_PICTURES set to a folder, pictures of it are put there.
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QTableView>

#include "module/transfer/table_dialog.h"
#include "platform/ui/qt/qt_backend.h"
#include "tests/module/transfer/table_fixture.h"
#include "tests/platform/ui/qt_person.h"

using namespace norvane;

class QtTable : public TableTest, protected QtPerson {
  protected:
    void SetUp() override {
        TableTest::SetUp();
        ui::setBackend(&qt_);
    }
    void TearDown() override {
        EXPECT_TRUE(finished()) << "not every action was reached";
        TableTest::TearDown();
    }
    static Action title(const char* shown) {
        return until([=] { return window() && window()->windowTitle() == shown; }, shown);
    }
    // A message box that has the keyboard.
    static Action box(const char* begin) {
        return until(
            [=] {
                auto* shown = qobject_cast<QMessageBox*>(window());
                if (shown && QApplication::activeWindow() != shown) shown->activateWindow();
                return shown && shown->text().startsWith(begin) && QApplication::focusWidget() &&
                       QApplication::focusWidget()->window() == shown;
            },
            begin);
    }
    static QTableView* grid() { return child<QTableView>(1001); }
    static std::string text(int column, int row) {
        return grid()->model()->index(row - 1, column - 1).data().toString().toStdString();
    }
    static Action active(int column, int row) {
        return until(
            [=] {
                return grid() && grid()->currentIndex().column() == column - 1 &&
                       grid()->currentIndex().row() == row - 1;
            },
            std::to_string(column) + "," + std::to_string(row));
    }
    static Action picture(const char* name) {
        return [=] {
            if (const char* folder = getenv("NORVANE_PICTURES"))
                window()->grab().save(QString("%1/%2.png").arg(folder, name));
        };
    }
    std::string open(const std::string& file, const std::string& table) {
        return lisp("(gis:edit-table " + quoted(file) + " \"" + table + "\")");
    }

    ui::QtBackend qt_;
};

TEST_F(QtTable, CellsAreChangedAndSavedByKeyboardAlone) {
    makePoles("poles.mdb");
    does({title("Preview/Edit Values from Table  -  POLES"),
          focusOn(1001),
          active(1, 1),
          see([] { return !child<QPushButton>(1)->isEnabled(); }, "nothing to be saved yet"),
          press(Qt::Key_Right),
          press(Qt::Key_Right),
          active(2, 1),
          press(Qt::Key_Return),
          active(3, 1),
          press(Qt::Key_Left),
          press(Qt::Key_Left),
          active(3, 1),
          press(Qt::Key_Left),
          active(2, 1),
          press(Qt::Key_Tab),
          active(3, 1),
          type("7.25"),
          press(Qt::Key_Return),
          active(4, 1),
          press(Qt::Key_Down),
          active(4, 2),
          press(Qt::Key_Tab),
          active(5, 2),
          picture("table"),
          press(Qt::Key_Down),
          press(Qt::Key_Return),
          active(6, 2),
          press(Qt::Key_S, Qt::AltModifier),
          box("Are you sure"),
          press(Qt::Key_Y, Qt::AltModifier),
          box("Process done"),
          press(Qt::Key_Return),
          title("Preview/Edit Values from Table  -  POLES"),
          focusOn(1001),
          press(Qt::Key_Escape)});
    EXPECT_EQ(open("poles.mdb", "POLES"), "2");
    EXPECT_EQ(sqlite("poles.mdb", "SELECT HEIGHT FROM POLES WHERE PT_ID = 'P1'"), "7.25\n");
    EXPECT_EQ(sqlite("poles.mdb", "SELECT LIT FROM POLES WHERE PT_ID = 'P2'"), "0\n");
}

TEST_F(QtTable, HeldDownAKeyGoesOnAndPagesFollowTheWindow) {
    makeList("list.sqlite", 1000);
    const Action holdDown([] {
        QWidget* target = QApplication::focusWidget();
        for (int i = 0; i < 5; ++i) {
            QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier, "", i > 0);
            QApplication::sendEvent(target, &down);
        }
        QKeyEvent up(QEvent::KeyRelease, Qt::Key_Down, Qt::NoModifier);
        QApplication::sendEvent(target, &up);
    });
    int page = 0;
    does({focusOn(1001),
          holdDown,
          active(1, 6),
          [&] { page = grid()->viewport()->height() / grid()->rowHeight(0); },
          press(Qt::Key_PageDown),
          see([&] { return page > 3 && grid()->currentIndex().row() == 5 + page; }, "a page further"),
          press(Qt::Key_End, Qt::ControlModifier),
          active(3, 1000),
          press(Qt::Key_Home, Qt::ControlModifier),
          active(1, 1),
          press(Qt::Key_F, Qt::ControlModifier),
          focusOn(1902),
          type("name 3"),
          press(Qt::Key_Return),
          active(3, 3),
          focusOn(1001),
          press(Qt::Key_F3),
          active(3, 10),
          [] {
              QHeaderView* header = grid()->horizontalHeader();
              QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                                QPoint(header->sectionViewportPosition(2) + 5, 5));
          },
          see([] { return text(3, 1) == "name 0"; }, "sorted"),
          see([] { return grid()->horizontalHeader()->isSortIndicatorShown(); }, "and marked"),
          press(Qt::Key_F4),
          focusOn(1902),
          press(Qt::Key_Escape)});
    EXPECT_EQ(open("list.sqlite", "LIST"), "0");
}

TEST_F(QtTable, CellsAreCopiedToAndFromOtherPrograms) {
    makeList("list.sqlite", 3);
    does({focusOn(1001), press(Qt::Key_Down, Qt::ShiftModifier), press(Qt::Key_C, Qt::ControlModifier),
          see([] { return QApplication::clipboard()->text() == "1\n2\n"; }, "copied"),
          [] { QApplication::clipboard()->setText("oak\nelm\n"); }, press(Qt::Key_End), active(3, 1),
          press(Qt::Key_V, Qt::ControlModifier), picture("pasted"),
          see([] { return text(3, 2) == "elm"; }, "pasted"), press(Qt::Key_Z, Qt::ControlModifier),
          see([] { return text(3, 2) == "name 2"; }, "taken back"), press(Qt::Key_Q, Qt::AltModifier),
          box("Would you like"), press(Qt::Key_N, Qt::AltModifier)});
    EXPECT_EQ(open("list.sqlite", "LIST"), "0");
}

TEST_F(QtTable, ThePreviewOfNotesLocksRows) {
    makeList("list.sqlite", 3);
    const std::vector<NoteRecord> notes = {
        {{"PT_ID", "6", "2"}, {"NAME", "6", "OAK"}, {"GIRTH", "4", "1.25"}},
        {{"PT_ID", "6", "9"}, {"NAME", "6", "ELM"}, {"NOTES", "6", std::string(150, 'n') + " and more"}}};
    does({title("Preview/Edit Values for Feature  -  LIST"), focusOn(1001), active(3, 1),
          [] {
              QTest::mouseClick(grid()->viewport(), Qt::LeftButton, {},
                                grid()->visualRect(grid()->model()->index(2, 0)).center());
          },
          active(3, 3), picture("notes"), press(Qt::Key_S, Qt::AltModifier), box("Are you sure"),
          press(Qt::Key_Y, Qt::AltModifier), box("Process done"), press(Qt::Key_Return), focusOn(1001),
          press(Qt::Key_L, Qt::AltModifier), press(Qt::Key_Escape)});
    EXPECT_EQ(PreviewRecords(path("list.sqlite"), "LIST", notes), 1U);
    EXPECT_EQ(sqlite("list.sqlite", "SELECT NAME, GIRTH FROM LIST WHERE PT_ID = '2'"), "OAK|1.25\n");
}

TEST_F(QtTable, WhatIsMarkedCanBeReadInADarkTheme) {
    makeList("list.sqlite", 3);
    const QPalette light = QApplication::palette();
    QPalette dark(QColor(45, 45, 48), QColor(45, 45, 48));
    dark.setColor(QPalette::Base, QColor(30, 30, 30));
    for (QPalette::ColorRole role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        dark.setColor(role, Qt::white);
    QApplication::setPalette(dark);
    const auto contrast = [](int column, int row) {
        const QModelIndex cell = grid()->model()->index(row - 1, column - 1);
        auto colour = [&](int role, QPalette::ColorRole otherwise) {
            const QVariant own = cell.data(role);
            return own.isValid() ? own.value<QBrush>().color() : grid()->palette().color(otherwise);
        };
        return std::abs(colour(Qt::BackgroundRole, QPalette::Base).lightness() -
                        colour(Qt::ForegroundRole, QPalette::Text).lightness());
    };
    const std::vector<NoteRecord> notes = {{{"PT_ID", "6", "2"}, {"NAME", "6", "OAK"}},
                                           {{"PT_ID", "6", "9"}, {"NAME", "6", "ELM"}}};
    does({focusOn(1001), type("ASH"), press(Qt::Key_Return), press(Qt::Key_L, Qt::AltModifier),
          picture("dark"),
          see([&] { return contrast(3, 1) > 80 && contrast(3, 2) > 80 && contrast(3, 3) > 80; },
              "it can be read"),
          press(Qt::Key_Escape), box("Would you like"), press(Qt::Key_N, Qt::AltModifier)});
    PreviewRecords(path("list.sqlite"), "LIST", notes);
    QApplication::setPalette(light);
}

TEST_F(QtTable, TheDialogsFitASmallScreen) {
    makePoles("poles.mdb");
    does({title("Choose a Table"), fitsSmallScreen(), press(Qt::Key_Return),
          title("Preview/Edit Values from Table  -  POLES"), fitsSmallScreen(), press(Qt::Key_Escape)});
    EXPECT_EQ(lisp("(gis:edit-table " + quoted("poles.mdb") + ")"), "0");
}

int main(int argc, char** argv) {
    return runQtTests(argc, argv);
}
