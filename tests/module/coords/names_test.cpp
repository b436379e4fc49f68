#include <algorithm>
#include <random>

#include "module/coords/point_names.h"
#include "module/coords/point_range.h"
#include "tests/module/coords/coords_fixture.h"

using namespace norvane;

namespace {

TEST(PointNames, SortDigitsAsNumbersAndTheRestWithoutCase) {
    std::vector<std::string> order = {"",    "1",  "2",  "10",     "1000000", "A9",
                                      "A10", "P5", "p6", "POINT9", "POINT10"};
    for (size_t i = 0; i < order.size(); ++i)
        for (size_t j = 0; j < order.size(); ++j)
            EXPECT_EQ(CompareNames(order[i], order[j]), i < j ? -1 : i > j) << order[i] << " " << order[j];
    EXPECT_EQ(CompareNames("point2", "POINT3"), -1);
    EXPECT_EQ(CompareNames("abc", "ABC"), 0);
    EXPECT_EQ(CompareNames("A", "AB"), -1);
    EXPECT_EQ(CompareNames("A_", "AB"), -1) << "the underscore stands before letters";
    EXPECT_EQ(CompareNames("03", "3"), -1);
    EXPECT_EQ(CompareNames("99999999999", "2147483647"), CompareNames("9", "2")) << "numbers end at 32 bits";
}

TEST(PointNames, TheNextOfARow) {
    struct Case {
        const char* name;
        long step;
        const char* next;
    };
    for (auto [name, step, next] : std::initializer_list<Case>{
             {"A", 1, "B"},         {"Z", 1, "Z2"},    {"AB", 1, "AB2"},    {"A", 5, "A5"},
             {"z", 1, "z2"},        {"12A", 1, "12B"}, {"12Z", 1, "13A"},   {"P10", 1, "P11"},
             {"P9X4", 1, "P9X5"},   {"12", 3, "15"},   {"12AZ", 1, "12BZ"}, {"1ZZ", 1, "2AA"},
             {"1zZ", 1, "2aA"},     {"P1A", 2, "P3A"}, {"9", 1, "10"},      {"12A", 26, "13A"},
             {"", 1, "2"},          {"12_", 1, "12_"}, {"5B", -1, "5B"},    {"P10", -3, "P7"},
             {"1X2Y3", 1, "1X2Y4"}, {"-5", 1, "-4"}})
        EXPECT_EQ(NextPointName(name, step), next) << name << " " << step;
}

TEST(PointRange, Tokens) {
    auto tokens = [](const char* text, bool numeric = false) {
        std::string out;
        PointRange range(text, numeric);
        for (auto& t : range.tokens()) out += t.start + ">" + t.end + " ";
        return range.isAll() ? "all" : out;
    };
    EXPECT_EQ(tokens("1-5,9,a-c"), "1>5 9>9 A>C ");
    EXPECT_EQ(tokens(" all "), "all");
    EXPECT_EQ(tokens(" 1 - 5 ,, 7"), "1>5 7>7 ");
    EXPECT_EQ(tokens("A-B-C,3-,-4,-"), "A>B-C 3>3 4>4 ");
    EXPECT_EQ(tokens("03-5,007", true), "3>5 7>7 ");
    EXPECT_EQ(tokens("GROUP[trees,1-5],9,group7"), "GROUP[TREES,1-5]>GROUP[TREES,1-5] 9>9 GROUP7>GROUP7 ");
    EXPECT_EQ(tokens("GROUP[open"), "GROUP[OPEN>GROUP[OPEN ");
    EXPECT_EQ(tokens(""), "");
}

TEST(PointRange, Membership) {
    PointRange range("9-3,A1-A10,B");
    for (const char* in : {"3", "9", "5", "a1", "A10", "A2", "b"}) EXPECT_TRUE(range.contains(in)) << in;
    for (const char* out : {"2", "10", "A", "A11", "B1", ""}) EXPECT_FALSE(range.contains(out)) << out;
}

class RangeWalkTest : public CoordsTest, public testing::WithParamInterface<int> {};

std::string walked(CoordinateFile& file, const std::string& range) {
    std::string names;
    PointRecord point;
    RangeWalk walk(file, PointRange(range, file.format == kNumericCrd));
    while (walk.next(point)) names += (names.empty() ? "" : " ") + point.name;
    return names;
}

// Every kind of file walks the same ranges the same way.
TEST_P(RangeWalkTest, InTheOrderOfTheRange) {
    auto file = create(GetParam(), GetParam() == kIndexedZgc ? "p.zgc" : "p.crd");
    EXPECT_EQ(walked(*file, "ALL"), "");
    EXPECT_EQ(walked(*file, "1-5"), "");
    std::vector<PointRecord> points;
    for (int n : {8, 1, 30, 3, 4, 9, 12, 5}) points.push_back(makePoint(std::to_string(n)));
    EXPECT_EQ(file->WriteAll(points, 0), points.size());
    EXPECT_EQ(walked(*file, "ALL"), "1 3 4 5 8 9 12 30");
    EXPECT_EQ(walked(*file, "1-5,9"), "1 3 4 5 9");
    EXPECT_EQ(walked(*file, "5-1"), "5 4 3 1");
    EXPECT_EQ(walked(*file, "6-10"), "8 9");
    EXPECT_EQ(walked(*file, "11-6"), "9 8");
    EXPECT_EQ(walked(*file, "6-7,2,12,31,0"), "12");
    EXPECT_EQ(walked(*file, "100-10"), "30 12");
    EXPECT_EQ(walked(*file, "20-100,3-3"), "30 3");
    EXPECT_EQ(walked(*file, "3,3,2-4"), "3 3 3 4");
}

// What is found and written in between does not lead a walk astray.
TEST_P(RangeWalkTest, SurvivesOtherReadsAndWrites) {
    auto file = create(GetParam(), GetParam() == kIndexedZgc ? "p.zgc" : "p.crd");
    for (int n : {10, 20, 30, 40}) file->Write(makePoint(std::to_string(n)), 0);
    for (const char* range : {"ALL", "1-99"}) {
        RangeWalk walk(*file, PointRange(range));
        PointRecord point, other;
        std::string names;
        while (walk.next(point)) {
            names += point.name + " ";
            file->Find("40", other, 0, 1);
            file->Write(makePoint("5"), 1);
        }
        EXPECT_EQ(names, std::string(range) == "ALL" ? "10 20 30 40 " : "5 10 20 30 40 ");
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, RangeWalkTest, testing::Values(kNumericCrd, kAlphanumericCrd, kIndexedZgc));

TEST_F(CoordsTest, RangesOfNames) {
    auto file = create(kAlphanumericCrd, "p.crd");
    for (const char* name : {"A", "B", "C2", "1", "2", "X10", "X9"}) file->Write(makePoint(name), 0);
    EXPECT_EQ(walked(*file, "1-5,9,A-C"), "1 2 A B");
    EXPECT_EQ(walked(*file, "x9-x11,a"), "X9 X10 A");
    auto numeric = create(kNumericCrd, "n.crd");
    for (const char* name : {"1", "2"}) numeric->Write(makePoint(name), 0);
    EXPECT_EQ(walked(*numeric, "A-C"), "");
    EXPECT_EQ(walked(*numeric, "02,001"), "2 1");
}

}  // namespace
