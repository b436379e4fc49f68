// The two flat kinds of coordinate files, against bytes written by hand.
#include <ctime>

#include "module/coords/alphanumeric_file.h"
#include "module/coords/numeric_file.h"
#include "module/coords/point_range.h"
#include "platform/text/text.h"
#include "tests/module/coords/coords_fixture.h"

using namespace norvane;

namespace {

std::string slot(double northing, double easting, double elevation, const std::string& description) {
    return littleDouble(northing) + littleDouble(easting) + littleDouble(elevation) + padded(description, 32);
}

std::string record(const std::string& name, double northing, const std::string& description = "") {
    return slot(northing, 2, 3, description) + padded(name, 10);
}

std::string alphanumericHeader(const std::string& mark = "New CRD Format2") {
    return littleDouble(12.5) + padded("06/21/2005", 32) + padded("Main St", 32) + padded(mark, 32);
}

// --- Numeric ------------------------------------------------------------------------------------------

TEST_F(CoordsTest, NumericHolesAreRealSlots) {
    auto file = create(kNumericCrd, "p.crd");
    EXPECT_EQ(bytes("p.crd").size(), 56u);
    ASSERT_TRUE(file->Write(makePoint("10", 100.5, 200.25, 7, "IRON PIN"), 0));
    std::string content = bytes("p.crd");
    EXPECT_EQ(content.size(), 11u * 56);
    EXPECT_EQ(content.substr(0, 8), littleDouble(10));
    EXPECT_EQ(content.substr(56, 9 * 56), std::string(9 * 56, '\0'));
    EXPECT_EQ(content.substr(560), slot(100.5, 200.25, 7, "IRON PIN"));
    EXPECT_EQ(file->highestName, "10");
    EXPECT_EQ(file->lowestName, "1");
    EXPECT_EQ(file->RecordCount(), 10);
    EXPECT_EQ(namesOf(*file), "10");
    file->Write(makePoint("3"), 0);
    EXPECT_EQ(file->RecordCount(), 10);
    EXPECT_EQ(namesOf(*file), "3 10");
}

TEST_F(CoordsTest, NumericHeader) {
    put("p.crd", littleDouble(2) + littleDouble(7.5) + littleDouble(2005.0621) + padded("Main St", 32) +
                     slot(1, 2, 3, "A") + slot(4, 5, 6, "B"));
    auto file = open("p.crd");
    ASSERT_TRUE(file);
    EXPECT_EQ(file->headerText, "Main St");
    EXPECT_EQ(file->headerNumber, "7.500");
    EXPECT_EQ(file->headerDate, "2005.0621");
    EXPECT_EQ(file->highestName, "2");
    file->SetHeaderText(std::string(40, 'x'));
    file->SetHeaderNumber("3.25");
    file->SetHeaderDate("12/31/2006");
    EXPECT_EQ(bytes("p.crd").substr(0, 56), littleDouble(2) + littleDouble(3.25) +
                                                littleDouble(2006 + 12.0 / 100 + 31.0 / 10000) +
                                                std::string(31, 'x') + '\0');
    file.reset();
    auto fresh = create(kNumericCrd, "new.crd");
    std::time_t now = std::time(nullptr);
    std::tm parts = *std::gmtime(&now);
    char today[32];
    std::strftime(today, sizeof today, "%Y.%m%d", &parts);
    EXPECT_EQ(fresh->headerDate, today);
}

TEST_F(CoordsTest, NumericNamesAndBounds) {
    auto file = create(kNumericCrd, "p.crd");
    auto errorOf = [&](const std::string& name, const std::string& description = "") {
        return file->Write(makePoint(name, 1, 2, 3, description), 0) ? 0 : file->error;
    };
    EXPECT_EQ(errorOf("99999"), 0);
    EXPECT_EQ(bytes("p.crd").size(), 100000u * 56);
    EXPECT_EQ(errorOf("100000"), 4);
    EXPECT_EQ(errorOf("007"), 5);
    EXPECT_EQ(errorOf("A1"), 5);
    EXPECT_EQ(errorOf(""), 3);
    EXPECT_EQ(errorOf("0"), 3);
    EXPECT_EQ(errorOf("-5"), 3);
    EXPECT_EQ(errorOf("99999999999"), 5);
    EXPECT_EQ(errorOf("5", std::string(32, 'x')), 8);
    EXPECT_EQ(errorOf("5", std::string(31, 'x')), 0);
    EXPECT_EQ(host_.printed,
              "\nError: Point number must be less than 100000."
              "\nError: pt# 007 invalid for current CRD format of numeric only point numbers."
              "\nError: pt# A1 invalid for current CRD format of numeric only point numbers."
              "\nError: Point number must be greater than 0."
              "\nError: Point number must be greater than 0."
              "\nError: Point number must be greater than 0."
              "\nError: pt# 99999999999 invalid for current CRD format of numeric only point numbers.");
    const char* names[] = {"123456", "", "007", "0", "99999", "1"};
    int results[] = {1, 2, 5, 3, 0, 0};
    for (size_t i = 0; i < std::size(names); ++i)
        EXPECT_EQ(file->ValidateName(names[i]), results[i]) << names[i];
    EXPECT_EQ(file->HighestAllowed(), "99999");
    EXPECT_EQ(file->LowestAllowed(), "1");
}

TEST_F(CoordsTest, NumericOriginIsNoHole) {
    auto file = create(kNumericCrd, "p.crd");
    file->Write(makePoint("1", 0, 0, 0), 0);
    file->Write(makePoint("2", 0, 0, 1e-6), 0);
    file->Write(makePoint("3", 0, 1, 1e-6), 0);
    EXPECT_EQ(bytes("p.crd").substr(56 + 16, 8), "\x8D\xED\xB5\xA0\xF7\xC6\xB0\x3E");
    double elevations[] = {0, 0, 1e-6};
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(file->Find(std::to_string(i + 1), point_, 0, 0));
        EXPECT_EQ(point_.elevation, elevations[i]);
    }
}

TEST_F(CoordsTest, NumericFind) {
    auto file = create(kNumericCrd, "p.crd");
    for (const char* name : {"3", "5", "9"}) file->Write(makePoint(name), 0);
    auto found = [&](const char* name, int direction) {
        return file->Find(name, point_, direction, 0) ? point_.name : "error " + std::to_string(file->error);
    };
    EXPECT_EQ(found("5", 0), "5");
    EXPECT_EQ(found("5x", 0), "5");
    EXPECT_EQ(found("4", 0), "error 10");
    EXPECT_EQ(found("4", 1), "5");
    EXPECT_EQ(found("4", -1), "3");
    EXPECT_EQ(found("2", -1), "error 10");
    EXPECT_EQ(found("10", -1), "9");
    EXPECT_EQ(found("0", 1), "3");
    EXPECT_EQ(host_.printed, "");
    EXPECT_EQ(found("10", 1), "error 10");
    EXPECT_EQ(found("abc", 0), "error 3");
    EXPECT_EQ(host_.printed,
              "\nRequested point number greater than highest in file.\nPoint numbers must be >= 1");
    found("5", 0);
    EXPECT_EQ(file->GetPosition(), 4);
    EXPECT_TRUE(file->Move(nullptr, point_, -1));
    EXPECT_EQ(point_.name, "3");
    EXPECT_FALSE(file->Move(nullptr, point_, -1));
    int32_t position = 4;
    EXPECT_TRUE(file->Move(&position, point_, 1));
    EXPECT_EQ(point_.name, "9");
    position = 3;
    EXPECT_FALSE(file->Move(&position, point_, 0));
}

TEST_F(CoordsTest, NumericLengthRulesOverTheHeader) {
    put("short.crd", littleDouble(100) + std::string(48, '\0') + slot(1, 2, 3, "A") + slot(4, 5, 6, "B"));
    auto file = open("short.crd");
    EXPECT_EQ(file->highestName, "100");
    EXPECT_FALSE(file->Find("50", point_, 0, 0));
    EXPECT_EQ(file->error, 23);
    EXPECT_TRUE(file->Write(makePoint("4"), 0));
    EXPECT_EQ(file->highestName, "4");
    EXPECT_EQ(bytes("short.crd").size(), 5u * 56);
    EXPECT_EQ(bytes("short.crd").substr(0, 8), littleDouble(4));

    put("long.crd", littleDouble(1) + std::string(48, '\0') + slot(1, 2, 3, "A") + slot(4, 5, 6, "B"));
    file = open("long.crd");
    EXPECT_TRUE(file->Write(makePoint("4"), 0));
    EXPECT_TRUE(file->Find("2", point_, 0, 0)) << "a slot that exists is not emptied";
    EXPECT_EQ(point_.description, "B");
}

// --- Alphanumeric -------------------------------------------------------------------------------------

TEST_F(CoordsTest, AlphanumericLayout) {
    put("p.crd", alphanumericHeader() + record("A9", 1, "first") + record("A10", 2) + record("P5", 3));
    auto file = open("p.crd");
    ASSERT_TRUE(file);
    EXPECT_EQ(file->format, 1);
    EXPECT_EQ(file->headerNumber, "12.500");
    EXPECT_EQ(file->headerDate, "06/21/2005");
    EXPECT_EQ(file->headerText, "Main St");
    EXPECT_EQ(file->lowestName, "A9");
    EXPECT_EQ(file->highestName, "P5");
    EXPECT_EQ(file->RecordCount(), 3);
    ASSERT_TRUE(file->Find(" a9 \n", point_, 0, 0));
    EXPECT_EQ(point_.description, "first");
    EXPECT_TRUE(file->Write(makePoint("b-1,x", 9, 2, 3, "Bär"), 0));
    EXPECT_TRUE(file->Write(makePoint("P5", 30, 2, 3), 0));
    EXPECT_TRUE(file->Write(makePoint("1", 5, 2, 3), 0));
    EXPECT_TRUE(file->Write(makePoint("zz", 6, 2, 3), 0));
    EXPECT_EQ(bytes("p.crd"), alphanumericHeader() + record("1", 5) + record("A9", 1, "first") +
                                  record("A10", 2) + record("B_1_X", 9, "B\xE4r") + record("P5", 30) +
                                  record("ZZ", 6));
    EXPECT_EQ(file->lowestName, "1");
    EXPECT_EQ(file->highestName, "ZZ");
    EXPECT_FALSE(file->Find("B-1,X", point_, 0, 1));
    ASSERT_TRUE(file->Find("B_1_x", point_, 0, 1));
    EXPECT_EQ(point_.description, "Bär");
}

TEST_F(CoordsTest, AlphanumericFind) {
    auto file = create(kAlphanumericCrd, "p.crd");
    auto found = [&](const char* name, int direction) {
        return file->Find(name, point_, direction, 0) ? point_.name : "error " + std::to_string(file->error);
    };
    for (int direction : {-1, 0, 1}) EXPECT_EQ(found("B", direction), "error 10");
    for (const char* name : {"B", "D", "F", "H"}) file->Write(makePoint(name), 0);
    EXPECT_EQ(found("D", 1), "D");
    EXPECT_EQ(found("E", 0), "error 10");
    EXPECT_EQ(found("E", 1), "F");
    EXPECT_EQ(found("E", -1), "D");
    EXPECT_EQ(found("A", 1), "B");
    EXPECT_EQ(found("A", -1), "error 10");
    EXPECT_EQ(found("I", -1), "H");
    EXPECT_EQ(found("I", 1), "error 10");
    EXPECT_EQ(found("G", 1), "H");
    EXPECT_EQ(found("C", -1), "B");
    // A search in vain is where a walk can begin.
    for (auto& [name, delta, reached] :
         {std::tuple{"A", 1, "B"}, std::tuple{"E", 1, "F"}, std::tuple{"I", -1, "H"}}) {
        EXPECT_EQ(found(name, 0), "error 10");
        ASSERT_TRUE(file->Move(nullptr, point_, delta));
        EXPECT_EQ(point_.name, reached);
    }
    EXPECT_EQ(host_.printed, "");
}

TEST_F(CoordsTest, AlphanumericRefusals) {
    auto file = create(kAlphanumericCrd, "p.crd");
    std::string before = bytes("p.crd");
    struct Case {
        std::string name, description;
        int error;
    };
    for (auto& [name, description, error] :
         {Case{"  ", "", 2}, Case{"TENLETTERS", "", 1}, Case{"A", std::string(32, 'd'), 8}}) {
        EXPECT_FALSE(file->Write(makePoint(name, 1, 2, 3, description), 0));
        EXPECT_EQ(file->error, error);
    }
    EXPECT_EQ(host_.printed, "\nInvalid point number: empty string.");
    EXPECT_EQ(bytes("p.crd"), before);
    EXPECT_TRUE(file->Write(makePoint("NINELETRS", 1, 2, 3, std::string(31, 'd')), 0));
    EXPECT_EQ(file->ValidateName("TENLETTERS"), 1);
    EXPECT_EQ(file->ValidateName(""), 2);
    EXPECT_EQ(file->ValidateName("A"), 0);
}

TEST_F(CoordsTest, AnOlderFileIsSortedWhenItIsOpened) {
    std::string records =
        record("P10", 1) + record("A", 2, "first A") + record("P9", 3) + record("a", 4, "second A");
    put("p.crd", alphanumericHeader("New CRD Format") + records + "rest");
    EXPECT_EQ(DetectFormat(folder_("p.crd")), 1);
    auto file = open("p.crd");
    ASSERT_TRUE(file);
    EXPECT_EQ(bytes("p.crd"), alphanumericHeader() + record("A", 2, "first A") + record("a", 4, "second A") +
                                  record("P9", 3) + record("P10", 1) + "rest");
    EXPECT_EQ(file->highestName, "P10");
    EXPECT_FALSE(open("p.crd")) << "the new file is held as the old one was";
    file.reset();
    put("empty.crd", alphanumericHeader("New CRD Format"));
    EXPECT_TRUE(open("empty.crd"));
    EXPECT_EQ(bytes("empty.crd"), alphanumericHeader("New CRD Format"));
}

// Many at once give the bytes that single writes give.
TEST_F(CoordsTest, WritingManyIsWritingEach) {
    std::vector<PointRecord> points;
    for (int i = 0; i < 700; ++i) {
        int n = i * 7919 % 501;
        points.push_back(makePoint((n % 3   ? "P"
                                    : n % 2 ? "q"
                                            : "") +
                                       std::to_string(n),
                                   i, n, 0.5, i % 50 ? "oak" : ""));
    }
    points.push_back(makePoint("", 1));
    points.push_back(makePoint("MUCH_TOO_LONG", 1));
    auto singly = create(kAlphanumericCrd, "single.crd"), bulk = create(kAlphanumericCrd, "bulk.crd");
    for (auto* file : {singly.get(), bulk.get()}) {
        file->Write(makePoint("P7", 1, 1, 1, "old"), 0);
        file->Write(makePoint("X", 1, 1, 1, "old"), 0);
        file->SetHeaderText("kept");
    }
    for (const PointRecord& p : points) singly->Write(p, 1);
    EXPECT_EQ(bulk->WriteAll(points, 1), 700u);
    EXPECT_EQ(bulk->error, 1);
    std::string one = bytes("single.crd");
    EXPECT_EQ(one, bytes("bulk.crd"));
    EXPECT_EQ(bulk->highestName, singly->highestName);
}

// --- Both ---------------------------------------------------------------------------------------------

TEST_F(CoordsTest, WhatKindOfFileItIs) {
    auto detect = [&](const std::string& name, const std::string& content) {
        put(name, content);
        return DetectFormat(folder_(name));
    };
    std::string indexed = "a" + std::string(60, ' ');
    EXPECT_EQ(detect("a.crd", ""), -1);
    EXPECT_EQ(DetectFormat(folder_("none.crd")), -1);
    EXPECT_EQ(DetectFormat("/no/such/folder/x.DWG"), 7);
    EXPECT_EQ(detect("a.crd", std::string(56, '\0')), 0);
    EXPECT_EQ(detect("a.crd", alphanumericHeader()), 1);
    EXPECT_EQ(detect("a.crd", alphanumericHeader().substr(0, 103)), 0);
    EXPECT_EQ(detect("a.zak", "anything"), 5);
    EXPECT_EQ(detect("a.MDB", "anything"), 6);
    EXPECT_EQ(detect("i.crd", indexed + "XX"), -2);
    put("i.idx", "");
    EXPECT_EQ(detect("i.crd", indexed + "XX"), 4);
    EXPECT_EQ(detect("i.crd", std::string(200, 'a') + std::string(48, ' ') + "XX"), 4);
    EXPECT_EQ(detect("i.crd", std::string(200, 'a') + std::string(49, ' ') + "XX"), 0);
    put("i.zgi", "");
    EXPECT_EQ(detect("i.zgc", indexed + "XXX"), 3);

    host_.newFormat = 4;
    EXPECT_EQ(FormatOfNewFile("x.crd"), 4);
    host_.newFormat = 6;
    EXPECT_EQ(FormatOfNewFile("x.crd"), 1);
    SetFixedFormat(0);
    EXPECT_EQ(FormatOfNewFile("x.CRD"), 0);
    SetFixedFormat(std::nullopt);
    const char* names[] = {"x.zgc", "x.mdb", "x.zak", "x.dwg", "x.txt"};
    int formats[] = {3, 6, 5, 7, -1};
    for (size_t i = 0; i < std::size(names); ++i) EXPECT_EQ(FormatOfNewFile(names[i]), formats[i]);
}

TEST_F(CoordsTest, WorkingForm) {
    PointRecord p = makePoint("1", 1, 2, 0.0, "TP/oak");
    ToWorkingForm(p, kAlphanumericCrd);
    EXPECT_EQ(p.elevation, 0.0) << "the working format's own files are as they are";
    ToWorkingForm(p, kNumericCrd);
    EXPECT_EQ(p.elevation, kNoElevation);
    EXPECT_EQ(p.attribute, "TP");
    EXPECT_EQ(p.description, "oak");
    ToFileForm(p, kNumericCrd);
    EXPECT_EQ(p.elevation, 0.0);
    EXPECT_EQ(p.attribute, "");
    EXPECT_EQ(p.description, "TP/oak");
    p = makePoint("1", 1, 2, 0.0, "long/oak");
    ToFileForm(p, kNumericCrd);
    EXPECT_EQ(p.elevation, 1e-50);
    ToWorkingForm(p, kNumericCrd);
    EXPECT_EQ(p.elevation, 0.0);
    EXPECT_EQ(p.description, "long/oak");
    p = makePoint("1", 1, 2, kNoElevation, "T/oak");
    ToFileForm(p, kModuleMdb);
    EXPECT_EQ(p.elevation, -1e20);
    ToWorkingForm(p, kModuleMdb);
    EXPECT_EQ(p.elevation, kNoElevation);
    EXPECT_EQ(p.attribute, "T");
    ToFileForm(p, kIndexedZgc);
    EXPECT_EQ(p.elevation, kNoElevation);
    EXPECT_EQ(p.attribute, "T");
}

class AnyFile : public CoordsTest, public testing::WithParamInterface<int> {
  protected:
    AnyFile() : name_(GetParam() == kIndexedZgc ? "site.v1.zgc" : "site.v1.crd") {}
    std::string name_;
};

TEST_P(AnyFile, LinesInFrontOfTheFirstNoteStay) {
    auto file = create(GetParam(), name_);
    for (int i = 1; i <= 3; ++i) file->Write(makePoint(std::to_string(i)), 0);
    const std::string preface = "; Job 12\r\n  " + std::string(400, '-') + "\r\n\n";
    put("site.not", preface + "PT_ID:1\none\nPT_ID:2\ntwo\n");
    EXPECT_EQ(file->RemoveRange("2", nullptr, 0), 1);
    EXPECT_EQ(bytes("site.not"), preface + "PT_ID:1\none\n");
    EXPECT_EQ(file->RemoveRange("1", nullptr, 0), 1);
    EXPECT_EQ(bytes("site.not"), preface);
    EXPECT_EQ(file->RemoveRange("3", nullptr, 0), 1);
    EXPECT_EQ(bytes("site.not"), preface);
}

TEST_P(AnyFile, RemovingTakesPointsAndTheirNotes) {
    auto file = create(GetParam(), name_);
    for (int i = 1; i <= 9; ++i)
        file->Write(makePoint(std::to_string(i), i, i, i, i % 2 ? "OAK tree" : "pole"), 0);
    file->SetHeaderText("text");
    file->SetHeaderNumber("4.5");
    put("site.not",
        "PT_ID:2  GIS_FILE:POLE.GIS\nold\nPT_ID:3\n  Height,5  \r\nPT_ID:7\nseven\nPT_ID:2\nStatus,FIXED\n");
    EXPECT_EQ(file->RemoveRange("5-2,100", "oak*", 0), 2);
    EXPECT_EQ(namesOf(*file), "1 2 4 6 7 8 9");
    EXPECT_EQ(bytes("site.not"), "PT_ID:7\nseven\nPT_ID:2\nStatus,FIXED\n")
        << "the notes of point 2 stay, as it does";
    EXPECT_EQ(file->headerText, "text");
    EXPECT_EQ(std::stod(file->headerNumber), 4.5);
    EXPECT_EQ(file->RemoveRange("50-60", nullptr, 0), 0);
    EXPECT_EQ(file->Remove("9", 0), 1);
    EXPECT_EQ(file->highestName, "8");
    EXPECT_TRUE(file->Pack());
    EXPECT_EQ(namesOf(*file), "1 2 4 6 7 8");
    EXPECT_EQ(file->RemoveRange(nullptr, nullptr, 0), 6);
    EXPECT_EQ(namesOf(*file), "");
    EXPECT_FALSE(files::exists(folder_("site.not"))) << "a file of notes without notes goes";
    EXPECT_FALSE(files::exists(folder_("site.v1_.crd")));
    EXPECT_EQ(host_.printed + host_.alerts, "");
}

TEST_P(AnyFile, CopiesRenamesAndDeletes) {
    auto file = create(GetParam(), name_);
    file->Write(makePoint("1", 1), 0);
    std::string first = name_, copy = "copy" + files::extensionOf(name_),
                extension = "." + files::extensionOf(name_);
    copy = "copy" + extension;
    ASSERT_TRUE(file->CopyFile(folder_(copy)));
    EXPECT_EQ(file->path, folder_(copy));
    file->Write(makePoint("2", 2), 0);
    ASSERT_TRUE(file->RenameFile(folder_("renamed" + extension)));
    EXPECT_EQ(namesOf(*file), "1 2");
    EXPECT_FALSE(files::exists(folder_(copy)));
    put("taken" + extension, "somebody's points");
    for (const std::string& target : {"no/such/folder" + extension, "taken" + extension}) {
        EXPECT_FALSE(file->RenameFile(folder_(target)));
        EXPECT_EQ(file->error, 26);
    }
    EXPECT_EQ(bytes("taken" + extension), "somebody's points");
    EXPECT_EQ(namesOf(*file), "1 2");
    auto original = open(first);
    ASSERT_TRUE(original);
    EXPECT_EQ(namesOf(*original), "1");
    EXPECT_FALSE(file->CopyFile(folder_("no/such/folder" + extension)));
    EXPECT_FALSE(file->CopyFile(folder_(first))) << "somebody works with it";
    EXPECT_EQ(namesOf(*file), "1 2");
    EXPECT_TRUE(original->DeleteFile());
    EXPECT_FALSE(files::exists(folder_(first)));
}

// A folder with a dot in its name does not lead to the notes of another file.
TEST_P(AnyFile, ANewFileHasNoNotes) {
    std::filesystem::create_directory(folder_("v1.2"));
    put("v1.not", "keep");
    put("v1.2/site.not", "go");
    auto file = create(GetParam(), "v1.2/" + name_);
    EXPECT_TRUE(files::exists(folder_("v1.not")));
    EXPECT_FALSE(files::exists(folder_("v1.2/site.not")));
}

INSTANTIATE_TEST_SUITE_P(Formats, AnyFile,
                         testing::Values(kNumericCrd, kAlphanumericCrd, kIndexedZgc, kIndexedCrd));

}  // namespace
