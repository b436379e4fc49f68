// GeoPackages: whatever is done to them through the interface, they keep the rules of the standard.
#include <gtest/gtest.h>

#include "platform/dao/dao.h"
#include "tests/platform/dao/scratch.h"

namespace {

class GeoPackage : public ::testing::Test {
  protected:
    void SetUp() override { db.Create(path); }

    void makeTable(const std::string& name, const std::vector<CDaoFieldInfo>& fields) {
        CDaoTableDef table(&db);
        table.Create(name);
        for (const CDaoFieldInfo& field : fields) table.CreateField(field);
        table.Append();
    }
    static CDaoFieldInfo field(const std::string& name, int type, long size = 0) {
        CDaoFieldInfo info;
        info.name = name;
        info.type = type;
        info.size = size;
        return info;
    }
    void add(const std::string& table, const std::string& name, dao::Variant value) {
        CDaoRecordset records(&db);
        records.Open(dbOpenDynaset, "SELECT * FROM [" + table + "]");
        records.AddNew();
        records.SetFieldValue(name, std::move(value));
        records.Update();
    }
    // The rules that the file breaks, and its registered tables.
    std::string checked() {
        db.Close();
        std::string out = outputOf(
            "/usr/bin/python3 " NORVANE_SOURCE_DIR "/tests/platform/dao/check_geopackage.py '" + path + "'");
        db.Open(path);
        return out;
    }
    std::vector<std::string> fieldNames(int type, const std::string& sql) {
        std::vector<std::string> names;
        CDaoRecordset records(&db);
        records.Open(type, sql);
        CDaoFieldInfo info;
        for (int i = 0; i < records.GetFieldCount(); ++i) {
            records.GetFieldInfo(i, info);
            names.push_back(info.name);
        }
        return names;
    }

    ScratchFolder folder;
    std::string path = folder("survey.gpkg");
    CDaoDatabase db;
};
using Strings = std::vector<std::string>;

TEST_F(GeoPackage, KeepsTheRulesThroughEveryChange) {
    EXPECT_EQ(checked(), "");
    EXPECT_EQ(db.GetTableDefCount(), 0) << "the register is no table of the user's";
    CDaoFieldInfo counter = field("NO", dbLong);
    counter.attributes = dbAutoIncrField;
    makeTable("POLES", {field("PT_ID", dbText, 255), field("FID", dbLong), field("HEIGHT", dbDouble)});
    makeTable("NUMBERED", {counter, field("NAME", dbText, 20)});
    EXPECT_EQ(checked(), "NUMBERED: 0\nPOLES: 0\n");
    for (int i = 0; i < 3; ++i) add("POLES", "PT_ID", dao::Variant("P" + std::to_string(i)));
    db.Execute("INSERT INTO POLES (PT_ID, FID) VALUES ('P3', 77)");
    EXPECT_EQ(checked(), "NUMBERED: 0\nPOLES: 4\n");
    {
        CDaoTableDef table(&db);
        table.Open("POLES");
        table.CreateField(field("SEEN", dbDate));
        table.DeleteField("HEIGHT");
        table.CreateField(counter);  // the table is made anew for it
        table.SetName("POSTS");
    }
    EXPECT_EQ(checked(), "NUMBERED: 0\nPOSTS: 4\n");
    {
        CDaoTableDef table(&db);
        table.Open("POSTS");
        table.DeleteField("NO");  // the key that is no field comes back
    }
    db.DeleteTableDef("NUMBERED");
    EXPECT_EQ(checked(), "POSTS: 4\n");
    EXPECT_EQ(sqlite3(path, "SELECT PT_ID, FID FROM POSTS WHERE FID = 77"), "P3|77\n");
}

TEST_F(GeoPackage, TheKeyThatIsNoFieldIsNotSeen) {
    makeTable("POLES", {field("PT_ID", dbText, 255), field("HEIGHT", dbDouble)});
    add("POLES", "HEIGHT", dao::Variant(9.5));
    for (int type : {dbOpenDynaset, dbOpenSnapshot})
        for (const char* sql : {"POLES", "SELECT * FROM [POLES] WHERE HEIGHT > 1 ORDER BY PT_ID"})
            EXPECT_EQ(fieldNames(type, sql), (Strings{"PT_ID", "HEIGHT"})) << sql;
    EXPECT_EQ(sqlite3(path, "SELECT fid FROM POLES"), "");
    db.Close();
    EXPECT_EQ(sqlite3(path, "SELECT fid FROM POLES"), "1\n");
}

TEST_F(GeoPackage, TypesThatItLacksComeBack) {
    std::vector<CDaoFieldInfo> fields;
    for (int type :
         {dbBoolean, dbByte, dbInteger, dbLong, dbCurrency, dbSingle, dbDouble, dbDate, dbMemo, dbGUID})
        fields.push_back(field("F" + std::to_string(type), type));
    fields.push_back(field("TEXT", dbText, 30));
    makeTable("T", fields);
    add("T", "F1", dao::Variant(true));
    add("T", "F8", dao::Variant(dao::Date{38138.25}));
    add("T", "F5", dao::Variant(dao::Currency{12345}));
    EXPECT_EQ(checked(), "T: 3\n");
    CDaoTableDef table(&db);
    table.Open("T");
    CDaoFieldInfo info;
    for (size_t i = 0; i < fields.size(); ++i) {
        table.GetFieldInfo(static_cast<int>(i), info);
        EXPECT_EQ(info.type, fields[i].type) << info.name;
    }
    CDaoRecordset records(&db);
    records.Open(dbOpenDynaset, "T");
    EXPECT_EQ(records.GetFieldValue("F1"), dao::Variant(true));
    records.MoveNext();
    EXPECT_EQ(records.GetFieldValue("F8"), dao::Variant(dao::Date{38138.25}));
    records.MoveNext();
    EXPECT_EQ(records.GetFieldValue("F5"), dao::Variant(dao::Currency{12345}));
}

TEST_F(GeoPackage, TheRegisterTellsWhenATableWasChanged) {
    makeTable("A", {field("X", dbLong)});
    makeTable("B", {field("X", dbLong)});
    db.Close();
    auto changed = [&](const std::string& table) {
        return sqlite3(path, "SELECT last_change FROM gpkg_contents WHERE table_name = '" + table + "'");
    };
    std::string a = changed("A"), b = changed("B");
    ASSERT_EQ(a.size(), 25u) << a;
    ::usleep(3000);
    db.Open(path);
    db.Execute("INSERT INTO A VALUES (5)");
    db.Close();
    EXPECT_GT(changed("A"), a);
    EXPECT_EQ(changed("B"), b);
}

TEST_F(GeoPackage, TablesWithGeometryAreReadAndStay) {
    db.Close();
    sqlite3(path,
            "CREATE TABLE ROADS (fid INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL, geom BLOB, NAME TEXT(40)); "
            "INSERT INTO gpkg_contents (table_name, data_type, srs_id) VALUES ('ROADS', 'features', 4326); "
            "INSERT INTO ROADS (NAME) VALUES ('Main Street')");
    db.Open(path);
    EXPECT_EQ(fieldNames(dbOpenDynaset, "ROADS"), (Strings{"geom", "NAME"}));
    EXPECT_THROW(db.DeleteTableDef("ROADS"), CDaoException);
    CDaoTableDef table(&db);
    table.Open("ROADS");
    EXPECT_THROW(table.SetName("STREETS"), CDaoException);
    table.Close();
    db.Close();
    EXPECT_EQ(sqlite3(path, "SELECT NAME FROM ROADS"), "Main Street\n");
}

}  // namespace
