// Other programs read what we read: in the files at hand, and in files that we make, after every kind of
// change.
#include <gtest/gtest.h>

#include "platform/dao/jet/compact.h"
#include "tests/platform/dao/jet/given_files.h"
#include "tests/platform/dao/jet/readers.h"
#include "tests/platform/dao/jet/soundness.h"

namespace jet {
namespace {

class Reader : public ::testing::TestWithParam<const char*> {};
INSTANTIATE_TEST_SUITE_P(Readers, Reader, ::testing::Values("mdbtools", "mdb-reader"),
                         [](const auto& reader) {
                             return std::string(reader.param).substr(0, 4) == "mdb-" ? "MdbReader"
                                                                                     : "Mdbtools";
                         });

TEST_P(Reader, ReadsTheGivenFilesAsWeDo) {
    if (givenFiles().empty()) GTEST_SKIP() << "the given files are not here";
    if (!haveReader(GetParam())) GTEST_SKIP() << GetParam() << " is not installed";
    EXPECT_EQ(comparison(GetParam(), givenFiles()), "4588 records compared\n");
}

// A database that is changed step by step. The readers read it as it was after each step.
class Life : public ::testing::TestWithParam<Version> {
  protected:
    void SetUp() override {
        if (!haveReader("mdbtools") && !haveReader("mdb-reader"))
            GTEST_SKIP() << "neither mdbtools nor mdb-reader is installed";
        Database::create(path, GetParam());
        db = std::make_unique<Database>(path, Database::Options());
    }
    // Does a step, and keeps the file as it is then.
    void step(const std::string& name, const std::function<void()>& work) {
        db->begin();
        work();
        db->commit();
        keep(name);
    }
    void keep(const std::string& name) {
        EXPECT_EQ(faults(*db), "") << name;
        states.push_back(folder(name + ".mdb"));
        std::filesystem::copy_file(path, states.back());
    }
    // Started once for all states: starting the readers takes longer than reading.
    void TearDown() override {
        if (states.empty()) return;
        EXPECT_EQ(disagreement(states), "");
    }
    std::vector<RowId> rowsOf(const std::string& table) {
        std::vector<RowId> rows;
        for (Walk walk(db->records(table)); walk.next();) rows.push_back(walk.row());
        return rows;
    }
    void set(const std::string& table, RowId row, size_t column, Value value) {
        std::shared_ptr<Records> records = db->records(table);
        std::vector<Value> values(records->definition().columns.size());
        std::vector<bool> touched(values.size(), false);
        values[column] = std::move(value);
        touched[column] = true;
        records->update(row, values, touched);
    }

    ScratchFolder folder;
    std::string path = folder("life.mdb");
    std::vector<std::string> states;
    std::unique_ptr<Database> db;
};
INSTANTIATE_TEST_SUITE_P(Versions, Life, ::testing::Values(Version::kAccess97, Version::kAccess2000),
                         [](const auto& version) {
                             return version.param == Version::kAccess97 ? "Access97" : "Access2000";
                         });

TEST_P(Life, EveryReaderFollowsEveryChange) {
    keep("empty");
    step("create", [&] {
        Column id = Column{"ID", Type::kLong};
        id.autonumber = true;
        db->createTable("POINTS", {id, Column{"PT_ID", Type::kText, 255}, Column{"HEIGHT", Type::kDouble},
                                   Column{"SEEN", Type::kDate}, Column{"LIVE", Type::kBoolean},
                                   Column{"NOTE", Type::kMemo}});
        db->createIndex("POINTS", {.name = "PK", .columns = {{"ID"}}, .primary = true});
        db->createIndex("POINTS", {.name = "BY_PT_ID", .columns = {{"PT_ID"}}});
        db->createTable("OTHER", {Column{"A", Type::kText, 20}});
    });
    step("10 000 inserts", [&] {
        std::shared_ptr<Records> records = db->records("POINTS");
        for (int i = 0; i < 10000; ++i) {
            std::vector<Value> values = {
                Value(),
                Value("P" + std::to_string(i * 7919 % 10000)),
                i % 7 ? Value(i / 8.0) : Value(),
                Value(dao::Date{38000.0 + i / 24.0}),
                Value(i % 3 == 0),
                i % 50 ? (i % 4 ? Value() : Value("")) : Value("note of " + std::to_string(i))};
            records->insert(values);
        }
    });
    std::vector<RowId> rows = rowsOf("POINTS");
    ASSERT_EQ(rows.size(), 10000u);
    step("updates that grow rows", [&] {
        for (size_t i = 0; i < rows.size(); i += 5)
            set("POINTS", rows[i], 1, Value("grown É" + std::string(i % 200, 'x')));
    });
    step("deletes", [&] {
        std::shared_ptr<Records> records = db->records("POINTS");
        for (size_t i = 0; i < rows.size(); ++i)
            if (i % 3 == 0 || (i > 4000 && i < 6000)) records->erase(rows[i]);
    });
    step("inserts into the gaps", [&] {
        std::shared_ptr<Records> records = db->records("POINTS");
        for (int i = 0; i < 1500; ++i) {
            std::vector<Value> values = {Value(),        Value("again " + std::to_string(i)),
                                         Value(-1e-300), Value(),
                                         Value(true),    Value(std::string(40, 'g'))};
            records->insert(values);
        }
    });
    step("column added", [&] {
        db->addColumn("POINTS", Column{"ADDED", Type::kText, 50});
        rows = rowsOf("POINTS");
        for (size_t i = 0; i < rows.size(); i += 4) set("POINTS", rows[i], 6, Value("added"));
    });
    step("column deleted", [&] { db->dropColumn("POINTS", "HEIGHT"); });
    step("long memos", [&] {
        rows = rowsOf("POINTS");
        for (size_t i = 0; i < rows.size(); i += 40)
            set("POINTS", rows[i], 4, Value(std::string(i * 5, 'm') + "end of the memo"));
        set("POINTS", rows[1], 4, Value(std::string(190000, 'L')));
    });
    step("memos made short again", [&] {
        for (size_t i = 0; i < rows.size(); i += 80) set("POINTS", rows[i], 4, Value("short"));
    });
    step("table renamed", [&] { db->renameTable("POINTS", "Points of the survey"); });
    step("table dropped", [&] { db->dropTable("OTHER"); });
    compact(*db);
    keep("compaction");
    step("inserts after compaction", [&] {
        std::vector<Value> values = {Value(), Value("last"), Value(), Value(true), Value("x"), Value("y")};
        db->records("Points of the survey")->insert(values);
        EXPECT_EQ(values[0], Value(11501));
    });
}

}  // namespace
}  // namespace jet
