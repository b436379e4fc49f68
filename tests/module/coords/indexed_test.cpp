// Indexed files: the layout of the data, and an index that follows it whatever happens.
#include <fstream>
#include <random>
#include <set>

#include "module/coords/indexed_file.h"
#include "module/coords/point_names.h"
#include "tests/module/coords/coords_fixture.h"

using namespace norvane;

namespace {

TEST_F(CoordsTest, IndexedLayout) {
    auto file = create(kIndexedZgc, "p.zgc");
    PointRecord p = makePoint("a-1", 1.5, 2.5, 3.5, "Bär");
    p.attribute = "TREE";
    ASSERT_TRUE(file->Write(p, 0));
    std::string content = bytes("p.zgc");
    ASSERT_EQ(content.size(), 288u + 144);
    EXPECT_EQ(content[0], 'a');
    EXPECT_EQ(content.find("XX", 50), 50u);
    EXPECT_EQ(content.substr(50, 6), padded("XXX", 6));
    EXPECT_EQ(content.substr(56, 6), padded("VER 3", 6));
    EXPECT_EQ(content.substr(288), padded("A_1", 11) + padded("TREE", 5) + littleDouble(1.5) +
                                       littleDouble(2.5) + littleDouble(3.5) + padded("B\xE4r", 104));
    file.reset();
    EXPECT_EQ(DetectFormat(folder_("p.zgc")), 3);
    file = open("p.zgc");
    ASSERT_TRUE(file);
    ASSERT_TRUE(file->Find("A-1", point_, 0, 0));
    EXPECT_EQ(point_.name, "A_1");
    EXPECT_EQ(point_.attribute, "TREE");
    EXPECT_EQ(point_.description, "Bär");
    EXPECT_EQ(create(kIndexedCrd, "p.crd")->format, 4);
    EXPECT_EQ(bytes("p.crd").substr(50, 6), padded("XX", 6));
    EXPECT_EQ(DetectFormat(folder_("p.crd")), 4);
    EXPECT_TRUE(files::exists(folder_("p.idx")));
    files::remove(folder_("p.idx"));
    EXPECT_EQ(DetectFormat(folder_("p.crd")), -2);
}

TEST_F(CoordsTest, IndexedRefusals) {
    auto file = create(kIndexedZgc, "p.zgc");
    auto errorOf = [&](const std::string& name, const std::string& description,
                       const std::string& attribute) {
        PointRecord p = makePoint(name, 1, 2, 3, description);
        p.attribute = attribute;
        return file->Write(p, 0) ? 0 : file->error;
    };
    EXPECT_EQ(errorOf("TENLETTERS", std::string(31, 'd'), "FOUR"), 0);
    EXPECT_EQ(errorOf("ELEVENCHARS", "", ""), 1);
    EXPECT_EQ(errorOf(" ", "", ""), 5);
    EXPECT_EQ(errorOf("A", std::string(32, 'd'), ""), 8);
    EXPECT_EQ(errorOf("A", "", "FIVE5"), 9);
    EXPECT_FALSE(file->Find("", point_, 0, 0));
    EXPECT_EQ(file->error, 2);
    EXPECT_FALSE(file->Find(std::string(256, 'x'), point_, 0, 0));
    EXPECT_EQ(file->error, 1);
    EXPECT_FALSE(file->Move(nullptr, point_, 2));
    EXPECT_EQ(file->error, 50);
    IndexedFile other(kIndexedZgc);
    EXPECT_FALSE(other.Create(folder_("p.dat"), 31));
    EXPECT_EQ(other.error, 23);
    EXPECT_TRUE(other.Create(folder_("wide.zgc"), 500));
    EXPECT_EQ(other.MaxDescriptionLength(), 101);
}

TEST_F(CoordsTest, ManyAtOnceStandInTheOrderOfTheirNames) {
    auto file = create(kIndexedZgc, "p.zgc");
    std::vector<PointRecord> points = {makePoint("A10", 1), makePoint("a9", 2), makePoint("", 3),
                                       makePoint("B1", 4), makePoint("A9", 5)};
    EXPECT_EQ(file->WriteAll(points, 1), 4u);
    EXPECT_EQ(file->error, 5);
    std::string content = bytes("p.zgc");
    ASSERT_EQ(content.size(), 288u + 3 * 144);
    EXPECT_EQ(content.substr(288, 11), padded("A9", 11));
    EXPECT_EQ(content.substr(288 + 144, 11), padded("A10", 11));
    EXPECT_EQ(content.substr(288 + 288, 11), padded("B1", 11));
    // Of the two of one name the later one counts.
    ASSERT_TRUE(file->Find("A9", point_, 0, 0));
    EXPECT_EQ(point_.northing, 5);
}

TEST_F(CoordsTest, FewerThanEightIndexedFilesAtOnce) {
    std::vector<std::unique_ptr<CoordinateFile>> files;
    auto name = [&](int i) { return folder_(std::to_string(i) + ".zgc"); };
    for (int i = 0; i < 7; ++i) {
        files.push_back(MakeCoordinateFile(kIndexedZgc));
        ASSERT_TRUE(files.back()->Create(name(i), 31)) << i;
    }
    IndexedFile eighth(kIndexedZgc);
    EXPECT_FALSE(eighth.Create(name(8), 31));
    EXPECT_EQ(eighth.error, 30);
    files[2].reset();
    EXPECT_TRUE(eighth.Create(name(8), 31));
}

TEST(RecordStore, GivesOutTheLowestFreePairOfNumbers) {
    ScratchFolder folder;
    RecordStore stores[3];
    int numbers[] = {1, 3, 5};
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(
            stores[i].create(folder(std::to_string(i) + ".zgc"), folder(std::to_string(i) + ".zgi"), {}), 1);
        EXPECT_EQ(stores[i].dataFileNumber(), numbers[i]);
        EXPECT_EQ(stores[i].indexFileNumber(), numbers[i] + 1);
    }
    stores[1].close();
    ASSERT_EQ(stores[1].open(folder("1.zgc"), folder("1.zgi")), 1);
    EXPECT_EQ(stores[1].dataFileNumber(), 3);
}

// Against a set in memory, with files closed and opened in between.
TEST_F(CoordsTest, IndexedFollowsASetOfNames) {
    auto less = [](const std::string& a, const std::string& b) { return CompareNames(a, b) < 0; };
    std::set<std::string, decltype(less)> model(less);
    std::mt19937 random(3);
    auto file = create(kIndexedZgc, "p.zgc");
    for (int step = 0; step < 3000; ++step) {
        std::string name = (random() % 2 ? "P" : "") + std::to_string(random() % 200);
        switch (random() % 6) {
            case 0:
                EXPECT_EQ(file->Remove(name, 1), static_cast<int>(model.erase(name)));
                break;
            case 1: {
                int direction = static_cast<int>(random() % 3) - 1;
                auto at = model.lower_bound(name);
                bool exact = at != model.end() && *at == name;
                std::string expected = exact ? name : "";
                if (!exact && direction > 0 && at != model.end()) expected = *at;
                if (!exact && direction < 0 && at != model.begin()) expected = *--at;
                EXPECT_EQ(file->Find(name, point_, direction, 1) ? point_.name : "", expected);
                break;
            }
            case 2:
                if (random() % 20) break;
                file.reset();
                if (random() % 2) files::remove(folder_("p.zgi")), put("p.zgi", "no index");
                file = open("p.zgc");
                ASSERT_TRUE(file);
                EXPECT_EQ(file->lowestName, model.empty() ? "" : *model.begin());
                EXPECT_EQ(file->highestName, model.empty() ? "" : *model.rbegin());
                break;
            default:
                EXPECT_TRUE(file->Write(makePoint(name, step), 0));
                model.insert(name);
        }
    }
    std::string names;
    for (const std::string& name : model) names += (names.empty() ? "" : " ") + name;
    EXPECT_EQ(namesOf(*file), names);
    EXPECT_EQ(file->RecordCount(), static_cast<long>(model.size()));
    size_t before = bytes("p.zgc").size();
    EXPECT_TRUE(file->Pack());
    EXPECT_EQ(namesOf(*file), names);
    EXPECT_LT(bytes("p.zgc").size(), before);
}

TEST_F(CoordsTest, AnIndexOfAnotherFileIsMadeAnew) {
    for (const char* name : {"1", "2"}) {
        auto file = create(kIndexedZgc, std::string(name) + ".zgc");
        for (const char* point : {"A", "B", "C"}) file->Write(makePoint(std::string(point) + name), 0);
    }
    std::filesystem::copy_file(folder_("2.zgi"), folder_("1.zgi"),
                               std::filesystem::copy_options::overwrite_existing);
    auto file = open("1.zgc");
    ASSERT_TRUE(file);
    EXPECT_EQ(namesOf(*file), "A1 B1 C1");
    EXPECT_EQ(file->highestName, "C1");
}

TEST_F(CoordsTest, WhatIsNoIndexedFileIsRefused) {
    create(kIndexedZgc, "p.zgc")->Write(makePoint("1"), 0);
    std::string whole = bytes("p.zgc");
    for (size_t cut : {size_t{10}, size_t{100}, size_t{287}}) {
        put("p.zgc", whole.substr(0, cut));
        IndexedFile file(kIndexedZgc);
        EXPECT_FALSE(file.Open(folder_("p.zgc")));
        EXPECT_EQ(file.error, 6);
        EXPECT_EQ(bytes("p.zgc"), whole.substr(0, cut));
    }
    std::string newer = whole;
    newer[60] = '9';
    put("p.zgc", newer);
    EXPECT_FALSE(IndexedFile(kIndexedZgc).Open(folder_("p.zgc")));
    // Half a record at the end does not count, and the next point takes its place.
    put("p.zgc", whole + std::string(100, 'x'));
    files::remove(folder_("p.zgi"));
    IndexedFile file(kIndexedZgc);
    ASSERT_TRUE(file.Open(folder_("p.zgc")));
    EXPECT_TRUE(file.Write(makePoint("2"), 0));
    EXPECT_EQ(namesOf(file), "1 2");
}

}  // namespace
