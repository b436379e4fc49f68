// The sheet, from the Lisp call to the record and the link.
#include <sys/file.h>
#include <unistd.h>

#include <ctime>

#include "platform/dao/jet/database.h"
#include "tests/module/module_fixture.h"
#include "tests/platform/dao/lock_timeout.h"

// Rows of the sample features: TREE has SPECIES 1, DBH 2, HEIGHT 3, SPREAD 4, CONDITION 5, TWICE 6, NORTHING
// 7, EASTING 8, ELEVATION 9, DESCRIPTION 10, DATE 11, REMARKS 12.
class Sheet : public ModuleTest {
  protected:
    void SetUp() override {
        ModuleTest::SetUp();
        makeTemplate();
        makeEntity();
    }
    std::string record(const std::string& columns, const std::string& table = "TREE") const {
        return sqlite("output.mdb", "select " + columns + " from " + table + " order by rowid");
    }
    std::string addPrompt(const std::string& feature, const std::string& field, const std::string& value = "",
                          const std::string& list = "") {
        return lisp("(cf:gis_smart_prompting 19 " + quoted("template.mdb") +
                    " 0 \"ZGEO_SMART_PROMPTING\" \"GIS_NAME\" \"" + feature + "\" \"FIELD_NAME\" \"" + field +
                    "\" \"FIELD_PROMPT\" \"" + field + "\" \"DEFAULT_VALUE\" \"" + value +
                    "\" \"LIST_VALUES\" \"" + list + "\")");
    }
};

TEST_F(Sheet, ShowsWhatThePointAndTheTemplateSay) {
    answer(134, {show(), click("Cancel")});
    EXPECT_EQ(prompt("17", "TREE"), "0");
    EXPECT_TRUE(shown("GIS Smart Prompting - Entity has no GIS Data"));
    EXPECT_TRUE(shown("edit \"" + path("output.mdb") + "\" (read-only)"));
    EXPECT_TRUE(shown("drop-down \"TREE\" of {TREE|POLE|MANHOLE|PARCEL|(no feature)}"));
    EXPECT_TRUE(shown("\"PT_ID : 17\""));
    EXPECT_TRUE(shown("Species *                            WHITE OAK {WHITE OAK|RED OAK"));
    EXPECT_TRUE(shown("Northing                             480100.25"));
    EXPECT_TRUE(shown("grid 2 x 12, at (2, 1)"));
    EXPECT_TRUE(shown("Diameter at breast height (inches) * ''"));  // has to be filled in
    EXPECT_FALSE(shown("Height (feet) *"));
    EXPECT_TRUE(shown("label \"0 / 0\""));
    // There is no camera here and no engine for forms.
    for (const char* unusable : {"Captu", "Camera", "BMP", "F2", "Use MDB Form:"})
        EXPECT_FALSE(shown(unusable)) << unusable;
    EXPECT_EQ(link(), "nil");
}

TEST_F(Sheet, ASecondSaveEditsTheRecordAndKeepsOneLink) {
    answer(134, {cell(2, "14"), cell(3, "40"), cell(12, "first"), click("OK")});
    EXPECT_EQ(prompt("17", "TREE"), "1");
    std::string firstLink = link();
    // The record comes back; a cell that is emptied keeps what is stored.
    answer(134, {show(), cell(2, "15"), cell(12, ""), click("OK")});
    EXPECT_EQ(prompt("17", "TREE"), "1");
    EXPECT_TRUE(shown("Entity has GIS Data"));
    EXPECT_TRUE(shown("'first'"));
    EXPECT_EQ(record("PT_ID, DBH, HEIGHT, TWICE, REMARKS"), "17|15|40.0|80|first\n");
    EXPECT_EQ(link(), firstLink);
}

TEST_F(Sheet, StoredTimesAndDescriptionsAreKept) {
    answer(134, {cell(2, "14"), cell(10, "by the gate"), click("OK")});
    prompt("17", "TREE");
    sqlite("output.mdb", "update TREE set [DATE]='1/2/2005'");
    answer(134, {cell(2, "15"), click("OK")});
    prompt("17", "TREE");
    EXPECT_EQ(record("[DATE], DESCRIPTION"), "1/2/2005|by the gate\n");
}

// What a text code keeps is looked for under the code's own name, not under that of its row.
TEST_F(Sheet, ATextCodeInARowOfAnotherNameIsFilledAnew) {
    addPrompt("OWN", "NOTE", "$EQN=$DSC", "$EQN=$DSC");
    answer(134, {cell(1, "own words"), click("OK")});
    EXPECT_EQ(prompt("17", "OWN"), "1");
    EXPECT_EQ(record("NOTE", "OWN"), "own words\n");
    answer(134, {click("OK")});
    EXPECT_EQ(prompt("17", "OWN"), "1");
    EXPECT_EQ(record("NOTE", "OWN"), "OWN\n");
}

TEST_F(Sheet, EquationsFollowTheCells) {
    answer(134, {cell(3, "12.5"), show(), cell(3, "0.25"), cell(2, "1"), click("OK")});
    EXPECT_EQ(prompt("17", "TREE"), "1");
    EXPECT_TRUE(shown("Twice the height                     25\n"));
    EXPECT_EQ(record("HEIGHT, TWICE"), "0.25|0.5\n");
}

// Each pass takes the rows in their order, so that a row that needs one below it is a pass behind.
TEST_F(Sheet, EquationsAreWorkedOutOnceMoreWhenTheRecordIsSaved) {
    addPrompt("CHAIN", "..QQ");
    addPrompt("CHAIN", "..RR", "$EQN=SS*2", "$EQN=SS*2");
    addPrompt("CHAIN", "..SS", "$EQN=QQ+1", "$EQN=QQ+1");
    answer(134, {cell(1, "1"), show(), click("OK")});
    EXPECT_EQ(prompt("17", "CHAIN"), "1");
    EXPECT_TRUE(shown("RR 2\n"));
    EXPECT_EQ(record("QQ, RR, SS", "CHAIN"), "1.0|4.0|2.0\n");
}

TEST_F(Sheet, FaultsAreToldAndTheCellIsReadyForEditing) {
    answer(134, {cell(2, ""), click("OK"), show(), cell(2, "14.5"), click("OK"), cell(2, "14"),
                 cell(3, "1-2"), click("OK"), show(), click("Cancel")});
    EXPECT_EQ(prompt("17", "TREE"), "0");
    EXPECT_TRUE(
        shown("box [Error] \"Attribute DBH must be set!\nRow 2: Diameter at breast height (inches)\" flags "
              "0x40030"));
    EXPECT_TRUE(shown("grid 2 x 12, at (2, 2), editing \"\""));
    EXPECT_TRUE(
        shown("Attribute DBH must be an integer value!\n(From -2 147 483 648 through 2 147 483 647)"));
    EXPECT_TRUE(shown("Attribute HEIGHT must be a real value!\n(From -1.7E+308 through 1.7E+308)"));
    EXPECT_TRUE(shown("grid 2 x 12, at (2, 3), editing \"1-2\""));
    EXPECT_EQ(sqlite("output.mdb", "select count(*) from MSysObjects where Name='TREE'"), "0\n");
}

TEST_F(Sheet, EnterOutsideTheButtonNeverCloses) {
    answer(134, {cell(2, "14"), focus("1106"), key("Enter"), cell(2, "15"), key("Enter"), key("Enter"),
                 focus("OK"), key("Enter")});
    EXPECT_EQ(prompt("17", "TREE"), "1");
    EXPECT_EQ(record("DBH"), "15\n");
    EXPECT_FALSE(shown("left over"));
}

TEST_F(Sheet, KeysMoveThroughTheGrid) {
    answer(134, {key("Down"), key("Enter"), key("1"), key("4"), key("Enter"), show(),  // types 14 into row 2
                 key("Tab"), show(),  // to column 1 of the next row
                 key("Tab"), key("F4"), show(), key("F3"), show(), key("Enter"), key("Enter"), show(),
                 click("OK")});
    EXPECT_EQ(prompt("17", "TREE"), "1");
    EXPECT_TRUE(shown("at (2, 3)\n"));
    EXPECT_TRUE(shown("at (1, 4)\n"));
    EXPECT_TRUE(shown("at (2, 1)\n"));
    EXPECT_TRUE(shown("at (2, 2)\n"));
    EXPECT_EQ(record("DBH"), "14\n");
}

TEST_F(Sheet, TheLastRowWrapsToTheFirst) {
    answer(134, {cell(12, "x"), key("Tab"), show(), cell(12, "y"), key("Enter"), key("Enter"), show(),
                 click("Cancel")});
    prompt("17", "TREE");
    EXPECT_TRUE(shown("at (1, 1)"));
    EXPECT_TRUE(shown("at (2, 1)"));
}

TEST_F(Sheet, GeneratedKeysAreTheTime) {
    answer(134, {cell(2, "14"), click("OK")});
    long before = std::time(nullptr);
    EXPECT_EQ(prompt("#AUTO#", "TREE"), "1");
    long stored = std::stol(record("PT_ID"));
    EXPECT_GE(stored, before);
    EXPECT_LE(stored, std::time(nullptr));
    EXPECT_NE(link().find("\"" + std::to_string(stored) + "\""), std::string::npos);
}

TEST_F(Sheet, AGeneratedKeyIsOfNoRecordThatIsThere) {
    answer(134, {cell(2, "14"), click("OK")});
    EXPECT_EQ(prompt("1", "TREE"), "1");
    // Another program has used the keys of this minute and of the next.
    const long now = std::time(nullptr);
    std::string values;
    for (long key = now; key < now + 120; ++key)
        values += (values.empty() ? "('" : ", ('") + std::to_string(key) + "', 'TREE', 9)";
    sqlite("output.mdb", "insert into TREE (PT_ID, GIS_KEY, DBH) values " + values);
    answer(134, {cell(2, "15"), click("OK")});
    EXPECT_EQ(prompt("#AUTO#", "TREE"), "1");
    EXPECT_EQ(sqlite("output.mdb", "select count(*) from TREE where DBH = 9"), "120\n");
    const std::string key = sqlite("output.mdb", "select PT_ID from TREE where DBH = 15");
    EXPECT_GE(std::stol(key), now + 120);
    EXPECT_NE(link().find("\"" + key.substr(0, key.size() - 1) + "\""), std::string::npos) << link();
}

TEST_F(Sheet, ChangingTheFeatureReloadsAndShiftsTheRequiredFlags) {
    answer(134, {pick("Available Features:", "MANHOLE"), show(), cell(1, "M1"), cell(3, "4.5"), click("OK"),
                 cell(6, "2"), click("OK")});
    EXPECT_EQ(prompt("17", "TREE"), "1");
    EXPECT_TRUE(shown("grid 2 x 7, at (2, 1)"));
    EXPECT_EQ(record("PT_ID, GIS_KEY, MH_NO, DEPTH, RIM, INVERT", "MANHOLE"),
              "17|MANHOLE|M1|4.5|512.75|508.25\n");
    EXPECT_NE(link().find("(1000 . \"MANHOLE\")"), std::string::npos);
    EXPECT_EQ(sqlite("template.mdb", "select GIS_NAME from ZGEO_LINKS where IS_CURRENT='YES'"), "MANHOLE\n");
    // Each flag stands twice in the list, so that PIPES (6) reads that of DEPTH (3), and DEPTH that of TYPE
    // (2).
    EXPECT_TRUE(shown("Attribute PIPES must be set!"));
    answer(134, {pick("1106", "MANHOLE"), cell(1, "M2"), cell(6, "1"), click("OK")});
    EXPECT_EQ(prompt("18", "TREE"), "1");
    answer(134, {cell(1, "M3"), click("OK"), click("Cancel")});
    EXPECT_EQ(prompt("19", "MANHOLE"), "0");
    EXPECT_TRUE(shown("Attribute DEPTH must be set!"));
}

TEST_F(Sheet, TheCurrentFeatureIsOfferedWhenNoneIsNamed) {
    answer(134, {cell(1, "P1"), cell(5, "35"), click("OK")});
    EXPECT_EQ(prompt("1", "POLE"), "1");
    answer(134, {show(), click("Cancel")});
    prompt("2", "", 0);
    EXPECT_TRUE(shown("drop-down \"POLE\""));
    ui_.clearLog();
    answer(134, {show(), click("Cancel")});
    prompt("2", "tree", 0);
    EXPECT_TRUE(shown("drop-down \"TREE\" of")) << "small letters make no other name";
}

TEST_F(Sheet, NoFeatureIsChosenWhereNoneIsMeant) {
    answer(134, {show(), click("OK"), pick("1106", "POLE"), cell(1, "P1"), cell(5, "35"),
                 pick("1106", "(no feature)"), show(), click("Cancel")});
    EXPECT_EQ(prompt("2", "BUSH", 0), "0");
    EXPECT_TRUE(shown("drop-down \"(no feature)\" of {TREE|"));
    EXPECT_TRUE(shown("box [Error] \"Feature name cannot be an empty string!\""));
    EXPECT_TRUE(shown("grid 2 x 0"));
    ui_.clearLog();
    answer(134, {show(), click("Cancel")});
    prompt("2", "", 0);
    EXPECT_TRUE(shown("drop-down \"(no feature)\"")) << "a template without a current feature";
}

TEST_F(Sheet, ARecordOfAnotherEntityIsTold) {
    answer(134, {cell(2, "14"), click("OK")});
    EXPECT_EQ(prompt("8D", "TREE"), "1");
    answer(134, {show(), click("Cancel")});
    prompt("8D", "TREE");
    EXPECT_TRUE(shown("GIS Smart Prompting - Entity has GIS Data")) << "its own";
    makeEntity();
    ui_.clearLog();
    answer(134, {show(), click("Cancel")});
    prompt("8D", "TREE");
    EXPECT_TRUE(shown("Entity has no GIS Data - a record of this key is there"));
}

TEST_F(Sheet, FeaturesMayShareATable) {
    answer(134, {click("Cancel")});
    prompt("1", "TREE");
    sqlite("template.mdb",
           "insert into ZGEO_LINKS (GIS_NAME, TABLE_NAME, IS_CURRENT) values ('TREE','PLANTS','NO'), "
           "('MANHOLE','PLANTS','NO')");
    answer(134, {show(), cell(2, "14"), click("OK")});
    EXPECT_EQ(prompt("1", "TREE"), "1");
    EXPECT_TRUE(shown("edit \"PLANTS\" (read-only)"));
    answer(134, {cell(1, "M1"), cell(3, "3"), click("OK")});
    EXPECT_EQ(prompt("1", "MANHOLE"), "1");
    EXPECT_EQ(record("PT_ID, GIS_KEY, DBH, DEPTH", "PLANTS"), "1|TREE|14|\n1|MANHOLE||3.0\n");
    EXPECT_NE(read("featlink.ini").find("#3PLANTS\n"), std::string::npos);
}

TEST_F(Sheet, OldRecordsWithoutAFeatureGetIt) {
    lisp("(cf:gis_smart_prompting 20 " + quoted("") + " " + quoted("template.mdb") + " " +
         quoted("output.mdb") + ")");
    sqlite("output.mdb",
           "create table TREE (PT_ID TEXT(255) COLLATE NOCASE, DBH INTEGER); insert into TREE values ('17', "
           "9), ('18', 8)");
    answer(134, {show(), cell(2, "10"), click("OK")});
    EXPECT_EQ(prompt("17", "TREE"), "1");
    EXPECT_TRUE(shown("'9'"));
    EXPECT_EQ(record("PT_ID, GIS_KEY, DBH"), "17|TREE|10\n18|TREE|8\n");
}

TEST_F(Sheet, AKeyColumnOfAnotherTypeBecomesTextEvenOnCancel) {
    lisp("(cf:gis_smart_prompting 20 " + quoted("") + " " + quoted("template.mdb") + " " +
         quoted("output.mdb") + ")");
    sqlite("output.mdb",
           "create table TREE (PT_ID INTEGER, GIS_KEY TEXT(255)); insert into TREE values (17, 'TREE')");
    answer(134, {click("Cancel")});
    prompt("17", "TREE");
    EXPECT_EQ(record("PT_ID is null, GIS_KEY"), "1|TREE\n");
}

TEST_F(Sheet, ApostrophesPassInValuesAndKeys) {
    answer(134, {cell(2, "14"), cell(12, "the owner's tree"), click("OK")});
    EXPECT_EQ(prompt("O'Neil", "TREE"), "1");
    answer(134, {cell(2, "15"), click("OK")});
    EXPECT_EQ(prompt("O'Neil", "TREE"), "1");
    EXPECT_EQ(record("PT_ID, DBH, REMARKS"), "O'Neil|15|the owner's tree\n");
}

TEST_F(Sheet, AnOutputThatCannotBeWrittenKeepsTheSheetOpen) {
    answer(134, {cell(2, "14"), click("OK")});
    prompt("17", "TREE");
    // Another program holds the file.
    ShortLockTimeout shortTimeout;
    std::string before = read("output.mdb");
    auto holder =
        std::make_unique<jet::Database>(path("output.mdb"), jet::Database::Options{.exclusive = true});
    answer(134, {cell(1, "OTHER"), cell(2, "15"), click("OK"), click("Cancel")});
    EXPECT_EQ(prompt("18", "TREE"), "0");
    EXPECT_TRUE(shown("box [Error]"));
    holder = nullptr;
    EXPECT_EQ(record("PT_ID"), "17\n");
    EXPECT_EQ(read("output.mdb"), before);
}

TEST_F(Sheet, ATemplateThatIsNoneShowsAnEmptySheet) {
    write("template.mdb", "no database at all");
    EXPECT_EQ(prompt("17", "TREE"), "0");
    EXPECT_TRUE(shown("box [Error]"));
    answer(134, {show(), click("OK"), click("Cancel")});
    EXPECT_EQ(prompt("17", "TREE", 0), "0");
    EXPECT_TRUE(shown("grid 2 x 0"));
    EXPECT_EQ(read("template.mdb"), "no database at all");
}

TEST_F(Sheet, RowsWithoutAListStartEmptyAndCodesNeedOne) {
    addPrompt("ODD", "PLAIN", "DEFAULT", "");
    addPrompt("ODD", "CODE", "$EQN=$NOR", "");
    addPrompt("ODD", "..RATIO", "$EQN=10/0", "$EQN=10/0");
    addPrompt("ODD", "HALVES", "$EQN=RATIO/2", "$EQN=RATIO/2");
    addPrompt("ODD", "DESC2", "$EQN=$DSC", "$EQN=$DSC");
    answer(134, {cell(5, "own words"), click("OK")});
    EXPECT_EQ(prompt("17", "ODD"), "1");
    EXPECT_EQ(record("PLAIN is null, CODE is null, RATIO, HALVES, DESC2", "ODD"), "1|1|0.0|0|own words\n");
}
