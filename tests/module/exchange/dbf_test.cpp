#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <fstream>
#include <random>

#include "module/exchange/dbf_file.h"
#include "module/exchange/dbf_number.h"
#include "platform/files/files.h"
#include "platform/text/text.h"
#include "tests/platform/dao/scratch.h"

using namespace norvane;

namespace {

using namespace std::string_literals;

class DbfTest : public testing::Test {
  protected:
    OpenDbfFile create() { return OpenDbfFile(DbfCreate(folder_("table.dbf"))); }
    OpenDbfFile open(const char* mode = "rb") { return OpenDbfFile(DbfOpen(folder_("table.dbf"), mode)); }
    std::string bytes() { return files::read(folder_("table.dbf")).value_or(""); }
    void put(const std::string& content) { std::ofstream(folder_("table.dbf")) << content; }

    ScratchFolder folder_;
};

// A table of one text of 6 and one number of 8.2, with two records.
std::string smallTable() {
    return "\x03\x5F\x07\x1A\2\0\0\0\x61\0\x0F\0"s + std::string(20, '\0') +
           "NAME\0\0\0\0\0\0\0C\0\0\0\0\6\0"s + std::string(14, '\0') + "SIZE\0\0\0\0\0\0\0N\0\0\0\0\x8\2"s +
           std::string(14, '\0') + "\r" + " oak      12.50" + " pine  -1234567";
}

TEST_F(DbfTest, WritesTheLayoutByteForByte) {
    OpenDbfFile table = create();
    EXPECT_EQ(bytes(), "\0"s);
    EXPECT_EQ(DbfAddField(table.get(), "NAME", kDbfString, 6, 0), 0);
    EXPECT_EQ(DbfAddField(table.get(), "SIZE", kDbfDouble, 8, 2), 1);
    EXPECT_EQ(DbfWriteStringAttribute(table.get(), 0, 0, "oak"), 1);
    EXPECT_EQ(DbfWriteDoubleAttribute(table.get(), 0, 1, 12.5), 1);
    EXPECT_EQ(DbfWriteStringAttribute(table.get(), 1, 0, "pine"), 1);
    EXPECT_EQ(DbfWriteStringAttribute(table.get(), 1, 1, "-1234567.891"), 1);
    ASSERT_TRUE(DbfClose(table.release()));
    EXPECT_EQ(bytes(), smallTable());
}

TEST_F(DbfTest, ATableWithoutRecordsIsValid) {
    OpenDbfFile table = create();
    DbfAddField(table.get(), "A", kDbfInteger, 300 - 256, 0);
    ASSERT_TRUE(DbfClose(table.release()));
    EXPECT_EQ(bytes(), "\x03\0\0\0\0\0\0\0\x41\0\x2D\0"s + std::string(20, '\0') + "A\0\0\0\0\0\0\0\0\0\0N"s +
                           "\0\0\0\0\x2C\0"s + std::string(14, '\0') + "\r");
    table = open("r+b");
    EXPECT_EQ(DbfGetFieldCount(table.get()), 1);
    EXPECT_EQ(DbfGetRecordCount(table.get()), 0);
    EXPECT_EQ(DbfAddField(table.get(), "B", kDbfString, 3, 0), -1);
    EXPECT_EQ(DbfWriteIntegerAttribute(table.get(), 1, 0, 5), 0);
    EXPECT_EQ(DbfWriteIntegerAttribute(table.get(), 0, 1, 5), 0);
    EXPECT_EQ(DbfWriteIntegerAttribute(table.get(), -1, 0, 5), 0);
}

TEST_F(DbfTest, FieldsOfEveryClass) {
    OpenDbfFile table = create();
    DbfAddField(table.get(), "ELEVEN_CHARS", kDbfString, 300, 0);
    DbfAddField(table.get(), "ELEVEN_CHARACTERS", kDbfInteger, 4, 0);
    DbfAddField(table.get(), "D", kDbfDouble, 10, 0);
    DbfAddField(table.get(), "E", kDbfDouble, 12, 3);
    EXPECT_EQ(DbfAddField(table.get(), "F", kDbfInteger, 4, 2), -1);
    EXPECT_EQ(DbfAddField(table.get(), "F", kDbfInteger, 0, 0), -1);
    EXPECT_EQ(DbfAddField(table.get(), "F", kDbfDouble, 256, 0), -1);
    EXPECT_EQ(DbfAddField(table.get(), "F", kDbfString, 65535, 0), -1);
    DbfWriteIntegerAttribute(table.get(), 0, 1, 123456);
    DbfWriteStringAttribute(table.get(), 0, 0, std::string(301, 'x'));
    DbfWriteDoubleAttribute(table.get(), 0, 2, 1e12);
    DbfWriteDoubleAttribute(table.get(), 0, 3, NAN);
    EXPECT_EQ(DbfAddField(table.get(), "F", kDbfString, 4, 0), -1);
    DbfClose(table.release());

    std::string content = bytes();
    EXPECT_EQ(content.substr(32 + 16, 2), "\x2C\x01");
    table = open();
    std::string name;
    int32_t width = 0, decimals = 0;
    EXPECT_EQ(DbfGetFieldInfo(table.get(), 0, &name, &width, nullptr), kDbfString);
    EXPECT_EQ(name, "ELEVEN_CHA");
    EXPECT_EQ(width, 300);
    EXPECT_EQ(DbfGetFieldInfo(table.get(), 1, &name, nullptr, nullptr), kDbfInteger);
    EXPECT_EQ(name, "ELEVEN_CHA");
    EXPECT_EQ(DbfGetFieldInfo(table.get(), 2, nullptr, nullptr, nullptr), kDbfInteger);
    EXPECT_EQ(DbfGetFieldInfo(table.get(), 3, nullptr, &width, &decimals), kDbfDouble);
    EXPECT_EQ(decimals, 3);
    EXPECT_EQ(DbfGetFieldInfo(table.get(), 4, &name, &width, &decimals), kDbfInvalid);
    EXPECT_STREQ(DbfReadStringAttribute(table.get(), 0, 0), std::string(300, 'x').c_str());
    EXPECT_STREQ(DbfReadStringAttribute(table.get(), 0, 1), "1234");
    EXPECT_EQ(*DbfReadDoubleAttribute(table.get(), 0, 2), INT_MAX);
    EXPECT_STREQ(DbfReadStringAttribute(table.get(), 0, 3), "");
    EXPECT_EQ(DbfReadStringAttribute(table.get(), 0, 4), nullptr);
    EXPECT_EQ(DbfReadStringAttribute(table.get(), 1, 0), nullptr);
}

TEST_F(DbfTest, ReadsTypesThatOthersWrite) {
    std::string table = smallTable();
    table[32 + 11] = 'D';
    table[64 + 11] = 'F';
    put(table);
    OpenDbfFile file = open();
    EXPECT_EQ(DbfGetFieldInfo(file.get(), 0, nullptr, nullptr, nullptr), kDbfDate);
    EXPECT_EQ(DbfGetFieldInfo(file.get(), 1, nullptr, nullptr, nullptr), kDbfDouble);
    // Blanks behind a name are cut where they fill its room, and only there.
    table.replace(32, 11, "AB         ");
    table.replace(64, 11, "AB \0       "s);
    put(table);
    file = open();
    std::string name;
    DbfGetFieldInfo(file.get(), 0, &name, nullptr, nullptr);
    EXPECT_EQ(name, "AB");
    DbfGetFieldInfo(file.get(), 1, &name, nullptr, nullptr);
    EXPECT_EQ(name, "AB ");
}

TEST_F(DbfTest, RecordsAreRewrittenInPlace) {
    put(smallTable());
    OpenDbfFile table = open("r+");
    ASSERT_EQ(DbfGetRecordCount(table.get()), 2);
    EXPECT_EQ(DbfWriteStringAttribute(table.get(), 1, 0, "fir"), 1);
    EXPECT_STREQ(DbfReadStringAttribute(table.get(), 0, 0), "oak");
    EXPECT_STREQ(DbfReadStringAttribute(table.get(), 1, 0), "fir");
    EXPECT_EQ(DbfWriteDoubleAttribute(table.get(), 2, 0, 1.25), 1);
    EXPECT_EQ(DbfGetRecordCount(table.get()), 3);
    DbfClose(table.release());
    table = open("r");
    EXPECT_EQ(DbfGetRecordCount(table.get()), 3);
    EXPECT_STREQ(DbfReadStringAttribute(table.get(), 1, 0), "fir");
    EXPECT_STREQ(DbfReadStringAttribute(table.get(), 2, 0), "1.25");
    EXPECT_STREQ(DbfReadStringAttribute(table.get(), 2, 1), "");
}

TEST_F(DbfTest, TwoTablesAreReadSideBySide) {
    put(smallTable());
    OpenDbfFile table = open(), other = open();
    const char* text = DbfReadStringAttribute(table.get(), 0, 0);
    const double* number = DbfReadDoubleAttribute(other.get(), 1, 1);
    EXPECT_STREQ(text, "oak");
    EXPECT_EQ(*number, -1234567.0);
    DbfClose(table.release());
    EXPECT_EQ(*number, -1234567.0) << "the other table is closed";
}

TEST_F(DbfTest, TextsAreOfTheCodePageThatTheTableHas) {
    for (bool utf8 : {false, true}) {
        if (utf8) files::replace(folder_("table.cpg"), "UTF-8\n");
        OpenDbfFile made = create();
        DbfAddField(made.get(), "NAME", kDbfString, 6, 0);
        DbfWriteIntegerAttribute(made.get(), 0, 0, 1);
        DbfClose(made.release());
        OpenDbfFile table = open("r+b");
        DbfWriteStringAttribute(table.get(), 0, 0, "Bär");
        DbfWriteStringAttribute(table.get(), 1, 0, "Straßé");
        DbfClose(table.release());
        std::string content = bytes();
        EXPECT_EQ(content.substr(65), utf8 ? " Bär   Straß" : " B\xE4r    Stra\xDF\xE9");
        table = open();
        EXPECT_STREQ(DbfReadStringAttribute(table.get(), 0, 0), "Bär");
        EXPECT_STREQ(DbfReadStringAttribute(table.get(), 1, 0), utf8 ? "Straß" : "Straßé");
    }
}

TEST_F(DbfTest, ANewTableIsWhatTheCodePageFileSays) {
    const std::string cpg = folder_("table.cpg");
    for (const char* said : {"", "UTF-8", "65001", "ANSI 1252", "1251"}) {
        files::remove(cpg);
        if (*said) files::replace(cpg, said);
        bool utf8 = said == "UTF-8"s || said == "65001"s;
        {
            OpenDbfFile made = create();
            DbfAddField(made.get(), "GRÖSSE", kDbfString, 6, 0);
            DbfAddField(made.get(), "STRASSENÄHE", kDbfString, 6, 0);
            DbfWriteStringAttribute(made.get(), 0, 0, "Bär");
        }
        EXPECT_EQ(bytes().substr(32, 7), utf8 ? "GR\xC3\x96SSE"s : "GR\xD6SSE\0"s) << said;
        EXPECT_EQ(bytes().substr(97, 5), utf8 ? " B\xC3\xA4r" : " B\xE4r ") << said;
        EXPECT_EQ(files::exists(cpg), *said && said != "1251"s) << said;
        OpenDbfFile table = open();
        std::string name, longName;
        DbfGetFieldInfo(table.get(), 0, &name, nullptr, nullptr);
        DbfGetFieldInfo(table.get(), 1, &longName, nullptr, nullptr);
        EXPECT_EQ(name, "GRÖSSE") << said;
        EXPECT_EQ(longName, utf8 ? "STRASSENÄ" : "STRASSENÄH") << "cut between two characters";
        EXPECT_STREQ(DbfReadStringAttribute(table.get(), 0, 0), "Bär") << said;
    }
}

TEST_F(DbfTest, ModesAndHeadersThatCannotBe) {
    put(smallTable());
    for (const char* mode : {"w", "wb", "a", "r+bb", ""}) EXPECT_FALSE(open(mode)) << mode;
    auto with = [&](size_t at, const std::string& change) {
        std::string table = smallTable();
        table.replace(at, change.size(), change);
        put(table);
        return open();
    };
    EXPECT_FALSE(with(8, "\x1F\0"s)) << "a header that ends in the header";
    EXPECT_FALSE(with(8, "\xFF\xFF")) << "a header longer than the file";
    EXPECT_FALSE(with(10, "\0\0"s)) << "records of no length";
    // Records that are told but not there do not count.
    EXPECT_EQ(DbfGetRecordCount(with(4, "\xFF\xFF\xFF\x7F").get()), 2);
    EXPECT_EQ(DbfGetRecordCount(with(4, "\xFF\xFF\xFF\xFF").get()), 0);
    // A field that reaches past its record ends with it; one of no width is empty.
    OpenDbfFile wide = with(64 + 16, "\xFF");
    EXPECT_STREQ(DbfReadStringAttribute(wide.get(), 0, 1), "12.50");
    OpenDbfFile narrow = with(32 + 16, "\0\0"s);
    EXPECT_STREQ(DbfReadStringAttribute(narrow.get(), 0, 0), "");
    OpenDbfFile far = with(32 + 16, "\xFF\xFF");
    EXPECT_STREQ(DbfReadStringAttribute(far.get(), 0, 1), "");
    std::string whole = smallTable();
    for (size_t cut = 0; cut < whole.size(); ++cut) {
        put(whole.substr(0, cut));
        OpenDbfFile table = open();
        int32_t records = table ? DbfGetRecordCount(table.get()) : 0;
        EXPECT_EQ(table != nullptr, cut >= 96);
        EXPECT_EQ(records, static_cast<int32_t>(cut < 97 ? 0 : (cut - 97) / 15));
        for (int32_t i = 0; i < records; ++i) EXPECT_NE(DbfReadStringAttribute(table.get(), i, 1), nullptr);
    }
}

// The quick road of numbers gives what printf gives.
TEST(DbfNumber, AgreesWithPrintf) {
    std::mt19937_64 random(1);
    auto check = [](double value, int width, int decimals) {
        std::string expected = decimals ? text::format("%*.*f", width, decimals, value)
                                        : text::format("%*d", width, static_cast<int>(value));
        expected.resize(static_cast<size_t>(width));
        std::string out(static_cast<size_t>(width), '?');
        FormatDbfNumber(value, width, decimals, out.data());
        ASSERT_EQ(out, expected) << value << " " << width << "." << decimals;
    };
    for (double value : {0.0, -0.0, 0.5, 1.5, 2.675, 1.005, -0.001, 0.05, 99999.995, 1e300, -1e300, 5e-324})
        for (int decimals = 1; decimals < 20; ++decimals) check(value, 24, decimals);
    for (int i = 0; i < 200000; ++i) {
        double value =
            std::ldexp(static_cast<double>(static_cast<int64_t>(random())), -static_cast<int>(random() % 70));
        check(value, 1 + static_cast<int>(random() % 30), 1 + static_cast<int>(random() % 12));
        check(std::round(value * 100) / 1000, 12, 2);
        check(std::fmod(value, 1e9), 1 + static_cast<int>(random() % 12), 0);
    }
}

}  // namespace
