// Import ASCII Data through its dialog.
#include "tests/module/transfer/utilities_fixture.h"

namespace {

class TextImportDialog : public UtilitiesTest {
  protected:
    void SetUp() override {
        UtilitiesTest::SetUp();
        write(
            "p.txt",
            "1,480899.8034,1630627.4917,554.043,IP FND,6\n2,1.5,2.5,3.5,O'BRIEN,8\nbad,line\n\n,5,6,7,X,9\n");
    }
};

}  // namespace

TEST_F(TextImportDialog, LinesBecomeRows) {
    const std::string shown = importText("p.txt", keyed(" points "));
    EXPECT_EQ(output("select * from POINTS"),
              "1|POINTS|480899.8034|1630627.4917|554.043|IP FND|6\n2|POINTS|1.5|2.5|3.5|O'BRIEN|8\n"
              "1132000000|POINTS|5.0|6.0|7.0|X|9\n");
    for (const char* line :
         {"p.txt: 5 lines read", "1 line without a key, given a number",
          "2 lines passed over:", "    line 3: 2 fields in place of 6", "    line 4: empty",
          "POINTS: 3 rows added, 0 changed", "DATE TIME - 11/14/2005"})
        EXPECT_TRUE(has(shown, line)) << line << shown;
    EXPECT_EQ(
        outputOf("mdb-schema " + path("output.mdb") + " | grep -A9 'TABLE \\[POINTS\\]' | tr -d '\\n\\t '"),
        "CREATETABLE[POINTS]([PT_ID]Text(255),[GIS_KEY]Text(255),[FIELD2]Double,[FIELD3]Double,[FIELD4]"
        "Double,"
        "[FIELD5]Text(255),[FIELD6]LongInteger);");
    // Twice over: no row more but for the line without a key, whose number is another.
    EXPECT_TRUE(has(importText("p.txt", keyed("Points")), "POINTS: 1 row added, 2 changed"));
    EXPECT_EQ(output("select count(*), max(PT_ID) from POINTS where PT_ID like '1132%'"), "2|1132000001\n");
}

TEST_F(TextImportDialog, WhatIsMissingIsToldInItsOrder) {
    const struct {
        std::vector<ui::Step> steps;
        const char* message;
    } cases[] = {
        {{click("1015")}, "Please select a sample text line from the list!"},
        {{pick("1004", "4"), click("1015")}, "Cannot parse the sample text line!"},
        {{click("1027")}, "Invalid Field Name!"},
        {{text("1024", "A"), click("1027")}, "Please select a field from the Fields list!"},
        {{click("1028")}, "Please select a field from the Fields list!"},
        {{pick("1004", "1"), click("1015"), click("1028"), click("1027")},
         "Cannot change properties of a Key Field!"},
        {{pick("1004", "1"), click("1015"), text("1024", "A.B"), click("1027")}, "Invalid Field Name!"},
        {{text("1046", "A.B"), click("1")}, "Invalid Table Name!"},
        {{text("1046", "T"), pick("1004", "1"), click("1015"), click("1")}, "Key Field is missing!"},
        {{text("1046", "T"), pick("1004", "1"), click("1015"), click("1028"), pick("1022", "1"),
          text("1024", "field3"), click("1027"), click("1")},
         "Cannot allow duplicate Name in the Fields List!"},
        // A second PT_ID is one, too.
        {{text("1046", "T"), pick("1004", "1"), click("1015"), click("1028"), pick("1022", "1"),
          text("1024", "pt_id"), click("1027"), click("1")},
         "Cannot allow duplicate Name in the Fields List!"},
        {{text("1046", "T"), pick("1004", "1"), click("1015"), click("1028"), pick("Delimiter:", "Tab"),
          click("1")},
         "No records found in the ASCII file!\nPlease select new sample line or new delimiters and try "
         "again."},
    };
    for (auto c : cases) {
        c.steps.push_back(click("2"));
        const std::string shown = importText("p.txt", c.steps);
        EXPECT_TRUE(has(shown, std::string("box [Error] \"") + c.message + "\"")) << c.message << shown;
    }
    EXPECT_EQ(outputOf("mdb-tables -1 " + path("output.mdb")), "");
    ui_.answerFile(path("none.txt"));
    EXPECT_TRUE(has(run({click("Import ASCII File")}), "box [Error] \"Cannot open the *.txt file!\""));
}

TEST_F(TextImportDialog, FieldsAreNamedTypedAndMarked) {
    const std::string shown =
        importText("p.txt", {pick("1004", "1"), click("1015"), show(), click("Set Key Field"), show(),
                             click("Reset Key Field"), show(), pick("1022", "4"), text("1024", "owner"),
                             pick("1026", "Int"), click("1027"), show(), click("2")});
    EXPECT_TRUE(has(shown, "> FIELD1 Int  No")) << shown;
    EXPECT_TRUE(has(shown, "> PT_ID  Char Yes")) << shown;
    EXPECT_TRUE(has(shown, "1030 edit \"FIELD1\" (read-only)")) << shown;
    // The name comes back, the type does not.
    EXPECT_TRUE(has(shown, "> FIELD1 Char No")) << shown;
    EXPECT_TRUE(has(shown, "1030 edit \"None\" (read-only)")) << shown;
    EXPECT_TRUE(has(shown, "> OWNER  Int  No")) << shown;
    // Lines with another number of fields are marked.
    EXPECT_TRUE(has(shown, "3    passed over bad")) << shown;
}

TEST_F(TextImportDialog, ASecondKeyTakesThePlaceOfTheFirst) {
    const std::string shown =
        importText("p.txt", {pick("1004", "1"), click("1015"), click("Set Key Field"), pick("1022", "4"),
                             click("Set Key Field"), show(), click("2")});
    EXPECT_TRUE(has(shown, " FIELD1 Char No")) << shown;
    EXPECT_TRUE(has(shown, "> PT_ID  Char Yes")) << shown;
    EXPECT_TRUE(has(shown, "1030 edit \"FIELD5\" (read-only)")) << shown;
}

TEST_F(TextImportDialog, EnterEndsANameAndImportsNothing) {
    const std::string shown = importText("p.txt", {pick("1004", "1"), click("1015"), pick("1022", "2"),
                                                   text("1024", "east"), key("Enter"), show(), click("2")});
    EXPECT_TRUE(has(shown, "> EAST   Real No")) << shown;
    EXPECT_FALSE(has(shown, "box [Error]")) << shown;
}

TEST_F(TextImportDialog, AnExistingTableKeepsItsSpellingAndItsTypes) {
    {
        CDaoDatabase database;
        database.Open(path("output.mdb"));
        CDaoTableDef table(&database);
        table.Create("Owners");
        table.CreateField("PT_ID", dbText, 255, dbVariableField);
        table.CreateField("GIS_KEY", dbText, 255, dbVariableField);
        table.CreateField("Field5", dbText, 4, dbVariableField);
        table.CreateField("FIELD6", dbDouble, 8);
        table.Append();
    }
    const std::string shown =
        importText("p.txt", keyed("OWNERS", {show(), pick("1022", "4"), show(), pick("1022", "1"),
                                             text("1024", "gis_key"), click("1027")}));
    EXPECT_TRUE(has(shown, "> Owners")) << shown;
    EXPECT_TRUE(has(shown, "label \"Already Exist in Database Table.\"")) << shown;
    EXPECT_TRUE(has(shown, "Owners: 3 rows added")) << shown;
    // A field that is called GIS_KEY is not written.
    EXPECT_EQ(output("select PT_ID, GIS_KEY, FIELD5, FIELD6, FIELD3 from Owners where PT_ID = '1'"),
              "1|Owners|IP F|6.0|1630627.4917\n");
    EXPECT_TRUE(has(shown, "2 values cut to the size of their columns")) << shown;
}

TEST_F(TextImportDialog, SettingsAreSavedAndLoaded) {
    write("featlink.ini", "#H" + path("output.mdb") + "\n@1/nowhere/x.fds\n");
    lisp("(setq tmpdir$ \"/tmp/\")");
    ui_.answerFile(path("p.txt"));
    ui_.answerFile(path("a.fds"));
    answer(1612, {pick("1004", "1"), click("1015"), pick("1022", "0"), click("Set Key Field"),
                  click("Save Fields Settings..."), click("2")});
    run({click("Import ASCII File")});
    EXPECT_EQ(
        read("a.fds"),
        "PT_ID|Char|Yes\nFIELD2|Real|No\nFIELD3|Real|No\nFIELD4|Real|No\nFIELD5|Char|No\nFIELD6|Int|No\n");
    EXPECT_EQ(boxFolders().back(), "/tmp/");
    EXPECT_TRUE(has(read("featlink.ini"), "@1" + path("a.fds")));
    write("a.fds", "POINT|Char|Yes\nNORTHING|Real|No\nEASTING|Real|No\n");
    ui_.answerFile(path("p.txt"));
    ui_.answerFile(path("a.fds"));
    answer(1612, {pick("1004", "2"), click("1015"), click("Load Fields Settings..."), show(),
                  text("1046", "T"), click("1")});
    const std::string shown = run({click("Import ASCII File")});
    EXPECT_EQ(boxFolders().back(), path("")) << shown;
    EXPECT_TRUE(has(shown, "1030 edit \"POINT\""));
    EXPECT_EQ(output("select NORTHING from T where PT_ID = '1'"), "480899.8034\n");
    ui_.answerFile(path("p.txt"));
    ui_.answerFile(path("none.fds"));
    ui_.answerFile(path("none/none.fds"));
    answer(1612, {pick("1004", "2"), click("1015"), click("Load Fields Settings..."),
                  click("Save Fields Settings..."), click("2")});
    const std::string faults = run({click("Import ASCII File")});
    EXPECT_TRUE(has(faults, "box [Error] \"Cannot read Fields Settings File!\"")) << faults;
    EXPECT_TRUE(has(faults, "box [Error] \"Cannot write Fields Settings File!\"")) << faults;
}

TEST_F(TextImportDialog, QuotesHeadingsAndOrdersAreChoices) {
    write("q.txt",
          "Point,North,East,Elev,Owner\n1,10.5,20.5,30.5,\"SMITH, JOHN\"\n2,11,21,31,\"A "
          "\"\"B\"\"\"\n3,1,2,3,\"open\n");
    std::string shown = importText(
        "q.txt", {check("Fields in quotes"), check("First line has the names"), pick("1004", "2"),
                  click("1015"), show(), pick("1022", "0"), click("1028"), text("1046", "Q"), click("1")});
    EXPECT_TRUE(has(shown, "1    headings   Point")) << shown;
    EXPECT_TRUE(has(shown, "4    open quote")) << shown;
    EXPECT_EQ(output("select PT_ID, NORTH, OWNER from Q"), "1|10.5|SMITH, JOHN\n2|11.0|A \"B\"\n");
    EXPECT_TRUE(has(shown, "line 1: the headings")) << shown;
    EXPECT_TRUE(has(shown, "line 4: a quote is not closed")) << shown;
    // The points of an order can go into a coordinate file as well.
    ui_.answerFile(path("q.txt"));
    ui_.answerFile(path("q.crd"));
    answer(1481, {click("New")});
    answer(1612, {check("Fields in quotes"), pick("1004", "2"), click("1015"), pick("Order:", "PNEZD"),
                  check("Points into a coordinate file"), text("1046", "R"), click("1")});
    shown = run({click("Import ASCII File")});
    EXPECT_TRUE(has(shown, "1 record without coordinates")) << shown;
    EXPECT_EQ(points("q.crd"), "1 10.5000 20.5000 30.5000 SMITH, JOHN; 2 11.0000 21.0000 31.0000 A \"B\"; ");
    EXPECT_EQ(output("select NORTHING, DESCRIPTION from R where PT_ID = '1'"), "10.5|SMITH, JOHN\n");
}

TEST_F(TextImportDialog, EmbeddedNamesAreTakenFromTheSampleAndCutOffEverywhere) {
    write("e.txt", "1,North:5.5,Seen:8:00\n2,Other:6,plain\n3,7,Seen:9:00\n");
    importText("e.txt", {check("Embedded Field Name (delimiter):"), pick("1004", "1"), click("1015"),
                         pick("1022", "0"), click("1028"), text("1046", "E"), click("1")});
    EXPECT_EQ(output("select PT_ID, NORTH, SEEN from E"), "1|5.5|8:00\n2|6.0|plain\n3|7.0|9:00\n");
}

TEST_F(TextImportDialog, AnImportIsTakenBack) {
    importText("p.txt", keyed("POINTS"));
    ui_.answerFile(path("p.txt"));
    answer(1612, keyed("POINTS", {pick("1022", "1"), text("1024", "NEW"), click("1027")}));
    const std::string before = output("select * from POINTS");
    const std::string shown = run({click("Import ASCII File"), click("Take Last Import Back")});
    EXPECT_TRUE(has(shown, "2 rows as before the import, 1 deleted")) << shown;
    EXPECT_EQ(output("select * from POINTS"), before);
}

TEST_F(TextImportDialog, AnImportThatIsStoppedReadsNoFurther) {
    answer(1000, {click("Cancel")});
    std::vector<ui::Step> steps = keyed("POINTS");
    steps.push_back(click("2"));
    importText("p.txt", steps);
    EXPECT_EQ(outputOf("mdb-tables -1 " + path("output.mdb")), "");
}
