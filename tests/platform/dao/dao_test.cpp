#include "platform/dao/dao.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>

#include "platform/dao/engine.h"
#include "platform/dao/jet/database.h"
#include "platform/text/text.h"
#include "tests/platform/dao/description.h"
#include "tests/platform/dao/lock_timeout.h"
#include "tests/platform/dao/scratch.h"

namespace {

using dao::toText;
using dao::Variant;

// A database with one table of every kind of field.
class Dao : public ::testing::TestWithParam<const char*> {
  protected:
    void SetUp() override {
        db.Create(path, dbLangGeneral, std::string(GetParam()) == "out2000.mdb" ? dbVersion40 : dbVersion30);
        CDaoTableDef table(&db);
        table.Create("POLES");
        table.CreateField("PT_ID", dbText, 255, dbVariableField | dbUpdatableField);
        table.CreateField("GIS_KEY", dbText, 255, dbVariableField | dbUpdatableField);
        table.CreateField(field("OWNER", dbText, 20));
        table.CreateField("COUNT", dbLong, 4, dbUpdatableField);
        table.CreateField("HEIGHT", dbDouble, 8, dbUpdatableField);
        table.CreateField("SMALL", dbInteger, 2);
        table.CreateField("RATIO", dbSingle, 4);
        table.CreateField("LIVE", dbBoolean, 1);
        table.CreateField("SEEN", dbDate, 8);
        table.CreateField("PRICE", dbCurrency, 8);
        table.CreateField(field("NOTES", dbMemo, 0));
        table.Append();
    }

    static CDaoFieldInfo field(const std::string& name, int type, long size) {
        CDaoFieldInfo info;
        info.name = name;
        info.type = type;
        info.size = size;
        info.attributes = dbVariableField | dbUpdatableField;
        info.allowZeroLength = true;
        return info;
    }

    void add(const std::string& id, const std::string& key, const std::string& owner = "") {
        CDaoRecordset records(&db);
        records.Open(dbOpenDynaset, "SELECT * FROM [POLES]");
        records.AddNew();
        records.SetFieldValue("PT_ID", id);
        records.SetFieldValue("GIS_KEY", key);
        if (!owner.empty()) records.SetFieldValue("OWNER", owner);
        records.Update();
    }

    std::vector<std::string> column(const std::string& sql) {
        std::vector<std::string> values;
        CDaoRecordset records(&db);
        for (records.Open(dbOpenDynaset, sql); !records.IsEOF(); records.MoveNext())
            values.push_back(toText(records.GetFieldValue(0)));
        return values;
    }

    ScratchFolder folder;
    std::string path = folder(GetParam());
    CDaoDatabase db;
};

INSTANTIATE_TEST_SUITE_P(Engines, Dao,
                         ::testing::Values("out97.mdb", "out2000.mdb", "out.sqlite", "out.gpkg"),
                         [](const auto& name) {
                             std::string file = name.param;
                             return text::replaceAll(file, ".", "_");
                         });

using Strings = std::vector<std::string>;

TEST_P(Dao, TablesReadBackAsTheyWereMade) {
    CDaoFieldInfo counter = field("NO_GIS", dbLong, 4);
    counter.attributes = dbAutoIncrField;
    CDaoFieldInfo current = field("IS_CURRENT", dbText, 255);
    current.validationRule = "\"YES\" Or \"NO\"";
    current.defaultValue = "\"NO\"";
    CDaoFieldInfo share = field("SHARE", dbDouble, 8);
    share.validationRule = ">= 0 And < 100";
    share.required = true;
    {
        CDaoTableDef table(&db);
        table.Create("ZGEO");
        for (const CDaoFieldInfo& f : {counter, current, share}) table.CreateField(f);
        table.CreateField("NAME", dbText, 63);
        table.Append();
    }
    db.Close();
    db.Open(path);
    // A GeoPackage has a version of its own.
    bool is97 = std::string(GetParam()) == "out97.mdb" || std::string(GetParam()) == "out.sqlite";
    EXPECT_EQ(db.GetVersion(), is97 ? "3.0" : "4.0");
    EXPECT_EQ(db.GetTableDefCount(), 2);
    CDaoTableDefInfo info;
    db.GetTableDefInfo(1, info);
    EXPECT_EQ(info.name, "ZGEO");
    EXPECT_EQ(info.connect, "");

    CDaoTableDef table(&db);
    table.Open("zgeo");
    ASSERT_EQ(table.GetFieldCount(), 4);
    CDaoFieldInfo f;
    table.GetFieldInfo("NO_GIS", f);
    EXPECT_EQ(f.type, dbLong);
    EXPECT_TRUE(f.attributes & dbAutoIncrField);
    table.GetFieldInfo(1, f);
    EXPECT_EQ(f.validationRule, "\"YES\" Or \"NO\"");
    EXPECT_EQ(f.defaultValue, "\"NO\"");
    EXPECT_TRUE(f.allowZeroLength);
    EXPECT_EQ(f.size, 255);
    table.GetFieldInfo("SHARE", f);
    EXPECT_EQ(f.type, dbDouble);
    EXPECT_EQ(f.validationRule, ">= 0 And < 100");
    EXPECT_TRUE(f.required);
    table.GetFieldInfo("name", f);
    EXPECT_EQ(f.size, 63);
    EXPECT_FALSE(f.allowZeroLength);
    EXPECT_EQ(f.attributes, dbVariableField | dbUpdatableField);

    CDaoTableDef poles(&db);
    poles.Open("POLES");
    std::vector<int> types;
    for (int i = 0; i < poles.GetFieldCount(); ++i) {
        poles.GetFieldInfo(i, f);
        types.push_back(f.type);
    }
    EXPECT_EQ(types, (std::vector<int>{dbText, dbText, dbText, dbLong, dbDouble, dbInteger, dbSingle,
                                       dbBoolean, dbDate, dbCurrency, dbMemo}));
}

TEST_P(Dao, ValuesOfEveryTypeComeBackAndOtherProgramsReadThem) {
    CDaoRecordset records(&db);
    records.Open(dbOpenDynaset, "POLES");
    records.AddNew();
    records.SetFieldValue("PT_ID", "1042");
    records.SetFieldValue("GIS_KEY", "TREE");
    records.SetFieldValue("OWNER", "O'Brien \"Ö\"");
    records.SetFieldValue("COUNT", "-2147483648");
    records.SetFieldValue("HEIGHT", 12.5);
    records.SetFieldValue("SMALL", " 7 ");
    records.SetFieldValue("RATIO", 0.1f);
    records.SetFieldValue("LIVE", true);
    records.SetFieldValue("SEEN", "5/31/2004 1:45:10 PM");
    records.SetFieldValue("PRICE", "19.99");
    records.SetFieldValue("NOTES", std::string(3000, 'x'));
    records.Update();
    EXPECT_TRUE(records.IsEOF());
    records.MoveFirst();
    EXPECT_EQ(records.GetFieldValue("OWNER"), Variant("O'Brien \"Ö\""));
    EXPECT_EQ(records.GetFieldValue("COUNT"), Variant(std::numeric_limits<int32_t>::min()));
    EXPECT_EQ(records.GetFieldValue("HEIGHT"), Variant(12.5));
    EXPECT_EQ(records.GetFieldValue("SMALL"), Variant(int16_t{7}));
    EXPECT_EQ(records.GetFieldValue("RATIO"), Variant(0.1f));
    EXPECT_EQ(records.GetFieldValue("LIVE"), Variant(true));
    EXPECT_EQ(toText(records.GetFieldValue("SEEN")), "2004-05-31 13:45:10");
    EXPECT_EQ(records.GetFieldValue("PRICE"), Variant(dao::Currency{199900}));
    EXPECT_EQ(toText(records.GetFieldValue("NOTES")).size(), 3000u);
    records.Close();
    db.Close();
    if (!haveSqlite3()) GTEST_SKIP() << "the sqlite3 program is not installed";
    EXPECT_EQ(answer(path, "SELECT PT_ID,OWNER,COUNT,HEIGHT,SMALL,LIVE,SEEN,PRICE FROM POLES"),
              "1042|O'Brien \"Ö\"|-2147483648|12.5|7|-1|2004-05-31 13:45:10|" +
                  std::string(isAccessFile(path) ? "19.9900\n" : "19.99\n"));
    EXPECT_EQ(faultsOf(path), "");
    EXPECT_NE(answer(path, "INSERT INTO POLES(PT_ID) VALUES('')"), "") << "an error";
    EXPECT_EQ(answer(path, "SELECT COUNT(*) FROM POLES"), "1\n");
}

TEST_P(Dao, ValuesThatDoNotFitAreRefusedAndTheRecordStays) {
    add("1", "TREE", "first");
    CDaoRecordset records(&db);
    records.Open(dbOpenDynaset, "SELECT * FROM POLES");
    records.Edit();
    auto refusal = [&](const char* name, const Variant& value) {
        return descriptionOf([&] { records.SetFieldValue(name, value); });
    };
    EXPECT_EQ(refusal("COUNT", "12abc").substr(0, 26), "Data type conversion error");
    EXPECT_EQ(refusal("COUNT", "").substr(0, 26), "Data type conversion error");
    EXPECT_EQ(refusal("COUNT", "99999999999").substr(0, 8), "Overflow");
    EXPECT_EQ(refusal("SMALL", 32768).substr(0, 8), "Overflow");
    EXPECT_EQ(refusal("HEIGHT", "0x1F").substr(0, 26), "Data type conversion error");
    EXPECT_EQ(refusal("HEIGHT", "nan").substr(0, 26), "Data type conversion error");
    EXPECT_EQ(refusal("SEEN", "2/30/2004").substr(0, 26), "Data type conversion error");
    EXPECT_EQ(refusal("OWNER", std::string(21, 'x')),
              "The text for the field OWNER is too long: it holds 20 characters.");
    EXPECT_EQ(refusal("OWNER", "ÄÄÄÄÄÄÄÄÄÄÄÄÄÄÄÄÄÄÄÄ"), "no exception") << "characters count, not bytes";
    EXPECT_EQ(refusal("NOWHERE", "x"), "Cannot find the field NOWHERE.");
    records.SetFieldValue("PT_ID", "");
    EXPECT_EQ(descriptionOf([&] { records.Update(); }), "The field PT_ID cannot hold text of no length.");
    records.CancelUpdate();
    EXPECT_EQ(toText(records.GetFieldValue("OWNER")), "first");
    // Halves are rounded to the even neighbour.
    records.Edit();
    records.SetFieldValue("COUNT", "2.5");
    records.SetFieldValue("SMALL", 3.5);
    records.Update();
    EXPECT_EQ(toText(records.GetFieldValue("COUNT")) + " " + toText(records.GetFieldValue("SMALL")), "2 4");
}

TEST_P(Dao, RulesAndDefaultsHold) {
    CDaoTableDef table(&db);
    table.Create("LINKS");
    CDaoFieldInfo current = field("IS_CURRENT", dbText, 255);
    current.validationRule = "\"YES\" Or \"NO\"";
    current.defaultValue = "\"NO\"";
    table.CreateField("GIS_NAME", dbText, 255);
    table.CreateField(current);
    table.Append();
    CDaoRecordset records(&db);
    records.Open(dbOpenDynaset, "SELECT * FROM LINKS");
    records.AddNew();
    records.SetFieldValue("GIS_NAME", "TREE");
    records.Update();
    records.MoveFirst();
    EXPECT_EQ(toText(records.GetFieldValue("IS_CURRENT")), "NO");
    for (const char* bad : {"MAYBE", ""}) {
        records.Edit();
        records.SetFieldValue("IS_CURRENT", bad);
        EXPECT_EQ(descriptionOf([&] { records.Update(); }),
                  "The value breaks the validation rule \"YES\" Or \"NO\".");
        records.CancelUpdate();
    }
    records.Edit();
    records.SetFieldValue("IS_CURRENT", "yes");
    records.Update();
    EXPECT_EQ(column("SELECT GIS_NAME FROM LINKS WHERE IS_CURRENT = 'YES'"), Strings{"TREE"});
}

TEST_P(Dao, StatementsOfTheDialect) {
    add("1", "TREE", "Öztürk");
    add("2", "tree", "smith");
    add("3", "POLE", "Smith");
    EXPECT_EQ(column("SELECT PT_ID FROM [POLES] WHERE GIS_KEY = 'Tree'"), (Strings{"1", "2"}));
    EXPECT_EQ(column("SELECT PT_ID FROM POLES WHERE UCASE(OWNER) = 'SMITH' AND UCASE(GIS_KEY) ='TREE'"),
              Strings{"2"});
    EXPECT_EQ(column("SELECT PT_ID FROM POLES WHERE [OWNER] = \"SMITH\";"), (Strings{"2", "3"}));
    EXPECT_EQ(column("SELECT PT_ID FROM POLES WHERE OWNER = 'öZTÜRK'"), Strings{"1"});
    EXPECT_EQ(column("SELECT PT_ID FROM POLES WHERE UCASE(OWNER) = 'ÖZTÜRK'"), Strings{"1"});
    EXPECT_EQ(column("SELECT PT_ID FROM POLES WHERE LIVE = False OR LIVE IS NULL ORDER BY PT_ID DESC"),
              (Strings{"3", "2", "1"}));
    EXPECT_EQ(column("SELECT COUNT(*) FROM POLES"), Strings{"3"});
    EXPECT_EQ(column("SELECT DISTINCT UCASE(GIS_KEY) FROM POLES"), (Strings{"TREE", "POLE"}));
    db.Execute("UPDATE POLES SET OWNER = 'none' WHERE OWNER = 'smith'");
    db.Execute("DELETE * FROM POLES WHERE PT_ID = '1'");
    EXPECT_EQ(column("SELECT OWNER FROM POLES"), (Strings{"none", "none"}));
    EXPECT_EQ(column("poles"), (Strings{"2", "3"}));

    EXPECT_EQ(descriptionOf([&] { column("SELECT * FROM NOWHERE"); }), "Cannot find the table NOWHERE.");
    EXPECT_EQ(descriptionOf([&] { column("SELECT * FROM POLES WHERE NOPE = 'x'"); }),
              "Cannot find the field NOPE.");
    for (const char* wrong :
         {"", "SELECT", "SELECT * FROM", "SELEKT * FROM POLES", "SELECT * FROM POLES WHERE OWNER = 'O'Brien'",
          "SELECT * FROM [POLES", "SELECT * FROM POLES; DROP TABLE POLES",
          "SELECT * FROM POLES WHERE OWNER = 'O'Neil", "SELECT * FROM POLES WHERE SEEN = #13/13/2004#",
          "SELECT * FROM POLES WHERE PT_ID = '1') OR (PT_ID = '2'"})
        EXPECT_NE(descriptionOf([&] { column(wrong); }), "no exception") << wrong;
    EXPECT_NE(descriptionOf([&] { db.Execute("DROP TABLE POLES"); }), "no exception");
    EXPECT_EQ(column("poles").size(), 2u);
}

TEST_P(Dao, ParametersAreValuesAndNothingElse) {
    for (const char* id : {"A1", "A2", "' OR 1=1 --", "A3", "a2"}) add(id, "TREE", "Jane");
    auto found = [&](int type, const std::string& sql, const std::vector<Variant>& parameters) {
        std::string ids;
        CDaoRecordset records(&db);
        for (records.Open(type, sql, 0, parameters); !records.IsEOF(); records.MoveNext())
            ids += toText(records.GetFieldValue("PT_ID")) + ";";
        return ids;
    };
    for (int type : {dbOpenDynaset, dbOpenSnapshot}) {
        const std::string select = "SELECT PT_ID FROM POLES WHERE ";
        EXPECT_EQ(found(type, select + "PT_ID = ?", {"A2"}), "A2;a2;");
        EXPECT_EQ(found(type, select + "PT_ID = ? AND GIS_KEY = ? ORDER BY PT_ID DESC", {"A3", "tree"}),
                  "A3;");
        EXPECT_EQ(found(type, select + "PT_ID = ? OR UCASE(PT_ID) > ?", {"' OR 1=1 --", "A2"}),
                  "' OR 1=1 --;A3;");
        EXPECT_EQ(found(type, select + "PT_ID = '?' OR PT_ID = ?", {"A1"}), "A1;");
        EXPECT_EQ(found(type, select + "OWNER = ?", {Variant()}), "");
        EXPECT_EQ(found(type, select + "OWNER = ? COLLATE NOCASE AND PT_ID < ?", {"JANE", "A2"}),
                  "A1;' OR 1=1 --;");
        EXPECT_THROW(found(type, select + "PT_ID = ?", {}), CDaoException);
        EXPECT_THROW(found(type, select + "PT_ID = ?", {"A1", "A2"}), CDaoException);
        EXPECT_THROW(found(type, "POLES", {"A1"}), CDaoException);
        EXPECT_THROW(found(type, "SELECT PT_ID FROM POLES", {"A1"}), CDaoException);
    }
    // A walk that reads ahead in pieces asks the same in each of them.
    for (int i = 0; i < 100; ++i) add("B" + std::to_string(i), i % 3 ? "ROAD" : "TREE");
    EXPECT_EQ(
        found(dbOpenDynaset, "SELECT * FROM POLES WHERE GIS_KEY = ? AND PT_ID <> ?", {"TREE", "B0"}).size(),
        found(dbOpenSnapshot, "SELECT * FROM POLES WHERE GIS_KEY = ? AND PT_ID <> ?", {"TREE", "B0"}).size());
    // A statement that gives no records takes none, and a ? that stays open must not write a Null.
    EXPECT_THROW(db.Execute("UPDATE POLES SET OWNER = ?"), CDaoException);
    EXPECT_EQ(found(dbOpenDynaset, "SELECT * FROM POLES WHERE OWNER = ?", {"Jane"}),
              "A1;A2;' OR 1=1 --;A3;a2;");
}

TEST_P(Dao, ADynasetKeepsItsRecordsWhileTheyAreChanged) {
    for (int i = 1; i <= 20; ++i) add(std::to_string(i), i % 2 ? "ODD" : "EVEN");
    // Every record leaves the condition as it is edited, and still each is visited once.
    CDaoRecordset records(&db);
    int visited = 0;
    for (records.Open(dbOpenDynaset, "SELECT GIS_KEY FROM POLES WHERE GIS_KEY = 'ODD'"); !records.IsEOF();
         records.MoveNext(), ++visited) {
        records.Edit();
        records.SetFieldValue("GIS_KEY", "DONE");
        records.Update();
    }
    EXPECT_EQ(visited, 10);
    EXPECT_EQ(column("SELECT PT_ID FROM POLES WHERE GIS_KEY = 'DONE'").size(), 10u);

    // Deleting on the way, going back, adding, and what another record set did.
    records.Close();
    records.Open(dbOpenDynaset, "SELECT * FROM POLES WHERE GIS_KEY = 'EVEN'");
    records.MoveLast();
    EXPECT_EQ(records.GetRecordCount(), 10);
    EXPECT_EQ(toText(records.GetFieldValue("PT_ID")), "20");
    records.MoveFirst();
    records.Delete();
    EXPECT_EQ(descriptionOf([&] { records.GetFieldValue("PT_ID"); }), "The record has been deleted.");
    EXPECT_EQ(descriptionOf([&] { records.Edit(); }), "The record has been deleted.");
    records.MoveNext();
    EXPECT_EQ(toText(records.GetFieldValue("PT_ID")), "4");
    db.Execute("UPDATE POLES SET OWNER = 'seen' WHERE PT_ID = '4'");
    EXPECT_EQ(toText(records.GetFieldValue("OWNER")), "seen");
    records.AddNew();
    records.SetFieldValue("PT_ID", "99");
    records.SetFieldValue("GIS_KEY", "EVEN");
    EXPECT_EQ(toText(records.GetFieldValue("PT_ID")), "99");
    EXPECT_TRUE(records.GetFieldValue("OWNER").isNull());
    records.Update();
    EXPECT_EQ(toText(records.GetFieldValue("PT_ID")), "4");
    records.MoveLast();
    EXPECT_EQ(toText(records.GetFieldValue("PT_ID")), "99");
    records.MoveNext();
    EXPECT_TRUE(records.IsEOF());
    EXPECT_NE(descriptionOf([&] { records.MoveNext(); }), "no exception");
    records.MovePrev();
    EXPECT_EQ(toText(records.GetFieldValue("PT_ID")), "99");
    EXPECT_NE(descriptionOf([&] { records.Update(); }), "no exception");
    EXPECT_NE(descriptionOf([&] { records.SetFieldValue("OWNER", "x"); }), "no exception");
    records.MoveFirst();
    EXPECT_FALSE(records.IsBOF());
    records.MovePrev();
    EXPECT_TRUE(records.IsBOF());
    EXPECT_NE(descriptionOf([&] { records.MovePrev(); }), "no exception");
    records.MoveNext();
    EXPECT_FALSE(records.IsBOF());

    CDaoRecordset counted(&db);
    counted.Open(dbOpenDynaset, "SELECT COUNT(*) FROM POLES");
    EXPECT_FALSE(counted.CanUpdate());
    EXPECT_NE(descriptionOf([&] { counted.Edit(); }), "no exception");
}

TEST_P(Dao, FieldsComeAndGoInATableWithRecords) {
    add("1", "TREE", "x");
    CDaoTableDef table(&db);
    table.Open("POLES");
    table.DeleteField("owner");
    table.CreateField("OWNER", dbLong, 4);
    table.CreateField("NO", dbLong, 4, dbAutoIncrField);
    EXPECT_NE(descriptionOf([&] { table.CreateField("NO2", dbLong, 4, dbAutoIncrField); }), "no exception");
    EXPECT_EQ(descriptionOf([&] { table.CreateField("Pt_Id", dbText, 255); }),
              "A field named Pt_Id exists already.");
    EXPECT_NE(descriptionOf([&] { table.CreateField("A.B", dbText, 255); }), "no exception");
    EXPECT_NE(descriptionOf([&] { table.CreateField("BIG", dbText, 256); }), "no exception");
    EXPECT_EQ(table.GetFieldCount(), 12);
    EXPECT_EQ(column("SELECT OWNER FROM POLES"), Strings{""});
    EXPECT_EQ(column("SELECT NO FROM POLES"), Strings{"1"});
    table.DeleteField("NO");
    EXPECT_EQ(column("SELECT PT_ID FROM POLES"), Strings{"1"});
    table.SetName("MASTS");
    EXPECT_EQ(column("SELECT PT_ID FROM MASTS"), Strings{"1"});
    EXPECT_NE(descriptionOf([&] { column("SELECT PT_ID FROM POLES"); }), "no exception");
    table.Close();
    db.DeleteTableDef("masts");
    EXPECT_EQ(db.GetTableDefCount(), 0);
    EXPECT_NE(descriptionOf([&] { db.DeleteTableDef("masts"); }), "no exception");
    EXPECT_NE(descriptionOf([&] { CDaoTableDef(&db).Open("masts"); }), "no exception");
    EXPECT_NE(descriptionOf([&] { CDaoTableDef(&db).Create(""); }), "no exception");
}

TEST_P(Dao, ALargeTableIsSearchedByAnIndex) {
    for (int i = 1; i <= 1500; ++i) add(std::to_string(i), "TREE");
    EXPECT_EQ(column("SELECT PT_ID FROM [POLES] WHERE [PT_ID] = '700' AND GIS_KEY = 'TREE'"), Strings{"700"});
    // A walk over all of it sees each record once and as it is, whatever is changed on the way.
    CDaoRecordset records(&db);
    int visited = 0;
    for (records.Open(dbOpenDynaset, "SELECT * FROM POLES WHERE GIS_KEY = 'TREE'"); !records.IsEOF();
         records.MoveNext()) {
        ASSERT_EQ(toText(records.GetFieldValue("PT_ID")), std::to_string(++visited));
        if (visited % 7) continue;
        records.Edit();
        records.SetFieldValue("GIS_KEY", "SEEN");
        records.Update();
        ASSERT_EQ(toText(records.GetFieldValue("GIS_KEY")), "SEEN");
        if (visited % 2)
            db.Execute("UPDATE POLES SET OWNER = 'x' WHERE PT_ID = '" + std::to_string(visited + 1) + "'");
        if (visited % 2 == 0) continue;
        records.MoveNext();
        ASSERT_EQ(toText(records.GetFieldValue("PT_ID")) + toText(records.GetFieldValue("OWNER")),
                  std::to_string(++visited) + "x");
    }
    EXPECT_EQ(visited, 1500);
    records.Close();
    db.Close();
    if (isAccessFile(path)) return;  // it has no place for an index that is not its user's
    if (!haveSqlite3()) GTEST_SKIP() << "the sqlite3 program is not installed";
    std::string plan =
        sqlite3(path,
                "EXPLAIN QUERY PLAN SELECT rowid FROM POLES WHERE (PT_ID = '700' AND GIS_KEY = 'TREE') "
                "AND rowid > -9 ORDER BY rowid LIMIT 8");
    EXPECT_NE(plan.find("USING COVERING INDEX POLES by PT_ID, GIS_KEY"), std::string::npos) << plan;
    EXPECT_EQ(plan.find("TEMP B-TREE"), std::string::npos) << plan;
}

TEST_P(Dao, DatabasesOfOneProcessShareTheFile) {
    CDaoDatabase other;
    other.Open(path);
    add("1", "TREE");
    CDaoRecordset records(&other);
    records.Open(dbOpenDynaset, "SELECT * FROM POLES");
    EXPECT_FALSE(records.IsEOF());
    records.Edit();
    records.SetFieldValue("OWNER", "x");
    records.Update();
    EXPECT_EQ(column("SELECT OWNER FROM POLES"), Strings{"x"});
    CDaoDatabase alone;
    EXPECT_NE(descriptionOf([&] { alone.Open(path, true); }), "no exception");
}

TEST_P(Dao, ATransactionIsKeptWholeOrNotAtAll) {
    add("before", "TREE");
    db.BeginTrans();
    add("1", "TREE");
    CDaoTableDef table(&db);
    table.Open("POLES");
    table.CreateField(field("LATER", dbText, 10));
    table.Close();
    EXPECT_EQ(column("SELECT PT_ID FROM POLES"), (Strings{"before", "1"}));
    db.Rollback();
    EXPECT_EQ(column("SELECT PT_ID FROM POLES"), Strings{"before"});
    EXPECT_NE(descriptionOf([&] { column("SELECT LATER FROM POLES"); }), "no exception");

    db.BeginTrans();
    add("2", "TREE");
    db.CommitTrans();
    db.BeginTrans();
    add("3", "TREE");
    db.Close();  // without a word: undone
    db.Open(path);
    EXPECT_EQ(column("SELECT PT_ID FROM POLES"), (Strings{"before", "2"}));
    EXPECT_NE(descriptionOf([&] { db.CommitTrans(); }), "no exception");
}

TEST(DaoFiles, WhatIsNoDatabaseIsRefusedWithItsReason) {
    ScratchFolder folder;
    CDaoDatabase db;
    auto refusal = [&](const std::string& name) { return descriptionOf([&] { db.Open(folder(name)); }); };
    std::ofstream(folder("text.mdb"))
        << "not a database at all, though it is long enough to hold a header of one\n";
    std::ofstream empty(folder("empty.mdb"));
    std::ofstream(folder("access.mdb"), std::ios::binary).write("\0\1\0\0Standard Jet DB\0\1\0\0\0", 24);
    std::ofstream(folder("broken.mdb"), std::ios::binary)
        << std::string("SQLite format 3\0", 16) << std::string(200, 'x');
    EXPECT_EQ(refusal("text.mdb"),
              "The file \"" + folder("text.mdb") + "\" is no database, or one of an unknown format.");
    EXPECT_EQ(refusal("empty.mdb"),
              "The file \"" + folder("empty.mdb") + "\" is no database, or one of an unknown format.");
    EXPECT_EQ(refusal("access.mdb"), "The database is damaged: page 0 lies behind the end of the file.");
    EXPECT_NE(refusal("broken.mdb"), "no exception");
    EXPECT_EQ(refusal("missing.mdb"), "Cannot find the file \"" + folder("missing.mdb") + "\".");
    EXPECT_EQ(descriptionOf([&] { db.Open(folder.path()); }),
              "\"" + folder.path() + "\" is a folder, not a database.");
    EXPECT_NE(descriptionOf([&] { db.Open("", false, false, dao::ConnectString("ODBC;DSN=x")); }),
              "no exception");
    EXPECT_NE(descriptionOf([&] { db.Open(""); }), "no exception");
    EXPECT_NE(descriptionOf([&] { db.Create(folder("text.mdb")); }), "no exception");
    EXPECT_NE(descriptionOf([&] { db.Create(folder("nowhere/out.mdb")); }), "no exception");
    EXPECT_NE(descriptionOf([&] { db.GetTableDefCount(); }), "no exception");
    EXPECT_FALSE(db.IsOpen());
    EXPECT_EQ(outputOf("cat '" + folder("text.mdb") + "'").substr(0, 14), "not a database");
}

TEST(DaoFiles, AReadOnlyFileIsReadAndNotWritten) {
    ScratchFolder folder;
    CDaoDatabase db;
    db.Create(folder("out.mdb"));
    {
        CDaoTableDef table(&db);
        table.Create("T");
        table.CreateField("A", dbText, 255);
        table.Append();
    }
    db.Execute("INSERT INTO T (A) VALUES ('x')");
    db.Close();
    ::chmod(folder("out.mdb").c_str(), 0444);
    db.Open(folder("out.mdb"));
    CDaoRecordset records(&db);
    records.Open(dbOpenDynaset, "SELECT * FROM T");
    EXPECT_EQ(toText(records.GetFieldValue("A")), "x");
    records.Edit();
    records.SetFieldValue("A", "y");
    EXPECT_EQ(descriptionOf([&] { records.Update(); }),
              "The database \"" + folder("out.mdb") + "\" cannot be changed: it is read-only.");
    EXPECT_NE(descriptionOf([&] {
                  CDaoTableDef t(&db);
                  t.Open("T");
                  t.CreateField("B", dbText, 9);
              }),
              "no exception");
}

TEST(DaoFiles, AFileLockedByAnotherProcessGivesItsMessageAndGoesOnLater) {
    if (!haveSqlite3()) GTEST_SKIP() << "the sqlite3 program is not installed";
    ScratchFolder folder;
    ShortLockTimeout shortTimeout;
    CDaoDatabase db;
    db.Create(folder("out.sqlite"));
    {
        CDaoTableDef table(&db);
        table.Create("T");
        table.CreateField("A", dbText, 255);
        table.Append();
    }
    std::FILE* holder = ::popen(("sqlite3 '" + folder("out.sqlite") + "' >/dev/null").c_str(), "w");
    ASSERT_NE(holder, nullptr);
    std::fprintf(holder, "BEGIN EXCLUSIVE;\n.shell touch '%s'\n", folder("held").c_str());
    std::fflush(holder);
    while (!std::filesystem::exists(folder("held"))) ::usleep(1000);

    CDaoDatabase other;
    std::string locked = "The database \"" + folder("out.sqlite") +
                         "\" is locked by another process. Please try again when it is free.";
    EXPECT_EQ(descriptionOf([&] { db.Execute("INSERT INTO T (A) VALUES ('x')"); }), locked);
    db.Close();
    EXPECT_EQ(descriptionOf([&] { other.Open(folder("out.sqlite")); }), locked);
    ::pclose(holder);
    other.Open(folder("out.sqlite"));
    other.Execute("INSERT INTO T (A) VALUES ('x')");
    other.Close();
    EXPECT_EQ(sqlite3(folder("out.sqlite"), "SELECT * FROM T"), "x\n");
}

TEST(DaoFiles, AnAccessFileLockedByAnotherGivesItsMessageAndGoesOnLater) {
    ScratchFolder folder;
    ShortLockTimeout shortTimeout;
    CDaoDatabase db;
    db.Create(folder("out.mdb"));
    {
        CDaoTableDef table(&db);
        table.Create("T");
        table.CreateField("A", dbText, 255);
        table.Append();
    }
    std::string locked = "The database \"" + folder("out.mdb") +
                         "\" is locked by another process. Please try again when it is free.";
    {
        jet::Database holder(folder("out.mdb"), {.exclusive = true});
        EXPECT_EQ(descriptionOf([&] { db.Execute("INSERT INTO T (A) VALUES ('x')"); }), locked);
        db.Close();
        EXPECT_EQ(descriptionOf([&] { db.Open(folder("out.mdb")); }), locked);
    }
    db.Open(folder("out.mdb"));
    db.Execute("INSERT INTO T (A) VALUES ('x')");
    db.Close();
    EXPECT_EQ(answer(folder("out.mdb"), "SELECT * FROM T"), "x\n");
    EXPECT_EQ(faultsOf(folder("out.mdb")), "");
}

TEST(DaoFiles, TablesOfOtherProgramsAreReadAsFarAsTheyGo) {
    if (!haveSqlite3()) GTEST_SKIP() << "the sqlite3 program is not installed";
    ScratchFolder folder;
    sqlite3(
        folder("f.db"),
        "CREATE TABLE a(id INTEGER PRIMARY KEY, n VARCHAR(30) NOT NULL, r REAL, t TEXT DEFAULT 'a''b', x, "
        "UNIQUE(n), CHECK(r > 0)); INSERT INTO a VALUES(5,'one',1.5,'long',x'00ff');"
        "CREATE TABLE w(k TEXT PRIMARY KEY, v) WITHOUT ROWID; INSERT INTO w VALUES('k','v');"
        "CREATE VIEW v AS SELECT n FROM a;");
    CDaoDatabase db;
    db.Open(folder("f.db"));
    EXPECT_EQ(db.GetTableDefCount(), 2);
    CDaoTableDef table(&db);
    table.Open("A");
    CDaoFieldInfo f;
    table.GetFieldInfo("n", f);
    EXPECT_EQ(f.type, dbText);
    EXPECT_EQ(f.size, 30);
    EXPECT_TRUE(f.required);
    table.GetFieldInfo("t", f);
    EXPECT_EQ(f.type, dbMemo);
    EXPECT_EQ(f.defaultValue, "\"a'b\"");
    CDaoRecordset records(&db);
    records.Open(dbOpenDynaset, "SELECT * FROM a WHERE n = 'ONE'");
    EXPECT_TRUE(records.IsEOF()) << "the column compares as its maker wanted";
    records.Close();
    records.Open(dbOpenDynaset, "SELECT * FROM a");
    EXPECT_EQ(toText(records.GetFieldValue("r")), "1.5");
    records.AddNew();
    records.SetFieldValue("n", "one");
    EXPECT_NE(descriptionOf([&] { records.Update(); }).find("already"), std::string::npos);
    records.Close();
    records.Open(dbOpenDynaset, "SELECT * FROM w");
    EXPECT_EQ(toText(records.GetFieldValue("v")), "v");
    EXPECT_FALSE(records.CanUpdate());
    records.Close();
    table.DeleteField("t");
    EXPECT_EQ(table.GetFieldCount(), 4);
    table.Close();
    db.Close();
    // A name that could not be given here, and cannot be put into brackets.
    sqlite3(folder("g.db"), "CREATE TABLE \\\"a]b\\\"(n); INSERT INTO \\\"a]b\\\" VALUES(7)");
    db.Open(folder("g.db"));
    records.Open(dbOpenDynaset, "a]b");
    EXPECT_EQ(toText(records.GetFieldValue(0)), "7");
}

// An engine that keeps what it was told, as a server would hear it.
class RecordingEngine : public dao::Engine {
  public:
    bool opens(const dao::Source& source) const override { return source.connect.onServer(); }
    std::shared_ptr<dao::Connection> open(const dao::Source& source) override {
        opened.push_back(source.connect.text());
        throw CDaoException("no server");
    }
    std::vector<std::string> opened;
};

TEST(DaoEngines, AConnectStringGoesToTheEngineThatIsRegisteredForIt) {
    auto engine = std::make_shared<RecordingEngine>();
    dao::registerEngine(engine);
    CDaoDatabase db;
    EXPECT_EQ(descriptionOf([&] { db.Open("", false, false, dao::ConnectString("ODBC;DSN=survey")); }),
              "no server");
    dao::unregisterEngine(engine.get());
    EXPECT_NE(descriptionOf([&] { db.Open("", false, false, dao::ConnectString("ODBC;DSN=survey")); }),
              "no server");
    EXPECT_EQ(engine->opened, Strings{"ODBC;DSN=survey"});
}

TEST(DaoDates, TextAndCalendar) {
    auto read = [](const char* s) {
        dao::Date date;
        return dao::dateFromText(s, date) ? toText(Variant(date)) : "none";
    };
    EXPECT_EQ(read("5/31/2004"), "2004-05-31");
    EXPECT_EQ(read("2004-05-31 00:00:01"), "2004-05-31 00:00:01");
    EXPECT_EQ(read("2004/5/3T7:08"), "2004-05-03 07:08:00");
    EXPECT_EQ(read("2/29/2000 12:00 am"), "2000-02-29");
    EXPECT_EQ(read("1/2/29"), "2029-01-02");
    EXPECT_EQ(read("1/2/30"), "1930-01-02");
    EXPECT_EQ(read("7/4/1776 18:00"), "1776-07-04 18:00:00");
    for (const char* bad : {"", "2/29/1900", "13/1/2004", "5/31", "2004", "5/31/2004 25:00", "x",
                            "1/1/2004 1:2:3 PMx", "99999/1/1", "-1/1/2004"})
        EXPECT_EQ(read(bad), "none") << bad;
    dao::Date date;
    ASSERT_TRUE(dao::dateFromText("1899-12-29 06:00", date));
    EXPECT_DOUBLE_EQ(date.days, -1.25);
    ASSERT_TRUE(dao::dateFromText("2000-01-01", date));
    EXPECT_DOUBLE_EQ(date.days, 36526);
}

}  // namespace
