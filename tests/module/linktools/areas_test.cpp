// Links from areas and the texts in them, as a person makes them.
#include "tests/module/linktools/areas_fixture.h"

TEST_F(Areas, SelectedPolylinesGetTheLinkAndTheirRecord) {
    makeTable(
        {{"PT_ID", dbText}, {"GIS_KEY", dbText}, {"NUM", dbText}, {"ACRES", dbDouble}, {"FLOORS", dbLong}});
    sql("INSERT INTO LOT (PT_ID, NUM) VALUES ('7', 'lot a')");
    sql("INSERT INTO LOT (NUM) VALUES ('LOT B')");
    sql("INSERT INTO LOT (PT_ID, NUM) VALUES ('12A', 'other')");
    square(0, 0, 100), square(100, 0, 100), square(300, 0, 50);
    label(50, 50, "Lot A"), label(150, 50, "lot b"), label(320, 20, "new"), label(330, 20, "NEW"),
        label(900, 900, "far");
    const std::string said = link("", {click("OK")});
    EXPECT_NE(said.find("\rCreated 3 Polylines with GIS Links.\nDone."), std::string::npos) << said;
    EXPECT_NE(said.find("records changed 2, added 1"), std::string::npos) << said;
    EXPECT_NE(said.find("Labels in no area 1: FAR."), std::string::npos) << said;
    EXPECT_EQ(count("LWPOLYLINE"), "3");
    EXPECT_EQ(links(), "\"LWPOLYLINE 7; LWPOLYLINE 8; LWPOLYLINE 9; \"");
    EXPECT_EQ(rows("output.mdb", "SELECT PT_ID, GIS_KEY, NUM FROM LOT"),
              (std::vector<std::string>{"7|LOT|lot a", "8|LOT|LOT B", "12A||other", "9|LOT|NEW"}));
    EXPECT_EQ(rows("template.mdb",
                   "SELECT FIELD_NAME, FIELD_PROMPT FROM ZGEO_SMART_PROMPTING WHERE GIS_NAME = 'LOT'"),
              (std::vector<std::string>{"NUM|NUM", "..ACRES|ACRES", ".FLOORS|FLOORS"}));
    EXPECT_EQ(rows("template.mdb", "SELECT CAT_GIS_NAME, INDEX_CAT_GIS FROM ZGEO_CAT WHERE GIS_NAME = 'LOT'"),
              (std::vector<std::string>{"MISC|1"}));
    EXPECT_EQ(rows("template.mdb", "SELECT TABLE_NAME, IS_CURRENT FROM ZGEO_LINKS WHERE GIS_NAME = 'LOT'"),
              (std::vector<std::string>{"LOT|NO"}));
    // Once more: nothing is added, and all had a link.
    EXPECT_NE(link("Text", {click("OK")})
                  .find("Linked 3, 3 of them had a link before; records changed 3, added 0."),
              std::string::npos);
}

TEST_F(Areas, NewPolylinesStandOnTheLayerThatWasChosen) {
    makeTable({{"NUM", dbText}});
    square(0, 0, 100);
    line(100, 0, 200, 0), line(200, 0, 200, 100), line(200, 100, 100, 100), line(150, 0, 150, 100);
    label(50, 50, "A"), label(120, 50, "B"), label(180, 50, "b");
    const std::string said = link("", {show(),
                                       ui::Step{ui::Step::Kind::Check, "Create New Entities"},
                                       {ui::Step::Kind::Text, "2028", "AREAS"},
                                       show(),
                                       click("OK")});
    EXPECT_NE(said.find("Created 3 Polylines with GIS Links."), std::string::npos) << said;
    EXPECT_EQ(count("LWPOLYLINE"), "4");
    EXPECT_EQ(lisp("(getvar \"CLAYER\")"), "\"AREAS\"");
    EXPECT_EQ(lisp("(getvar \"REGENMODE\")"), "1");
    EXPECT_EQ(lisp("(sslength (ssget \"X\" '((8 . \"AREAS\"))))"), "3");
    CDaoDatabase output;
    output.Open(path("output.mdb"));
    for (const char* column : {"PT_ID", "GIS_KEY"}) {
        CDaoTableDef table(&output);
        table.Open("LOT");
        CDaoFieldInfo made;
        table.GetFieldInfo(column, made);
        EXPECT_EQ(made.type, dbText) << column;
        EXPECT_EQ(made.size, 255) << column;
        EXPECT_TRUE(made.allowZeroLength) << column;
    }
    output.Close();
    // Both areas of one label have one record.
    EXPECT_EQ(rows("output.mdb", "SELECT PT_ID, GIS_KEY, NUM FROM LOT"),
              (std::vector<std::string>{"1|LOT|A", "2|LOT|B"}));
    EXPECT_EQ(links(), "\"LWPOLYLINE 1; LWPOLYLINE 2; LWPOLYLINE 2; \"");
}

TEST_F(Areas, SeveralLabelsInOneAreaStopIt) {
    makeTable({{"NUM", dbText}});
    square(0, 0, 100);
    label(50, 50, "A"), label(60, 50.123, "B"), label(70, 50, "C");
    ui_.answerBox("OK");
    const std::string said = link("", {click("OK")});
    EXPECT_NE(said.find("\n\nError: multiple text labels A and B found within area at 60.00,50.12"
                        "\nError: multiple text labels A and C found within area at 70.00,50.00"),
              std::string::npos)
        << said;
    EXPECT_TRUE(shown("Error: multiple text labels found within same area"));
    EXPECT_EQ(said.find("Created"), std::string::npos);
    EXPECT_NE(said.find("\nDone."), std::string::npos);
    EXPECT_EQ(count("LWPOLYLINE"), "1");
    EXPECT_TRUE(rows("output.mdb", "SELECT NUM FROM LOT").empty());
    EXPECT_EQ(
        rows("template.mdb", "SELECT FIELD_NAME FROM ZGEO_SMART_PROMPTING WHERE GIS_NAME = 'LOT'").size(),
        1u);
    EXPECT_EQ(links(), "\"\"");
}

TEST_F(Areas, KeysThatAreNumbersBecomeTextsWhenOneWants) {
    makeTable({{"PT_ID", dbLong}, {"GIS_KEY", dbLong}, {"NUM", dbText}});
    sql("INSERT INTO LOT (PT_ID, NUM) VALUES (5, 'a')");
    square(0, 0, 100), square(200, 0, 100);
    label(50, 50, "A"), label(250, 50, "B");
    ui_.answerQuestion("Key columns", "No");
    EXPECT_TRUE(link("", {click("OK")}).ends_with("\nDone."));
    EXPECT_TRUE(shown("PT_ID of the table \"LOT\" must be text."));
    EXPECT_EQ(rows("output.mdb", "SELECT PT_ID, GIS_KEY, NUM FROM LOT"), (std::vector<std::string>{"5||a"}));
    EXPECT_TRUE(rows("template.mdb", "SELECT * FROM ZGEO_SMART_PROMPTING WHERE GIS_NAME = 'LOT'").empty());
    EXPECT_EQ(links(), "\"\"");

    link("", {click("OK")});
    EXPECT_EQ(rows("output.mdb", "SELECT PT_ID, GIS_KEY, NUM FROM LOT"),
              (std::vector<std::string>{"5|LOT|a", "6|LOT|B"}));
    EXPECT_EQ(links(), "\"LWPOLYLINE 5; LWPOLYLINE 6; \"");
    ui_.clearLog();
    link("", {click("OK")});
    EXPECT_FALSE(shown("Key columns")) << "they are texts now";
}

TEST_F(Areas, ALabelThatIsOneTooManyIsMetByTheOuterAreaToo) {
    makeTable({{"NUM", dbText}});
    square(0, 0, 100), square(20, 20, 30);
    label(30, 30, "a"), label(35, 35, "b"), label(40, 40, "A"), label(80, 80, "c");
    ui_.answerBox("OK");
    const std::string said = link("", {click("OK")});
    EXPECT_NE(said.find("\n\nError: multiple text labels A and B found within area at 35.00,35.00"
                        "\nError: multiple text labels B and C found within area at 80.00,80.00\r"),
              std::string::npos)
        << said;
}

TEST_F(Areas, AnInnerAreaKeepsItsLabelFromTheOuterOne) {
    makeTable({{"NUM", dbText}});
    square(0, 0, 100), square(20, 20, 30);
    label(5, 5, "OUT"), label(30, 30, "IN"), label(60, 60, "   ");
    link("", {click("OK")});
    EXPECT_EQ(rows("output.mdb", "SELECT NUM FROM LOT"), (std::vector<std::string>{"IN", "OUT"}));
    EXPECT_EQ(links(), "\"LWPOLYLINE 2; LWPOLYLINE 1; \"");
}

TEST_F(Areas, AnOpenPolylineThatLacksItsLastSideIsTheArea) {
    makeTable({{"NUM", dbText}});
    lisp(
        "(entmake '((0 . \"LWPOLYLINE\") (100 . \"AcDbEntity\") (100 . \"AcDbPolyline\") (90 . 4) (70 . 0) "
        "(10 0.0 0.0) "
        "(10 100.0 0.0) (10 100.0 100.0) (10 0.0 100.0)))");
    line(0, 0, 0, 100);
    label(50, 50, "A");
    link("", {click("OK")});
    EXPECT_EQ(links(), "\"LWPOLYLINE 1; \"");
    EXPECT_EQ(count("LWPOLYLINE"), "1");
}

TEST_F(Areas, TheCheckStandsAlone) {
    ASSERT_EQ(lisp("(load \"gis.lsp\") t"), "T");
    square(0, 0, 100), square(200, 0, 100);
    label(50, 50, "A"), label(900, 900, "far");
    inputs_ = {"ALL", "", ""};
    printed();
    lisp("(c:gis-areacheck)");
    std::string said = printed();
    EXPECT_NE(said.find("\nLabel far at 900.00,900.00 in no area."), std::string::npos) << said;
    EXPECT_NE(said.find("\nArea without a label at 250.00,"), std::string::npos) << said;
    EXPECT_NE(said.find("\nFaults: 2."), std::string::npos) << said;
    EXPECT_EQ(count("CIRCLE"), "0");
    ui_.answerQuestion("Mark the places", "Yes");
    inputs_ = {"ALL", "", "0.5"};
    lisp("(c:gis-areacheck)");
    EXPECT_EQ(lisp("(sslength (ssget \"X\" '((0 . \"CIRCLE\") (8 . \"GIS-AREACHECK\"))))"), "2");
}

TEST_F(Areas, FaultsAreToldBeforeAnythingIsWritten) {
    makeTable({{"NUM", dbText}});
    square(0, 0, 100), square(200, 0, 100);
    line(50, 0, 50, 99.95), line(75, 0, 75, 100.02);
    label(10, 50, "A"), label(90, 50, "B"), label(900, 900, "far");
    const std::string faults =
        "\nLabel far at 900.00,900.00 in no area.\nArea without a label at 250.00,51.23."
        "\nGap of 0.0500 at 50.00,99.95.\nEnd that sticks out by 0.0200 at 75.00,100.02.";
    ui_.answerQuestion("Faults of areas", "No");
    const std::string said = link("", {click("OK")});
    EXPECT_TRUE(said.ends_with(
        "\nDone.\nFaults of areas: 4. GIS-AREACHECK tells them all, and marks their places." + faults))
        << said;
    EXPECT_TRUE(shown("4 faults were found in these areas and labels:\n" + faults +
                      "\n\nDo you want to link the areas all the same?"));
    EXPECT_TRUE(rows("template.mdb", "SELECT * FROM ZGEO_SMART_PROMPTING WHERE GIS_NAME = 'LOT'").empty());
    EXPECT_TRUE(rows("output.mdb", "SELECT NUM FROM LOT").empty());
    EXPECT_EQ(links(), "\"\"");
    EXPECT_EQ(count("LWPOLYLINE"), "2");

    // A script that does not know the question goes on; faults come after all that it knows.
    lisp("(setq area-check-distance$ 0.03)");
    const std::string linked = link("", {click("OK")});
    EXPECT_NE(linked.find("\nLinked "), std::string::npos) << linked;
    EXPECT_LT(linked.find("\nLinked "), linked.find("\nFaults of areas: 3.")) << linked;
    EXPECT_EQ(linked.find("Gap of"), std::string::npos) << linked;
    lisp("(setq area-check-distance$ 0)");
    EXPECT_EQ(link("", {click("OK")}).find("Faults of areas"), std::string::npos);
}

TEST_F(Areas, ALabelOfTwoAreasIsAFaultAndLinksBoth) {
    makeTable({{"NUM", dbText}});
    square(0, 0, 100), square(200, 0, 100);
    label(50, 50, "LOT 7"), label(250, 50, "lot 7");
    const std::string said = link("", {click("OK")});
    EXPECT_NE(said.find("\nFaults of areas: 1."), std::string::npos) << said;
    EXPECT_NE(said.find("\nLabel lot 7 at 250.00,50.00 stands in 2 areas."), std::string::npos) << said;
    EXPECT_EQ(links(), "\"LWPOLYLINE 1; LWPOLYLINE 1; \"");
}

TEST_F(Areas, HandlesAreKeysToo) {
    makeTable({{"NUM", dbText}});
    square(0, 0, 100), square(200, 0, 10);
    line(0, 0, 50, 50);
    EXPECT_NE(link("Handle", {show(), click("OK")}).find("Created 2 Polylines with GIS Links."),
              std::string::npos);
    EXPECT_EQ(rows("output.mdb", "SELECT PT_ID FROM LOT").size(), 2u);
    EXPECT_EQ(links(), "\"LWPOLYLINE 1; LWPOLYLINE 2; \"");
}

TEST_F(Areas, WithoutATableThatHasTextThereIsNoDialog) {
    makeTable({{"PT_ID", dbText}, {"NUM", dbLong}});
    square(0, 0, 100);
    ui_.answerBox("OK");
    inputs_ = {"", "ALL", ""};
    lisp("(cf:gis_smart_prompting 20 " + quoted("") + " " + quoted("template.mdb") + " " +
         quoted("output.mdb") + ")");
    EXPECT_TRUE(shown("No Table found in Output Database."));
    EXPECT_FALSE(shown("dialog 1390"));
}

// The lots of a survey by their labels: originals and new polylines, with arcs, shared sides and corners that
// stand on the side of another lot.
TEST_F(Areas, TheLotsOfASurveyGetTheirRecords) {
    const std::string survey = NORVANE_SHARED_DATA "/survey.dxf";
    if (!fs::exists(survey)) GTEST_SKIP() << "survey.dxf is not there";
    for (const bool makesNew : {false, true}) {
        SCOPED_TRACE(makesNew);
        ASSERT_EQ(host_->openDrawing(survey), "");
        if (makesNew)
            sql("DELETE FROM LOT");
        else
            makeTable({{"NUM", dbText}});
        // Of the two labels of lot 12 one goes.
        lisp("(setq s (ssget \"X\" '((0 . \"TEXT\") (1 . \"LOT 12A\")))) (entdel (ssname s 0))");
        lisp("(setq s (ssget \"X\" '((-4 . \"<or\") (8 . \"LOTS\") (8 . \"LOT-TEXT\") (-4 . \"or>\"))))");
        std::vector<ui::Step> steps;
        if (makesNew) steps = {ui::Step{ui::Step::Kind::Check, "Create New Entities"}};
        steps.push_back(click("OK"));
        answer(1390, steps);
        inputs_ = {"", "P", ""};
        printed();
        lisp("(cf:gis_smart_prompting 20 " + quoted("") + " " + quoted("template.mdb") + " " +
             quoted("output.mdb") + ")");
        const std::string said = printed();
        EXPECT_NE(said.find("\rCreated 59 Polylines with GIS Links."), std::string::npos) << said;
        // Lots 36 and 37 have one label.
        EXPECT_EQ(rows("output.mdb", "SELECT NUM FROM LOT").size(), 58u);
        EXPECT_EQ(
            lisp("(if (setq s (ssget \"X\" '((8 . \"LOTS\") (-3 (\"ZGEO_GIS_2000\"))))) (sslength s) 0)"),
            makesNew ? "0" : "59");
        EXPECT_EQ(lisp("(sslength (ssget \"X\" '((-3 (\"ZGEO_GIS_2000\")))))"), "59");
        EXPECT_EQ(rows("output.mdb", "SELECT NUM FROM LOT WHERE PT_ID IS NULL OR GIS_KEY <> 'LOT'").size(),
                  0u);
    }
}
