// The one external function: its codes, arguments and results, from Lisp.
#include "platform/dao/dao.h"
#include "tests/module/module_fixture.h"

class Dispatcher : public ModuleTest {};

TEST_F(Dispatcher, ACallWithoutACodeMakesTheSettingsFileAndGivesZero) {
    EXPECT_EQ(lisp("(cf:gis_smart_prompting)"), "0");
    EXPECT_EQ(read("gps.ini"), "is_database=\ngisoutfile=\ngismdbfile=\n");
    for (const char* call : {"\"1\"", "1.0", "0", "22", "-1", "nil", "'(1 2)", "9", "10", "13"})
        EXPECT_EQ(lisp(std::string("(cf:gis_smart_prompting ") + call + ")"), "0") << call;
    EXPECT_EQ(printed(), "");
}

TEST_F(Dispatcher, TheFirstTraceRunsFromLispToTheEntity) {
    makeTemplate();
    makeEntity();
    lisp("(setq lspdir " + quoted("") + " tmpl " + quoted("template.mdb") + " outp " + quoted("output.mdb") +
         " n 480100.25 e 1630200.5 z 512.75)");
    answer(134, {cell(1, "RED OAK"), cell(2, "14"), click("OK")});
    EXPECT_EQ(
        lisp("(cf:gis_smart_prompting 1 lspdir tmpl outp \"PT_ID\" \"1042\" n e z ent `TREE12` 1 0.0 0.0 0.0 "
             "0.0 0.0 0.0 \"\")"),
        "1");
    EXPECT_EQ(sqlite("output.mdb", "select PT_ID, GIS_KEY, SPECIES, DBH, NORTHING, DESCRIPTION from TREE"),
              "1042|TREE|RED OAK|14|480100.25|TREE\n");
    EXPECT_EQ(sqlite("template.mdb", "select GIS_NAME, TABLE_NAME, IS_CURRENT from ZGEO_LINKS"),
              "TREE|TREE|YES\n");
    EXPECT_EQ(link(), "((\"ZGEO_GIS_2000\" (1002 . \"{\") (1000 . " + quoted("template.mdb") + ") (1000 . " +
                          quoted("output.mdb") +
                          ") (1000 . \"TREE\") (1000 . \"PT_ID\") (1000 . \"1042\") (1002 . \"}\")))");
}

TEST_F(Dispatcher, CodeOneNeedsAllItsStringsAndTheFourThatNameThePoint) {
    makeTemplate();
    makeEntity();
    std::string strings =
        quoted("") + " " + quoted("template.mdb") + " " + quoted("output.mdb") + " \"PT_ID\" \"1\"";
    // Coordinates missing: the output is made, but no sheet opens.
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 1 " + strings + ")"), "0");
    EXPECT_TRUE(fs::exists(path("output.mdb")));
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 1 " + strings + " 1 2 3 ent \"TREE\")"),
              "0");  // integers, not reals
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 1 " + strings + " 1.0 2.0 3.0 \"TREE\")"), "0");  // no entity
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 1 \"\" \"\" \"\")"), "0");
    EXPECT_TRUE(ui_.log().empty());
    // An empty string counts as absent.
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 1 " + quoted("") + " " + quoted("template.mdb") + " " +
                   quoted("output.mdb") + " \"PT_ID\" \"\" 1.0 2.0 3.0 ent \"TREE\" 1)"),
              "0");
    EXPECT_TRUE(ui_.log().empty());
    // What follows the feature's name may be left out.
    answer(134, {click("Cancel")});
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 1 " + strings + " 1.0 2.0 3.0 ent)"), "0");
    EXPECT_TRUE(shown("dialog 134"));
}

TEST_F(Dispatcher, CodeOneTellsWhatItCannotReadOrWrite) {
    makeEntity();
    EXPECT_EQ(prompt("1", "TREE"), "0");
    EXPECT_EQ(printed(), "\nError: unable to read file " + path("template.mdb"));
    makeTemplate();
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 1 " + quoted("") + " " + quoted("template.mdb") + " " +
                   quoted("out.docx") + " \"PT_ID\" \"1\" 1.0 2.0 3.0 ent \"TREE\" 1)"),
              "0");
    EXPECT_NE(printed().find("\nError: unable to write file " + path("out.docx")), std::string::npos);
}

TEST_F(Dispatcher, ALockedFeatureMustBeInTheTemplate) {
    makeTemplate();
    makeEntity();
    EXPECT_EQ(prompt("1", "BUSH"), "0");
    EXPECT_EQ(prompt("1", "12"), "0");
    EXPECT_FALSE(shown("dialog 134"));
    answer(134, {click("Cancel")});
    EXPECT_EQ(prompt("1", "BUSH", 0), "0");
    EXPECT_TRUE(shown("dialog 134"));
    EXPECT_EQ(link(), "nil");
}

TEST_F(Dispatcher, TheBaseNameWinsOverTheNameWithItsDigits) {
    makeTemplate();
    makeEntity();
    lisp("(cf:gis_smart_prompting 19 " + quoted("template.mdb") +
         " 0 \"ZGEO_SMART_PROMPTING\" \"GIS_NAME\" \"TREE12\" \"FIELD_NAME\" \"X\" \"FIELD_PROMPT\" \"X\""
         " 0 \"ZGEO_SMART_PROMPTING\" \"GIS_NAME\" \"WELL7\" \"FIELD_NAME\" \"DEPTH\" \"FIELD_PROMPT\" "
         "\"Depth\")");
    answer(134, {show(), click("Cancel")});
    prompt("1", "tree12");
    EXPECT_TRUE(shown("drop-down \"TREE\""));
    ui_.clearLog();
    answer(134, {show(), click("Cancel")});
    prompt("1", "TREE12");
    EXPECT_TRUE(shown("drop-down \"TREE\""));
    ui_.clearLog();
    answer(134, {show(), click("Cancel")});
    prompt("1", "WELL7");
    EXPECT_TRUE(shown("drop-down \"WELL7\""));
}

TEST_F(Dispatcher, CodesTwoAndThreeKeepSlots) {
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 2 5 \"five\")"), "0");
    EXPECT_EQ(lisp("(progn (cf:gis_smart_prompting 3 5) ret_string)"), "\"five\"");
    // Nothing is stored out of range, or without both arguments, and an empty slot leaves the symbol alone.
    for (const char* call :
         {"2 30 \"x\"", "2 -1 \"x\"", "2 6 \"\"", "2 6", "2 \"6\" \"x\"", "3 -1", "3 30", "3 6", "3"})
        EXPECT_EQ(lisp(std::string("(cf:gis_smart_prompting ") + call + ")"), "0") << call;
    EXPECT_EQ(lisp("ret_string"), "\"five\"");
    EXPECT_EQ(read("featlink.ini"), "&2five\n");
}

TEST_F(Dispatcher, CodeFourteenChoosesAFile) {
    write("a.mdb", "x");
    answer(149, {click("Existing")});
    ui_.answerFile(path("a.mdb"));
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 14 \"/some/folder/\")"), quoted("a.mdb"));
    EXPECT_TRUE(shown("in \"/some/folder/\""));
    answer(149, {{ui::Step::Kind::Close}});
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 14)"), "nil");
}

TEST_F(Dispatcher, CodeNineteenAddsRecords) {
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 19)"), "-1.0");
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 19 " + quoted("none.mdb") + ")"), "-2.0");
    makeTemplate();
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 19 " + quoted("template.mdb") + ")"), "0.0");
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 19 " + quoted("template.mdb") +
                   " 0 \" zgeo_cat \" \"cat_gis_name\" \"NEW\" \"GIS_NAME\" \"NO_GIS\" \"NOSUCH\" \"1\" "
                   "\"INDEX_CAT_GIS\""
                   " 0 \"NOTABLE\" \"A\" \"B\")"),
              "1.0");
    EXPECT_EQ(
        sqlite("template.mdb",
               "select CAT_GIS_NAME, GIS_NAME, INDEX_CAT_GIS is null from ZGEO_CAT where CAT_GIS_NAME='NEW'"),
        "NEW|NO_GIS|1\n");
}

TEST_F(Dispatcher, CodeTwentyMakesAMissingOutputAndGivesOne) {
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 20)"), "1");
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 20 " + quoted("") + " " + quoted("t.mdb") + " " +
                   quoted("o.mdb") + ")"),
              "1");
    EXPECT_EQ(printed(), "\nError: unable to read file " + path("t.mdb"));
    EXPECT_TRUE(fs::exists(path("o.mdb")));
}

TEST_F(Dispatcher, OutputsThatAreMissingAreMadeInTheOlderFormat) {
    makeTemplate();
    makeEntity();
    answer(134, {click("Cancel")});
    prompt("1", "TREE");
    lisp("(cf:gis_smart_prompting 20 " + quoted("") + " " + quoted("template.mdb") + " " + quoted("o.mdb") +
         ")");
    for (const char* name : {"output.mdb", "o.mdb"}) {
        CDaoDatabase database;
        database.Open(path(name));
        EXPECT_EQ(database.GetVersion(), "3.0") << name;
    }
}

TEST_F(Dispatcher, CodeTwentyLeavesServersAlone) {
    makeTemplate();
    printed();
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 20 " + quoted("") + " " + quoted("template.mdb") +
                   " \"ODBC;DSN=a.server;PWD=secret\")"),
              "1");
    // The tool asks its first question, which nobody answers.
    EXPECT_EQ(printed(),
              "\nUse as key to match the records from the table Interior Text or Entity "
              "Handle[<Text>/Handle]? "
              "\nNothing answers the prompt \"Use as key to match the records from the table Interior "
              "Text or Entity Handle[<Text>/Handle]?\".\n");
}

TEST_F(Dispatcher, ObjectDataThatIsAskedForChangesNothing) {
    makeTemplate();
    makeEntity();
    write("gps.ini", "is_database=\nis_objdata=1\n");
    inputs_ = {""};
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 18)"), "0");
    EXPECT_EQ(printed(), "\nSelect object (Number/Pick/<Select>): ");
    answer(134, {cell(2, "14"), click("OK")});
    EXPECT_EQ(prompt("1", "TREE"), "1");
    EXPECT_EQ(sqlite("output.mdb", "select PT_ID from TREE"), "1\n");
}

TEST_F(Dispatcher, ALinkThatTheHostRefusesIsNotTold) {
    makeTemplate();
    makeEntity();
    lisp("(entdel ent)");
    answer(134, {cell(2, "14"), click("OK")});
    EXPECT_EQ(prompt("1", "TREE"), "1");
    EXPECT_EQ(printed(), "");
    EXPECT_EQ(sqlite("output.mdb", "select PT_ID from TREE"), "1\n");
    lisp("(entdel ent)");
    EXPECT_EQ(link(), "nil");
}

TEST_F(Dispatcher, CodeTwentyOneSaysWhetherAFeatureIsDefined) {
    makeTemplate();
    auto exists = [&](const std::string& arguments) {
        return lisp("(cf:gis_smart_prompting 21 " + arguments + ")");
    };
    EXPECT_EQ(exists(quoted("template.mdb") + " \"tree\""), "1");
    EXPECT_EQ(exists(quoted("template.mdb") + " \"TREE12\""), "0");
    EXPECT_EQ(exists(quoted("none.mdb") + " \"TREE\""), "-1");
    lisp("(cf:gis_smart_prompting 20 " + quoted("") + " " + quoted("template.mdb") + " " +
         quoted("empty.mdb") + ")");
    EXPECT_EQ(exists(quoted("empty.mdb") + " \"TREE\""), "-2");
    EXPECT_EQ(exists(quoted("template.mdb")), "0");
    EXPECT_EQ(exists(""), "0");
}

TEST_F(Dispatcher, AutomationNeedsFiveStrings) {
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 12)"), "\"\"");
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 12 \"none.so\" \"no\" \"class\" \"method\" \"argument\")"),
              "\"\"");
    EXPECT_NE(printed().find("\nFailed to get CLSID."), std::string::npos);
}

TEST_F(Dispatcher, WithoutTheEngineNothingIsOpened) {
    makeTemplate();
    makeEntity();
    lisp("(cf:gis_smart_prompting 20 " + quoted("") + " " + quoted("template.mdb") + " " +
         quoted("output.mdb") + ")");
    write("registry.ini", "[-HKEY_CLASSES_ROOT\\DAO.DBEngine.36]\n");
    printed();
    EXPECT_EQ(prompt("1", "TREE"), "0");
    EXPECT_NE(printed().find("\nPlease install DAO 3.6..."), std::string::npos);
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 21 " + quoted("template.mdb") + " \"TREE\")"), "0");
    // Unlocked, the sheet opens and stays empty.
    answer(134, {show(), click("Cancel")});
    EXPECT_EQ(prompt("1", "TREE", 0), "0");
    EXPECT_TRUE(shown("grid 2 x 0"));
}

TEST_F(Dispatcher, FunctionsAreThoseOfTheDrawingThatIsOpen) {
    host_->modules().drawingClosing();
    for (const char* call : {"(gis:version)", "(cf:gis_smart_prompting)"})
        EXPECT_EQ(lisp(call).rfind("error: ", 0), 0u) << call << " between two drawings";
    host_->modules().drawingOpened();
    EXPECT_EQ(lisp("(cf:gis_smart_prompting)"), "0");
    EXPECT_EQ(lisp("(gis:version)"), "\"" NORVANE_VERSION "\"");
}

TEST_F(Dispatcher, FunctionsOfOurOwnComeAndGoWithTheFirst) {
    EXPECT_EQ(lisp("(gis:version)"), "\"" NORVANE_VERSION "\"");
    EXPECT_EQ(lisp("(gis:version 1 \"x\")"), "\"" NORVANE_VERSION "\"") << "arguments that mean nothing";
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 21)"), "0") << "its result does not stay behind";
    ASSERT_TRUE(host_->modules().unload("norvane_gis.arx")) << printed();
    for (const char* call : {"(gis:version)", "(cf:gis_smart_prompting)"})
        EXPECT_EQ(lisp(call).rfind("error: ", 0), 0u) << call;
}
