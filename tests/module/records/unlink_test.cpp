// Links taken off, records erased, and what undo leaves behind.
#include "module/records/erase_records.h"
#include "tests/module/linktools/link_fixture.h"

namespace {

using norvane::EraseReport;
using norvane::RecordValues;

class UnlinkTest : public LinkTools {
  protected:
    void SetUp() override {
        LinkTools::SetUp();
        lisp("(load \"gis.lsp\")");
        sql("create table TREE (PT_ID TEXT(255), GIS_KEY TEXT(255), DBH LONG);"
            "insert into TREE values ('1','TREE',10), ('2','TREE',20), ('3','TREE',30), ('1','BUSH',5)");
        sqlite("template.mdb",
               "create table ZGEO_LINKS (GIS_NAME TEXT(255), TABLE_NAME TEXT(255), LPN_NAME TEXT(255), "
               "IS_CURRENT "
               "TEXT(255)); insert into ZGEO_LINKS (GIS_NAME, TABLE_NAME) values ('BUSH', 'TREE')");
        lisp("(regapp \"ZGEO_GIS_2000\") (setq tmpl " + quoted("template.mdb") + " outp " +
             quoted("output.mdb") +
             ")"
             "(defun tree (feature key) (entmakex (list '(0 . \"POINT\") '(10 1.0 2.0 0.0) '(8 . \"TREES\") "
             "(list "
             "-3 (cons \"ZGEO_GIS_2000\" (mapcar '(lambda (s) (cons 1000 s)) (list tmpl outp feature "
             "\"PT_ID\" "
             "key)))))))"
             "(defun linked () (if (setq all (ssget \"_X\" '((-3 (\"ZGEO_GIS_2000\"))))) (sslength all) 0))");
        printed();
    }
    // Whether a question was asked in these words, and nobody has answered it.
    bool unanswered(const std::string& question, const std::string& standard) const {
        return std::any_of(ui_.log().begin(), ui_.log().end(), [&](const std::string& line) {
            return line.starts_with("question " + question + " flags") &&
                   line.ends_with("-> " + standard + " by default");
        });
    }
    std::string keys() const { return sql("select PT_ID, GIS_KEY from TREE order by PT_ID, GIS_KEY"); }
    // GIS-UNLINK on everything, typed; what the command line says behind the selection.
    std::string unlinkAll() {
        printed();
        inputs_ = {"ALL", ""};
        EXPECT_TRUE(host_->runLine("GIS-UNLINK"));
        const std::string all = printed();
        const size_t last = all.rfind("Select objects: ");
        return last == std::string::npos ? all : all.substr(last + 16);
    }
    // A line of the command line; what it says.
    std::string said(const std::string& line) {
        printed();
        host_->runLine(line);
        return printed();
    }

    // --- Rows erased

    RecordValues row(const std::string& key, const std::string& feature = "TREE",
                     const std::string& also = "") {
        CDaoRecordset records(&database_);
        records.Open(dbOpenDynaset,
                     "SELECT * FROM TREE WHERE PT_ID = '" + key + "' AND GIS_KEY = '" + feature + "'" + also);
        RecordValues values;
        for (int i = 0; i < records.GetFieldCount(); ++i) values.push_back(records.GetFieldValue(i));
        return values;
    }
    EraseReport erase(std::vector<RecordValues> rows) {
        return norvane::EraseRows(database_, {path("output.mdb"), "TREE", "PT_ID", std::move(rows)});
    }
    void open() { database_.Open(path("output.mdb")); }

    CDaoDatabase database_;
};

TEST_F(UnlinkTest, LinksGoAndRecordsStayUnlessOneAgrees) {
    lisp("(tree \"TREE\" \"1\") (tree \"TREE\" \"2\") (entmake '((0 . \"POINT\") (10 0.0 0.0 0.0)))");
    EXPECT_EQ(unlinkAll(),
              "\n2 links taken off. 2 records stay in the database. Passed over: 1 entity without a link.");
    EXPECT_TRUE(
        unanswered("[Unlink] \"2 links taken off; 2 records have no link any more.\nDo you want to erase "
                   "them? Undo does not bring records back.\"",
                   "No"))
        << ui_.log().back();
    EXPECT_EQ(lisp("(linked)"), "0");
    EXPECT_EQ(keys(), "1|BUSH\n1|TREE\n2|TREE\n3|TREE\n");
    said("U");
    EXPECT_EQ(lisp("(linked)"), "2") << "one step of undo";

    ui_.answerQuestion("Unlink", "Yes");
    EXPECT_EQ(unlinkAll(), "\n2 links taken off, 2 records erased. Passed over: 1 entity without a link.")
        << "and nothing about records that stay";
    EXPECT_EQ(keys(), "1|BUSH\n3|TREE\n");
    EXPECT_EQ(unlinkAll(), "\n0 links taken off. Passed over: 3 entities without a link.");
    EXPECT_EQ(faultsOf(path("output.mdb")), "");
}

TEST_F(UnlinkTest, ARecordThatOthersLeadToStays) {
    lisp(
        "(setq a (tree \"TREE\" \"1\") b (tree \"TREE\" \"1\") c (tree \"BUSH\" \"1\") d (tree \"TREE\" "
        "\"77\") set (ssadd))"
        "(ssadd a set) (ssadd d set)");
    ui_.answerQuestion("Unlink", "Yes");
    EXPECT_EQ(lisp("(gis:unlink set)"), "2");
    EXPECT_EQ(
        printed(),
        "\n2 links taken off. 1 record stays, since other entities lead to it. 1 record was not there.");
    EXPECT_EQ(keys(), "1|BUSH\n1|TREE\n2|TREE\n3|TREE\n");
    // Of another feature, the same key is another record.
    lisp("(setq set (ssadd)) (ssadd b set)");
    ui_.answerQuestion("Unlink", "Yes");
    lisp("(gis:unlink set)");
    EXPECT_EQ(keys(), "1|BUSH\n2|TREE\n3|TREE\n");
    EXPECT_EQ(lisp("(linked)"), "1");
}

TEST_F(UnlinkTest, OfDoublesTheFirstIsErased) {
    sql("insert into TREE values ('1','TREE',11)");
    lisp("(tree \"TREE\" \"1\")");
    ui_.answerQuestion("Unlink", "Yes");
    EXPECT_EQ(unlinkAll(), "\n1 link taken off, 1 record erased.");
    EXPECT_EQ(sql("select DBH from TREE where PT_ID = '1' and GIS_KEY = 'TREE'"), "11\n");
}

TEST_F(UnlinkTest, ManyRecordsAreErasedInOnePass) {
    std::string values;
    for (int i = 100; i < 160; ++i) values += (i > 100 ? ", ('" : "('") + std::to_string(i) + "','Tree',7)";
    sql("insert into TREE values " + values + ", ('100','TREE',8), ('101','BUSH',8), (NULL,NULL,8)");
    lisp("(setq i 98) (repeat 62 (tree \"TREE\" (itoa i)) (setq i (1+ i)))");
    answer(1000, {show(), show(), click("Cancel")});
    ui_.answerQuestion("Unlink", "Yes");
    EXPECT_EQ(unlinkAll(), "\n62 links taken off. Stopped. 62 records stay in the database.");
    EXPECT_EQ(sql("select count(*) from TREE"), "67\n");
    said("U");
    ui_.answerQuestion("Unlink", "Yes");
    EXPECT_EQ(unlinkAll(), "\n62 links taken off, 60 records erased. 2 records were not there.");
    EXPECT_EQ(sql("select PT_ID, DBH from TREE where DBH > 6 and DBH < 9"), "100|8\n101|8\n|8\n");
    EXPECT_EQ(sql("select count(*) from TREE"), "7\n");
}

TEST_F(UnlinkTest, BadInputIsNoReasonToStop) {
    EXPECT_EQ(lisp("(gis:unlink)"), "0");
    EXPECT_EQ(lisp("(gis:unlink \"set\")"), "0");
    // Broken off, and into a database that is not there.
    lisp(
        "(setq a (entmakex (list '(0 . \"POINT\") '(10 1.0 2.0 0.0) (list -3 (list \"ZGEO_GIS_2000\" (cons "
        "1000 "
        "tmpl)))))) (setq outp \"gone.mdb\") (setq b (tree \"TREE\" \"1\") set (ssadd a)) (ssadd b set)");
    printed();
    EXPECT_EQ(lisp("(gis:unlink set)"), "2");
    EXPECT_EQ(printed(), "\n2 links taken off. 2 links led to no table that is there.");
    EXPECT_EQ(lisp("(linked)"), "0");
}

// --- Records erased ---------------------------------------------------------------------------------------

TEST_F(UnlinkTest, RowsAreErasedWithTheirLinksOrWithoutThem) {
    lisp("(tree \"TREE\" \"1\") (tree \"TREE\" \"1\") (tree \"TREE\" \"2\") (tree \"BUSH\" \"1\")");
    open();
    EXPECT_EQ(erase({row("1")}).message, "") << "nobody has agreed";
    EXPECT_TRUE(
        unanswered("[Erase records] \"1 record, 2 entities linked to it.\nDo you want to erase it? Undo does "
                   "not bring records back.\"",
                   "Cancel"))
        << ui_.log().back();
    EXPECT_EQ(keys(), "1|BUSH\n1|TREE\n2|TREE\n3|TREE\n");

    ui_.answerQuestion("Erase records", "Erase, links too");
    const EraseReport both = erase({row("1"), row("3")});
    EXPECT_EQ(both.message, "2 records erased, 2 links taken off.");
    EXPECT_EQ(keys(), "1|BUSH\n2|TREE\n");
    EXPECT_EQ(lisp("(linked)"), "2");

    ui_.answerQuestion("Erase records", "Erase, links stay");
    EXPECT_EQ(erase({row("2")}).message, "1 record erased. 1 entity leads nowhere now.");
    EXPECT_EQ(lisp("(linked)"), "2");
    EXPECT_EQ(keys(), "1|BUSH\n");
    database_.Close();
    EXPECT_EQ(faultsOf(path("output.mdb")), "");
}

TEST_F(UnlinkTest, ARowThatSomebodyHasChangedStays) {
    lisp("(tree \"TREE\" \"2\")");
    open();
    const std::vector<RecordValues> rows = {row("1"), row("2"), row("3")};
    database_.Execute("UPDATE TREE SET DBH = 21 WHERE PT_ID = '2'");
    database_.Execute("DELETE FROM TREE WHERE PT_ID = '3'");
    ui_.answerQuestion("Erase records", "Yes");
    const EraseReport report = erase(rows);
    EXPECT_EQ(report.message,
              "1 record erased. 2 records stay: somebody has changed or erased them meanwhile.");
    EXPECT_EQ(report.kept, 2U);
    EXPECT_EQ(keys(), "1|BUSH\n2|TREE\n");
    EXPECT_EQ(lisp("(linked)"), "1") << "its link as well";
}

TEST_F(UnlinkTest, ManyRowsAreErasedInOnePass) {
    std::string values;
    for (int i = 100; i < 160; ++i)
        values += (i > 100 ? ", ('" : "('") + std::to_string(i) + "','TREE',7,0.1)";
    open();
    CDaoTableDef table(&database_);
    table.Open("TREE");
    table.CreateField("X", dbDouble, 8);
    table.Close();
    // Doubles: one differs in a digit that no text shows.
    database_.Execute("INSERT INTO TREE VALUES ('140', 'TREE', 7, 0.1000000001), " + values +
                      ", ('100','TREE',8,0.1)");
    const auto same = " AND DBH = 7 AND X < 0.10000000005";
    std::vector<RecordValues> rows;
    for (int i = 100; i < 150; ++i) rows.push_back(row(std::to_string(i), "TREE", same));
    database_.Execute("UPDATE TREE SET DBH = 9 WHERE PT_ID = '149'");
    ui_.answerQuestion("Erase records", "Yes");
    EXPECT_EQ(erase(rows).message,
              "49 records erased. 1 record stays: somebody has changed or erased it meanwhile.");
    EXPECT_TRUE(shown("50 records, no entity linked to them."));
    EXPECT_EQ(sql("select count(*), min(PT_ID) from TREE where DBH > 6 and DBH < 10"), "13|100\n")
        << "and their doubles";
    EXPECT_EQ(sql("select count(*) from TREE where PT_ID = '140' and X > 0.10000000005"), "1\n");
    // Stopped on the way, nothing is erased.
    rows.clear();
    for (int i = 150; i < 160; ++i) rows.push_back(row(std::to_string(i), "TREE", same));
    answer(1000, {show(), show(), click("Cancel")});
    ui_.answerQuestion("Erase records", "Yes");
    EXPECT_EQ(erase(rows).message, "Stopped: nothing is erased.");
    EXPECT_EQ(sql("select count(*) from TREE where DBH = 7"), "11\n");
}

TEST_F(UnlinkTest, WhatTheDatabaseRefusesErasesNothing) {
    open();
    std::vector<RecordValues> rows = {row("1")};
    database_.DeleteTableDef("TREE");
    EXPECT_TRUE(erase(rows).message.starts_with("Nothing is erased: "));
}

// --- The old record of the sheet --------------------------------------------------------------------------

class SheetOfAnotherFeature : public UnlinkTest {
  protected:
    void SetUp() override {
        UnlinkTest::SetUp();
        sqlite("output.mdb", "drop table TREE");
        makeEntity();
        answer(134, {cell(2, "14"), click("OK")});
        ASSERT_EQ(prompt("17", "TREE"), "1");
        printed();
    }
    // The sheet of the entity, saved as a manhole.
    std::string saveAsManhole() {
        answer(134, {pick("Available Features:", "MANHOLE"), cell(1, "M1"), cell(3, "4.5"), cell(6, "2"),
                     click("OK")});
        EXPECT_EQ(prompt("17", "TREE"), "1");
        EXPECT_NE(link().find("(1000 . \"MANHOLE\")"), std::string::npos);
        return printed();
    }
    std::string records() const {
        return sql("select PT_ID, GIS_KEY from TREE") + sql("select PT_ID, GIS_KEY from MANHOLE");
    }
};

TEST_F(SheetOfAnotherFeature, TheOldRecordStaysUnlessOneAgrees) {
    EXPECT_NE(saveAsManhole().find("\nThe old record, PT_ID 17 of TREE, stays in the database."),
              std::string::npos);
    EXPECT_TRUE(unanswered(
        "[Old record] \"The entity is linked to a record of MANHOLE now. No entity leads to its old record, "
        "PT_ID 17 of TREE.\nDo you want to erase the old record? Undo does not bring it back.\"",
        "No"));
    EXPECT_EQ(records(), "17|TREE\n17|MANHOLE\n");
}

TEST_F(SheetOfAnotherFeature, TheOldRecordIsErasedBehindTheNewLink) {
    ui_.answerQuestion("Old record", "Yes");
    EXPECT_NE(saveAsManhole().find("\nThe old record, PT_ID 17 of TREE, is erased."), std::string::npos);
    EXPECT_EQ(records(), "17|MANHOLE\n");
    // The same feature again asks nothing.
    ui_.clearLog();
    answer(134, {cell(6, "3"), click("OK")});
    EXPECT_EQ(prompt("17", "MANHOLE"), "1");
    EXPECT_FALSE(shown("[Old record]"));
}

TEST_F(SheetOfAnotherFeature, TheOldRecordOfAnotherEntityStays) {
    lisp("(tree \"TREE\" \"17\")");
    EXPECT_NE(saveAsManhole().find("\nThe old record, PT_ID 17 of TREE, stays: 1 other entity leads to it."),
              std::string::npos);
    EXPECT_FALSE(shown("[Old record]"));
    EXPECT_EQ(records(), "17|TREE\n17|MANHOLE\n");
}

TEST_F(SheetOfAnotherFeature, ASheetThatIsCancelledAsksNothing) {
    answer(134, {pick("Available Features:", "MANHOLE"), click("Cancel")});
    EXPECT_EQ(prompt("17", "TREE"), "0");
    EXPECT_FALSE(shown("[Old record]"));
}

// --- Records that undo has left ---------------------------------------------------------------------------

class NewRecords : public UnlinkTest {
  protected:
    void SetUp() override {
        UnlinkTest::SetUp();
        sqlite("output.mdb", "drop table TREE");
        printed();
    }
    // A tree that is drawn and linked by a line of its own; the key of its record.
    void makeTree(const std::string& key) {
        makeEntity();
        answer(134, {cell(2, "14"), click("OK")});
        EXPECT_NE(said("(cf:gis_smart_prompting 1 " + quoted("") + " tmpl outp \"PT_ID\" \"" + key +
                       "\" 1.0 2.0 3.0 ent \"TREE\" 1 0.0 0.0 0.0 0.0 0.0 0.0 \"\")")
                      .find("1"),
                  std::string::npos);
    }
    std::string eraseNew() { return said("GIS-ERASE-NEW"); }
    std::string keysOfTrees() const { return sql("select PT_ID from TREE order by PT_ID"); }
};

TEST_F(NewRecords, ThoseThatUndoHasLeftAreErased) {
    EXPECT_EQ(eraseNew(), "\nNo record that was made new has lost its link.");
    makeTree("1"), makeTree("2");
    EXPECT_EQ(eraseNew(), "\nNo record that was made new has lost its link.");
    EXPECT_NE(said("U").find("\nThe link of 1 entity is gone; its record stays in the database."),
              std::string::npos);
    EXPECT_EQ(eraseNew(), "");
    EXPECT_TRUE(
        unanswered("[Erase new records] \"1 record that was made new has no link any more: 2.\nDo you want "
                   "to erase it? Undo does not bring records back.\"",
                   "No"));
    EXPECT_EQ(keysOfTrees(), "1\n2\n");
    said("REDO");
    EXPECT_EQ(eraseNew(), "\nNo record that was made new has lost its link.") << "it is linked again";
    said("U");
    ui_.answerQuestion("Erase new records", "Yes");
    EXPECT_EQ(eraseNew(), "\n1 record erased.");
    EXPECT_EQ(keysOfTrees(), "1\n");
    EXPECT_EQ(eraseNew(), "\nNo record that was made new has lost its link.");
    // Two steps undone are two runs, the last one first.
    makeTree("3"), makeTree("4");
    said("U"), said("U");
    ui_.answerQuestion("Erase new records", "Yes");
    EXPECT_EQ(eraseNew(), "\n1 record erased.");
    EXPECT_EQ(keysOfTrees(), "1\n3\n");
    ui_.answerQuestion("Erase new records", "Yes");
    EXPECT_EQ(eraseNew(), "\n1 record erased.");
    EXPECT_EQ(keysOfTrees(), "1\n");
}

TEST_F(NewRecords, ThePanelErasesThem) {
    makeTree("1"), makeTree("2");
    said("U");
    ui_.answerQuestion("Erase new records", "Yes");
    answer(1801, {click("Erase Unlinked..."), {ui::Step::Kind::Close}});
    EXPECT_NE(said("(gis:records-panel outp \"TREE\")").find("\n1 record erased."), std::string::npos);
    EXPECT_EQ(keysOfTrees(), "1\n");
}

TEST_F(NewRecords, ARecordThatWasThereBeforeIsNone) {
    sql("create table TREE (PT_ID TEXT(255), GIS_KEY TEXT(255)); insert into TREE values ('1','TREE')");
    makeTree("1");
    said("U");
    EXPECT_EQ(eraseNew(), "\nNo record that was made new has lost its link.");
}

TEST_F(NewRecords, OneStepOfUndoIsOneRun) {
    makeTree("1");
    makeEntity();
    lisp("(setq a ent)");
    makeEntity();
    answer(134, {cell(2, "14"), click("OK")});
    answer(134, {cell(2, "15"), click("OK")});
    const std::string call = "(cf:gis_smart_prompting 1 " + quoted("") + " tmpl outp \"PT_ID\" ";
    const std::string rest = " \"TREE\" 1 0.0 0.0 0.0 0.0 0.0 0.0 \"\")";
    said("(progn " + call + "\"8\" 1.0 2.0 3.0 a" + rest + call + "\"9\" 1.0 2.0 3.0 ent" + rest + ")");
    said("U");
    ui_.answerQuestion("Erase new records", "Yes");
    EXPECT_EQ(eraseNew(), "\n2 records erased.");
    EXPECT_TRUE(shown("2 records that were made new have no link any more: 8, 9."));
    EXPECT_EQ(keysOfTrees(), "1\n");
    // A record that was to stay when its link went is not asked for again.
    makeTree("3");
    unlinkAll();
    EXPECT_EQ(eraseNew(), "\nNo record that was made new has lost its link.");
    host_->newDrawing();
    EXPECT_EQ(eraseNew(), "\nNo record that was made new has lost its link.");
}

TEST_F(NewRecords, ThoseOfAreasAreKnown) {
    sql("create table LOTS (PT_ID TEXT(255), GIS_KEY TEXT(255), LOT TEXT(255)); insert into LOTS values "
        "('4','LOTS','A')");
    lisp(
        "(defun square (x label) (entmake (list '(0 . \"LWPOLYLINE\") '(100 . \"AcDbEntity\") '(100 . "
        "\"AcDbPolyline\") "
        "'(90 . 4) '(70 . 1) (list 10 x 0.0) (list 10 (+ x 10.0) 0.0) (list 10 (+ x 10.0) 10.0) (list 10 x "
        "10.0))) "
        "(entmake (list '(0 . \"TEXT\") (list 10 (+ x 5.0) 5.0 0.0) '(40 . 1.0) (cons 1 label)))) "
        "(square 0.0 \"A\") (square 20.0 \"B\") (square 40.0 \"C\")");
    inputs_ = {"Text", "ALL", ""};
    answer(1390, {click("OK")});
    const std::string line = said("(cf:gis_smart_prompting 20 \"x\" tmpl outp)");
    ASSERT_NE(line.find("records changed 1, added 2."), std::string::npos) << line << ui_.log().back();
    said("U");
    ui_.answerQuestion("Erase new records", "Yes");
    EXPECT_EQ(eraseNew(), "\n2 records erased.");
    EXPECT_EQ(sql("select LOT from LOTS"), "A\n");
}

}  // namespace
