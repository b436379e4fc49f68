// Grids and lists of records in real windows: only what is seen is asked for, columns fit what has been seen,
// and mouse and keys reach the model.
#include <QClipboard>
#include <QHeaderView>
#include <QScrollBar>
#include <QTableView>
#include <QToolTip>

#include "platform/ui/backend.h"
#include "platform/ui/qt/dialog_window.h"
#include "platform/ui/qt/qt_backend.h"
#include "tests/platform/ui/qt_person.h"
#include "tests/platform/ui/records.h"

namespace {

constexpr int kGrid = 10, kList = 11;

class Tables : public ui::Dialog {
  public:
    Tables() : ui::Dialog(901, "Tables") {
        auto& grid = add<ui::Grid>(kGrid, 3);
        grid.setColumnHeading(1, "PT_ID");
        records.named = true;
        grid.setSource(&records);
        auto& list = add<ui::List>(kList, true);
        list.setColumns({"Name", "Value"});
        list.setSource(&items);
        add<ui::Button>(ui::kCancel, "Cancel");
        setLayout(ui::column({ui::item(kGrid, 1), ui::item(kList, 1), ui::item(ui::kCancel)}));
        setSize({700, 600});
    }
    Records records{1'000'000};
    Items items{1'000'000};
    std::string happened;

  private:
    void onCellClick(ui::Grid&, ui::CellPosition at) override {
        happened += "click " + std::to_string(at.column) + "," + std::to_string(at.row) + ";";
    }
    bool onCellDoubleClick(ui::Grid&, ui::CellPosition at) override {
        happened += "double;";
        return at.column == 1;
    }
    void onKeyUp(const ui::Key& key, int presses) override {
        happened += ui::keyText(key) + "*" + std::to_string(presses) + "@" +
                    std::to_string(get<ui::Grid>(kGrid).caret()) + ";";
    }
    void onDoubleClick(ui::Control& control) override {
        happened += "record " + std::to_string(static_cast<ui::List&>(control).selected()) + ";";
    }
};

class QtTables : public testing::Test, protected QtPerson {
  protected:
    void SetUp() override { ui::setBackend(&backend_); }
    void TearDown() override {
        EXPECT_TRUE(finished()) << "not every action was reached";
        ui::setBackend(nullptr);
    }
    static QTableView* table(int id) { return child<QTableView>(id); }
    static QRect cell(int id, int column, int row) {
        return table(id)->visualRect(table(id)->model()->index(row, column));
    }
    static Action clickAt(int id, int column, int row) {
        return [=] {
            QTest::mouseClick(table(id)->viewport(), Qt::LeftButton, {}, cell(id, column, row).center());
        };
    }
    static Action doubleClickAt(int id, int column, int row) {
        return [=] {
            QPoint at = cell(id, column, row).center();
            QTest::mouseClick(table(id)->viewport(), Qt::LeftButton, {}, at);
            QTest::mouseDClick(table(id)->viewport(), Qt::LeftButton, {}, at);
        };
    }
    static Action close() {
        return [] { window()->close(); };
    }
    // The red frame, with the reason beside it.
    static Action refused(std::string reason) {
        return see(
            [=] {
                return window()->findChild<QWidget*>("refusal")->isVisible() &&
                       QToolTip::text().toStdString().find(reason) != std::string::npos;
            },
            reason);
    }
    static Action taken() {
        return see([] { return !window()->findChild<QWidget*>("refusal")->isVisible(); }, "taken");
    }
    static Action paste(std::string text) {
        return [=] {
            QApplication::clipboard()->setText(QString::fromStdString(text));
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_V, Qt::ControlModifier);
        };
    }

    ui::QtBackend backend_;
    Tables tables_;
};

}  // namespace

TEST_F(QtTables, OnlyWhatIsSeenIsAskedFor) {
    ui::Grid& grid = tables_.get<ui::Grid>(kGrid);
    size_t opened = 0;
    does(
        {see([] { return cell(kGrid, 0, 0).isValid(); }, "grid"),
         [&] { opened = tables_.records.asked.size(); }, [&] { grid.setActive(2, 700'000); },
         see([] { return table(kGrid)->rowAt(5) > 699'900; }, "scrolled"),
         see([] { return table(kGrid)->model()->headerData(699'999, Qt::Vertical).toString() == "-700000-"; },
             "row heading"),
         [&] {
             tables_.records.asked.clear();
             grid.setText(3, 700'000, "changed");
         },
         // Neighbours that the cell's box touches may be painted with it.
         see([&] { return tables_.records.asked.contains(700'000) && tables_.records.asked.size() <= 3; },
             "one cell"),
         close()});
    tables_.runModal();
    EXPECT_GT(opened, 5u);
    EXPECT_LT(opened, 100u);
    EXPECT_GT(tables_.items.asked.size(), 5u);
    EXPECT_LT(tables_.items.asked.size(), 100u);
}

TEST_F(QtTables, ColumnsFitWhatHasBeenSeenAndStay) {
    ui::Grid& grid = tables_.get<ui::Grid>(kGrid);
    const std::string wide(60, 'W');
    tables_.records.setText(1, 500, wide);
    int before = 0, widened = 0, second = 0;
    does({[&] { before = table(kGrid)->columnWidth(0); }, [&] { grid.setActive(1, 500); },
          [&] { widened = table(kGrid)->columnWidth(0); },
          see([&] { return widened >= static_cast<QAbstractItemView*>(table(kGrid))->sizeHintForColumn(0); },
              "the text is seen whole"),
          [&] { grid.setText(1, 500, "narrow"); }, [&] { grid.setActive(1, 1); },
          see([&] { return table(kGrid)->columnWidth(0) == widened; }, "never narrower"),
          [&] {
              second = table(kGrid)->columnWidth(1);
              grid.setText(2, 700'000, wide + wide);
          },
          see([&] { return table(kGrid)->columnWidth(1) == second; }, "a cell out of sight"),
          [&] { grid.setText(2, 1, wide + wide); },
          see([&] { return table(kGrid)->columnWidth(1) > widened; }, "a cell in sight"),
          // Another filling begins anew.
          [&] { grid.setSource(&tables_.records); },
          see([&] { return table(kGrid)->columnWidth(0) == before; }, "anew"), close()});
    tables_.runModal();
    EXPECT_GT(widened, 5 * before);
}

TEST_F(QtTables, ClicksAndKeysAreTold) {
    does({clickAt(kGrid, 2, 3), doubleClickAt(kGrid, 0, 4),
          see([] { return !qobject_cast<QLineEdit*>(QApplication::focusWidget()); }, "dealt with"),
          doubleClickAt(kGrid, 1, 0),
          see([] { return qobject_cast<QLineEdit*>(QApplication::focusWidget()); }, "editing"),
          press(Qt::Key_End), press(Qt::Key_Left), press(Qt::Key_Left), press(Qt::Key_Left), type("7"),
          press(Qt::Key_Escape), close()});
    tables_.runModal();
    EXPECT_EQ(tables_.happened,
              "click 3,4;click 1,5;double;click 2,1;double;End*1@3;Left*1@2;Left*2@1;Left*3@0;7*1@1;");
    EXPECT_EQ(tables_.get<ui::Grid>(kGrid).text(2, 1), "1.2");
}

TEST_F(QtTables, AMarkedRowIsMarkedAsAWhole) {
    tables_.get<ui::Grid>(kGrid).setMarksRows(true);
    auto marked = [](int row) {
        int cells = 0;
        for (int column = 0; column < 3; ++column)
            cells += table(kGrid)->model()->index(row, column).data(Qt::BackgroundRole).isValid();
        return cells;
    };
    does({clickAt(kGrid, 1, 2), see([=] { return marked(2) == 3 && marked(0) == 0; }, "row"),
          press(Qt::Key_Down), see([=] { return marked(3) == 3 && marked(2) == 0; }, "next row"), close()});
    tables_.runModal();
}

TEST_F(QtTables, HeadingsAndTheSelectionLookAsTheyAreTold) {
    ui::Dialog dialog(902, "Own cells");
    auto& grid = dialog.add<ui::Grid>(kGrid, 2, 3);
    dialog.setLayout(ui::column({ui::item(kGrid, 1)}));
    grid.setMarksRows(true);
    grid.setSelectionColours(0x204060, 0xF0F0A0);
    int narrow = 0;
    does({until([] { return table(kGrid) != nullptr; }, "grid"),
          [&] {
              narrow = table(kGrid)->verticalHeader()->width();
              EXPECT_FALSE(table(kGrid)->horizontalHeader()->isVisible());
              EXPECT_EQ(table(kGrid)->model()->headerData(1, Qt::Vertical), 2);
              const QModelIndex marked = table(kGrid)->model()->index(0, 1);
              EXPECT_EQ(marked.data(Qt::BackgroundRole).value<QColor>(), QColor(0x20, 0x40, 0x60));
              EXPECT_EQ(marked.data(Qt::ForegroundRole).value<QColor>(), QColor(0xF0, 0xF0, 0xA0));
              grid.setRowHeading(2, "-Note- of a tree");
              grid.setColumnHeading(1, "HEIGHT");
          },
          [&] {
              EXPECT_EQ(table(kGrid)->model()->headerData(1, Qt::Vertical).toString(), "-Note- of a tree");
              EXPECT_GT(table(kGrid)->verticalHeader()->width(), narrow + 30) << "the heading has its room";
              EXPECT_TRUE(table(kGrid)->horizontalHeader()->isVisible());
              grid.setSelectionColours(ui::kOwnColour, ui::kOwnColour);
              EXPECT_EQ(table(kGrid)->model()->index(0, 1).data(Qt::BackgroundRole).value<QColor>(),
                        table(kGrid)->palette().color(QPalette::Highlight));
          },
          press(Qt::Key_Escape)});
    dialog.runModal();
}

TEST_F(QtTables, RecordsOfAListAreChosen) {
    ui::List& list = tables_.get<ui::List>(kList);
    does({see(
              [] {
                  return table(kList)->model()->rowCount() == 1'000'000 &&
                         table(kList)->model()->columnCount() == 2;
              },
              "records"),
          see([] { return table(kList)->model()->headerData(1, Qt::Horizontal).toString() == "Value"; },
              "heading"),
          clickAt(kList, 0, 1), clickAt(kList, 1, 3), clickAt(kList, 0, 1), press(Qt::Key_Down),
          [&] { list.selectItem(999'999, true); },
          see([] { return table(kList)->rowAt(5) > 999'900; }, "scrolled"), doubleClickAt(kList, 0, 999'998),
          [&] {
              tables_.items.number = 5;
              list.sourceChanged();
          },
          see([] { return table(kList)->model()->rowCount() == 5; }, "fewer"), clickAt(kList, 0, 4),
          close()});
    tables_.runModal();
    EXPECT_EQ(list.selection(), (std::vector<int>{4}));
    EXPECT_EQ(tables_.happened, "Down*1@0;record 999998;");
}

TEST_F(QtTables, WhatACellDoesNotTakeIsRefusedWithASign) {
    ui::Grid& grid = tables_.get<ui::Grid>(kGrid);
    grid.setType(2, 1, ui::CellType::edit(ui::CharacterSet::Numeric));
    const std::string longest(255, 'x');
    auto shows = [](std::string text) {
        return see(
            [=] {
                auto* line = qobject_cast<QLineEdit*>(QApplication::focusWidget());
                return line && line->text().toStdString() == text;
            },
            text);
    };
    does({clickAt(kGrid, 1, 0),
          type("12,5"),
          shows("12.5"),
          taken(),
          press(Qt::Key_Left),
          type("x"),
          refused("without \"x\""),
          shows("12.5"),
          type("e"),
          taken(),
          shows("12.e5"),
          paste("7 m"),
          refused("without \" \""),
          shows("12.e5"),
          paste("-"),
          shows("12.e-5"),
          clickAt(kGrid, 2, 0),
          taken(),
          type("a"),
          paste(longest),
          refused("holds 255 characters, and this text has 256"),
          shows("a"),
          press(Qt::Key_Backspace),
          paste(longest),
          taken(),
          type("y"),
          refused("this text has 256"),
          close()});
    tables_.runModal();
    EXPECT_EQ(grid.text(2, 1), "12.e-5");
    EXPECT_EQ(grid.text(3, 1), longest);
}

TEST_F(QtTables, AListStandsOpenWhileItsCellIsEdited) {
    ui::Grid& grid = tables_.get<ui::Grid>(kGrid);
    grid.setColumnType(1, ui::CellType::dropDown("100\t150\t200"));
    grid.setText(1, 1, "150");
    auto open = [](std::string marked) {
        return see(
            [=] {
                auto* list = qobject_cast<QAbstractItemView*>(QApplication::focusWidget());
                return QApplication::activePopupWidget() && list &&
                       list->currentIndex().data().toString().toStdString() == marked;
            },
            "list at " + marked);
    };
    does({clickAt(kGrid, 0, 0),
          [&] { grid.setEditing(true); },
          open("150"),
          type("1"),
          open("100"),
          type("."),
          refused("begins with \"1.\""),
          type("2"),
          open("150"),
          refused("begins with \"1.2\""),
          press(Qt::Key_Tab),
          see([&] { return !grid.editing() && grid.text(1, 1) == "150"; }, "kept"),
          clickAt(kGrid, 0, 0),
          type("2"),
          open("200"),
          press(Qt::Key_Up),
          open("150"),
          press(Qt::Key_Home),
          open("100"),
          press(Qt::Key_Escape),
          see([&] { return grid.text(1, 1) == "150"; }, "cancelled"),
          type("2"),
          clickAt(kGrid, 2, 2),
          see([&] { return grid.text(1, 1) == "200"; }, "left"),
          close()});
    tables_.runModal();
}

namespace {

// Records of which some texts are long, in a grid with frozen columns.
class LongRecords : public Records {
  public:
    LongRecords() : Records(1000) {}
    std::string text(int column, int row) const override {
        if (column == 4 && row == 3) return "one two three four five six seven eight nine ten eleven twelve";
        if (column == 2 && row == 5) return "two\nlines";
        return Records::text(column, row);
    }
    const ui::CellType* type(int column, int row) const override {
        static const ui::CellType kFixed = ui::CellType::fixed();
        return column == 2 && row == 5 ? &kFixed : nullptr;
    }
};

class Frozen : public ui::Dialog {
  public:
    Frozen() : ui::Dialog(902, "Frozen") {
        auto& grid = add<ui::Grid>(kGrid, 12);
        for (int column = 1; column <= 12; ++column)
            grid.setColumnHeading(column, "FIELD " + std::to_string(column));
        grid.setFrozenColumns(2);
        grid.setWidestColumn(20);
        grid.setSelectsCells(true);
        grid.setSource(&records);
        add<ui::Button>(ui::kCancel, "Cancel");
        setLayout(ui::column({ui::item(kGrid, 1), ui::item(ui::kCancel)}));
        setSize({500, 400});
    }
    LongRecords records;
    std::string happened;

  private:
    void onHeadingClick(ui::Grid&, int column) override { happened += std::to_string(column) + ";"; }
};

}  // namespace

TEST_F(QtTables, FrozenColumnsStayAndLongTextsGrowTheirRows) {
    Frozen frozen;
    ui::Grid& grid = frozen.get<ui::Grid>(kGrid);
    auto left = [](int column) { return cell(kGrid, column, 0).left(); };
    does({see([] { return table(kGrid)->rowHeight(2) > 2 * table(kGrid)->rowHeight(0); },
              "a long text is broken"),
          see([] { return table(kGrid)->rowHeight(4) > table(kGrid)->rowHeight(0); }, "line ends are kept"),
          see([&] { return grid.pageRows() > 3; }, "the rows of a page are told"),
          [] { table(kGrid)->horizontalScrollBar()->setValue(300); },
          see([=] { return left(0) == 0 && left(1) == table(kGrid)->columnWidth(0); }, "they stay"),
          [] { savePicture(); },
          [] { QTest::mouseClick(table(kGrid)->viewport(), Qt::LeftButton, {}, QPoint(5, 5)); },
          see(
              [&] {
                  return grid.active() == ui::CellPosition{1, 1};
              },
              "a click finds them"),
          see([] { return table(kGrid)->horizontalScrollBar()->value() == 300; }, "and nothing is scrolled"),
          [] {
              QWidget* heading = table(kGrid)->horizontalHeader()->viewport();
              QTest::mouseClick(heading, Qt::LeftButton, {}, QPoint(5, 5));
          },
          see([&] { return frozen.happened == "1;"; }, "so does one on a heading"),
          [&] { grid.setActive(3, 1); },
          see([=] { return left(2) >= table(kGrid)->columnWidth(0) + table(kGrid)->columnWidth(1); },
              "the next column comes out from below them"),
          [] {
              QTest::mouseClick(table(kGrid)->viewport(), Qt::LeftButton, Qt::ShiftModifier,
                                cell(kGrid, 3, 1).center());
          },
          see([&] { return grid.selection().columns() == 2 && grid.selection().rows() == 2; },
              "Shift takes cells"),
          press(Qt::Key_C, Qt::ControlModifier),
          see([] { return QApplication::clipboard()->text() == "1.3\t1.4\n2.3\t2.4\n"; }, "copied"),
          close()});
    frozen.runModal();
}
