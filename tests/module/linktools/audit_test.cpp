// The audit of links, and the links of data collectors that it converts.
#include "hostcad/drawing/current_drawing.h"
#include "tests/module/linktools/link_fixture.h"

namespace {

class AuditTest : public LinkTools {
  protected:
    // A line of the drawing that is linked by three strings and a key.
    void link(const std::string& templateFile, const std::string& outputFile, const std::string& feature,
              const std::string& key = "1") {
        lisp(
            "(regapp \"ZGEO_GIS_2000\") (entmake (list '(0 . \"LINE\") '(10 5.0 6.0 0.0) '(11 9.0 8.0 0.0) "
            "'(-3 (\"ZGEO_GIS_2000\" (1002 . \"{\") (1000 . \"" +
            templateFile + "\") (1000 . \"" + outputFile + "\") (1000 . \"" + feature +
            "\") (1000 . \"PT_ID\") (1000 . \"" + key + "\") (1002 . \"}\")))))");
    }
    // The first three strings of each line's link, "-" for none, with the test's folder as "~".
    std::vector<std::string> targets() {
        const std::string count = lisp("(setq lines (ssget \"X\" '((0 . \"LINE\")))) (sslength lines)");
        std::vector<std::string> all;
        for (int i = 0; i < std::stoi(count); ++i) {
            const std::string strings =
                lisp("(setq data (assoc -3 (entget (ssname lines " + std::to_string(i) +
                     ") '(\"ZGEO_GIS_2000\")))) (if data (apply 'strcat (mapcar '(lambda (g) (if (= (car g) "
                     "1000) (strcat (cdr g) \" \") \"\")) (cdadr data))) \"-\")");
            all.push_back(::text::replaceAll(::text::replaceAll(strings, path(""), "~"), "\"", ""));
        }
        return all;
    }
    // A second job folder with a template and an output whose table TREE is there.
    void makeJob(const std::string& folder) {
        fs::create_directory(path(folder));
        fs::copy_file(path("template.mdb"), path(folder + "/template.mdb"));
        makeOutput(folder + "/output.mdb");
        for (const char* table : {"TREE", "POLE"})
            sqlite(folder + "/output.mdb",
                   std::string("create table ") + table + " (PT_ID TEXT(255), GIS_KEY TEXT(255))");
    }
    // The captions of template, output and table, the list, and whether Fix can be pressed, of each picture.
    std::vector<std::string> pictures() const {
        std::vector<std::string> all;
        for (const std::string& picture : ui_.log()) {
            if (!picture.starts_with("[145]")) continue;
            std::string captions, list, fix;
            for (const std::string& line : ::text::split(picture, '\n')) {
                const std::string id = line.size() > 6 ? line.substr(2, line.find(' ', 2) - 2) : "";
                if (line.starts_with("      ") || line.starts_with("    >")) list += line.substr(4) + " ";
                if (id == "1058" || id == "1061" || id == "1059" || id == "1060")
                    captions += line.substr(line.find('"')) + " ";
                if (id == "1") fix = line.ends_with("(disabled)") ? "no" : "fix";
            }
            all.push_back(captions + list + fix);
        }
        return all;
    }
};

}  // namespace

TEST_F(AuditTest, OneAnswerServesAllTablesOfAFolderThatHasMoved) {
    makeJob("new");
    link(path("old/template.mdb"), path("old/output.mdb"), "tree");
    link(path("old/template.mdb"), path("old/output.mdb"), "Pole", "7");
    link(path("OLD/template.mdb"), path("old/output.mdb"), " TREE ");
    link(path("new/template.mdb"), path("new/output.mdb"), "TREE");
    lisp("(command \"_.UNDO\" \"_BE\") (command \"_.UNDO\" \"_E\")");
    ui_.answerFile(path("new/template.mdb"));
    ui_.answerFile(path("new/output.mdb"));
    answer(145, {show(), click("Select New Template MDB"), show(), click("Select New Output MDB"), show(),
                 click("1")});
    answer(145, {show(), click("1")});
    EXPECT_EQ(runOnAll(8), "\n4 links to 3 tables checked: 2 tables broken, 3 links mended, 0 erased.");
    EXPECT_EQ(pictures(),
              (std::vector<std::string>{
                  "\"Template database not found:\" \"Output database not found:\" \"Table not found in "
                  "Template and in Output database:\" \"Tables Used for Links 1 of 2\" no",
                  "\"Template database:\" \"Output database not found:\" \"Table not found in Output "
                  "database:\" \"Tables Used for Links 1 of 2\" no",
                  "\"Template database:\" \"Output database:\" \"Current Table:\" \"Tables Used for Links 1 "
                  "of 2\" > TREE   POLE fix",
                  "\"Template database:\" \"Output database:\" \"Current Table:\" \"Tables Used for Links 2 "
                  "of 2\"   TREE > POLE fix"}));
    EXPECT_EQ(targets(), (std::vector<std::string>{"~new/template.mdb ~new/output.mdb TREE PT_ID 1 ",
                                                   "~new/template.mdb ~new/output.mdb POLE PT_ID 7 ",
                                                   "~new/template.mdb ~new/output.mdb TREE PT_ID 1 ",
                                                   "~new/template.mdb ~new/output.mdb TREE PT_ID 1 "}));
    EXPECT_EQ(runOnAll(8), "\n4 links to 2 tables checked: 0 tables broken, 0 links mended, 0 erased.")
        << "no dialog where all is good";
    lisp("(command \"_.U\")");
    EXPECT_EQ(targets()[2], "~OLD/template.mdb ~old/output.mdb  TREE  PT_ID 1 ")
        << "one undo takes a run back";
}

TEST_F(AuditTest, LinksAreErasedLeftAndGivenAnotherTable) {
    makeJob("new");
    for (const char* feature : {"MANHOLE", "NOWHERE", "PARCEL", ""})
        link(path("new/template.mdb"), path("new/output.mdb"), feature);
    lisp("(setq before (sslength (ssget \"X\" '((0 . \"LINE\")))))");
    answer(145, {show(), pick("1079", "POLE"), show(), click("1")});
    answer(145, {show(), click("Show Entities"), click("Erase Links for Current Table")});
    answer(145, {click("Go to Other Table")});
    EXPECT_EQ(runOnAll(8),
              "\n4 links to 4 tables checked: 3 tables broken, 1 link mended, 1 erased; 1 table still leads "
              "nowhere (PARCEL).");
    EXPECT_EQ(pictures(), (std::vector<std::string>{
                              "\"Template database:\" \"Output database:\" \"Table not found in Output "
                              "database:\" \"Tables Used for Links 1 of 3\"   TREE   POLE no",
                              "\"Template database:\" \"Output database:\" \"Current Table:\" \"Tables Used "
                              "for Links 1 of 3\"   TREE > POLE fix",
                              "\"Template database:\" \"Output database:\" \"Table not found in Template and "
                              "in Output database:\" \"Tables Used for Links 2 of 3\"   TREE   POLE no"}));
    EXPECT_EQ(targets(), (std::vector<std::string>{"~new/template.mdb ~new/output.mdb POLE PT_ID 1 ", "-",
                                                   "~new/template.mdb ~new/output.mdb PARCEL PT_ID 1 ",
                                                   "~new/template.mdb ~new/output.mdb  PT_ID 1 "}));
}

TEST_F(AuditTest, AFeatureWithATableOfAnotherNameIsGood) {
    makeJob("new");
    sqlite("new/template.mdb",
           "create table ZGEO_LINKS (GIS_NAME TEXT(255), TABLE_NAME TEXT(255)); insert into ZGEO_LINKS "
           "values ('MANHOLE', 'pole')");
    link(path("new/template.mdb"), path("new/output.mdb"), "MANHOLE");
    EXPECT_EQ(runOnAll(8), "\n1 link to 1 table checked: 0 tables broken, 0 links mended, 0 erased.");
}

TEST_F(AuditTest, EscapeAndLinksThatAreTooLongLeaveATableBroken) {
    makeJob("new");
    for (const char* key : {"1", "2", "3", "4"})
        link(path("old/template.mdb"), path("old/output.mdb"), "TREE", key);
    auto fixTo = [&](const std::string& folder) {
        ui_.answerFile(path(folder + "/template.mdb"));
        ui_.answerFile(path(folder + "/output.mdb"));
        answer(145, {click("Select New Template MDB"), click("Select New Output MDB"), click("1")});
        return runOnAll(8);
    };
    const int observer =
        hostcad::currentDrawing().addObserver([this, left = 2](hostcad::ObjectId, hostcad::Change) mutable {
            if (--left == 0) host_->cancel();
        });
    EXPECT_EQ(
        fixTo("new"),
        "\n4 links to 1 table checked: 1 table broken, 2 links mended, 0 erased; 1 table still leads nowhere "
        "(TREE).");
    hostcad::currentDrawing().removeObserver(observer);
    const std::string old = "~old/template.mdb ~old/output.mdb TREE PT_ID ",
                      now = "~new/template.mdb ~new/output.mdb TREE PT_ID ";
    EXPECT_EQ(targets(), (std::vector<std::string>{now + "1 ", now + "2 ", old + "3 ", old + "4 "}));
    // The drawing takes no text of more than 255 bytes.
    const std::string deep = std::string(120, 'd') + "/" + std::string(120, 'e');
    fs::create_directories(path(deep));
    for (const char* file : {"/template.mdb", "/output.mdb"})
        fs::copy_file(path("new") + file, path(deep) + file);
    EXPECT_EQ(fixTo(deep),
              "\n4 links to 2 tables checked: 1 table broken, 0 links mended, 0 erased, 2 too long for the "
              "drawing; 1 "
              "table still leads nowhere (TREE).");
    EXPECT_EQ(targets()[2], old + "3 ");
}

TEST_F(AuditTest, LinksOfAnyNumberOfStringsKeepIt) {
    makeJob("new");
    const std::string target = "(1000 . " + quoted("old/template.mdb") + ") (1000 . " +
                               quoted("old/output.mdb") + ") (1000 . \"TREE\")";
    for (const char* more : {"", "(1000 . \"PT_ID\")", "(1000 . \"PT_ID\") (1000 . \"5\") (1000 . \"six\")"})
        lisp(
            "(regapp \"ZGEO_GIS_2000\") (entmake (list '(0 . \"LINE\") '(10 5.0 6.0 0.0) '(11 9.0 8.0 0.0) "
            "'(-3 "
            "(\"ZGEO_GIS_2000\" (1002 . \"{\") " +
            target + more + " (1002 . \"}\")))))");
    lisp(
        "(entmake '((0 . \"LINE\") (10 5.0 6.0 0.0) (11 9.0 8.0 0.0) (-3 (\"ZGEO_GIS_2000\" (1000 . \"a\") "
        "(1000 . "
        "\"b\")))))");
    ui_.answerFile(path("new/template.mdb"));
    ui_.answerFile(path("new/output.mdb"));
    answer(145, {click("Select New Template MDB"), click("Select New Output MDB"), click("1")});
    EXPECT_EQ(runOnAll(8), "\n4 links to 2 tables checked: 1 table broken, 3 links mended, 0 erased.");
    const std::string now = "~new/template.mdb ~new/output.mdb TREE ";
    EXPECT_EQ(targets(), (std::vector<std::string>{now, now + "PT_ID ", now + "PT_ID 5 six ", "a b "}));
}

TEST_F(AuditTest, QuittingAsksAndTheRestStaysAsItIs) {
    link(path("old/template.mdb"), path("old/output.mdb"), "TREE");
    link(path("old/template.mdb"), path("old/output.mdb"), "POLE");
    answer(145, {click("Go to Other Table")});
    answer(145, {click("Quit"), {ui::Step::Kind::Close}, key("Escape")});
    ui_.answerBox("No"), ui_.answerBox("No"), ui_.answerBox("Yes");
    EXPECT_EQ(runOnAll(8),
              "\n2 links to 2 tables checked: 2 tables broken, 0 links mended, 0 erased; 2 tables still lead "
              "nowhere (TREE, POLE).");
    EXPECT_TRUE(
        shown("box [Alert] \"There are still 1 more tables used for links not fixed yet!\n\nPOLE\nAre you "
              "really sure you want to exit?\""));
}

TEST_F(AuditTest, LinksInEveryStateAreSortedOut) {
    if (!openLinked()) GTEST_SKIP() << "the shared files are not there";
    // Files that are gone in five ways, the server among them, and five tables. Features that write to the
    // table of another are good.
    for (int i = 0; i < 10; ++i) answer(145, {show(), click("Go to Other Table")});
    EXPECT_EQ(runOnAll(8, {"N"}),
              "\nDetected Fieldline/Rapidline/ZGEOFL GIS Links.\nWould you like to convert them to Norvane "
              "GIS Links[<Yes>/No]? \n188 links to 21 tables checked: 10 tables broken, 0 links mended, 0 "
              "erased; 10 tables still lead nowhere (LOT, HYDRANT, SIGN, NOWHERE, OLDKEY, POLES).");
    std::string states;
    for (const std::string& picture : pictures()) {
        states += picture.starts_with("\"Template database:") ? "1" : "0";
        states += picture.find("\"Output database:") != std::string::npos ? "1" : "0";
        states += picture.find("\"Current Table:") != std::string::npos ? "1 " : "0 ";
    }
    EXPECT_EQ(states, "100 100 010 000 110 110 110 110 110 110 ");
    EXPECT_EQ(
        std::count_if(ui_.log().begin(), ui_.log().end(),
                      [](const std::string& line) { return line.find("box [Error]") != std::string::npos; }),
        2)
        << "the server is asked for the check and for the picture";
}

TEST_F(AuditTest, DamagedFilesAndATableThatIsGoneAreBroken) {
    makeJob("new");
    fs::create_directory(path("bad"));
    fs::copy_file(path("new/output.mdb"), path("bad/output.mdb"));
    write("bad/template.mdb", "no database");
    link(path("bad/template.mdb"), path("bad/output.mdb"), "TREE");
    link(path("bad/template.mdb"), path("bad/output.mdb"), "POLE");
    link(path("new/template.mdb"), path("new/output.mdb"), "TREE");
    sqlite("new/output.mdb", "drop table TREE");
    answer(145, {show(), click("Go to Other Table")});
    answer(145, {click("Go to Other Table")});
    answer(145, {show(), pick("1079", "POLE"), click("1")});
    EXPECT_EQ(runOnAll(8),
              "\n3 links to 3 tables checked: 3 tables broken, 1 link mended, 0 erased; 2 tables still lead "
              "nowhere (TREE, POLE).");
    EXPECT_TRUE(pictures()[0].find("\"Table not found in Template database:\"") != std::string::npos);
}

TEST_F(AuditTest, LinksOfACollectorAreConverted) {
    const fs::path shared = NORVANE_SHARED_DATA;
    if (!fs::exists(shared / "collector.dxf")) GTEST_SKIP() << "the shared files are not there";
    struct Case {
        const char* notes;
        std::map<std::string, int> features;  // counted from the notes by another program
        const char* left;
    };
    for (const Case& c : {Case{"survey.not", {{"TREE", 49}, {"MH", 15}, {"POLE", 29}, {"UNKNOWN", 29}}, "84"},
                          Case{"collector.vtt",
                               {{"TREE", 33}, {"FENCE", 20}, {"MH", 14}, {"POLE", 26}, {"UNKNOWN", 24}},
                               "89"}}) {
        fs::copy_file(shared / "collector.dxf", path("collector.dxf"), fs::copy_options::overwrite_existing);
        openDrawing(path("collector.dxf"));
        ui_.answerFile((shared / c.notes).string());
        // The output has none of their tables; one link that the drawing had before is broken too.
        for (size_t i = 0; i < c.features.size() + 1; ++i) answer(145, {click("Go to Other Table")});
        const std::string said = runOnAll(8, {"Y"});
        EXPECT_NE(said.find("left: " + std::string(c.left) + " whose point is not in the file ("),
                  std::string::npos)
            << said;
        for (const auto& [feature, count] : c.features)
            EXPECT_EQ(lisp("(setq set (ssget \"X\") i 0 n 0) (repeat (sslength set) (setq groups (cdadr "
                           "(assoc -3 (entget (ssname set i) '(\"ZGEO_GIS_2000\")))) i (1+ i)) (if (and "
                           "groups (= (cdr (nth 2 groups)) \"" +
                           path("output.mdb") + "\") (= (cdr (nth 3 groups)) \"" + feature +
                           "\")) (setq n (1+ n)))) n"),
                      std::to_string(count))
                << c.notes << " " << feature;
        EXPECT_EQ(lisp("(cf:gis_smart_prompting 3 27) ret_string"),
                  "\"" + (shared / c.notes).string() + "\"");
    }
}

TEST_F(AuditTest, LinksOfACollectorMayStayOrEndTheAudit) {
    lisp(
        "(regapp \"ZGEOFL_GIS_2000\") (entmake '((0 . \"POINT\") (10 0.0 0.0 0.0) (-3 (\"ZGEOFL_GIS_2000\" "
        "(1002 . \"{\") (1000 . \"a1\") (1002 . \"}\")))))");
    auto state = [&] { return lisp("(cdr (assoc -3 (entget (entlast) '(\"*\"))))"); };
    const std::string before = state();
    const std::string question =
        "\nDetected Fieldline/Rapidline/ZGEOFL GIS Links.\nWould you like to convert them to Norvane GIS "
        "Links[<Yes>/No]? ";
    EXPECT_EQ(runOnAll(8, {"No"}),
              question + "\n0 links to 0 tables checked: 0 tables broken, 0 links mended, 0 erased.");
    ui_.answerFile("");
    EXPECT_EQ(runOnAll(8, {""}), question) << "no file of notes ends the audit";
    fs::remove(path("output.mdb"));
    answer(146, {click("Exit")});
    EXPECT_EQ(runOnAll(8, {""}), question) << "no databases do so too";
    EXPECT_EQ(state(), before);

    makeOutput("output.mdb");
    lisp("(cf:gis_smart_prompting 2 2 " + quoted("output.mdb") + ")");
    write("notes.txt",
          "\tPT_ID: A1 GIS_FILE: C:\\jobs.old\\tree.v2.gis \r\nPT_ID: B\r\n PT_ID:a1\n x PT_ID: A1 GIS_FILE: "
          "pole.gis\nPT_ID: A1  GIS_FILE:/data/Oak.gis");
    ui_.answerFile(path("notes.txt"));
    answer(145, {click("Go to Other Table")});
    runOnAll(8, {"Yes"});
    EXPECT_EQ(state(), "((\"ZGEO_GIS_2000\" (1002 . \"{\") (1000 . " + quoted("template.mdb") + ") (1000 . " +
                           quoted("output.mdb") +
                           ") (1000 . \"OAK\") (1000 . \"PT_ID\") (1000 . \"A1\") (1002 . \"}\")))");
}

TEST_F(AuditTest, ALinkOfACollectorStaysWhereTheDrawingTakesNoOther) {
    lisp(
        "(regapp \"ZGEOFL_GIS_2000\") (entmake '((0 . \"POINT\") (10 0.0 0.0 0.0) (-3 (\"ZGEOFL_GIS_2000\" "
        "(1002 . \"{\") (1000 . \"a1\") (1002 . \"}\")))))");
    auto state = [&] { return lisp("(cdr (assoc -3 (entget (entlast) '(\"*\"))))"); };
    const std::string before = state();
    write("notes.txt", "PT_ID: A1 GIS_FILE: " + std::string(300, 'x') + ".gis\n");
    ui_.answerFile(path("notes.txt"));
    EXPECT_NE(
        runOnAll(8, {"Yes"})
            .find("\n0 links of the collector converted, left: 1 whose link the drawing does not take (A1)."),
        std::string::npos);
    EXPECT_EQ(state(), before);
}

TEST_F(AuditTest, EscapeLeavesTheLinksOfACollectorThatAreStillToCome) {
    lisp("(regapp \"ZGEOFL_GIS_2000\")");
    for (const char* id : {"1", "2", "3"})
        lisp("(entmake '((0 . \"POINT\") (10 0.0 0.0 0.0) (-3 (\"ZGEOFL_GIS_2000\" (1002 . \"{\") (1000 . `" +
             std::string(id) + "`) (1002 . \"}\")))))");
    write("notes.txt", "PT_ID:1 GIS_FILE:OAK.GIS\nPT_ID:2 GIS_FILE:OAK.GIS\nPT_ID:3 GIS_FILE:OAK.GIS\n");
    ui_.answerFile(path("notes.txt"));
    const int observer = hostcad::currentDrawing().addObserver(
        [this](hostcad::ObjectId, hostcad::Change) { host_->cancel(); });
    const std::string said = runOnAll(8, {"Yes"});
    hostcad::currentDrawing().removeObserver(observer);
    EXPECT_TRUE(
        said.ends_with("\n1 link of the collector converted.\nThe work ended before its end: 2 links "
                       "were not looked at."))
        << said;
    EXPECT_EQ(lisp("(sslength (ssget \"X\" '((-3 (\"ZGEOFL_GIS_2000\")))))"), "2");
    EXPECT_EQ(lisp("(sslength (ssget \"X\" '((-3 (\"ZGEO_GIS_2000\")))))"), "1");
}
