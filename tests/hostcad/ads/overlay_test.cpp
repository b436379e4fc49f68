// Labels and colours as a program gives them to a host without a window, and where labels may stand.
#include "platform/ads/overlay.h"

#include <random>

#include "hostcad/drawing/host_names.h"
#include "hostcad/geometry/crossing.h"
#include "tests/hostcad/host_fixture.h"

using namespace hostcad;

namespace {

class Overlay : public HostTest {
  protected:
    overlay::EntityName make(const std::string& groups) {
        EXPECT_NE(run("(entmake '(" + groups + "))"), "nil") << groups;
        return last();
    }
    overlay::EntityName last() {
        overlay::EntityName name{};
        nameOf(currentDrawing().lastEntity(), name.data());
        return name;
    }
    overlay::EntityName polyline(const std::vector<Point>& corners, bool isClosed,
                                 const std::vector<double>& bulges = {}) {
        std::string groups = "(0 . \"LWPOLYLINE\") (100 . \"AcDbEntity\") (100 . \"AcDbPolyline\") (90 . " +
                             std::to_string(corners.size()) + ") (70 . " + (isClosed ? "1)" : "0)");
        for (size_t i = 0; i < corners.size(); ++i) {
            groups += " (10 " + std::to_string(corners[i].x) + " " + std::to_string(corners[i].y) + ")";
            if (i < bulges.size()) groups += " (42 . " + std::to_string(bulges[i]) + ")";
        }
        return make(groups);
    }
    overlay::LabelSpot spot(const overlay::EntityName& entity) {
        overlay::LabelSpot found;
        EXPECT_TRUE(overlay::spotOf(entity, found));
        return found;
    }
};

}  // namespace

TEST_F(Overlay, SetsAreKeptReplacedAndGoWithTheDrawing) {
    const overlay::EntityName point = make("(0 . \"POINT\") (10 1.0 2.0 0.0)");
    overlay::LabelSet labels;
    labels.labels = {{point, "one"}};
    overlay::setLabels("B", labels);
    labels.labels.push_back({point, "two"});
    overlay::setLabels("A", labels);
    overlay::setColours("C", {{{point, 0x123456}}, {"Title", {{0x123456, "row", 7}}}});
    EXPECT_EQ(overlay::labelSets(), (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(overlay::colourSets(), (std::vector<std::string>{"C"}));
    ASSERT_NE(overlay::labels("B"), nullptr);
    EXPECT_EQ(overlay::labels("B")->labels[0].text, "one");
    EXPECT_EQ(overlay::labels("A")->labels.size(), 2u);
    EXPECT_EQ(overlay::colours("C")->colours[0].colour, 0x123456u);
    EXPECT_EQ(overlay::colours("C")->legend.rows[0].count, 7u);
    EXPECT_EQ(overlay::labels("C"), nullptr);
    labels.labels.resize(1);
    overlay::setLabels("A", labels);
    EXPECT_EQ(overlay::labels("A")->labels.size(), 1u);
    overlay::setLabels("A", {});
    EXPECT_EQ(overlay::labels("A"), nullptr);
    EXPECT_EQ(overlay::labelCounts().placed, 0u);
    EXPECT_EQ(host_.newDrawing(), "");
    EXPECT_TRUE(overlay::labelSets().empty());
    EXPECT_EQ(overlay::colours("C"), nullptr);
}

TEST_F(Overlay, TheSpotOfAnAreaIsInsideOfIt) {
    // A star has corners that go far inwards, a U has its centre outside, and a comb is thin everywhere.
    std::mt19937 random(17);
    std::vector<std::vector<Point>> shapes{
        {{0, 0, 0}, {30, 0, 0}, {30, 30, 0}, {20, 30, 0}, {20, 10, 0}, {10, 10, 0}, {10, 30, 0}, {0, 30, 0}},
        {{0, 0, 0}, {100, 0, 0}, {100, 1, 0}, {1, 1, 0}, {1, 100, 0}, {0, 100, 0}}};
    for (int i = 0; i < 200; ++i) {
        std::vector<Point> star;
        const int corners = 3 + int(random() % 20);
        for (int k = 0; k < corners; ++k) {
            const double angle = k * 2 * M_PI / corners, reach = 1 + double(random() % 1000) / 10;
            star.push_back({1e6 + reach * std::cos(angle), 5e5 + reach * std::sin(angle), 0});
        }
        shapes.push_back(star);
    }
    for (const std::vector<Point>& shape : shapes) {
        const overlay::LabelSpot found = spot(polyline(shape, true));
        EXPECT_EQ(found.placement, overlay::Placement::Inside);
        ASSERT_TRUE(containsPoint(shape, {found.x, found.y, 0})) << found.x << " " << found.y;
        EXPECT_EQ(found.angle, 0);
    }
    // In the middle of what has one.
    const overlay::LabelSpot square = spot(polyline({{0, 0, 0}, {8, 0, 0}, {8, 4, 0}, {0, 4, 0}}, true));
    EXPECT_NEAR(square.x, 4, 1e-9);
    EXPECT_NEAR(square.y, 2, 1e-9);
    const overlay::LabelSpot circle = spot(make("(0 . \"CIRCLE\") (10 7.0 9.0 0.0) (40 . 3.0)"));
    EXPECT_EQ(circle.placement, overlay::Placement::Inside);
    EXPECT_NEAR(circle.x, 7, 0.01);
    EXPECT_NEAR(circle.y, 9, 0.01);
    // Where it is wide and high: in the stem of an L with a flat bar, and not near the corners of a triangle.
    const overlay::LabelSpot stem =
        spot(polyline({{0, 0, 0}, {3, 0, 0}, {3, 9.3, 0}, {20, 9.3, 0}, {20, 10, 0}, {0, 10, 0}}, true));
    EXPECT_NEAR(stem.x, 1.5, 1e-9);
    EXPECT_NEAR(stem.y, 5, 1e-9);
    const overlay::LabelSpot flat = spot(polyline({{0, 0, 0}, {10, 0, 0}, {0, 10, 0}}, true));
    EXPECT_GT(std::min({flat.x, flat.y, (10 - flat.x - flat.y) / std::sqrt(2)}), 2);
    // A polyline that comes back to where it began, and one whose sides are half circles: a moon whose inside
    // is on one side of its corners.
    EXPECT_EQ(spot(polyline({{0, 0, 0}, {9, 0, 0}, {9, 9, 0}, {0, 0, 0}}, false)).placement,
              overlay::Placement::Inside);
    const overlay::LabelSpot moon = spot(polyline({{0, -10, 0}, {0, 10, 0}}, true, {1, -0.6}));
    EXPECT_GT(moon.x, 0);
}

TEST_F(Overlay, TheSpotOfALineIsItsMiddleAndCanBeRead) {
    struct Case {
        double x, y, degrees;
    };
    for (auto [x, y, degrees] : {Case{10, 0, 0},
                                 {-10, 0, 0},
                                 {0, 10, 90},
                                 {0, -10, 90},
                                 {10, 10, 45},
                                 {-10, -10, 45},
                                 {-10, 10, -45},
                                 {10, -10, -45}}) {
        const overlay::LabelSpot found = spot(make("(0 . \"LINE\") (10 0.0 0.0 0.0) (11 " +
                                                   std::to_string(x) + " " + std::to_string(y) + " 0.0)"));
        EXPECT_EQ(found.placement, overlay::Placement::Along);
        EXPECT_NEAR(found.x, x / 2, 1e-9);
        EXPECT_NEAR(found.y, y / 2, 1e-9);
        EXPECT_NEAR(found.angle * 180 / M_PI, degrees, 1e-4) << x << " " << y;
    }
    // Half of the length, not of the corners.
    const overlay::LabelSpot bent = spot(polyline({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {2, 10, 0}}, false));
    EXPECT_NEAR(bent.x, 2, 1e-9);
    EXPECT_NEAR(bent.y, 4, 1e-9);
    // On the arc of one that begins with it, drawn clockwise.
    const overlay::LabelSpot arc = spot(polyline({{0, 0, 0}, {20, 0, 0}, {22, 0, 0}}, false, {-1}));
    EXPECT_NEAR(std::hypot(arc.x - 10, arc.y), 10, 0.1);
    EXPECT_GT(arc.y, 9);
    // In the plane of the entity.
    const overlay::LabelSpot turned = spot(make(
        "(0 . \"LWPOLYLINE\") (100 . \"AcDbEntity\") (100 . \"AcDbPolyline\") (90 . 2) (70 . 0) (10 2.0 3.0) "
        "(10 4.0 3.0) (210 0.0 0.0 -1.0)"));
    EXPECT_NEAR(turned.x, -3, 1e-9);
    EXPECT_NEAR(turned.y, 3, 1e-9);
}

TEST_F(Overlay, EverythingElseIsLabelledBesideItsBox) {
    const overlay::LabelSpot point = spot(make("(0 . \"POINT\") (10 3.0 4.0 0.0)"));
    EXPECT_EQ(point.placement, overlay::Placement::Beside);
    EXPECT_EQ(point.x, 3);
    EXPECT_EQ(point.y, 4);
    overlay::LabelSpot none;
    EXPECT_FALSE(overlay::spotOf(
        make(
            "(0 . \"XLINE\") (100 . \"AcDbEntity\") (100 . \"AcDbXline\") (10 0.0 0.0 0.0) (11 1.0 0.0 0.0)"),
        none));
    EXPECT_FALSE(overlay::spotOf({}, none));
    const overlay::EntityName gone = make("(0 . \"POINT\") (10 3.0 4.0 0.0)");
    run("(entdel (entlast))");
    EXPECT_FALSE(overlay::spotOf(gone, none));
    // What encloses nothing, has no length, or no numbers.
    EXPECT_TRUE(overlay::spotOf(polyline({{1, 1, 0}, {1, 1, 0}, {1, 1, 0}}, true), none));
    EXPECT_TRUE(overlay::spotOf(make("(0 . \"LINE\") (10 1.0 1.0 0.0) (11 1.0 1.0 0.0)"), none));
    Drawing& drawing = currentDrawing();
    const ObjectId square = idOf(polyline({{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 4, 0}}, true).data());
    for (double bad : {double(NAN), double(INFINITY), 1e300}) {
        const Groups old = drawing.groups(square);
        std::vector<Group> groups(old.begin(), old.end());
        for (Group& group : groups)
            if (group.code == 10) {
                group = drawing.arena().point(10, bad, 1);
                break;
            }
        drawing.setGroups(square, groups);
        overlay::spotOf(last(), none);
    }
}
