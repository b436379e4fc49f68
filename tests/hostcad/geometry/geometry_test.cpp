// Boxes, areas and crossings of entities, against figures worked out by hand.
#include <gtest/gtest.h>

#include <numbers>

#include "hostcad/drawing/entity_builder.h"
#include "hostcad/dxf/blank_drawing.h"
#include "hostcad/dxf/dxf.h"
#include "hostcad/geometry/crossing.h"

using namespace hostcad;

namespace {

class Geometry : public testing::Test {
  protected:
    std::unique_ptr<Drawing> drawing_ = blankDrawing();
    GroupArena& arena_ = drawing_->arena();

    // Adds an entity to model space or a block.
    ObjectId add(std::vector<Group> given, ObjectId block = 0) {
        if (!block) block = drawing_->modelSpace();
        std::vector<Group> built;
        EXPECT_TRUE(buildEntity(*drawing_, block, given, built));
        return drawing_->appendEntity(block, built);
    }
    Group type(const char* name) { return arena_.text(0, name); }
    Group at(int code, double x, double y, double z = 0) { return arena_.point(code, x, y, z); }

    Shape shape(ObjectId id) {
        Shape s;
        shapeOf(*drawing_, id, s);
        return s;
    }
    void expectBox(ObjectId id, double minX, double minY, double maxX, double maxY, double slack = 1e-9) {
        Box box = extentsOf(*drawing_, id);
        EXPECT_NEAR(box.minX, minX, slack);
        EXPECT_NEAR(box.minY, minY, slack);
        EXPECT_NEAR(box.maxX, maxX, slack);
        EXPECT_NEAR(box.maxY, maxY, slack);
    }
    // How a box of two corners meets an entity: w inside, c crossing, - neither.
    char window(ObjectId id, double x1, double y1, double x2, double y2) {
        std::vector<Point> box{{x1, y1}, {x2, y1}, {x2, y2}, {x1, y2}};
        return isInsidePolygon(shape(id), box) ? 'w' : touchesPolygon(shape(id), box) ? 'c' : '-';
    }
    bool fence(ObjectId id, std::vector<Point> points) { return crossesFence(shape(id), points); }
};

}  // namespace

TEST_F(Geometry, BoxesOfLinesAndArcsAreExact) {
    expectBox(add({type("LINE"), at(10, 3, 1), at(11, -2, 5)}), -2, 1, 3, 5);
    expectBox(add({type("CIRCLE"), at(10, 10, 10), realGroup(40, 2)}), 8, 8, 12, 12);
    // From 45 to 135 degrees: over the top, but not as wide as the circle.
    double half = std::sqrt(0.5);
    expectBox(add({type("ARC"), at(10, 0, 0), realGroup(40, 1), realGroup(50, 45), realGroup(51, 135)}),
              -half, half, half, 1);
    // Over the zero direction.
    expectBox(add({type("ARC"), at(10, 0, 0), realGroup(40, 1), realGroup(50, 315), realGroup(51, 45)}), half,
              -half, 1, half);
    // A half circle as a bulge lies right of its chord.
    expectBox(add({type("LWPOLYLINE"), at(10, 0, 0), realGroup(42, 1), at(10, 0, 2)}), 0, 0, 1, 2);
    expectBox(add({type("LWPOLYLINE"), at(10, 0, 0), realGroup(42, -1), at(10, 0, 2)}), -1, 0, 0, 2);
}

TEST_F(Geometry, ExtrusionsMirrorAndTilt) {
    expectBox(add({type("CIRCLE"), at(10, 5, 3), realGroup(40, 1), at(210, 0, 0, -1)}), -6, 2, -4, 4);
    expectBox(add({type("ARC"), at(10, 0, 0), realGroup(40, 1), realGroup(50, 0), realGroup(51, 90),
                   at(210, 0, 0, -1)}),
              -1, 0, 0, 1);
    // Seen from the side a circle is a line.
    Box side =
        extentsOf(*drawing_, add({type("CIRCLE"), at(10, 0, 0, 7), realGroup(40, 2), at(210, 1, 0, 0)}));
    EXPECT_NEAR(side.minX, 7, 1e-9);
    EXPECT_NEAR(side.maxX, 7, 1e-9);
    EXPECT_NEAR(side.minY, -2, 1e-9);
    EXPECT_NEAR(side.maxZ, 2, 1e-9);
}

TEST_F(Geometry, OtherCurvesAreChords) {
    ObjectId ellipse = add({type("ELLIPSE"), at(10, 1, 1), at(11, 4, 0), realGroup(40, 0.5)});
    expectBox(ellipse, -3, -1, 5, 3, 0.01);
    // A straight line as a spline, and a quarter of a circle as a rational one.
    auto spline = [&](std::vector<Point> control, std::vector<double> knots, std::vector<double> weights) {
        std::vector<Group> given{type("SPLINE"), integerGroup(70, 8),
                                 integerGroup(71, static_cast<int64_t>(control.size()) - 1)};
        for (double knot : knots) given.push_back(realGroup(40, knot));
        for (double weight : weights) given.push_back(realGroup(41, weight));
        for (Point p : control) given.push_back(at(10, p.x, p.y));
        return add(given);
    };
    expectBox(spline({{0, 0}, {5, 1}, {10, 2}}, {0, 0, 0, 1, 1, 1}, {}), 0, 0, 10, 2);
    ObjectId quarter = spline({{1, 0}, {1, 1}, {0, 1}}, {0, 0, 0, 1, 1, 1}, {1, std::sqrt(0.5), 1});
    expectBox(quarter, 0, 0, 1, 1);
    for (const Segment& s : shape(quarter).segments) EXPECT_NEAR(std::hypot(s.to.x, s.to.y), 1, 1e-12);
    // Knots that make no sense: the control points serve.
    expectBox(spline({{0, 0}, {5, 9}, {10, 0}}, {3, 2, 1}, {}), 0, 0, 10, 9);
}

TEST_F(Geometry, HatchesShowTheirBoundaries) {
    auto hatch = [&](std::vector<Group> path) {
        std::vector<Group> given{type("HATCH"), at(10, 0, 0), arena_.text(2, "SOLID"), integerGroup(91, 1)};
        given.insert(given.end(), path.begin(), path.end());
        given.push_back(integerGroup(75, 0));
        given.push_back(at(10, 99, 99));  // a seed point is no boundary
        return add(given);
    };
    auto flat = [&](int code, double x, double y) { return arena_.point(code, x, y); };
    expectBox(hatch({integerGroup(92, 2), integerGroup(93, 2), flat(10, 0, 0), realGroup(42, 1),
                     flat(10, 2, 0), realGroup(42, 1)}),
              0, -1, 2, 1);
    // A line, and a clockwise quarter of a circle from the top to the right, with mirrored angles.
    ObjectId edges = hatch({integerGroup(92, 1), integerGroup(93, 2), integerGroup(72, 1), flat(10, 1, 0),
                            flat(11, 0, 1), integerGroup(72, 2), flat(10, 0, 0), realGroup(40, 1),
                            realGroup(50, 270), realGroup(51, 360), integerGroup(73, 0)});
    expectBox(edges, 0, 0, 1, 1);
    ASSERT_EQ(shape(edges).arcs.size(), 1u);
    EXPECT_TRUE(shape(edges).arcs[0].covers(std::numbers::pi / 4));
}

TEST_F(Geometry, ReferencesShowTheirBlocksTurnedScaledAndNested) {
    ObjectId inner = addBlock(*drawing_, "INNER", 0, 1, 1, 0);
    add({type("LINE"), at(10, 1, 1), at(11, 2, 1)}, inner);
    add({type("CIRCLE"), at(10, 1, 1), realGroup(40, 0.5)}, inner);
    ObjectId outer = addBlock(*drawing_, "OUTER", 0, 0, 0, 0);
    add({type("INSERT"), arena_.text(2, "INNER"), at(10, 10, 0), realGroup(50, 90)}, outer);
    ObjectId reference = add({type("INSERT"), arena_.text(2, "OUTER"), at(10, 100, 100), realGroup(41, 2),
                              realGroup(42, 2), realGroup(50, 90)});
    // The line of length 1 points up in the outer block, at (10,0); twice as large and turned it points left
    // from (100,120).
    expectBox(reference, 98, 119, 101, 121);
    EXPECT_EQ(shape(reference).arcs.size(), 1u) << "evenly scaled, circles stay circles";
    ObjectId rows = add({type("INSERT"), arena_.text(2, "INNER"), at(10, 0, 0), integerGroup(70, 3),
                         integerGroup(71, 2), realGroup(44, 10), realGroup(45, 5)});
    expectBox(rows, -0.5, -0.5, 21, 5.5);
    // Unevenly scaled, they become chords.
    ObjectId wide = add({type("INSERT"), arena_.text(2, "INNER"), at(10, 0, 0), realGroup(41, 4)});
    expectBox(wide, -2, -0.5, 4, 0.5, 0.01);
}

TEST_F(Geometry, BlocksThatContainThemselvesEnd) {
    ObjectId a = addBlock(*drawing_, "A", 0, 0, 0, 0);
    ObjectId b = addBlock(*drawing_, "B", 0, 0, 0, 0);
    add({type("POINT"), at(10, 1, 0)}, a);
    for (int i = 0; i < 10; ++i) {
        add({type("INSERT"), arena_.text(2, "B"), at(10, 1, 0)}, a);
        add({type("INSERT"), arena_.text(2, "A"), at(10, 1, 0)}, b);
    }
    ObjectId bomb = add({type("INSERT"), arena_.text(2, "A"), at(10, 0, 0), integerGroup(70, 32000),
                         integerGroup(71, 32000)});
    EXPECT_FALSE(extentsOf(*drawing_, bomb).empty());
}

TEST_F(Geometry, TextsAreBoxesAtTheirAlignment) {
    auto text = [&](std::vector<Group> more) {
        std::vector<Group> given{type("TEXT"), at(10, 0, 0), realGroup(40, 10), arena_.text(1, "ABCD")};
        given.insert(given.end(), more.begin(), more.end());
        return add(given);
    };
    expectBox(text({}), 0, 0, 36, 10);
    expectBox(text({realGroup(50, 90)}), -10, 0, 0, 36);
    expectBox(text({integerGroup(72, 1), integerGroup(73, 2), at(11, 100, 50)}), 82, 45, 118, 55);
    expectBox(text({integerGroup(72, 2), integerGroup(73, 3), at(11, 100, 50)}), 64, 40, 100, 50);
    expectBox(text({integerGroup(72, 5), at(11, 80, 0)}), 0, 0, 80, 10);
    // An attribute that is not seen is nowhere.
    for (int flags : {0, 1}) {
        ObjectId insert =
            add({type("INSERT"), integerGroup(66, 1), arena_.text(2, "*Model_Space"), at(10, 0, 0)});
        std::vector<Group> attribute{type("ATTRIB"),       at(10, 0, 0),          realGroup(40, 10),
                                     arena_.text(1, "AB"), arena_.text(2, "PT#"), integerGroup(70, flags)};
        EXPECT_EQ(shape(drawing_->appendSubentity(insert, attribute)).empty(), flags == 1);
        drawing_->setErased(insert, true);
    }
    // A paragraph of two lines, centred at its top.
    Box paragraph = extentsOf(*drawing_, add({type("MTEXT"), at(10, 0, 0), realGroup(40, 3), realGroup(41, 0),
                                              integerGroup(71, 2), arena_.text(1, "AB\\PABCD")}));
    EXPECT_NEAR(paragraph.minX, -paragraph.maxX, 1e-9);
    EXPECT_NEAR(paragraph.maxY, 0, 1e-9);
    EXPECT_NEAR(paragraph.minY, -8, 1e-9);
}

TEST_F(Geometry, WindowsHoldOrCross) {
    ObjectId line = add({type("LINE"), at(10, 0, 0), at(11, 10, 10)});
    EXPECT_EQ(window(line, -1, -1, 11, 11), 'w');
    EXPECT_EQ(window(line, 0, 0, 10, 10), 'w') << "the edge belongs to it";
    EXPECT_EQ(window(line, 11, 11, -1, -1), 'w') << "corners in any order";
    EXPECT_EQ(window(line, 4, 4, 6, 6), 'c');
    EXPECT_EQ(window(line, 5, 0, 9, 4), '-') << "in the line's box, but not on it";
    ObjectId circle = add({type("CIRCLE"), at(10, 0, 0), realGroup(40, 5)});
    EXPECT_EQ(window(circle, -1, -1, 1, 1), '-') << "inside the circle, but not on it";
    EXPECT_EQ(window(circle, 3, 3, 6, 6), 'c');
    EXPECT_EQ(window(circle, 3.6, 3.6, 6, 6), '-') << "between the circle and its box";
    EXPECT_EQ(window(circle, -5, -5, 5, 5), 'w');
    ObjectId arc = add({type("ARC"), at(10, 0, 0), realGroup(40, 5), realGroup(50, 0), realGroup(51, 90)});
    EXPECT_EQ(window(arc, -6, -6, -3, -3), '-');
    EXPECT_EQ(window(arc, 3, 3, 6, 6), 'c');
    ObjectId point = add({type("POINT"), at(10, 1, 1)});
    EXPECT_EQ(window(point, 0, 0, 1, 1), 'w');
    ObjectId solid = add({type("SOLID"), at(10, 0, 0), at(11, 10, 0), at(12, 0, 10), at(13, 10, 10)});
    EXPECT_EQ(window(solid, 4, 4, 5, 5), 'c') << "filled";
    ObjectId xline = add({type("XLINE"), at(10, 0, 100), at(11, 1, 0)});
    EXPECT_EQ(window(xline, 5000, 99, 5001, 101), 'c');
    EXPECT_EQ(window(xline, -1e12, -1e12, 1e12, 1e12), 'c') << "never inside";
    EXPECT_TRUE(extentsOf(*drawing_, xline).empty());
}

TEST_F(Geometry, PolygonsMayBeHollow) {
    // A U: what lies across its opening is not inside.
    const std::vector<Point> u{{0, 0}, {10, 0}, {10, 10}, {8, 10}, {8, 2}, {2, 2}, {2, 10}, {0, 10}};
    ObjectId across = add({type("LINE"), at(10, 1, 9), at(11, 9, 9)});
    ObjectId below = add({type("LINE"), at(10, 1, 1), at(11, 9, 1)});
    ObjectId within = add({type("LINE"), at(10, 3, 9), at(11, 7, 9)});
    EXPECT_FALSE(isInsidePolygon(shape(across), u));
    EXPECT_TRUE(touchesPolygon(shape(across), u));
    EXPECT_TRUE(isInsidePolygon(shape(below), u));
    EXPECT_FALSE(touchesPolygon(shape(within), u));
    EXPECT_TRUE(containsPoint(u, {1, 9}));
    EXPECT_FALSE(containsPoint(u, {5, 9}));
    EXPECT_TRUE(containsPoint(u, {10, 5})) << "on the edge";
    EXPECT_FALSE(containsPoint(u, {11, 10})) << "at the height of a corner";
}

TEST_F(Geometry, FencesFindWhatTheyCross) {
    // At survey coordinates, with a fence far longer than the drawing.
    const double x = 1630700, y = 480500;
    ObjectId lot = add({type("LWPOLYLINE"), integerGroup(70, 1), at(10, x, y), at(10, x + 80, y),
                        realGroup(42, 0.5), at(10, x + 80, y + 60), at(10, x, y + 60)});
    auto across = [&](double height) { return fence(lot, {{-98765432.1, height}, {98765432.1, height}}); };
    EXPECT_TRUE(across(y + 30));
    EXPECT_TRUE(across(y)) << "along an edge";
    EXPECT_TRUE(across(y + 60));
    EXPECT_FALSE(across(y - 0.001));
    EXPECT_FALSE(across(y + 60.001));
    // A tangent of 0.5 makes the arc 15 high over its chord of 60.
    EXPECT_TRUE(fence(lot, {{x + 94.999, y}, {x + 94.999, y + 60}}));
    EXPECT_FALSE(fence(lot, {{x + 95.001, y}, {x + 95.001, y + 60}}));
    EXPECT_FALSE(fence(lot, {{x + 10, y + 10}, {x + 20, y + 20}})) << "inside, but across nothing";
    EXPECT_TRUE(fence(lot, {{x + 10, y + 10}, {x + 20, y + 20}, {x - 20, y + 20}})) << "the second part";
    ObjectId circle = add({type("CIRCLE"), at(10, x, y), realGroup(40, 2)});
    EXPECT_TRUE(fence(circle, {{x + 1, y}, {x + 3, y}}));
    EXPECT_FALSE(fence(circle, {{x - 1, y}, {x + 1, y}}));
}

TEST_F(Geometry, AreasCountTheArcs) {
    ObjectId square = add({type("LWPOLYLINE"), integerGroup(70, 1), at(10, 0, 0), at(10, 10, 0),
                           at(10, 10, 10), at(10, 0, 10)});
    EXPECT_NEAR(enclosedArea(*drawing_, square), 100, 1e-9);
    ObjectId disk = add({type("LWPOLYLINE"), integerGroup(70, 1), at(10, 0, 0), realGroup(42, 1),
                         at(10, 2, 0), realGroup(42, 1)});
    EXPECT_NEAR(enclosedArea(*drawing_, disk), std::numbers::pi, 1e-9);
    // A bite out of the square: clockwise arcs take away.
    ObjectId bitten = add({type("LWPOLYLINE"), integerGroup(70, 1), at(10, 0, 0), realGroup(42, -1),
                           at(10, 10, 0), at(10, 10, 10), at(10, 0, 10)});
    EXPECT_NEAR(enclosedArea(*drawing_, bitten), 100 - 12.5 * std::numbers::pi, 1e-9);
    EXPECT_NEAR(enclosedArea(*drawing_, add({type("CIRCLE"), at(10, 0, 0), realGroup(40, 2)})),
                4 * std::numbers::pi, 1e-9);
    EXPECT_EQ(enclosedArea(*drawing_, add({type("LINE"), at(10, 0, 0), at(11, 1, 0)})), 0);
}

TEST_F(Geometry, TheExtentsOfTheSurveyAreThoseOfItsMaker) {
    std::string error;
    auto survey = readDxf(NORVANE_SHARED_DATA "/survey.dxf", error);
    if (!survey) GTEST_SKIP() << error;
    // The header's extents were rounded outward by the program that drew it; lots must lie within.
    Box box;
    for (ObjectId id = survey->firstEntity(); id; id = survey->nextEntity(id))
        if (textOf(survey->groups(id), 8) == "LOTS") box.add(extentsOf(*survey, id));
    EXPECT_GT(box.minX, 1630400);
    EXPECT_LT(box.maxX, 1632500);
    EXPECT_GT(box.minY, 480000);
    EXPECT_LT(box.maxY, 481300);
    // Every type of entity in it has a place.
    Shape s;
    for (ObjectId id = survey->firstEntity(); id; id = survey->nextEntity(id)) {
        shapeOf(*survey, id, s);
        EXPECT_FALSE(s.empty()) << survey->type(id);
    }
}
