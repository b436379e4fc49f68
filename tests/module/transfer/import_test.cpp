// Sets of shape files as they come into the drawing, the coordinate file, the output and the template.
#include "platform/dao/dao.h"
#include "tests/hostcad/independent_reader.h"
#include "tests/module/transfer/import_fixture.h"

using namespace norvane;

class Import : public ImportTest {
  protected:
    // A set of two squares, the second under the key B, with a text and a number.
    void makeSquares(const std::string& name) const {
        makeSet(name, shape::kPolygon, {{"PT_ID"}, {"OWNER"}, {"AREA", kDbfDouble, 12, 3}},
                {{{{0, 0, 0}, {0, 10, 0}, {10, 10, 0}, {0, 0, 0}}, {"A", "SMITH", "50.500"}},
                 {{{20, 0, 0}, {20, 10, 0}, {30, 10, 0}, {20, 0, 0}}, {"B", "JONES", "0.000"}}});
    }
    void makePoints(const std::string& name, const std::vector<std::string>& ids) const {
        std::vector<Record> records;
        for (size_t i = 0; i < ids.size(); ++i)
            records.push_back({{{1000.0 + static_cast<double>(i), 500, 12.25}}, {ids[i], std::to_string(i)}});
        makeSet(name, shape::kPointZ, {{"PT_ID"}, {"NOTE"}}, records);
    }
    static ui::Step layer() { return text("Layer Used to Create Entities:", "lots"); }
    // The drawing and all files of a run, to be compared with what they are later.
    std::vector<std::string> state() {
        std::vector<std::string> all{lisp("(entlast)"), lisp("(tblsearch \"LAYER\" \"LOTS\")"),
                                     lisp("(tblsearch \"APPID\" \"ZGEO_GIS_2000\")")};
        for (const auto& entry : fs::directory_iterator(path("")))
            if (const std::string ending = entry.path().extension().string();
                ending == ".crd" || ending == ".mdb")
                all.push_back(entry.path().filename().string());
        std::sort(all.begin() + 3, all.end());
        for (const char* query :
             {"select count(*) from ZGEO_SMART_PROMPTING", "select count(*) from ZGEO_CAT"})
            all.push_back(sqlite("template.mdb", query));
        return all;
    }
};

TEST_F(Import, AreasBecomeLinkedPolylinesWithRecordsAndAFeature) {
    makeSquares("plots");
    EXPECT_EQ(import("plots", {layer()}), "nil");
    EXPECT_EQ(count("POLYLINE"), 2);
    // All vertices stay, the repeated last one too.
    lisp("(setq ent (entlast) data (entget ent) vertex (entnext ent) at nil)");
    lisp(
        "(while (= (cdr (assoc 0 (entget vertex))) \"VERTEX\")"
        " (setq at (append at (list (cdr (assoc 10 (entget vertex))))) vertex (entnext vertex)))");
    EXPECT_EQ(lisp("at"), "((20.0 0.0 0.0) (20.0 10.0 0.0) (30.0 10.0 0.0) (20.0 0.0 0.0))");
    EXPECT_EQ(lisp("(list (cdr (assoc 8 data)) (cdr (assoc 70 data)))"), "(\"LOTS\" 1)");
    EXPECT_EQ(link(), "((\"ZGEO_GIS_2000\" (1002 . \"{\") (1000 . " + quoted("template.mdb") + ") (1000 . " +
                          quoted("output.mdb") +
                          ") (1000 . \"PLOTS\") (1000 . \"PT_ID\") (1000 . \"B\") (1002 . \"}\")))");
    EXPECT_EQ(output("select * from PLOTS"), "A|PLOTS|SMITH|50.5\nB|PLOTS|JONES|0\n");
    EXPECT_EQ(sqlite("template.mdb",
                     "select FIELD_NAME, FIELD_PROMPT, DEFAULT_VALUE from ZGEO_SMART_PROMPTING "
                     "where GIS_NAME = 'PLOTS'"),
              "OWNER|OWNER|\nAREA|AREA|\n");
    EXPECT_EQ(sqlite("template.mdb", "select * from ZGEO_CAT where CAT_GIS_NAME = 'VEGETATION'"),
              "1|VEGETATION|TREE\n2|VEGETATION|PLOTS\n");
    EXPECT_EQ(
        printed(),
        "\rCreating polyline : 2                   \r                                        \r"
        "\rWriting record : 2                      \r                                        \r"
        "\nplots.shp: 2 polylines drawn on LOTS; 2 records added to PLOTS and 0 changed, the feature PLOTS "
        "defined.\nThe set does not say in which reference system its coordinates are.");
}

TEST_F(Import, RecordsWhosePolylinesAreUndoneAreErasedInOneStep) {
    makeSet("plots", shape::kPolygon, {{"PT_ID"}},
            {{{{0, 0, 0}, {0, 10, 0}, {10, 10, 0}, {0, 0, 0}}, {"A"}},
             {{{20, 0, 0}, {20, 10, 0}, {30, 10, 0}, {20, 0, 0}}, {"B"}},
             {{{20, 0, 0}}, {"C"}},
             {{{40, 0, 0}, {40, 10, 0}, {50, 10, 0}, {40, 0, 0}}, {"D"}}});
    sqlite("output.mdb",
           "create table PLOTS (PT_ID TEXT(255), GIS_KEY TEXT(255)); insert into PLOTS values ('D','PLOTS')");
    import("plots", {layer()});
    EXPECT_EQ(output("select PT_ID from PLOTS order by PT_ID"), "A\nB\nC\nD\n");
    EXPECT_EQ(lisp("(gis:erase-new-records)"), "0") << "C has never had an entity";
    host_->runLine("U");
    EXPECT_EQ(count("POLYLINE"), 0);
    ui_.answerQuestion("Erase new records", "Yes");
    EXPECT_EQ(lisp("(gis:erase-new-records)"), "2");
    EXPECT_EQ(output("select PT_ID from PLOTS order by PT_ID"), "C\nD\n") << "D was there before";
}

TEST_F(Import, AFeatureThatIsDefinedStays) {
    makeSquares("tree");
    const std::string before = sqlite("template.mdb", "select * from ZGEO_SMART_PROMPTING");
    import("tree", {layer()});
    EXPECT_EQ(output("select PT_ID from TREE"), "A\nB\n");
    EXPECT_EQ(sqlite("template.mdb", "select * from ZGEO_SMART_PROMPTING"), before);
    EXPECT_EQ(sqlite("template.mdb", "select count(*) from ZGEO_CAT where GIS_NAME = 'TREE'"), "1\n");
}

TEST_F(Import, AFeatureLeavesItsOldCategoriesAndTheNewOneIsNumberedAnew) {
    lisp("(cf:gis_smart_prompting 19 " + quoted("template.mdb") +
         " 0 \"ZGEO_CAT\" \"CAT_GIS_NAME\" \"VEGETATION\" \"GIS_NAME\" \"BUSH\" \"INDEX_CAT_GIS\" \"9\""
         " 0 \"ZGEO_CAT\" \"CAT_GIS_NAME\" \"LAND\" \"GIS_NAME\" \"PLOTS\" \"INDEX_CAT_GIS\" \"1\")");
    makeSquares("plots");
    import("plots", {layer()});
    EXPECT_EQ(sqlite("template.mdb", "select * from ZGEO_CAT where CAT_GIS_NAME = 'VEGETATION'"),
              "1|VEGETATION|TREE\n2|VEGETATION|BUSH\n3|VEGETATION|PLOTS\n");
    EXPECT_EQ(sqlite("template.mdb", "select CAT_GIS_NAME from ZGEO_CAT where GIS_NAME = 'PLOTS'"),
              "VEGETATION\n");
}

TEST_F(Import, PointsGoIntoAFileOfNumbers) {
    makePoints("shots", {"10", "0", "", "10", "3"});
    ui_.answerBox("Yes");
    // The counter passes over the ids of the file, and a number that is taken gets the next one.
    EXPECT_EQ(import("shots"), "(\"10\" \"1\" \"2\" \"4\" \"3\")");
    EXPECT_EQ(lisp("ret_string"), quoted("shots.crd"));
    EXPECT_EQ(points("shots.crd"),
              (std::vector<std::string>{"1 500.000 1001.000 12.250 SHOTS", "2 500.000 1002.000 12.250 SHOTS",
                                        "3 500.000 1004.000 12.250 SHOTS", "4 500.000 1003.000 12.250 SHOTS",
                                        "10 500.000 1000.000 12.250 SHOTS"}));
    EXPECT_EQ(output("select PT_ID, NOTE from SHOTS"), "10|0\n1|1\n2|2\n4|3\n3|4\n");
    EXPECT_NE(printed().find("\n2 points have other ids than in the set: "), std::string::npos);
    EXPECT_EQ(lisp("new_crdform"), "nil");
}

TEST_F(Import, PointsGoIntoAFileOfNames) {
    lisp("(setq new_crdform 4)");
    makePoints("shots", {"a1", "7", "", "A-1,B", "A1", "GPS_BASE_EAST", "GPS_BASE_WEST", "GPS_BASE_MID"});
    ui_.answerBox("No");
    EXPECT_EQ(import("shots"), "nil");
    EXPECT_EQ(points("shots.crd").size(), 8u);
    EXPECT_EQ(output("select PT_ID from SHOTS"), "A1\n7\n1\nA_1_B\nA2\nGPS_BASE_\nGPS_BASE2\nGPS_BASE3\n");
    EXPECT_NE(printed().find("\n4 points have other ids than in the set: theirs were taken, or cannot stand "
                             "in the coordinate file."),
              std::string::npos);
    EXPECT_EQ(lisp("new_crdform"), "4");
}

TEST_F(Import, PointsOfAFileThatIsThereAreKeptOrOverwritten) {
    makePoints("shots", {"1", "2"});
    ui_.answerBox("No");
    import("shots");
    makePoints("more", {"2", "100000"});
    auto importInto = [&](bool overwrite) {
        ui_.answerFile(path("more.shp"));
        answer(1481, {click("Existing")});
        ui_.answerFile(path("shots.crd"));
        ui_.answerBox("Yes");
        answer(148, {click("Select SHP File"), click("Select CRD File"),
                     check("Overwrite Points in CRD File", overwrite), import()});
        return lisp("(cf:gis_smart_prompting 11)");
    };
    ui_.answerBox("No");  // the file of the last set is there: it stays
    EXPECT_EQ(importInto(false), "(\"3\")");
    EXPECT_NE(printed().find("\nError writing point#: 100000"), std::string::npos);
    EXPECT_EQ(points("shots.crd"),
              (std::vector<std::string>{"1 500.000 1000.000 12.250 SHOTS", "2 500.000 1001.000 12.250 SHOTS",
                                        "3 500.000 1000.000 12.250 MORE"}));
    EXPECT_EQ(importInto(true), "(\"2\")");
    EXPECT_EQ(points("shots.crd")[1], "2 500.000 1000.000 12.250 MORE");
    // The record of the point that was refused is there all the same.
    EXPECT_EQ(output("select PT_ID from MORE"), "3\n100000\n2\n");
}

TEST_F(Import, AnIdThatComesTwiceOverwritesItsOwnPoint) {
    makePoints("shots", {"5", "5", "6"});
    ui_.answerBox("Yes");
    EXPECT_EQ(import("shots", {check("Overwrite Points in CRD File")}), "(\"5\" \"5\" \"6\")");
    EXPECT_EQ(points("shots.crd"), (std::vector<std::string>{"5 500.000 1001.000 12.250 SHOTS",
                                                             "6 500.000 1002.000 12.250 SHOTS"}));
    EXPECT_EQ(output("select PT_ID, NOTE from SHOTS"), "5|1\n6|2\n");
    const std::string said = printed();
    EXPECT_NE(said.find("2 points written to "), std::string::npos) << said;
    EXPECT_NE(said.find("\nLeft out: 1 point that a later one of its id replaced."), std::string::npos)
        << said;
    ui_.answerBox("Yes");
    ui_.answerBox("Yes");
    ui_.answerBox("Yes");
    ui_.answerFile(path("shots.shp"));
    answer(148, {click("Select SHP File"), check("Overwrite Points in CRD File"), ImportTest::import()});
    EXPECT_EQ(lisp("(caddr (gis:import))"), "(\"5\" \"6\")");
}

TEST_F(Import, ATableThatIsThereKeepsItsOtherFieldsAndTypes) {
    CDaoDatabase database;
    database.Open(path("output.mdb"));
    CDaoTableDef table(&database);
    table.Create("PLOTS");
    table.CreateField("PT_ID", dbText, 255);
    table.CreateField("AREA", dbLong, 4);
    table.CreateField("OWNER", dbText, 3);
    table.CreateField("TAXES", dbText, 20);
    table.CreateField("IMAGE_ZGEO/1", dbText, 255);
    table.Append();
    CDaoRecordset rows(&database);
    rows.Open(dbOpenDynaset, "PLOTS");
    for (const char* id : {"Z", "b"}) {
        rows.AddNew();
        rows.SetFieldValue("PT_ID", id);
        rows.SetFieldValue("AREA", 7);
        rows.SetFieldValue("OWNER", "OLD");
        rows.SetFieldValue("TAXES", "PAID");
        rows.Update();
    }
    rows.Close();
    table.Close();
    database.Close();
    makeSquares("plots");
    import("plots", {layer()});
    EXPECT_EQ(output("select PT_ID, GIS_KEY, AREA, OWNER, TAXES from PLOTS"),
              "Z||7|OLD|PAID\nB|PLOTS|7|JON|PAID\nA|PLOTS||SMI|\n");
    const std::string said = printed();
    EXPECT_NE(said.find("1 record added to PLOTS and 1 changed"), std::string::npos) << said;
    EXPECT_NE(said.find("\n2 values were cut to the size of the column."), std::string::npos) << said;
    EXPECT_NE(said.find("\nNot written, since their columns in PLOTS are not of text: AREA."),
              std::string::npos)
        << said;
    EXPECT_TRUE(shown("Records of the table PLOTS that came from elsewhere have ids of this set: 1."));
    EXPECT_EQ(sqlite("template.mdb", "select FIELD_NAME from ZGEO_SMART_PROMPTING where GIS_NAME = 'PLOTS'"),
              "OWNER\nTAXES\n");
}

TEST_F(Import, TheSameSetComesInAgainWithoutAQuestionAndWithACopyOfTheOutput) {
    std::vector<Record> records;
    for (int i = 0; i < 150; ++i) records.push_back({{{0, 0, 0}, {1, 1, 0}}, {std::to_string(i + 1), "X"}});
    makeSet("lines", shape::kArc, {{"PT_ID"}, {"NOTE"}}, records);
    import("lines", {layer()});
    auto copies = [&] {
        return std::count_if(fs::directory_iterator(path("")), {}, [](const fs::directory_entry& file) {
            return file.path().filename().string().rfind("output before ", 0) == 0;
        });
    };
    EXPECT_EQ(copies(), 0);
    for (Record& record : records) record.cells[1] = "Y";
    makeSet("lines", shape::kArc, {{"PT_ID"}, {"NOTE"}}, records);
    ui_.clearLog();
    import("lines", {layer()});
    EXPECT_FALSE(shown("question"));
    EXPECT_EQ(copies(), 1);
    EXPECT_EQ(output("select count(*) from LINES"), "150\n");
    EXPECT_EQ(output("select count(*) from LINES where NOTE = 'Y'"), "150\n");
    EXPECT_NE(printed().find("The output as it was before is kept in " + path("output before ")),
              std::string::npos);
    // Another set of the same ids asks, and No leaves all as it was.
    fs::create_directory(path("other"));
    for (const char* ending : {".shp", ".shx", ".dbf"})
        fs::copy_file(path(std::string("lines") + ending), path(std::string("other/lines") + ending));
    ui_.answerQuestion("Import SHP File", "No");
    const int before = count("POLYLINE");
    import("other/lines", {layer()});
    EXPECT_EQ(count("POLYLINE"), before);
    EXPECT_EQ(copies(), 1);
}

TEST_F(Import, FieldsThatAreCalledAsKeysAndAreNoneGetAnotherName) {
    makeSet("lines", shape::kArc,
            {{"PT_ID", kDbfDouble, 8, 2}, {"GIS_KEY", kDbfInteger, 6}, {"gis_key1"}, {"NOTE"}, {"note"}},
            {{{{0, 0, 0}, {1, 1, 0}}, {"1.50", "7", "own", "first", "second"}}});
    import("lines", {layer()});
    EXPECT_EQ(output("select PT_ID, GIS_KEY, PT_ID1, GIS_KEY2, GIS_KEY1, NOTE from LINES"),
              "1|LINES|1.5|7|own|first\n");
    EXPECT_EQ(sqlite("template.mdb", "select FIELD_NAME from ZGEO_SMART_PROMPTING where GIS_NAME = 'LINES'"),
              "PT_ID1\nGIS_KEY2\ngis_key1\nNOTE\n");
}

TEST_F(Import, ASetWithoutRecordsIsNoFault) {
    makeSet("lines", shape::kArc, {{"PT_ID"}, {"NOTE"}}, {});
    makeSet("shots", shape::kPoint, {{"PT_ID"}, {"NOTE"}}, {});
    import("lines", {layer()});
    EXPECT_EQ(output("select count(*) from LINES"), "0\n");
    EXPECT_EQ(import("shots"), "nil");
    EXPECT_TRUE(fs::exists(path("shots.crd")));
    EXPECT_NE(printed().find("shots.shp: 0 points written to "), std::string::npos);
}

// --- All or nothing ---------------------------------------------------------------------------------------

TEST_F(Import, AnImportThatIsStoppedChangesNothing) {
    std::vector<Record> records(200, {{{0, 0, 0}, {0, 10, 0}, {10, 10, 0}}, {"", "X"}});
    makeSet("lines", shape::kArc, {{"PT_ID"}, {"NOTE"}}, records);
    const auto before = state();
    answer(1000, {click("Cancel")});
    EXPECT_EQ(import("lines", {layer()}), "nil");
    EXPECT_EQ(state(), before);
    EXPECT_EQ(output("select name from MSysObjects where name = 'LINES'"), "");
    const std::string said = printed();
    EXPECT_NE(said.find("\nThe import was stopped: nothing was changed."), std::string::npos) << said;
    EXPECT_EQ(said.find("Writing record"), std::string::npos);
}

TEST_F(Import, AnImportThatTheOutputRefusesChangesNothing) {
    makeSquares("plots");
    makePoints("shots", {"1"});
    // A field that no table can have.
    makeSet("bad", shape::kArc, {{"PT_ID"}, {"A!B"}}, {{{{0, 0, 0}, {1, 1, 0}}, {"A", "x"}}});
    makeSet("badpts", shape::kPoint, {{"PT_ID"}, {"A!B"}}, {{{{0, 0, 0}}, {"A", "x"}}});
    write("badpts.crd", read("shots.dbf"));
    const auto before = state();
    EXPECT_EQ(import("bad", {layer()}), "nil");
    EXPECT_TRUE(shown("box [Error]"));
    EXPECT_EQ(state(), before);
    ui_.answerBox("Yes");  // the file that is there gives way, but not to an import that fails
    EXPECT_EQ(import("badpts"), "nil");
    EXPECT_EQ(state(), before);
    EXPECT_EQ(read("badpts.crd"), read("shots.dbf"));
    EXPECT_NE(printed().find("\nNothing was imported."), std::string::npos);
}

TEST_F(Import, AnImportThatTheTemplateRefusesChangesNothing) {
    makeSquares("plots");
    write("template.mdb", "no database");
    const std::string before = lisp("(entlast)");
    EXPECT_EQ(import("plots", {layer()}), "nil");
    EXPECT_TRUE(shown("box [Error]"));
    EXPECT_EQ(lisp("(entlast)"), before);
    EXPECT_EQ(output("select name from MSysObjects where name = 'PLOTS'"), "");
}

TEST_F(Import, OneUndoTakesBackAllThatWasDrawn) {
    makeSquares("plots");
    lisp("(defun c:imp () (cf:gis_smart_prompting 11) (princ))");
    ui_.answerFile(path("plots.shp"));
    answer(148, {click("Select SHP File"), layer(), import()});
    lisp("(command \"IMP\")");
    EXPECT_EQ(count("POLYLINE"), 2);
    lisp("(command \"_.U\")");
    EXPECT_EQ(count("POLYLINE"), 0);
    EXPECT_EQ(lisp("(tblsearch \"LAYER\" \"LOTS\")"), "nil");
}

TEST_F(Import, WithoutAnEngineShapesAreDrawnAndNothingElse) {
    makeSquares("plots");
    write("registry.ini", "[-HKEY_CLASSES_ROOT\\DAO.DBEngine.36]\n");
    import("plots", {layer()});
    EXPECT_EQ(count("POLYLINE"), 2);
    const std::string said = printed();
    EXPECT_NE(said.find("\nPlease install DAO 3.6..."), std::string::npos) << said;
    EXPECT_NE(said.find("2 polylines drawn on LOTS; no records written."), std::string::npos) << said;
}
