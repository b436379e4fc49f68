// gps.ini and featlink.ini through the settings dialog, the chooser and the slots.
#include <csignal>
#include <random>

#include <sys/wait.h>

#include "tests/module/module_fixture.h"

class Settings : public ModuleTest {
  protected:
    std::string store(int slot, const std::string& value) {
        return lisp("(cf:gis_smart_prompting 2 " + std::to_string(slot) + " \"" + value + "\")");
    }
    std::string fetch(int slot) {
        return lisp("(progn (setq ret_string nil) (cf:gis_smart_prompting 3 " + std::to_string(slot) +
                    ") ret_string)");
    }
};

TEST_F(Settings, PathsStandBehindTheAnchorInTheirOrder) {
    write("gps.ini", "is_database=");
    store(2, "x.mdb");
    EXPECT_EQ(read("gps.ini"), "is_database=\ngisoutfile=x.mdb\n");
    store(1, "y.mdb");
    EXPECT_EQ(read("gps.ini"), "is_database=\ngismdbfile=y.mdb\ngisoutfile=x.mdb\n");
    EXPECT_EQ(read("featlink.ini"), "#2x.mdb\n#1y.mdb\n");
}

TEST_F(Settings, LinesOfOthersAreKeptAsTheyStand) {
    std::string others = "; the host's own\r\n  is_database=no\r\nspeed=\xE9 1\n\nis_database=\n";
    write("gps.ini", others + "gisoutfile=old.mdb   \nlast");
    EXPECT_EQ(fetch(2), "\"old.mdb\"");
    EXPECT_EQ(read("gps.ini"), others + "gisoutfile=old.mdb   \nlast");
    store(2, "a=b;c.mdb");
    EXPECT_EQ(read("gps.ini"), others + "gisoutfile=a=b;c.mdb\nlast\n");
    EXPECT_EQ(fetch(2), "\"a=b;c.mdb\"");
}

TEST_F(Settings, WithoutTheAnchorTheFileIsNeverChanged) {
    write("gps.ini", "gisoutfile=old.mdb\n");
    store(1, "t.mdb");
    store(2, "o.mdb");
    EXPECT_EQ(read("gps.ini"), "gisoutfile=old.mdb\n");
    EXPECT_EQ(fetch(1), "nil");  // no fallback to what is remembered
    EXPECT_EQ(fetch(2), "\"old.mdb\"");
}

TEST_F(Settings, AnEmptyLineOverwritesWhatIsRemembered) {
    write("featlink.ini", "#1remembered.mdb\n");
    write("gps.ini", "is_database=\ngismdbfile=\n");
    EXPECT_EQ(fetch(1), "nil");
    EXPECT_EQ(read("featlink.ini"), "#1\n");
}

TEST_F(Settings, RememberedValuesHaveTheirTags) {
    write("featlink.ini", "  /images/  \n\n&2one\n&2two\n#Aten\n");
    EXPECT_EQ(fetch(0), "\"/images/\"");
    EXPECT_EQ(fetch(5), "\"two\"");  // the last one counts
    EXPECT_EQ(fetch(17), "\"ten\"");
    store(5, "three");  // the first one is replaced
    store(0, "/other/");
    store(10, "seven");
    EXPECT_EQ(read("featlink.ini"), "/other/\n&2three\n&2two\n#Aten\n&7seven\n");
}

TEST_F(Settings, AnUntaggedValueWithAMarkIsTakenForAnother) {
    store(0, "&2x");
    EXPECT_EQ(fetch(0), "nil");
    EXPECT_EQ(fetch(5), "\"x\"");
}

TEST_F(Settings, WithoutAFolderRememberedValuesStandInTheCurrentOne) {
    const fs::path before = fs::current_path();
    fs::current_path(path(""));
    lisp("(setq usrdir$ nil)");
    store(5, "five");
    fs::current_path(before);
    EXPECT_EQ(read("featlink.ini"), "&2five\n");
}

TEST_F(Settings, ANumberForTheFolderIsNoFolder) {
    const fs::path before = fs::current_path();
    fs::current_path(path(""));
    for (const char* folder : {"nil", "5", "1.5", "'(\"x\")"}) {
        lisp(std::string("(setq usrdir$ ") + folder + ")");
        EXPECT_EQ(lisp("(cf:gis_smart_prompting 7)"), "0") << folder;
        store(5, "five");
        for (const fs::directory_entry& entry : fs::directory_iterator(path("")))
            EXPECT_EQ(entry.path().filename().string().find("gps.ini"), std::string::npos) << entry.path();
        EXPECT_FALSE(fs::exists(path("5featlink.ini"))) << folder;
    }
    fs::current_path(before);
}

TEST_F(Settings, FoldersInPlaceOfFilesDoNoHarm) {
    fs::create_directory(path("gps.ini"));
    fs::create_directory(path("featlink.ini"));
    EXPECT_EQ(store(1, "t.mdb"), "0");
    EXPECT_EQ(store(5, "five"), "0");
    EXPECT_EQ(fetch(1), "nil");
    EXPECT_EQ(fetch(5), "nil");
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 7)"), "0");
    EXPECT_EQ(printed(), "\nCannot find GIS settings file!");
    EXPECT_TRUE(fs::is_directory(path("gps.ini")));
}

TEST_F(Settings, TheDialogShowsAndWritesBothPaths) {
    write("gps.ini", "is_database=\nis_objdata=1\n");
    write("featlink.ini", "#2" + path("old.mdb") + "\n");
    write("old.mdb", "x");
    answer(146, {show(), click("Select Template MDB File"), click("Select Output MDB File"), show(),
                 click("Exit")});
    answer(149, {click("New Access 2000 Format")});
    answer(149, {click("New Access '97 Format")});
    ui_.answerFile(path("t.xyz"));
    ui_.answerFile(path("new.mdb"));
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 7)"), "0");
    EXPECT_TRUE(shown("1105 edit \"" + path("old.mdb")));
    EXPECT_TRUE(shown("box [Alert] \"New template database is empty!\\nPlease use <Define Template Database> "
                      "command to "
                      "create GIS prompts!\" flags 0x40030") ||
                shown("New template database is empty!\nPlease use <Define Template Database> command"));
    EXPECT_EQ(read("gps.ini"), "is_database=\ngismdbfile=" + path("t.mdb") +
                                   "\ngisoutfile=" + path("new.mdb") + "\nis_objdata=0\n");
    EXPECT_EQ(sqlite("t.mdb", "select Name from MSysObjects where Name like 'ZGEO_%' order by Name"),
              "ZGEO_CAT\nZGEO_SMART_PROMPTING\n");
    EXPECT_FALSE(shown("1109"));  // the choice of a format is hidden
    EXPECT_TRUE(isAccess2000("t.mdb"));
    EXPECT_FALSE(isAccess2000("new.mdb"));
    // What was made is remembered as well.
    EXPECT_EQ(read("featlink.ini"), "#2" + path("new.mdb") + "\n#1" + path("t.mdb") + "\n");
}

TEST_F(Settings, LeavingByExitForgetsFilesThatAreGone) {
    write("gps.ini", "is_database=\ngismdbfile=gone.mdb\ngisoutfile=gone.mdb\n");
    write("featlink.ini", "#1gone.mdb\n#2gone.mdb\n");
    answer(146, {show(), click("Exit")});
    lisp("(cf:gis_smart_prompting 7)");
    EXPECT_EQ(read("gps.ini"), "is_database=\ngismdbfile=\ngisoutfile=\nis_objdata=0\n");
    EXPECT_EQ(read("featlink.ini"), "#1gone.mdb\n#2gone.mdb\n");
    EXPECT_TRUE(shown("1104 edit \"\" (read-only)"));
    EXPECT_TRUE(shown("1105 edit \"\" (read-only)"));
    EXPECT_FALSE(shown("1005")) << "the choice of a data source is not seen";
}

TEST_F(Settings, BoxesBeginAtTheDatabasesThenAtTheDrawing) {
    for (const char* folder : {"a", "b", "made", "drawing"}) fs::create_directory(path(folder));
    write("a/t.mdb", "x");
    write("b/o.mdb", "x");
    lisp("(setq tmpdir$ \"/elsewhere/\")");
    // The boxes of both databases, and those of the time after a new one was made.
    auto begin = [&](const std::string& folder) {
        write("gps.ini", "is_database=\ngismdbfile=" + path(folder + "a/t.mdb") +
                             "\ngisoutfile=" + path(folder + "b/o.mdb") + "\n");
        ui_.clearLog();
        answer(146, {click("1004"), click("1004"), click("1006"), click("1006"), key("Escape")});
        for (const char* made : {"made/t.mdb", "made/o.mdb"}) {
            answer(149, {click("New Access '97 Format")});
            answer(149, {click("Existing"), {ui::Step::Kind::Close}});
            ui_.answerFile(path(made)), ui_.answerFile("");
        }
        lisp("(cf:gis_smart_prompting 7)");
        answer(149, {click("Existing"), {ui::Step::Kind::Close}});
        ui_.answerFile("");
        lisp("(cf:gis_smart_prompting 14)");
        return boxFolders();
    };
    using Folders = std::vector<std::string>;
    const std::string made = path("made/"), drawing = path("drawing/");
    EXPECT_EQ(begin(""), (Folders{path("a/"), made, path("b/"), made, path("b/")}));
    EXPECT_EQ(begin("gone/"), (Folders{"/elsewhere/", made, "/elsewhere/", made, "/elsewhere/"}))
        << "a drawing without a name has no folder";
    ASSERT_EQ(host_->saveDrawing(path("drawing/d.dxf")), "");
    EXPECT_EQ(begin("gone/"), (Folders{drawing, made, drawing, made, drawing}));
}

TEST_F(Settings, NothingIsDeletedButTheFileThatIsMade) {
    lisp("(cf:gis_smart_prompting)");
    for (const char* name : {"t.xyz", "t.mdb", "notes.docx", "other.txt"}) write(name, "x");
    fs::create_directory(path("v1.2"));
    answer(146, {click("1006"), click("1006"), click("1006"), click("Exit")});
    // Another file of the name that is made is asked for; an ending without a rule is refused before anything
    // goes.
    answer(
        149,
        {show(), click("New Access 2000 Format"), click("New Access 2000 Format"), {ui::Step::Kind::Close}});
    answer(149, {click("New Access 2000 Format")});
    answer(149, {click("New Access '97 Format")});
    for (const char* name : {"t.xyz", "notes.docx", "other.txt", "v1.2/t.mdb"}) ui_.answerFile(path(name));
    lisp("(cf:gis_smart_prompting 7)");
    EXPECT_TRUE(
        shown("label \"File type> .MDB\"\n* 1 button \"Existing\"\n  1005 button \"New Access '97 "
              "Format\"\n  1004 button \"New Access 2000 Format\"\n  1901 button \"Server...\""));
    EXPECT_TRUE(shown("\"" + path("t.mdb") + "\" exists already.\nDo you want to replace it?"));
    EXPECT_TRUE(shown("A new database ends in .mdb, .sqlite, .db or .gpkg."));
    for (const char* name : {"t.xyz", "t.mdb", "notes.docx", "other.txt"}) EXPECT_EQ(read(name), "x") << name;
    EXPECT_TRUE(isAccess2000("other.mdb"));
    EXPECT_TRUE(fs::exists(path("v1.2/t.mdb"))) << "a dot in the name of a folder is no ending";
    EXPECT_NE(read("gps.ini").find("gisoutfile=" + path("v1.2/t.mdb")), std::string::npos) << read("gps.ini");
}

TEST_F(Settings, AFileOfTheNameThatIsMadeGoesWhenThePersonSaysSo) {
    lisp("(cf:gis_smart_prompting)");
    write("t.mdb", "x");
    answer(146, {click("1006"), click("Exit")});
    answer(149, {click("New Access 2000 Format")});
    ui_.answerFile(path("t.xyz"));
    ui_.answerQuestion("New Database", "Yes");
    lisp("(cf:gis_smart_prompting 7)");
    EXPECT_NE(read("t.mdb"), "x");
}

TEST_F(Settings, OnlyATemplateIsTakenAsOne) {
    lisp("(cf:gis_smart_prompting)");
    write("text.mdb", "this is no database");
    answer(146, {click("1004"), click("Exit")});
    answer(149, {click("Existing"), click("Existing"), {ui::Step::Kind::Close}});
    ui_.answerFile(path("text.mdb"));
    lisp("(cf:gis_smart_prompting 7)");
    EXPECT_TRUE(
        shown("box [Error] \"" + path("text.mdb") + " is not a GIS template database!\" flags 0x40030"));
    EXPECT_EQ(read("gps.ini"), "is_database=\ngisoutfile=\ngismdbfile=\nis_objdata=0\n");
}

TEST_F(Settings, AnExistingTemplateIsChosen) {
    makeTemplate();
    write("gps.ini", "is_database=\ngisoutfile=ODBC;DSN=server;UID=me\n");
    answer(146, {click("1004"), click("Exit")});
    answer(149, {click("Existing")});
    ui_.answerFile(path("template.mdb"));
    lisp("(cf:gis_smart_prompting 7)");
    // A connect string is not tested as a file.
    EXPECT_EQ(read("gps.ini"), "is_database=\ngismdbfile=" + path("template.mdb") +
                                   "\ngisoutfile=ODBC;DSN=server;UID=me\nis_objdata=0\n");
}

TEST_F(Settings, APasswordThatStandsInTheSettingsIsUsedAndGivenToNobody) {
    const std::string line = "gisoutfile=ODBC;DSN=server;UID=me;PWD=s3cret\n";
    const auto known = [&] {
        hostcad::lisp::Symbol* symbol = host_->lisp().intern("@server;UID=me");
        return std::exchange(symbol->value, {}).isString();
    };
    write("gps.ini", "is_database=\n" + line);
    EXPECT_EQ(lisp("(progn (setq ret_string nil) (cf:gis_smart_prompting 3 2) ret_string)"),
              "\"ODBC;DSN=server;UID=me\"");
    EXPECT_TRUE(known()) << "the next sign-in needs it";
    EXPECT_EQ(read("gps.ini"), "is_database=\n" + line) << "it stays where the person has put it";
    answer(146, {show(), click("Exit")});
    lisp("(cf:gis_smart_prompting 7)");
    EXPECT_TRUE(known());
    EXPECT_TRUE(shown("ODBC;DSN=server;UID=me\""));
    EXPECT_FALSE(shown("s3cret"));
    for (const char* file : {"gps.ini", "featlink.ini"})
        EXPECT_EQ(read(file).find("s3cret"), std::string::npos) << file;
    EXPECT_EQ(printed().find("s3cret"), std::string::npos);
}

TEST_F(Settings, LeavingByTheFrameEscapeOrCancelChangesNothing) {
    write("gps.ini", "is_database=\ngismdbfile=gone.mdb\n");
    for (const ui::Step& leaving : {ui::Step{ui::Step::Kind::Close}, key("Escape"), click("Cancel")}) {
        answer(146, {leaving});
        lisp("(cf:gis_smart_prompting 7)");
        EXPECT_EQ(read("gps.ini"), "is_database=\ngismdbfile=gone.mdb\n");
    }
}

TEST_F(Settings, AKilledWriterLeavesTheOldFileOrTheNewOne) {
    const std::string others(3000, 'h');
    write("gps.ini", "is_database=\n" + others + "\n");
    const std::string values[] = {std::string(900, 'a'), std::string(1000, 'b')};
    std::mt19937 random(7);
    for (int round = 0; round < 40; ++round) {
        pid_t writer = fork();
        if (writer == 0) {
            for (int i = 0;; ++i) store(1, values[i % 2]);
        }
        usleep(500 + random() % 8000);
        kill(writer, SIGKILL);
        waitpid(writer, nullptr, 0);
        std::string whole = read("gps.ini");
        bool known = whole == "is_database=\n" + others + "\n";
        for (const std::string& value : values)
            known |= whole == "is_database=\ngismdbfile=" + value + "\n" + others + "\n";
        ASSERT_TRUE(known) << round << ": " << whole.size() << " bytes";
        std::string state = read("featlink.ini");
        ASSERT_TRUE(state.empty() || state == "#1" + values[0] + "\n" || state == "#1" + values[1] + "\n")
            << round;
    }
}
