// Title blocks filled from tables, from the Lisp function to the saved drawing.
#include <algorithm>
#include <regex>

#include "tests/module/titleblocks/titles_fixture.h"
#include "tests/platform/dao/odbc/postgres_server.h"

namespace {

class FillTest : public Titles {
  protected:
    void SetUp() override {
        Titles::SetUp();
        if (!openTitles()) GTEST_SKIP() << "the shared drawing of title blocks is not there";
    }
    void reopen() { ASSERT_EQ(host_->openDrawing(path("titles.dxf")), ""); }
    static std::string item(int count, const std::string& block) {
        return ::text::format("QTY: %4d\t", count) + block;
    }
    static std::vector<ui::Step> byAttribute(int count, const std::string& block, const std::string& key) {
        return {pick("1001", item(count, block)), pick("1003", key), click("Insert/Update")};
    }
    std::vector<std::string> values() const { return shownIn(141, 1004); }
};

// Of the eleven title blocks that can be seen seven have a record.
constexpr const char* kTitlesFilled =
    "\nTITLE: 11 blocks, 7 updated, 2 without a record (99-9999,  05-0143 ), 1 without a key, 1 without "
    "attributes.";

}  // namespace

TEST_F(FillTest, EachBlockGetsTheRecordOfItsKey) {
    struct Source {
        const char* table;
        const char* file;
    };
    for (const Source& source :
         {Source{"OWNERS", "owners.dbf"}, {"PROJECTS", "owners.xls"}, {"JOBS", "jobs.mdb"}}) {
        SCOPED_TRACE(source.file);
        reopen();
        writeSettings(titleLinks(source.table, source.file));
        EXPECT_EQ(fill(byAttribute(11, "TITLE", "JOBNO")), kTitlesFilled);
        std::map<std::string, std::string> texts = savedTexts();
        EXPECT_EQ(texts["79 PROJECT"], "CEDAR CREEK SUBDIVISION");
        EXPECT_EQ(texts["79 DATE"], "2003-01-01");
        EXPECT_EQ(texts["79 SCALE"], "1\"=20'");
        EXPECT_EQ(texts["8D CLIENT"], "HARRIS & SONS BUILDERS") << "in paper space too";
        EXPECT_EQ(texts["DD JOBNO"], "05-0171") << "on a locked layer";
        EXPECT_NE(texts["DD PROJECT"], "OLD PROJECT 10");
        EXPECT_NE(texts["F1 PROJECT"], "OLD PROJECT 12");
        EXPECT_EQ(texts["F1 PROJECT"], texts["BF PROJECT"]) << "of two records of a key the first counts";
        for (const char* kept : {"97 PROJECT", "A1 PROJECT", "B5 PROJECT", "D3 PROJECT", "FB PROJECT",
                                 "C9 PROJECT", "E7 PROJECT"})
            EXPECT_TRUE(texts[kept].starts_with("OLD PROJECT")) << kept << ": " << texts[kept];
        EXPECT_EQ(texts["B5 JOBNO"], " 05-0143 ");
        lisp("(command \"_.U\")");
        EXPECT_EQ(savedTexts()["79 PROJECT"], "OLD PROJECT 0") << "one undo takes back a run";
    }
}

TEST_F(FillTest, AKeyOfTheDatabaseGoesIntoAllBlocks) {
    writeSettings(titleLinks("PROJECTS", "owners.xls"));
    EXPECT_EQ(fill({pick("1001", "0"), click("1008"), show(), pick("1003", "JOBNO"), show(),
                    pick("1004", "04-0108"), click("Insert/Update")}),
              "\nTITLE: 11 blocks, 10 updated, 1 without attributes.");
    EXPECT_EQ(values().size(), 12u);
    EXPECT_TRUE(shown("... 68 more behind")) << "of 79 keys, each once";
    std::map<std::string, std::string> texts = savedTexts();
    for (const char* block : {"79", "97", "A1", "B5", "8D"}) {
        EXPECT_EQ(texts[std::string(block) + " JOBNO"], "04-0108");
        EXPECT_EQ(texts[std::string(block) + " PROJECT"], "RIVER CREEK SUBDIVISION");
    }
    EXPECT_EQ(texts["FB JOBNO"], "04-0192");
    EXPECT_EQ(lisp("(progn (cf:gis_smart_prompting 3 18) ret_string)"), "\"TITLE|JOBNO|04-0108\"");
}

TEST_F(FillTest, ABlockIsTakenByItsNameAndNoOther) {
    writeSettings(links("T#1", "CLIENT", "CLIENTS", "jobs.mdb", {"CLIENT", "PHONE"}) +
                  links("T21", "CLIENT", "CLIENTS", "jobs.mdb", {"CLIENT"}) +
                  link("T#1", "PHONE", "CLIENT", "CLIENTS", "PHONE", "jobs.mdb"));
    EXPECT_EQ(fill({show(), pick("1001", item(3, "T#1")), pick("1003", "CLIENT"), click("Insert/Update")}),
              "\nT#1: 3 blocks, 3 updated.");
    EXPECT_EQ(shownIn(141, 1001).size(), 4u) << "headings, and two blocks to choose from";
    std::map<std::string, std::string> texts = savedTexts();
    EXPECT_EQ(texts["12D PHONE"], "704-555-0101");
    EXPECT_EQ(texts["135 CLIENT"], "DR. A. O'BRIEN");
}

// A tag that is there twice gets the value twice; constant attributes are no part of an insert.
TEST_F(FillTest, AttributesThatComeTwiceOrNotAtAll) {
    writeSettings(link("TWICE", "NAME", "JOBNO", "JOBS", "PROJECT", "jobs.mdb") +
                  link("SHEET", "FIRM", "JOBNO", "OWNERS", "CLIENT", "owners.dbf") +
                  link("SHEET", "HIDDEN", "JOBNO", "OWNERS", "ACTIVE", "owners.dbf") +
                  link("SHEET", "AREA", "JOBNO", "OWNERS", "ACRES", "owners.dbf") +
                  link("SHEET", "AREA", "JOBNO", "OWNERS", "FEE", "owners.dbf") +
                  link("CONST", "CITY", "JOBNO", "OWNERS", "CLIENT", "owners.dbf"));
    EXPECT_EQ(fill(byAttribute(2, "TWICE", "JOBNO")), "\nTWICE: 2 blocks, 2 updated.");
    EXPECT_TRUE(
        shown("[Details] \"Values of attributes could be not properly!\nAttribute from settings: JOBNO\""));
    EXPECT_EQ(fill(byAttribute(6, "SHEET", "JOBNO")), "\nSHEET: 6 blocks, 6 updated.");
    std::map<std::string, std::string> texts = savedTexts();
    EXPECT_EQ(texts["13B NAME"], "HICKORY RIDGE PHASE 2 / HICKORY RIDGE PHASE 2");
    EXPECT_EQ(texts["140 JOBNO"], "06-0318");
    EXPECT_EQ(texts["10B HIDDEN"], "1");
    EXPECT_EQ(texts["10B AREA"], "7739.92") << "of two links of an attribute the last counts";
    EXPECT_EQ(texts.count("10B FIRM"), 0u);
}

// A memo comes whole, with its line ends and whatever stands in it; numbers, dates and money have their
// forms.
TEST_F(FillTest, TextsReachTheAttributeAsTheDatabaseHasThem) {
    const std::map<std::string, std::string> keys = {
        {"LINES", "NOTES"}, {"NUMBER", "RATE"}, {"TITLE", "FEE"}, {"TEXT", "STARTED"}};
    std::string lines;
    for (const auto& [attribute, field] : keys)
        lines += link("NOTE", attribute, "JOBNO", "JOBS", field, "jobs.mdb");
    writeSettings(lines);
    EXPECT_EQ(fill(byAttribute(4, "NOTE", "JOBNO")), "\nNOTE: 4 blocks, 4 updated.");
    std::map<std::string, std::string> texts = savedTexts();
    EXPECT_EQ(texts["145 LINES"], "LINE ONE\\r\\nLINE TWO\\r\\n\\r\\nLINE FOUR");
    EXPECT_EQ(texts["14C LINES"], "ends in a line end\\r\\n");
    EXPECT_EQ(texts["153 LINES"], "\\r\\n");
    EXPECT_EQ(texts["15A LINES"], "piece||of$$a|value``here");
    EXPECT_EQ(texts["145 NUMBER"], "0.475000");
    EXPECT_EQ(texts["145 TITLE"], "27548.33");
    EXPECT_EQ(texts["145 TEXT"], "") << "an empty field empties the attribute";
    EXPECT_EQ(texts["14C TEXT"], "2003-09-17 11:04:00");
    // A long one, by a key of the database.
    writeSettings(lines + link("NOTE", "JOBNO", "JOBNO", "JOBS", "JOBNO", "jobs.mdb"));
    reopen();
    fill({pick("1001", "0"), click("1008"), pick("1003", "JOBNO"), pick("1004", "06-0150"),
          click("Insert/Update")});
    EXPECT_EQ(savedTexts()["145 LINES"].size(), 500u);
    reopen();
    writeSettings(lines);
    fill(byAttribute(4, "NOTE", "JOBNO"));
    savedTexts();
    // The same after the drawing has been opened again.
    ASSERT_EQ(host_->openDrawing(path("saved.dxf")), "");
    EXPECT_EQ(savedTexts()["145 LINES"], "LINE ONE\\r\\nLINE TWO\\r\\n\\r\\nLINE FOUR");
}

TEST_F(FillTest, KeysThatAreNumbersCountAsTheyAreWritten) {
    writeSettings(link("NOTE", "TITLE", "SHEET_NO", "SHEETS", "TITLE", "jobs.mdb") +
                  link("NOTE", "TEXT", "", "SHEETS", "TITLE", "jobs.mdb"));
    EXPECT_EQ(fill(byAttribute(4, "NOTE", "NUMBER")),
              "\nNOTE: 4 blocks, 2 updated, 2 without a record (007, 99).");
    std::map<std::string, std::string> texts = savedTexts();
    EXPECT_EQ(texts["145 TITLE"], "SHEET TITLE 1");
    EXPECT_EQ(texts["14C TITLE"], "SHEET TITLE 12");
    EXPECT_EQ(texts["145 TEXT"], "LINE ONE\\r\\nLINE TWO") << "a link without a key never changes anything";
}

TEST_F(FillTest, FormatsOfLinksAreFollowed) {
    writeSettings(
        links("TITLE", "JOBNO", "OWNERS", "owners.dbf", {"DATE", "CLIENT"}) +
        link("TITLE", "SCALE", "JOBNO", "OWNERS", "ACRES", "owners.dbf") +
        link("TITLE", "DRAWN", "JOBNO", "OWNERS", "SCALE", "owners.dbf") +
        "FORMAT_ZGEO:D:MMMM D, YYYY;TITLE;DATE\nFORMAT_ZGEO:N1;TITLE;SCALE\nFORMAT_ZGEO:N2;title;drawn\n");
    fill(byAttribute(11, "TITLE", "JOBNO"));
    std::map<std::string, std::string> texts = savedTexts();
    EXPECT_EQ(texts["83 DATE"], "June 12, 2004");
    EXPECT_EQ(texts["83 SCALE"], "112.0");
    EXPECT_EQ(texts["83 DRAWN"], "1\"=30'") << "what is no number stays";
}

TEST_F(FillTest, OnlyBlocksWithGoodLinksAreOffered) {
    // Nothing to offer: no dialog, and nothing is said.
    writeSettings(link("TITLE", "PROJECT", "JOBNO", "JOBS", "PROJECT", "gone.mdb") +
                  link("SHEET", "PROJECT", "JOBNO", "NOTABLE", "PROJECT", "jobs.mdb") +
                  link("T21", "CLIENT", "CLIENT", "CLIENTS", "NOFIELD", "jobs.mdb") +
                  link("GONE", "PROJECT", "JOBNO", "JOBS", "PROJECT", "jobs.mdb") +
                  link("UNUSED", "PROJECT", "JOBNO", "JOBS", "PROJECT", "jobs.mdb") +
                  link("PLAIN", "PROJECT", "JOBNO", "JOBS", "PROJECT", "jobs.txt"));
    EXPECT_EQ(run(), "");
    EXPECT_FALSE(shown("[141]"));
    // An unknown tag in any line hides the block; a bad line with known ones does not.
    writeSettings(sharedSettings());
    answer(141, {show(), click("Exit")});
    run();
    std::string blocks;
    for (const std::string& line : shownIn(141, 1001)) blocks += line + ";";
    for (const char* there : {" SHEET", " T#1", " T21", " NOTE", " TWICE"})
        EXPECT_NE(blocks.find(there), std::string::npos) << there << " in " << blocks;
    EXPECT_EQ(blocks.find(" TITLE"), std::string::npos) << blocks;
    EXPECT_FALSE(shown("box [")) << "the test says nothing";

    inputs_ = {""};
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 6)"), "0");
    EXPECT_TRUE(printed().ends_with("\nInvalid selection! Please try again!"));
}

TEST_F(FillTest, WhatCannotBeReadIsToldOnceATable) {
    write("damaged.mdb", read("jobs.mdb").substr(0, 9000));
    write("damaged.xls", "this is no workbook");
    writeSettings(links("TITLE", "JOBNO", "OWNERS", "owners.dbf", {"PROJECT"}) +
                  links("TITLE", "JOBNO", "JOBS", "damaged.mdb", {"CLIENT", "SHEET"}) +
                  links("TITLE", "JOBNO", "PROJECTS", "damaged.xls", {"DATE", "DRAWN"}) +
                  links("TITLE", "JOBNO", "JOBS", "gone.mdb", {"SCALE"}));
    EXPECT_EQ(fill(byAttribute(11, "TITLE", "JOBNO")), kTitlesFilled);
    int boxes = 0;
    for (const std::string& line : ui_.log()) boxes += line.find("box [Error]") != std::string::npos;
    EXPECT_EQ(boxes, 2);
    std::map<std::string, std::string> texts = savedTexts();
    EXPECT_EQ(texts["79 PROJECT"], "CEDAR CREEK SUBDIVISION");
    EXPECT_EQ(texts["79 CLIENT"], "OLD CLIENT");
}

TEST_F(FillTest, WithoutTheEngineTablesAndWorkbooksGoOn) {
    write("registry.ini", "[-HKEY_CLASSES_ROOT\\DAO.DBEngine.36]\n");
    writeSettings(links("TITLE", "JOBNO", "OWNERS", "owners.dbf", {"PROJECT"}) +
                  links("TITLE", "JOBNO", "JOBS", "jobs.mdb", {"CLIENT"}) +
                  links("T21", "CLIENT", "CLIENTS", "jobs.mdb", {"CLIENT"}));
    EXPECT_EQ(fill({show(), pick("1001", item(11, "TITLE")), pick("1003", "JOBNO"), click("Insert/Update")}),
              "\nPlease install DAO 3.6..." + std::string(kTitlesFilled));
    EXPECT_EQ(shownIn(141, 1001).size(), 3u) << "a heading and one block";
    std::map<std::string, std::string> texts = savedTexts();
    EXPECT_EQ(texts["79 PROJECT"], "CEDAR CREEK SUBDIVISION");
    EXPECT_EQ(texts["79 CLIENT"], "OLD CLIENT");
}

TEST_F(FillTest, AKeyThatWillNotDoIsRefused) {
    writeSettings(titleLinks("OWNERS", "owners.dbf"));
    auto edits = [&] { return shownIn(141, 1005).at(0) + shownIn(141, 1006).at(0); };
    // From the drawing: a key attribute is needed.
    fill({click("Insert/Update"), pick("1001", "0"), click("Insert/Update"), click("1008"), show(),
          // From the database: a value of the list.
          click("Insert/Update"), text("1006", "05-01"), show(), click("Insert/Update"), show(),
          click("Exit")});
    int boxes = 0;
    for (const std::string& line : ui_.log())
        boxes += line.find("box [Error] \"Invalid key!\"") != std::string::npos;
    EXPECT_EQ(boxes, 4);
    EXPECT_NE(edits().find("\"PROJECT\""), std::string::npos) << "the first attribute with a link is the key";
    EXPECT_NE(edits().find("\"\""), std::string::npos) << "a value that is none is emptied";
    // What was typed narrows the list.
    ui_.clearLog();
    fill({pick("1001", "0"), click("1008"), pick("1003", "JOBNO"), text("1006", "-016"), show(),
          pick("1004", "0"), show(), click("Exit")});
    EXPECT_EQ(shownIn(141, 1004).size(), 2u);
    EXPECT_NE(shownIn(141, 1006).at(0).find("\"04-0164\""), std::string::npos);
}

TEST_F(FillTest, ThePreviewShowsAndTakesEachBlock) {
    writeSettings(titleLinks("OWNERS", "owners.dbf"));
    auto first = [&](std::vector<ui::Step> steps) { answer(1411, std::move(steps)); };
    const std::vector<ui::Step> start = {pick("1001", "0"), pick("1003", "JOBNO"),
                                         check("Preview links", true), click("Insert/Update")};
    // The first is changed by hand, the second skipped, and then the run ends; the dialog stands there.
    first({show(), cell(1, "BY HAND"), click("Insert/Update")});
    first({click("Skip next")});
    first({click("Exit")});
    std::vector<ui::Step> stays = start;
    stays.push_back(show());
    stays.push_back(click("Exit"));
    EXPECT_EQ(
        fill(stays),
        "\nTITLE: 11 blocks, 1 updated, 1 skipped, 9 not looked at, since the work ended before its end.");
    EXPECT_NE(shownIn(141, 1005).at(0).find("\"JOBNO\""), std::string::npos);
    EXPECT_TRUE(shown("Block Handle: "));
    EXPECT_TRUE(shown("Preview/Modify Attributes Values"));
    std::map<std::string, std::string> texts = savedTexts();
    int byHand = 0, old = 0;
    for (const auto& [place, text] : texts) {
        byHand += text == "BY HAND";
        old += text.starts_with("OLD PROJECT");
    }
    EXPECT_EQ(byHand, 1);
    EXPECT_EQ(old, 13) << "what was done stays done";

    // Without the check mark the rest runs unseen, whether this one is taken or left.
    reopen();
    first({check("Preview next links", false), click("Skip next")});
    EXPECT_TRUE(fill(start).starts_with("\nTITLE: 11 blocks, "));
    EXPECT_EQ(ui_.unused(), std::vector<std::string>{});
}

TEST_F(FillTest, LineEndsSurviveThePreview) {
    writeSettings(link("NOTE", "LINES", "JOBNO", "JOBS", "NOTES", "jobs.mdb"));
    for (int i = 0; i < 4; ++i)
        answer(1411,
               {show(), {ui::Step::Kind::Cell, "", "one\u21B5two", true, 2, 1}, click("Insert/Update")});
    fill({pick("1001", "0"), pick("1003", "JOBNO"), check("Preview links", true), click("Insert/Update")});
    std::map<std::string, std::string> texts = savedTexts();
    EXPECT_EQ(texts["145 NUMBER"], "one\\r\\ntwo");
    EXPECT_EQ(texts["145 LINES"], "LINE ONE\\r\\nLINE TWO\\r\\n\\r\\nLINE FOUR");
    EXPECT_EQ(texts["145 TEXT"], "LINE ONE\\r\\nLINE TWO");
}

TEST_F(FillTest, WhatWasChosenLastIsChosenAgain) {
    writeSettings(titleLinks("OWNERS", "owners.dbf") +
                  links("T21", "CLIENT", "CLIENTS", "jobs.mdb", {"CLIENT"}));
    auto opened = [&](const std::string& remembered) {
        lisp("(cf:gis_smart_prompting 2 18 \"" + remembered + "\")");
        fill({show(), click("Exit")});
        std::string all;
        for (int id : {1002, 1005, 1006}) {
            const std::string line = shownIn(141, id).at(0);
            all += line.substr(line.find('"'), line.rfind('"') - line.find('"') + 1);
        }
        return all;
    };
    EXPECT_EQ(opened("TITLE|JOBNO|04-0108"), "\"TITLE\"\"JOBNO\"\"04-0108\"");
    EXPECT_EQ(opened("TITLE|JOBNO|gone"), "\"TITLE\"\"JOBNO\"\"\"");
    EXPECT_EQ(opened("T21|GONE|"), "\"T21\"\"\"\"\"");
    EXPECT_EQ(opened("GONE|JOBNO|"), "\"\"\"\"\"\"");
    EXPECT_EQ(opened("nonsense"), "\"\"\"\"\"\"");
}

TEST_F(FillTest, OldAndNewAreComparedBeforeAnythingIsWritten) {
    writeSettings(links("T#1", "CLIENT", "CLIENTS", "jobs.mdb", {"CLIENT", "PHONE"}));
    const std::vector<ui::Step> choose = {pick("1001", "0"), pick("1003", "CLIENT"), click("1901")};
    std::vector<ui::Step> look = choose;
    look.push_back(click("Exit"));
    answer(1412, {show(), check("Differences only", true), show(), click("Exit")});
    EXPECT_EQ(fill(look), "");
    EXPECT_TRUE(shown("3 of 3 blocks differ, in 3 texts."));
    const std::string last = *std::find_if(ui_.log().rbegin(), ui_.log().rend(), [](const std::string& line) {
        return line.starts_with("[1412]");
    });
    EXPECT_EQ(std::regex_search(last, std::regex("12D +CITY OF MONROE +PHONE +\\? +704-555-0101")), true)
        << last;
    EXPECT_EQ(last.find(" CLIENT "), std::string::npos) << "equal texts are left out";
    EXPECT_EQ(savedTexts()["12D PHONE"], "?");
    answer(1412, {click("Insert/Update")});
    EXPECT_EQ(fill(choose), "\nT#1: 3 blocks, 3 updated.");
    EXPECT_EQ(savedTexts()["12D PHONE"], "704-555-0101");
}

TEST_F(FillTest, RoutinesFillAndCompareWithoutDialogs) {
    write("own.ini", titleLinks("PROJECTS", "owners.xls"));
    EXPECT_EQ(lisp("(gis:fill-titles \"title\" \"jobno\" \"\" " + quoted("own.ini") + ")"),
              "(11 7 2 1 (\"99-9999\" \" 05-0143 \"))");
    EXPECT_TRUE(printed().ends_with(kTitlesFilled));
    EXPECT_EQ(savedTexts()["79 PROJECT"], "CEDAR CREEK SUBDIVISION");
    EXPECT_EQ(lisp("(gis:compare-titles \"TITLE\" \"JOBNO\" \"\" " + quoted("own.ini") + ")"), "nil");
    lisp("(command \"_.U\")");
    EXPECT_EQ(lisp("(length (gis:compare-titles \"TITLE\" \"JOBNO\" \"04-0108\" " + quoted("own.ini") + "))"),
              "79")
        << "all but a key";
    EXPECT_EQ(lisp("(gis:fill-titles \"TITLE\" \"JOBNO\" \"\" " + quoted("none.ini") + ")"), "nil");
    EXPECT_FALSE(fs::exists(path("none.ini")));
    EXPECT_EQ(lisp("(gis:fill-titles)"), "nil");
    EXPECT_EQ(ui_.log(), std::vector<std::string>{});
}

// Ten keys are told to a person, and all of them to a routine.
TEST_F(FillTest, ARoutineGetsAllKeysWithoutARecord) {
    lisp(
        "(foreach part '(((0 . \"BLOCK\") (2 . \"MANY\") (70 . 2) (10 0.0 0.0 0.0))"
        " ((0 . \"ATTDEF\") (10 0.0 0.0 0.0) (40 . 1.0) (1 . \"\") (3 . \"\") (2 . \"JOBNO\") (70 . 0))"
        " ((0 . \"ENDBLK\"))) (entmake part))"
        "(foreach key '(1 2 3 4 5 6 7 8 9 10 11 12 1)"
        " (entmake '((0 . \"INSERT\") (2 . \"MANY\") (66 . 1) (10 0.0 0.0 0.0)))"
        " (entmake (list '(0 . \"ATTRIB\") '(10 0.0 0.0 0.0) '(40 . 1.0) (cons 1 (strcat \"K\" (itoa key)))"
        " '(2 . \"JOBNO\") '(70 . 0)))"
        " (entmake '((0 . \"SEQEND\"))))");
    write("own.ini", link("MANY", "JOBNO", "JOBNO", "OWNERS", "CLIENT", "owners.dbf"));
    EXPECT_EQ(lisp("(gis:fill-titles \"MANY\" \"JOBNO\" \"\" " + quoted("own.ini") + ")"),
              "(13 0 13 0 (\"K1\" \"K2\" \"K3\" \"K4\" \"K5\" \"K6\" \"K7\" \"K8\" \"K9\" \"K10\" \"K11\" "
              "\"K12\"))");
    EXPECT_TRUE(printed().ends_with(
        "\nMANY: 13 blocks, 0 updated, 13 without a record (K1, K2, K3, K4, K5, K6, K7, K8, "
        "K9, K10, ...)."));
}

TEST_F(FillTest, ARunEndsBetweenTwoBlocks) {
    writeSettings(titleLinks("OWNERS", "owners.dbf"));
    std::vector<ui::Step> work(80, show());
    answer(1000, work);
    answer(1000, {show(), show(), click("Cancel")});
    const std::string said = fill(byAttribute(11, "TITLE", "JOBNO"));
    EXPECT_NE(said.find("not looked at"), std::string::npos) << said;
}

TEST_F(FillTest, AWholeFolderOfDrawingsIsFilledFromAScript) {
    write("own.ini", titleLinks("OWNERS", "owners.dbf"));
    fs::create_directory(path("sheets"));
    for (int i = 0; i < 3; ++i)
        fs::copy_file(path("titles.dxf"),
                      path("sheets/sheet" + std::to_string(i) + (i == 2 ? ".DXF" : ".dxf")));
    write("sheets/notes.txt", "no drawing");
    lisp("(load \"" NORVANE_SOURCE_DIR "/samples/title-blocks.lsp\")");
    EXPECT_EQ(lisp("(sample:fill-folder " + quoted("sheets/") + " \"TITLE\" \"JOBNO\" " + quoted("own.ini") +
                   " " + quoted("report.csv") + ")"),
              "3");
    const std::vector<std::string> report = ::text::split(read("report.csv"), '\n');
    ASSERT_GE(report.size(), 4u) << read("report.csv");
    EXPECT_EQ(report[2], "\"" + path("sheets/sheet1.dxf") + "\",11,7,2,1,\"99-9999  05-0143  \"");
    EXPECT_EQ(lisp("(sample:title-line \"a \\\"b\\\".dxf\" '(1 0 1 0 (\"24\\\"\" \"K2\")))"),
              R"("\"a \"\"b\"\".dxf\",1,0,1,0,\"24\"\" K2 \"")");
    ASSERT_EQ(host_->openDrawing(path("sheets/sheet1.dxf")), "");
    EXPECT_EQ(savedTexts()["79 PROJECT"], "CEDAR CREEK SUBDIVISION");
}

TEST_F(FillTest, ASourceOnAServerIsReadByItsConnectString) {
    const std::string driver = odbcDriver("libsqlite3odbc.so");
    if (driver.empty()) GTEST_SKIP() << "the ODBC driver of SQLite is not installed";
    sqlite("server.db",
           "create table jobs (jobno varchar(20), project varchar(50), size double); insert into jobs values "
           "('03-0101', 'FROM THE SERVER', 12.5)");
    const std::string connect = "ODBC;DRIVER=" + driver + ";Database=" + path("server.db");
    writeSettings("TITLE|PROJECT|JOBNO|JOBS|PROJECT|" + connect + "\nTITLE|SCALE|JOBNO|JOBS|SIZE|" + connect +
                  "\n");
    EXPECT_TRUE(fill(byAttribute(11, "TITLE", "JOBNO")).starts_with("\nTITLE: 11 blocks, 1 updated"));
    std::map<std::string, std::string> texts = savedTexts();
    EXPECT_EQ(texts["79 PROJECT"], "FROM THE SERVER");
    EXPECT_EQ(texts["79 SCALE"], "12.500000");
}
