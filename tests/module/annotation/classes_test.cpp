// Classes, their colours, and the texts by which a drawing keeps labels and colours.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "module/annotation/annotation_sets.h"
#include "module/annotation/colour_classes.h"
#include "module/annotation/number_classes.h"

using namespace norvane;

namespace {

using Numbers = std::vector<double>;

std::vector<size_t> countsOf(const Numbers& limits, const Numbers& values) {
    std::vector<size_t> counts(limits.size() + 1);
    for (double value : values) ++counts[ClassOf(limits, value)];
    return counts;
}

// The sum of squares from the means of the classes.
double spreadOf(const Numbers& limits, const Numbers& values) {
    double spread = 0;
    for (size_t i = 0; i < limits.size(); ++i) {
        Numbers members;
        for (double value : values)
            if (ClassOf(limits, value) == i) members.push_back(value);
        double mean = 0;
        for (double value : members) mean += value / static_cast<double>(members.size());
        for (double value : members) spread += (value - mean) * (value - mean);
    }
    return spread;
}

// The least spread of all ways to divide values into classes, each tried.
double leastSpread(Numbers values, size_t classes) {
    const Numbers all = values;
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
    std::vector<bool> isLimit(values.size() - 1);
    std::fill(isLimit.begin(), isLimit.begin() + static_cast<long>(std::min(classes, values.size()) - 1),
              true);
    double least = std::numeric_limits<double>::infinity();
    do {
        Numbers limits;
        for (size_t i = 0; i < isLimit.size(); ++i)
            if (isLimit[i]) limits.push_back(values[i]);
        limits.push_back(values.back());
        least = std::min(least, spreadOf(limits, all));
    } while (std::prev_permutation(isLimit.begin(), isLimit.end()));
    return least;
}

// The contrast of two colours by the formula of the guidelines for web content.
double contrastOf(Colour one, Colour other) {
    auto luminance = [](Colour colour) {
        auto part = [&](int shift) {
            const double value = (colour >> shift & 0xFF) / 255.0;
            return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * part(16) + 0.7152 * part(8) + 0.0722 * part(0) + 0.05;
    };
    return std::max(luminance(one) / luminance(other), luminance(other) / luminance(one));
}

double distanceOf(Colour one, Colour other) {
    double sum = 0;
    for (int shift : {16, 8, 0}) {
        const double difference = static_cast<double>(one >> shift & 0xFF) - (other >> shift & 0xFF);
        sum += difference * difference;
    }
    return std::sqrt(sum);
}

std::vector<EntityValue> valuesOf(std::initializer_list<dao::Variant> values) {
    std::vector<EntityValue> all;
    for (const dao::Variant& value : values) all.emplace_back().value = value;
    return all;
}

std::string classText(const std::vector<FeatureColours::Class>& classes) {
    std::string text;
    for (const FeatureColours::Class& one : classes) text += one.upTo + ";";
    return text;
}

}  // namespace

TEST(NumberClasses, EqualStepsAreEquallyWide) {
    EXPECT_EQ(UpperLimits({0, 1, 2, 10, 20}, ClassKind::kEqualSteps, 4), (Numbers{5, 10, 15, 20}));
    EXPECT_EQ(UpperLimits({-3, -3}, ClassKind::kEqualSteps, 4), (Numbers{-3}));
    const double most = std::numeric_limits<double>::max();
    EXPECT_EQ(UpperLimits({-most, most}, ClassKind::kEqualSteps, 2), (Numbers{0, most}));
    // A value on a limit belongs to the class that it ends.
    EXPECT_EQ(ClassOf({5, 10}, 5), 0u);
    EXPECT_EQ(ClassOf({5, 10}, 5.001), 1u);
    EXPECT_EQ(ClassOf({5, 10}, 10.1), 2u);
    EXPECT_EQ(ClassOf({5, 10}, std::nan("")), 2u);
}

TEST(NumberClasses, EqualCountsKeepEqualValuesTogether) {
    const Numbers ten = {9, 8, 7, 6, 5, 4, 3, 2, 1, 0};
    EXPECT_EQ(countsOf(UpperLimits(ten, ClassKind::kEqualCounts, 3), ten), (std::vector<size_t>{4, 3, 3, 0}));
    const Numbers many = {1, 1, 1, 1, 1, 1, 2, 3};
    EXPECT_EQ(UpperLimits(many, ClassKind::kEqualCounts, 4), (Numbers{1, 3}));
    EXPECT_EQ(UpperLimits({4, 5}, ClassKind::kEqualCounts, 7), (Numbers{4, 5}));
}

TEST(NumberClasses, NaturalBreaksAreTheBestOfAll) {
    EXPECT_EQ(UpperLimits({1, 2, 1, 10, 11, 12, 50, 51}, ClassKind::kNaturalBreaks, 3), (Numbers{2, 12, 51}));
    std::mt19937 random(7);
    for (int round = 0; round < 60; ++round) {
        Numbers values;
        for (int i = 0; i < 12; ++i) values.push_back(std::floor(std::pow(random() % 1000 / 100.0, 2)));
        const size_t classes = 1 + random() % 5;
        const Numbers limits = UpperLimits(values, ClassKind::kNaturalBreaks, classes);
        ASSERT_LE(limits.size(), classes);
        ASSERT_NEAR(spreadOf(limits, values), leastSpread(values, classes), 1e-9) << "round " << round;
    }
    // Far from zero, where sums of squares would lose what differs.
    EXPECT_EQ(UpperLimits({5e9, 5e9 + 1, 5e9 + 10, 5e9 + 11}, ClassKind::kNaturalBreaks, 2),
              (Numbers{5e9 + 1, 5e9 + 11}));
}

TEST(NumberClasses, ThereAreNoneWithoutNumbers) {
    for (const ClassKind kind :
         {ClassKind::kEqualSteps, ClassKind::kEqualCounts, ClassKind::kNaturalBreaks}) {
        EXPECT_TRUE(UpperLimits({}, kind, 5).empty());
        EXPECT_TRUE(UpperLimits({1, 2}, kind, 0).empty());
        EXPECT_EQ(UpperLimits({std::nan(""), 3, std::numeric_limits<double>::infinity()}, kind, 5),
                  (Numbers{3}));
    }
}

TEST(ColourRamp, ColoursStandOutFromBothGroundsAndFromEachOther) {
    constexpr Colour kDarkGround = 0x1E2228, kWhite = 0xFFFFFF;
    for (size_t count = 1; count <= kMostClasses; ++count)
        for (const std::vector<Colour>& colours : {ColoursInOrder(count), ColoursOfKinds(count)}) {
            ASSERT_EQ(colours.size(), count);
            for (size_t i = 0; i < count; ++i) {
                EXPECT_GE(contrastOf(colours[i], kDarkGround), 3) << std::hex << colours[i];
                EXPECT_GE(contrastOf(colours[i], kWhite), 3) << std::hex << colours[i];
                if (i > 0) {
                    EXPECT_GE(distanceOf(colours[i], colours[i - 1]), 15) << count << " " << i;
                }
            }
        }
    // Neighbours of kinds differ clearly, whatever their number.
    const std::vector<Colour> kinds = ColoursOfKinds(kMostClassesByValue);
    for (size_t i = 1; i < kinds.size(); ++i) EXPECT_GE(distanceOf(kinds[i], kinds[i - 1]), 90) << i;
    for (size_t i = 0; i < 12; ++i)
        for (size_t j = 0; j < i; ++j) EXPECT_GE(distanceOf(kinds[i], kinds[j]), 20) << i << " " << j;
}

TEST(ColourRamp, NumbersOfColoursAreTheNearest) {
    EXPECT_EQ(NearestColourNumber(0xFF0000), 10);
    EXPECT_EQ(NearestColourNumber(0x00FE02), 90);
    EXPECT_EQ(NearestColourNumber(0x0000FF), 170);
    EXPECT_EQ(NearestColourNumber(kOtherColour), 8);
}

TEST(Classes, ByValueEachTextHasOne) {
    EXPECT_EQ(classText(ClassesOf(valuesOf({"oak", "Oak ", "", dao::Variant(), "ash", "10", "9", int32_t{7}}),
                                  Division::kByValue, 3)),
              "7;9;10;ash;oak;");
    std::vector<EntityValue> many;
    for (int i = 0; i < 100; ++i)
        for (int times = 0; times < (i < 10 ? 1 : 2); ++times)
            many.emplace_back().value = dao::Variant(int32_t{i});
    const auto classes = ClassesOf(many, Division::kByValue, 0);
    ASSERT_EQ(classes.size(), kMostClassesByValue);
    EXPECT_EQ(classes.front().upTo, "10") << "the most frequent ones";
}

TEST(Classes, ColoursAndCountsFollowTheClasses) {
    FeatureColours colours;
    colours.division = Division::kEqualSteps;
    const std::vector<EntityValue> values =
        valuesOf({1.5, int16_t{3}, " 11 ", "none", dao::Variant(), 10.0 / 3, 500.0});
    colours.classes = {{"3", 0x111111}, {dao::exactText(10.0 / 3), 0x222222}, {"20", 0x333333}};
    colours.other = 0x444444;
    const ColouredValues coloured = ColourValues(colours, values);
    EXPECT_EQ(coloured.colours,
              (std::vector<Colour>{0x111111, 0x111111, 0x333333, 0x444444, 0x444444, 0x222222, 0x444444}));
    std::string rows;
    for (const overlay::LegendRow& row : coloured.rows)
        rows += row.text + "=" + std::to_string(row.count) + ";";
    EXPECT_EQ(rows, "up to 3=2;3 to 3.3333=1;3.3333 to 20=1;others=3;");
}

TEST(AnnotationSets, TextsGiveTheSameBack) {
    FeatureLabels labels{{"PT_ID & \" = \" & AGE", "a\\n\nb"}, 0.1, true, false};
    EXPECT_EQ(FeatureLabelsOf(TextOf(labels)), labels);
    FeatureColours colours{"SPE=CIES",
                           Division::kByValue,
                           {{"two\nlines \\n", 0x0000FF}, {"", 0xABCDEF}, {" blank ", 1}},
                           0x123456,
                           false,
                           false};
    EXPECT_EQ(FeatureColoursOf(TextOf(colours)), colours);
    colours.division = Division::kNaturalBreaks;
    colours.classes = {{"-1e-300", 1}, {dao::exactText(1.0 / 3), 2}};
    EXPECT_EQ(FeatureColoursOf(TextOf(colours)), colours);
}

TEST(AnnotationSets, WhatIsNoSetIsRefused) {
    for (const char* text : {"", "line", "line=A\nheight=0", "line=A\nheight=x", "height=2",
                             "line=A\nwidth=2", "line=A\nshown=2", "line=A\nheight=1e999"})
        EXPECT_FALSE(FeatureLabelsOf(text)) << text;
    EXPECT_TRUE(FeatureLabelsOf("line=A"));
    for (const char* text :
         {"", "division=values", "field=A\ndivision=halves", "field=A\nclass=#12345 x",
          "field=A\nclass=#123456", "field=A\ndivision=steps\nclass=#123456 x",
          "field=A\ndivision=steps\nclass=#123456 2\nclass=#123456 2", "field=A\nother=red"})
        EXPECT_FALSE(FeatureColoursOf(text)) << text;
    EXPECT_TRUE(FeatureColoursOf("field=A\nclass=#123456 x"));
}
