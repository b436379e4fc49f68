// The polygon round a point, as Lisp gets it.
#include "tests/module/module_fixture.h"

namespace {

class Polygons : public ModuleTest {
  protected:
    // A light polyline under a name in Lisp.
    void makePolyline(const std::string& name, const std::string& points, int closed = 1,
                      const std::string& more = "") {
        const std::string made =
            lisp("(setq " + name + " (entmakex (append '((0 . \"LWPOLYLINE\") (100 . \"AcDbEntity\") " +
                 more + " (100 . \"AcDbPolyline\") (90 . 4) (70 . " + std::to_string(closed) +
                 ")) (mapcar '(lambda (p) (cons 10 p)) '(" + points + ")))))");
        ASSERT_EQ(made.substr(0, 7), "<Entity") << made;
    }
    // The name of the polyline that is found, "nil" or "error".
    std::string found(const std::string& point) {
        return lisp("(setq got (cf:gis_smart_prompting 13 '" + point +
                    ")) (cond ((not got) nil) ((equal got outer) 'outer) ((equal got inner) 'inner) "
                    "((equal got open) 'open) (t 'error))");
    }
};

constexpr const char* kSquare = "(0.0 0.0) (100.0 0.0) (100.0 100.0) (0.0 100.0)";

}  // namespace

TEST_F(Polygons, OneRoundThePointIsFound) {
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 13)"), "0");
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 13 \"here\")"), "0");
    EXPECT_EQ(found("(50.0 50.0)"), "nil");
    makePolyline("outer", kSquare);
    EXPECT_EQ(found("(50.0 50.0)"), "OUTER");
    EXPECT_EQ(found("(50.0 50.0 7.0)"), "OUTER");
    EXPECT_EQ(found("(500.0 50.0)"), "nil");
    // An open one counts when its ends meet.
    makePolyline("open", "(200.0 0.0) (300.0 0.0) (300.0 100.0) (200.0 100.0)", 0);
    EXPECT_EQ(found("(250.0 50.0)"), "nil");
    makePolyline("open", "(200.0 0.0) (300.0 0.0) (300.0 100.0) (200.0 0.00000005)", 0);
    EXPECT_EQ(found("(290.0 50.0)"), "OPEN");
}

TEST_F(Polygons, WhatCannotBeSeenAndWhatIsInSpaceIsPassedOver) {
    makePolyline("outer", kSquare, 1, "(8 . \"HIDDEN\")");
    EXPECT_EQ(found("(50.0 50.0)"), "OUTER");
    lisp(
        "(setq layer (tblobjname \"LAYER\" \"HIDDEN\") data (entget layer)) "
        "(entmod (subst '(70 . 5) (assoc 70 data) data))");
    EXPECT_EQ(found("(50.0 50.0)"), "nil");
    lisp("(entmake '((0 . \"POLYLINE\") (66 . 1) (70 . 9)))");
    for (const char* at : {"0.0 0.0 1.0", "100.0 0.0 2.0", "100.0 100.0 3.0", "0.0 100.0 4.0"})
        lisp(std::string("(entmake '((0 . \"VERTEX\") (10 ") + at + ") (70 . 32)))");
    lisp("(entmake '((0 . \"SEQEND\")))");
    EXPECT_EQ(found("(50.0 50.0)"), "nil");
}

TEST_F(Polygons, OfSeveralThePersonTakesOne) {
    makePolyline("outer", kSquare);
    makePolyline("inner", "(20.0 20.0) (80.0 20.0) (80.0 80.0) (20.0 80.0)");
    inputs_ = {""};
    EXPECT_EQ(found("(50.0 50.0)"), "OUTER");
    EXPECT_NE(printed().find("Press N for next selection or Enter to accept current: "), std::string::npos);
    inputs_ = {"N", ""};
    EXPECT_EQ(found("(50.0 50.0)"), "INNER");
    inputs_ = {"n", "anything", "N", ""};
    EXPECT_EQ(found("(50.0 50.0)"), "INNER");
    // Nobody answers: none is taken.
    EXPECT_EQ(found("(50.0 50.0)"), "nil");
    // The aperture adds those that it touches, closed or not, and tells no one of them twice.
    makePolyline("open", "(50.0 -50.0) (50.0 10.0)", 0);
    inputs_ = {"N", ""};
    EXPECT_EQ(found("(50.0 10.0)"), "OPEN");
    inputs_ = {"N", "N", ""};
    EXPECT_EQ(found("(50.0 10.0)"), "OUTER");
}

TEST_F(Polygons, TheCommandSaysWhatItFound) {
    ASSERT_EQ(lisp("(load \"gis.lsp\") t").substr(0, 5), "T");
    makePolyline("outer", kSquare);
    printed();
    inputs_ = {"50,50"};
    lisp("(c:gis-polygon)");
    EXPECT_NE(printed().find("LWPOLYLINE "), std::string::npos);
    inputs_ = {"500,50"};
    lisp("(c:gis-polygon)");
    EXPECT_NE(printed().find("Using this point cannot find any polygon!"), std::string::npos);
}
