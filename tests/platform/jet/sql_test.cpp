// Statements over Access files: what is found, with an index and without one, and what a failure leaves.
#include <gtest/gtest.h>

#include "platform/dao/dao.h"
#include "platform/dao/jet/database.h"
#include "tests/platform/dao/scratch.h"

namespace {

class JetSql : public ::testing::Test {
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

TEST_F(JetSql, AnIndexAndALookupFindWhatAWalkFinds) {
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

TEST_F(JetSql, AStatementThatFailsChangesNothing) {
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

}  // namespace
