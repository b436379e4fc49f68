// Tables that are odd, large or damaged under the eyes of a view.
#include "module/records/key_index.h"
#include "module/store/matching_records.h"
#include "platform/dao/jet/database.h"
#include "tests/module/records/trees.h"

using norvane::RecordFilter;
using norvane::RecordView;

namespace {

class RecordViewFaults : public ::testing::TestWithParam<std::string> {
  protected:
    RecordViewFaults() {
        database_.Create(folder_("faults." + GetParam()), dbLangGeneral,
                         GetParam() == "97.mdb" ? dbVersion30 : dbVersion40);
    }

    ScratchFolder folder_;
    CDaoDatabase database_;
};

TEST_P(RecordViewFaults, ATableOf255ColumnsWithLongTextsAndNoKeyIsShown) {
    CDaoTableDef table(&database_);
    table.Create("WIDE");
    for (int i = 0; i < 253; ++i) table.CreateField("COLUMN_" + std::to_string(i), dbLong, 4);
    table.CreateField("STORY", dbMemo, 0);
    table.CreateField("PICTURE", dbLongBinary, 0);
    table.Append();
    table.Close();
    // Two bytes a letter, so that a text cut anywhere would be cut in a letter.
    std::string story;
    for (int i = 0; i < 50'000; ++i) story += "\xC3\xA4";
    CDaoRecordset records(&database_);
    records.Open(dbOpenDynaset, "SELECT * FROM WIDE");
    for (int row = 0; row < 70; ++row) {
        records.AddNew();
        records.SetFieldValue(252, row);
        records.SetFieldValue(253, "x" + story + (row == 69 ? " the end" : ""));
        records.SetFieldValue(254, dao::Binary(100'000, 7));
        records.Update();
    }
    records.Close();
    RecordView view(database_, "WIDE", "PT_ID");
    while (view.work(std::chrono::milliseconds(10))) {
    }
    ASSERT_EQ(view.shown(), 70);
    EXPECT_EQ(view.keyField(), -1);
    EXPECT_EQ(view.key(69), "");
    EXPECT_EQ(view.text(69, 252), "69");
    const std::string shown = view.text(69, 253);
    EXPECT_LT(shown.size(), 2000U) << "the beginning";
    EXPECT_EQ(shown.size() % 2, 1U) << "whole letters";
    EXPECT_EQ(view.values(69)[253], dao::Variant("x" + story + " the end")) << "the whole";
    EXPECT_EQ(view.rowOf(std::string("1")), std::nullopt);
    RecordFilter filter;
    filter.words = "end";
    view.setFilter(filter);
    workAll(view);
    EXPECT_EQ(view.shown(), 1) << "a word is found at the end of a long text";
    filter.words = "X\xC3\x84\xC3\xA4 6";
    view.setFilter(filter);
    workAll(view);
    EXPECT_EQ(view.shown(), 16) << "6, 16, 26, 36, 46, 56, 60 to 69 with letters of any alphabet in any case";
    filter.words.clear();
    filter.keys = std::make_shared<norvane::RecordKeys>(norvane::RecordKeys{"1"});
    view.setFilter(filter);
    workAll(view);
    EXPECT_EQ(view.shown(), 0) << "no record has a key";
    filter.withoutKeys = true;
    view.setFilter(filter);
    workAll(view);
    EXPECT_EQ(view.shown(), 70);
}

TEST_P(RecordViewFaults, ATableThatIsDroppedIsTold) {
    makeTreeTable(database_);
    addTrees(database_, "TREES", someTrees(100));
    RecordView view(database_, "TREES", "PT_ID");
    workAll(view);
    EXPECT_EQ(view.text(0, kId), "T0");
    database_.DeleteTableDef("TREES");
    EXPECT_TRUE(view.text(99, kId).starts_with("#Error: ")) << view.text(99, kId);
    EXPECT_EQ(view.key(99), "");
    RecordFilter filter;
    filter.words = "oak";
    view.setFilter(filter);
    while (view.work(std::chrono::milliseconds(10))) {
    }
    EXPECT_NE(view.fault().find("TREES"), std::string::npos) << view.fault();
    view.refresh();
    EXPECT_NE(view.fault().find("TREES"), std::string::npos) << view.fault();
    EXPECT_ANY_THROW(RecordView(database_, "TREES", "PT_ID"));
}

TEST_P(RecordViewFaults, FieldsThatHaveChangedAreReadAnew) {
    makeTreeTable(database_);
    addTrees(database_, "TREES", someTrees(10));
    RecordView view(database_, "TREES", "PT_ID");
    view.sortBy({kSpecies, false});
    workAll(view);
    CDaoTableDef table(&database_);
    table.Open("TREES");
    table.DeleteField("GIS_KEY");
    table.Close();
    view.refresh();
    workAll(view);
    EXPECT_EQ(view.fields()[1].name, "SPECIES");
    EXPECT_EQ(view.order().field, -1) << "the old order means another field now";
    EXPECT_EQ(view.text(0, kId), "T0");
    EXPECT_EQ(view.text(0, 1), "Oak");
}

TEST_P(RecordViewFaults, AnIndexOfManyEqualValuesAndNullsHasAllRecords) {
    makeTreeTable(database_);
    std::vector<Tree> trees;
    for (int i = 0; i < 5000; ++i) {
        Tree tree;
        tree.id = "T" + std::to_string(i);
        if (i % 2) tree.species = "oak";
        tree.number = i;
        trees.push_back(tree);
    }
    addTrees(database_, "TREES", trees);
    database_.CreateIndex("TREES", {"SPECIES"});
    RecordView view(database_, "TREES", "PT_ID");
    for (bool descending : {false, true}) {
        view.sortBy({kSpecies, descending});
        workAll(view);
        EXPECT_TRUE(keysOf(view) == keysOf(sorted(trees, kSpecies, descending))) << descending;
    }
}

TEST_P(RecordViewFaults, AnEmptyTableHasNoRows) {
    makeTreeTable(database_);
    RecordView view(database_, "TREES", "PT_ID");
    for (norvane::RecordOrder order : {norvane::RecordOrder{}, {kHeight, true}, {kSpecies, false}}) {
        view.sortBy(order);
        workAll(view);
        EXPECT_EQ(view.shown(), 0);
    }
    EXPECT_EQ(view.rowOf(std::string("T1")), std::nullopt);
    EXPECT_FALSE(norvane::NeedsIndex(database_, "TREES", "PT_ID"));
}

TEST_P(RecordViewFaults, ALargeTableDeservesAnIndexThatOthersCanUse) {
    makeTreeTable(database_);
    addTrees(database_, "TREES", someTrees(20'000));
    EXPECT_FALSE(norvane::NeedsIndex(database_, "TREES", "PT_ID"));
    addTrees(database_, "TREES", {{"t20000", "Oak", 1.0, 20'000, ""}});
    EXPECT_TRUE(norvane::NeedsIndex(database_, "TREES", "PT_ID"));
    EXPECT_FALSE(norvane::NeedsIndex(database_, "TREES", "NO_FIELD"));
    EXPECT_TRUE(norvane::MakeIndex(database_, "TREES", "PT_ID"));
    EXPECT_FALSE(norvane::NeedsIndex(database_, "TREES", "PT_ID"));
    EXPECT_ANY_THROW(norvane::MakeIndex(database_, "TREES", "NO_FIELD"));
    RecordView view(database_, "TREES", "PT_ID");
    workAll(view);
    EXPECT_EQ(view.rowOf(std::string("T20000")), 20'000) << "in any case of letters";
    int visited = 0;
    EXPECT_FALSE(norvane::ForEachMatching(
        database_, "TREES", nullptr, {"PT_ID"}, [&](std::span<const dao::Variant>) { ++visited; },
        [] { return false; }));
    EXPECT_GT(visited, 0);
    EXPECT_LT(visited, 20'000) << "it was stopped";
    // Other programs have nothing to complain of, and records come and go as before.
    addTrees(database_, "TREES", {{"T20001", "Oak", 1.0, 20'001, ""}});
    database_.Execute("DELETE FROM TREES WHERE PT_ID = 'T5'");
    database_.Close();
    const std::string file = folder_("faults." + GetParam());
    if (GetParam().ends_with("mdb")) {
        EXPECT_EQ(outputOf("'" NORVANE_BIN_DIR "/jet' check '" + file + "'"), "");
        EXPECT_EQ(outputOf("mdb-export -b strip '" + file + "' TREES | wc -l"), "20002\n")
            << "with its heading";
        const std::string schema = outputOf("mdb-schema --indexes '" + file + "' postgres");
        EXPECT_NE(schema.find("INDEX"), std::string::npos) << schema;
    } else {
        EXPECT_EQ(outputOf("sqlite3 '" + file + "' 'PRAGMA integrity_check; SELECT count(*) FROM TREES'"),
                  "ok\n20001\n");
        EXPECT_NE(
            outputOf("sqlite3 '" + file + "' \"EXPLAIN QUERY PLAN SELECT * FROM TREES WHERE PT_ID = 'T7'\"")
                .find("USING INDEX"),
            std::string::npos);
    }
}

INSTANTIATE_TEST_SUITE_P(Files, RecordViewFaults, ::testing::Values("mdb", "97.mdb", "sqlite", "gpkg"),
                         [](const auto& kind) { return kind.param == "97.mdb" ? "mdb97" : kind.param; });

TEST(AccessIndexes, KeysThatNoIndexTakesLeaveTheTableAsItWas) {
    const ScratchFolder folder;
    CDaoDatabase database;
    database.Create(folder("keys.mdb"));
    makeTreeTable(database);
    addTrees(database, "TREES", {{"T1", "Oak", 1.0, 1, ""}, {"\xD0\x96-2", "Elm", 2.0, 2, ""}});
    EXPECT_ANY_THROW(norvane::MakeIndex(database, "TREES", "PT_ID"));
    RecordView view(database, "TREES", "PT_ID");
    EXPECT_EQ(view.rowOf(std::string("\xD0\x96-2")), 1);
    addTrees(database, "TREES", {{"T3", "Oak", 1.0, 3, ""}});
    database.Close();
    EXPECT_EQ(outputOf("'" NORVANE_BIN_DIR "/jet' check '" + folder("keys.mdb") + "'"), "");
    EXPECT_EQ(
        outputOf("mdb-schema --indexes '" + folder("keys.mdb") + "' mysql 2>/dev/null | grep -c 'ADD INDEX'"),
        "0\n");
}

TEST(AccessIndexes, ThoseOfSomeRecordsOrTheOtherWayRoundAreNotUsed) {
    const ScratchFolder folder;
    {
        CDaoDatabase database;
        database.Create(folder("trees.mdb"));
        makeTreeTable(database);
        addTrees(database, "TREES", someTrees(100));
    }
    {
        jet::Database file(folder("trees.mdb"), {});
        file.begin();
        file.createIndex("TREES", {.name = "some", .columns = {{"SPECIES"}}, .ignoreNulls = true});
        file.createIndex("TREES", {.name = "down", .columns = {{"NUMBER_OF", false}}});
        file.commit();
    }
    CDaoDatabase database;
    database.Open(folder("trees.mdb"));
    RecordView view(database, "TREES", "PT_ID");
    for (TreeField field : {kSpecies, kNumber}) {
        view.sortBy({field, false});
        workAll(view);
        EXPECT_EQ(keysOf(view), keysOf(sorted(someTrees(100), field, false))) << field;
    }
}

// Tables of other programs in an SQLite file.
class ForeignTables : public ::testing::Test {
  protected:
    void make(const std::string& sql) {
        const std::string file = folder_("foreign.sqlite");
        writeFile(folder_("make.sql"), sql);
        ASSERT_EQ(outputOf("sqlite3 '" + file + "' < '" + folder_("make.sql") + "'"), "");
        database_.Open(file);
    }

    ScratchFolder folder_;
    CDaoDatabase database_;
};

TEST_F(ForeignTables, ViewsAndTablesWithoutRowIdsAreShown) {
    make(
        "CREATE TABLE T (PT_ID TEXT PRIMARY KEY, N INTEGER) WITHOUT ROWID;"
        "INSERT INTO T VALUES ('b', 2), ('a', 1), ('c', 10);"
        "CREATE VIEW V AS SELECT * FROM T WHERE N > 1;");
    for (const char* name : {"T", "V"}) {
        RecordView view(database_, name, "PT_ID");
        view.sortBy({1, true});
        workAll(view);
        std::vector<std::string> keys = keysOf(view);
        ASSERT_GE(keys.size(), 2U);
        EXPECT_EQ(keys[0], "C") << name;
        EXPECT_EQ(keys[1], "B") << name;
        EXPECT_EQ(view.rowOf(std::string("B")), 1);
        EXPECT_EQ(view.text(0, 1), "10");
    }
}

TEST_F(ForeignTables, AnIndexThatTellsCapitalsFromOtherLettersIsNotUsed) {
    make(
        "CREATE TABLE T (rowid TEXT, NAME TEXT);"
        "CREATE INDEX BY_NAME ON T (NAME); CREATE INDEX SOME ON T (rowid) WHERE rowid > 'm';"
        "INSERT INTO T VALUES ('x', 'b'), ('y', 'C'), ('a', 'a'), ('z', 'B');");
    RecordView view(database_, "T", "NAME");
    view.sortBy({1, false});
    workAll(view);
    EXPECT_EQ(keysOf(view), (std::vector<std::string>{"A", "B", "B", "C"}));
    EXPECT_EQ(view.text(1, 0), "x") << "records of one value stay in the order of the table";
    EXPECT_EQ(view.rowOf(std::string("B")), 1) << "the first of two";
    view.sortBy({0, false});
    workAll(view);
    EXPECT_EQ(view.shown(), 4) << "an index of some records is none of all";
    EXPECT_TRUE(norvane::MakeIndex(database_, "T", "NAME"));
    view.sortBy({1, true});
    workAll(view);
    EXPECT_EQ(keysOf(view), (std::vector<std::string>{"C", "B", "B", "A"}));
}

TEST_F(ForeignTables, ValuesOfOtherTypesThanTheirColumnAreInOrderToo) {
    make(
        "CREATE TABLE T (PT_ID TEXT, V INTEGER);"
        "INSERT INTO T VALUES ('text', 'zebra'), ('big', 9007199254740993), ('null', NULL),"
        "('less', 9007199254740990), ('none', ''), ('real', -0.5);");
    RecordView view(database_, "T", "PT_ID");
    view.sortBy({1, false});
    workAll(view);
    EXPECT_EQ(keysOf(view), (std::vector<std::string>{"NULL", "REAL", "LESS", "BIG", "NONE", "TEXT"}));
}

TEST_F(ForeignTables, LongTextsAndDaysOfOldAreInOrder) {
    make(
        "CREATE TABLE T (PT_ID TEXT, NAME TEXT, SEEN DATETIME);"
        "INSERT INTO T VALUES ('r', 'Quercus robur', '1899-12-28 18:00:00'), ('i', 'quercus ilex', "
        "'1899-12-28 06:00:00'), ('p', 'QUERCUS PETRAEA', '1899-12-29 12:00:00'), ('q', 'Quercus', "
        "'1899-12-30 01:00:00'), ('a', 'Quercus \xC3\xA4', '2004-05-31'), ('u', 'quercus \xC3\x84z', "
        "'2004-05-31 00:00:01');");
    RecordView view(database_, "T", "PT_ID");
    view.sortBy({1, false});
    workAll(view);
    EXPECT_EQ(keysOf(view), (std::vector<std::string>{"Q", "I", "P", "R", "A", "U"}));
    view.sortBy({2, false});
    workAll(view);
    EXPECT_EQ(keysOf(view), (std::vector<std::string>{"I", "R", "P", "Q", "A", "U"}));
}

}  // namespace
