// Areas, directions and holes of rings.
#include <gtest/gtest.h>

#include <algorithm>

#include "module/geometry/nesting.h"
#include "module/geometry/rings.h"

using namespace norvane;

namespace {

Ring ringOf(std::initializer_list<std::pair<double, double>> points) {
    Ring ring;
    for (auto [x, y] : points) ring.emplace_back(plane::Point{x, y});
    return ring;
}

Ring square(double x, double y, double size) {
    return ringOf({{x, y}, {x, y + size}, {x + size, y + size}, {x + size, y}, {x, y}});
}

Ring turned(Ring ring) {
    std::reverse(ring.begin(), ring.end());
    return ring;
}

}  // namespace

TEST(PolygonArea, CountsEachSideOnce) {
    EXPECT_EQ(PolygonArea(square(0, 0, 3)), 9);
    EXPECT_EQ(PolygonArea(turned(square(0, 0, 3))), 9);
    EXPECT_EQ(PolygonArea(ringOf({{0, 0}, {4, 0}, {0, 3}})), 6);  // the last side need not be told
    EXPECT_EQ(PolygonArea({}), 0);
    EXPECT_NEAR(PolygonArea(square(1640211.37, 480113.91, 0.5)), 0.25, 1e-9);  // far from the origin
}

TEST(IsAnticlockwise, IsToldAtTheLowestVertex) {
    struct Case {
        const char* what;
        Ring ring;
        bool expected;
    };
    for (const Case& c : {
             Case{"square", turned(square(0, 0, 1)), true},
             Case{"level base that begins in the middle",
                  ringOf({{1, 0}, {2, 0}, {2, 2}, {0, 2}, {0, 0}, {1, 0}}), true},
             Case{"lowest vertex first and doubled", ringOf({{0, 0}, {0, 0}, {4, 1}, {2, 5}, {0, 0}}), true},
             Case{"lowest vertex last but one", ringOf({{3, 3}, {0, 3}, {1, 0}, {3, 3}}), true},
             Case{"a needle at the bottom, whose sides are as good as one",
                  ringOf({{0, 0}, {1e-7, 5}, {3, 5}, {-3, 6}, {0, 5}, {0, 0}}), true},
             Case{"concave below", ringOf({{0, 0}, {5, 4}, {10, 0}, {5, 9}, {0, 0}}), true},
         }) {
        EXPECT_EQ(IsAnticlockwise(c.ring), c.expected) << c.what;
        EXPECT_EQ(IsAnticlockwise(turned(c.ring)), !c.expected) << c.what;
    }
    // Without an area a ring has no direction.
    const Ring flat = ringOf({{0, 0}, {0, 5}, {0, 0}});
    EXPECT_FALSE(IsAnticlockwise(flat));
    EXPECT_FALSE(IsAnticlockwise(turned(flat)));
    EXPECT_FALSE(IsAnticlockwise({}));
}

TEST(EnclosingRings, AreTheSmallestOnesRound) {
    std::vector<Ring> rings = {
        square(20, 20, 10),         // 0, within 1
        square(0, 0, 100),          // 1
        turned(square(22, 22, 2)),  // 2, within 0
        square(100, 0, 50),         // 3, beside 1 with a common side
        square(90, 90, 30),         // 4, across 1 and 3
        ringOf({{200, 0}, {200, 30}, {210, 30}, {210, 10}, {230, 10}, {230, 0}, {200, 0}}),  // 5, an L
        square(210, 10, 20),                                  // 6, in its notch
        square(200, 0, 5),                                    // 7, in its corner, touching
        ringOf({{201, 20}, {201, 25}, {225, 5}, {201, 20}}),  // 8, across its notch
        square(0, 0, 100),                                    // 9, equal to 1
    };
    const std::vector<int> expected = {1, -1, 0, -1, -1, -1, -1, 5, -1, -1};
    std::vector<int> found = EnclosingRings(rings);
    // Both equal squares enclose the first as well as the other does.
    if (found[0] == 9) found[0] = 1;
    EXPECT_EQ(found, expected);
    EXPECT_TRUE(EnclosingRings({}).empty());
}
