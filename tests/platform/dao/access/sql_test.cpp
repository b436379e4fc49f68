// Statements over Access files: what is found, with an index and without one, and what a failure leaves.
#include <gtest/gtest.h>

#include <fstream>

#include "platform/dao/dao.h"
#include "platform/dao/jet/database.h"
#include "tests/platform/dao/scratch.h"

namespace {

class AccessSql : public ::testing::Test {
  protected:
    void SetUp() override {
        jet::Database::create(path, jet::Version::kAccess2000);
        {
            jet::Database raw(path, {});
            jet::Column id, key, number;
            id.name = "PT_ID";
            id.size = 50;
            key.name = "GIS_KEY";
            key.size = 50;
            number.name = "N";
            number.type = jet::Type::kLong;
            number.validationRule = "< 5000";
            raw.begin();
            for (const char* table : {"INDEXED", "PLAIN"}) raw.createTable(table, {id, key, number});
            raw.createIndex("INDEXED", {.name = "IDS", .columns = {{"PT_ID"}, {"N", false}}});
            for (const char* table : {"INDEXED", "PLAIN"})
                for (int i = 0; i < 3000; ++i) {
                    std::vector<jet::Value> values = {jet::Value("Pt-" + std::to_string(i % 1500)),
                                                      jet::Value(i % 2 ? "TREE" : "POLE"), jet::Value(i)};
                    raw.records(table)->insert(values);
                }
            raw.commit();
        }
        db.Open(path);
    }
    std::string values(const std::string& sql) {
        std::string out;
        CDaoRecordset records(&db);
        for (records.Open(dbOpenDynaset, sql); !records.IsEOF(); records.MoveNext())
            out += dao::toText(records.GetFieldValue(0)) + " ";
        return out;
    }

    ScratchFolder folder;
    std::string path = folder("t.mdb");
    CDaoDatabase db;
};

TEST_F(AccessSql, AnIndexAndALookupFindWhatAWalkFinds) {
    for (const std::string table : {"INDEXED", "PLAIN"}) {
        std::string from = "SELECT N FROM " + table + " WHERE ";
        for (int round = 0; round < 2; ++round) {
            EXPECT_EQ(values(from + "PT_ID = 'pt-7'"), "7 1507 ");
            EXPECT_EQ(values(from + "PT_ID = 'PT-7  ' AND GIS_KEY = 'tree'"), "7 1507 ");
            EXPECT_EQ(values(from + "PT_ID = 'PT-7' AND N = 1507"), "1507 ");
            EXPECT_EQ(values(from + "PT_ID = 'PT7'"), "") << "a hyphen counts";
            EXPECT_EQ(values(from + "PT_ID = 'none'"), "");
            EXPECT_EQ(values(from + "N = '12'"), "12 ");
            EXPECT_EQ(values(from + "PT_ID = NULL"), "");
        }
        // What is found follows every change.
        db.Execute("UPDATE " + table + " SET PT_ID = 'moved' WHERE N = 7");
        EXPECT_EQ(values(from + "PT_ID = 'PT-7'"), "1507 ");
        EXPECT_EQ(values(from + "PT_ID = 'MOVED'"), "7 ");
        db.Execute("UPDATE " + table + " SET PT_ID = 'PT-7' WHERE N = 7");
        EXPECT_EQ(values(from + "PT_ID = 'PT-7'"), "7 1507 ");
        db.Execute("INSERT INTO " + table + " (PT_ID, N) VALUES ('pt-7', 4000)");
        db.Execute("DELETE FROM " + table + " WHERE N = 7");
        EXPECT_EQ(values(from + "PT_ID = 'PT-7'"), "1507 4000 ");
    }
    EXPECT_EQ(values("SELECT COUNT(*) FROM INDEXED INNER JOIN PLAIN ON INDEXED.PT_ID = PLAIN.PT_ID"),
              "6000 ");
    EXPECT_EQ(values("SELECT COUNT(*) FROM PLAIN INNER JOIN INDEXED ON PLAIN.N = INDEXED.N"), "3000 ");
    EXPECT_EQ(values("SELECT MAX(N) FROM PLAIN WHERE GIS_KEY = 'TREE'"), "2999 ");
    db.Close();
    EXPECT_EQ(faultsOf(path), "");
}

// What a statement of values finds, in both engines.
class Dialect : public ::testing::TestWithParam<const char*> {
  protected:
    void SetUp() override {
        db.Create(path);
        CDaoTableDef table(&db);
        table.Create("T");
        CDaoFieldInfo id, name, key, height, seen, note;
        id.name = "ID";
        id.type = dbLong;
        id.attributes = dbAutoIncrField;
        name.name = "NAME";
        name.type = dbText;
        name.size = 50;
        key = name;
        key.name = "KEY";
        key.defaultValue = "\"TREE\"";
        height.name = "HEIGHT";
        height.type = dbDouble;
        seen.name = "SEEN";
        seen.type = dbDate;
        note.name = "NOTE";
        note.type = dbMemo;
        for (const CDaoFieldInfo& field : {id, name, key, height, seen, note}) table.CreateField(field);
        table.Append();
        table.Close();
        for (const char* row : {"'Ärger_1', 'TREE', 1.5, #2004-05-31#", "'ash', 'POLE', 2, #2005-01-02#",
                                "'Ash tree', 'TREE', -2.5, Null", "'a%b', 'POLE', Null, #2004-12-24#"})
            db.Execute("INSERT INTO T (NAME, KEY, HEIGHT, SEEN) VALUES (" + std::string(row) + ")");
    }
    std::string values(const std::string& sql) {
        std::string out;
        CDaoRecordset records(&db);
        for (records.Open(dbOpenDynaset, sql); !records.IsEOF(); records.MoveNext())
            for (int i = 0; i < records.GetFieldCount(); ++i) {
                dao::Variant value = records.GetFieldValue(i);
                out += (value.isNull() ? "Null" : dao::toText(value)) + " ";
            }
        return out;
    }

    ScratchFolder folder;
    std::string path = folder(GetParam());
    CDaoDatabase db;
};
INSTANTIATE_TEST_SUITE_P(Engines, Dialect, ::testing::Values("t.mdb", "t.sqlite", "t.gpkg"),
                         [](const auto& name) { return std::string(name.param).substr(2); });

TEST_P(Dialect, PatternsAndFunctions) {
    EXPECT_EQ(values("SELECT ID FROM T WHERE NAME LIKE 'ASH*'"), "2 3 ");
    EXPECT_EQ(values("SELECT ID FROM T WHERE NAME LIKE 'as?'"), "2 ");
    EXPECT_EQ(values("SELECT ID FROM T WHERE NAME LIKE '*_1'"), "1 ") << "_ stands for itself";
    EXPECT_EQ(values("SELECT ID FROM T WHERE NAME NOT LIKE '%sh%' ORDER BY ID DESC"), "4 1 ");
    EXPECT_THROW(values("SELECT ID FROM T WHERE NAME LIKE 'a[sh]*'"), CDaoException);
    EXPECT_EQ(values("SELECT LEN(NAME), LEFT(NAME, 2), RIGHT(NAME, 3), MID(NAME, 2, 2), MID(NAME, 6) FROM T "
                     "WHERE ID = 1"),
              "7 Är r_1 rg _1 ");
    EXPECT_EQ(values("SELECT NZ(HEIGHT, 7), NZ(HEIGHT), INT(-2.5), FIX(-2.5), 7 Mod 4, VAL('12.5 m'), "
                     "CLNG(2.5) FROM T "
                     "WHERE HEIGHT IS NULL"),
              "7  -3 -2 3 12.5 2 ");
    EXPECT_EQ(values("SELECT YEAR(SEEN), MONTH(SEEN), DAY(SEEN) FROM T WHERE SEEN = #12/24/2004#"),
              "2004 12 24 ");
    EXPECT_EQ(values("SELECT COUNT(*) FROM T WHERE SEEN < DATE() AND SEEN < NOW()"), "3 ");
    EXPECT_EQ(values("SELECT IIF(HEIGHT > 0, 'up', 'down') & '!' FROM T WHERE ID < 4"), "up! up! down! ");
}

TEST_P(Dialect, SelectsOfTheUsualForms) {
    EXPECT_EQ(values("SELECT TOP 2 ID FROM T ORDER BY HEIGHT DESC"), "2 1 ");
    EXPECT_EQ(values("SELECT DISTINCT KEY FROM T ORDER BY KEY"), "POLE TREE ");
    EXPECT_EQ(values("SELECT DISTINCTROW ID FROM T WHERE ID BETWEEN 2 AND 3"), "2 3 ");
    EXPECT_EQ(
        values("SELECT KEY, COUNT(*), MAX(HEIGHT) AS H FROM T GROUP BY KEY HAVING COUNT(*) > 1 ORDER BY KEY"),
        "POLE 2 2 TREE 2 1.5 ");
    EXPECT_EQ(values("SELECT a.ID, b.ID FROM T AS a INNER JOIN T AS b ON a.KEY = b.KEY WHERE a.ID < b.ID"),
              "1 3 2 4 ");
    EXPECT_EQ(values("SELECT a.ID, b.NAME FROM T a LEFT JOIN T b ON (a.ID = b.ID AND b.HEIGHT > 1.7)"),
              "1 Null 2 ash 3 Null 4 Null ");
    EXPECT_EQ(values("SELECT b.ID FROM T a RIGHT JOIN T b ON a.ID = b.ID AND a.ID > 2"), "3 4 1 2 ");
    EXPECT_EQ(values("SELECT ID FROM T WHERE ID IN (SELECT MAX(ID) FROM T GROUP BY KEY)"), "3 4 ");
    EXPECT_EQ(values("SELECT ID FROM T WHERE ID = 1 UNION SELECT ID FROM T WHERE ID = 4"), "1 4 ");
    EXPECT_EQ(values("SELECT ID FROM T WHERE NOT (HEIGHT > 0) OR SEEN IS NULL"), "3 ");
}

TEST_P(Dialect, Changes) {
    db.Execute("INSERT INTO T (NAME, HEIGHT) VALUES ('d', 1)");
    db.Execute("INSERT INTO T (NAME, KEY) VALUES ('n', Null)");
    db.Execute("INSERT INTO T VALUES (20, 'all', Null, 3, #2006-01-01#, 'x')");
    EXPECT_EQ(values("SELECT ID, KEY FROM T WHERE ID > 4"), "5 TREE 6 Null 20 Null ") << "a Null stays Null";
    db.Execute(
        "INSERT INTO T (NAME, KEY, HEIGHT) SELECT NAME & ' 2', KEY, HEIGHT * 10 FROM T WHERE ID IN (1, 6)");
    EXPECT_EQ(values("SELECT ID, NAME, KEY, HEIGHT FROM T WHERE ID > 20"),
              "21 Ärger_1 2 TREE 15 22 n 2 Null Null ");
    db.Execute("UPDATE T SET KEY = UCASE(NAME), HEIGHT = NZ(HEIGHT) + 1 WHERE KEY IS NULL");
    EXPECT_EQ(values("SELECT KEY, HEIGHT FROM T WHERE ID IN (6, 22)"), "N 1 N 2 1 ");
    db.Execute("UPDATE T SET NOTE = Null, SEEN = #2007-03-04 05:06:07# WHERE ID = 20");
    EXPECT_EQ(values("SELECT NOTE, SEEN FROM T WHERE ID = 20"), "Null 2007-03-04 05:06:07 ");
    db.Execute("DELETE * FROM T WHERE ID > 4 AND NOT ID = 20");
    EXPECT_EQ(values("SELECT COUNT(*) FROM T"), "5 ");
    db.Close();
    EXPECT_EQ(faultsOf(path), "");
}

// Searches without an index walk through a table once: what they remember must follow every change, also when
// the database is closed in between, or another process has written to it.
TEST_F(AccessSql, WhatSearchesRememberFollowsTheFile) {
    std::string found = "SELECT N FROM plain WHERE GIS_KEY = 'WELL'";
    auto add = [&](int n) {
        CDaoRecordset records(&db);
        records.Open(dbOpenDynaset, "SELECT * FROM [PLAIN]");
        records.AddNew();
        records.SetFieldValue("GIS_KEY", "well");
        records.SetFieldValue("N", n);
        records.Update();
    };
    EXPECT_EQ(values(found), "");
    add(4001);
    EXPECT_EQ(values(found), "4001 ") << "a name in other letters is the same table";
    db.Close();
    db.Open(path);
    EXPECT_EQ(values(found), "4001 ");
    add(4002);
    db.Close();
    EXPECT_EQ(outputOf("'" NORVANE_BIN_DIR "/jet' sql '" + path +
                       "' \"INSERT INTO PLAIN (GIS_KEY, N) VALUES ('WELL', 4003)\""),
              "");
    db.Open(path);
    EXPECT_EQ(values(found), "4001 4002 4003 ");
    db.BeginTrans();
    db.Execute("DELETE FROM PLAIN WHERE N = 4001");
    add(4004);
    EXPECT_EQ(values(found), "4002 4003 4004 ");
    db.Close();  // which undoes it
    db.Open(path);
    EXPECT_EQ(values(found), "4001 4002 4003 ");
    db.Close();
    std::filesystem::copy_file(path, folder("copy.mdb"));
    db.Open(folder("copy.mdb"));
    db.Execute("UPDATE PLAIN SET GIS_KEY = 'X' WHERE N = 4002");
    EXPECT_EQ(values(found), "4001 4003 ");
    db.Close();
    db.Open(path);
    EXPECT_EQ(values(found), "4001 4002 4003 ");
}

TEST_F(AccessSql, AStatementThatFailsChangesNothing) {
    EXPECT_THROW(db.Execute("UPDATE PLAIN SET N = N + 2500"), CDaoException);
    EXPECT_EQ(values("SELECT MAX(N) FROM PLAIN"), "2999 ");
    EXPECT_EQ(values("SELECT COUNT(*) FROM PLAIN WHERE N = 2600"), "1 ");
    db.Execute("UPDATE PLAIN SET N = N + 1000");
    EXPECT_EQ(values("SELECT MAX(N) FROM PLAIN"), "3999 ");
    EXPECT_THROW(db.Execute("UPDATE PLAIN SET NOWHERE = 1"), CDaoException);
    db.BeginTrans();
    db.Execute("DELETE FROM PLAIN");
    EXPECT_EQ(values("SELECT COUNT(*) FROM PLAIN"), "0 ");
    db.Rollback();
    EXPECT_EQ(values("SELECT COUNT(*) FROM PLAIN"), "3000 ");
    db.Close();
    EXPECT_EQ(faultsOf(path), "");
}

// A password lies on bytes that are 0 in a file without one, under a mask that stays as it is.
TEST_F(AccessSql, AFileWithAPasswordOpensByItsConnectString) {
    constexpr std::streamoff kPasswordAt = 0x42;
    const std::string password = "a;b }";
    db.Close();
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    for (size_t i = 0; i < password.size(); ++i) {
        std::streamoff at = kPasswordAt + 2 * static_cast<std::streamoff>(i);
        file.seekg(at);
        char byte = static_cast<char>(file.get() ^ password[i]);
        file.seekp(at);
        file.put(byte);
    }
    file.close();
    for (const char* wrong : {"", ";PWD=", ";PWD=a", ";UID=a;b }"})
        EXPECT_THROW(db.Open(path, false, false, dao::ConnectString(wrong)), CDaoException) << wrong;
    db.Open(path, false, false, dao::ConnectString(";pwd={a;b }}}"));
    EXPECT_EQ(values("SELECT COUNT(*) FROM PLAIN"), "3000 ");
    db.Close();
    EXPECT_EQ(outputOf("'" NORVANE_BIN_DIR "/jet' --password '" + password + "' sql '" + path +
                       "' 'SELECT COUNT(*) FROM PLAIN'"),
              "3000\n");
}

class JetProgram : public ::testing::Test {
  protected:
    std::string jet(const std::string& command, const std::string& rest = "") {
        return outputOf("'" NORVANE_BIN_DIR "/jet' " + command + " '" + path_ + "' " + rest + " 2>&1");
    }
    std::string sql(const std::string& statements) { return jet("sql", "\"" + statements + "\""); }
    ScratchFolder folder_;
    std::string path_ = folder_("t.mdb");
};

TEST_F(JetProgram, KnowsTheTypesOfColumnsAndRefusesWhatIsNone) {
    jet("create");
    EXPECT_EQ(sql("CREATE TABLE T (ID COUNTER PRIMARY KEY, [L 1] LONG, S SINGLE, Y YesNo NOT NULL, N SHORT, "
                  "B BYTE, M MONEY, D DOUBLE PRECISION DEFAULT 2.5, W DATETIME, G GUID, C VARCHAR(30), "
                  "X BINARY (10), O LONGBINARY, T MEMO, \\\"a,b\\\" TEXT(5))"),
              "");
    EXPECT_EQ(sql("ALTER TABLE T ADD COLUMN Z YESNO"), "");
    EXPECT_EQ(
        jet("schema"),
        "T\n  ID  Long, autonumber\n  L 1  Long\n  S  Single\n  Y  Yes/No, required\n  N  Integer\n  B "
        " Byte\n"
        "  M  Currency\n  D  Double, default 2.5\n  W  Date/Time\n  G  GUID\n  C  Text(30)\n"
        "  X  Binary(10)\n  O  OLE\n  T  Memo\n  a,b  Text(5)\n  Z  Yes/No\n  primary key PrimaryKey (ID)\n");
    EXPECT_EQ(sql("CREATE TABLE U (A TEXT(5), B LNG)"), "\"LNG\" is no type of a column.\n");
    EXPECT_EQ(sql("CREATE TABLE U (A POINT)"), "\"POINT\" is no type of a column.\n");
    EXPECT_EQ(sql("CREATE TABLE U (A, B LONG)"), "The column A has no type.\n");
    EXPECT_EQ(sql("ALTER TABLE T ADD COLUMN V LNG"), "\"LNG\" is no type of a column.\n");
    EXPECT_EQ(jet("tables"), "T\n");
}

TEST_F(JetProgram, MakesAPrimaryKey) {
    jet("create");
    const struct {
        std::string table, columns, key;
    } cases[] = {{"A", "ID LONG PRIMARY KEY, B TEXT(9)", "ID"},
                 {"B", "N LONG, [the id] TEXT(9) NOT NULL CONSTRAINT pk PRIMARY KEY", "the id"},
                 {"C", "ID COUNTER, B LONG, C TEXT(9), CONSTRAINT pk PRIMARY KEY (C, b)", "C, B"},
                 {"D", "PRIMARY KEY(ID), ID COUNTER", "ID"},
                 {"E", "ID COUNTER, B LONG", ""},
                 {"F", "ID INTEGER NOT NULL PRIMARY KEY AUTOINCREMENT, B LONG", "ID"}};
    for (const auto& c : cases) {
        EXPECT_EQ(sql("CREATE TABLE " + c.table + " (" + c.columns + ")"), "") << c.columns;
        EXPECT_EQ(jet("schema", c.table).find("primary key") == std::string::npos, c.key.empty())
            << c.columns;
        EXPECT_NE(
            jet("schema", c.table).find(c.key.empty() ? "" : "  primary key PrimaryKey (" + c.key + ")\n"),
            std::string::npos)
            << jet("schema", c.table);
    }
    EXPECT_EQ(sql("INSERT INTO A VALUES (1, 'x'); INSERT INTO A VALUES (2, 'x')"), "");
    EXPECT_NE(sql("INSERT INTO A VALUES (2, 'y')"), "") << "the key is there";
    EXPECT_NE(sql("INSERT INTO A (B) VALUES ('z')"), "") << "a key is never empty";
    EXPECT_EQ(sql("SELECT ID, B FROM A ORDER BY ID"), "1|x\n2|x\n");
    EXPECT_EQ(jet("check"), "");
    EXPECT_EQ(sql("CREATE TABLE X (A LONG PRIMARY KEY, B LONG PRIMARY KEY)"),
              "A table has one primary key.\n");
    EXPECT_NE(sql("CREATE TABLE X (A LONG, PRIMARY KEY (B))").find("B"), std::string::npos);
    EXPECT_EQ(sql("ALTER TABLE E ADD COLUMN C LONG PRIMARY KEY"),
              "A column that is added to a table cannot be its primary key.\n");
    EXPECT_EQ(jet("tables"), "A\nB\nC\nD\nE\nF\n");
}

TEST_F(JetProgram, MakesTheVersionThatIsAskedForAndTellsOfFaultsByItsStatus) {
    auto content = [&] {
        std::ifstream in(path_, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    };
    EXPECT_EQ(jet("create", "98"), "The versions are 97 and 2000.\n");
    for (const auto& [version, mark] : {std::pair{"97", 0}, {"2000", 1}, {"", 1}}) {
        std::filesystem::remove(path_);
        EXPECT_EQ(jet("create", version), "");
        EXPECT_EQ(content().at(0x14), mark) << version;
    }
    auto check = [&] {
        return std::system(("'" NORVANE_BIN_DIR "/jet' check '" + path_ + "' >/dev/null").c_str());
    };
    EXPECT_EQ(check(), 0);
    // Another count of free bytes in the last page of records.
    constexpr size_t kPage = 4096, kFreeBytesAt = 2;
    std::string damaged = content();
    size_t page = damaged.size() - kPage;
    while (page > 0 && damaged[page] != 1) page -= kPage;
    damaged[page + kFreeBytesAt] = static_cast<char>(damaged[page + kFreeBytesAt] ^ 0x40);
    writeFile(path_, damaged);
    EXPECT_NE(jet("check"), "");
    EXPECT_NE(check(), 0);
}

TEST_F(JetProgram, TakesBytesAndMoneyAsTheyAre) {
    jet("create");
    sql("CREATE TABLE T (ID LONG, X BINARY(10), O BLOB, M CURRENCY, R DOUBLE)");
    EXPECT_EQ(
        sql("INSERT INTO T VALUES (1, X'00ff41', x'0102', 922337203685477.5807, 0.1234567890123456789)"), "");
    EXPECT_EQ(sql("INSERT INTO T (M, ID, R) VALUES (-922337203685477.5808, 2, -1.5)"), "");
    EXPECT_EQ(sql("INSERT INTO T (ID, M) VALUES (3, 1.5); "
                  "UPDATE T SET M = 1234567890123.4561, X = X'FF' WHERE ID = 3"),
              "");
    EXPECT_EQ(sql("INSERT INTO T (ID, M) VALUES (4, '0.0001'); INSERT INTO T (ID, M) VALUES (5, '1e3')"), "");
    EXPECT_EQ(jet("dump", "T"),
              "ID,X,O,M,R\n1,\"00FF41\",\"0102\",922337203685477.5807,0.12345678901234568\n"
              "2,,,-922337203685477.5808,-1.5\n3,\"FF\",,1234567890123.4561,\n4,,,0.0001,\n5,,,1000.0000,\n");
    EXPECT_EQ(sql("SELECT M FROM T WHERE ID < 4 ORDER BY ID"),
              "922337203685477.5807\n-922337203685477.5808\n1234567890123.4561\n");
    EXPECT_EQ(sql("SELECT COUNT(*) FROM T WHERE M > 1234567890123.4560999 AND R < 1"), "1\n");
    EXPECT_NE(sql("INSERT INTO T (ID, M) VALUES (6, 922337203685477.5808)"), "") << "that is too much";
    EXPECT_NE(sql("INSERT INTO T (ID, X) VALUES (6, X'0G')"), "");
    EXPECT_EQ(sql("SELECT COUNT(*) FROM T"), "5\n");
}

}  // namespace
