// The panel of records in scripts: the same model that stands in the window.
#include "tests/module/records/panel_fixture.h"

using Strings = std::vector<std::string>;

TEST_F(RecordsPanelTest, ItShowsRecordsWithTheirEntitiesAndNarrowsThemDown) {
    panel({show(), text("1004", "oak"), show(), text("1004", "dbh > 10 and species <> 'oak'"), show(),
           text("1004", ""), pick("1006", "Linked"), show(), pick("1006", "Not linked"), show()});
    const Strings seen = pictures();
    ASSERT_EQ(seen.size(), 5u);
    EXPECT_EQ(keysIn(seen[0]), "T1 T2 T3 T4 T5");
    EXPECT_EQ(keysIn(seen[1]), "T1 T3");
    EXPECT_NE(seen[1].find("2 of 5"), std::string::npos);
    EXPECT_EQ(keysIn(seen[2]), "T2");
    EXPECT_EQ(keysIn(seen[3]), "T1 T2 T3");
    EXPECT_EQ(keysIn(seen[4]), "T4 T5");
    EXPECT_TRUE(::text::trim(lineOf(seen[0], "'T3'")).starts_with("2 ")) << "two entities have the record";
    EXPECT_TRUE(::text::trim(lineOf(seen[0], "'T4'")).starts_with("'T4'"));
}

TEST_F(RecordsPanelTest, ALinkWithoutAKeyLeadsToNoRecordWithoutOne) {
    sql("insert into TREE (GIS_KEY, SPECIES) values ('TREE', 'Yew')");
    makePoint("e", "50.0 50.0 0.0");
    linkTo("e", "");
    panel({text("1004", "yew"), show(), pick("1006", "Linked"), show()});
    EXPECT_TRUE(::text::trim(lineOf(pictures()[0], "'Yew'")).starts_with("''")) << pictures()[0];
    EXPECT_EQ(lineOf(pictures()[1], "'Yew'"), "");
}

TEST_F(RecordsPanelTest, AWrongConditionIsToldWithItsPlaceAndLeavesWhatIsShown) {
    panel({text("1004", "DBH > 20"), text("1004", "DBH > 20 AND HIGHT < 3"), show(), text("1004", "DBH >"),
           show(), text("1004", "hight low"), show()});
    const Strings seen = pictures();
    ASSERT_EQ(seen.size(), 3u);
    EXPECT_EQ(keysIn(seen[0]), "T1 T3");
    EXPECT_NE(lineOf(seen[0], "1007 label").find("HIGHT"), std::string::npos) << seen[0];
    EXPECT_NE(lineOf(seen[1], "1007 label").find("(at the end)"), std::string::npos) << seen[1];
    // Words are no condition, and hide the message.
    EXPECT_EQ(keysIn(seen[2]), "");
    EXPECT_EQ(lineOf(seen[2], "1007 label"), "");
    EXPECT_NE(seen[2].find("0 of 5"), std::string::npos);
    // The message goes with the table.
    panel({text("1004", "DBH >"), pick("1002", "TREE"), show()});
    EXPECT_EQ(lineOf(pictures()[0], "1007 label"), "");
}

TEST_F(RecordsPanelTest, WhatMayStandInAConditionIsOffered) {
    panel({text("1004", "SP"), show(), text("1004", "SPECIES = "), show(), text("1004", "SPECIES = 'O"),
           show(), pick("1004", "SPECIES = 'oak'"), show()});
    const Strings seen = pictures();
    ASSERT_EQ(seen.size(), 4u);
    EXPECT_NE(lineOf(seen[0], "1004").find("{SPECIES"), std::string::npos) << seen[0];
    EXPECT_NE(lineOf(seen[1], "1004").find("SPECIES = 'Maple'"), std::string::npos) << seen[1];
    EXPECT_EQ(lineOf(seen[2], "1004").find("Maple"), std::string::npos);
    EXPECT_EQ(keysIn(seen[3]), "T1 T3");
}

TEST_F(RecordsPanelTest, RowsAndEntitiesAreSelectedTogether) {
    panel({clickCell(2, 3)});
    EXPECT_EQ(selected(), "\"cd\"");
    panel({clickCell(2, 1), key("Shift+Down"), show()});
    EXPECT_EQ(selected(), "\"ab\"");
    panel({clickCell(2, 4)});
    EXPECT_EQ(selected(), "\"\"") << "nothing leads to T4";

    // What is selected in the drawing is marked, and can be all that is shown.
    lisp("(sssetfirst nil (ssadd b))");
    panel({show(), pick("1006", "Of the selected entities"), show(), clickCell(2, 1), show()});
    const Strings seen = pictures();
    ASSERT_EQ(seen.size(), 3u);
    EXPECT_NE(seen[0].find("at (2, 2)"), std::string::npos) << "the row is gone to";
    EXPECT_EQ(keysIn(seen[1]), "T2");
    EXPECT_EQ(keysIn(seen[2]), "T2") << "a row that is taken does not take the others away";

    panel({text("1004", "DBH >= 30"), click("Select Shown"), text("1004", "maple"), pick("1012", "Add to it"),
           click("Select Shown"), show()});
    EXPECT_EQ(selected(), "\"abcd\"");
    EXPECT_NE(pictures()[0].find("4 entities are selected."), std::string::npos);
    panel({text("1004", "maple"), pick("1012", "Take out of it"), click("Select Shown")});
    EXPECT_EQ(selected(), "\"acd\"");
    panel({text("1004", "old"), pick("1012", "Of it only"), click("Select Shown")});
    EXPECT_EQ(selected(), "\"a\"");
}

TEST_F(RecordsPanelTest, WhatIsSeenInTheWindowIsShown) {
    lisp("(command \"_.ZOOM\" \"_W\" '(5.0 5.0) '(25.0 25.0))");
    panel({pick("1006", "Seen in the window"), show()});
    EXPECT_EQ(keysIn(pictures()[0]), "T1 T2");
    panel({clickCell(2, 3), click("Zoom To"), pick("1006", "Seen in the window"), show()});
    EXPECT_EQ(keysIn(pictures()[0]), "T3") << "the view goes to its entities";
}

TEST_F(RecordsPanelTest, HeadingsGiveTheOrder) {
    const ui::Step heading = clickCell(5, 0);
    panel({heading, show(), heading, show(), heading, show(), clickCell(1, 0), show()});
    const Strings seen = pictures();
    ASSERT_EQ(seen.size(), 4u);
    EXPECT_EQ(keysIn(seen[0]), "T5 T4 T2 T1 T3");
    EXPECT_NE(seen[0].find("in the order of column 5"), std::string::npos);
    EXPECT_EQ(keysIn(seen[1]), "T3 T1 T2 T4 T5");
    EXPECT_NE(seen[1].find("in the order of column 5 from the last"), std::string::npos);
    EXPECT_EQ(keysIn(seen[2]), "T1 T2 T3 T4 T5");
    EXPECT_NE(seen[3].find("Records have no order by their links."), std::string::npos);
}

TEST_F(RecordsPanelTest, ARowIsWrittenWhenItIsLeftAndTakenBack) {
    panel({cellAt(5, 1, "31,5"), show(), cellAt(5, 1, "31"), cellAt(6, 1, "young"), show(), clickCell(4, 2),
           show(), key("Ctrl+Z"), show(), key("Ctrl+Z"), show()});
    const Strings seen = pictures();
    ASSERT_EQ(seen.size(), 5u);
    EXPECT_NE(lineOf(seen[0], "1010").find("31.5"), std::string::npos)
        << "the template wants a whole number: " << seen[0];
    EXPECT_NE(lineOf(seen[1], " T1 ").find("'31'"), std::string::npos) << seen[1];
    EXPECT_NE(lineOf(seen[1], " T1 ").find("young"), std::string::npos);
    EXPECT_NE(lineOf(seen[2], "'T1'").find("'31'"), std::string::npos);
    EXPECT_NE(lineOf(seen[3], "'T1'").find("'30'"), std::string::npos) << "the row as a whole";
    EXPECT_NE(lineOf(seen[3], "'T1'").find("old"), std::string::npos);
    EXPECT_NE(seen[4].find("There is nothing to take back."), std::string::npos);
    EXPECT_EQ(sql("select DBH, NOTES from TREE where PT_ID = 'T1'"), "30.0|old\n");

    // The last row is written when the panel is closed.
    panel({cellAt(4, 4, "DOGWOOD")});
    EXPECT_EQ(sql("select SPECIES from TREE where PT_ID = 'T4'"), "DOGWOOD\n");
}

TEST_F(RecordsPanelTest, WhatSomebodyElseHasChangedIsNotOverwritten) {
    const Strings seen = panelBeside({[] { return cellAt(4, 1, "DOGWOOD"); },
                                      [this] {
                                          sql("update TREE set SPECIES = 'Birch' where PT_ID = 'T1'");
                                          return clickCell(2, 2);
                                      }});
    EXPECT_EQ(sql("select SPECIES from TREE where PT_ID = 'T1'"), "Birch\n");
    EXPECT_NE(lineOf(seen.back(), "'T1'").find("Birch"), std::string::npos) << "what it is now is shown";
    const std::string told = lineOf(seen.back(), "1010");
    EXPECT_NE(told.find("Not written: SPECIES = DOGWOOD."), std::string::npos) << told;
}

TEST_F(RecordsPanelTest, ATableThatGoesWhileItIsShownIsToldWhateverIsDone) {
    // More than are kept of what was shown.
    sql("create table DIGIT (I INTEGER)");
    for (int digit = 0; digit < 10; ++digit) sql("insert into DIGIT values (" + std::to_string(digit) + ")");
    for (int i = 0; i < 2; ++i)
        sql("insert into TREE (PT_ID, DBH) select 'D', a.I from DIGIT a, DIGIT b, DIGIT c");
    lisp("(sssetfirst nil (ssadd b))");
    ui_.answerFile(path("trees.csv"));
    const Strings seen = panelBeside({[this] {
                                          sql("drop table TREE; drop table DIGIT");
                                          return click("Select Shown");
                                      },
                                      [] { return click("Save as CSV..."); }, [] { return clickCell(2, 3); },
                                      [this] {
                                          lisp("(sssetfirst nil (ssadd a))");
                                          return click("Copy");
                                      },
                                      [] { return click("Zoom To"); }, [] { return click("Erase..."); },
                                      [] { return key("F5"); }});
    ASSERT_EQ(seen.size(), 8u);
    for (size_t after : {1, 2})
        EXPECT_NE(lineOf(seen[after], "1010").find("TREE"), std::string::npos) << seen[after];
    EXPECT_FALSE(fs::exists(path("trees.csv")));
    EXPECT_FALSE(fs::exists(path("trees.csv.part")));
    EXPECT_NE(seen.back().find("no tables"), std::string::npos) << seen.back();
}

TEST_F(RecordsPanelTest, TablesThatAreMadeMeanwhileAreInTheList) {
    const char* const kPoles = "create table POLE (PT_ID TEXT(20)); insert into POLE values ('P1')";
    Strings seen = panelBeside({[&] {
                                    sql(kPoles);
                                    return key("F5");
                                },
                                [] { return pick("1002", "POLE"); }});
    EXPECT_NE(seen.back().find("'P1'"), std::string::npos);

    // The first one of an output comes behind the next command.
    makeOutput("fresh.mdb");
    lisp("(cf:gis_smart_prompting 2 2 " + quoted("fresh.mdb") + ")");
    ASSERT_EQ(lisp("(load \"gis.lsp\") t"), "T");
    makePoint("e", "50.0 50.0 0.0");
    lisp("(sssetfirst nil (ssadd e))");
    answer(134, {click("Cancel")});
    seen = panelBeside({[&] {
        sqlite("fresh.mdb", kPoles);
        return click("New Record...");
    }});
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_NE(seen[0].find("no tables"), std::string::npos);
    EXPECT_NE(seen[1].find("'P1'"), std::string::npos) << seen[1];
}

TEST_F(RecordsPanelTest, RowsAreErasedAfterAQuestionThatCounts) {
    panel({clickCell(2, 3), click("Erase...")});
    EXPECT_EQ(sql("select count(*) from TREE"), "5\n") << "nobody has answered";
    ui_.answerQuestion("Erase records", "Yes");
    const std::string said = panel({clickCell(2, 3), click("Erase..."), show()});
    EXPECT_EQ(sql("select count(*) from TREE"), "4\n");
    EXPECT_EQ(keysIn(pictures()[0]), "T1 T2 T4 T5") << said;
    EXPECT_EQ(lisp("(cdr (assoc -3 (entget c '(\"ZGEO_GIS_2000\"))))"), "nil");
}

TEST_F(RecordsPanelTest, RecordsAreTakenAlongAsTextAndAsAFile) {
    panel({clickCell(2, 2), key("Shift+Down"), click("Copy")});
    EXPECT_EQ(ui_.clipboard(),
              "PT_ID\tGIS_KEY\tSPECIES\tDBH\tNOTES\nT2\tTREE\tMaple\t12.5\t\n"
              "T3\tTREE\toak\t41\tby the gate, leaning\n");
    ui_.answerFile(path("trees.csv"));
    panel({text("1004", "leaning"), click("Save as CSV..."), show()});
    EXPECT_EQ(read("trees.csv"),
              "PT_ID,GIS_KEY,SPECIES,DBH,NOTES\r\nT3,TREE,oak,41,\"by the gate, leaning\"\r\n");
    EXPECT_NE(pictures()[0].find("1 record is in " + path("trees.csv")), std::string::npos);
    ui_.answerFile("/proc/trees.csv");
    panel({click("Save as CSV..."), show()});
    EXPECT_NE(pictures()[0].find("Cannot write /proc/trees.csv."), std::string::npos);
}

TEST_F(RecordsPanelTest, ANewRecordIsFilledInTheSheetOfTheSelectedEntity) {
    panel({show()});
    EXPECT_NE(pictures()[0].find("\"New Record...\" (disabled)"), std::string::npos) << "nothing is selected";
    ASSERT_EQ(lisp("(load \"gis.lsp\") t"), "T");
    makePoint("e", "50.0 50.0 0.0");
    lisp("(sssetfirst nil (ssadd e))");
    answer(134, {cell(2, "14"), click("OK")});
    panel({click("New Record..."), show()});
    EXPECT_NE(pictures()[0].find("6 of 6"), std::string::npos) << pictures()[0];
    EXPECT_EQ(sql("select count(*) from TREE"), "6\n") << "of the table that is shown";
    EXPECT_NE(lisp("(cdr (assoc -3 (entget e '(\"ZGEO_GIS_2000\"))))"), "nil");
}

TEST_F(RecordsPanelTest, OtherTablesAndDatabasesAreShown) {
    sql("create table POLE (PT_ID TEXT(20), H DOUBLE); insert into POLE values ('P1', 5)");
    makeOutput("other.mdb");
    sqlite("other.mdb", "create table HOUSE (NUMBER INTEGER); insert into HOUSE values (7)");
    answer(149, {click("Existing")});
    ui_.answerFile(path("other.mdb"));
    panel({pick("1002", "POLE"), show(), pick("1002", "Another database..."), show(),
           pick("1002", "The current output database"), show()});
    const Strings seen = pictures();
    ASSERT_EQ(seen.size(), 3u);
    EXPECT_NE(seen[0].find("'P1'"), std::string::npos);
    EXPECT_NE(seen[1].find("'7'"), std::string::npos);
    EXPECT_NE(seen[1].find("\"Select Shown\" (disabled)"), std::string::npos)
        << "nothing can be linked to it";
    EXPECT_NE(seen[2].find("'P1'"), std::string::npos) << "the table that was shown before";
    panel({show()}, " " + quoted("other.mdb"));
    EXPECT_NE(pictures()[0].find("'7'"), std::string::npos);
}

TEST_F(RecordsPanelTest, ALargeTableIsAskedAboutOnceForAnIndex) {
    sql("create table DIGIT (I INTEGER)");
    for (int digit = 0; digit < 10; ++digit) sql("insert into DIGIT values (" + std::to_string(digit) + ")");
    sql("create table STONE (PT_ID TEXT(20), N INTEGER); insert into STONE select 'S', a.I from DIGIT a, "
        "DIGIT b, DIGIT c, "
        "DIGIT d, DIGIT e where e.I < 3; drop table DIGIT");
    ui_.answerQuestion("Index", "Yes");
    panel({pick("1002", "STONE"), show(), key("F5"), show()});
    EXPECT_NE(pictures()[0].find("30 000 of 30 000"), std::string::npos);
    EXPECT_NE(pictures()[0].find("The index is made."), std::string::npos);
    EXPECT_EQ(lisp("(gis:index \"STONE\")"), "0") << "it is there";
    panel({pick("1002", "STONE")});
    EXPECT_FALSE(shown("question [Index]"));
    // By its index even a large table shows the row of an entity.
    sql("insert into TREE (PT_ID, GIS_KEY) select PT_ID, 'TREE' from STONE");
    EXPECT_EQ(lisp("(gis:index \"TREE\")"), "1");
    lisp("(sssetfirst nil (ssadd b))");
    panel({show()}, " \"\" \"TREE\"");
    EXPECT_NE(pictures()[0].find("at (2, 2)"), std::string::npos);
}

TEST_F(RecordsPanelTest, WithoutADatabaseOrATableItSaysSo) {
    panel({show()}, " " + quoted("none.mdb"));
    EXPECT_NE(pictures()[0].find("There is no database " + path("none.mdb")), std::string::npos);
    makeOutput("empty.mdb");
    panel({show()}, " " + quoted("empty.mdb"));
    EXPECT_NE(pictures()[0].find("no tables"), std::string::npos);
    write("torn.mdb", std::string(5000, 'x'));
    panel({show(), key("F5"), show()}, " " + quoted("torn.mdb"));
    EXPECT_EQ(pictures().size(), 2u);
}
