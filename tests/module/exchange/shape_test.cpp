#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "module/exchange/shape_file.h"
#include "platform/files/byte_order.h"
#include "platform/files/files.h"
#include "tests/platform/dao/scratch.h"

using namespace norvane;

namespace {

std::string big(uint32_t value) {
    std::string bytes(4, '\0');
    files::putBig32(bytes.data(), value);
    return bytes;
}

template <typename Number>
std::string little(Number value) {
    std::string bytes(sizeof value, '\0');
    files::putLittle(bytes.data(), value);
    return bytes;
}

std::string doubles(const std::vector<double>& values) {
    std::string bytes;
    for (double v : values) bytes += little(v);
    return bytes;
}

// X, Y, Z, M, low and high, in the order of the header's fields.
std::string header(uint32_t bytes, int32_t type, const std::vector<double>& bounds = std::vector<double>(8)) {
    return big(9994) + std::string(20, '\0') + big(bytes / 2) + little(1000) + little(type) + doubles(bounds);
}

std::string record(uint32_t number, const std::string& contents) {
    return big(number) + big(static_cast<uint32_t>(contents.size()) / 2) + contents;
}

struct Pair {
    std::string shp, shx;
};

// The two files of records that stand one behind the other.
Pair pairOf(int32_t type, const std::vector<std::string>& contents) {
    Pair pair;
    uint32_t number = 0;
    for (const std::string& content : contents) {
        pair.shx += big(static_cast<uint32_t>(pair.shp.size() + 100) / 2);
        pair.shx += big(static_cast<uint32_t>(content.size()) / 2);
        pair.shp += record(++number, content);
    }
    pair.shp = header(static_cast<uint32_t>(pair.shp.size()) + 100, type) + pair.shp;
    pair.shx = header(static_cast<uint32_t>(pair.shx.size()) + 100, type) + pair.shx;
    return pair;
}

class ShapeTest : public testing::Test {
  protected:
    void put(const Pair& pair, const std::string& stem = "file") {
        std::ofstream(folder_(stem + ".shp")) << pair.shp;
        std::ofstream(folder_(stem + ".shx")) << pair.shx;
    }
    OpenShapeFile open(const std::string& mode = "rb") {
        return OpenShapeFile(ShapeOpen(folder_("file.shp"), mode));
    }
    OpenShapeFile create(int32_t type) { return OpenShapeFile(ShapeCreate(folder_("file.shp"), type)); }
    std::string shp() { return files::read(folder_("file.shp")).value_or(""); }
    std::string shx() { return files::read(folder_("file.shx")).value_or(""); }

    ScratchFolder folder_;
};

OwnedShape line(const std::vector<double>& x, const std::vector<double>& y, int32_t type = shape::kArc) {
    int32_t start = 0;
    return OwnedShape(ShapeCreateObject(type, -1, 1, &start, nullptr, static_cast<int32_t>(x.size()),
                                        x.data(), y.data(), nullptr, nullptr, 0));
}

TEST_F(ShapeTest, ANewPairIsTwoHeadersUntilItIsClosed) {
    OpenShapeFile file = create(shape::kPolygon);
    ASSERT_TRUE(file);
    EXPECT_EQ(shp(), header(100, 5));
    EXPECT_EQ(shx(), header(100, 5));
    EXPECT_EQ(ShapeReadObject(file.get(), 0, 0), nullptr);
    EXPECT_TRUE(file->recordOffsets && file->recordSizes);
}

TEST_F(ShapeTest, WritesThePublishedLayout) {
    OpenShapeFile file = create(shape::kArcZ);
    double x[] = {1, 4, 2}, y[] = {2, 8, 3}, z[] = {10, -5, 0.5}, m[] = {7, 6, 5};
    int32_t starts[] = {0, 2};
    OwnedShape arc(ShapeCreateObject(shape::kArcZ, -1, 2, starts, nullptr, 3, x, y, z, m, 0));
    ASSERT_EQ(ShapeWriteObject(file.get(), -1, arc.get()), 0);
    ASSERT_TRUE(ShapeClose(file.release()));

    std::string content = little(13) + doubles({1, 2, 4, 8}) + little(2) + little(3) + little(0) + little(2) +
                          doubles({1, 2, 4, 8, 2, 3}) + doubles({-5, 10, 10, -5, 0.5}) +
                          doubles({5, 7, 7, 6, 5});
    uint32_t size = static_cast<uint32_t>(content.size());
    std::vector<double> bounds = {1, 2, 4, 8, -5, 10, 5, 7};
    EXPECT_EQ(shp(), header(108 + size, 13, bounds) + record(1, content));
    EXPECT_EQ(shx(), header(108, 13, bounds) + big(50) + big(size / 2));
}

TEST_F(ShapeTest, EveryTypeComesBackAsItWasWritten) {
    for (int32_t type : {1, 3, 5, 8, 11, 13, 15, 18, 21, 23, 25, 28, 31}) {
        SCOPED_TRACE(type);
        bool parts = shape::HasParts(type), point = shape::IsPoint(type);
        double x[] = {10, 20, 30, 40}, y[] = {1, 3, 2, 4}, z[] = {100, 101, 102, 103}, m[] = {5, 6, 7, 8};
        int32_t starts[] = {0, 2}, types[] = {2, 3};
        int32_t count = point ? 1 : 4;
        OwnedShape written(ShapeCreateObject(type, -1, 2, starts, types, count, x, y, z, m, 0));
        OpenShapeFile file = create(type);
        ASSERT_EQ(ShapeWriteObject(file.get(), -1, written.get()), 0);
        ASSERT_TRUE(ShapeClose(file.release()));
        file = open();
        ASSERT_TRUE(file);
        EXPECT_EQ(file->shapeType, type);
        for (int32_t listForm : {0, 1}) {
            OwnedShape read(ShapeReadObject(file.get(), 0, listForm));
            ASSERT_TRUE(read);
            EXPECT_EQ(read->shapeId, 0);
            EXPECT_EQ(read->partCount, parts ? 2 : 0);
            EXPECT_EQ(read->partStarts, parts ? std::vector<int32_t>({0, 2}) : std::vector<int32_t>());
            std::vector<int32_t> partTypes =
                type == 31 ? std::vector<int32_t>{2, 3} : std::vector<int32_t>{5, 5};
            EXPECT_EQ(read->partTypes, parts ? partTypes : std::vector<int32_t>());
            ASSERT_EQ(read->vertexCount, count);
            EXPECT_EQ(read->vertexList != nullptr, listForm && !point);
            const ShapeVertexNode* node = read->vertexList;
            bool hasM = type != 31 && (shape::HasZ(type) || shape::HasM(type));
            for (int32_t i = 0; i < count; ++i) {
                EXPECT_EQ(node ? node->x : read->x[i], x[i]);
                EXPECT_EQ(node ? node->y : read->y[i], y[i]);
                EXPECT_EQ(node ? node->z : read->z[i], shape::HasZ(type) ? z[i] : 0);
                EXPECT_EQ(node ? node->m : read->m[i], hasM ? m[i] : 0);
                if (node) node = node->next;
            }
            EXPECT_EQ(node, nullptr);
            EXPECT_EQ(read->xMax, point ? 10 : 40);
            EXPECT_EQ(read->yMax, point ? 1 : 4);
            EXPECT_EQ(read->zMin, shape::HasZ(type) ? 100 : 0);
            EXPECT_EQ(read->mMin, hasM ? 5 : 0);
        }
    }
}

TEST_F(ShapeTest, BoundsAreTheUnionOfAllVertices) {
    OpenShapeFile file = create(shape::kArc);
    OwnedShape first = line({5, 6}, {50, 60}), second = line({-1, 2}, {55, 100}), none = line({}, {});
    ShapeWriteObject(file.get(), -1, first.get());
    ShapeBounds low, high;
    ShapeGetInfo(file.get(), nullptr, nullptr, &low, &high);
    EXPECT_EQ(low, (ShapeBounds{5, 50, 0, 0}));
    EXPECT_EQ(high, (ShapeBounds{6, 60, 0, 0}));
    ShapeWriteObject(file.get(), -1, second.get());
    EXPECT_EQ(ShapeWriteObject(file.get(), -1, none.get()), 2);
    ShapeClose(file.release());
    file = open();
    int32_t count = 0, type = 0;
    ShapeGetInfo(file.get(), &count, &type, &low, &high);
    EXPECT_EQ(count, 3);
    EXPECT_EQ(type, 3);
    EXPECT_EQ(low, (ShapeBounds{-1, 50, 0, 0}));
    EXPECT_EQ(high, (ShapeBounds{6, 100, 0, 0}));
}

TEST_F(ShapeTest, ARecordThatShrinksStaysAndOneThatGrowsMoves) {
    OpenShapeFile file = create(shape::kArcM);
    double v[] = {1, 2, 3, 4, 5, 6, 7, 8};
    auto arc = [&](int32_t count) {
        return OwnedShape(
            ShapeCreateObject(shape::kArcM, -1, 1, nullptr, nullptr, count, v, v, nullptr, v, 0));
    };
    for (int i = 0; i < 3; ++i) ShapeWriteObject(file.get(), -1, arc(4).get());
    int32_t size = file->recordSizes[1], offset = file->recordOffsets[1], end = file->fileSize;
    EXPECT_EQ(ShapeWriteObject(file.get(), 1, arc(2).get()), 1);
    EXPECT_EQ(file->recordSizes[1], size);
    EXPECT_EQ(file->fileSize, end);
    // What is left behind the shorter record is not taken for measures.
    OwnedShape shrunk(ShapeReadObject(file.get(), 1, 0));
    ASSERT_TRUE(shrunk);
    EXPECT_EQ(shrunk->vertexCount, 2);
    EXPECT_EQ(shrunk->m[1], 2);
    EXPECT_EQ(ShapeWriteObject(file.get(), 1, arc(8).get()), 1);
    EXPECT_EQ(file->recordOffsets[1], end);
    ShapeClose(file.release());
    file = open();
    EXPECT_EQ(file->recordOffsets[1], end);
    EXPECT_EQ(file->recordOffsets[2], offset + size + 8);
    EXPECT_EQ(OwnedShape(ShapeReadObject(file.get(), 1, 1))->vertexCount, 8);
    EXPECT_EQ(OwnedShape(ShapeReadObject(file.get(), 2, 1))->vertexCount, 4);
}

TEST_F(ShapeTest, NamesWithDotsAndCapitals) {
    Pair pair = pairOf(1, {little(1) + doubles({3, 4})});
    std::filesystem::create_directory(folder_("data.v2"));
    put(pair, "data.v2/plain");
    put(pair, "foo.bar");
    files::replace(folder_("UPPER.SHP"), pair.shp);
    files::replace(folder_("UPPER.SHX"), pair.shx);
    for (const char* name : {"data.v2/plain", "data.v2\\plain.shp", "foo.bar.shp", "UPPER.SHP", "upper"})
        EXPECT_TRUE(OpenShapeFile(ShapeOpen(folder_(name), "rb"))) << name;
    EXPECT_FALSE(OpenShapeFile(ShapeOpen(folder_("foo.bar"), "rb")));
}

TEST_F(ShapeTest, TheIndexFileSaysWhatThePairIs) {
    Pair pair = pairOf(1, {little(1) + doubles({3, 4})});
    pair.shp[2] = 9;
    put(pair);
    EXPECT_TRUE(open());
    pair.shx[3] = 0x0D;
    put(pair);
    EXPECT_TRUE(open());
    pair.shx[3] = 0x0B;
    put(pair);
    EXPECT_FALSE(open());
    files::remove(folder_("file.shx"));
    EXPECT_FALSE(open());
}

TEST_F(ShapeTest, TheIndexFileTellsTypeAndBoundsOfAllRecords) {
    Pair pair = pairOf(1, {little(0) + doubles({3, 4, 9})});
    pair.shx.replace(0, 100, header(108, 21, {1, 2, 3, 4, 5, 6, 7, 8}));
    put(pair);
    OpenShapeFile file = open();
    ASSERT_TRUE(file);
    EXPECT_EQ(file->shapeType, 21);
    EXPECT_EQ(file->boundsMin, (ShapeBounds{1, 2, 5, 7}));
    EXPECT_EQ(file->boundsMax, (ShapeBounds{3, 4, 6, 8}));
    OwnedShape point(ShapeReadObject(file.get(), 0, 0));
    ASSERT_TRUE(point) << "its own type word, of no shape, is not looked at";
    EXPECT_EQ(point->m[0], 9);
}

TEST_F(ShapeTest, PatchesAreReadWithMeasuresAndWrittenWithout) {
    put(pairOf(31, {little(31) + doubles({1, 2, 3, 4}) + little(1) + little(2) + little(0) + little(2) +
                    doubles({1, 2, 3, 4}) + doubles({5, 6, 5, 6}) + doubles({7, 8, 7, 8})}));
    OpenShapeFile file = open("r+b");
    OwnedShape patch(ShapeReadObject(file.get(), 0, 0));
    ASSERT_TRUE(patch);
    EXPECT_EQ(patch->m[1], 8);
    ASSERT_EQ(ShapeWriteObject(file.get(), -1, patch.get()), 1);
    OwnedShape again(ShapeReadObject(file.get(), 1, 0));
    EXPECT_EQ(again->z[1], 6);
    EXPECT_EQ(again->m[1], 0);
}

TEST_F(ShapeTest, BoundsBeginAnewWithTheOnlyRecordAndNeverShrinkOtherwise) {
    auto boundsOf = [](const OpenShapeFile& file) {
        ShapeBounds low, high;
        ShapeGetInfo(file.get(), nullptr, nullptr, &low, &high);
        return std::vector<double>{low[0], low[1], high[0], high[1]};
    };
    OpenShapeFile file = create(shape::kArc);
    ShapeWriteObject(file.get(), -1, line({1, 9}, {1, 9}).get());
    ShapeWriteObject(file.get(), 0, line({5, 6}, {5, 6}).get());
    EXPECT_EQ(boundsOf(file), (std::vector<double>{5, 5, 6, 6}));
    ShapeWriteObject(file.get(), -1, line({1, 9}, {1, 9}).get());
    ShapeWriteObject(file.get(), 1, line({5, 6}, {5, 6}).get());
    EXPECT_EQ(boundsOf(file), (std::vector<double>{1, 1, 9, 9}));
    // An empty first record leaves the origin in the bounds.
    file = create(shape::kArc);
    ShapeWriteObject(file.get(), -1, line({}, {}).get());
    ShapeWriteObject(file.get(), -1, line({5, 6}, {5, 6}).get());
    EXPECT_EQ(boundsOf(file), (std::vector<double>{0, 0, 6, 6}));
}

TEST_F(ShapeTest, OneVertexIsNoListAndAbsentMeasuresAreZero) {
    std::string box = doubles({1, 2, 1, 2});
    put(pairOf(3, {little(3) + box + little(1) + little(1) + little(0) + doubles({1, 2})}));
    OpenShapeFile file = open();
    EXPECT_EQ(ShapeReadObject(file.get(), 0, 1), nullptr);
    EXPECT_TRUE(OwnedShape(ShapeReadObject(file.get(), 0, 0)));

    put(pairOf(15, {little(15) + box + little(1) + little(2) + little(0) + doubles({1, 2, 1, 2}) +
                    doubles({8, 9, 8, 9})}));
    file = open();
    OwnedShape polygon(ShapeReadObject(file.get(), 0, 0));
    ASSERT_TRUE(polygon);
    EXPECT_EQ(polygon->z[1], 9);
    EXPECT_EQ(polygon->m[1], 0);
    EXPECT_EQ(polygon->mMax, 0);
}

// A record whose numbers lie is no shape; the file stays as it was.
TEST_F(ShapeTest, RecordsThatLieAreRefused) {
    std::string box = doubles({0, 0, 1, 1}), points = doubles({0, 0, 1, 1});
    auto arc = [&](int32_t parts, int32_t vertices, int32_t start) {
        return little(3) + box + little(parts) + little(vertices) + little(start) + points;
    };
    std::vector<std::string> lies = {
        arc(1, 3, 0),       arc(1, -1, 0),      arc(-1, 2, 0), arc(1, 2, -1),   arc(1, 2, 3),
        arc(1 << 30, 2, 0), arc(1, 1 << 30, 0), little(0),     little(3) + box, ""};
    Pair pair = pairOf(3, lies);
    pair.shx += big(1 << 30) + big(20) + big(50) + big(1 << 30) + big(0xFFFFFFFF) + big(20);
    files::putBig32(&pair.shx[24], 0x7FFFFFFF);
    put(pair);
    OpenShapeFile file = open("r+b");
    ASSERT_TRUE(file);
    EXPECT_EQ(file->recordCount, static_cast<int32_t>(lies.size()) + 3);
    for (int32_t i = -1; i <= file->recordCount; ++i)
        EXPECT_EQ(ShapeReadObject(file.get(), i, 0), nullptr) << i;
    ShapeClose(file.release());
    EXPECT_EQ(shp(), pair.shp);
    EXPECT_EQ(shx(), pair.shx);
}

TEST_F(ShapeTest, FilesCutAnywhereGiveNothingThatIsNotThere) {
    double v[] = {1, 2, 3};
    OpenShapeFile file = create(shape::kPolygonZ);
    for (int i = 0; i < 3; ++i) {
        OwnedShape object(ShapeCreateObject(shape::kPolygonZ, -1, 1, nullptr, nullptr, 3, v, v, v, v, 0));
        ShapeWriteObject(file.get(), -1, object.get());
    }
    ShapeClose(file.release());
    Pair whole{shp(), shx()};
    for (size_t cut = 0; cut < whole.shp.size(); ++cut) {
        put({whole.shp.substr(0, cut), whole.shx});
        file = open();
        EXPECT_EQ(file != nullptr, cut >= 100);
        for (int32_t i = 0; file && i < file->recordCount; ++i) {
            OwnedShape object(ShapeReadObject(file.get(), i, i & 1));
            size_t recordEnd = 100 + (whole.shp.size() - 100) / 3 * static_cast<size_t>(i + 1);
            EXPECT_EQ(object != nullptr, cut >= recordEnd);
        }
    }
    for (size_t cut = 0; cut < whole.shx.size(); ++cut) {
        put({whole.shp, whole.shx.substr(0, cut)});
        file = open();
        EXPECT_EQ(file ? file->recordCount : -1, cut < 100 ? -1 : static_cast<int32_t>((cut - 100) / 8));
    }
}

TEST_F(ShapeTest, ACutFileThatIsWrittenToKeepsTheIndexOfWhatItLost) {
    OpenShapeFile file = create(shape::kArc);
    for (double i = 0; i < 4; ++i) ShapeWriteObject(file.get(), -1, line({i, i + 1}, {0, 1}).get());
    ShapeClose(file.release());
    const Pair whole{shp(), shx()};
    const size_t size = (whole.shp.size() - 100) / 4, cut = 100 + 2 * size + 20;
    put({whole.shp.substr(0, cut), whole.shx});
    file = open("r+b");
    EXPECT_EQ(ShapeWriteObject(file.get(), 0, line({7, 8}, {0, 1}).get()), 0);
    EXPECT_EQ(ShapeWriteObject(file.get(), -1, line({9, 10}, {0, 1}).get()), 4);
    ShapeClose(file.release());
    EXPECT_EQ(shx().substr(100, 32), whole.shx.substr(100)) << "the four entries are what they were";
    // The new record stands behind the place of the lost ones, which come back with their bytes.
    std::string mended = shp();
    EXPECT_EQ(mended.size(), whole.shp.size() + size);
    const size_t lost = 100 + 2 * size;
    mended.replace(lost, whole.shp.size() - lost, whole.shp.substr(lost));
    files::replace(folder_("file.shp"), mended);
    file = open();
    ASSERT_EQ(file->recordCount, 5);
    const double firsts[] = {7, 1, 2, 3, 9};
    for (int32_t i = 0; i < 5; ++i) {
        OwnedShape object(ShapeReadObject(file.get(), i, 0));
        ASSERT_TRUE(object) << i;
        EXPECT_EQ(object->x[0], firsts[i]);
    }
    // A lost record that is written anew has a place of its own.
    put({whole.shp.substr(0, cut), whole.shx});
    file = open("r+b");
    EXPECT_EQ(ShapeWriteObject(file.get(), 3, line({5, 6}, {0, 1}).get()), 3);
    ShapeClose(file.release());
    file = open();
    EXPECT_EQ(file->recordOffsets[3], static_cast<int32_t>(whole.shp.size()));
    EXPECT_EQ(OwnedShape(ShapeReadObject(file.get(), 3, 0))->x[0], 5);
    EXPECT_FALSE(OwnedShape(ShapeReadObject(file.get(), 2, 0))) << "half a record and zeros are no shape";
}

TEST_F(ShapeTest, WritesThatCannotBeGiveMinusOne) {
    OwnedShape arc = line({1, 2}, {1, 2}), point = line({}, {}, shape::kPoint);
    OpenShapeFile file = create(7);
    EXPECT_EQ(ShapeWriteObject(file.get(), -1, arc.get()), -1);
    file = create(shape::kArc);
    EXPECT_EQ(ShapeWriteObject(file.get(), 0, arc.get()), -1);
    EXPECT_EQ(ShapeWriteObject(file.get(), -2, arc.get()), -1);
    EXPECT_EQ(ShapeWriteObject(file.get(), -1, arc.get()), 0);
    OwnedShape list(ShapeReadObject(file.get(), 0, 1));
    EXPECT_EQ(ShapeWriteObject(file.get(), -1, list.get()), -1);
    arc->listForm = 1;  // the arrays decide
    EXPECT_EQ(ShapeWriteObject(file.get(), -1, arc.get()), 1);
    ShapeClose(file.release());
    std::string before = shp();
    file = open("rb");
    ShapeWriteObject(file.get(), -1, arc.get());
    EXPECT_FALSE(ShapeClose(file.release()));
    EXPECT_EQ(shp(), before);
    file = create(shape::kPoint);
    EXPECT_EQ(ShapeWriteObject(file.get(), -1, point.get()), -1);
    EXPECT_EQ(
        ShapeCreateObject(shape::kArc, 0, 1, nullptr, nullptr, 2, nullptr, nullptr, nullptr, nullptr, 0),
        nullptr);
}

}  // namespace
