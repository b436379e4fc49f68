// Tables looked at and put right: what is shown, what is written, and that nothing else is.
#include "tests/module/transfer/table_fixture.h"

#include <ctime>
#include <limits>

#include "platform/text/text.h"
#include "tests/platform/dao/lock_timeout.h"

namespace {

using Strings = std::vector<std::string>;

class EveryFile : public TableTest, public testing::WithParamInterface<const char*> {
  protected:
    std::string file() const { return GetParam(); }
    bool isAccess() const { return file().ends_with(".mdb"); }
    // All that is stored, a record a line, as a program prints it that shares no code with ours.
    Strings dump() const {
        const std::string command =
            isAccess() ? "mdb-export -b hex '" + path(file()) + "' POLES"
                       : "sqlite3 '" + path(file()) +
                             "' \"SELECT quote(PT_ID), quote(GIS_KEY), "
                             "quote(HEIGHT), quote(ID), quote(LIT), quote(FLOORS), "
                             "quote(NUMBER), quote(RATE), quote(SEEN), quote(DEED), "
                             "quote(CODE), quote(SMALL), quote(TAX), quote(PLAN) FROM POLES\"";
        return text::split(outputOf(command), '\n');
    }
    // The same with every bit of a number, by a reader of our own.
    Strings exactDump() const {
        if (!isAccess()) return {};
        return text::split(
            outputOf(std::string("'") + NORVANE_BIN_DIR + "/jet' dump --json '" + path(file()) + "' POLES"),
            '\n');
    }
    static int differences(const Strings& before, const Strings& after) {
        EXPECT_EQ(before.size(), after.size());
        int count = 0;
        for (size_t i = 0; i < std::min(before.size(), after.size()); ++i) count += before[i] != after[i];
        return count;
    }
};

TEST_P(EveryFile, EveryTypeIsShownAndChangedAndTheRestStaysAsItIs) {
    if (isAccess() && std::system("which mdb-export >/dev/null 2>&1") != 0)
        GTEST_SKIP() << "mdb-export is not installed";
    makePoles(file());
    const Strings before = dump(), exact = exactDump();
    ui_.answerBox("Yes");
    EXPECT_EQ(edit(file(), "POLES",
                   joined({{show(), cellAt(3, 1, "12,25"), cellAt(5, 1, "Yes"), cellAt(6, 1, "7"),
                            cellAt(7, 1, "-2147483648"), cellAt(8, 1, "2.5"), cellAt(9, 1, "5/31/04 13:45"),
                            cellAt(10, 3, "found"), cellAt(11, 1, " K ")},
                           save(),
                           {show(), click("Quit")}})),
              "2");
    const Strings seen = pictures();
    EXPECT_NE(seen[0].find("[162] Preview/Edit Values from Table  -  POLES"), std::string::npos);
    EXPECT_EQ(words(lineOf(seen[0], "PT_ID")),
              "PT_ID GIS_KEY HEIGHT ID LIT FLOORS NUMBER RATE SEEN DEED CODE SMALL TAX PLAN");
    const std::string second = words(lineOf(seen[0], "'P2'"));
    EXPECT_TRUE(
        second.starts_with("'P2' 'POLE' '0.666666667' 2 Yes {Yes|No} '-2' '200000' '0.200000003' "
                           "'01/16/2004 13:45:30' a"))
        << second;
    EXPECT_TRUE(second.ends_with("'C2' 200 12.3456")) << second;
    const std::string third = words(lineOf(seen[0], "'P3'"));
    EXPECT_EQ(third, "'P3' 'POLE' '' 3 No {Yes|No} '' '' '' '' '' ''");
    EXPECT_EQ(boxes(), (Strings{"box [Alert] \"Are you sure you want to update this table?\"",
                                "box [Alert] \"Process done...\""}));

    EXPECT_EQ(differences(before, dump()), 2);
    EXPECT_EQ(differences(exact, exactDump()), isAccess() ? 2 : 0);
    const std::vector<dao::Variant> first = record(file(), "P1");
    dao::Date day;
    ASSERT_TRUE(dao::dateFromText("2004-05-31 13:45", day));
    const std::vector<dao::Variant> expected = {12.25,
                                                int32_t{1},
                                                "P1",
                                                true,
                                                int16_t{7},
                                                std::numeric_limits<int32_t>::min(),
                                                2.5F,
                                                day,
                                                std::string(400, 'x'),
                                                " K ",
                                                "POLE",
                                                uint8_t{200},
                                                dao::Currency{123456},
                                                dao::Binary(300, 7)};
    for (size_t i = 0; i < expected.size(); ++i)
        EXPECT_EQ(first[i], expected[i]) << "field " << i << ": " << dao::toText(first[i]);
    EXPECT_EQ(dao::toText(record(file(), "P3")[8]), "found");
    EXPECT_EQ(faultsOf(path(file())), "");
}

TEST_P(EveryFile, OfARecordOnlyTheChangedCellIsWritten) {
    makePoles(file());
    // The other values of the record have digits, blanks and line ends that no cell shows.
    std::vector<dao::Variant> expected = record(file(), "P2");
    const std::vector<dao::Variant> fourth = record(file(), "P4");
    expected[5] = int32_t{5};
    ui_.answerBox("Yes");
    EXPECT_EQ(edit(file(), "POLES",
                   joined({{cellAt(7, 2, "5"), cellAt(3, 2, "1"), cellAt(3, 2, "0.666666667"),
                            cellAt(11, 4, "x"), cellAt(11, 4, "C4")},
                           save(),
                           {click("Quit")}})),
              "1");
    EXPECT_EQ(record(file(), "P2"), expected);
    EXPECT_EQ(record(file(), "P4"), fourth) << "typed back to what is shown";
}

TEST_P(EveryFile, WhatIsEmptiedIsNullAndWhatIsNoValueIsLeftOut) {
    makePoles(file());
    ui_.answerBox("Yes");
    printed();
    edit(file(), "POLES",
         joined({{cellAt(3, 1, ""), cellAt(6, 1, ""), cellAt(9, 1, ""), cellAt(11, 1, ""),
                  cellAt(3, 2, "high"), show(), cellAt(7, 2, "1.5"), cellAt(6, 2, "40000"),
                  cellAt(8, 2, "1e39"), cellAt(9, 2, "31/31/2004")},
                 save(),
                 {show(), click("Quit")}}));
    const std::string nulls =
        "SELECT PT_ID FROM POLES WHERE HEIGHT IS NULL AND FLOORS IS NULL AND SEEN IS NULL "
        "AND CODE IS NULL ORDER BY PT_ID";
    EXPECT_EQ(sqlite(file(), nulls), "P1\nP3\n");
    EXPECT_EQ(stateOf(pictures()[0]), "Left out when it is saved: \"high\" is no number.") << pictures()[0];
    const std::string second = lineOf(pictures()[1], "'P2'");
    for (const char* part : {"'0.666666667'", "'-2'", "'200000'", "'0.200000003'", "'01/16/2004 13:45:30'"})
        EXPECT_NE(second.find(part), std::string::npos) << part << " is shown again: " << second;
    const std::string said = printed();
    for (const char* part :
         {"PT_ID P2, HEIGHT: \"high\" is no number", "PT_ID P2, NUMBER: \"1.5\" is no whole number",
          "PT_ID P2, FLOORS: \"40000\" is too large a number",
          "PT_ID P2, RATE: \"1e39\" is too large a number", "PT_ID P2, SEEN: \"31/31/2004\" is no date",
          "4 values of 1 record saved, 5 left out or cut"})
        EXPECT_NE(said.find(part), std::string::npos) << part << " in " << said;
}

INSTANTIATE_TEST_SUITE_P(Files, EveryFile, testing::Values("poles97.mdb", "poles.mdb", "poles.sqlite"),
                         [](const testing::TestParamInfo<const char*>& file) {
                             const std::string name = file.param;
                             return name == "poles97.mdb" ? "Access97"
                                    : name == "poles.mdb" ? "Access2000"
                                                          : "Sqlite";
                         });

// --- The rules of cells and of leaving ---------------------------------------------------------------------

TEST_F(TableTest, AFeatureStaysAndAPointIsNeverEmpty) {
    makePoles("poles.mdb");
    ui_.answerBox("OK");
    ui_.answerBox("Yes");
    edit("poles.mdb", "POLES",
         joined({{cellAt(2, 1, "TREE"), cellAt(2, 5, "poles"), cellAt(1, 2, " "), show()},
                 save(),
                 {click("Quit")}}));
    EXPECT_NE(lineOf(pictures()[0], "'P1'").find("'POLE'"), std::string::npos);
    EXPECT_EQ(boxes().front(), "box [Error] \"PT_ID cannot be an empty string!\"");
    EXPECT_EQ(sqlite("poles.mdb", "SELECT COUNT(*) FROM POLES WHERE GIS_KEY = 'POLE'"), "4\n");
    const long key = std::stol(sqlite("poles.mdb", "SELECT PT_ID FROM POLES WHERE ID = 2"));
    EXPECT_NEAR(static_cast<double>(key), static_cast<double>(std::time(nullptr)), 100);
}

TEST_F(TableTest, WithoutAFeatureTheNameOfTheTableIsTaken) {
    makeList("list.sqlite", 1);
    sqlite("list.sqlite", "UPDATE LIST SET GIS_KEY = NULL");
    ui_.answerBox("Yes");
    edit("list.sqlite", "LIST", joined({{cellAt(2, 1, "TREE")}, save(), {click("Quit")}}));
    EXPECT_EQ(sqlite("list.sqlite", "SELECT GIS_KEY FROM LIST"), "LIST\n");
}

TEST_F(TableTest, LeavingAsksOnlyAfterAChange) {
    makeList("list.sqlite", 3);
    EXPECT_EQ(edit("list.sqlite", "LIST", {show(), click("Quit")}), "0");
    EXPECT_NE(lineOf(pictures()[0], "1 button \"Save\"").find("(disabled)"), std::string::npos);
    EXPECT_EQ(boxes(), Strings{});
    // A Yes saves without a second question, by Quit and by the frame.
    ui_.answerBox("Yes");
    ui_.answerBox("OK");
    EXPECT_EQ(edit("list.sqlite", "LIST", {cellAt(3, 1, "oak"), click("Quit")}), "1");
    ui_.answerBox("No");
    EXPECT_EQ(edit("list.sqlite", "LIST", {cellAt(3, 2, "elm"), {ui::Step::Kind::Close}}), "0");
    EXPECT_EQ(sqlite("list.sqlite", "SELECT NAME FROM LIST"), "oak\nname 2\nname 3\n");
    EXPECT_EQ(boxes(), (Strings{"box [Alert] \"Would you like to save the changes?\"",
                                "box [Alert] \"Process done...\"",
                                "box [Alert] \"Would you like to save the changes?\""}));
}

TEST_F(TableTest, SaveActsOnlyFromItsButtonAndKeepsTheDialogOpen) {
    makeList("list.sqlite", 3);
    ui_.answerBox("No");
    ui_.answerBox("Yes");
    ui_.answerBox("OK");
    EXPECT_EQ(edit("list.sqlite", "LIST",
                   joined({{cellAt(3, 1, "oak"), focus("Save"), key("Enter"), show(), click("Save"), show(),
                            click("Quit")}})),
              "1");
    EXPECT_EQ(lineOf(pictures()[0], "* 1 button \"Save\""), "* 1 button \"Save\"") << "still to be saved";
    EXPECT_NE(lineOf(pictures()[1], "1 button \"Save\"").find("(disabled)"), std::string::npos);
    EXPECT_EQ(stateOf(pictures()[1]), "1 value of 1 record saved.");
}

TEST_F(TableTest, ATableWithoutRecordsShowsItsHeadings) {
    makeList("list.mdb", 0);
    edit("list.mdb", "LIST", {key("Tab"), show(), click("Quit")});
    EXPECT_EQ(lineOf(pictures()[0], "PT_ID"), "PT_ID GIS_KEY NAME");
    EXPECT_NE(pictures()[0].find("3 x 0"), std::string::npos);
    EXPECT_NE(pictures()[0].find("\n* 1902 edit"), std::string::npos) << "Tab leaves the grid";
}

TEST_F(TableTest, WithoutATableItsNameIsChosen) {
    makeList("list.sqlite", 2);
    answer(1621, {show(), pick("Tables:", "LIST"), click("OK")});
    answer(kTable, {click("Quit")});
    EXPECT_EQ(lisp("(gis:edit-table " + quoted("list.sqlite") + ")"), "0");
    EXPECT_TRUE(shown("Preview/Edit Values from Table  -  LIST"));
    answer(1621, {click("Cancel")});
    EXPECT_EQ(lisp("(gis:edit-table " + quoted("list.sqlite") + ")"), "nil");
    // Without a database there is nothing to choose from, until one is chosen.
    answer(1621, {click("Database..."), click("OK")});
    answer(149, {click("Existing")});
    ui_.answerFile(path("list.sqlite"));
    answer(kTable, {click("Quit")});
    EXPECT_EQ(lisp("(gis:edit-table)"), "0");
}

// --- The keyboard
// -------------------------------------------------------------------------------------------

TEST_F(TableTest, KeysWalkThroughTheCellsOfATable) {
    makeList("list.sqlite", 3);
    sqlite("list.sqlite", "UPDATE LIST SET NAME = NULL WHERE PT_ID = '2'");
    const ui::Step right = key("Right"), left = key("Left"), seen = show();
    edit("list.sqlite", "LIST",
         {seen,
          right,
          seen,
          right,
          seen,  // a filled cell: at the second press
          clickAt(3, 2),
          right,
          seen,  // an empty one: at once, on to the next row
          left,
          left,
          seen,
          left,
          seen,  // back at the third press, into the row above
          left,
          seen,  // the empty cell is left at once
          key("Down"),
          seen,
          key("Up"),
          seen,  //
          key("Enter"),
          seen,
          key("Tab"),
          seen,  //
          key("Shift+Tab"),
          seen,
          key("Ctrl+End"),
          seen,
          key("Right"),
          key("Right"),
          seen,
          key("Enter"),
          seen,
          click("Quit")});
    EXPECT_EQ(activeCells(), (Strings{"1,1", "1,1", "2,1", "1,3", "1,3", "3,2", "2,2", "2,3", "2,2", "3,2",
                                      "1,3", "3,2", "3,3", "3,3", "3,3"}));
    EXPECT_NE(pictures().back().find("\n* 1902 edit"), std::string::npos)
        << "Enter in the last cell leaves the grid";
}

TEST_F(TableTest, RightWalksThroughATextBeforeItLeavesTheCell) {
    makeList("list.sqlite", 2);
    const ui::Step right = key("Right"), left = key("Left"), seen = show();
    edit("list.sqlite", "LIST",
         {clickAt(3, 1), left, left, seen, right, seen, right, seen, clickAt(3, 1), key("F2"), key("Home"),
          right, right, right, seen, click("Quit")});
    // Left begins to edit and steps back once; Right steps to the end, and goes from there. On the way to it,
    // it stays however often it is pressed.
    EXPECT_EQ(activeCells(), (Strings{"3,1", "3,1", "1,2", "3,1"}));
    EXPECT_NE(pictures()[0].find("editing"), std::string::npos);
}

TEST_F(TableTest, ADropDownKeepsUpAndDownForItsList) {
    makePoles("poles.mdb");
    edit("poles.mdb", "POLES",
         {clickAt(5, 2), key("Down"), show(), key("Enter"), show(), key("Left"), key("Left"), show(),
          key("Left"), show(), click("Quit")});
    EXPECT_NE(pictures()[0].find("at (5, 2), editing \"No\""), std::string::npos) << pictures()[0];
    EXPECT_EQ(activeCells(), (Strings{"5,2", "6,2", "6,2", "5,2"}));
    EXPECT_NE(lineOf(pictures()[1], "'P2'").find("No {Yes|No}"), std::string::npos);
}

// --- Looking through the records
// ----------------------------------------------------------------------------

TEST_F(TableTest, CellsAreFoundRecordsAreShownByWordsAndSorted) {
    makeList("list.mdb", 200);
    edit("list.mdb", "LIST",
         {typed("Find:", "NAME 4"),
          key("Enter"),
          show(),
          key("F3"),
          show(),
          typed("Find:", "nowhere"),
          click("Find Next"),
          show(),
          typed("Words:", "list 19 Name"),
          key("Enter"),
          show(),
          clickAt(3, 0),
          show(),
          clickAt(3, 0),
          show(),
          clickAt(3, 0),
          typed("Words:", ""),
          click("Show Records"),
          show(),
          click("Quit")});
    const Strings seen = pictures();
    EXPECT_EQ(activeCells()[0], "3,4");
    EXPECT_EQ(activeCells()[1], "3,11");
    EXPECT_EQ(stateOf(seen[2]), "\"nowhere\" stands in no cell that is shown.");
    EXPECT_EQ(stateOf(seen[3]), "12 of 200 records shown.") << seen[3];
    EXPECT_NE(seen[3].find("3 x 12"), std::string::npos);
    EXPECT_EQ(stateOf(seen[4]), "In the order of NAME.");
    EXPECT_EQ(words(lineOf(seen[4], "'")), "'119' 'LIST' 'name 0'");
    EXPECT_EQ(words(lineOf(seen[5], "'")), "'195' 'LIST' 'name 6'")
        << "from the last, equal ones as they stand";
    EXPECT_EQ(stateOf(seen[6]), "200 of 200 records shown.");
    EXPECT_EQ(sqlite("list.mdb", "SELECT TOP 1 PT_ID FROM LIST"), "1\n") << "the table itself is not sorted";
}

TEST_F(TableTest, NumbersAndDatesAreSortedByTheirValue) {
    makePoles("poles.mdb");
    ui_.answerBox("Yes");
    edit("poles.mdb", "POLES",
         joined({{cellAt(7, 1, "1000000")},
                 save(),
                 {clickAt(7, 0), show(), clickAt(9, 0), clickAt(9, 0), show(), click("Quit")}}));
    auto order = [&](const std::string& picture) {
        std::string ids;
        for (const std::string& line : text::split(picture, '\n'))
            if (line.starts_with("    'P")) ids += line.substr(5, 2);
        return ids;
    };
    EXPECT_EQ(order(pictures()[0]), "P3P2P4P5P1") << "what is empty comes first";
    EXPECT_EQ(order(pictures()[1]), "P5P4P2P1P3");
}

TEST_F(TableTest, WhatIsChangedInAnotherOrderGoesIntoItsRecord) {
    makeList("list.sqlite", 20);
    ui_.answerBox("Yes");
    edit(
        "list.sqlite", "LIST",
        joined({{typed("Words:", "17"), key("Enter"), cellAt(3, 1, "oak"), typed("Words:", ""), key("Enter")},
                {clickAt(1, 0), clickAt(1, 0), cellAt(3, 1, "elm")},
                save(),
                {click("Quit")}}));
    EXPECT_EQ(sqlite("list.sqlite", "SELECT PT_ID, NAME FROM LIST WHERE NAME NOT LIKE 'name%'"),
              "9|elm\n17|oak\n");
}

TEST_F(TableTest, CellsAreCopiedPastedAndTakenBack) {
    makeList("list.sqlite", 4);
    edit("list.sqlite", "LIST",
         {clickAt(1, 1), key("Shift+Right"), key("Shift+Right"), key("Shift+Down"), show(), key("Ctrl+C"),
          click("Quit")});
    EXPECT_EQ(ui_.clipboard(), "1\tLIST\tname 1\n2\tLIST\tname 2\n");
    EXPECT_NE(pictures()[0].find("taken (1, 1) to (3, 2)"), std::string::npos) << pictures()[0];
    ui_.clearLog();
    ui_.setClipboard("A\r\nB\r\n");
    ui_.answerBox("Yes");
    edit("list.sqlite", "LIST",
         {clickAt(3, 2), key("Ctrl+V"), show(), key("Ctrl+Z"), show(), key("Ctrl+V"), click("Quit")});
    EXPECT_NE(lineOf(pictures()[0], "'3'").find("'B'"), std::string::npos);
    EXPECT_NE(lineOf(pictures()[1], "'2'").find("'name 2'"), std::string::npos);
    EXPECT_NE(lineOf(pictures()[1], "'3'").find("'name 3'"), std::string::npos) << "both are taken back";
    EXPECT_EQ(sqlite("list.sqlite", "SELECT NAME FROM LIST"), "name 1\nA\nB\nname 4\n");
}

TEST_F(TableTest, APasteThatDoesNotFitChangesNothing) {
    makePoles("poles.mdb");
    ui_.setClipboard("x\nthis text is too long");
    ui_.expectUndone(
        "dialog 162 refused (key \"Ctrl+V\"): nothing is pasted, since row 2 of CODE does not take it: "
        "the cell holds 10 characters, and this text has 21");
    EXPECT_EQ(edit("poles.mdb", "POLES", {clickAt(11, 1), key("Ctrl+V"), click("Quit")}), "0");
    EXPECT_EQ(boxes(), Strings{}) << "nothing is to be saved";
}

TEST_F(TableTest, TheEntityOfARecordIsShown) {
    makeList("LIST.sqlite", 3);
    lisp("(regapp \"ZGEO_GIS_2000\")");
    lisp(
        "(entmake (list '(0 . \"CIRCLE\") '(10 500.0 500.0 0.0) '(40 . 5.0) (list -3 (list \"ZGEO_GIS_2000\" "
        "'(1002 . \"{\") '(1000 . \"none.mdb\") (cons 1000 " +
        quoted("LIST.sqlite") +
        ") '(1000 . \"LIST\") '(1000 . \"PT_ID\") '(1000 . \"2\") '(1002 . \"}\")))))");
    edit("LIST.sqlite", "LIST",
         {clickAt(3, 2), click("Show Entity"), show(), clickAt(1, 3), click("Show Entity"), show(),
          click("Quit")});
    EXPECT_EQ(stateOf(pictures()[0]), "1 entity is linked to PT_ID 2.");
    EXPECT_EQ(stateOf(pictures()[1]), "No entity of the drawing is linked to PT_ID 3.");
}

TEST_F(TableTest, LongWorkCanBeEndedAndChangesNothing) {
    makeList("list.sqlite", 100);
    for (int i = 0; i < 4; ++i) answer(1000, {click("Cancel")});
    for (const char* box : {"Yes", "No"}) ui_.answerBox(box);
    edit("list.sqlite", "LIST",
         joined({{typed("Find:", "nowhere"), key("Enter"), show(), typed("Words:", "5"), key("Enter"), show(),
                  clickAt(3, 0), show(), cellAt(3, 1, "oak")},
                 save(),
                 {show(), click("Quit")}}));
    const Strings seen = pictures();
    EXPECT_EQ(stateOf(seen[0]), "The search was ended.");
    EXPECT_EQ(stateOf(seen[1]), "Ended: the same records are shown as before.");
    EXPECT_NE(seen[1].find("3 x 100"), std::string::npos);
    EXPECT_EQ(stateOf(seen[2]), "Ended: the order is the same as before.");
    EXPECT_EQ(seen[2].find("in the order of"), std::string::npos);
    EXPECT_EQ(stateOf(seen[3]), "0 values of 0 records saved, ended before all was written.");
    EXPECT_NE(lineOf(seen[3], "'1'").find("'oak'"), std::string::npos) << "it is still typed";
    EXPECT_EQ(sqlite("list.sqlite", "SELECT NAME FROM LIST WHERE PT_ID = '1'"), "name 1\n");
}

TEST_F(TableTest, WhatOthersAddIsSeenWhenItIsReadAnew) {
    makeList("list.mdb", 2);
    const auto add = [&] { sqlite("list.mdb", "INSERT INTO LIST (PT_ID, NAME) VALUES ('3', 'ash')"); };
    editWhile("list.mdb", "LIST", {clickAt(1, 0), show()}, add, {key("F5"), show(), click("Quit")});
    EXPECT_NE(pictures()[0].find("in the order of column 1"), std::string::npos);
    EXPECT_EQ(pictures()[1].find("in the order of"), std::string::npos);
    EXPECT_NE(lineOf(pictures()[1], "'3'").find("'ash'"), std::string::npos);
    // What is typed stays, and what others have changed beside it is seen.
    ui_.clearLog();
    const auto change = [&] { sqlite("list.mdb", "UPDATE LIST SET NAME = 'elm' WHERE PT_ID = '2'"); };
    editWhile("list.mdb", "LIST", {cellAt(3, 1, "oak")}, change, {key("F5"), show(), click("Quit")});
    EXPECT_NE(lineOf(pictures()[0], "'1'").find("'oak'"), std::string::npos);
    EXPECT_NE(lineOf(pictures()[0], "'2'").find("'elm'"), std::string::npos);
}

TEST_F(TableTest, TextsThatACellCannotHoldAreNotChangedInOne) {
    makePoles("poles.mdb");
    ui_.expectUndone("dialog 162 refused (cell 10 1 \"short\"): this cell is not edited");
    ui_.expectUndone("dialog 162 refused (cell 10 2 \"short\"): this cell is not edited");
    ui_.expectUndone("dialog 162 refused (cell 4 1 \"9\"): this cell is not edited");
    EXPECT_EQ(edit("poles.mdb", "POLES",
                   {cellAt(10, 1, "short"), cellAt(10, 2, "short"), cellAt(4, 1, "9"), click("Quit")}),
              "0");
    EXPECT_EQ(boxes(), Strings{});
}

// --- What others do, and what cannot be read or written
// -----------------------------------------------------

TEST_F(TableTest, ARecordThatSomebodyDeletesIsToldAndTheOthersAreSaved) {
    for (const char* file : {"list.mdb", "list.sqlite"}) {
        makeList(file, 5);
        ui_.clearLog();
        ui_.answerBox("Yes");
        editWhile(
            file, "LIST", {cellAt(3, 2, "oak"), cellAt(3, 4, "elm")},
            [&] { sqlite(file, "DELETE FROM LIST WHERE PT_ID = '2'"); },
            joined({save(), {show(), click("Quit")}}));
        EXPECT_EQ(boxes(), (Strings{"box [Alert] \"Are you sure you want to update this table?\"",
                                    "box [Error] \"The record has been deleted.\"",
                                    "box [Alert] \"Process done...\""}));
        EXPECT_EQ(sqlite(file, "SELECT PT_ID, NAME FROM LIST WHERE NAME NOT LIKE 'name%'"), "4|elm\n");
        EXPECT_NE(lineOf(pictures()[0], "#Deleted"), "");
        EXPECT_EQ(stateOf(pictures()[0]), "1 value of 1 record saved, 1 record refused.");
    }
}

TEST_F(TableTest, ARecordThatSomebodyChangesIsAskedAbout) {
    for (const char* file : {"list.mdb", "list.sqlite"}) {
        makeList(file, 3);
        auto somebody = [&] { sqlite(file, "UPDATE LIST SET NAME = 'ash' WHERE PT_ID = '2'"); };
        // Nobody answers: it stays as the other has left it, and what was typed is still there.
        ui_.answerBox("Yes");
        ui_.answerBox("OK");
        ui_.answerBox("No");
        ui_.clearLog();
        editWhile(file, "LIST", {cellAt(3, 2, "oak"), cellAt(3, 3, "elm")}, somebody,
                  joined({save(), {show(), click("Quit")}}));
        EXPECT_EQ(sqlite(file, "SELECT NAME FROM LIST"), "name 1\nash\nelm\n");
        EXPECT_NE(lineOf(pictures()[0], "'2'").find("'oak'"), std::string::npos);
        EXPECT_TRUE(shown("question [Changed by others] \"1 record has been changed by somebody else"));
        ui_.answerBox("Yes");
        ui_.answerQuestion("Changed by others", "Yes");
        sqlite(file, "UPDATE LIST SET NAME = 'name 2' WHERE PT_ID = '2'");
        editWhile(file, "LIST", {cellAt(3, 2, "oak")}, somebody, joined({save(), {click("Quit")}}));
        EXPECT_EQ(sqlite(file, "SELECT NAME FROM LIST"), "name 1\noak\nelm\n");
    }
}

TEST_F(TableTest, WhatTheEngineRefusesStaysTypedAndTheOthersAreSaved) {
    makeList("list.sqlite", 3);
    sqlite("list.sqlite",
           "CREATE TRIGGER no BEFORE UPDATE ON LIST WHEN NEW.NAME = 'oak' BEGIN SELECT RAISE(ABORT, 'no "
           "oaks'); END");
    // What could not be saved keeps the dialog open, also after a Yes to the question at its end.
    for (const char* box : {"Yes", "OK", "OK", "Yes", "OK", "OK", "No"}) ui_.answerBox(box);
    EXPECT_EQ(edit("list.sqlite", "LIST",
                   joined({{cellAt(3, 1, "oak"), cellAt(3, 2, "elm")},
                           save(),
                           {show(), click("Quit"), show(), click("Quit")}})),
              "1");
    EXPECT_NE(boxes()[1].find("no oaks"), std::string::npos) << boxes()[1];
    EXPECT_EQ(boxes().back(), "box [Alert] \"Would you like to save the changes?\"");
    for (const std::string& picture : pictures())
        EXPECT_NE(lineOf(picture, "'1'").find("'oak'"), std::string::npos);
    EXPECT_EQ(sqlite("list.sqlite", "SELECT NAME FROM LIST"), "name 1\nelm\nname 3\n");
}

TEST_F(TableTest, WhatCannotBeOpenedIsSaid) {
    makeList("list.mdb", 3);
    EXPECT_EQ(lisp("(gis:edit-table " + quoted("list.mdb") + " \"NOWHERE\")"), "0");
    EXPECT_EQ(lisp("(gis:edit-table " + quoted("nothing.mdb") + " \"LIST\")"), "0");
    write("text.mdb", "no database");
    EXPECT_EQ(lisp("(gis:edit-table " + quoted("text.mdb") + " \"LIST\")"), "0");
    EXPECT_EQ(boxes().size(), 3U);
    for (const std::string& box : boxes()) EXPECT_TRUE(box.starts_with("box [Error] \"")) << box;
}

TEST_F(TableTest, ADamagedFileIsSaidAndStaysAsItIs) {
    makeList("list.mdb", 400);
    std::string bytes = read("list.mdb");
    const size_t at = bytes.rfind("name ");
    ASSERT_NE(at, std::string::npos);
    bytes[at / 4096 * 4096] = 9;  // the page is of no known kind
    write("list.mdb", bytes);
    EXPECT_EQ(lisp("(gis:edit-table " + quoted("list.mdb") + " \"LIST\")"), "0");
    ASSERT_EQ(boxes().size(), 1U);
    EXPECT_TRUE(boxes()[0].starts_with("box [Error] \"")) << boxes()[0];
    EXPECT_EQ(read("list.mdb"), bytes);
}

TEST_F(TableTest, WhatCannotBeWrittenNowStaysTyped) {
    const ShortLockTimeout shortTimeout;
    makeList("list.sqlite", 3);
    FILE* somebody = nullptr;
    for (const char* box : {"Yes", "OK", "No"}) ui_.answerBox(box);
    const auto holdTheFile = [&] {
        somebody = popen(("sqlite3 '" + path("list.sqlite") + "'").c_str(), "w");
        ASSERT_NE(somebody, nullptr);
        fputs("BEGIN IMMEDIATE;\n", somebody);
        fflush(somebody);
        usleep(500000);
    };
    EXPECT_EQ(editWhile("list.sqlite", "LIST", {cellAt(3, 2, "oak")}, holdTheFile,
                        joined({save(), {show(), click("Quit")}})),
              "0");
    if (somebody) pclose(somebody);
    EXPECT_TRUE(boxes()[1].starts_with("box [Error] \"")) << boxes()[1];
    EXPECT_NE(lineOf(pictures()[0], "'2'").find("'oak'"), std::string::npos);
    EXPECT_EQ(lineOf(pictures()[0], "* 1 button \"Save\""), "* 1 button \"Save\"");
    EXPECT_EQ(boxes().back(), "box [Alert] \"Would you like to save the changes?\"");
    EXPECT_EQ(sqlite("list.sqlite", "SELECT NAME FROM LIST WHERE PT_ID = '2'"), "name 2\n");
}

}  // namespace
