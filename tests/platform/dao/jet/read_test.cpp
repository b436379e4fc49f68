// Reading the files that Access and others have made.
#include <gtest/gtest.h>

#include <fstream>
#include <random>

#include "tests/platform/dao/jet/given_files.h"
#include "tests/platform/dao/jet/soundness.h"
#include "tests/platform/dao/scratch.h"

namespace jet {
namespace {

// The values of a record by the names of their columns.
class Record {
  public:
    Record(Database& db, const std::string& table, const std::string& key, const std::string& wanted) {
        std::shared_ptr<Records> records = db.records(table);
        for (Walk walk(records); walk.next();) {
            size_t column = static_cast<size_t>(records->definition().columnNamed(key));
            if (dao::toText(walk.value(column)) != wanted) continue;
            definition_ = records->definition();
            values_ = records->read(walk.row());
            return;
        }
    }
    Value operator[](const std::string& column) const {
        int position = definition_.columnNamed(column);
        return position < 0 ? Value("no such column") : values_[static_cast<size_t>(position)];
    }

  private:
    TableDefinition definition_;
    std::vector<Value> values_;
};

TEST(JetRead, BothVersionsOfTheSampleDatabase) {
    if (givenFiles().empty()) GTEST_SKIP() << "the given files are not here";
    for (const char* name : {"output_97.mdb", "output_2000.mdb"}) {
        Database db(givenFile(name), {.readOnly = true});
        Database::Reading reading(db);
        EXPECT_EQ(db.version() == Version::kAccess97, std::string(name) == "output_97.mdb");
        Record pole(db, "POLES", "PT_ID", "P005");
        EXPECT_EQ(dao::toText(pole["NOTES"]).size(), 9000u);
        EXPECT_EQ(pole["GIS_KEY"], Value("POLE"));
        EXPECT_TRUE(pole["IN_SERVICE"].is<bool>());
        EXPECT_TRUE(pole["DIAMETER"].is<float>());
        std::vector<std::string> indexes;
        for (const Index& index : db.indexes("TREE")) {
            indexes.push_back(index.name);
            for (const Index::Part& part : index.columns)
                indexes.back() += " " + part.column + (part.ascending ? "" : " down");
        }
        EXPECT_EQ(indexes,
                  (std::vector<std::string>{"PT_ID_IDX PT_ID", "SPECIES_HEIGHT SPECIES HEIGHT down"}));
        EXPECT_TRUE(db.indexes("PARCEL")[0].primary);
        std::shared_ptr<Records> parcels = db.records("PARCEL");
        EXPECT_EQ(parcels->definition().rows, 387u);
        EXPECT_EQ(parcels->definition().counter, 400u);
    }
}

TEST(JetRead, PropertiesOfColumns) {
    if (givenFiles().empty()) GTEST_SKIP() << "the given files are not here";
    for (const char* name : {"template_97.mdb", "template_2000.mdb"}) {
        Database db(givenFile(name), {.readOnly = true});
        std::vector<Column> links = db.columns("zgeo_links");
        ASSERT_EQ(links.size(), 4u);
        EXPECT_EQ(links[3].name, "IS_CURRENT");
        EXPECT_EQ(links[3].validationRule, "\"YES\" Or \"NO\"");
        EXPECT_EQ(links[3].defaultValue, "\"NO\"");
        EXPECT_EQ(links[3].size, 255);
        std::vector<Column> prompts = db.columns("ZGEO_SMART_PROMPTING");
        EXPECT_TRUE(prompts[0].autonumber);
        EXPECT_FALSE(prompts[1].allowZeroLength);
        EXPECT_TRUE(prompts[5].allowZeroLength);
    }
}

TEST(JetRead, WhatIsNoAccessFileIsRefused) {
    ScratchFolder folder;
    std::ofstream(folder("text.mdb")) << "not a database";
    std::ofstream(folder("new.accdb"), std::ios::binary)
        << std::string("\0\1\0\0Standard ACE DB\0\2\0\0\0", 24);
    EXPECT_EQ(refusal([&] { readAll(folder("text.mdb")); }),
              "The file \"" + folder("text.mdb") + "\" is no Access database.");
    EXPECT_NE(refusal([&] { readAll(folder("new.accdb")); }).find("later version"), std::string::npos);
    EXPECT_NE(refusal([&] { readAll(folder("missing.mdb")); }).find("No such file"), std::string::npos);
}

// A damaged file gives an error or what can be read of it, whatever the damage is.
class Damage : public ::testing::Test {
  protected:
    void SetUp() override {
        if (givenFiles().empty()) GTEST_SKIP() << "the given files are not here";
    }
    static std::string read(const std::string& path) {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    // Whether the damage was noticed.
    bool noticed(const std::string& content) {
        std::string path = folder("damaged.mdb");
        writeFile(path, content);
        bool error = false;
        try {
            Database db(path, {.readOnly = true});
            error = !check(db).empty();
            readAll(path);
        } catch (const Error&) {
            error = true;
        }
        EXPECT_EQ(read(path) == content, true) << "reading has written";
        return error;
    }
    ScratchFolder folder;
    std::mt19937 random{20040531};
};

TEST_F(Damage, FilesThatAreCut) {
    for (const char* name :
         {"foreign/delTestV1997.mdb", "foreign/overflowTestV2000.mdb", "template_97.mdb"}) {
        std::string whole = read(givenFile(name));
        // In the first page anywhere, then within pages and between them.
        for (size_t size = 0; size < 200; size += 7)
            EXPECT_TRUE(noticed(whole.substr(0, size))) << name << size;
        for (size_t size = 2048; size < whole.size(); size += 2048)
            for (size_t cut : {size - 1, size, size + 1 + random() % 2046})
                EXPECT_TRUE(noticed(whole.substr(0, cut))) << name << " " << cut;
    }
}

TEST_F(Damage, PagesOfNoise) {
    for (const char* name : {"foreign/compIndexTestV1997.mdb", "foreign/test2V2000.mdb", "output_97.mdb",
                             "foreign/indexTestV2000.mdb"}) {
        std::string whole = read(givenFile(name));
        size_t pageSize = name[std::string(name).find(".mdb") - 1] == '7' ? 2048 : 4096;
        size_t errors = 0;
        for (size_t page = 0; page < whole.size() / pageSize; ++page) {
            std::string damaged = whole;
            for (size_t i = 0; i < pageSize; ++i) damaged[page * pageSize + i] = static_cast<char>(random());
            errors += noticed(damaged);
        }
        EXPECT_GT(errors, 5u) << name;
    }
}

// Every link from page to page leads back to where it came from, or to another page of the kind.
TEST_F(Damage, CyclesInPageChains) {
    for (const char* name : {"output_97.mdb", "foreign/compIndexTestV1997.mdb", "foreign/test2V2000.mdb"}) {
        std::string whole = read(givenFile(name));
        bool is97 = whole[0x14] == 0;
        size_t pageSize = is97 ? 2048 : 4096, errors = 0, links = 0;
        auto link = [&](size_t page, size_t at, size_t to) {
            std::string damaged = whole;
            for (size_t i = 0; i < 4; ++i)
                damaged[page * pageSize + at + i] = static_cast<char>(to >> (8 * i));
            errors += noticed(damaged);
            ++links;
        };
        for (size_t page = 2; page < whole.size() / pageSize; ++page) {
            auto kind = static_cast<PageType>(whole[page * pageSize]);
            if (kind == PageType::kDefinition) link(page, 4, page);
            if (kind != PageType::kNode && kind != PageType::kLeaf) continue;
            const Format& format = is97 ? kJet3 : kJet4;
            for (size_t at : {format.indexPreviousAt, format.indexNextAt}) link(page, at, page);
            if (kind == PageType::kNode) link(page, format.indexTailAt, page);
        }
        EXPECT_GT(links, 20u) << name;
        EXPECT_GT(errors, links / 3)
            << name << ": a short definition has no use for its link, and a free page for none";
    }
}

TEST_F(Damage, SingleBytesAndWords) {
    for (const char* name : {"foreign/delColTestV1997.mdb", "foreign/indexTestV2000.mdb"}) {
        std::string whole = read(givenFile(name));
        for (int round = 0; round < 1500; ++round) {
            std::string damaged = whole;
            for (int changes = 1 + static_cast<int>(random() % 4); changes > 0; --changes) {
                // Mostly where pages have their counts and pointers.
                size_t at = random() % whole.size();
                if (random() % 2) at = at / 2048 * 2048 + random() % 64;
                damaged[at] = static_cast<char>(random() % 3 ? random() : 0xFF);
            }
            noticed(damaged);
        }
    }
}

}  // namespace
}  // namespace jet
