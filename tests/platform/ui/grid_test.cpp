// Grids and lists: rows and cells that move together, sources that are asked for what is seen only, what the
// view is told, and what a person does in them.
#include <gtest/gtest.h>

#include <set>

#include "platform/ui/backend.h"
#include "platform/ui/cell_block.h"
#include "tests/platform/ui/checked_script.h"
#include "tests/platform/ui/records.h"

using ui::CellPosition;
using ui::Step;

namespace {

// A dialog with a table and a list of a million records, which writes down what happens in it.
class Tables : public ui::Dialog {
  public:
    static constexpr int kGrid = 10, kList = 11;
    Tables() : ui::Dialog(901, "Tables") {
        add<ui::Grid>(kGrid, 3);
        add<ui::List>(kList);
        add<ui::Button>(ui::kCancel, "Cancel");
        grid().setColumnHeading(1, "PT_ID");
        grid().setColumnHeading(3, "HEIGHT");
        grid().setSource(&records);
        grid().setColumnType(2, ui::CellType::dropDown("Yes\tNo"));
        list().setColumns({"Name", "Value"});
        list().setSource(&items);
    }
    ui::Grid& grid() { return get<ui::Grid>(kGrid); }
    ui::List& list() { return get<ui::List>(kList); }
    Records records{1'000'000};
    Items items{1'000'000};
    std::string happened;

  private:
    void note(const char* what, CellPosition at) {
        happened += what + std::to_string(at.column) + "," + std::to_string(at.row) + ";";
    }
    void onCellChange(ui::Grid&, CellPosition at) override { note("change ", at); }
    void onCellClick(ui::Grid&, CellPosition at) override { note("click ", at); }
    void onHeadingClick(ui::Grid&, int column) override {
        happened += "heading " + std::to_string(column) + ";";
    }
    bool onCellDoubleClick(ui::Grid&, CellPosition at) override {
        note("double ", at);
        return at.column == 1;
    }
    bool onKey(const ui::Key& key) override { return key.is("F6"); }
    void onKeyUp(const ui::Key& key, int presses) override {
        happened +=
            ui::keyText(key) + "*" + std::to_string(presses) + "@" + std::to_string(grid().caret()) + ";";
    }
    void onSelection(ui::Control& control) override {
        happened += "selection " + std::to_string(static_cast<ui::List&>(control).selected()) + ";";
    }
};

class TablesTest : public testing::Test {
  protected:
    void SetUp() override { ui::setBackend(&backend_); }
    void TearDown() override { ui::setBackend(nullptr); }
    void run(std::vector<Step> steps) {
        steps.push_back({Step::Kind::Click, "Cancel"});
        backend_.answer(901, std::move(steps));
        tables_.runModal();
    }
    static Step key(std::string name) { return {Step::Kind::Key, "", std::move(name)}; }
    static Step focus(std::string control) { return {Step::Kind::Focus, std::move(control)}; }
    static Step at(Step::Kind kind, int column, int row) { return {kind, "", "", true, column, row}; }
    std::string log() const {
        std::string all;
        for (const std::string& line : backend_.log()) all += line + "\n";
        return all;
    }

    CheckedScript backend_;
    Tables tables_;
};

// Which cells a view is told of; "all" for the whole control.
class Told : public ui::DialogView {
  public:
    void controlChanged(ui::Control&) override { cells_ += "all;"; }
    void cellChanged(ui::Grid&, CellPosition at) override {
        cells_ += std::to_string(at.column) + "," + std::to_string(at.row) + ";";
    }
    void focusChanged(int) override {}
    void titleChanged() override {}
    void ended() override {}
    std::string take() { return std::exchange(cells_, {}); }

  private:
    std::string cells_;
};

}  // namespace

TEST(Grid, RowsAndTypesMoveTogether) {
    ui::Grid grid(1, 2, 2);
    grid.setText(1, 1, "first");
    grid.setText(1, 2, "second");
    grid.setType(2, 2, ui::CellType::checkBox("No image!"));
    grid.insertRow(2);
    EXPECT_EQ(grid.text(1, 3), "second");
    EXPECT_EQ(grid.type(2, 3).kind, ui::CellKind::CheckBox);
    grid.swapRows(1, 3);
    EXPECT_EQ(grid.text(1, 3), "first");
    EXPECT_EQ(grid.type(2, 1).label, "No image!");
    grid.removeRow(2);
    EXPECT_EQ(grid.rows(), 2);
    grid.setColumns(3);
    EXPECT_EQ(grid.text(1, 2), "first");
    grid.clearRows(1, 2);
    EXPECT_EQ(grid.text(1, 2), "");
    // Nothing outside the grid can be reached.
    grid.setText(9, 9, "x");
    grid.setActive(0, 7);
    EXPECT_EQ(grid.text(9, 9), "");
    EXPECT_EQ(grid.active().row, 1);
}

TEST(Grid, HeadingsStandInRowAndColumnNought) {
    ui::Grid grid(1, 2, 3);
    grid.setText(2, 0, "HEIGHT");
    grid.setText(0, 1, "-Mdb-");
    grid.setText(0, 3, "-Note-");
    EXPECT_EQ(grid.columnHeading(2), "HEIGHT");
    EXPECT_EQ(grid.text(2, 0), "HEIGHT");
    EXPECT_EQ(grid.text(0, 3), "-Note-");
    EXPECT_EQ(grid.rowHeading(2), "");
    // A heading goes where its row goes, and stays when the row is emptied.
    grid.setText(1, 3, "oak");
    int changes = grid.headingChanges();
    grid.swapRows(2, 3);
    grid.insertRow(1);
    EXPECT_GT(grid.headingChanges(), changes);
    EXPECT_EQ(grid.rowHeading(1) + grid.rowHeading(2) + grid.rowHeading(3), "-Mdb--Note-");
    grid.clearRows(3, 3);
    EXPECT_EQ(grid.text(0, 3) + grid.text(1, 3), "-Note-");
    grid.rememberForUndo();
    grid.removeRow(3);
    EXPECT_EQ(grid.rowHeading(3), "");
    EXPECT_TRUE(grid.undo());
    EXPECT_EQ(grid.rowHeading(3), "-Note-");
    // There is none outside the grid.
    grid.setText(0, 5, "none"), grid.setText(3, 0, "none"), grid.setText(0, 0, "corner");
    EXPECT_EQ(grid.text(0, 5) + grid.text(3, 0), "");
    EXPECT_EQ(grid.text(0, 0), "corner");
}

TEST(Grid, WidthsAreMeasuredInTheGridsFont) {
    ui::Grid grid(1, 2, 1);
    grid.setFont({"Courier New", 16, 8, 400});
    grid.setColumnWidthInCharacters(1, 16.0);
    EXPECT_EQ(grid.columnWidth(1), 128);
    grid.setText(1, 1, "\xC3\xA9tage");  // five characters in six bytes
    EXPECT_DOUBLE_EQ(grid.neededWidth(1, 1), 5.0);
}

TEST(Grid, ACellDiffersFromItsColumnUntilTheColumnIsGivenATypeAnew) {
    ui::Grid grid(1, 2, 3);
    grid.setColumnType(2, ui::CellType::fixed());
    grid.setType(2, 1, ui::CellType::checkBox("Sure"));
    grid.setColours(2, 1, 0xFF0000, 0x0000FF);
    grid.setRows(4);
    EXPECT_EQ(grid.type(2, 4).kind, ui::CellKind::Static);  // a row to come
    EXPECT_EQ(grid.type(1, 4).kind, ui::CellKind::Edit);
    grid.insertRow(1);
    EXPECT_EQ(grid.type(2, 1).kind, ui::CellKind::Static);
    EXPECT_EQ(grid.type(2, 2).label, "Sure");
    EXPECT_EQ(grid.cell(2, 2).background, 0xFF0000);
    grid.swapRows(2, 5);
    grid.removeRow(1);
    EXPECT_EQ(grid.type(2, 4).label, "Sure");
    EXPECT_EQ(grid.colours(2, 4).foreground, 0x0000FF);
    EXPECT_EQ(grid.colours(2, 1).foreground, ui::kOwnColour);
    grid.clearRows(4, 9);
    EXPECT_EQ(grid.type(2, 4).kind, ui::CellKind::Static);
    grid.setType(2, 3, ui::CellType::edit());
    grid.setColumnType(2, ui::CellType::dropDown("A"));
    EXPECT_EQ(grid.type(2, 3).kind, ui::CellKind::DropDown);
    // What has been of rows and columns that have gone is not found in their successors.
    grid.setType(2, 4, ui::CellType::edit());
    grid.setRows(3);
    grid.setRows(4);
    EXPECT_EQ(grid.type(2, 4).kind, ui::CellKind::DropDown);
    grid.setText(2, 1, "gone");
    grid.setColumns(1);
    grid.setColumns(2);
    EXPECT_EQ(grid.text(2, 1), "");
    EXPECT_EQ(grid.type(2, 1).kind, ui::CellKind::Edit);
}

TEST_F(TablesTest, TheViewIsToldOfTheCellsThatHaveChanged) {
    Told told;
    ui::Grid& grid = tables_.grid();
    tables_.setView(&told);
    grid.setText(3, 500'000, "x");
    grid.setText(3, 500'000, "x");
    EXPECT_EQ(told.take(), "3,500000;");
    grid.setColours(1, 7, 0, 0);
    grid.setType(1, 7, ui::CellType::fixed());
    grid.setActive(2, 9);
    EXPECT_EQ(told.take(), "1,7;1,7;1,1;2,9;");
    grid.setActive(3, 9);
    told.take();
    grid.setEditing(true);
    tables_.userEdit(grid, "new");
    grid.setEditing(false);
    EXPECT_EQ(told.take(), "3,9;3,9;3,9;");
    grid.cellChanged(2, 12);
    grid.cellChanged(2, 1'000'001);
    EXPECT_EQ(told.take(), "2,12;");
    grid.setColumnWidth(1, grid.columnWidth(1));  // nothing new
    EXPECT_EQ(told.take(), "");
    grid.setRedraw(false);
    grid.setText(1, 1, "y");
    EXPECT_EQ(told.take(), "");
    grid.setRedraw(true);
    EXPECT_EQ(told.take(), "all;");
    tables_.setView(nullptr);
}

TEST_F(TablesTest, ASourceMayKeepWhatItWants) {
    tables_.records.refused = "no";
    run({{Step::Kind::Cell, "", "no", true, 3, 1}, {Step::Kind::Cell, "", "yes", true, 3, 1}});
    EXPECT_EQ(tables_.grid().text(3, 1), "yes");
    // Refused, it is no change.
    EXPECT_EQ(tables_.happened, "click 3,1;click 3,1;change 3,1;");
}

TEST_F(TablesTest, AMillionRowsArePrintedAsTheRowsAboutTheActiveOne) {
    tables_.records.named = true;
    tables_.grid().setActive(3, 500'000);
    tables_.list().select(999'998);
    tables_.records.asked.clear();
    run({{Step::Kind::Show}});
    EXPECT_NE(log().find("grid 3 x 1000000, at (3, 500000)\n"
                         "    ... 499989 more before\n"
                         "             PT_ID                        HEIGHT\n"
                         "    -499990- '499990.1' 499990.2 {Yes|No} '499990.3'\n"),
              std::string::npos)
        << log();
    EXPECT_NE(log().find(" '500010.3'\n    ... 499990 more behind\n"), std::string::npos);
    EXPECT_NE(log().find("list\n    ... 999988 more before\n"
                         "      Name   Value\n"
                         "      999988 value 999988\n"),
              std::string::npos);
    EXPECT_NE(log().find("\n    > 999998 value 999998\n      999999 value 999999\n  2 button"),
              std::string::npos);
    EXPECT_EQ(tables_.records.asked.size(), 21u);
}

TEST_F(TablesTest, RowsNearAnEndArePrintedUpToIt) {
    run({{Step::Kind::Show}});
    EXPECT_NE(log().find("\n    '1.1' "), std::string::npos);
    EXPECT_NE(log().find(" '11.3'\n    ... 999989 more behind\n"), std::string::npos);
    // Forty rows are not many.
    tables_.records.count = 40;
    tables_.grid().sourceChanged();
    tables_.grid().setMarksRows(true);
    backend_.clearLog();
    run({{Step::Kind::Show}});
    EXPECT_NE(log().find("\n  > '1.1' "), std::string::npos) << log();
    EXPECT_NE(log().find("\n    '40.1'"), std::string::npos);
    EXPECT_EQ(log().find("more behind\n* 11"), std::string::npos);
}

TEST_F(TablesTest, RowsThatGoTakeTheActiveCellAlong) {
    ui::Grid& grid = tables_.grid();
    grid.setActive(2, 900);
    grid.setEditing(true);
    tables_.records.count = 800;
    grid.sourceChanged();
    EXPECT_EQ(grid.active(), (CellPosition{1, 1}));
    EXPECT_FALSE(grid.editing());
    EXPECT_EQ(grid.text(1, 801), "");
    grid.setSource(nullptr);
    EXPECT_EQ(grid.rows(), 0);
    run({focus("10"), key("x")});
    backend_.expectUndone("dialog 901 refused (key \"x\"): there is no such cell");
}

TEST_F(TablesTest, CellsAreClickedOnceAndTwice) {
    run({at(Step::Kind::ClickCell, 3, 4), at(Step::Kind::DoubleClickCell, 1, 5),
         at(Step::Kind::DoubleClickCell, 3, 6), key("7"), at(Step::Kind::ClickCell, 4, 1)});
    // The dialog has dealt with the first column itself; in the third the double click begins to edit.
    EXPECT_EQ(tables_.happened, "click 3,4;click 1,5;double 1,5;click 3,6;double 3,6;7*1@4;change 3,6;");
    EXPECT_EQ(tables_.grid().text(3, 6), "6.37");
    EXPECT_NE(log().find("(double-click-cell 1 5)"), std::string::npos);
    backend_.expectUndone("dialog 901 refused (click-cell 4 1): there is no such cell");
}

TEST_F(TablesTest, KeysAreCountedAsTheyAreLetGo) {
    run({focus("10"), key("F6"), key("F6"), key("Down"), key("F6"), key("Down"), key("F6"), key("F6"),
         at(Step::Kind::ClickCell, 1, 3), key("F6")});
    EXPECT_EQ(tables_.happened, "F6*1@0;F6*2@0;Down*1@0;F6*1@0;Down*1@0;F6*1@0;F6*2@0;click 1,3;F6*1@0;");
}

TEST_F(TablesTest, TheInsertionPointIsWhereTheNextLetterGoes) {
    run({at(Step::Kind::ClickCell, 3, 1), key("\xC3\xA9"), key("b"), key("Left"), key("Left"), key("Left"),
         key("a"), key("Right"), key("Backspace"), key("End"), key("c"), key("Home"), key("Backspace"),
         key("d"), key("Down")});
    EXPECT_EQ(tables_.grid().text(3, 1), "dabc");
    EXPECT_NE(tables_.happened.find("Left*2@0;Left*3@0;a*1@1;Right*1@2;Backspace*1@1;"), std::string::npos)
        << tables_.happened;
}

TEST_F(TablesTest, RecordsOfAListArePickedByTheirFirstColumn) {
    run({{Step::Kind::Pick, "11", "777777"},
         key("PageDown"),
         key("End"),
         key("Down"),
         {Step::Kind::Pick, "11", "5"}});
    EXPECT_EQ(
        tables_.happened,
        "selection 777777;selection 777787;PageDown*1@0;selection 999999;End*1@0;Down*1@0;selection 5;");
    EXPECT_EQ(tables_.list().item(5), "5\tvalue 5");
    tables_.list().select(999'999);
    tables_.items.number = 10;
    tables_.list().sourceChanged();
    EXPECT_EQ(tables_.list().selected(), -1);
    EXPECT_EQ(tables_.list().item(10), "");
}

TEST(List, HasItsOwnItemsInColumnsAndMarksOfMany) {
    ui::List list(1, true);
    list.setColumns({"Feature", "Rows"});
    list.addItem("TREE\t14");
    list.addItem("POLE");
    EXPECT_EQ(list.text(0, 1), "14");
    EXPECT_EQ(list.text(1, 1), "");
    EXPECT_EQ(list.text(0, 2), "");
    Items many{1'000'000};
    list.setSource(&many);
    EXPECT_EQ(list.count(), 1'000'000);
    list.selectItem(3, true);
    list.selectItem(999'999, true);
    EXPECT_EQ(list.selection(), (std::vector<int>{3, 999'999}));
    many.number = 4;
    list.sourceChanged();
    EXPECT_EQ(list.selection(), (std::vector<int>{3}));
}

// --- Cells that are taken together, headings, and what a source says of its cells
// ---------------------------

TEST_F(TablesTest, CellsAreTakenTogetherCopiedAndFilled) {
    tables_.grid().setSelectsCells(true);
    tables_.grid().setColumnType(3, ui::CellType::edit(ui::CharacterSet::Numeric));
    run({focus("10"),
         at(Step::Kind::ClickCell, 3, 5),
         key("Shift+Left"),
         key("Shift+Down"),
         {Step::Kind::Show},
         key("Shift+Up"),
         key("Shift+Up"),
         key("Ctrl+C"),
         key("Up"),
         {Step::Kind::Show}});
    EXPECT_EQ(backend_.clipboard(), "4.2\t4.3\n5.2\t5.3\n");
    EXPECT_NE(log().find("at (3, 5), taken (2, 5) to (3, 6)"), std::string::npos) << log();
    EXPECT_EQ(tables_.grid().selection().columns(), 1) << "a key that moves leaves them";

    backend_.setClipboard("7");
    run({focus("10"), at(Step::Kind::ClickCell, 3, 1), key("Shift+Down"), key("Ctrl+V")});
    EXPECT_EQ(tables_.records.text(3, 1) + tables_.records.text(3, 2), "77") << "one text fills all of them";
    backend_.setClipboard("1\n2\r\n\"3\"\n");
    run({focus("10"), at(Step::Kind::ClickCell, 3, 1), key("Ctrl+V")});
    EXPECT_EQ(tables_.records.text(3, 1) + tables_.records.text(3, 2) + tables_.records.text(3, 3), "123");
}

TEST_F(TablesTest, APasteIsTakenAsAWholeOrNotAtAll) {
    tables_.grid().setColumnType(3, ui::CellType::edit(ui::CharacterSet::Numeric));
    auto refused = [&](int column, int row, const std::string& text, const std::string& reason) {
        backend_.setClipboard(text);
        backend_.expectUndone("dialog 901 refused (key \"Ctrl+V\"): " + reason);
        run({focus("10"), at(Step::Kind::ClickCell, column, row), key("Ctrl+V")});
        EXPECT_EQ(tables_.happened.find("change"), std::string::npos);
    };
    refused(3, 1, "1\nx",
            "nothing is pasted, since row 2 of HEIGHT does not take it: a number is made of digits, "
            "signs, point and exponent, without \"x\"");
    refused(3, 1'000'000, "1\n2", "there are more cells to paste than there is room for from here on");
    refused(2, 1, "Maybe",
            "nothing is pasted, since row 1 of  does not take it: \"Maybe\" is not in the list of "
            "this cell");
}

TEST_F(TablesTest, AClickOnAHeadingReachesTheDialog) {
    run({at(Step::Kind::ClickCell, 3, 0), at(Step::Kind::ClickCell, 3, 4)});
    EXPECT_EQ(tables_.happened, "heading 3;click 3,4;");
    tables_.grid().setOrderMark(3, true);
    run({{Step::Kind::Show}});
    EXPECT_NE(log().find("in the order of column 3 from the last"), std::string::npos);
}

TEST(CellBlock, TextsOfOtherProgramsAreReadAsTheyWriteThem) {
    using Cells = std::vector<std::vector<std::string>>;
    EXPECT_EQ(ui::textAsCells("a\tb\nc"), (Cells{{"a", "b"}, {"c"}}));
    EXPECT_EQ(ui::textAsCells("a\t\r\n\r\n"), (Cells{{"a", ""}, {""}}));
    EXPECT_EQ(ui::textAsCells("\"two\nlines\"\t\"6\"\"\"\n"), (Cells{{"two\nlines", "6\""}}));
    EXPECT_EQ(ui::textAsCells(""), (Cells{{""}}));
    EXPECT_EQ(ui::textAsCells("\"never closed"), (Cells{{"never closed"}}));
    ui::Grid grid(1, 2, 1);
    grid.setText(1, 1, "a\tb");
    grid.setText(2, 1, "say \"x\"");
    EXPECT_EQ(ui::textAsCells(ui::cellsAsText(grid, {{1, 1}, {2, 1}})), (Cells{{"a\tb", "say \"x\""}}));
}
