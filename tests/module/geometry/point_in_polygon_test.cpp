#include "module/geometry/point_in_polygon.h"

#include <gtest/gtest.h>

using namespace norvane;
using Vertices = std::vector<plane::PolylineVertex>;

namespace {

Vertices polygon(std::initializer_list<std::pair<double, double>> corners) {
    Vertices vertices;
    for (auto [x, y] : corners) vertices.emplace_back(plane::Point{x, y, 0});
    return vertices;
}

}  // namespace

TEST(PointInPolygon, EdgesBelongToItOnAllSides) {
    const Vertices square = polygon({{0, 0}, {10, 0}, {10, 10}, {0, 10}});
    for (auto [x, y] : {std::pair{5.0, 5.0},
                        {5.0, 0.0},
                        {5.0, 10.0},
                        {0.0, 5.0},
                        {10.0, 5.0},
                        {10.0, 10.0},
                        {0.0, 10.0},
                        {5.0, 10 + 9e-7},
                        {-9e-7, 5.0}})
        EXPECT_TRUE(PointInPolygon({x, y, 0}, square)) << x << ", " << y;
    for (auto [x, y] : {std::pair{5.0, 10 + 2e-6}, {-2e-6, 5.0}, {10.5, 0.0}, {-1.0, 10.0}, {5.0, -1.0}})
        EXPECT_FALSE(PointInPolygon({x, y, 0}, square)) << x << ", " << y;
}

TEST(PointInPolygon, CornersAtTheHeightOfThePointCountOnce) {
    // Corners that point to the left and right, up and down, all at y = 5.
    const Vertices star = polygon({{0, 5}, {4, 6}, {6, 10}, {8, 6}, {12, 5}, {8, 4}, {6, 0}, {5, 5}, {4, 2}});
    EXPECT_TRUE(PointInPolygon({4, 5, 0}, star));
    EXPECT_TRUE(PointInPolygon({8, 5, 0}, star));
    EXPECT_FALSE(PointInPolygon({-1, 5, 0}, star));
    EXPECT_FALSE(PointInPolygon({13, 5, 0}, star));
    EXPECT_FALSE(PointInPolygon({4.9, 1, 0}, star));
}

TEST(PointInPolygon, ARingMayRepeatItsFirstVertexAndCrossItself) {
    const Vertices bow = polygon({{0, 0}, {10, 10}, {10, 0}, {0, 10}, {0, 0}});
    EXPECT_TRUE(PointInPolygon({1, 5, 0}, bow));
    EXPECT_TRUE(PointInPolygon({9, 5, 0}, bow));
    EXPECT_FALSE(PointInPolygon({5, 9, 0}, bow));
    EXPECT_FALSE(PointInPolygon({0, 0, 0}, {}));
    EXPECT_TRUE(PointInPolygon({1, 1, 0}, polygon({{1, 1}})));
}
