// Database File Utilities: the database and its tables, and the imports of note files.
#include "tests/module/transfer/utilities_fixture.h"

#include "tests/module/transfer/hostile_places.h"
#include "tests/platform/crash.h"
#include "tests/platform/dao/jet/readers.h"

namespace {

constexpr const char* kTwoPoles =
    "PT_ID:4  GIS_FILE:POLE.GIS\nPt Data,480354.5255,1630716.6981,561.761,POLE\nOwner,CITY\nCLASS,1\n"
    "PT_ID:O'NEIL  GIS_FILE:pole.gis\nOwner,D'ANGELO\nCLASS,2\nleans 2.5', call owner\n"
    "PT_ID:9\nCLASS,3\n";

class Utilities : public UtilitiesTest {};

}  // namespace

// --- Notes -------------------------------------------------------------------------------------------------

TEST_F(Utilities, BlocksBecomeRowsOfTheTableOfTheirFeature) {
    write("a.not", kTwoPoles);
    const std::string shown = importNotes("a.not");
    EXPECT_TRUE(has(shown, "[161] Import Note Data")) << shown;
    EXPECT_TRUE(has(shown, "[x] POLE: 2 points >>...")) << shown;
    EXPECT_TRUE(has(shown, "DATE TIME - 11/14/2005 ")) << shown;
    EXPECT_TRUE(has(shown, "2 button \"Exit\"")) << shown;
    EXPECT_TRUE(has(shown, "passed over without a feature: 1 (9)")) << shown;
    EXPECT_TRUE(has(shown, "POLE: 2 rows added, 0 changed")) << shown;
    EXPECT_EQ(output("select * from POLE"),
              "4|POLE|480354.5255|1630716.6981|561.761|POLE|CITY|1|\n"
              "O'NEIL|POLE|||||D'ANGELO|2|leans 2.5', call owner\n");
    EXPECT_EQ(
        outputOf("mdb-schema " + path("output.mdb") + " | grep -A12 'TABLE \\[POLE\\]' | tr -d '\\n\\t '"),
        "CREATETABLE[POLE]([PT_ID]Text(255),[GIS_KEY]Text(255),[NORTHING]Double,[EASTING]Double,[ELEVATION]"
        "Double,[DESCRIPTION]Text(255),[OWNER]Text(255),[CLASS]LongInteger,[NOTES]Text(255));");
    // The same again updates the rows. Empty values leave what is there.
    write("a.not", std::string(kTwoPoles) + "PT_ID:4  GIS_FILE:POLE.GIS\nCLASS,7\nOWNER,\n");
    EXPECT_TRUE(has(importNotes("a.not"), "POLE: 0 rows added, 2 changed"));
    EXPECT_EQ(output("select PT_ID, OWNER, CLASS from POLE"), "4|CITY|7\nO'NEIL|D'ANGELO|2\n");
    EXPECT_TRUE(has(read("featlink.ini"), "#K" + path("a.not")));
}

TEST_F(Utilities, OnlyCheckedFeaturesAreImported) {
    write("a.vtt",
          "PT_ID:1  GIS_FILE:TREE.GIS\r\nA,1\r\nPT_ID:2  GIS_FILE:\r\nA,2\r\nPT_ID:3  "
          "GIS_FILE:MH.GIS\r\nA,3\r\n");
    const std::string shown = importNotes(
        "a.vtt", {check(kTree, false, "TREE: 1 points >> 1"), check(kTree, false, "MH: 1 points >> 3")});
    EXPECT_TRUE(has(shown, "[161] Import Fieldline/Geoline/Rapidline GIS Data"));
    EXPECT_TRUE(has(shown, "[ ] TREE: 1 points >> 1")) << shown;
    EXPECT_TRUE(has(shown, "  not checked: TREE, MH")) << shown;
    EXPECT_TRUE(has(shown, "[x] UNKNOWN: 1 points >> 2")) << shown;
    EXPECT_EQ(outputOf("mdb-tables -1 " + path("output.mdb")), "UNKNOWN\n");
    // Without one there is nothing to be imported.
    ui_.answerFile(path("a.vtt"));
    EXPECT_TRUE(
        has(run({click("1022"), check(kTree, false, "0"), check(kTree, false, "UNKNOWN: 1 points >> 2"),
                 check(kTree, false, "MH: 1 points >> 3")}),
            "button \"Import Checked Features\" (disabled)"));
}

TEST_F(Utilities, ValuesGoIntoColumnsThatAreThereByTheirType) {
    {
        CDaoDatabase database;
        database.Open(path("output.mdb"));
        CDaoTableDef table(&database);
        table.Create("KINDS");
        table.CreateField("pt_id", dbText, 255, dbVariableField);
        table.CreateField("GIS_KEY", dbText, 255, dbVariableField);
        table.CreateField("YES", dbBoolean, 1);
        table.CreateField("SHORT", dbInteger, 2);
        table.CreateField("WHOLE", dbLong, 4);
        table.CreateField("SINGLE", dbSingle, 4);
        table.CreateField("REAL", dbDouble, 8);
        table.CreateField("DAY", dbDate, 8);
        table.CreateField("WORD", dbText, 5, dbVariableField);
        table.CreateField("LONG", dbMemo, 0);
        table.CreateField("MONEY", dbCurrency, 8);
        table.Append();
    }
    write(
        "a.not",
        "PT_ID:1  GIS_FILE:KINDS.GIS\nYES,yes\nSHORT,12.9\nWHOLE,A\nSINGLE,1.5\nREAL,2.5 "
        "m\nDAY,6/21/2005\n"
        "WORD,\xDC"
        "berlang\nLONG," +
            std::string(300, 'x') +
            "\nMONEY,5\n"
            "PT_ID:2  GIS_FILE:KINDS.GIS\nYES,2\nDAY,soon\nPT_ID:3  GIS_FILE:KINDS.GIS\nYES,no\nWHOLE,+7\n");
    const std::string shown = importNotes("a.not");
    EXPECT_EQ(output("select PT_ID, YES, SHORT, WHOLE, SINGLE, REAL, DAY, WORD, MONEY from KINDS"),
              "1|-1|12|0|1.5|2.5|2005-06-21|Überl|\n2|-1|||||||\n3|0||7|||||\n");
    EXPECT_EQ(output("select LONG from KINDS where PT_ID = '1'"), std::string(300, 'x') + "\n");
    for (const char* line :
         {"1 value cut to the size of its column", "1 value stored as 0 because it is no number",
          "2 values of which only the number at their beginning was stored",
          "1 value left out because it is no date",
          "not written, since columns of their types take no text: MONEY"})
        EXPECT_TRUE(has(shown, line)) << line << shown;
    // A number that a column cannot hold: the table stays as it was, in the engine's words.
    write("b.not", "PT_ID:7  GIS_FILE:KINDS.GIS\nSHORT,5\nPT_ID:8  GIS_FILE:KINDS.GIS\nSHORT,99999\n");
    EXPECT_TRUE(has(importNotes("b.not"), "Failed at KINDS, which is as it was before"));
    EXPECT_TRUE(shown.find("box [Error]") == std::string::npos && this->shown("box [Error]"));
    EXPECT_EQ(output("select count(*) from KINDS"), "3\n");
}

TEST_F(Utilities, EveryRowOfAnIdIsChangedAndNewColumnsAreMade) {
    {
        CDaoDatabase database;
        database.Open(path("output.mdb"));
        CDaoTableDef table(&database);
        table.Create("POLE");
        table.CreateField("PT_ID", dbText, 255, dbVariableField);
        table.CreateField("GIS_KEY", dbText, 255, dbVariableField);
        table.CreateField("N", dbLong, 4);
        table.Append();
        CDaoRecordset records(&database);
        records.Open(dbOpenDynaset, "SELECT * FROM POLE");
        for (const char* feature : {"POLE", "POLE", "pole", "TREE"}) {
            records.AddNew();
            records.SetFieldValue("PT_ID", "4");
            records.SetFieldValue("GIS_KEY", feature);
            records.Update();
        }
    }
    write("a.not", "PT_ID:4  GIS_FILE:POLE.GIS\nN,5\nM,text\n");
    EXPECT_TRUE(has(importNotes("a.not"), "POLE: 0 rows added, 3 changed"));
    EXPECT_EQ(output("select GIS_KEY, N, M from POLE"), "POLE|5|text\nPOLE|5|text\nPOLE|5|text\nTREE||\n");
    // New columns of text take zero length; those of a table that the import makes do but for its keys.
    write("b.not", "PT_ID:4  GIS_FILE:MADE.GIS\nM,text\n");
    importNotes("b.not");
    CDaoDatabase database;
    database.Open(path("output.mdb"));
    auto takesEmpty = [&](const char* name, const char* field) {
        CDaoTableDef table(&database);
        table.Open(name);
        CDaoFieldInfo info;
        table.GetFieldInfo(field, info);
        return info.allowZeroLength;
    };
    EXPECT_TRUE(takesEmpty("POLE", "M"));
    EXPECT_TRUE(takesEmpty("MADE", "M"));
    EXPECT_FALSE(takesEmpty("MADE", "PT_ID"));
    EXPECT_FALSE(takesEmpty("MADE", "GIS_KEY"));
    database.Close();
    // A renamed table has a GIS_KEY that does.
    answer(1611, {text("1001", "NEW"), click("OK")});
    run({pick("1012", "MADE"), click("Rename Table")});
    database.Open(path("output.mdb"));
    EXPECT_TRUE(takesEmpty("NEW", "GIS_KEY"));
}

TEST_F(Utilities, AColumnThatCountsByItselfTakesNoValue) {
    {
        CDaoDatabase database;
        database.Open(path("output.mdb"));
        CDaoTableDef table(&database);
        table.Create("TREE");
        table.CreateField("ID", dbLong, 4, dbAutoIncrField);
        table.CreateField("PT_ID", dbText, 50, dbVariableField);
        table.CreateField("GIS_KEY", dbText, 50, dbVariableField);
        table.CreateField("AGE", dbLong, 4);
        table.Append();
    }
    write("a.not", "PT_ID:1  GIS_FILE:TREE.GIS\nID,77\nAGE,5\nPT_ID:2  GIS_FILE:OAK.GIS\nAGE,6\n");
    ui_.answerFile(path("a.not"));
    const std::string shown = run({click("1021"), click("Import Checked Features")});
    EXPECT_TRUE(has(shown, "not written, since columns of their types take no text: ID")) << shown;
    EXPECT_EQ(output("select ID, PT_ID, AGE from TREE"), "1|1|5\n");
    EXPECT_EQ(output("select PT_ID, AGE from OAK"), "2|6\n");
    ui_.answerFile(path("a.not"));
    EXPECT_TRUE(has(run({click("1021"), click("Import Checked Features"), click("Take Last Import Back")}),
                    "2 rows as before the import, 0 deleted"));
    EXPECT_EQ(output("select ID, PT_ID, AGE from TREE"), "1|1|5\n");
}

namespace {

// Looks at the dialog in the middle of long work.
class Watcher : public CheckedScript {
  public:
    std::string seen;
    bool open(ui::Dialog& dialog) override {
        if (dialog.resource() == 161) watched_ = &dialog;
        return CheckedScript::open(dialog);
    }
    void refresh() override {
        if (watched_) seen += ui::modelText(*watched_);
    }

  private:
    ui::Dialog* watched_ = nullptr;
};

}  // namespace

TEST_F(Utilities, WhileAnActionRunsItsButtonSaysSoAndNoOtherCanBePressed) {
    write("a.not", kTwoPoles);
    Watcher watcher;
    watcher.allowClash("New Databa&se; Import A&SCII File; ");
    watcher.answerFile(path("a.not"));
    watcher.answer(161, {click("1021"), click("Import Checked Features"), show(), click("2")});
    ui::setBackend(&watcher);
    lisp("(cf:gis_smart_prompting 16)");
    ui::setBackend(&ui_);
    EXPECT_TRUE(has(watcher.seen, "1021 button \"Please wait...\"\n")) << watcher.seen;
    EXPECT_TRUE(has(watcher.seen, "1902 button \"Please wait...\"\n"));
    EXPECT_TRUE(has(watcher.seen, "1003 button \"New Database\" (disabled)"));
    EXPECT_TRUE(has(watcher.seen, "2 button \"Exit\" (disabled)"));
    const std::string after = watcher.log().at(watcher.log().size() - 3);
    EXPECT_TRUE(has(after, "1902 button \"Import Checked Features\"\n")) << after;
    EXPECT_TRUE(has(after, "2 button \"Exit\"")) << after;
    EXPECT_FALSE(has(after, "2 button \"Exit\" (disabled)")) << after;
}

TEST_F(Utilities, FeaturesBeforeOneThatFailsStay) {
    write("a.not",
          "PT_ID:1  GIS_FILE:GOOD.GIS\nA,1\nPT_ID:2  GIS_FILE:BAD[1.GIS\nA,2\nPT_ID:3  "
          "GIS_FILE:LAST.GIS\nA,3\n");
    const std::string shown = importNotes("a.not");
    EXPECT_TRUE(has(shown, "box [Error]")) << shown;
    EXPECT_TRUE(has(shown, "GOOD: 1 row added")) << shown;
    EXPECT_EQ(outputOf("mdb-tables -1 " + path("output.mdb")), "GOOD\n");
}

TEST_F(Utilities, ColumnsWithoutAValueAreToldAsWholeNumbers) {
    write("a.not", "PT_ID:1  GIS_FILE:E.GIS\nREMARK,\nPT_ID:2  GIS_FILE:E.GIS\nREMARK,\n");
    EXPECT_TRUE(has(importNotes("a.not"), "made as whole numbers because no record has a value: REMARK"));
}

TEST_F(Utilities, AnImportThatIsStoppedLeavesItsTableAsItWas) {
    write("a.not", "PT_ID:1  GIS_FILE:E.GIS\nA,1\nPT_ID:2  GIS_FILE:E.GIS\nA,2\n");
    answer(1000, {click("Cancel")});
    EXPECT_TRUE(has(importNotes("a.not"), "Stopped at E, which is as it was before"));
    EXPECT_EQ(outputOf("mdb-tables -1 " + path("output.mdb")), "");
}

TEST_F(Utilities, AProcessThatIsKilledLeavesEachTableWholeOrAbsent) {
    std::string notes;
    for (const char* feature : {"A", "B", "C"})
        for (int i = 0; i < 400; ++i)
            notes += "PT_ID:" + std::to_string(i) + "  GIS_FILE:" + feature + ".GIS\nN,1\nM,some text\n";
    write("a.not", notes);
    size_t whole = 0;
    for (useconds_t after : {1000, 20000, 40000, 60000, 90000, 150000}) {
        fs::remove(path("output.mdb"));
        makeOutput("output.mdb", dbVersion40);
        reportedUntilKilled(after, [&](const auto& report) {
            report("begin");
            importNotes("a.not");
        });
        EXPECT_EQ(outputOf(NORVANE_BIN_DIR "/jet check " + path("output.mdb")), "");
        for (const char* feature : {"A", "B", "C"}) {
            const std::string count = output(std::string("select count(*) from ") + feature);
            whole += count == "400\n";
            EXPECT_TRUE(count == "400\n" || has(count, "Cannot find the table"))
                << count << " after " << after;
        }
    }
    std::printf("%zu of 18 tables were whole\n", whole);
}

TEST_F(Utilities, BadNoteFilesAreTold) {
    write("binary.not", std::string("\x7f"
                                    "ELF\0\0\1\2PT_ID\0",
                                    14) +
                            std::string(5000, '\xFF'));
    ui_.answerFile(path("binary.not"));
    EXPECT_TRUE(has(run({click("1021")}), "label \"binary.not: 0 blocks, 0 features\""));
    ui_.answerFile(path("none.not"));
    EXPECT_TRUE(has(run({click("1021")}), "box [Error] \"Cannot open the *.not file!\""));
    ui_.answerFile(path("none.vtt"));
    EXPECT_TRUE(has(run({click("1022")}), "box [Error] \"Cannot open the *.not file!\""));
    // An id of 64 digits, one that no column holds, and a second file that replaces the first.
    write("ids.not", "PT_ID:" + std::string(64, '7') + "  GIS_FILE:A.GIS\nN,1\n");
    EXPECT_TRUE(has(importNotes("ids.not"), "A: 1 row added"));
    write("ids.not", "PT_ID:" + std::string(256, '7') + "  GIS_FILE:B.GIS\nN,1\n");
    EXPECT_TRUE(has(importNotes("ids.not"), "Failed at B"));
}

TEST_F(Utilities, NotesAreCheckedAgainstTheirPoints) {
    lisp("(gis:write-point " + quoted("a.crd") + " \"4\" 480354.5255 1630716.6981 \"POLE\" 561.7)");
    lisp("(gis:write-point " + quoted("a.crd") + " \"12\" 1.0 2.0 \"X\" 3.0)");
    write("a.not", kTwoPoles);
    ui_.answerFile(path("a.not"));
    ui_.answerFile(path("report.txt"));
    answer(1613, {click("Save As Text..."), click("Close")});
    run({click("1021"), click("Compare with Points")});
    EXPECT_EQ(read("report.txt"),
              "a.not: 3 points; a.crd: 2 points\nPoints without notes: 1\n  12\nNotes without points: 2\n  "
              "9\n  O'NEIL\n"
              "Coordinates that differ: 1\n  4: Z 561.7610, in the file 561.7000\n");
}

TEST_F(Utilities, PointsAlsoGoIntoACoordinateFileAndAreDrawn) {
    write("a.not", kTwoPoles);
    lisp("(load \"" NORVANE_BIN_DIR "/support/gis.lsp\")");
    ui_.answerFile(path("a.not"));
    ui_.answerFile(path("a.crd"));
    answer(1481, {click("New")});
    answer(161, {click("1021"), check("Points into a coordinate file"), check("Draw them"),
                 click("Import Checked Features"), click("2")});
    lisp("(c:gis-utilities)");
    EXPECT_EQ(points("a.crd"), "4 480354.5255 1630716.6981 561.7610 POLE; ");
    EXPECT_NE(printed().find("1 point drawn on POINTS."), std::string::npos);
    EXPECT_EQ(lisp("(sslength (ssget \"X\" '((0 . \"INSERT\"))))"), "1");
    // A new file in place of it leaves the notes that are read, and takes those of another file with it.
    write("x.not", "PT_ID:4  GIS_FILE:POLE.GIS\nPt Data,7,8,9,X\n");
    for (const auto& [notes, stays] : {std::pair{"a.not", true}, std::pair{"x.not", false}}) {
        ui_.answerFile(path(notes));
        ui_.answerFile(path("a.crd"));
        answer(1481, {click("New")});
        run({click("1021"), check("Points into a coordinate file"), click("Import Checked Features")});
        EXPECT_EQ(fs::exists(path("a.not")), stays);
    }
    EXPECT_EQ(points("a.crd"), "4 7.0000 8.0000 9.0000 X; ");
    write("a.not", kTwoPoles);
    lisp("(gis:write-point " + quoted("a.crd") + " \"4\" 480354.5255 1630716.6981 \"POLE\" 561.761)");
    // The notes are still there, and a point that is there stays unless the person says otherwise.
    EXPECT_EQ(read("a.not"), kTwoPoles);
    write("b.not",
          "PT_ID:4  GIS_FILE:POLE.GIS\nPt Data,1,2,3,NEW\nPT_ID:5  GIS_FILE:POLE.GIS\nPt Data,5,6\n");
    ui_.answerFile(path("b.not"));
    ui_.answerFile(path("a.crd"));
    answer(1481, {click("Existing")});
    const std::string shown =
        run({click("1021"), check("Points into a coordinate file"), click("Import Checked Features")});
    EXPECT_TRUE(has(shown, "1 point that was there already left as it was")) << shown;
    EXPECT_EQ(points("a.crd"), "4 480354.5255 1630716.6981 561.7610 POLE; 5 5.0000 6.0000 0.0000 ; ");
    EXPECT_EQ(lisp("(nth 3 (car (gis:points " + quoted("a.crd") + " \"5\")))"), "nil");
}

TEST_F(Utilities, OtherKindsOfFilesTakeRecordsAndGiveThemBack) {
    write("a.not", kTwoPoles);
    write("b.not",
          "PT_ID:4  GIS_FILE:POLE.GIS\nOwner,NEW\nHEIGHT,30.5\nPT_ID:77  GIS_FILE:POLE.GIS\nCLASS,5\n");
    write("p.txt", "1,1.5,OAK\n2,2.5,O'BRIEN\n");
    for (const char* name : {"o.sqlite", "o.gpkg", "o97.mdb"}) {
        makeOutput(name, dbVersion30);
        use(name);
        EXPECT_TRUE(has(importNotes("a.not"), "POLE: 2 rows added, 0 changed")) << name;
        EXPECT_TRUE(has(importNotes("a.not"), "POLE: 0 rows added, 2 changed")) << name;
        const std::string select = "select PT_ID, GIS_KEY, NORTHING, OWNER, CLASS, NOTES from POLE";
        EXPECT_EQ(output(select, name),
                  "4|POLE|480354.5255|CITY|1|\nO'NEIL|POLE||D'ANGELO|2|leans 2.5', call owner\n");
        ui_.answerFile(path("b.not"));
        const std::string shown =
            run({click("1021"), click("Import Checked Features"), click("Take Last Import Back")});
        EXPECT_TRUE(has(shown, "1 row as before the import, 1 deleted")) << name << shown;
        EXPECT_EQ(output(select, name),
                  "4|POLE|480354.5255|CITY|1|\nO'NEIL|POLE||D'ANGELO|2|leans 2.5', call owner\n");
        importText("p.txt", keyed("SHOTS"));
        EXPECT_TRUE(has(importText("p.txt", keyed("SHOTS")), "SHOTS: 0 rows added, 2 changed")) << name;
        EXPECT_EQ(output("select PT_ID, FIELD2, FIELD3 from SHOTS", name), "1|1.5|OAK\n2|2.5|O'BRIEN\n");
    }
}

// --- The last import is taken back -------------------------------------------------------------------------

TEST_F(Utilities, TheLastImportIsTakenBack) {
    write("a.not", kTwoPoles);
    importNotes("a.not");
    const std::string before = output("select * from POLE");
    write("b.not",
          "PT_ID:4  GIS_FILE:POLE.GIS\nOwner,NEW\nHEIGHT,30\nPT_ID:77  GIS_FILE:POLE.GIS\nCLASS,5\n"
          "PT_ID:1  GIS_FILE:MH.GIS\nDEPTH,4.5\n");
    ui_.answerFile(path("b.not"));
    const std::string shown =
        run({click("1021"), click("Import Checked Features"), show(), click("Take Last Import Back")});
    EXPECT_TRUE(has(shown, "1 row as before the import, 2 deleted")) << shown;
    EXPECT_TRUE(has(shown, "button \"Take Last Import Back\" (disabled)")) << shown;
    EXPECT_EQ(output("select * from POLE"), before);
    EXPECT_EQ(outputOf("mdb-tables -1 " + path("output.mdb")), "POLE\n");
    EXPECT_EQ(jet::disagreement(path("output.mdb")), "");
}

TEST_F(Utilities, RowsThatSomebodyHasChangedSinceStay) {
    write("a.not", kTwoPoles);
    write("b.not", "PT_ID:4  GIS_FILE:POLE.GIS\nHEIGHT,30\nPT_ID:77  GIS_FILE:POLE.GIS\nHEIGHT,31\n");
    importNotes("a.not");
    // Another program changes a row between the import and the taking back.
    class Other : public ui::Asker {
      public:
        explicit Other(std::string path) : path_(std::move(path)) {}
        std::optional<ui::Step> step(const std::string& model) override {
            if (model.find("[161]") != 0) return std::nullopt;
            if (asked_++ > 0) return click("2");
            CDaoDatabase database;
            database.Open(path_);
            database.Execute("UPDATE POLE SET CLASS = 9 WHERE PT_ID = '77'");
            return click("Take Last Import Back");
        }
        std::optional<std::string> answer(const std::string&) override { return std::nullopt; }

      private:
        std::string path_;
        int asked_ = 0;
    } other(path("output.mdb"));
    ui_.answerFile(path("b.not"));
    ui_.setAsker(&other);
    ui_.clearLog();
    answer(161, {click("1021"), click("Import Checked Features")});
    lisp("(cf:gis_smart_prompting 16)");
    ui_.setAsker(nullptr);
    EXPECT_TRUE(this->shown("1 row changed or deleted since and left as it is"));
    EXPECT_TRUE(this->shown("kept because it has other values: the column HEIGHT of POLE"));
    EXPECT_EQ(output("select PT_ID, CLASS, HEIGHT from POLE"), "4|1|\nO'NEIL|2|\n77|9|31\n");
}

// --- The database ------------------------------------------------------------------------------------------

TEST_F(Utilities, WithoutADatabaseEachButtonAsksForOne) {
    write("featlink.ini", "");
    const std::vector<ui::Step> buttons = {click("1013"), click("1014"), click("1015"), click("1021"),
                                           click("1022"), click("1023"), click("1025")};
    const std::string shown = run(buttons);
    size_t count = 0;
    for (size_t at = 0;
         (at = shown.find("box [Error] \"Please select an Output Database!\"", at)) != std::string::npos;
         ++at)
        ++count;
    EXPECT_EQ(count, buttons.size()) << shown;
    // The output of the settings stands in for one that is gone, and gps.ini does not.
    write("featlink.ini", "#H" + path("gone.mdb") + "\n#2" + path("output.mdb") + "\n");
    EXPECT_TRUE(has(run({}), "1002 edit \"" + path("output.mdb")));
    EXPECT_TRUE(has(read("featlink.ini"), "#H" + path("gone.mdb")));
}

TEST_F(Utilities, DatabasesAreMadeAndOpened) {
    ui_.answerFile(path("new.mdb"));
    std::string shown = run({click("New Database")});
    EXPECT_TRUE(has(shown, "save file box \"Access Databases Files (*.mdb)|*.mdb|")) << shown;
    EXPECT_TRUE(has(shown, "1002 edit \"" + path("new.mdb")));
    EXPECT_FALSE(isAccess2000("new.mdb"));
    EXPECT_TRUE(has(read("featlink.ini"), "#H" + path("new.mdb")));
    EXPECT_TRUE(has(read("featlink.ini"), "#I97"));
    // One that is there goes, and the version is remembered.
    ui_.answerFile(path("new.mdb"));
    run({check("1005"), click("New Database")});
    EXPECT_TRUE(isAccess2000("new.mdb"));
    EXPECT_TRUE(has(run({}), "radio (o) \"2000\""));
    ui_.answerFile(path("a.gpkg"));
    run({click("New Database")});
    EXPECT_EQ(read("a.gpkg").substr(0, 6), "SQLite");
    ui_.answerFile(path("output.mdb"));
    EXPECT_TRUE(has(run({click("Open Database")}), "1002 edit \"" + path("output.mdb")));
    EXPECT_FALSE(has(read("featlink.ini"), "#2")) << "the output of the settings is another matter";
    EXPECT_EQ(read("gps.ini"), "is_database=\ngisoutfile=\ngismdbfile=\n");
    // One that cannot be opened leaves the one that is there, and one that cannot be deleted stays.
    write("bad.mdb", "no database");
    ui_.answerFile(path("bad.mdb"));
    shown = run({click("Open Database")});
    EXPECT_TRUE(has(shown, "box [Error]")) << shown;
    EXPECT_TRUE(has(shown, "1002 edit \"" + path("output.mdb")));
    fs::create_directory(path("folder.mdb"));
    write("folder.mdb/x", "");
    ui_.answerFile(path("folder.mdb"));
    EXPECT_TRUE(has(run({click("New Database")}), "box [Error] \"Cannot delete *.mdb file!\""));
}

TEST_F(Utilities, ATableIsRenamedWithTheFeatureOfItsRows) {
    write("a.not", kTwoPoles);
    importNotes("a.not");
    answer(1611, {show(), text("1001", " utility pole "), click("OK")});
    const std::string shown = run({pick("1012", "POLE"), click("Rename Table")});
    EXPECT_TRUE(has(shown, "dialog 1611: New Table Name")) << shown;
    EXPECT_EQ(outputOf("mdb-tables -1 " + path("output.mdb")), "UTILITY POLE\n");
    EXPECT_EQ(output("select PT_ID, GIS_KEY, OWNER from [UTILITY POLE]"),
              "4|UTILITY POLE|CITY\nO'NEIL|UTILITY POLE|D'ANGELO\n");
    // The rows still match: an import into the new name adds none.
    write("b.not", "PT_ID:4  GIS_FILE:UTILITY POLE.GIS\nOwner,NEW\n");
    EXPECT_TRUE(has(importNotes("b.not"), "UTILITY POLE: 0 rows added, 1 changed"));
    // A name that is taken: all is as it was.
    write("c.not", "PT_ID:1  GIS_FILE:TREE.GIS\nA,1\n");
    importNotes("c.not");
    answer(1611, {text("1001", "TREE"), click("OK")});
    EXPECT_TRUE(has(run({pick("1012", "UTILITY POLE"), click("Rename Table")}), "box [Error]"));
    EXPECT_EQ(output("select count(*) from [UTILITY POLE] where GIS_KEY = 'UTILITY POLE'"), "2\n");
    answer(1611, {text("1001", "A.B"), click("OK"), click("Cancel")});
    EXPECT_TRUE(
        has(run({pick("1012", "TREE"), click("Rename Table")}), "Invalid characters in Feature Name"));
}

TEST_F(Utilities, ATableIsDeletedAfterAQuestion) {
    write("a.not", kTwoPoles);
    importNotes("a.not");
    EXPECT_TRUE(has(run({pick("1012", "POLE"), click("Delete Table")}),
                    "box [Alert] \"Are you sure you want to delete this table?\""));
    EXPECT_EQ(outputOf("mdb-tables -1 " + path("output.mdb")), "POLE\n");
    ui_.answerBox("Yes");
    EXPECT_TRUE(has(run({pick("1012", "POLE"), click("Delete Table")}), "* 1012 list"))
        << "not a dead button";
    EXPECT_EQ(outputOf("mdb-tables -1 " + path("output.mdb")), "");
}

TEST_F(Utilities, OutputsThatCannotBeWrittenAreTold) {
    write("a.not", kTwoPoles);
    fs::permissions(path("output.mdb"), static_cast<fs::perms>(0444));
    fs::permissions(path(""), static_cast<fs::perms>(0555));
    EXPECT_TRUE(has(saidByNobody([&] { return importNotes("a.not"); }), "box [Error]"));
    EXPECT_EQ(outputOf("mdb-tables -1 " + path("output.mdb")), "");
    fs::permissions(path(""), fs::perms::owner_all);
    fs::permissions(path("output.mdb"), fs::perms::owner_all);
    // One that another process writes into.
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    const pid_t other = ::fork();
    if (other == 0) {
        CDaoDatabase database;
        database.Open(path("output.mdb"));
        database.BeginTrans();
        CDaoTableDef table(&database);
        table.Create("OTHER");
        table.CreateField("A", dbLong, 4);
        table.Append();
        if (::write(ends[1], "x", 1) == 1) ::pause();
        ::_exit(0);
    }
    char begun = 0;
    ASSERT_EQ(::read(ends[0], &begun, 1), 1);
    EXPECT_TRUE(has(importNotes("a.not"), "box [Error]"));
    ::kill(other, SIGKILL);
    ::waitpid(other, nullptr, 0);
    ::close(ends[0]), ::close(ends[1]);
    EXPECT_EQ(outputOf("mdb-tables -1 " + path("output.mdb")), "");
    EXPECT_TRUE(has(importNotes("a.not"), "POLE: 2 rows added"));
    // A damaged one.
    std::string content = read("output.mdb");
    content.resize(content.size() / 3);
    fs::remove(path("output.mdb"));
    write("output.mdb", content);
    EXPECT_TRUE(has(run({}), "box [Error]"));
}
