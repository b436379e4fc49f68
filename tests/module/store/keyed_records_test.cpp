// Many records by their keys, and tables that are made fit for texts: what imports of every kind stand on.
#include "module/store/keyed_records.h"

#include <gtest/gtest.h>

#include "module/store/text_table.h"
#include "tests/platform/dao/scratch.h"

using namespace norvane;

namespace {

using Strings = std::vector<std::string>;

// A table of three records: A and a under X, B under Y.
class Keyed : public ::testing::TestWithParam<const char*> {
  protected:
    void SetUp() override {
        database.Create(folder(GetParam()));
        CDaoTableDef table(&database);
        table.Create("T");
        for (const char* name : {"PT_ID", "GIS_KEY", "NOTE"}) table.CreateField(name, dbText, 255);
        table.Append();
        CDaoRecordset records(&database);
        records.Open(dbOpenDynaset, "T");
        const char* rows[][2] = {{"A", "X"}, {"B", "Y"}, {"a", "X"}};
        for (const auto& row : rows) {
            records.AddNew();
            records.SetFieldValue("PT_ID", row[0]);
            records.SetFieldValue("GIS_KEY", row[1]);
            records.SetFieldValue("NOTE", "old");
            records.Update();
        }
    }
    std::string all() {
        CDaoRecordset records(&database);
        std::string text;
        for (records.Open(dbOpenDynaset, "T"); !records.IsEOF(); records.MoveNext())
            text += dao::toText(records.GetFieldValue("PT_ID")) + " " +
                    dao::toText(records.GetFieldValue("NOTE")) + "\n";
        return text;
    }
    static KeyedRecords::Write note(const Strings& keys) {
        return [&keys](CDaoRecordset& record, size_t entry) {
            record.SetFieldValue("PT_ID", keys[entry]);
            record.SetFieldValue("NOTE", "new " + std::to_string(entry));
        };
    }
    static bool always(size_t) { return true; }

    ScratchFolder folder;
    CDaoDatabase database;
    static constexpr const char* kFields[] = {"PT_ID", "GIS_KEY"};
};

}  // namespace

TEST_P(Keyed, TheFirstOfAKeyIsChangedAndWhatIsMissingAdded) {
    const Strings keys{"C", "b", "D", "a", "c"};
    KeyedRecords records(database, "SELECT * FROM [T]", std::span(kFields, 1), keys);
    EXPECT_EQ(records.found(), 2u);
    EXPECT_EQ(records.added(), 2u);
    std::vector<size_t> left;
    EXPECT_TRUE(records.write(note(keys), [&](size_t n) {
        left.push_back(n);
        return true;
    }));
    // Two entries of one key are one record, with the values of the later one.
    EXPECT_EQ(all(), "a new 3\nb new 1\na old\nc new 4\nD new 2\n");
    EXPECT_EQ(left, (std::vector<size_t>{5, 4, 3, 1}));
}

TEST_P(Keyed, AllOfAKeyAreChangedWhereThatIsWanted) {
    Strings keys, ids{"A", "B"};
    const char* features[] = {"x", "X"};  // there is no B under X
    for (size_t i = 0; i < ids.size(); ++i) keys.push_back(KeyedRecords::KeyOf(Strings{ids[i], features[i]}));
    KeyedRecords records(database, "SELECT * FROM [T]", kFields, keys, KeyedRecords::Change::kAll);
    EXPECT_EQ(records.found(), 2u);
    EXPECT_TRUE(records.write(note(ids), always));
    EXPECT_EQ(all(), "A new 0\nB old\nA new 0\nB new 1\n");
}

TEST_P(Keyed, ItCanBeEndedBeforeEachRecord) {
    const Strings keys{"A", "B", "C"};
    int steps = 0;
    KeyedRecords records(database, "SELECT * FROM [T]", std::span(kFields, 1), keys);
    EXPECT_FALSE(records.write(note(keys), [&](size_t) { return ++steps < 2; }));
    EXPECT_EQ(all(), "A new 0\nB old\na old\n");
}

TEST_P(Keyed, KeysOfNumbersBecomeTextsAndKeepTheirValues) {
    CDaoTableDef table(&database);
    table.Create("NUMBERS");
    table.CreateField("pt_id", dbLong, 4);
    table.CreateField("WEIGHT", dbDouble, 8);
    table.CreateField("SHORT", dbText, 4);
    table.Append();
    CDaoRecordset records(&database);
    records.Open(dbOpenDynaset, "NUMBERS");
    for (int id : {17, 0, -3}) {
        records.AddNew();
        records.SetFieldValue("pt_id", id);
        records.Update();
    }
    records.AddNew();
    records.SetFieldValue("SHORT", "none");
    records.Update();
    records.Close();
    table.Close();
    const TextTable made = EnsureTextTable(database, "numbers", {"WEIGHT", "short", "NEW"});
    EXPECT_EQ(made.sizes, (std::vector<long>{TextTable::kNoText, 4, 255}));
    Strings ids;
    for (records.Open(dbOpenDynaset, "SELECT * FROM " + made.table); !records.IsEOF(); records.MoveNext())
        ids.push_back(dao::toText(records.GetFieldValue("PT_ID")));
    EXPECT_EQ(ids, (Strings{"17", "0", "-3", ""}));
    CDaoFieldInfo field;
    records.GetFieldInfo("PT_ID", field);
    EXPECT_EQ(field.type, dbText);
    records.GetFieldInfo("NEW", field);
    EXPECT_TRUE(field.allowZeroLength);
    records.GetFieldInfo("GIS_KEY", field);
    EXPECT_FALSE(field.allowZeroLength);
}

INSTANTIATE_TEST_SUITE_P(Kinds, Keyed, testing::Values("t.mdb", "t.sqlite", "t.gpkg"));
