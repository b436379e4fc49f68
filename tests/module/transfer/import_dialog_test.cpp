// The dialog of the import: what it takes, what it remembers, and when it lets go.
#include "module/exchange/shape_index.h"
#include "tests/module/transfer/import_fixture.h"

using namespace norvane;

namespace {

class ImportSheet : public ImportTest {
  protected:
    void SetUp() override {
        ImportTest::SetUp();
        makeSet("plots", shape::kPolygon, {{"PT_ID"}, {"OWNER"}},
                {{{{0, 0, 0}, {0, 10, 0}, {10, 10, 0}, {0, 0, 0}}, {"A", "SMITH"}}});
        makeShots("shots", {"1", "2"});
    }
    void makeShots(const std::string& name, const std::vector<std::string>& ids) const {
        std::vector<Record> records;
        for (const std::string& id : ids) records.push_back({{{1, 2, 3}}, {id, "7.5"}});
        makeSet(name, shape::kPoint, {{"PT_ID"}, {"HEIGHT", kDbfDouble, 10, 3}}, records);
    }
    // Opens the dialog, chooses a set, does the steps and cancels; what was shown.
    std::string look(const std::string& set, std::vector<ui::Step> steps = {}) {
        ui_.clearLog();
        if (!set.empty()) {
            ui_.answerFile(path(set));
            steps.insert(steps.begin(), click("Select SHP File"));
        }
        steps.push_back(show());
        steps.push_back(click("Cancel"));
        answer(148, std::move(steps));
        lisp("(cf:gis_smart_prompting 11)");
        std::string all;
        for (const std::string& line : ui_.log()) all += line + "\n";
        return all;
    }
    static bool has(const std::string& shown, const std::string& part) {
        return shown.find(part) != std::string::npos;
    }
};

constexpr const char* kInvalid =
    "box [Alert] \"SHP file is corrupted or SHX(DBF) files associated with it are missing!\nInvalid SHP "
    "file!\"";

}  // namespace

TEST_F(ImportSheet, ControlsFollowTheKindOfTheSet) {
    std::string shown = look("");
    EXPECT_TRUE(has(shown, "1 button \"...\" (disabled)")) << shown;
    EXPECT_TRUE(has(shown, "1012 edit \"" + path("output.mdb"))) << shown;
    shown = look("plots.shp");
    EXPECT_TRUE(has(shown, "label \"Type SHP File: POLYGON\"")) << shown;
    EXPECT_TRUE(has(shown, "1014 edit \"PLOTS\""));
    EXPECT_TRUE(has(shown, "1003 button \"Select CRD File\" (disabled)"));
    EXPECT_TRUE(has(shown, "1 button \"...\" (disabled)"));
    EXPECT_TRUE(has(shown, "Records: 1, fields: 2, X 0.000 to 10.000, Y 0.000 to 10.000"));
    shown = look("plots.shp", {pick("1042", "0")});
    EXPECT_TRUE(has(shown, "1015 edit \"0\""));
    EXPECT_TRUE(has(shown, "1 button \"Import Polylines from SHP\"\n"));
    shown = look("shots.shp");
    EXPECT_TRUE(has(shown, "1013 edit \"" + path("shots.crd")));
    EXPECT_TRUE(has(shown, "label \"File type> Numerical .CRD\""));
    EXPECT_TRUE(has(shown, "1015 edit \"\" (disabled)"));
    EXPECT_TRUE(has(shown, "1 button \"Import SHP into a CRD File\"\n"));
    shown = look("shots.shp", {check("Overwrite Points in CRD File")});
    EXPECT_TRUE(has(shown, "check [ ] \"Create New Points in CRD File\"")) << shown;
    EXPECT_TRUE(has(shown, "check [x] \"Overwrite Points in CRD File\""));
    // Cancelled, nothing is remembered.
    EXPECT_EQ(read("featlink.ini").find("#D"), std::string::npos);
}

TEST_F(ImportSheet, NamesThatAreNoneAreEmptiedWithAWord) {
    for (const char* name : {"LOTS:1", "A/B", "é"}) {
        const std::string shown = look("plots.shp", {text("1015", name), focus("1014")});
        EXPECT_TRUE(has(shown, "1015 edit \"\"")) << shown;
        EXPECT_TRUE(has(shown, "cannot be the name of a layer.")) << shown;
    }
    // A table may have a colon.
    EXPECT_TRUE(
        has(look("plots.shp", {text("1014", " pipe:8in "), focus("1015")}), "1014 edit \"PIPE:8IN\""));
    const std::string longest(31, 'X');
    EXPECT_TRUE(has(look("plots.shp", {text("1015", longest + "YZ"), focus("1014")}),
                    "1015 edit \"" + longest + "\""));
    // A name that goes at OK keeps the dialog open.
    const std::string shown = look("plots.shp", {text("1015", "A*B"), click("1")});
    EXPECT_TRUE(has(shown, "cannot be the name of a layer.")) << shown;
}

TEST_F(ImportSheet, ASetThatIsNoneClearsTheBoxes) {
    fs::copy_file(path("plots.shp"), path("alone.shp"));
    EXPECT_TRUE(has(look("alone.shp"), kInvalid));
    // As many rows as shapes.
    makeShots("three", {"1", "2", "3"});
    fs::copy_file(path("three.dbf"), path("shots.dbf"), fs::copy_options::overwrite_existing);
    std::string shown = look("shots.shp");
    EXPECT_TRUE(has(shown, kInvalid));
    EXPECT_TRUE(has(shown, "1011 edit \"\""));
    EXPECT_TRUE(has(shown, "1012 edit \"" + path("output.mdb")));
    // A type that is not imported is no error.
    makeSet("many", shape::kMultipoint, {{"A"}}, {{{{1, 2, 3}, {4, 5, 6}}, {"x"}}});
    shown = look("many.shp");
    EXPECT_TRUE(has(shown, "Type SHP File: UNKNOWN"));
    EXPECT_FALSE(has(shown, kInvalid));
    EXPECT_TRUE(has(shown, "1 button \"...\" (disabled)"));
}

TEST_F(ImportSheet, AnIndexThatIsMissingCanBeMade) {
    fs::remove(path("plots.shx"));
    EXPECT_TRUE(has(look("plots.shp"), kInvalid));
    EXPECT_FALSE(fs::exists(path("plots.shx")));
    ui_.answerQuestion("Import SHP File", "Yes");
    EXPECT_TRUE(has(look("plots.shp"), "Type SHP File: POLYGON"));
    EXPECT_TRUE(fs::exists(path("plots.shx")));
}

TEST_F(ImportSheet, ASetThatAKilledExportWasPuttingInPlaceIsWhole) {
    makeShots("three", {"1", "2", "3"});
    fs::create_directories(path(".export-killed/1"));
    write(".export-killed/lock", "");
    write(".export-killed/committed", "");
    for (const char* ending : {".shx", ".shp"})
        fs::rename(path(std::string("three") + ending), path(std::string(".export-killed/1/shots") + ending));
    fs::rename(path("three.dbf"), path("shots.dbf"));
    const std::string shown = look("shots.shp");
    EXPECT_TRUE(has(shown, "Records: 3, fields: 2")) << shown;
    EXPECT_EQ(printed(), "\n1 set of an export that was broken off put in place.");
    EXPECT_FALSE(fs::exists(path(".export-killed")));
}

TEST_F(ImportSheet, EndingsCountInAnyCase) {
    fs::rename(path("shots.shp"), path("shots.SHP"));
    fs::rename(path("shots.shx"), path("shots.Shx"));
    fs::rename(path("shots.dbf"), path("shots.dBF"));
    write("shots.PRJ", "PROJCS[\"NAD83 / North Carolina\",GEOGCS[\"NAD83\"]]");
    const std::string shown = look("shots.SHP");
    EXPECT_TRUE(has(shown, "Type SHP File: POINT\"")) << shown;
    EXPECT_TRUE(has(shown, "1013 edit \"" + path("shots.CRD"))) << shown;
    EXPECT_TRUE(has(shown, "Coordinates are taken as they are, in NAD83 / North Carolina.")) << shown;
    ASSERT_EQ(host_->saveDrawing(path("job.dxf")), "");
    ui_.answerBox("No");
    ui_.answerFile(path("shots.SHP"));
    answer(148, {click("Select SHP File"), import()});
    lisp("(cf:gis_smart_prompting 11)");
    EXPECT_EQ(points("shots.CRD").size(), 2u);
    EXPECT_EQ(output("select PT_ID from SHOTS"), "1\n2\n");
    // An export from this drawing is in the same system.
    EXPECT_TRUE(has(read("featlink.ini"), "@2" + path("job.dxf") + "\t" + path("shots.PRJ") + "\n"));
    EXPECT_TRUE(has(printed(), "\nThe coordinates are taken as they are, in NAD83 / North Carolina."));
}

TEST_F(ImportSheet, AGisKeyFixesTheTable) {
    makeSet("valves", shape::kPoint, {{"GIS_KEY"}, {"SIZE"}},
            {{{{1, 2, 0}}, {"", "6"}}, {{{1, 2, 0}}, {"water valve", "6"}}, {{{1, 2, 0}}, {"HYDRANT", "6"}}});
    std::string shown = look("valves.shp");
    EXPECT_TRUE(has(shown, "1014 edit \"WATER VALVE\" (read-only)")) << shown;
    makeSet("valves", shape::kPoint, {{"GIS_KEY"}}, {{{{1, 2, 0}}, {"A/B"}}});
    shown = look("valves.shp");
    EXPECT_TRUE(has(shown, "1014 edit \"VALVES\"\n")) << shown;
}

TEST_F(ImportSheet, ACoordinateFileThatIsThereIsAskedAbout) {
    makeShots("names", {"A1", "B2"});
    ui_.answerBox("No");
    import("shots");
    fs::copy_file(path("shots.crd"), path("names.crd"));
    const std::string kept = read("names.crd");
    // No: points go into it, and names have no place in a file of numbers.
    ui_.answerBox("No");
    ui_.answerBox("No");
    ui_.answerBox("OK");
    std::string shown = look("names.shp");
    EXPECT_TRUE(has(shown, "box [Alert] \"names.crd already exist!\nDo you want to replace it?\"")) << shown;
    EXPECT_TRUE(has(
        shown, "Type of CRD file is not properly for process! Using this CRD some points could be lost!"));
    EXPECT_TRUE(has(shown, "File type> Numerical .CRD"));
    // Yes: a new one takes its place, once the import is done.
    ui_.answerBox("No");
    ui_.answerBox("Yes");
    EXPECT_TRUE(has(look("names.shp"), "File type> Alphanumerical .CRD"));
    EXPECT_EQ(read("names.crd"), kept);
    ui_.answerBox("No");
    ui_.answerBox("Yes");
    ui_.answerBox("No");
    write("names.not", "1 A note of the old file");
    import("names");
    EXPECT_FALSE(fs::exists(path("names.not")));
    EXPECT_EQ(points("names.crd").size(), 2u);
    EXPECT_EQ(points("names.crd")[0], "A1 2.000 1.000 0.000 NAMES");
}

TEST_F(ImportSheet, TheChooserOffersBothKinds) {
    write("old.crd", read("shots.dbf"));
    answer(1481, {show(), click("New")});
    ui_.answerFile(path("shots.shp"));
    ui_.answerFile(path("old.crd"));
    ui_.answerBox("No");
    answer(148, {click("Select SHP File"), click("Select CRD File"), import()});
    lisp("(cf:gis_smart_prompting 11)");
    EXPECT_TRUE(shown("[1481] New or Existing File"));
    EXPECT_TRUE(shown("label \"File type> .CRD\""));
    EXPECT_TRUE(shown("save file box \"Coordinate Files (*.crd)|*.crd||\" pattern \"*.crd\""));
    EXPECT_EQ(points("old.crd").size(), 2u);
}

TEST_F(ImportSheet, WhatWasChosenIsRemembered) {
    ui_.answerBox("No");
    import("shots", {check("Overwrite Points in CRD File")});
    const std::string remembered = read("featlink.ini");
    EXPECT_TRUE(has(remembered, "#D" + path("shots.shp") + "\n")) << remembered;
    EXPECT_TRUE(has(remembered, "#E" + path("") + "\n"));
    EXPECT_TRUE(has(remembered, "#G1\n"));
    ui_.answerBox("Yes");
    const std::string shown = look("");
    EXPECT_TRUE(has(shown, "1011 edit \"" + path("shots.shp"))) << shown;
    EXPECT_TRUE(has(shown, "check [x] \"Overwrite Points in CRD File\""));
    // A set that is gone is none, without a word.
    fs::remove(path("shots.dbf"));
    EXPECT_FALSE(has(look(""), "box ["));
}

TEST_F(ImportSheet, HeightsComeFromAFieldWhereShapesHaveNone) {
    ui_.answerBox("No");
    import("shots", {check("Use attribute to assign elevation"), pick("1044", "HEIGHT")});
    EXPECT_EQ(points("shots.crd")[0], "1 2.000 1.000 7.500 SHOTS");
    // A point without a height is on the ground.
    makeSet("blank", shape::kPoint, {{"H"}}, {{{{1, 2, 0}}, {"5.25"}}, {{{1, 2, 0}}, {""}}});
    ui_.answerBox("Yes");
    ui_.answerBox("No");
    import("blank", {check("Use attribute to assign elevation"), pick("1044", "H")});
    EXPECT_EQ(points("blank.crd")[1], "2 2.000 1.000 0.000 BLANK");
    makeSet("lines", shape::kArc, {{"H"}},
            {{{{0, 0, 0}, {1, 1, 0}}, {"5.25"}}, {{{2, 2, 0}, {3, 3, 0}}, {""}}});
    ui_.answerBox("Yes");
    import("lines", {text("1015", "L"), check("Use attribute to assign elevation"), pick("1044", "H")});
    // A record without a height has that of the one before, and the polylines are in space.
    EXPECT_EQ(
        lisp("(list (cdr (assoc 70 (entget (entlast)))) (cdr (assoc 10 (entget (entnext (entlast))))))"),
        "(8 (2.0 2.0 5.25))");
    // Off, they stand on the ground.
    import("lines", {text("1015", "L"), pick("1042", "L")});
    EXPECT_EQ(lisp("(cdr (assoc 70 (entget (entlast))))"), "0");
}

TEST_F(ImportSheet, WithoutATemplateTheSettingsAreAskedFor) {
    write("gps.ini", "is_database=\ngisoutfile=" + path("output.mdb") + "\ngismdbfile=\n");
    import("plots", {text("1015", "L")});
    EXPECT_TRUE(shown("box [Error] \"Please run GIS Settings!\""));
    EXPECT_EQ(count("POLYLINE"), 0);
}

TEST_F(ImportSheet, ASetFarFromTheDrawingIsToldSo) {
    lisp("(entmake '((0 . \"LINE\") (10 1630000.0 480000.0 0.0) (11 1630100.0 480100.0 0.0)))");
    EXPECT_TRUE(
        has(look("plots.shp"),
            "Drawing: X 1630000.000 to 1630000.000, Y 480000.000 to 480000.000. The set lies far from it!"));
    lisp("(entmake '((0 . \"LINE\") (10 20.0 30.0 0.0) (11 0.0 0.0 0.0)))");
    EXPECT_FALSE(has(look("plots.shp"), "far from it"));
}

TEST_F(ImportSheet, TheDrawingIsMeasuredByWhereItsEntitiesStand) {
    lisp("(command \"_.OPEN\" \"" NORVANE_SOURCE_DIR "/samples/survey.dxf\")");
    EXPECT_TRUE(has(look("plots.shp"), "Drawing: X 1630")) << look("plots.shp");
}

TEST_F(ImportSheet, AreasBecomeLightPolylinesWhereThatIsWished) {
    import("plots", {text("1015", "L"), check("1905")});
    lisp("(setq ent (entlast))");
    EXPECT_EQ(lisp("(list (cdr (assoc 0 (entget ent))) (cdr (assoc 90 (entget ent))) (cdr (assoc 70 (entget "
                   "ent))))"),
              "(\"LWPOLYLINE\" 3 1)");
    EXPECT_NE(link().find("PLOTS"), std::string::npos);
}
