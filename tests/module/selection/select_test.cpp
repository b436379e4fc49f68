// Selection by condition: through Lisp, the command line and the dialog.
#include "tests/module/selection/select_fixture.h"
#include "tests/platform/dao/odbc/postgres_server.h"

TEST_F(SelectTest, RecordsFindTheirEntities) {
    EXPECT_EQ(found("TREES", "SPECIES = 'oak'"), "(1 2 5 6)");
    EXPECT_EQ(error(), "\"\"");
    EXPECT_EQ(found("trees", "DBH > 30"), "(1 3 6)");
    EXPECT_EQ(found("TREES", "DBH IS NULL"), "(4)");
    EXPECT_EQ(found("TREES", "NOT DBH > 30"), "(2 5)");
    EXPECT_EQ(found("TREES", ""), "(1 2 3 4 5 6)") << "a record of the other feature is not that of point 7";
    EXPECT_EQ(found("SIGNS", "KIND LIKE 'st*'"), "(9)") << "links name the field of their key";
    EXPECT_EQ(found("TREES", "DBH = 99"), "nil");
    EXPECT_EQ(error(), "\"\"") << "a record without an entity is no error";
    EXPECT_EQ(lisp("(type (gis:select \"TREES\" \"DBH > 30\" outp))"), "PICKSET");
}

TEST_F(SelectTest, WhatIsWrongIsToldAndSelectsNothing) {
    EXPECT_EQ(found("ROCKS", "DBH > 30"), "nil");
    EXPECT_EQ(error(), "\"The output database has no table \\\"ROCKS\\\".\"");
    for (const char* bad : {"DBH >", "HEIGHT > 3", "1=1; DROP TABLE TREES", "DBH > 3) OR (1=1", "' OR ''='",
                            "\x01\xFF", "PT_ID = (SELECT PT_ID FROM SIGNS)"}) {
        EXPECT_EQ(found("TREES", bad), "nil") << bad;
        EXPECT_NE(error(), "\"\"") << bad;
    }
    EXPECT_EQ(found("TREES; DROP TABLE TREES", "DBH > 30"), "nil");
    EXPECT_EQ(found("TREES] WHERE 1=1 --", "DBH > 30"), "nil");
    EXPECT_EQ(found("TREES", "SPECIES = 'x'' OR ''1''=''1'"), "nil");
    EXPECT_EQ(error(), "\"\"") << "a quote in a value is one";
    EXPECT_EQ(found("TREES", "DBH > 30"), "(1 3 6)") << "all is as it was";
    EXPECT_EQ(lisp("(gis:select \"TREES\" \"DBH > 30\" \"/nowhere/gone.mdb\")"), "nil");
    EXPECT_EQ(error(), "\"The output database /nowhere/gone.mdb is not there.\"");
    write("text.mdb", "no database at all");
    EXPECT_EQ(lisp("(gis:select \"TREES\" \"\" " + quoted("text.mdb") + ")"), "nil");
    EXPECT_NE(error(), "\"\"");
}

TEST_F(SelectTest, SelectionsAreCombined) {
    EXPECT_EQ(select({"TREES", "DBH > 30", ""}),
              "3 records, 3 entities, 1 record without an entity; 3 entities are selected.");
    EXPECT_EQ(selected(), "(1 3 6)");
    EXPECT_EQ(select({"TREES", "SPECIES = 'Oak'", "Intersect"}),
              "4 records, 4 entities, 1 record without an entity; 2 entities are selected.");
    EXPECT_EQ(selected(), "(1 6)");
    EXPECT_EQ(select({"", "DBH < 30", "a"}), "2 records, 2 entities; 4 entities are selected.")
        << "the table is proposed";
    EXPECT_EQ(selected(), "(1 6 2 5)");
    EXPECT_EQ(select({"SIGNS", "", "Add"}), "1 record, 1 entity; 5 entities are selected.");
    EXPECT_EQ(select({"TREES", "PT_ID IN ('1', '5')", "S"}),
              "2 records, 3 entities; 2 entities are selected.");
    EXPECT_EQ(selected(), "(2 9)");
    EXPECT_EQ(select({"TREES", "DBH > 1000", ""}), "0 records, 0 entities; 0 entities are selected.");
    EXPECT_EQ(selected(), "nil");
    // The next command takes them.
    select({"TREES", "DBH IS NULL", ""});
    host_->runLine("ERASE");
    EXPECT_EQ(found("TREES", ""), "(1 2 3 5 6)");
}

TEST_F(SelectTest, AKeyFieldThatIsGoneIsTold) {
    sqlite("output.mdb",
           "drop table SIGNS; create table SIGNS (NUM TEXT(50), KIND TEXT(50)); "
           "insert into SIGNS values ('1', 'stop')");
    EXPECT_EQ(
        select({"SIGNS", "", ""}),
        "1 record, 0 entities, 1 record without an entity (links lead to a field NO, which the table does "
        "not have); 0 entities are selected.");
}

TEST_F(SelectTest, TheCommandLineSaysWhatThereIsAndWhatIsWrong) {
    lisp("(gis:keep-condition \"Thick\" \"TREES\" \"DBH > 30\")");
    EXPECT_EQ(select({"?", "rocks", "TREES", "?", "DBH >> 3", "thick", ""}),
              "3 records, 3 entities, 1 record without an entity; 3 entities are selected.");
    EXPECT_NE(said_.find("\nTables: TREES, SIGNS"), std::string::npos) << said_;
    EXPECT_NE(said_.find("\nThick: TREES, DBH > 30"), std::string::npos) << said_;
    EXPECT_NE(said_.find("\nThere is neither a table nor a condition \"rocks\"."), std::string::npos)
        << said_;
    EXPECT_NE(said_.find("\nFields: PT_ID, GIS_KEY, SPECIES, DBH"), std::string::npos) << said_;
    EXPECT_NE(said_.find("\nDBH >> 3\n     ^ "), std::string::npos) << said_;
    EXPECT_EQ(select({"THICK", ""}),
              "3 records, 3 entities, 1 record without an entity; 3 entities are selected.")
        << "the name alone is enough";
    // Who ends it leaves the selection as it is.
    inputs_ = {"TREES", "DBH IS NULL"};
    lisp("(gis:select-by-condition)");
    EXPECT_EQ(selected(), "(1 3 6)");
    inputs_ = {"TREES", std::string(600, '1')};
    printed();
    lisp("(gis:select-by-condition)");
    EXPECT_NE(printed().find("A condition as long as that"), std::string::npos);
    lisp("(cf:gis_smart_prompting 2 2 " + quoted("gone.mdb") + ")");
    EXPECT_EQ(select({}), "The output database " + path("gone.mdb") + " is not there.");
}

TEST_F(SelectTest, ConditionsTravelWithTheDrawing) {
    EXPECT_EQ(lisp("(gis:conditions)"), "nil");
    EXPECT_EQ(lisp("(gis:keep-condition \"Thick oaks\" \"TREES\" \"DBH > 30 AND SPECIES = 'oak'\")"),
              "\"Thick oaks\"");
    EXPECT_EQ(lisp("(gis:keep-condition \"All\" \"SIGNS\" \"\")"), "\"All\"");
    EXPECT_EQ(lisp("(gis:keep-condition \"a*b\" \"SIGNS\" \"\")"), "nil");
    EXPECT_EQ(error(), "\"\\\"a*b\\\" cannot be a name.\"");
    ASSERT_EQ(host_->saveDrawing(path("kept.dxf")), "");
    ASSERT_EQ(host_->newDrawing(), "");
    EXPECT_EQ(lisp("(gis:conditions)"), "nil");
    ASSERT_EQ(host_->openDrawing(path("kept.dxf")), "");
    EXPECT_EQ(lisp("(gis:conditions)"),
              "((\"All\" \"SIGNS\" \"\") (\"Thick oaks\" \"TREES\" \"DBH > 30 AND SPECIES = 'oak'\"))");
    EXPECT_EQ(found("", "=thick oaks"), "(1 6)");
    EXPECT_EQ(found("TREES", "=Thin oaks"), "nil");
    EXPECT_NE(error(), "\"\"");
    // What is kept is checked anew: it is never run as it stands.
    lisp("(gis:keep-condition \"Bad\" \"TREES\" \"1=1; DROP TABLE TREES\")");
    EXPECT_EQ(found("", "=Bad"), "nil");
    EXPECT_NE(error(), "\"\"");
    EXPECT_EQ(lisp("(gis:remove-condition \"bad\")"), "\"bad\"");
    EXPECT_EQ(lisp("(gis:remove-condition \"bad\")"), "nil");
    // One of a later version stays and is told.
    lisp(
        "(setq kind (cdr (assoc -1 (dictsearch (cdr (assoc -1 (dictsearch (namedobjdict) \"NORVANE_GIS\"))) "
        "\"CONDITIONS\"))))"
        "(dictadd kind \"Later\" (entmakex '((0 . \"XRECORD\") (100 . \"AcDbXrecord\") (90 . 2) (1 . "
        "\"x\"))))");
    EXPECT_EQ(lisp("(length (gis:conditions))"), "2");
    EXPECT_EQ(error(), "\"\\\"Later\\\" was written by another version (2) and is not used.\"");
    EXPECT_EQ(found("", "=Later"), "nil");
    EXPECT_EQ(error(), "\"\\\"Later\\\" was written by another version (2) and is not used.\"");
    select({"TREES", "DBH = 50", ""});
    EXPECT_NE(said_.find("\nCondition \"Later\" was written by another version (2) and is not used."),
              std::string::npos)
        << said_;
}

TEST_F(SelectTest, EntitiesGiveTheirRecords) {
    EXPECT_EQ(
        lisp("(mapcar 'cdr (gis:records (gis:select \"TREES\" \"DBH > 30\")))"),
        "((\"TREES\" (\"PT_ID\" . \"1\") (\"GIS_KEY\" . \"TREE\") (\"SPECIES\" . \"Oak\") (\"DBH\" . "
        "\"35\")) "
        "(\"TREES\" (\"PT_ID\" . \"3\") (\"GIS_KEY\" . \"TREE\") (\"SPECIES\" . \"Elm\") (\"DBH\" . \"50\")) "
        "(\"TREES\" (\"PT_ID\" . \"1\") (\"GIS_KEY\" . \"TREE\") (\"SPECIES\" . \"Oak\") (\"DBH\" . "
        "\"35\")))");
    EXPECT_EQ(
        lisp("(mapcar '(lambda (r) (list (fix (cadr (assoc 10 (entget (car r))))) (cadr r))) (gis:records "
             "(ssget "
             "\"X\")))"),
        "((1 \"TREES\") (2 \"TREES\") (3 \"TREES\") (4 \"TREES\") (5 \"TREES\") (6 \"TREES\") (9 \"SIGNS\"))")
        << "points 7 and 8 have none";
    EXPECT_EQ(lisp("(gis:records 5)"), "nil");
    EXPECT_EQ(error(), "\"A selection set is needed.\"");
    EXPECT_EQ(lisp("(gis:records (ssadd))"), "nil");
}

// The folder of a job has been moved: its links still lead to where it was.
TEST_F(SelectTest, FilesBesideTheDrawingTakeThePlaceOfThoseThatAreGone) {
    fs::create_directory(path("moved"));
    for (const char* name : {"template.mdb", "output.mdb"}) fs::rename(path(name), path("moved/") + name);
    ASSERT_EQ(host_->saveDrawing(path("moved/trees.dxf")), "");
    lisp("(cf:gis_smart_prompting 2 2 " + quoted("moved/output.mdb") + ")");
    EXPECT_EQ(found("TREES", "DBH > 30"), "(1 3 6)");
    EXPECT_EQ(lisp("(length (gis:records (ssget \"X\")))"), "7");
}

TEST_F(SelectTest, TheDialogSelectsAndKeeps) {
    auto type = [](int id, const char* text) {
        return ui::Step{ui::Step::Kind::Text, std::to_string(id), text};
    };
    answer(1821, {show(), pick("1004", "TREES"), type(1006, "DBH > 30"), click("C&ount"), show(),
                  click("&Keep as..."), show(), type(1006, "DBH >> 3"), click("&Select"), show(),
                  pick("1010", "0"), click("&Rename..."), show(), click("&Select")});
    answer(1822, {ui::Step{ui::Step::Kind::Text, "1001", "Thick"}, click("OK")});
    answer(1822, {ui::Step{ui::Step::Kind::Text, "1001", "Very thick"}, click("OK")});
    lisp("(gis:choose-condition)");
    EXPECT_TRUE(shown("3 records, 3 entities, 1 record without an entity."));
    EXPECT_TRUE(shown("Kept as \"Thick\"."));
    EXPECT_EQ(printed(), "\n3 records, 3 entities, 1 record without an entity; 3 entities are selected.");
    EXPECT_EQ(selected(), "(1 3 6)");
    EXPECT_EQ(lisp("(gis:conditions)"), "((\"Very thick\" \"TREES\" \"DBH > 30\"))");
    // Taking out of it, and a condition that goes.
    answer(1821, {pick("1010", "0"), type(1006, "SPECIES = 'Elm'"),
                  ui::Step{ui::Step::Kind::Click, "S&ubtract"}, click("&Delete"), show(), click("&Select")});
    lisp("(gis:choose-condition)");
    EXPECT_EQ(selected(), "(1 6)");
    EXPECT_TRUE(shown("\"Very thick\" is removed; U takes it back."));
    EXPECT_EQ(lisp("(gis:conditions)"), "nil");
    // Without a database nothing but Close can be done.
    lisp("(cf:gis_smart_prompting 2 2 " + quoted("gone.mdb") + ")");
    answer(1821, {show(), click("C&lose")});
    lisp("(gis:choose-condition)");
    EXPECT_TRUE(shown("gone.mdb is not there."));
}

TEST_F(SelectTest, EscapeEndsASearchAndLeavesTheSelection) {
    select({"TREES", "DBH IS NULL", ""});
    onPrinted_ = [this](std::string_view text) {
        if (text.find("its name, or [?]") != std::string_view::npos) host_->cancel();
    };
    inputs_ = {"TREES", "DBH > 30"};
    printed();
    lisp("(gis:select-by-condition)");
    EXPECT_NE(printed().find("\nStopped. What is selected stays as it was."), std::string::npos);
    onPrinted_ = {};
    EXPECT_EQ(selected(), "(4)");
}

// An output of another engine, and links that name it by a path in other letters.
TEST_F(SelectTest, OutputsOfSqliteAreSearchedToo) {
    fs::remove(path("output.mdb"));
    sqlite("output.db",
           "create table TREES (PT_ID TEXT, SPECIES TEXT, DBH INTEGER); insert into TREES values "
           "('1', 'Oak', 35), ('2', 'oak', 20), ('8', 'OAK', 30)");
    lisp("(setq outp " + quoted("output.db") +
         ") (cf:gis_smart_prompting 2 2 outp)"
         "(point 11.0 \"TREE\" \"PT_ID\" \"1\") (setq outp (strcase outp)) (point 12.0 \"TREE\" \"PT_ID\" "
         "\"2\")");
    EXPECT_EQ(found("TREES", "SPECIES = 'OAK'"), "(11 12)");
    EXPECT_EQ(select({"TREES", "SPECIES = 'OAK' AND DBH >= 30", ""}),
              "2 records, 1 entity, 1 record without an entity; 1 entity is selected.");
}

namespace {

// Links, conditions that servers tell in their own way, records, and an error of the server.
class SelectOnServer : public SelectTest {
  protected:
    void searchServer(const std::string& connect) {
        lisp("(setq outp \"" + connect +
             "\") (cf:gis_smart_prompting 2 2 outp)"
             "(point 21.0 \"TREE\" \"PT_ID\" \"A1\") (point 22.0 \"TREE\" \"PT_ID\" \"A2\")"
             "(point 23.0 \"TREE\" \"PT_ID\" \"A3\")");
        EXPECT_EQ(found("TREES", "SPECIES = 'oak'"), "(21 22)") << error();
        EXPECT_EQ(found("TREES", "SPECIES LIKE '*M' OR DBH < 25"), "(22 23)") << error();
        EXPECT_EQ(found("TREES", "SPECIES <> 'elm' AND SPECIES NOT LIKE 'y*'"), "(21 22)") << error();
        EXPECT_EQ(found("TREES", ""), "(21 22 23)") << error();
        EXPECT_EQ(select({"TREES", "DBH > 30", ""}),
                  "3 records, 2 entities, 1 record without an entity; 2 entities are selected.");
        EXPECT_EQ(lisp("(length (gis:records (cadr (ssgetfirst))))"), "2") << error();
        EXPECT_EQ(found("ROCKS", ""), "nil");
        EXPECT_NE(error(), "\"\"");
    }
    static constexpr const char* kRecords =
        "create table TREES (PT_ID varchar(50), GIS_KEY varchar(50), SPECIES varchar(50), DBH integer);"
        "insert into TREES values ('A1','TREE','Oak',35), ('a2','TREE','oak',20), ('A3','tree','Elm',50), "
        "('A9','TREE','Yew',99);";
};

}  // namespace

TEST_F(SelectOnServer, ThatTellsLessThanAConditionAsks) {
    const std::string driver = odbcDriver("libsqlite3odbc.so");
    if (driver.empty()) GTEST_SKIP() << "the ODBC driver of SQLite is not installed";
    sqlite("server.db", kRecords);
    searchServer("ODBC;DRIVER=" + driver + ";Database=" + path("server.db"));
}

TEST_F(SelectOnServer, OfPostgres) {
    PostgresServer& server = PostgresServer::instance();
    if (!server.missing().empty()) GTEST_SKIP() << server.missing();
    ASSERT_EQ(server.answer("CREATE SCHEMA survey; SET search_path TO survey; " + std::string(kRecords)), "");
    // Links have no password: the one that a person has given serves.
    const std::string connect = server.source() + ";UID=" + PostgresServer::kUser;
    answer(1601, {ui::Step{ui::Step::Kind::Text, "1007", PostgresServer::kPassword}, click("OK")});
    searchServer(connect);
}
