// Areas of linework: drawings whose faces are known when they are made, and the cases that are hard.
#include "platform/plane/areas.h"

#include <gtest/gtest.h>

#include <map>
#include <numeric>
#include <random>
#include <tuple>

using namespace plane;

namespace {

using Polygon = std::vector<PolylineVertex>;

// Arcs count by their bows; anticlockwise is positive.
double areaOf(const Polygon& polygon) {
    double area = 0;
    for (size_t i = 0; i < polygon.size(); ++i) {
        const PolylineVertex& from = polygon[i];
        const Point a = from - polygon[0], b = polygon[(i + 1) % polygon.size()] - polygon[0];
        area += (a.x * b.y - a.y * b.x) / 2;
        const double half = 2 * std::atan(from.bulge), chord = distance(a, b);
        if (from.bulge == 0) continue;
        const double radius = chord / 2 / std::sin(half);
        area += radius * radius * (half - std::sin(half) * std::cos(half));
    }
    return area;
}

struct Linework {
    std::vector<Piece> pieces;
    std::vector<ClosedPolyline> closed;

    void line(Point from, Point to, double bulge = 0) { pieces.emplace_back(from, to, bulge); }
    void polyline(const Polygon& polygon) {
        closed.push_back({static_cast<uint32_t>(pieces.size()), static_cast<uint32_t>(polygon.size())});
        for (size_t i = 0; i < polygon.size(); ++i)
            line(polygon[i], polygon[(i + 1) % polygon.size()], polygon[i].bulge);
    }
    std::vector<Ring> rings() const {
        const std::optional<LineworkGraph> graph = graphOf(pieces);
        return graph ? smallestRings(pieces, *graph, closed) : std::vector<Ring>();
    }
};

std::vector<double> areasOf(const std::vector<Ring>& rings) {
    std::vector<double> areas;
    for (const Ring& ring : rings) areas.push_back(std::round(ring.area * 1000) / 1000);
    std::sort(areas.begin(), areas.end());
    return areas;
}

Polygon square(double x, double y, double size) {
    return {Point{x, y, 0}, Point{x + size, y, 0}, Point{x + size, y + size, 0}, Point{x, y + size, 0}};
}

Point middleOf(const Polygon& polygon) {
    Point sum;
    for (const Point& p : polygon) sum = sum + p;
    return sum * (1.0 / static_cast<double>(polygon.size()));
}

// The other way round, from another vertex.
Polygon turned(Polygon polygon, size_t start, bool isReversed) {
    std::rotate(polygon.begin(), polygon.begin() + static_cast<std::ptrdiff_t>(start % polygon.size()),
                polygon.end());
    if (!isReversed) return polygon;
    Polygon back;
    for (size_t i = polygon.size(); i-- > 0;)
        back.emplace_back(Point(polygon[i]), -polygon[(i + polygon.size() - 1) % polygon.size()].bulge);
    return back;
}

// A drawing and its faces. It stands where state planes have their coordinates.
class RandomDrawing {
  public:
    explicit RandomDrawing(unsigned seed) : random_(seed) {
        if (seed % 2 == 0)
            cutUp();
        else
            grid();
        draw();
        addIslands();
    }
    std::vector<Polygon> faces;
    Linework linework;

  private:
    double between(double low, double high) { return std::uniform_real_distribution<>(low, high)(random_); }
    size_t below(size_t count) { return std::uniform_int_distribution<size_t>(0, count - 1)(random_); }
    Point placed(double x, double y) const {
        return {2011373.25 + x * std::cos(0.7) - y * std::sin(0.7),
                702118.5 + x * std::sin(0.7) + y * std::cos(0.7), 0};
    }

    // Cuts convex faces in two, from a point of one side to a point of another. The faces beside them do not
    // get those points as corners.
    void cutUp() {
        faces = {{placed(0, 0), placed(400, 10), placed(420, 300), placed(-15, 280)}};
        for (size_t i = 0; i < 4; ++i) cuts_.push_back({faces[0][i], faces[0][(i + 1) % 4]});
        const size_t count = 2 + below(25);
        while (faces.size() < count) {
            Polygon& face = faces[below(faces.size())];
            const size_t n = face.size(), first = below(n), second = (first + 1 + below(n - 1)) % n;
            const size_t a = std::min(first, second), b = std::max(first, second);
            auto onSide = [&](size_t i) {
                return Point(face[i]) + (face[(i + 1) % n] - face[i]) * between(0.2, 0.8);
            };
            const Point p = onSide(a), q = onSide(b);
            Polygon one{p}, other{q};
            one.insert(one.end(), face.begin() + static_cast<std::ptrdiff_t>(a) + 1,
                       face.begin() + static_cast<std::ptrdiff_t>(b) + 1);
            one.emplace_back(q);
            other.insert(other.end(), face.begin() + static_cast<std::ptrdiff_t>(b) + 1, face.end());
            other.insert(other.end(), face.begin(), face.begin() + static_cast<std::ptrdiff_t>(a) + 1);
            other.emplace_back(p);
            if (std::abs(areaOf(one)) < 100 || std::abs(areaOf(other)) < 100) continue;
            cuts_.push_back({p, q});
            face = one;
            faces.push_back(other);
        }
    }

    // Cells with bent sides.
    void grid() {
        const size_t columns = 1 + below(6), rows = 1 + below(5);
        std::vector<std::vector<Point>> node(rows + 1, std::vector<Point>(columns + 1));
        std::vector<std::vector<double>> across = bulges(rows + 1, columns), up = bulges(rows, columns + 1);
        for (size_t r = 0; r <= rows; ++r)
            for (size_t c = 0; c <= columns; ++c)
                node[r][c] = placed(50.0 * static_cast<double>(c) + between(-8, 8),
                                    50.0 * static_cast<double>(r) + between(-8, 8));
        for (size_t r = 0; r < rows; ++r)
            for (size_t c = 0; c < columns; ++c)
                faces.push_back({{node[r][c], across[r][c]},
                                 {node[r][c + 1], up[r][c + 1]},
                                 {node[r + 1][c + 1], -across[r + 1][c]},
                                 {node[r + 1][c], -up[r][c]}});
        for (const Polygon& face : faces)
            for (size_t i = 0; i < face.size(); ++i)
                cuts_.push_back({face[i], face[(i + 1) % face.size()], face[i].bulge});
    }
    std::vector<std::vector<double>> bulges(size_t rows, size_t columns) {
        std::vector<std::vector<double>> values(rows, std::vector<double>(columns));
        for (auto& row : values)
            for (double& bulge : row) bulge = below(2) ? between(-0.25, 0.25) : 0;
        return values;
    }

    // As closed polylines or as separate pieces, in any order and direction.
    void draw() {
        if (below(2)) {
            for (const Polygon& face : faces) linework.polyline(turned(face, below(9), below(2)));
            return;
        }
        std::shuffle(cuts_.begin(), cuts_.end(), random_);
        for (const auto& [from, to, bulge] : cuts_)
            below(2) ? linework.line(from, to, bulge) : linework.line(to, from, -bulge);
    }

    // In some faces a small one, or a line that leads nowhere, or both joined to the side of the face.
    void addIslands() {
        for (size_t i = 0, count = faces.size(); i < count; ++i) {
            const Polygon& face = faces[i];
            const Point middle = middleOf(face), p = middle + (face[0] - middle) * 0.15,
                        q = middle + (face[1] - middle) * 0.15;
            const size_t kind = below(5);
            const double chord = distance(p, q);
            // A bow that stays within the face, however flat that is.
            const double bulge = std::min(0.1, 4 * std::abs(areaOf({middle, p, q})) / (chord * chord));
            const Polygon island{{middle, 0}, {p, bulge}, {q, 0}};
            if (kind == 1 || kind == 2) {
                linework.polyline(island);
                faces.push_back(island);
            }
            if (kind == 2) linework.line(middle, middle + (middle - p) * 0.3);
            if (kind == 3) linework.line(middle, middle + (faces[i][0] - middle) * 0.5);
        }
    }

    struct Cut {
        Point from, to;
        double bulge = 0;
    };
    std::mt19937 random_;
    std::vector<Cut> cuts_;
};

// Areas of straight lines, found the slow way: each line is cut by every other one, and round a point one
// walks from side to side, keeping to the left. Places are never nearly the same.
class SlowTracer {
  public:
    explicit SlowTracer(const std::vector<std::pair<Point, Point>>& lines) {
        for (const auto& line : lines) cut(line, lines);
    }

    // The area of the smallest ring round a point; 0 for none.
    double smallestRound(Point seed) const {
        double smallest = 0;
        for (const auto& [from, to] : sides_) {
            // Whose left the seed is on, to the right of it.
            const Point &low = from.y < to.y ? from : to, &high = from.y < to.y ? to : from;
            if (!(low.y <= seed.y && seed.y < high.y)) continue;
            if (low.x + (high.x - low.x) * (seed.y - low.y) / (high.y - low.y) <= seed.x) continue;
            const std::vector<Point> ring = walk(low, high);
            const double area = signedArea(ring);
            if (area > 1e-9 && isInside(seed, ring) && (smallest == 0 || area < smallest)) smallest = area;
        }
        return smallest;
    }

    // By the formula of graphs: sides, less corners, and one more for each part that hangs together.
    size_t countOfRings() const {
        std::map<std::pair<double, double>, size_t> corners;
        std::vector<size_t> parent;
        auto cornerOf = [&](const Point& p) {
            const auto [known, isNew] = corners.try_emplace({p.x, p.y}, parent.size());
            if (isNew) parent.push_back(known->second);
            return known->second;
        };
        auto root = [&](size_t corner) {
            while (parent[corner] != corner) corner = parent[corner];
            return corner;
        };
        size_t parts = 0;
        for (const auto& [from, to] : sides_) {
            const size_t a = cornerOf(from), b = cornerOf(to);
            parent[root(a)] = root(b);
        }
        for (size_t i = 0; i < parent.size(); ++i) parts += parent[i] == i ? 1 : 0;
        return sides_.size() + parts - corners.size();
    }

  private:
    using Line = std::pair<Point, Point>;

    void cut(const Line& line, const std::vector<Line>& lines) {
        const Point along = line.second - line.first;
        std::vector<std::pair<double, Point>> places{{0, line.first}, {1, line.second}};
        for (const Line& other : lines) {
            const Point across = other.second - other.first, between = other.first - line.first;
            const double turn = along.x * across.y - along.y * across.x;
            if (turn == 0) continue;
            const double share = (between.x * across.y - between.y * across.x) / turn;
            const double ofOther = (between.x * along.y - between.y * along.x) / turn;
            if (share <= 0 || share >= 1 || ofOther <= 0 || ofOther >= 1) continue;
            // Both lines get the same bits, by the order of their ends.
            const bool isFirst =
                std::tie(line.first.x, line.first.y) < std::tie(other.first.x, other.first.y);
            places.emplace_back(share, isFirst ? line.first + along * share : other.first + across * ofOther);
        }
        std::sort(places.begin(), places.end(),
                  [](const auto& a, const auto& b) { return a.first < b.first; });
        for (size_t i = 0; i + 1 < places.size(); ++i)
            sides_.emplace_back(places[i].second, places[i + 1].second);
    }

    // The ring that has a side, with the ring on its left.
    std::vector<Point> walk(const Point& from, const Point& to) const {
        std::vector<Point> ring;
        Point last = from, here = to;
        do {
            ring.push_back(here);
            const double back = direction(here, last);
            const Point* next = nullptr;
            double least = 7;
            for (const auto& [a, b] : sides_)
                for (const auto& [start, end] : {std::pair(&a, &b), std::pair(&b, &a)}) {
                    if (start->x != here.x || start->y != here.y) continue;
                    // Clockwise from where one came from; back again comes last.
                    double turn = std::fmod(back - direction(here, *end) + 2 * kFullTurn, kFullTurn);
                    if (turn < 1e-12) turn = kFullTurn;
                    if (turn < least) least = turn, next = end;
                }
            last = here;
            here = *next;
        } while (!(last.x == from.x && last.y == from.y && here.x == to.x && here.y == to.y));
        return ring;
    }

    static double signedArea(const std::vector<Point>& ring) {
        double twice = 0;
        for (size_t i = 0; i < ring.size(); ++i) {
            const Point a = ring[i] - ring[0], b = ring[(i + 1) % ring.size()] - ring[0];
            twice += a.x * b.y - a.y * b.x;
        }
        return twice / 2;
    }
    static bool isInside(Point p, const std::vector<Point>& ring) {
        bool isInside = false;
        for (size_t i = 0; i < ring.size(); ++i) {
            const Point &a = ring[i], &b = ring[(i + 1) % ring.size()];
            if ((a.y <= p.y) != (b.y <= p.y) && a.x + (b.x - a.x) * (p.y - a.y) / (b.y - a.y) > p.x)
                isInside = !isInside;
        }
        return isInside;
    }

    std::vector<Line> sides_;
};

bool sameCorners(const Ring& ring, const Polygon& face) {
    return ring.vertices.size() == face.size() &&
           std::all_of(face.begin(), face.end(), [&](const Point& corner) {
               return std::any_of(ring.vertices.begin(), ring.vertices.end(),
                                  [&](const Point& p) { return p.x == corner.x && p.y == corner.y; });
           });
}

}  // namespace

TEST(Areas, OfAThousandDrawingsEachFaceIsFoundOnce) {
    size_t faces = 0;
    for (unsigned seed = 0; seed < 1000; ++seed) {
        const RandomDrawing drawing(seed);
        const std::vector<Ring> rings = drawing.linework.rings();
        ASSERT_EQ(rings.size(), drawing.faces.size()) << seed;
        for (const Polygon& face : drawing.faces) {
            const double area = std::abs(areaOf(face));
            const auto found = std::count_if(rings.begin(), rings.end(), [&](const Ring& ring) {
                return std::abs(ring.area - area) <= area * 1e-9 && sameCorners(ring, face);
            });
            ASSERT_EQ(found, 1) << seed << " " << area;
        }
        faces += rings.size();
    }
    EXPECT_GT(faces, 10000u);
}

TEST(Areas, ThePointsOfAFaceFindIt) {
    for (unsigned seed = 0; seed < 200; ++seed) {
        const RandomDrawing drawing(seed);
        const std::vector<Ring> rings = drawing.linework.rings();
        const RingFinder finder(rings);
        for (const Polygon& face : drawing.faces) {
            // Beside a corner, where no island reaches.
            if (face.size() == 3 && distance(face[0], face[1]) < 30) continue;  // perhaps an island
            const Point middle = middleOf(face), inside = middle + (face.back() - middle) * 0.6;
            const std::optional<size_t> found = finder.smallestRound(inside);
            ASSERT_TRUE(found) << seed;
            ASSERT_NEAR(rings[*found].area, std::abs(areaOf(face)), 1e-6) << seed;
        }
        EXPECT_FALSE(finder.smallestRound({0, 0, 0}));
    }
}

// Lines that lie as they fall: ends hang free, parts stand within other parts.
TEST(Areas, ASlowTracerFindsTheSame) {
    std::mt19937 random(18);
    auto between = [&](double low, double high) {
        return std::uniform_real_distribution<>(low, high)(random);
    };
    size_t found = 0;
    for (int drawing = 0; drawing < 300; ++drawing) {
        SCOPED_TRACE(drawing);
        Linework linework;
        std::vector<std::pair<Point, Point>> lines;
        const double reach = drawing % 3 == 0 ? 60 : 200;
        for (int i = 0, count = 10 + drawing % 30; i < count; ++i) {
            const Point from{2011000 + between(0, 200), 702000 + between(0, 200), 0},
                to = from + Point{between(-reach, reach), between(-reach, reach), 0};
            lines.emplace_back(from, to);
            linework.line(from, to);
        }
        const SlowTracer slow(lines);
        const std::vector<Ring> rings = linework.rings();
        ASSERT_EQ(rings.size(), slow.countOfRings());
        const RingFinder finder(rings);
        for (int i = 0; i < 30; ++i) {
            const Point seed{2011000 + between(0, 200), 702000 + between(0, 200), 0};
            const std::optional<size_t> ring = finder.smallestRound(seed);
            const double area = slow.smallestRound(seed);
            ASSERT_NEAR(ring ? rings[*ring].area : 0, area, 1e-9 * area);
            found += ring ? 1 : 0;
        }
    }
    EXPECT_GT(found, 1000u);
}

TEST(Areas, IslandsAreNotTakenOff) {
    Linework linework;
    linework.polyline(square(0, 0, 100));
    linework.polyline(square(40, 40, 20));                                     // free
    linework.polyline(square(0, 0, 10));                                       // at a corner, along two sides
    linework.polyline({Point{50, 0, 0}, Point{55, 10, 0}, Point{45, 10, 0}});  // touches a side
    linework.line({60, 50, 0}, {100, 50, 0});                                  // joins the first to the side
    const std::vector<Ring> rings = linework.rings();
    EXPECT_EQ(areasOf(rings), (std::vector<double>{50, 100, 400, 9900}));
    const RingFinder finder(rings);
    EXPECT_EQ(rings[*finder.smallestRound({50, 50, 0})].area, 400);
    EXPECT_EQ(rings[*finder.smallestRound({50, 80, 0})].area, 9900);
    EXPECT_FALSE(finder.smallestRound({-1, 50, 0}));
    // Edges belong to areas; of two the smaller is taken.
    EXPECT_EQ(rings[*finder.smallestRound({40, 50, 0})].area, 400);
    EXPECT_EQ(rings[*finder.smallestRound({100, 99, 0})].area, 9900);
}

TEST(Areas, LinesThatCrossOverlapAndRepeatMakeOne) {
    Linework linework;
    for (double at : {20.0, 60.0}) {
        linework.line({at, 0, 0}, {at, 80, 0});
        linework.line({0, at, 0}, {80, at, 0});
    }
    linework.line({20, 80, 0}, {20, 0, 0});
    linework.line({20, 20, 0}, {20, 40, 0});
    linework.line({20, 30, 0}, {20, 90, 0});
    linework.line({33, 20, 0}, {33, 20, 0});
    const std::vector<Ring> rings = linework.rings();
    ASSERT_EQ(rings.size(), 1u);
    EXPECT_EQ(rings[0].area, 1600);
    EXPECT_EQ(rings[0].vertices.size(), 4u);
}

TEST(Areas, AClosedPolylineComesBackAsItIs) {
    Linework linework;
    // Clockwise, with doubled and needless vertices, and the corners of its neighbours a little beside it.
    const Polygon lot{Point{0, 50, 3},    Point{50, 50, 3}, Point{50, 50, 3},
                      {{50, 0, 3}, -0.5}, Point{25, 0, 3},  Point{0, 0, 3}};
    linework.polyline(square(50, 20, 40));
    linework.polyline(lot);
    linework.line({12, -20, 0}, {12, -1e-4, 0});
    linework.line({-30, 30, 0}, {1e-4, 30, 0});
    const std::vector<Ring> rings = linework.rings();
    ASSERT_EQ(rings.size(), 2u);
    const Ring& ring = rings[0].vertices.size() == 6 ? rings[0] : rings[1];
    ASSERT_EQ(ring.vertices.size(), 6u);
    for (size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(ring.vertices[i].x, lot[i].x);
        EXPECT_EQ(ring.vertices[i].y, lot[i].y);
        EXPECT_EQ(ring.vertices[i].z, 3);
        EXPECT_EQ(ring.vertices[i].bulge, lot[i].bulge);
    }
}

TEST(Areas, ArcsStayArcs) {
    const double circle = std::numbers::pi * 900;
    Linework linework;
    linework.line({-30, 0, 0}, {30, 0, 0}, 1);
    linework.line({30, 0, 0}, {-30, 0, 0}, 1);
    std::vector<Ring> rings = linework.rings();
    ASSERT_EQ(rings.size(), 1u);
    EXPECT_NEAR(rings[0].area, circle, 1e-9);
    EXPECT_EQ(rings[0].vertices.size(), 2u);
    // A chord cuts it; a line touches it, and so does a circle; one arc of nearly a full turn goes round it.
    linework.line({-40, 0, 0}, {55, 0, 0});
    linework.line({-40, 30, 0}, {40, 30, 0});
    linework.line({30, 0, 0}, {50, 0, 0}, 1);
    linework.line({50, 0, 0}, {30, 0, 0}, 1);
    linework.line({60, -1, 0}, {60, 1, 0}, 60);
    rings = linework.rings();
    const double small = std::numbers::pi * 100;
    std::vector<double> expected{small / 2, small / 2, circle / 2, circle / 2};
    std::vector<double> areas;
    for (const Ring& ring : rings) areas.push_back(ring.area);
    std::sort(areas.begin(), areas.end());
    ASSERT_EQ(areas.size(), 4u);
    for (size_t i = 0; i < 4; ++i) EXPECT_NEAR(areas[i], expected[i], 1e-6);
    const RingFinder finder(rings);
    EXPECT_NEAR(rings[*finder.smallestRound({0, 29.9, 0})].area, circle / 2, 1e-6);
    EXPECT_FALSE(finder.smallestRound({-25, 25, 0}));
    // Two arcs and a line between the same two points; arcs that leave along one tangent.
    Linework lens;
    lens.line({0, 0, 0}, {40, 0, 0}, 0.4), lens.line({0, 0, 0}, {40, 0, 0}, -0.4),
        lens.line({40, 0, 0}, {0, 0, 0});
    lens.line({0, 0, 0}, {20, 20, 0}, 1), lens.line({20, 20, 0}, {0, 0, 0}, 1);
    EXPECT_EQ(lens.rings().size(), 6u);
}

TEST(Areas, GapsAreClosedAsFarAsOneSays) {
    Linework linework;
    linework.line({0, 0, 0}, {80, 0, 0}), linework.line({80, 0, 0}, {80, 80, 0});
    linework.line({79.99, 80, 0}, {0, 80, 0}), linework.line({0, 80 - 1e-7, 0}, {0, 0.004, 0});
    const LineworkGraph graph = *graphOf(linework.pieces);
    EXPECT_TRUE(smallestRings(linework.pieces, graph, {}).empty());
    const std::vector<FreeEnd> ends = freeEnds(graph, 0.02);
    ASSERT_EQ(ends.size(), 4u);
    EXPECT_EQ(std::count_if(ends.begin(), ends.end(), [](const FreeEnd& end) { return end.gap < 0.0101; }),
              4);
    EXPECT_TRUE(std::isinf(freeEnds(graph, 0.001)[0].gap));
    EXPECT_EQ(bridgeGaps(graph, 0.005, linework.pieces), 2u);
    EXPECT_TRUE(linework.rings().empty());
    bridgeGaps(*graphOf(linework.pieces), 0.02, linework.pieces);
    EXPECT_EQ(areasOf(linework.rings()), (std::vector<double>{6400}));
}

TEST(Areas, PiecesWithoutAPlaceAreLeftOut) {
    Linework linework;
    linework.polyline(square(0, 0, 10));
    linework.line({NAN, 0, 0}, {5, 5, 0}), linework.line({5, 5, 0}, {1e12, 0, 0});
    linework.line({0, INFINITY, 0}, {1, 1, 0}), linework.line({0, 5, 0}, {10, 5, 0}, NAN);
    const LineworkGraph graph = *graphOf(linework.pieces);
    EXPECT_EQ(graph.leftOut, 3u);
    EXPECT_EQ(areasOf(smallestRings(linework.pieces, graph, linework.closed)), (std::vector<double>{50, 50}));
    EXPECT_FALSE(graphOf(linework.pieces, [] { return true; }));
}

TEST(Areas, ManyLinesMayGoThroughOnePoint) {
    // Few of them are tried in pairs, a crowd is not.
    for (const int lines : {600, 2500}) {
        Linework through, from;
        for (int i = 0; i < lines; ++i) {
            const Point end = polar({}, kFullTurn / 2 * i / lines, 100),
                        next = polar({}, kFullTurn / 2 * (i + 1) / lines, 100);
            through.line(end, {-end.x, -end.y, 0});
            through.line(end, next), through.line({-end.x, -end.y, 0}, {-next.x, -next.y, 0});
            from.line({}, end), from.line(next, end);
        }
        const std::vector<Ring> rings = through.rings();
        ASSERT_EQ(rings.size(), 2u * static_cast<size_t>(lines));
        for (const Ring& ring : rings) EXPECT_NEAR(ring.area, 5000 * std::sin(kFullTurn / 2 / lines), 1e-6);
        EXPECT_EQ(from.rings().size(), static_cast<size_t>(lines) - 1)
            << "no line ends where the last one leads";
    }
}

TEST(Areas, LinesOfACrowdMeetOthersAsWell) {
    Linework linework;
    constexpr int kLines = 1500;
    for (int i = 0; i < kLines; ++i) linework.line({}, polar({}, 0.001 * i, 100));
    const size_t first = linework.pieces.size();
    // Across all of them, along one of them, beside another by less than the tolerance, and an arc.
    linework.line({50, -1, 0}, {50, 3, 0});
    linework.line(polar({}, 0.5, 20), polar({}, 0.5, 120));
    linework.line({}, polar({}, 0.7 + 1e-6, 90));
    linework.line({80, 0, 0}, polar({}, 1.4, 80), std::tan(1.4 / 4));
    const LineworkGraph graph = *graphOf(linework.pieces);
    std::vector<size_t> parts(linework.pieces.size());
    size_t doubled = 0;
    for (const LineworkGraph::Edge& edge : graph.edges) {
        for (const LineworkGraph::Part& part : edge.parts) ++parts[part.piece];
        doubled += edge.parts.size() > 1 ? 1 : 0;
    }
    // Lines up to the angle whose tangent is 3 / 50 cross the upright one.
    EXPECT_EQ(parts[first], 61u);
    EXPECT_EQ(parts[first + 3], 1400u) << "one part between each two lines up to 1.4";
    EXPECT_EQ(parts[30], 3u) << "up to the upright line, the arc, and the end";
    EXPECT_EQ(doubled, 4u) << "along and beside: each up to the arc and from it";
}

TEST(Areas, TooManyLinesAboveEachOtherAreRefused) {
    Linework linework;
    std::mt19937 random(5);
    std::uniform_real_distribution<> between(-1e-3, 1e-3);
    // Nearly through one place, so that each two of them meet somewhere else.
    for (int i = 0; i < 40000; ++i) {
        const Point end = polar({}, kFullTurn / 2 * i / 40000, 100), off{between(random), between(random), 0};
        linework.line(end + off, Point{-end.x, -end.y, 0} + off);
    }
    const std::optional<LineworkGraph> graph = graphOf(linework.pieces);
    ASSERT_TRUE(graph);
    EXPECT_TRUE(graph->isTooDense);
    EXPECT_TRUE(graph->edges.empty());
}
