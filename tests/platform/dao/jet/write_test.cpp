// Writing: whatever is done to a database, it stays sound, and other programs read what was written.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>

#include "platform/dao/jet/compact.h"
#include "tests/platform/dao/jet/given_files.h"
#include "tests/platform/dao/jet/readers.h"
#include "tests/platform/dao/jet/soundness.h"
#include "tests/platform/dao/scratch.h"

namespace jet {
namespace {

class Write : public ::testing::TestWithParam<Version> {
  protected:
    void SetUp() override {
        Database::create(path, GetParam());
        db = std::make_unique<Database>(path, Database::Options());
        db->begin();
    }
    bool is97() const { return GetParam() == Version::kAccess97; }
    // Commits, and opens the file anew.
    void reopen() {
        db->commit();
        db = nullptr;
        db = std::make_unique<Database>(path, Database::Options());
    }

    ScratchFolder folder;
    std::string path = folder("test.mdb");
    std::unique_ptr<Database> db;
};

INSTANTIATE_TEST_SUITE_P(Versions, Write, ::testing::Values(Version::kAccess97, Version::kAccess2000),
                         [](const auto& version) {
                             return version.param == Version::kAccess97 ? "Access97" : "Access2000";
                         });

TEST_P(Write, ANewDatabaseIsSoundAndEmpty) {
    EXPECT_EQ(faults(*db), "");
    reopen();
    EXPECT_EQ(faults(*db), "");
    EXPECT_EQ(db->version(), GetParam());
    std::vector<std::string> names;
    for (const TableInfo& table : db->tables()) {
        names.push_back(table.name);
        EXPECT_TRUE(table.system);
    }
    EXPECT_EQ(names,
              (std::vector<std::string>{"MSysObjects", "MSysACEs", "MSysQueries", "MSysRelationships"}));
    EXPECT_NE(refusal([&] { Database::create(path, GetParam()); }), "no error");
}

TEST_P(Write, ValuesOfEveryTypeComeBack) {
    std::vector<Column> columns = {
        Column{"ID", Type::kLong},         Column{"NAME", Type::kText, 40}, Column{"YES", Type::kBoolean},
        Column{"B", Type::kByte},          Column{"I", Type::kInteger},     Column{"C", Type::kCurrency},
        Column{"S", Type::kSingle},        Column{"D", Type::kDouble},      Column{"WHEN", Type::kDate},
        Column{"BIN", Type::kBinary, 100}, Column{"NOTE", Type::kMemo},     Column{"OLE", Type::kOle},
        Column{"G", Type::kGuid}};
    columns[0].autonumber = true;
    if (!is97()) {
        columns.push_back(Column{"DEC", Type::kDecimal});
        columns.back().precision = 28;
        columns.back().scale = 4;
    }
    db->createTable("ALL", columns);
    std::vector<Value> values = {Value(),
                                 Value("Müller's Ø-Eck"),
                                 Value(true),
                                 Value(uint8_t{200}),
                                 Value(int16_t{-32768}),
                                 Value(dao::Currency{-1234567}),
                                 Value(0.1f),
                                 Value(-1e300),
                                 Value(dao::Date{38138.25}),
                                 Value(dao::Binary{255, 1, 7}),
                                 Value(std::string(20000, 'm') + "é"),
                                 Value(dao::Binary(5000, 7)),
                                 Value("{00112233-4455-6677-8899-AABBCCDDEEFF}")};
    if (!is97()) values.push_back(Value("-123456789012345678901234.5678"));
    RowId row = db->records("ALL")->insert(values);
    EXPECT_EQ(values[0], Value(int32_t{1}));
    std::vector<Value> nothing(columns.size());
    RowId empty = db->records("ALL")->insert(nothing);
    if (!is97())
        for (const char* tooMuch : {"1.00001", "1234567890123456789012345", "1e5", "x"}) {
            std::vector<Value> wrong(columns.size());
            wrong.back() = Value(tooMuch);
            EXPECT_THROW(db->records("ALL")->insert(wrong), Error) << tooMuch;
        }
    EXPECT_EQ(faults(*db), "");
    reopen();
    {
        Database::Reading reading(*db);
        EXPECT_EQ(db->records("ALL")->read(row), values);
        std::vector<Value> read = db->records("ALL")->read(empty);
        EXPECT_EQ(read[0], Value(int32_t{2}));
        EXPECT_EQ(read[2], Value(false));
        for (size_t i : {1u, 3u, 7u, 8u, 10u, 11u, 12u}) EXPECT_TRUE(read[i].isNull()) << i;
    }
    EXPECT_EQ(disagreement(path), "");
}

TEST_P(Write, TextOfAllKinds) {
    db->createTable("T", {Column{"A", Type::kText, 255}, Column{"M", Type::kMemo}});
    std::vector<std::string> texts = {
        "", "a", "ab", "abc", "€uro", std::string(255, 'x'), "ÄÖÜäöüß", "tab\tand\nline"};
    if (!is97()) {
        texts.insert(texts.end(),
                     {"Ωμέγα", "日本語のテキスト", "emoji 😀 outside", std::string("nul\0inside", 10)});
        EXPECT_EQ(db->records("T")->definition().columns[0].compressed, true);
    }
    std::vector<RowId> rows;
    for (const std::string& text : texts) {
        std::vector<Value> values = {Value(text), Value(text)};
        rows.push_back(db->records("T")->insert(values));
    }
    if (is97()) {
        std::vector<Value> values = {Value("Ω"), Value()};
        EXPECT_EQ(
            refusal([&] { db->records("T")->insert(values); }),
            "The character Ω cannot be stored in a database of Access 97: its code page 1252 lacks it.");
    }
    std::vector<Value> tooLong = {Value(std::string(256, 'x')), Value()};
    EXPECT_NE(refusal([&] { db->records("T")->insert(tooLong); }).find("too long"), std::string::npos);
    reopen();
    Database::Reading reading(*db);
    for (size_t i = 0; i < rows.size(); ++i)
        EXPECT_EQ(db->records("T")->read(rows[i]), (std::vector<Value>{Value(texts[i]), Value(texts[i])}))
            << texts[i];
    EXPECT_EQ(faults(*db), "");
}

// Long sequences of changes against a model.
TEST_P(Write, ARandomLifeOfATable) {
    std::mt19937 random(is97() ? 97 : 2000);
    std::vector<Column> columns = {Column{"ID", Type::kLong}, Column{"KEY", Type::kText, 60},
                                   Column{"N", Type::kLong}, Column{"D", Type::kDouble},
                                   Column{"NOTE", Type::kMemo}};
    columns[0].autonumber = true;
    db->createTable("T", columns);
    db->createIndex("T", {.name = "PK", .columns = {{"ID"}}, .primary = true});
    db->createIndex("T", {.name = "BYKEY", .columns = {{"KEY"}, {"N", false}}});
    db->createIndex("T", {.name = "BYN", .columns = {{"N"}}, .unique = true, .ignoreNulls = true});
    using Model = std::map<RowId, std::vector<Value>>;
    Model model, committed;
    auto text = [&](size_t most) {
        static const std::vector<std::string> kPieces = {"a", "B",  "é", "Ö",    " ", "-",
                                                         "'", "zz", "0", "Tree", "_"};
        std::string out;
        for (size_t n = random() % most; n > 0; --n) out += kPieces[random() % kPieces.size()];
        return out;
    };
    auto fresh = [&] {
        std::vector<Value> values(5);
        values[1] = random() % 5 ? Value(text(12)) : Value();
        values[2] = random() % 4 ? Value(static_cast<int32_t>(random() % 4000) - 2000) : Value();
        values[3] = Value(static_cast<double>(random()) / 7);
        switch (random() % 6) {
            case 0:
                values[4] = Value(std::string(random() % 9000, static_cast<char>('a' + random() % 26)));
                break;
            case 1:
                values[4] = Value(std::string(random() % 60, 'n'));
                break;
            default:
                break;
        }
        return values;
    };
    auto taken = [&](const Value& n, RowId except) {
        for (const auto& [row, values] : model)
            if (row != except && !n.isNull() && values[2] == n) return true;
        return false;
    };
    for (int step = 0; step < 4000; ++step) {
        int action = static_cast<int>(random() % 100);
        std::vector<Value> values = fresh();
        auto it = model.begin();
        if (!model.empty()) std::advance(it, static_cast<long>(random() % model.size()));
        if (action < 50 || model.empty()) {
            bool refused = taken(values[2], {});
            std::string answer = refusal([&] { model[db->records("T")->insert(values)] = values; });
            ASSERT_EQ(answer != "no error", refused) << answer;
        } else if (action < 75) {
            std::vector<bool> touched = {false, random() % 2 > 0, random() % 2 > 0, random() % 2 > 0,
                                         random() % 2 > 0};
            bool refused = touched[2] && taken(values[2], it->first);
            std::string answer = refusal([&] { db->records("T")->update(it->first, values, touched); });
            ASSERT_EQ(answer != "no error", refused) << answer;
            for (size_t i = 1; !refused && i < 5; ++i)
                if (touched[i]) it->second[i] = values[i];
        } else if (action < 96) {
            db->records("T")->erase(it->first);
            model.erase(it);
            // Now and then nearly everything goes.
            for (int n = random() % 60 ? 0 : 300; n > 0 && !model.empty(); --n) {
                db->records("T")->erase(model.begin()->first);
                model.erase(model.begin());
            }
        } else if (action < 98) {
            db->commit();
            committed = model;
            db->begin();
        } else {
            db->rollBack();
            model = committed;
            db->begin();
        }
        if (step < 400 || step % 200 == 0) {
            ASSERT_EQ(faults(*db), "") << "step " << step;
        }
    }
    reopen();
    ASSERT_EQ(faults(*db), "");
    Database::Reading reading(*db);
    Model found;
    for (Walk walk(db->records("T")); walk.next();) found[walk.row()] = db->records("T")->read(walk.row());
    ASSERT_EQ(found.size(), model.size());
    EXPECT_TRUE(found == model);
    EXPECT_EQ(disagreement(path), "");
}

TEST_P(Write, DefinitionsChangeAndRecordsStay) {
    Column id = Column{"ID", Type::kLong}, name = Column{"NAME", Type::kText, 30},
           memo = Column{"M", Type::kMemo};
    name.allowZeroLength = false;
    name.required = true;
    name.defaultValue = "\"none\"";
    name.validationRule = "<> \"x\"";
    db->createTable("A", {id, name, memo});
    for (int i = 0; i < 300; ++i) {
        std::vector<Value> values = {Value(i), Value("n" + std::to_string(i)), Value(std::string(3000, 'm'))};
        db->records("A")->insert(values);
    }
    EXPECT_NE(refusal([&] { db->createTable("a", {id}); }), "no error");
    EXPECT_NE(refusal([&] { db->addColumn("A", Column{"Name", Type::kLong}); }), "no error");
    EXPECT_NE(refusal([&] { db->addColumn("A", Column{"X.Y", Type::kLong}); }), "no error");
    EXPECT_NE(refusal([&] { db->dropTable("MSysObjects"); }), "no error");

    // Columns of both kinds, one that counts, and enough of them for a definition on several pages.
    db->addColumn("A", Column{"D", Type::kDouble});
    Column counter = Column{"NO", Type::kLong};
    counter.autonumber = true;
    db->addColumn("A", counter);
    for (int i = 0; i < 100; ++i) db->addColumn("A", Column{"COLUMN" + std::to_string(i), Type::kText, 100});
    EXPECT_EQ(faults(*db), "");
    db->dropColumn("A", "m");
    db->dropColumn("A", "COLUMN50");
    for (int i = 99; i > 60; --i) db->dropColumn("A", "COLUMN" + std::to_string(i));
    EXPECT_EQ(faults(*db), "");
    db->renameTable("A", "B");
    db->createTable("A", {id});
    db->dropTable("A");
    EXPECT_EQ(refusal([&] { db->records("A"); }), "Cannot find the table A.");
    reopen();
    EXPECT_EQ(faults(*db), "");
    {
        Database::Reading reading(*db);
        std::vector<Column> columns = db->columns("b");
        ASSERT_EQ(columns.size(), 4u + 60u);
        EXPECT_EQ(columns[1].name, "NAME");
        EXPECT_TRUE(columns[1].required);
        EXPECT_FALSE(columns[1].allowZeroLength);
        EXPECT_EQ(columns[1].defaultValue, "\"none\"");
        EXPECT_EQ(columns[1].validationRule, "<> \"x\"");
        EXPECT_TRUE(columns[3].autonumber);
        int next = 0;
        std::shared_ptr<Records> records = db->records("B");
        for (Walk walk(records); walk.next(); ++next) {
            std::vector<Value> values = records->read(walk.row());
            ASSERT_EQ(values[0], Value(next));
            ASSERT_EQ(values[1], Value("n" + std::to_string(next)));
            ASSERT_TRUE(values[2].isNull());
            ASSERT_EQ(values[3], Value(next + 1));
        }
        EXPECT_EQ(next, 300);
    }
    EXPECT_EQ(disagreement(path), "");
}

// The pages of what is deleted are used again.
TEST_P(Write, AFileDoesNotGrowWhenAsMuchIsDeletedAsAdded) {
    uint32_t pages = 0;
    for (int round = 0; round < 12; ++round) {
        db->createTable("T", {Column{"A", Type::kText, 200}, Column{"M", Type::kMemo}});
        db->createIndex("T", {.name = "A", .columns = {{"A"}}});
        std::shared_ptr<Records> records = db->records("T");
        std::vector<RowId> rows;
        for (int i = 0; i < 500; ++i) {
            std::vector<Value> values = {Value(std::string(100, 'a') + std::to_string(i)),
                                         Value(std::string(2500, 'b'))};
            rows.push_back(records->insert(values));
        }
        if (round % 2)
            for (RowId row : rows) records->erase(row);
        db->dropTable("T");
        if (round == 2) pages = db->store().file.pageCount();
    }
    EXPECT_LE(db->store().file.pageCount(), pages + pages / 8);
    EXPECT_EQ(faults(*db), "");
}

// A page that has lost some of its rows takes new ones, once there are enough such pages.
TEST_P(Write, GapsBetweenRowsAreFilled) {
    db->createTable("T", {Column{"A", Type::kText, 200}});
    std::shared_ptr<Records> records = db->records("T");
    auto add = [&](int count) {
        std::vector<RowId> rows;
        for (int i = 0; i < count; ++i) {
            std::vector<Value> values = {Value(std::string(100, static_cast<char>('a' + i % 26)))};
            rows.push_back(records->insert(values));
        }
        return rows;
    };
    const std::vector<RowId> rows = add(2000);
    const uint32_t pages = db->store().file.pageCount();
    for (size_t i = 0; i < rows.size(); ++i)
        if (i % 2) records->erase(rows[i]);
    add(900);
    // A quarter of the pages may keep their gaps.
    EXPECT_LE(db->store().file.pageCount(), pages + pages / 4);
    EXPECT_EQ(faults(*db), "");
}

TEST_P(Write, ManyRecordsInOrder) {
    db->createTable("T", {Column{"ID", Type::kText, 20}, Column{"N", Type::kLong}});
    db->createIndex("T", {.name = "ID", .columns = {{"ID"}}, .unique = true});
    constexpr int kCount = 30000;
    std::shared_ptr<Records> records = db->records("T");
    for (int i = 0; i < kCount; ++i) {
        std::vector<Value> values = {Value("P" + std::to_string(i)), Value(i)};
        records->insert(values);
    }
    reopen();
    ASSERT_EQ(faults(*db), "");
    Database::Reading reading(*db);
    records = db->records("T");
    int next = 0;
    for (Walk walk(records); walk.next(); ++next)
        ASSERT_EQ(walk.value(1), Value(next)) << "the order is kept";
    EXPECT_EQ(next, kCount);
    std::vector<RowId> rows = records->tree(0).find(records->keys(0).key({Value("p12345")})->bytes);
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(records->read(rows[0])[1], Value(12345));
}

std::string dumpOf(const std::string& path) {
    std::string all;
    for (const TableInfo& table : Database(path, {}).tables())
        if (!table.system) all += outputOf(NORVANE_BIN_DIR "/jet dump '" + path + "' '" + table.name + "'");
    return all + outputOf(NORVANE_BIN_DIR "/jet schema '" + path + "'");
}

// Compacted, a file holds the same in no more pages than it needs.
// How many of the access rights name an object that the catalogue does not have.
int rightsWithoutObject(Database& db) {
    auto numbers = [&](const char* table, const char* name) {
        std::multiset<int32_t> all;
        std::shared_ptr<Records> records = db.records(table);
        const std::vector<ColumnDefinition>& columns = records->definition().columns;
        for (size_t i = 0; i < columns.size(); ++i)
            for (Walk walk(records); columns[i].name == name && walk.next();)
                all.insert(walk.value(i).get<int32_t>());
        return all;
    };
    Database::Reading reading(db);
    const std::multiset<int32_t> objects = numbers("MSysObjects", "Id"),
                                 named = numbers("MSysACES", "ObjectId");
    EXPECT_FALSE(named.empty());
    return static_cast<int>(
        std::count_if(named.begin(), named.end(), [&](int32_t id) { return !objects.contains(id); }));
}

TEST_P(Write, CompactionKeepsEverything) {
    std::vector<Column> columns = {Column{"ID", Type::kLong}, Column{"NAME", Type::kText, 90},
                                   Column{"NOTE", Type::kMemo}, Column{"GONE", Type::kMemo}};
    columns[0].autonumber = true;
    columns[1].allowZeroLength = false;
    for (const char* name : {"A", "B", "C"}) db->createTable(name, columns);
    db->createIndex("C", {.name = "PK", .columns = {{"ID"}}, .primary = true});
    db->createIndex("C", {.name = "NAMES", .columns = {{"NAME", false}}});
    for (int i = 0; i < 900; ++i) {
        std::vector<Value> values = {Value(), Value("Name " + std::to_string(i * 7919 % 900)),
                                     i % 20 ? Value(std::string(30, 'n')) : Value(std::string(9000, 'm')),
                                     Value(std::string(100, 'g'))};
        RowId row = db->records("C")->insert(values);
        db->records("A")->insert(values = {Value(), Value("a"), Value(), Value(std::string(3000, 'a'))});
        if (i % 3 == 0)
            db->records("C")->update(row, {Value(), Value(std::string(90, 'z')), Value(), Value()},
                                     {false, true, false, false});
        if (i % 4 == 0) db->records("C")->erase(row);
    }
    db->dropTable("A");
    db->dropColumn("C", "GONE");
    reopen();
    std::string before = dumpOf(path);
    size_t size = std::filesystem::file_size(path);
    EXPECT_EQ(rightsWithoutObject(*db), 0);
    compact(*db);
    EXPECT_EQ(faults(*db), "");
    EXPECT_EQ(rightsWithoutObject(*db), 0);
    EXPECT_EQ(dumpOf(path) == before, true);
    EXPECT_LT(std::filesystem::file_size(path), size / 2);
    EXPECT_FALSE(std::filesystem::exists(path + ".compact"));
    // It can be worked with at once, and the counter goes on.
    db->begin();
    std::vector<Value> values = {Value(), Value("next"), Value()};
    db->records("C")->insert(values);
    EXPECT_EQ(values[0], Value(901));
    db->commit();
    EXPECT_EQ(faults(*db), "");
    EXPECT_EQ(disagreement(path), "");
}

TEST(WriteGiven, EveryGivenFileIsCompacted) {
    if (givenFiles().empty()) GTEST_SKIP() << "the given files are not here";
    ScratchFolder folder;
    std::vector<std::string> changed;
    for (const std::string& given : givenFiles()) {
        std::string path = folder(std::filesystem::path(given).filename());
        std::filesystem::copy_file(given, path);
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        changed.push_back(path);
        std::string before = dumpOf(path);
        {
            Database db(path, {});
            compact(db);
            EXPECT_EQ(faults(db), "") << given;
        }
        EXPECT_EQ(dumpOf(path) == before, true) << given;
        EXPECT_LE(std::filesystem::file_size(path), std::filesystem::file_size(given)) << given;
    }
    EXPECT_EQ(disagreement(changed), "");
}

// Files of other programs, changed: every table that can be written to is written to.
TEST(WriteGiven, EveryGivenFileStaysSound) {
    if (givenFiles().empty()) GTEST_SKIP() << "the given files are not here";
    ScratchFolder folder;
    std::vector<std::string> changed;
    for (const std::string& given : givenFiles()) {
        std::string path = folder(std::filesystem::path(given).filename());
        std::filesystem::copy_file(given, path);
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        changed.push_back(path);
        {
            Database db(path, {});
            db.begin();
            db.createTable("NEW", {Column{"A", Type::kText, 20}, Column{"M", Type::kMemo}});
            std::vector<Value> fresh = {Value("é"), Value(std::string(7000, 'x'))};
            db.records("NEW")->insert(fresh);
            for (const TableInfo& table : db.tables()) {
                if (table.system || table.linked) continue;
                std::shared_ptr<Records> records = db.records(table.name);
                ASSERT_EQ(records->obstacle(), "") << given << " " << table.name;
                std::vector<RowId> rows;
                for (Walk walk(records); walk.next();) rows.push_back(walk.row());
                for (size_t i = 0; i < rows.size(); i += 2) {
                    std::vector<Value> values = records->read(rows[i]);
                    for (size_t c = 0; c < values.size(); ++c)
                        if (records->definition().columns[c].autonumber()) values[c] = Value();
                    records->erase(rows[i]);
                    // In some tables an autonumber is not the key.
                    refusal([&] { records->insert(values); });
                }
                db.addColumn(table.name, Column{"ADDED", Type::kText, 50});
                records = db.records(table.name);
                std::vector<Value> values(records->definition().columns.size());
                std::vector<bool> touched(values.size(), false);
                values.back() = Value(std::string(50, 'z'));
                touched.back() = true;
                for (size_t i = 1; i < rows.size(); i += 2) records->update(rows[i], values, touched);
            }
            EXPECT_EQ(faults(db), "") << given;
            db.commit();
        }
    }
    EXPECT_EQ(disagreement(changed), "");
}

}  // namespace
}  // namespace jet
