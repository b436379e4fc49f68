// Notes that are about to come in, above what their table already holds.
#include "module/transfer/table_dialog.h"
#include "platform/text/text.h"
#include "tests/module/transfer/table_fixture.h"

using norvane::NoteRecord;

namespace {

using Strings = std::vector<std::string>;

class NotesTest : public TableTest {
  protected:
    // Shows records of the feature TREE; how many were written.
    size_t preview(const std::string& file, const std::vector<NoteRecord>& records,
                   std::vector<ui::Step> steps) {
        answer(kTable, std::move(steps));
        return norvane::PreviewRecords(path(file), "TREE", records);
    }
    void makeTrees(const std::string& file) const {
        CDaoDatabase database;
        database.Create(path(file));
        CDaoTableDef table(&database);
        table.Create("TREE");
        for (const char* name : {"PT_ID", "GIS_KEY", "KIND"}) table.CreateField(name, dbText, 255);
        table.CreateField("ALIVE", dbBoolean, 1);
        table.Append();
        CDaoRecordset records(&database);
        records.Open(dbOpenDynaset, "SELECT * FROM TREE");
        for (const char* id : {"7", "8"}) {
            records.AddNew();
            records.SetFieldValue("PT_ID", id);
            records.SetFieldValue("GIS_KEY", "tree");
            records.SetFieldValue("KIND", "BIRCH");
            records.Update();
        }
        records.Close();
        database.Close();
    }
    const std::vector<NoteRecord> kNotes = {
        {{"KIND", "6", "OAK"}, {"PT_ID", "6", "7"}, {"ALIVE", "0", "Yes"}, {"GIRTH", "4", "1.25"}},
        {{"PT_ID", "6", "9"}, {"KIND", "6", "ELM"}, {"NOTES", "6", "leans"}, {"AGE", "2", "120"}}};
};

TEST_F(NotesTest, EachRecordStandsAboveWhatIsStored) {
    makeTrees("trees.mdb");
    EXPECT_EQ(preview("trees.mdb", kNotes, {show(), click("Quit")}), 0U);
    const std::string seen = pictures()[0];
    EXPECT_NE(seen.find("[162] Preview/Edit Values for Feature  -  TREE"), std::string::npos);
    EXPECT_NE(seen.find("\"Click in first cell if you want to lock a row!\""), std::string::npos);
    EXPECT_EQ(words(lineOf(seen, "PT_ID")), "PT_ID GIS_KEY NOTES KIND ALIVE GIRTH AGE") << seen;
    EXPECT_EQ(words(lineOf(seen, "-Note- 7")), "-Note- 7 TREE '' 'OAK' Yes {Yes|No} '1.25' ''") << seen;
    EXPECT_EQ(words(lineOf(seen, "-Mdb-  7")), "-Mdb- 7 tree BIRCH No") << seen;
    EXPECT_EQ(words(lineOf(seen, "-Note- 9")), "-Note- 9 TREE 'leans' 'ELM' {Yes|No} '' '120'") << seen;
    EXPECT_EQ(activeCells()[0], "3,1");
}

TEST_F(NotesTest, WordsForYesAndNoAreThoseOfTheList) {
    makeTrees("trees.mdb");
    const std::vector<NoteRecord> notes = {{{"PT_ID", "6", "7"}, {"ALIVE", "6", "t"}},
                                           {{"PT_ID", "6", "8"}, {"ALIVE", "6", "dead"}},
                                           {{"PT_ID", "6", "9"}, {"ALIVE", "6", ""}}};
    preview("trees.mdb", notes, {show(), click("Quit")});
    EXPECT_EQ(words(lineOf(pictures()[0], "-Note- 7")), "-Note- 7 TREE Yes {Yes|No}");
    EXPECT_EQ(words(lineOf(pictures()[0], "-Note- 8")), "-Note- 8 TREE No {Yes|No}");
    EXPECT_EQ(words(lineOf(pictures()[0], "-Note- 9")), "-Note- 9 TREE {Yes|No}");
}

TEST_F(NotesTest, SavingMakesColumnsChangesAndAdds) {
    makeTrees("trees.mdb");
    ui_.answerBox("Yes");
    EXPECT_EQ(
        preview("trees.mdb", kNotes,
                joined({{cellAt(4, 1, "LIME"), cellAt(7, 1, "young")}, save(), {show(), click("Quit")}})),
        2U);
    EXPECT_EQ(
        sqlite("trees.mdb", "SELECT PT_ID, GIS_KEY, KIND, ALIVE, NOTES, GIRTH, AGE FROM TREE ORDER BY PT_ID"),
        "7|TREE|LIME|-1||1.25|\n8|tree|BIRCH|0|||\n9|TREE|ELM|0|leans||120\n");
    const std::string schema =
        outputOf(std::string("'") + NORVANE_BIN_DIR + "/jet' schema '" + path("trees.mdb") + "' TREE");
    for (const char* part : {"NOTES", "GIRTH", "AGE"})
        EXPECT_NE(schema.find(part), std::string::npos) << schema;
    EXPECT_NE(printed().find("PT_ID 7, AGE: \"young\" is no whole number"), std::string::npos);
    EXPECT_NE(lineOf(pictures()[0], "-Mdb-  7").find("LIME"), std::string::npos)
        << "what is stored now is shown";
    // What a note does not say stays as it is stored.
    const std::vector<NoteRecord> sparse = {{{"PT_ID", "6", "8"}, {"KIND", "6", ""}, {"AGE", "2", "5"}}};
    ui_.answerBox("Yes");
    preview("trees.mdb", sparse, joined({{cellAt(4, 1, "6")}, save(), {click("Quit")}}));
    EXPECT_EQ(sqlite("trees.mdb", "SELECT KIND, AGE FROM TREE WHERE PT_ID = '8'"), "BIRCH|6\n");
    EXPECT_EQ(faultsOf(path("trees.mdb")), "");
}

TEST_F(NotesTest, ATableThatIsNotThereIsMade) {
    CDaoDatabase database;
    database.Create(path("new.sqlite"));
    database.Close();
    ui_.answerBox("Yes");
    EXPECT_EQ(preview("new.sqlite", kNotes, joined({{cellAt(4, 1, "LIME")}, save(), {click("Quit")}})), 2U);
    EXPECT_EQ(sqlite("new.sqlite", "SELECT PT_ID, GIS_KEY, KIND, ALIVE, GIRTH, AGE FROM TREE"),
              "7|TREE|LIME|Yes|1.25|\n9|TREE|ELM|||120\n");
}

TEST_F(NotesTest, LongTextsAreCutToTheirColumnAndRecordsWithoutAKeyAreLeftOut) {
    makeTrees("trees.mdb");
    std::string remark;
    for (int i = 0; i < 300; ++i) remark += "\u00fc";
    const std::vector<NoteRecord> notes = {{{"PT_ID", "6", "7"}, {"KIND", "6", remark}, {"AGE", "2", ""}},
                                           {{"KIND", "6", "ELM"}}};
    ui_.answerBox("Yes");
    EXPECT_EQ(preview("trees.mdb", notes, joined({{cellAt(4, 1, "3")}, save(), {click("Quit")}})), 1U);
    const std::string said = printed();
    EXPECT_NE(said.find("PT_ID 7, KIND: cut to the 255 characters of its column"), std::string::npos) << said;
    EXPECT_NE(said.find("Record 2: it has no PT_ID"), std::string::npos) << said;
    EXPECT_EQ(sqlite("trees.mdb", "SELECT KIND FROM TREE WHERE PT_ID = '7'"), remark.substr(0, 510) + "\n");
    EXPECT_EQ(sqlite("trees.mdb", "SELECT COUNT(*) FROM TREE"), "2\n");
}

TEST_F(NotesTest, AColumnThatCountsByItselfIsLeftOut) {
    {
        CDaoDatabase database;
        database.Create(path("trees.mdb"));
        CDaoTableDef table(&database);
        table.Create("TREE");
        for (const char* name : {"PT_ID", "GIS_KEY", "KIND"}) table.CreateField(name, dbText, 255);
        table.CreateField("AGE", dbLong, 4, dbAutoIncrField);
        table.Append();
    }
    ui_.answerBox("Yes");
    EXPECT_EQ(preview("trees.mdb", kNotes, joined({{cellAt(4, 1, "LIME")}, save(), {click("Quit")}})), 2U);
    EXPECT_NE(printed().find("PT_ID 9, AGE: AGE is not written"), std::string::npos);
    EXPECT_EQ(sqlite("trees.mdb", "SELECT PT_ID, AGE FROM TREE ORDER BY PT_ID"), "7|1\n9|2\n");
}

TEST_F(NotesTest, ALockedRowIsNotSaved) {
    makeTrees("trees.mdb");
    ui_.answerBox("Yes");
    EXPECT_EQ(preview("trees.mdb", kNotes,
                      joined({{cellAt(4, 3, "ASH"), clickAt(1, 1), show(), clickAt(1, 3), clickAt(1, 3)},
                              {clickAt(5, 4), show(), clickAt(2, 1), show()},
                              {clickAt(2, 4), show(), clickAt(1, 4), show()},
                              save(),
                              {click("Quit")}})),
              1U);
    EXPECT_EQ(stateOf(pictures()[0]), "The row is locked: it is not saved.");
    EXPECT_EQ(activeCells(), (Strings{"3,1", "5,3", "3,1", "3,4", "1,3"}));
    EXPECT_EQ(sqlite("trees.mdb", "SELECT PT_ID, KIND FROM TREE ORDER BY PT_ID"),
              "7|BIRCH\n8|BIRCH\n9|ASH\n");
}

TEST_F(NotesTest, WhatIsTypedIntoALockedRowDoesNotKeepTheDialogOpen) {
    makeTrees("trees.mdb");
    ui_.answerBox("Yes");
    ui_.answerBox("OK");
    EXPECT_EQ(preview("trees.mdb", kNotes, {cellAt(4, 3, "ASH"), clickAt(1, 3), click("Quit")}), 1U);
    EXPECT_EQ(boxes(), (Strings{"box [Alert] \"Would you like to save the changes?\"",
                                "box [Alert] \"Process done...\""}));
    EXPECT_EQ(sqlite("trees.mdb", "SELECT COUNT(*) FROM TREE WHERE PT_ID = '9'"), "0\n");
    // Without its lock it is asked about again.
    ui_.clearLog();
    ui_.answerBox("Yes");
    ui_.answerBox("OK");
    ui_.answerBox("No");
    preview("trees.mdb", kNotes,
            joined({{cellAt(4, 3, "ASH"), clickAt(1, 3)}, save(), {clickAt(1, 3), click("Quit")}}));
    ASSERT_EQ(boxes().size(), 3U);
    EXPECT_EQ(boxes()[2], "box [Alert] \"Would you like to save the changes?\"");
}

TEST_F(NotesTest, KeysGoFromNoteToNote) {
    makeTrees("trees.mdb");
    const ui::Step seen = show();
    preview("trees.mdb", kNotes, {key("Down"),   seen,
                                  key("Up"),     seen,
                                  clickAt(7, 1), key("Enter"),
                                  seen,          clickAt(3, 1),
                                  key("Left"),   seen,
                                  clickAt(7, 1), key("Right"),
                                  seen,          key("Left"),
                                  key("Left"),   key("Left"),
                                  seen,          key("PageDown"),
                                  seen,          key("Ctrl+End"),
                                  key("Tab"),    seen,
                                  click("Quit")});
    EXPECT_EQ(activeCells(), (Strings{"3,3", "3,1", "3,3", "3,1", "3,3", "7,1", "7,3", "7,3"}));
    EXPECT_NE(pictures().back().find("\n* 1902 edit"), std::string::npos)
        << "the last cell is that of the last note";
}

}  // namespace
