// Arcs that become chords, and the thinning of what comes of it.
#include <gtest/gtest.h>

#include <cmath>

#include "module/geometry/chords.h"
#include "module/geometry/thinning.h"
#include "platform/plane/arc.h"

using namespace norvane;
using plane::PolylineVertex;
using Vertices = std::vector<PolylineVertex>;

namespace {

PolylineVertex at(double x, double y, double bulge = 0, double z = 0) {
    return {{x, y, z}, bulge};
}

Vertices halfCircle(double radius) {
    return {at(-radius, 0, 1), at(radius, 0)};
}

// The greatest distance between a circle round the origin and the middles of the sides.
double sagitta(const Vertices& vertices, double radius) {
    double greatest = 0;
    for (size_t i = 1; i < vertices.size(); ++i)
        greatest =
            std::max(greatest, std::abs(radius - plane::length((vertices[i] + vertices[i - 1]) * 0.5)));
    return greatest;
}

}  // namespace

TEST(ArcsToChords, AHalfCircleIsThinnedToTenVertices) {
    Vertices vertices = halfCircle(10);
    ArcsToChords(vertices, 0.1, PolylineKind::kOpen);
    EXPECT_EQ(vertices.size(), 10u);
    for (const PolylineVertex& vertex : vertices) {
        EXPECT_NEAR(plane::length(vertex), 10, 1e-9);
        EXPECT_LT(vertex.y, 1e-9);  // a bulge above 0 runs anticlockwise, below the line to the right
        EXPECT_EQ(vertex.bulge, 0);
    }
    // Hardly any vertex is spared by a cutoff that takes none.
    vertices = halfCircle(10);
    ArcsToChords(vertices, 0, PolylineKind::kOpen);
    EXPECT_EQ(vertices.size(), 292u);
}

TEST(ArcsToChords, FollowTheArcWhateverItsDirectionAndSize) {
    for (double bulge : {-1000.0, -3.0, -1.0, -0.2, 0.01, 0.5, 1.0, 2.0}) {
        Vertices vertices = {at(1000003, 500001, bulge, 10), at(1000007, 500004, 0, 20)};
        const plane::Arc arc = *plane::arcOf(vertices[0], vertices[1], bulge);
        ArcsToChords(vertices, 0, PolylineKind::kOpen);
        ASSERT_EQ(vertices.size(), 292u) << bulge;
        double length = 0;
        for (size_t i = 0; i < vertices.size(); ++i) {
            EXPECT_NEAR(plane::distance(arc.centre, vertices[i]), arc.radius, arc.radius * 1e-9);
            EXPECT_NEAR(vertices[i].z, 10 + 10.0 * static_cast<double>(i) / 291, 1e-6) << bulge;
            if (i > 0) length += plane::distance(vertices[i - 1], vertices[i]);
        }
        EXPECT_NEAR(length, arc.radius * arc.sweep, arc.radius * arc.sweep * 1e-3) << bulge;
        EXPECT_EQ(vertices.front().x, 1000003);
        EXPECT_EQ(vertices.back().x, 1000007);
    }
}

TEST(ArcsToChords, WithoutAnArcNothingIsTakenOut) {
    const Vertices straight = {at(0, 0), at(1, 0), at(2, 0), at(3, 0)};
    Vertices vertices = straight;
    ArcsToChords(vertices, 0.1, PolylineKind::kOpen);
    EXPECT_EQ(vertices.size(), 4u);
    // A bulge between equal points, or behind the last vertex, makes no arc.
    for (size_t i : {1u, 4u}) {
        vertices = {at(0, 0), at(1, 0), at(1, 0), at(2, 0), at(3, 0)};
        vertices[i].bulge = 0.5;
        ArcsToChords(vertices, 0.1, PolylineKind::kOpen);
        EXPECT_EQ(vertices.size(), 5u) << i;
        EXPECT_EQ(vertices[i].bulge, 0);
    }
    // One arc, and straight parts are thinned with it.
    vertices = straight;
    vertices.push_back(at(5, 0, 0));
    vertices[3].bulge = 1;
    ArcsToChords(vertices, 0.1, PolylineKind::kOpen);
    for (const PolylineVertex& vertex : vertices) EXPECT_NE(vertex.x, 1);
}

TEST(ArcsToChords, ASmallRingStaysARing) {
    Vertices manhole = {at(-0.3, 0, 1), at(0.3, 0, 1), at(-0.3, 0)};
    Vertices line = manhole;
    ArcsToChords(manhole, 0.1, PolylineKind::kRing);
    EXPECT_EQ(manhole.size(), 4u);
    ArcsToChords(line, 0.1, PolylineKind::kOpen);
    EXPECT_EQ(line.size(), 3u);
}

TEST(ArcsToChordsWithin, KeepTheirDeviationWithFewChords) {
    for (double deviation : {0.001, 0.1, 1.0}) {
        Vertices vertices = halfCircle(10);
        ArcsToChordsWithin(vertices, deviation);
        EXPECT_LE(sagitta(vertices, 10), deviation);
        EXPECT_GT(sagitta(vertices, 10), deviation / 3);
    }
    Vertices circle = {at(-0.3, 0, 1), at(0.3, 0, 1), at(-0.3, 0)};
    ArcsToChordsWithin(circle, 5);
    EXPECT_EQ(circle.size(), 5u);  // an area all the same
    Vertices straight = {at(0, 0), at(1, 0), at(2, 0, 1), at(4, 0)};
    ArcsToChordsWithin(straight, 0.5);
    EXPECT_EQ(straight[1].x, 1);
}

TEST(RemoveCollinearVertices, MeasureInSpaceFromTheUnboundedLine) {
    auto left = [](Vertices vertices, double cutoff) {
        RemoveCollinearVertices(vertices, cutoff);
        return vertices.size();
    };
    EXPECT_EQ(left({at(0, 0), at(1, 0.31), at(2, 0)}, 0.1), 2u);
    EXPECT_EQ(left({at(0, 0), at(1, 0.32), at(2, 0)}, 0.1), 3u);
    EXPECT_EQ(left({at(0, 0), at(1, 0, 0, 1), at(2, 0)}, 0.1), 3u);
    // A spike far beyond its neighbours lies on their line.
    EXPECT_EQ(left({at(0, 0), at(50, 0), at(1, 0)}, 0.1), 2u);
    // Neighbours at one place have no line.
    EXPECT_EQ(left({at(0, 0), at(0.1, 0), at(0, 0)}, 0.1), 3u);
    EXPECT_EQ(left({at(0, 0, 0.5), at(1, 0), at(2, 0), at(3, 0)}, 0.1), 3u);
    EXPECT_EQ(left({at(0, 0)}, 0.1), 1u);
    EXPECT_EQ(left({}, 0.1), 0u);
}
