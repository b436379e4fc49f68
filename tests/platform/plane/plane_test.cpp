// Plain geometry: angles, boxes, arcs and bulges.
#include <gtest/gtest.h>

#include <numbers>
#include <stdexcept>

#include "platform/plane/arc.h"
#include "platform/scope/temporary_value.h"

using namespace plane;

namespace {

constexpr double kQuarter = std::numbers::pi / 2;

void expectAt(Point p, double x, double y) {
    EXPECT_NEAR(p.x, x, 1e-12);
    EXPECT_NEAR(p.y, y, 1e-12);
}

}  // namespace

TEST(Angles, AreCountedWithinATurn) {
    EXPECT_NEAR(withinTurn(-kQuarter), 3 * kQuarter, 1e-15);
    EXPECT_NEAR(withinTurn(9 * kQuarter), kQuarter, 1e-15);
    EXPECT_EQ(withinTurn(0), 0);
    EXPECT_NEAR(sweepBetween(3 * kQuarter, kQuarter), 2 * kQuarter, 1e-15);
    EXPECT_EQ(sweepBetween(1, 1), kFullTurn);
    EXPECT_NEAR(direction({1, 1}, {1, 5}), kQuarter, 1e-15);
    EXPECT_EQ(distance({1, 1, 9}, {4, 5, -9}), 5);
    expectAt(polar({1, 2}, 2 * kQuarter, 3), -2, 2);
}

TEST(Boxes, GrowByWhatIsAdded) {
    Box box;
    EXPECT_TRUE(box.empty());
    box.add(Box());
    EXPECT_TRUE(box.empty());
    box.add(Point{-3, 4, -1});
    EXPECT_FALSE(box.empty());
    EXPECT_EQ(box.width(), 0);
    box.add(Point{1, -2, 5});
    EXPECT_EQ(box.width(), 4);
    EXPECT_EQ(box.height(), 6);
    EXPECT_EQ(box.minZ, -1);
    EXPECT_EQ(box.maxZ, 5);
    expectAt(box.centre(), -1, 1);
    Box corner, inside, beside;
    corner.add(Point{1, 4}), corner.add(Point{9, 9});
    inside.add(Point{-3, -2}), inside.add(Point{0, 0});
    beside.add(Point{1.5, -2}), beside.add(Point{2, 4});
    EXPECT_TRUE(meet(box, corner));
    EXPECT_FALSE(meet(box, beside));
    EXPECT_FALSE(meet(corner, inside));
    EXPECT_TRUE(isWithin(inside, box));
    EXPECT_FALSE(isWithin(corner, box));
    EXPECT_FALSE(isWithin(box, inside));
}

// A bulge of 1 is a half circle to the right of its chord's direction, one of -1 to the left.
TEST(Arcs, StandForBulges) {
    auto right = arcOf({0, 0, 7}, {0, 2, 7}, 1);
    ASSERT_TRUE(right);
    expectAt(right->centre, 0, 1);
    EXPECT_EQ(right->centre.z, 7);
    EXPECT_NEAR(right->radius, 1, 1e-12);
    expectAt(right->first(), 0, 0);
    expectAt(right->at(0), 1, 1);
    expectAt(right->last(), 0, 2);
    auto left = arcOf({0, 0}, {0, 2}, -1);
    ASSERT_TRUE(left);
    expectAt(left->first(), 0, 2);  // the same way round
    expectAt(left->at(2 * kQuarter), -1, 1);

    EXPECT_NEAR(bulgeOf(sweepOf(0.3)), 0.3, 1e-15);
    auto quarter = arcOf({1, 0}, {0, 1}, bulgeOf(kQuarter));
    ASSERT_TRUE(quarter);
    expectAt(quarter->centre, 0, 0);
    EXPECT_NEAR(quarter->sweep, kQuarter, 1e-12);
    EXPECT_FALSE(arcOf({0, 0}, {5, 0}, 0));
    EXPECT_FALSE(arcOf({3, 3}, {3, 3}, 1));
    EXPECT_FALSE(arcOf({0, 0}, {5, 0}, INFINITY));
    EXPECT_FALSE(arcOf({0, 0}, {5, 0}, NAN));
}

TEST(Arcs, ReachAsFarAsTheyGo) {
    const Arc arc{{10, 20}, 5, 3.5 * kQuarter, 2 * kQuarter};  // from the lower right to the upper left
    EXPECT_TRUE(arc.covers(0));
    EXPECT_TRUE(arc.covers(-kFullTurn));
    EXPECT_TRUE(arc.covers(arc.start));
    EXPECT_TRUE(arc.covers(arc.start + arc.sweep));
    EXPECT_FALSE(arc.covers(2 * kQuarter));
    Box box;
    arc.addTo(box);
    const double half = 5 * std::sqrt(0.5);
    EXPECT_NEAR(box.minX, 10 - half, 1e-12);
    EXPECT_NEAR(box.minY, 20 - half, 1e-12);
    EXPECT_NEAR(box.maxX, 15, 1e-12);
    EXPECT_NEAR(box.maxY, 25, 1e-12);
}

TEST(TemporaryValue, EndsWithTheBlockHoweverThatIsLeft) {
    std::string word = "before";
    try {
        scope::TemporaryValue<std::string> within(word, "within");
        {
            scope::TemporaryValue<std::string> deeper(word, "deeper");
            EXPECT_EQ(word, "deeper");
        }
        EXPECT_EQ(word, "within");
        throw std::runtime_error("out");
    } catch (const std::runtime_error&) {
        EXPECT_EQ(word, "before");
    }
    EXPECT_EQ(word, "before");
}
