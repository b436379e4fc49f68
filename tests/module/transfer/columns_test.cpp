// The columns that values need, and their names.
#include <gtest/gtest.h>

#include "module/transfer/column_needs.h"
#include "module/transfer/export_columns.h"

using namespace norvane;

namespace {

ColumnShape shapeOf(const std::vector<std::string>& values, bool isTextField = true) {
    ColumnNeeds needs;
    for (const std::string& value : values) needs.add(value, isTextField);
    return needs.shape();
}

const ColumnShape kText{kDbfString, 50, 0}, kInteger{kDbfInteger, 8, 0}, kReal{kDbfDouble, 12, 4};

}  // namespace

TEST(ColumnNeeds, FollowTheWidestOfTheirValues) {
    EXPECT_EQ(shapeOf({}), kText);
    EXPECT_EQ(shapeOf({"1", "2"}), kInteger);
    EXPECT_EQ(shapeOf({"1", "2.5"}), kReal);
    EXPECT_EQ(shapeOf({"2.5", "1"}), kReal);
    EXPECT_EQ(shapeOf({"1", "2.5", "X"}), kText);
    EXPECT_EQ(shapeOf({"X", "1"}), kText);
    // A postal code is a text, unless its field has numbers.
    EXPECT_EQ(shapeOf({"27601", "00123"}), kText);
    EXPECT_EQ(shapeOf({"1", "-01.5"}), kText);
    EXPECT_EQ(shapeOf({"0", "0.5", "-0.5"}), kReal);
    EXPECT_EQ(shapeOf({"00123"}, false), kInteger);
    // The longest counts, whatever it is, in bytes of the table.
    EXPECT_EQ(shapeOf({std::string(60, '9'), "X"}), (ColumnShape{kDbfString, 60, 0}));
    std::string umlauts;
    for (int i = 0; i < 70; ++i) umlauts += "ü";
    EXPECT_EQ(shapeOf({umlauts}), (ColumnShape{kDbfString, 70, 0}));
    EXPECT_EQ(shapeOf({std::string(400, 'x')}), (ColumnShape{kDbfString, 254, 0}));
}

TEST(ColumnNeeds, NumbersGetTheRoomThatTheyNeed) {
    auto integerOf = [](int width) { return ColumnShape{kDbfInteger, width, 0}; };
    auto realOf = [](int width) { return ColumnShape{kDbfDouble, width, 4}; };
    EXPECT_EQ(shapeOf({"99999999"}), integerOf(8));
    EXPECT_EQ(shapeOf({"-9999999"}), integerOf(8));
    EXPECT_EQ(shapeOf({"999999999", "5"}), integerOf(9));
    EXPECT_EQ(shapeOf({"-2147483648"}), integerOf(11));
    EXPECT_EQ(shapeOf({"2147483647"}), integerOf(10));
    EXPECT_EQ(shapeOf({"2147483648"}), kText);  // beyond 32 bits
    EXPECT_EQ(shapeOf({"5551234567"}), kText);
    EXPECT_EQ(shapeOf({"5551234567", "0.5"}), realOf(15));
    EXPECT_EQ(shapeOf({"1234567.1234", "1"}), realOf(12));
    EXPECT_EQ(shapeOf({"1234567890.5"}), realOf(15));
    EXPECT_EQ(shapeOf({"-1234567.5"}), realOf(13));
    EXPECT_EQ(shapeOf({"9999999.99999"}), realOf(13));  // which is 10000000.0000 there
    EXPECT_EQ(shapeOf({"1e18", "0.5"}), realOf(24));
    EXPECT_EQ(shapeOf({"1e30", "0.5"}), kText);
}

TEST(ColumnNeeds, OfSeveralTablesAreThoseOfAllTheirValues) {
    auto joined = [](const std::vector<std::vector<std::string>>& fields) {
        ColumnNeeds needs;
        for (const std::vector<std::string>& values : fields) {
            ColumnNeeds more;
            for (const std::string& value : values) more.add(value, true);
            needs.add(more);
        }
        return needs.shape();
    };
    EXPECT_EQ(joined({{}, {"1"}, {}}), kInteger);
    EXPECT_EQ(joined({{"1"}, {"2.5"}}), kReal);
    EXPECT_EQ(joined({{"1234567890"}, {"2.5"}}), (ColumnShape{kDbfDouble, 15, 4}));
    EXPECT_EQ(joined({{std::string(80, '1')}, {"X"}}), (ColumnShape{kDbfString, 80, 0}));
}

TEST(ShortColumnNames, AreCutRoundThoseThatNeedNoCutting) {
    using Names = std::vector<std::string>;
    EXPECT_EQ(ShortColumnNames(Names{"DESCRIPTION_A", "DESCRIPTION_B"}), (Names{"DESCRIPTIO", "DESCRIPTI1"}));
    EXPECT_EQ(ShortColumnNames(Names{"DESCRIPTION_A", "DESCRIPTIO", "DESCRIPTI1"}),
              (Names{"DESCRIPTI2", "DESCRIPTIO", "DESCRIPTI1"}));
    EXPECT_EQ(ShortColumnNames(Names{"GRÖSSENANGABE", "GRÖSSENANG1"}), (Names{"GRÖSSENANG", "GRÖSSENAN1"}));
    // From the tenth clash on the table has a name twice.
    Names many;
    for (char c = 'A'; c <= 'L'; ++c) many.push_back(std::string("MEASUREMENT_") + c);
    Names cut = ShortColumnNames(many);
    EXPECT_EQ(cut[9], "MEASUREME9");
    EXPECT_EQ(cut[10], "MEASUREME10");
    EXPECT_EQ(cut[11], "MEASUREME11");
}
