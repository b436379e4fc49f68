// Sets that others have made, and odd ones: what comes of each.
#include "platform/dao/dao.h"
#include "platform/text/text.h"
#include "tests/hostcad/independent_reader.h"
#include "tests/module/transfer/import_fixture.h"

using namespace norvane;

class SharedSets : public ImportTest {
  protected:
    // Imports a shared set, onto the layer L where it has lines or areas. What code 11, or another Lisp call
    // that imports, gave.
    std::string take(const std::string& name, const std::string& call = "(cf:gis_smart_prompting 11)") {
        EXPECT_TRUE(takeSharedSet(name)) << name;
        const std::string set = fs::path(name).filename().string();
        ui_.answerFile(path(set + ".shp"));
        std::vector<ui::Step> steps{click("Select SHP File")};
        const OpenShapeFile shapes(ShapeOpen(path(set), "rb"));
        if (!shape::IsPoint(shapes->shapeType)) steps.push_back(text("1015", "L"));
        if (shape::IsPoint(shapes->shapeType)) ui_.answerBox("Yes");
        steps.push_back(import());
        answer(148, std::move(steps));
        return lisp(call);
    }
    bool havePyshp() const {
        return std::system("/usr/bin/python3 -c 'import shapefile' >/dev/null 2>&1") == 0;
    }
    // Exports what is on a layer and compares it with the set from which it came, by pyshp.
    std::string exportedAgain(const std::string& set, const std::string& layer, int type) {
        EXPECT_EQ(lisp("(cf:gis_smart_prompting 10 " + quoted("again.shp") + " (ssget \"X\" '((8 . \"" +
                       layer + "\"))) " + std::to_string(type) + ")"),
                  "1");
        return outputOf("/usr/bin/python3 '" NORVANE_SOURCE_DIR "/tests/module/transfer/round_trip.py' '" +
                        path(set) + "' '" + path("again") + "' 2>&1");
    }
    bool haveThem() const { return fs::exists(NORVANE_SHARED_DATA "/shapes_in"); }
};

TEST_F(SharedSets, LinesAndAreasAgreeWithIndependentReaders) {
    if (!haveThem() || !ezdxfIsInstalled()) GTEST_SKIP() << "the shared files or ezdxf are not there";
    struct Case {
        const char* set;
        const char* compared;
    };
    for (const Case& c : {Case{"nc", "polylines 108, vertices 2529, values 1400\n"},
                          Case{"world", "polylines 290, vertices 10657, values 1770\n"},
                          Case{"storms_xyz_feature", "polylines 71, vertices 2135, values 71\n"},
                          Case{"lots_polygon", "polylines 140, vertices 962, values 480\n"},
                          Case{"easements_arcz", "polylines 180, vertices 1080, values 630\n"}}) {
        TearDown();
        SetUp();
        CDaoDatabase database;
        database.Create(path("output.sqlite"));
        database.Close();
        lisp("(cf:gis_smart_prompting 2 2 " + quoted("output.sqlite") + ")");
        take(c.set);
        lisp("(command \"_.SAVEAS\" \"_R2000\" \"\" " + quoted("drawing.dxf") + ")");
        EXPECT_EQ(
            outputOf("/usr/bin/python3 '" NORVANE_SOURCE_DIR "/tests/module/transfer/compare_import.py' '" +
                     path(c.set) + "' '" + path("drawing.dxf") + "' '" + path("output.sqlite") + "' " +
                     ::text::upper(c.set) + " 2>&1"),
            c.compared)
            << c.set;
    }
}

TEST_F(SharedSets, PointsGoIntoTheirFiles) {
    if (!haveThem()) GTEST_SKIP() << "the shared files are not there";
    // House sales without ids: numbers in their order, at the height of the ground.
    take("baltim");
    EXPECT_EQ(points("baltim.crd").size(), 211u);
    EXPECT_EQ(output("select count(*) from BALTIM"), "211\n");
    // PT_ID is 0 once, and 150 twice.
    take("monuments_pointz");
    const std::vector<std::string> monuments = points("monuments_pointz.crd");
    EXPECT_EQ(monuments.size(), 500u);
    EXPECT_EQ(output("select count(*) from MONUMENT"), "500\n");
    EXPECT_EQ(output("select HEIGHT from MONUMENT where PT_ID in ('32', '33', '34', '35')"),
              "0\n-3.25\n1234567.5\n.0625\n");
}

TEST_F(SharedSets, DatesAreReadInEveryOrderWithinTheirYears) {
    if (!haveThem()) GTEST_SKIP() << "the shared files are not there";
    take("shapes_in/dates");
    EXPECT_EQ(
        output("select PT_ID, AS_DATE from DATES where PT_ID in ('1','2','3','4','5','6','7','8','9')"),
        "1|2005/06/21\n2|06/21/2005\n3|21/06/2005\n4|2005/21/06\n5|\n6|06/21/05\n7|\n8|210605\n9|130105\n");
    // 1929 to 2029 are years; zeros in front or in the middle were written for "19".
    EXPECT_EQ(
        output(
            "select PT_ID, AS_DATE from DATES where PT_ID in ('10','11','12','13','14','15','16','17','18')"),
        "10|1929/01/01\n11|2029/12/31\n12|20300101\n13|01012030\n14|12311928\n15|19281231\n16|1985/06/12\n"
        "17|06/12/1985\n18|06850000\n");
    EXPECT_EQ(output("select PT_ID, AS_DATE from DATES where PT_ID in ('19','20','22','23','26','27','28')"),
              "19|02/29/2004\n20|02/30/2004\n22|2001/02/29\n23|2005062\n26|0\n27|abcdefgh\n28|12/31/05\n");
    // In a field of texts a date is a text, in one of numbers a number.
    EXPECT_EQ(output("select AS_TEXT, AS_NUMBER from DATES where PT_ID in ('2','5')"),
              "06212005|6212005\n00000000|0\n");
}

TEST_F(SharedSets, CellsWithoutAValueLeaveNone) {
    if (!haveThem()) GTEST_SKIP() << "the shared files are not there";
    take("shapes_in/stars");
    EXPECT_EQ(
        output("select COUNT, HEIGHT, WEIGHT, OPEN, SEEN from STARS where PT_ID in "
               "('1','2','3','4','6','8','9')"),
        "7|.5|1.25|T|2005/06/21\n||||\n||||\n12|-003.25|1.5E+003|y|2005/06/21\n-1|.5|-.0625|f|********\n"
        "0|0|-0|0|2005/13/32\nabc|12.5 ft|nan|t|99999999\n");
    take("shapes_in/umlaut_utf8");
    EXPECT_EQ(output("select [GRÖSSE], [STRAßE], NAME from UMLAUT_UTF8 where PT_ID in ('2','3','5')"),
              "2.5|½ acre|NÚÑEZ\n5|≥ 1:10 000|Łódź\n10|outside 1252|东\n");
    take("shapes_in/deleted");
    EXPECT_EQ(output("select NOTE from DELETED where PT_ID in ('3','7')"), "row 3\nrow 7\n");
}

TEST_F(SharedSets, IdsOfNumbersServeAsKeys) {
    if (!haveThem()) GTEST_SKIP() << "the shared files are not there";
    EXPECT_EQ(take("shapes_in/numeric_id"),
              "(\"1\" \"2\" \"3\" \"4\" \"5\" \"6\" \"7\" \"8\" \"9\" \"11\" \"12\" \"13\" \"14\" \"15\" "
              "\"16\" \"17\" \"18\" \"19\" "
              "\"20\")");
    EXPECT_NE(printed().find("\nError writing point#: 214748364"), std::string::npos);
    // 0, an empty one and a second 3 took the numbers that no other record has.
    EXPECT_EQ(
        output("select PT_ID from NUMERIC_ID where DESCR in ('POINT 7', 'POINT 8', 'POINT 9', 'POINT 10') "
               "order by DESCR"),
        "214748364\n7\n8\n9\n");
    ui_.answerBox("No");  // for the file of the set before
    take("shapes_in/gis_key");
    EXPECT_EQ(output("select PT_ID from [WATER VALVE]"),
              "1\n2\nA3\n0\n3\n123456789\n123456790\nA4\n000\n7 B\n");
}

TEST_F(SharedSets, RecordsThatCannotBeReadShiftTheAttributesOfLaterOnes) {
    if (!haveThem()) GTEST_SKIP() << "the shared files are not there";
    EXPECT_EQ(take("shapes_in/nulls_point"),
              "(\"102\" \"103\" \"106\" \"107\" \"108\" \"109\" \"110\" \"111\")");
    EXPECT_TRUE(shown("Record 1 cannot be read: the attributes of all later ones would belong to others."));
    EXPECT_EQ(output("select PT_ID, STAMP from NULLS_POINT where PT_ID in ('102', '111')"),
              "102|STAMP 1\n111|STAMP 8\n");
    EXPECT_NE(printed().find("\nLeft out: 4 records that cannot be read."), std::string::npos);
    // Who does not want that stops.
    ui_.answerBox("No");
    ui_.answerQuestion("Record 1 cannot be read", "Stop");
    EXPECT_EQ(take("shapes_in/nulls_polygon"), "nil");
    EXPECT_EQ(count("POLYLINE"), 0);
    EXPECT_NE(printed().find("\nThe import was stopped: nothing was changed."), std::string::npos);
}

TEST_F(SharedSets, PartsOfOneVertexAndRingsWithoutEnd) {
    if (!haveThem()) GTEST_SKIP() << "the shared files are not there";
    take("shapes_in/big_ring");
    // 32 001 vertices, the first of them again at the end: open, and none is added; the other ring is closed.
    EXPECT_EQ(
        lisp("(progn (setq set (ssget \"X\" '((0 . \"POLYLINE\") (8 . \"L\"))) all nil) (foreach i '(0 1)"
             " (setq e (ssname set i) n 0 d (cdr (assoc 70 (entget e))) e (entnext e))"
             " (while (= (cdr (assoc 0 (entget e))) \"VERTEX\") (setq n (1+ n) e (entnext e)))"
             " (setq all (cons (list d n) all))) all)"),
        "((1 81) (0 32001))");
    take("shapes_in/one_vertex");
    EXPECT_EQ(count("POLYLINE"), 2 + 5);
    EXPECT_EQ(output("select PT_ID from ONE_VERTEX"), "V1\nV2\n1\nV4\nV5\nV6\n");
    EXPECT_NE(printed().find("\nLeft out: 4 parts of fewer than two vertices."), std::string::npos);
    take("shapes_in/UPPER");
    EXPECT_EQ(output("select count(*) from UPPER"), "4\n");
}

TEST_F(SharedSets, TheyGoOutAgainAsTheyCameIn) {
    if (!haveThem() || !havePyshp()) GTEST_SKIP() << "the shared files or pyshp are not there";
    struct Case {
        const char* set;
        int type;
        const char* compared;
    };
    // Rings within others are turned round: each goes out as an area of its own.
    for (const Case& c :
         {Case{"nc", shape::kPolygon, "as they were 108, turned round 0, values 1512\n"},
          Case{"world", shape::kPolygon, "as they were 289, turned round 1, values 2900\n"},
          Case{"storms_xyz_feature", shape::kArcZ, "as they were 71, turned round 0, values 71\n"},
          Case{"lots_polygon", shape::kPolygon, "as they were 70, turned round 70, values 1120\n"},
          Case{"easements_arcz", shape::kArcZ, "as they were 180, turned round 0, values 1256\n"}}) {
        TearDown();
        SetUp();
        take(c.set);
        EXPECT_EQ(exportedAgain(c.set, "L", c.type), c.compared) << c.set;
    }
}

TEST_F(SharedSets, PointsThatAreDrawnGoOutAgainAsTheyCameIn) {
    if (!haveThem() || !havePyshp()) GTEST_SKIP() << "the shared files or pyshp are not there";
    struct Case {
        const char* set;
        int type;
        const char* compared;
    };
    // Ids that are none, come twice, or are too long for a coordinate file are others then: a12 beside A12
    // takes A13, and the point of that name the next.
    for (const Case& c : {Case{"baltim", shape::kPoint, "as they were 211, turned round 0, values 3587\n"},
                          Case{"monuments_pointz", shape::kPointZ,
                               "as they were 500, turned round 0, values 3000, other ids 2\n"},
                          Case{"monuments_alpha", shape::kPoint,
                               "as they were 200, turned round 0, values 1199, other ids 4\n"}}) {
        TearDown();
        SetUp();
        lisp("(load \"" NORVANE_SOURCE_DIR "/product/gis.lsp\")");
        take(c.set, "(c:gis-import)");
        EXPECT_EQ(exportedAgain(c.set, "POINTS", c.type), c.compared) << c.set;
    }
}
