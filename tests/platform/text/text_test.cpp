#include "platform/text/text.h"

#include <gtest/gtest.h>

#include "platform/text/code_page.h"

namespace {

TEST(Text, CaseOfTheLettersOfTheCodePage) {
    EXPECT_EQ(text::upper("straße öÿšœž ÷ π"), "STRAßE ÖŸŠŒŽ ÷ π");
    EXPECT_EQ(text::lower("ÀÞ×ŸŠ"), "àþ×ÿš");
    EXPECT_EQ(text::upper("a\xFFz\xC3"), "A\xFFZ\xC3") << "malformed bytes stay";
    EXPECT_TRUE(text::equalNoCase("Öl Tank", "öL tANK"));
    EXPECT_FALSE(text::equalNoCase("Öl", "Ol"));
    EXPECT_FALSE(text::equalNoCase("ab", "abc"));
    EXPECT_TRUE(text::endsWithNoCase("out.MDB", ".mdb"));
}

TEST(Text, NumbersAsTheProgramWritesAndReadsThem) {
    EXPECT_EQ(text::fromReal(12.5), "12.5");
    EXPECT_EQ(text::fromReal(12), "12");
    EXPECT_EQ(text::fromReal(-0.000000001), "-0.000000001");
    EXPECT_EQ(text::fromReal(1e15), "1000000000000000");
    EXPECT_EQ(text::stripZeros("100") + text::stripZeros("1.500") + text::stripZeros("1.000"), "1001.51");
    EXPECT_EQ(text::toReal("12abc"), 12);
    EXPECT_EQ(text::toReal(" -.5e1x"), -5);
    EXPECT_EQ(text::toReal("(2"), 0);
    EXPECT_EQ(text::toReal("1E"), 1);
    EXPECT_EQ(text::toReal("1,5"), 1);
    for (const char* word :
         {"INFLOW", "inf", "-infinity", "NANCY", "nan(1)", "+-1", "-", ".", "1e999", "x1", ""}) {
        EXPECT_EQ(text::toReal(word), 0) << word;
        EXPECT_FALSE(text::wholeReal(word)) << word;
    }
    EXPECT_EQ(text::wholeReal("+1.5e1"), 15);
    EXPECT_FALSE(text::wholeReal("1.5 "));
    EXPECT_FALSE(text::wholeReal("12abc"));
    EXPECT_EQ(text::toLong("-42.9"), -42);
    EXPECT_EQ(text::toLong("x"), 0);
}

TEST(Text, ACutNeverSplitsACharacter) {
    EXPECT_EQ(text::cutToBytes("aäb", 2), "a");
    EXPECT_EQ(text::cutToBytes("aäb", 3), "aä");
    EXPECT_EQ(text::cutToBytes("abc", 9), "abc");
}

TEST(Text, CodePagesThereAndBack) {
    std::string all;
    for (int byte = 1; byte < 256; ++byte) all += static_cast<char>(byte);
    for (int page : {1250, 1251, 1252, 1253, 437, 850, 852, 866})
        EXPECT_EQ(text::encode(text::decode(all, page), page), all) << page;
    EXPECT_EQ(text::decode("\x80\xFC", 1252), "€ü");
    EXPECT_EQ(text::decode("\x9D\xF3\xA6\xE7", 852), "ŁˇŽš");
    EXPECT_EQ(text::decode("\x8C\xAE\xE1\xAA\xA2\xA0\xFC", 866), "Москва№");
    EXPECT_EQ(text::encode("€ü→", 1252), "\x80\xFC?");
    EXPECT_EQ(text::encode("→x", 1252, 0), "x");
}

}  // namespace
