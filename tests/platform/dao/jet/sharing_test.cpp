// Processes that share a database, and processes that are killed.
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <sstream>

#include "tests/platform/crash.h"
#include "tests/platform/dao/jet/soundness.h"
#include "tests/platform/dao/scratch.h"

namespace jet {
namespace {

std::string makeTable(const std::string& path, Version version) {
    Database::create(path, version);
    Database db(path, {});
    Column name, number, note;
    name.name = "NAME";
    name.size = 50;
    number.name = "N";
    number.type = Type::kLong;
    note.name = "NOTE";
    note.type = Type::kMemo;
    db.begin();
    db.createTable("T", {name, number, note});
    db.createIndex("T", {.name = "NAMES", .columns = {{"NAME"}}, .unique = true});
    db.commit();
    return path;
}

void add(Database& db, const std::string& name, int number, size_t note = 0) {
    std::vector<Value> values = {Value(name), Value(number), note ? Value(std::string(note, 'n')) : Value()};
    db.records("T")->insert(values);
}

std::map<std::string, int> content(Database& db) {
    Database::Reading reading(db);
    std::map<std::string, int> found;
    std::shared_ptr<Records> records = db.records("T");
    for (Walk walk(records); walk.next();) found[dao::toText(walk.value(0))] = walk.value(1).get<int32_t>();
    EXPECT_EQ(found.size(), records->definition().rows);
    return found;
}

TEST(JetSharing, TwoProcessesAddAtOnce) {
    ScratchFolder folder;
    std::string path = makeTable(folder("t.mdb"), Version::kAccess2000);
    auto addMany = [&](const std::string& who) {
        Database db(path, {.lockTimeout = 20000});
        for (int i = 0; i < 5000;) {
            db.begin();
            for (int n = 0; n < 100; ++n, ++i) add(db, who + std::to_string(i), i);
            db.commit();
        }
    };
    pid_t child = ::fork();
    if (child == 0) {
        try {
            addMany("child ");
        } catch (const std::exception&) {
            ::_exit(1);
        }
        ::_exit(0);
    }
    addMany("parent ");
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    Database db(path, {});
    std::map<std::string, int> found = content(db);
    EXPECT_EQ(found.size(), 10000u);
    EXPECT_EQ(found["child 4999"], 4999);
    EXPECT_EQ(faults(db), "");
}

TEST(JetSharing, AReaderSeesWhatAnotherHasCommittedAndNothingElse) {
    ScratchFolder folder;
    std::string path = makeTable(folder("t.mdb"), Version::kAccess97);
    Database writer(path, {}), reader(path, {.lockTimeout = 50});
    EXPECT_EQ(content(reader).size(), 0u);
    writer.begin();
    add(writer, "one", 1, 5000);
    EXPECT_EQ(content(reader).size(), 0u);
    writer.commit();
    EXPECT_EQ(content(reader).size(), 1u);
    // Commits in quick succession are told apart.
    for (int i = 0; i < 50; ++i) {
        writer.begin();
        Walk walk(writer.records("T"));
        ASSERT_TRUE(walk.next());
        writer.records("T")->update(walk.row(), {Value(), Value(i), Value()}, {false, true, false});
        writer.commit();
        ASSERT_EQ(content(reader)["one"], i);
    }
    // Who cannot have the file in time is told so.
    writer.begin();
    std::string message;
    try {
        reader.begin();
    } catch (const Error& error) {
        message = error.what();
    }
    EXPECT_EQ(message, "The database \"" + path +
                           "\" is locked by another process. Please try again when it is free.");
    writer.rollBack();
    reader.begin();
    reader.rollBack();
    // A reading keeps writers from writing, and they go on afterwards.
    {
        Database::Reading reading(reader);
        writer.setLockTimeout(50);
        writer.begin();
        add(writer, "two", 2);
        EXPECT_THROW(writer.commit(), Error);
    }
    writer.commit();
    EXPECT_EQ(content(reader).size(), 2u);
}

// A transaction is whole or absent, whenever its process is killed. Each adds some rows and erases those of
// an earlier one, so that the table stays as small at the end as it is in the beginning.
TEST(JetCrash, ATransactionIsWholeOrAbsentAfterAKill) {
    for (Version version : {Version::kAccess97, Version::kAccess2000}) {
        ScratchFolder folder;
        std::string path = makeTable(folder("t.mdb"), version);
        std::mt19937 random(20040531);
        int last = 0;
        constexpr int kRows = 7;   // in each transaction
        constexpr int kKept = 10;  // transactions whose rows are there
        for (int round = 0; round < 120; ++round) {
            std::string reported = reportedUntilKilled(random() % 40000, [&](const auto& report) {
                Database db(path, {});
                report("0");
                for (int i = last + 1;; ++i) {
                    db.begin();
                    for (int n = 0; n < kRows; ++n)
                        add(db, std::to_string(i) + "." + std::to_string(n), i, n == 3 ? 3000 : 0);
                    std::shared_ptr<Records> records = db.records("T");
                    for (Walk walk(records); walk.next();)
                        if (walk.value(1) == Value(i - kKept)) records->erase(walk.row());
                    db.commit();
                    report(std::to_string(i));
                }
            });
            std::istringstream lines(reported);
            int n, told = last;
            while (lines >> n) told = std::max(told, n);
            Database db(path, {});
            std::map<int, int> found;  // rows of each transaction
            for (const auto& [name, number] : content(db)) ++found[number];
            for (auto [number, rows] : found) ASSERT_EQ(rows, kRows) << "half of transaction " << number;
            int whole = found.empty() ? 0 : found.rbegin()->first;
            ASSERT_EQ(static_cast<int>(found.size()), std::min(whole, kKept)) << "half of an erasure";
            ASSERT_TRUE(whole == told || whole == told + 1) << whole << " of " << told;
            ASSERT_EQ(faults(db), "") << "round " << round;
            ASSERT_FALSE(std::filesystem::exists(path + "-journal"));
            last = whole;
        }
        EXPECT_GT(last, 50);
    }
}

// A journal that is found is played back, and one that is cut or damaged is not.
TEST(JetCrash, JournalsThatAreFound) {
    ScratchFolder folder;
    std::string path = makeTable(folder("t.mdb"), Version::kAccess2000);
    std::filesystem::copy_file(path, folder("before.mdb"));
    std::string before = outputOf("cat '" + path + "'");
    {
        // The journal of a transaction that touches every page of the file.
        int file = ::open(path.c_str(), O_RDONLY);
        std::vector<uint32_t> pages;
        for (uint32_t page = 0; page < before.size() / 4096; ++page) pages.push_back(page);
        Journal(path).write(file, 4096, static_cast<uint32_t>(pages.size()), pages);
        ::close(file);
    }
    std::filesystem::copy_file(path + "-journal", folder("journal"));
    std::string ruined = before + std::string(4096 * 3, 'x');
    for (size_t i = 2000; i < ruined.size(); i += 50) ruined[i] = 'x';
    auto write = [&](const std::string& content) {
        std::FILE* file = std::fopen(path.c_str(), "wb");
        std::fwrite(content.data(), 1, content.size(), file);
        std::fclose(file);
    };
    write(ruined);
    { Database db(path, {}); }
    EXPECT_EQ(outputOf("cat '" + path + "'") == before, true);
    EXPECT_FALSE(std::filesystem::exists(path + "-journal"));
    // Found when a transaction begins: it is put right, and the transaction stays the only one.
    {
        Database db(path, {}), other(path, {.lockTimeout = 50});
        std::filesystem::copy_file(folder("journal"), path + "-journal");
        write(ruined);
        db.begin();
        EXPECT_FALSE(std::filesystem::exists(path + "-journal"));
        EXPECT_THROW(other.begin(), Error);
        add(db, "after", 1);
        db.commit();
        EXPECT_EQ(content(other).size(), 1u);
        EXPECT_EQ(faults(other), "");
    }
    write(before);
    // A database that may only be read cannot be put right.
    std::filesystem::copy_file(folder("journal"), path + "-journal");
    EXPECT_THROW(Database(path, {.readOnly = true}), Error);
    // Half a journal: the database had not been touched.
    std::filesystem::resize_file(path + "-journal", std::filesystem::file_size(path + "-journal") / 2);
    { Database db(path, {}); }
    EXPECT_EQ(outputOf("cat '" + path + "'") == before, true);
    EXPECT_FALSE(std::filesystem::exists(path + "-journal"));
    // So had it been where the sum of the journal is not that of its pages.
    std::string damaged = outputOf("cat '" + folder("journal") + "'");
    damaged[damaged.size() / 2] ^= 1;
    std::ofstream(path + "-journal", std::ios::binary) << damaged;
    { Database db(path, {}); }
    EXPECT_EQ(outputOf("cat '" + path + "'") == before, true);
    EXPECT_FALSE(std::filesystem::exists(path + "-journal"));
}

}  // namespace
}  // namespace jet
