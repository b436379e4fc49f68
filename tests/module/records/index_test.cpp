// GIS-INDEX: tables of the output get an index of their keys.
#include "platform/dao/dao.h"
#include "tests/module/module_fixture.h"
#include "tests/platform/dao/scratch.h"

namespace {

class IndexTest : public ModuleTest {
  protected:
    void SetUp() override {
        ModuleTest::SetUp();
        makeTemplate();
        makeTable("POLES", {"PT_ID", "GIS_KEY", "HEIGHT"});
        makeTable("SIGNS", {"pt_id", "TEXT"});
        makeTable("NOTES", {"TEXT"});
        lisp("(cf:gis_smart_prompting 2 2 " + quoted("out.mdb") + ")");
        printed();
    }

    void makeTable(const std::string& name, const std::vector<std::string>& fields) const {
        CDaoDatabase database;
        if (fs::exists(path("out.mdb")))
            database.Open(path("out.mdb"));
        else
            database.Create(path("out.mdb"));
        CDaoTableDef table(&database);
        table.Create(name);
        for (const std::string& field : fields) table.CreateField(field, dbText, 100);
        table.Append();
        CDaoRecordset records(&database);
        records.Open(dbOpenDynaset, "SELECT * FROM " + name);
        for (int i = 0; i < 2000; ++i) {
            records.AddNew();
            records.SetFieldValue(0, "K" + std::to_string(i % 1500));
            records.Update();
        }
    }
    // The indexes of the file, as a program of others sees them.
    std::string indexes() const {
        return outputOf("mdb-schema --indexes '" + path("out.mdb") +
                        "' mysql 2>/dev/null | grep 'ADD INDEX' | sed 's/.*TABLE //'");
    }
};

TEST_F(IndexTest, ATableGetsAnIndexOfItsKeysOnce) {
    EXPECT_EQ(lisp("(gis:index \"poles\")"), "1");
    EXPECT_EQ(printed(), "\n1 table has got an index of PT_ID.");
    EXPECT_EQ(indexes(), "`POLES` ADD INDEX `PT_ID, GIS_KEY` (`PT_ID`, `GIS_KEY`);\n");
    EXPECT_EQ(lisp("(gis:index)"), "1");
    EXPECT_EQ(printed(), "\n1 table has got an index of PT_ID; 1 had one; 1 has no such field.");
    EXPECT_EQ(lisp("(gis:index \"SIGNS\")"), "0");
    EXPECT_EQ(printed(), "\n0 tables have got an index of PT_ID; 1 had one.");
    EXPECT_EQ(outputOf("'" NORVANE_BIN_DIR "/jet' check '" + path("out.mdb") + "'"), "");
}

TEST_F(IndexTest, WhatCannotBeIndexedIsTold) {
    EXPECT_EQ(lisp("(gis:index \"TREES\")"), "nil");
    EXPECT_EQ(printed(), "\nThe output database has no table TREES.");
    fs::permissions(path("out.mdb"), fs::perms::owner_read);
    if (::geteuid() != 0) {
        EXPECT_EQ(lisp("(gis:index \"POLES\")"), "0");
        EXPECT_NE(printed().find("\nPOLES: "), std::string::npos);
    }
    fs::remove(path("out.mdb"));
    EXPECT_EQ(lisp("(gis:index \"POLES\")"), "nil");
    EXPECT_TRUE(shown("out.mdb")) << "the engine's words in a box";
}

TEST_F(IndexTest, TheCommandAsksForTheTable) {
    lisp("(load \"gis.lsp\")");
    inputs_ = {"SIGNS"};
    lisp("(c:gis-index)");
    EXPECT_NE(printed().find("1 table has got an index of PT_ID."), std::string::npos);
    inputs_ = {""};
    lisp("(c:gis-index)");
    EXPECT_NE(printed().find("1 table has got an index of PT_ID; 1 had one; 1 has no such field."),
              std::string::npos);
}

}  // namespace
