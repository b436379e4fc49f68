// cf:scbpoly, as modules and routines of Lisp call it.
#include <fstream>

#include "hostcad/geometry/extents.h"
#include "hostcad/geometry/linework.h"
#include "tests/hostcad/host_fixture.h"

using namespace hostcad;

namespace {

class AreaTracing : public HostTest {
  protected:
    void SetUp() override {
        run("(defun trace (points) (apply 'cf:scbpoly (cons 1 (cons (ssget \"X\") points))))");
        run("(defun line (x y u v) (entmake (list '(0 . \"LINE\") (list 10 x y 0.0) (list 11 u v 0.0))))");
    }
    std::string area() {
        const ObjectId last = currentDrawing().lastEntity();
        return std::to_string(std::lround(enclosedArea(currentDrawing(), last) * 1000));
    }
    static std::string sharedFile(const char* name) { return std::string(NORVANE_SHARED_DATA "/") + name; }
};

}  // namespace

TEST_F(AreaTracing, EachAreaIsMadeOnceOnTheCurrentLayer) {
    run("(line 0.0 0.0 90.0 0.0) (line 90.0 0.0 90.0 60.0) (line 90.0 60.0 0.0 60.0) (line 0.0 60.0 0.0 "
        "0.0)");
    run("(line 30.0 -5.0 30.0 60.0)");
    run("(setvar \"CLAYER\" \"0\") (entmake '((0 . \"LAYER\") (100 . \"AcDbSymbolTableRecord\") "
        "(100 . \"AcDbLayerTableRecord\") (2 . \"AREAS\") (70 . 0))) (setvar \"CLAYER\" \"AREAS\")");
    EXPECT_EQ(run("(trace '((10.0 10.0 0.0) (20.0 50.0) (500.0 5.0)))"), "1");
    EXPECT_EQ(last(0), "\"LWPOLYLINE\"");
    EXPECT_EQ(last(8), "\"AREAS\"");
    EXPECT_EQ(last(70), "1");
    EXPECT_EQ(last(90), "4");
    EXPECT_EQ(area(), "1800000");
    EXPECT_EQ(run("(trace '((31.0 31.0) (10.0 10.0)))"), "2");
    EXPECT_EQ(run("(trace nil)"), "0");
    EXPECT_EQ(run("(cf:scbpoly 1)").substr(0, 6), "error:");
    EXPECT_EQ(run("(cf:scbpoly 1 nil)").substr(0, 6), "error:");
}

TEST_F(AreaTracing, GapsAreJoinedAsFarAsTheVariableSays) {
    run("(line 0.0 0.0 80.0 0.0) (line 80.0 0.0 80.0 80.0) (line 80.0 80.0 0.0 80.0) (line 0.0 79.99 0.0 "
        "0.0)");
    EXPECT_EQ(run("(trace '((40.0 40.0)))"), "0");
    run("(setvar \"AREAGAP\" 0.02)");
    EXPECT_EQ(run("(trace '((40.0 40.0)))"), "1");
    EXPECT_EQ(area(), "6400000");
}

TEST_F(AreaTracing, MirroredAndLevelPolylinesKeepTheirPlace) {
    run("(entmake '((0 . \"LWPOLYLINE\") (100 . \"AcDbEntity\") (100 . \"AcDbPolyline\") (90 . 3) (70 . 1) "
        "(38 . 7.5) "
        "(10 -10.0 0.0) (42 . -0.5) (10 -50.0 0.0) (42 . 0.0) (10 -50.0 40.0) (42 . 0.0) (210 0.0 0.0 "
        "-1.0)))");
    const std::string before = area();
    // In the world it stands on the other side, and its bow too.
    EXPECT_EQ(run("(trace '((45.0 10.0)))"), "1");
    EXPECT_EQ(area(), before);
    EXPECT_EQ(last(10), "(10.0 0.0)");
    EXPECT_EQ(last(42), "0.5");
    EXPECT_EQ(run("(trace '((30.0 -9.0)))"), "1");
    EXPECT_EQ(run("(trace '((-30.0 -9.0)))"), "0");
}

TEST_F(AreaTracing, TheCheckTellsEachFaultWithItsPlace) {
    run("(defun text (x y s) (entmake (list '(0 . \"TEXT\") (list 10 x y 0.0) '(40 . 1.0) (cons 1 s))))");
    run("(line 0.0 0.0 100.0 0.0) (line 100.0 0.0 100.0 60.0) (line 100.0 60.0 0.0 60.0) (line 0.0 60.0 0.0 "
        "0.0)");
    run("(line 50.0 0.0 50.0 60.05) (line 75.0 0.0 75.0 59.98)");
    run("(text 10.0 10.0 \"A\") (text 500.0 5.0 \"FAR\") (text 5.0 5.0 \" \")");
    EXPECT_EQ(
        run("(cf:scbcheck (ssget \"X\") 0.1)"),
        "((\"LABEL\" (500.0 5.0 0.0) \"FAR\") (\"AREA\" (75.0 30.738 0.0)) (\"END\" (50.0 60.05 0.0) 0.05) "
        "(\"GAP\" (75.0 59.98 0.0) 0.02))");
    // A line that leads nowhere is none.
    run("(line 20.0 0.0 20.0 30.0) (text 80.0 10.0 \"a\")");
    EXPECT_EQ(run("(cf:scbcheck (ssget \"X\") 0.01)"),
              "((\"LABEL\" (500.0 5.0 0.0) \"FAR\") (\"SEVERAL\" (80.0 10.0 0.0) \"a\" 2))");
    EXPECT_EQ(run("(cf:scbcheck nil 0.01)").substr(0, 6), "error:");
}

// Cases that are hard, one a layer: all areas that they have, and those that their labels make.
TEST_F(AreaTracing, TheCasesOfAreasDxf) {
    if (!std::ifstream(sharedFile("areas.dxf"))) GTEST_SKIP() << "areas.dxf is not there";
    struct Case {
        const char* layer;
        std::vector<double> areas, made;
    };
    const Case cases[] = {{"C01-NESTED", {10000, 2500}, {10000, 2500}},
                          {"C02-ISLAND", {10000, 1256.637}, {10000}},
                          {"C03-T-JUNCTION", {7200, 3600, 3600}, {7200, 3600, 3600}},
                          {"C04-ARC-WALL", {5713.274, 3886.726}, {5713.274, 3886.726}},
                          {"C05-ARC-REVERSED", {5713.274, 3886.726}, {5713.274, 3886.726}},
                          {"C06-DOUBLED", {6400}, {6400}},
                          {"C07-GAP", {}, {}},
                          {"C08-GAP-TINY", {6400}, {6400}},
                          {"C09-DANGLES", {6400}, {6400}},
                          {"C10-ON-EDGE", {6400, 6400}, {6400}},
                          {"C11-ON-CORNER", {9000, 6400}, {9000, 6400}},
                          {"C12-TWO-LABELS", {6400}, {6400}},
                          {"C13-SAME-TWICE", {6400}, {6400}},
                          {"C14-EQUAL", {6400, 3600}, {6400, 3600}},
                          {"C15-NO-LABEL", {6400}, {}},
                          {"C16-MIRRORED", {5713.274}, {5713.274}},
                          {"C17-CROSSING", {1600}, {1600}},
                          {"C18-GRID", std::vector<double>(9, 900), std::vector<double>(9, 900)},
                          {"C19-BOWTIE", {1600, 1600}, {1600}},
                          {"C20-OLD", {5713.274, 1600}, {5713.274, 1600}},
                          {"C21-CURVES", {2827.433, 2513.274, 2513.274}, {2827.433, 2513.274, 2513.274}},
                          {"C22-OPEN-MEETING", {6400}, {6400}},
                          {"C23-LEVELS", {6400}, {6400}},
                          {"C24-TWICE", {6400}, {6400}},
                          {"C25-WORDS", {6400}, {6400}},
                          {"C26-FAR-OUT", {6400}, {6400}}};
    ASSERT_EQ(host_.openDrawing(sharedFile("areas.dxf")), "");
    const Drawing& drawing = currentDrawing();
    // Chords of a curve lose a little of its area.
    auto expectAreas = [](std::vector<double> found, const std::vector<double>& areas, bool areCurves) {
        std::sort(found.rbegin(), found.rend());
        ASSERT_EQ(found.size(), areas.size());
        for (size_t i = 0; i < areas.size(); ++i)
            EXPECT_NEAR(found[i], areas[i], areCurves ? areas[i] * 2e-3 : 1e-3);
    };
    for (const auto& [layer, areas, made] : cases) {
        SCOPED_TRACE(layer);
        const bool areCurves = std::string_view(layer) == "C21-CURVES";
        std::vector<ObjectId> entities;
        for (ObjectId id = drawing.firstEntity(); id; id = drawing.nextEntity(id))
            if (textOf(drawing.groups(id), 8) == layer) entities.push_back(id);
        const Linework linework = readLinework(drawing, entities);
        std::vector<double> found;
        for (const plane::Ring& ring :
             plane::smallestRings(linework.pieces, *plane::graphOf(linework.pieces), linework.closed))
            found.push_back(ring.area);
        expectAreas(found, areas, areCurves);

        run("(setq set (ssget \"X\" '((8 . \"" + std::string(layer) +
            "\"))) seeds nil i 0) (repeat (sslength set) (setq e (entget (ssname set i)) i (1+ i)) "
            "(if (= (cdr (assoc 0 e)) \"TEXT\") (setq seeds (cons (cdr (assoc 10 e)) seeds))))");
        EXPECT_EQ(run("(apply 'cf:scbpoly (cons 1 (cons set (reverse seeds))))"),
                  std::to_string(made.size()));
        std::vector<ObjectId> all;
        for (ObjectId e = drawing.firstEntity(); e; e = drawing.nextEntity(e)) all.push_back(e);
        found.clear();
        for (size_t i = all.size() - made.size(); i < all.size(); ++i)
            found.push_back(enclosedArea(drawing, all[i]));
        expectAreas(found, made, areCurves);
    }
}

// Each lot comes back with its vertices, bit for bit and in their order.
TEST_F(AreaTracing, TheLotsOfASurveyComeBack) {
    if (!std::ifstream(sharedFile("survey.dxf"))) GTEST_SKIP() << "survey.dxf is not there";
    ASSERT_EQ(host_.openDrawing(sharedFile("survey.dxf")), "");
    run("(defun points (e) (vl-remove-if-not '(lambda (g) (or (= (car g) 10) (and (= (car g) 42) (/= (cdr g) "
        "0.0)))) (entget e)))");
    run("(setq lots (ssget \"X\" '((8 . \"LOTS\"))) texts (ssget \"X\" '((8 . \"LOT-TEXT\"))) all nil seeds "
        "nil i 0)"
        "(repeat (sslength lots) (setq all (cons (points (ssname lots i)) all) i (1+ i))) (setq i 0)"
        "(repeat (sslength texts) (setq seeds (cons (cdr (assoc 10 (entget (ssname texts i)))) seeds) i (1+ "
        "i)))");
    run("(setq last (entlast))");
    EXPECT_EQ(run("(apply 'cf:scbpoly (cons 1 (cons lots seeds)))"), "59");
    EXPECT_EQ(run("(setq same 0 e last) (while (setq e (entnext e)) (if (member (points e) all) (setq same "
                  "(1+ same)))) same"),
              "59");
}
