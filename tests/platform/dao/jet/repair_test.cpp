// Compacting damaged files: what can be read is saved, what is lost is told, and the result is sound.
#include "platform/dao/jet/repair.h"

#include <gtest/gtest.h>

#include <fstream>
#include <random>

#include "platform/dao/jet/check.h"
#include "tests/platform/dao/jet/given_files.h"
#include "tests/platform/dao/jet/readers.h"

namespace jet {
namespace {

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

// Two tables with memos and indexes, in both versions.
class Repair : public ::testing::TestWithParam<Version> {
  protected:
    void SetUp() override {
        Database::create(path, GetParam());
        Database db(path, {});
        pageSize = db.store().format.pageSize;
        Column id, name, note;
        id.name = "ID";
        id.type = Type::kLong;
        id.autonumber = true;
        name.name = "NAME";
        name.size = 60;
        name.defaultValue = "\"none\"";
        note.name = "NOTE";
        note.type = Type::kMemo;
        db.begin();
        for (const char* table : {"POLES", "TREES"}) {
            db.createTable(table, {id, name, note});
            db.createIndex(table, {.name = "PK", .columns = {{"ID"}}, .primary = true});
            db.createIndex(table, {.name = "NAMES", .columns = {{"NAME"}}});
            std::shared_ptr<Records> records = db.records(table);
            for (int i = 0; i < 300; ++i) {
                std::vector<Value> values = {
                    Value(), Value("Name " + std::to_string(i * 7 % 300)),
                    i % 30 ? Value("short") : Value(std::string(5000, static_cast<char>('a' + i / 30)))};
                RowId row = records->insert(values);
                if (i % 50 == 0)
                    records->update(row, {Value(), Value(std::string(60, 'm')), Value()},
                                    {false, true, false});
            }
            poles = records->definition();
        }
        poles = db.records("POLES")->definition();
        db.commit();
    }

    // Damages pages of the file, by their numbers, with noise.
    void overwrite(std::initializer_list<uint32_t> pages, unsigned seed = 1) {
        std::mt19937 random(seed);
        std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
        for (uint32_t page : pages) {
            std::string noise(pageSize, '\0');
            for (char& c : noise) c = static_cast<char>(random());
            file.seekp(static_cast<long>(page * pageSize));
            file.write(noise.data(), static_cast<long>(noise.size()));
        }
    }
    std::string losses() {
        report = compactAndRepair(path, {});
        std::string all;
        for (const std::string& loss : report.losses) all += loss + "\n";
        Database db(path, {});
        EXPECT_EQ(check(db), std::vector<std::string>()) << all;
        EXPECT_EQ(report.kept.empty(), report.losses.empty());
        EXPECT_EQ(report.bytesAfter, std::filesystem::file_size(path));
        EXPECT_FALSE(std::filesystem::exists(path + ".compact"));
        return all;
    }
    void TearDown() override { EXPECT_EQ(disagreement(path), ""); }
    size_t rowsOf(const std::string& table) {
        Database db(path, {});
        size_t count = 0;
        for (Walk walk(db.records(table)); walk.next();) ++count;
        return count;
    }
    bool has(const std::string& table) { return Database(path, {}).hasTable(table); }
    uint32_t dataPage() {
        Database db(path, {});
        Database::Reading reading(db);
        return UsageMap(db.store().file, poles.owned).pages()[1];
    }

    ScratchFolder folder;
    std::string path = folder("survey.mdb");
    size_t pageSize = 0;
    TableDefinition poles;
    CompactReport report;
};
INSTANTIATE_TEST_SUITE_P(Versions, Repair, ::testing::Values(Version::kAccess97, Version::kAccess2000),
                         [](const auto& version) {
                             return version.param == Version::kAccess97 ? "Access97" : "Access2000";
                         });

TEST_P(Repair, ASoundFileLosesNothing) {
    std::string before = outputOf(NORVANE_BIN_DIR "/jet dump '" + path + "' POLES");
    EXPECT_EQ(losses(), "");
    EXPECT_EQ(outputOf(NORVANE_BIN_DIR "/jet dump '" + path + "' POLES"), before);
    EXPECT_LE(report.bytesAfter, report.bytesBefore);
}

// Other programs read such a table, since each row says how many values it has places for.
TEST_P(Repair, ACountOfVariableColumnsThatIsTooLow) {
    const std::string dump = NORVANE_BIN_DIR "/jet dump '" + path + "' POLES";
    const std::string before = outputOf(dump);
    size_t countAt = poles.page * pageSize + Database(path, {}).store().format.definitionTypeAt + 3;
    auto countOnDisk = [&] { return static_cast<int>(readFile(path)[countAt]); };
    ASSERT_EQ(countOnDisk(), 2);
    for (char count : {1, 0}) {
        std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
        file.seekp(static_cast<long>(countAt));
        file.put(count);
        file.close();
        EXPECT_EQ(outputOf(dump), before);
        EXPECT_EQ(outputOf(NORVANE_BIN_DIR "/jet sql '" + path +
                           "' \"UPDATE POLES SET NAME = 'Name 7' WHERE NAME = 'Name 7'\""),
                  "");
        EXPECT_EQ(losses(), "");
        EXPECT_EQ(outputOf(dump), before);
        countAt = Database(path, {}).records("POLES")->definition().page * pageSize + countAt % pageSize;
        EXPECT_EQ(countOnDisk(), 2);
    }
}

TEST_P(Repair, WhatCanBeMadeAnewIsNoLoss) {
    // Indexes, maps, and the rights of users.
    overwrite({poles.indexes[0].root});
    EXPECT_EQ(losses(), "");
    overwrite({kGlobalMapPage, kAccessPage});
    EXPECT_EQ(losses(), "");
    EXPECT_EQ(rowsOf("POLES") + rowsOf("TREES"), 600u);
    Database db(path, {});
    EXPECT_TRUE(db.indexes("POLES")[1].primary);
    EXPECT_EQ(db.columns("POLES")[1].defaultValue, "\"none\"");
}

TEST_P(Repair, APageOfRecords) {
    std::string damaged;
    uint32_t page = dataPage();
    overwrite({page});
    damaged = readFile(path);
    std::string told = losses();
    size_t left = rowsOf("POLES");
    EXPECT_LT(left, 300u);
    EXPECT_GT(left, 150u);
    EXPECT_NE(told.find("POLES: " + std::to_string(300 - left) + " records are lost, of 300.\n"),
              std::string::npos)
        << told;
    EXPECT_EQ(told.find("TREES"), std::string::npos) << told;
    EXPECT_EQ(rowsOf("TREES"), 300u);
    EXPECT_EQ(report.kept, path + ".damaged");
    EXPECT_TRUE(readFile(report.kept) == damaged) << "the damaged file is kept";
}

TEST_P(Repair, APageOfMemos) {
    uint32_t page;
    {
        Database db(path, {});
        Database::Reading reading(db);
        page = UsageMap(db.store().file, poles.longValues[0].owned).pages()[1];
    }
    overwrite({page});
    std::string told = losses();
    EXPECT_NE(told.find("lost in NOTE, and Null now."), std::string::npos) << told;
    EXPECT_EQ(rowsOf("POLES"), 300u);
}

TEST_P(Repair, ADefinition) {
    overwrite({poles.page});
    EXPECT_EQ(losses(), "The table POLES is lost: its definition cannot be read.\n");
    EXPECT_FALSE(has("POLES"));
    EXPECT_EQ(rowsOf("TREES"), 300u);
}

TEST_P(Repair, TheCatalogue) {
    overwrite({kObjectsPage});
    EXPECT_EQ(losses(), "The catalogue has lost its definition; that of a new database was taken.\n");
    EXPECT_EQ(rowsOf("POLES") + rowsOf("TREES"), 600u);
    // Its records: tables are found by their definitions, and have no names then.
    uint32_t page;
    {
        Database db(path, {});
        Database::Reading reading(db);
        page = UsageMap(db.store().file, readDefinition(db.store(), kObjectsPage).owned).pages()[0];
    }
    overwrite({page});
    std::string told = losses();
    EXPECT_NE(told.find("A table has lost its name; it is called Recovered table 2 now."), std::string::npos)
        << told;
    EXPECT_EQ(rowsOf("Recovered table 1") + rowsOf("Recovered table 2"), 600u);
}

TEST_P(Repair, TheFirstPage) {
    overwrite({0});
    EXPECT_EQ(losses(), "The first page is lost, and a password with it.\n");
    EXPECT_EQ(Database(path, {}).version(), GetParam());
    EXPECT_EQ(rowsOf("POLES") + rowsOf("TREES"), 600u);
}

TEST_P(Repair, AFileThatIsCut) {
    std::string whole = readFile(path);
    for (size_t size :
         {whole.size() - 1, whole.size() - pageSize, whole.size() / 2, whole.size() / 2 + 100}) {
        writeFile(path, whole.substr(0, size));
        losses();
        EXPECT_TRUE(has("POLES")) << size;
    }
}

TEST_P(Repair, AnyPageOfNoise) {
    std::string whole = readFile(path);
    for (uint32_t page = 0; page < whole.size() / pageSize; ++page) {
        writeFile(path, whole);
        overwrite({page}, page + 7);
        losses();
        // A page holds no more than a table's definition, or a part of the records of one.
        bool lostName = has("Recovered table 1");
        size_t rows = lostName ? rowsOf("Recovered table 1") + rowsOf("Recovered table 2")
                               : (has("POLES") ? rowsOf("POLES") : 0) + (has("TREES") ? rowsOf("TREES") : 0);
        EXPECT_GE(rows, 300u) << page;
    }
}

// Two records with one key: they stay, and the index no longer asks for one of each.
TEST_P(Repair, ValuesThatAreTwiceInAUniqueIndex) {
    {
        Database db(path, {});
        db.begin();
        {
            PageFile::Change change(db.store().file);
            TableDefinition bare = poles;
            bare.indexes.clear();
            bare.indexNames.clear();
            Records records(db.store(), std::make_shared<TableDefinition>(bare));
            std::vector<Value> values = {Value(5), Value("twice"), Value()};
            records.insert(values);
            change.done();
        }
        db.commit();
    }
    EXPECT_NE(losses().find("the index PK"), std::string::npos);
    EXPECT_EQ(rowsOf("POLES"), 301u);
    EXPECT_FALSE(Database(path, {}).indexes("POLES")[1].unique);
}

TEST(RepairNothing, WhatCannotBeSavedStaysAsItIs) {
    ScratchFolder folder;
    std::string path = folder("noise.mdb"), noise(40000, '\x5A');
    std::ofstream(path, std::ios::binary) << noise;
    EXPECT_THROW(compactAndRepair(path, {}), Error);
    EXPECT_TRUE(readFile(path) == noise);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
    EXPECT_THROW(compactAndRepair(folder("missing.mdb"), {}), Error);
    // Also where another program holds it, which is seen when the first page has been made anew.
    std::filesystem::remove(path);
    Database::create(path, Version::kAccess2000);
    Database holder(path, {.exclusive = true});
    std::fstream(path, std::ios::binary | std::ios::in | std::ios::out) << noise.substr(0, 4096);
    const std::string damaged = readFile(path);
    EXPECT_THROW(compactAndRepair(path, {.lockTimeout = 50}), Error);
    EXPECT_TRUE(readFile(path) == damaged);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
}

TEST(RepairGiven, ForeignFilesWithPagesOfNoise) {
    if (givenFiles().empty()) GTEST_SKIP() << "the given files are not here";
    std::mt19937 random(1907);
    ScratchFolder folder;
    std::string path = folder("copy.mdb");
    for (const std::string& given : givenFiles()) {
        std::string whole = readFile(given);
        size_t pageSize = whole[0x14] == 0 ? 2048 : 4096;
        for (int round = 0; round < 6; ++round) {
            std::string damaged = whole;
            size_t page = random() % (whole.size() / pageSize);
            for (size_t i = 0; i < pageSize; ++i) damaged[page * pageSize + i] = static_cast<char>(random());
            writeFile(path, damaged);
            CompactReport report = compactAndRepair(path, {});
            Database db(path, {});
            EXPECT_EQ(check(db), std::vector<std::string>()) << given << " page " << page;
            if (!report.kept.empty()) std::filesystem::remove(report.kept);
        }
    }
}

}  // namespace
}  // namespace jet
